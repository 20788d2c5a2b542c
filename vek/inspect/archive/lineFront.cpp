// A mark, and behind it how the time is spelt: the character between date and time, the one in front of the fraction,
// its digits, and the minutes by which the line's clock is ahead, up to a ";". A mark that stands in a log is doubled.
#include "vek/inspect/archive/lineFront.hpp"

#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <array>
#include <charconv>

namespace vek::inspect {

namespace {

constexpr char timeMark = '\x11';
constexpr std::int64_t oneSecond = 1'000'000, minute = 60 * oneSecond;
constexpr std::size_t wholeSeconds = 19; // characters of "2026-03-01 08:14:52"
constexpr std::size_t mostDigits = 6;
constexpr std::int64_t noId = std::int64_t{1} << 32;

struct spelling_t {
    char between = ' ', point = '.';
    std::size_t digits = 0;
    std::int64_t minutesAhead = 0;
};

bool isLikeTime(std::string_view text) {
    constexpr std::string_view shape = "0000-00-00?00:00:00";
    if (text.size() < shape.size())
        return false;
    for (std::size_t i = 0; i < shape.size(); ++i)
        if (shape[i] == '0' ? !isDigit(text[i]) : shape[i] != '?' && shape[i] != text[i])
            return false;
    return true;
}

void appendTime(std::string &out, const spelling_t &spelling, logTime_t time) {
    time.microseconds += spelling.minutesAhead * minute;
    time.appendTo(out, spelling.between, logTime_t::fraction_t::none);
    if (spelling.digits == 0)
        return;
    out += spelling.point;
    std::array<char, mostDigits> digits{};
    std::uint32_t rest = time.microsecond();
    for (std::size_t at = mostDigits; at-- > 0; rest /= 10)
        digits[at] = static_cast<char>('0' + rest % 10);
    out.append(digits.data(), spelling.digits);
}

// How a time is spelt at the start of a text; nothing when this is another time.
std::optional<spelling_t> spellingAt(std::string_view text, const logTime_t &time) {
    constexpr std::size_t dateEnd = 10;
    spelling_t spelling{text[dateEnd]};
    if (text.size() > wholeSeconds + 1 && (text[wholeSeconds] == '.' || text[wholeSeconds] == ',')) {
        spelling.point = text[wholeSeconds];
        const std::string_view rest = text.substr(wholeSeconds + 1, mostDigits);
        spelling.digits = static_cast<std::size_t>(std::find_if_not(rest.begin(), rest.end(), isDigit) - rest.begin());
    }
    std::size_t size = 0;
    const std::optional<logTime_t> there = readTime(text.substr(0, wholeSeconds), size);
    if (!there)
        return std::nullopt;
    const std::int64_t ahead = there->microseconds - (time.microseconds - time.microsecond());
    spelling.minutesAhead = ahead / minute;
    std::string again;
    appendTime(again, spelling, time);
    return text.starts_with(again) ? std::optional(spelling) : std::nullopt;
}

void appendMarked(std::string &out, std::string_view words) {
    for (const char c : words)
        out.append(c == timeMark ? 2 : 1, c);
}

bool canStandForTime(const std::optional<logTime_t> &time) {
    constexpr std::int64_t end = (std::int64_t{1} << 32) * oneSecond; // as every database keeps
    return time && time->hasDate && time->microseconds >= 0 && time->microseconds < end;
}

} // namespace

std::string patternOf(std::string_view front, const std::optional<logTime_t> &time) {
    std::string pattern;
    const std::size_t line = front.rfind('\n') + 1;
    for (std::size_t at = line; canStandForTime(time) && at + wholeSeconds <= front.size(); ++at) {
        if (!isLikeTime(front.substr(at)))
            continue;
        const std::optional<spelling_t> spelling = spellingAt(front.substr(at), *time);
        if (!spelling)
            break;
        appendMarked(pattern, front.substr(0, at));
        pattern += joined({{&timeMark, 1},
                           {&spelling->between, 1},
                           {&spelling->point, 1},
                           std::to_string(spelling->digits),
                           std::to_string(spelling->minutesAhead),
                           ";"});
        const std::size_t size = wholeSeconds + (spelling->digits > 0 ? spelling->digits + 1 : 0);
        appendMarked(pattern, front.substr(at + size));
        return pattern;
    }
    appendMarked(pattern, front);
    return pattern;
}

void appendFront(std::string &out, std::string_view pattern, const std::optional<logTime_t> &time) {
    constexpr std::size_t head = 4; // up to the minutes
    while (!pattern.empty()) {
        const std::size_t at = std::min(pattern.find(timeMark), pattern.size());
        out += pattern.substr(0, at);
        pattern.remove_prefix(at);
        if (pattern.size() < 2 || pattern[1] == timeMark) {
            out += pattern.substr(0, 1);
            pattern.remove_prefix(pattern.size() < 2 ? pattern.size() : 2);
            continue;
        }
        const std::size_t end = pattern.find(';');
        if (end == std::string_view::npos || end < head)
            return;
        spelling_t spelling{pattern[1], pattern[2], std::min(static_cast<std::size_t>(pattern[3] - '0'), mostDigits)};
        std::from_chars(pattern.data() + head, pattern.data() + end, spelling.minutesAhead);
        if (canStandForTime(time))
            appendTime(out, spelling, *time);
        pattern.remove_prefix(end + 1);
    }
}

const std::string *usualFronts_t::of(const std::optional<std::int32_t> &id) const {
    for (const usual_t &usual : all_)
        if (std::find(usual.ids.begin(), usual.ids.end(), id ? *id : noId) != usual.ids.end())
            return &usual.pattern;
    return nullptr;
}

bool usualFronts_t::learn(const std::optional<std::int32_t> &id, const std::string &pattern) {
    constexpr std::size_t longest = 256, most = 256;
    std::size_t ids = 0;
    for (const usual_t &usual : all_)
        ids += usual.ids.size();
    if (pattern.size() > longest || ids >= most || std::count(pattern.begin(), pattern.end(), '\n') > 1)
        return false;
    auto usual = std::find_if(all_.begin(), all_.end(), [&](const auto &one) { return one.pattern == pattern; });
    if (usual == all_.end())
        usual = all_.insert(usual, {{}, pattern});
    usual->ids.push_back(id ? *id : noId);
    say();
    return true;
}

void usualFronts_t::say() {
    words_.clear();
    for (const usual_t &usual : all_) {
        for (const std::int64_t &id : usual.ids)
            words_.append(&id == usual.ids.data() ? "" : ",").append(std::to_string(id));
        words_ += joined({" ", std::to_string(usual.pattern.size()), " ", usual.pattern});
    }
}

usualFronts_t usualFronts_t::ofWords(std::string_view words) {
    usualFronts_t fronts;
    fronts.words_ = words;
    const auto number = [&words] {
        std::int64_t value = 0;
        const char *const end = std::from_chars(words.data(), words.data() + words.size(), value).ptr;
        words.remove_prefix(std::min<std::size_t>(static_cast<std::size_t>(end - words.data()) + 1, words.size()));
        return value;
    };
    while (!words.empty()) {
        usual_t &usual = fronts.all_.emplace_back();
        usual.ids.push_back(number());
        while (!words.empty() && words.data()[-1] == ',')
            usual.ids.push_back(number());
        const auto size = static_cast<std::size_t>(number());
        usual.pattern = words.substr(0, size);
        words.remove_prefix(std::min(size, words.size()));
    }
    return fronts;
}

} // namespace vek::inspect
