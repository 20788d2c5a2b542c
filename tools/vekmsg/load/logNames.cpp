#include "tools/vekmsg/load/logNames.hpp"

#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <set>

namespace vek::tool {

using inspect::joined;

namespace {

// The first of them, for people.
std::string listOf(const std::set<std::string_view> &names) {
    constexpr std::size_t most = 5;
    std::string list;
    std::size_t count = 0;
    for (const std::string_view name : names)
        if (count++ < most)
            list += joined({list.empty() ? "" : ", ", name});
    return names.size() <= most ? list : joined({list, " and ", std::to_string(names.size() - most), " more"});
}

} // namespace

void checkNamed(std::string_view option, const std::vector<std::string> &words,
                const std::vector<inspect::archivedLog_t> &logs, std::string inspect::archivedLog_t::*part,
                std::string_view archive) {
    std::set<std::string_view> names;
    for (const inspect::archivedLog_t &log : logs)
        if (!(log.*part).empty())
            names.insert(log.*part);
    const std::string none = part == &inspect::archivedLog_t::name
                                 ? "it has none"
                                 : joined({"vekmsg load ", option, " says it of logs that it loads"});
    for (const std::string &word : words)
        if (!names.contains(word)) {
            const std::vector<std::string_view> all(names.begin(), names.end());
            throw usageError_t(
                joined({option, " ", word, ": ", archive, " has no such log; ",
                        inspect::didYouMean(word, all, names.empty() ? none : "it has " + listOf(names))}));
        }
}

} // namespace vek::tool
