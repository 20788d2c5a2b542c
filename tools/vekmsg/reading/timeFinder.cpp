#include "tools/vekmsg/reading/timeFinder.hpp"

#include "tools/vekmsg/terminal/problem.hpp"

namespace vek::tool {

std::optional<logTime_t> timeOfArgument(std::string_view text) {
    std::size_t size = 0;
    for (const std::string &whole : {std::string(text), std::string(text) + ":00", std::string(text) + " 00:00:00"})
        if (const std::optional<logTime_t> time = inspect::readTime(whole, size); time && size == whole.size())
            return time;
    return std::nullopt;
}

timeFinder_t::timeFinder_t(const std::string &expression) {
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
