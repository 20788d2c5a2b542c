#include "tools/vekmsg/reading/timeFinder.hpp"

#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <utility>

namespace vek::tool {

namespace {

constexpr std::int64_t second = 1'000'000, day = 86'400 * second;

std::optional<givenTime_t> fromNow(std::string_view text, const zone_t &zone) {
    const logTime_t now{secondsSinceEpoch() * second, true, true};
    const std::int64_t here =
        zone.isNone() ? localSeconds(now.microseconds / second) * second : zone.onClock(now).microseconds;
    const auto at = [&](std::int64_t back) {
        return givenTime_t{{here - back, true, false}, {now.microseconds - back, true, true}};
    };
    if (text == "now")
        return at(0);
    if (text == "today" || text == "yesterday")
        return at(here % day + (text == "today" ? 0 : day));
    if (!text.starts_with('-'))
        return std::nullopt;
    const std::optional<std::int64_t> back = durationOf(text.substr(1));
    return back ? std::optional(at(*back)) : std::nullopt;
}

} // namespace

std::optional<std::int64_t> durationOf(std::string_view text) {
    constexpr std::pair<std::string_view, std::int64_t> units[] = {{"s", 1},       {"sec", 1},      {"m", 60},
                                                                   {"min", 60},    {"h", 3600},     {"d", 86400},
                                                                   {"day", 86400}, {"days", 86400}, {"w", 604800}};
    constexpr std::size_t mostDigits = 6;
    constexpr std::int64_t longest = 1'000'000 * day;
    std::int64_t duration = 0;
    do {
        const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
        const std::string_view behind = text.substr(digits);
        const std::string_view word = behind.substr(0, behind.find_first_of("0123456789"));
        const auto unit = std::ranges::find(units, word, [](const auto &known) { return known.first; });
        if (digits == 0 || digits > mostDigits || unit == std::end(units) || duration > longest)
            return std::nullopt;
        duration += readInteger(text) * unit->second * second;
        text.remove_prefix(digits + word.size());
    } while (!text.empty());
    return duration;
}

std::optional<givenTime_t> timeOfArgument(std::string_view text, const zone_t &zone) {
    std::size_t size = 0;
    for (const std::string &whole : {std::string(text), std::string(text) + ":00", std::string(text) + " 00:00:00"})
        if (const std::optional<logTime_t> time = inspect::readTime(whole, size); time && size == whole.size())
            return givenTime_t{*time, zone.atUtc(*time)};
    return fromNow(text, zone);
}

timeFinder_t::timeFinder_t(const std::string &expression, const std::string &zone) : zone_(zone) {
    if (expression.empty())
        return;
    try {
        expression_.emplace(expression, std::regex::ECMAScript | std::regex::optimize);
    } catch (const std::regex_error &) {
        throw usageError_t("--time " + expression +
                           " is no regular expression; put the time in brackets, for example --time '^<([^>]*)>'");
    }
}

std::optional<logTime_t> timeFinder_t::in(std::string_view lineHead) const {
    const std::optional<logTime_t> time = asWritten(lineHead);
    return time ? std::optional(zone_.atUtc(*time)) : std::nullopt;
}

std::optional<logTime_t> timeFinder_t::asWritten(std::string_view lineHead) const {
    if (!expression_)
        return inspect::timeIn(lineHead);
    std::size_t size = 0;
    std::cmatch match;
    if (!std::regex_search(lineHead.data(), lineHead.data() + lineHead.size(), match, *expression_))
        return std::nullopt;
    if (match.size() < 7)
        return inspect::readTime(match.size() > 1 ? match[1].str() : match[0].str(), size);
    const auto piece = [&match](std::size_t group) { return match[group].str(); };
    std::string whole = piece(1) + "-" + piece(2) + "-" + piece(3) + " " + piece(4) + ":" + piece(5) + ":" + piece(6);
    if (match.size() > 7 && match[7].matched)
        whole += "." + piece(7);
    return inspect::readTime(whole, size);
}

} // namespace vek::tool
