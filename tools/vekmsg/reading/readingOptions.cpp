#include "tools/vekmsg/reading/readingOptions.hpp"

#include "vek/inspect/log/logScanner.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <thread>

namespace vek::tool {

void readingOptions_t::declareFiles(argumentList_t &list) {
    list.add(files, {"FILE", "Files, - for standard input (which is read when none is named)", ""});
}

void readingOptions_t::declareTime(argumentList_t &list) {
    list.add(timeExpression, {"--time",
                              "Where the time stands on a line, when it is unusual: its first group in a usual form, "
                              "or six groups for year, month, day, hour, minute, second",
                              "REGEX"});
    list.add(zone,
             {"--zone",
              "The zone of times that say none, also of those given here: +01:00, UTC, Europe/Berlin, local; with it "
              "all are at UTC",
              "ZONE"});
}

void readingOptions_t::declareFollowing(argumentList_t &list) {
    list.addFlag(follows, "-f,--follow",
                 "Go on when the file grows, comes, or another takes its name; each message at once");
}

void readingOptions_t::declare(argumentList_t &list, bool isStream, bool canSplit) {
    list.add(ids, {.names = "--id",
                   .about = "Only messages of this id or name; several times for several",
                   .type = "ID|NAME",
                   .pages = {"names"}});
    list.add(conditions,
             {.names = "--where",
              .about = "Only messages whose values are so: PATH=VALUE, !=, <, <=, >, >=, ~ (contains), =~ (regular "
                       "expression), PATH (it is there), LIST[*] (any element), with and, or, not, ( ); quote it",
              .type = "CONDITION",
              .pages = {"keys"}});
    list.add(since,
             {"--since", "Only messages of log lines of this time and later: a time, a date, -2h, today, yesterday",
              "TIME"});
    list.add(until, {"--until", "Only messages of log lines of this time and earlier", "TIME"});
    declareTime(list);
    list.add(head, {.names = "-n,--head", .about = "Only the first N messages", .type = "N", .least = 1});
    static const std::string aboutLongest =
        inspect::joined({"Pass over messages of more than N characters and say so; ",
                         std::to_string(longestReadableMessage), " when it is not said, the most that hosts read"});
    list.add(longest, {.names = "--longest",
                       .about = aboutLongest.c_str(),
                       .type = "N",
                       .least = 1,
                       .most = inspect::logScanner_t::memoryBound});
    if (isStream)
        declareFollowing(list);
    if (canSplit)
        list.add(jobs,
                 {.names = "-j,--jobs",
                  .about = "Read a plain file on N processors (0: all there are); up to 4 read a large one when it "
                           "is not said",
                  .type = "N",
                  .least = 0,
                  .most = 64});
}

readingOptions_t readingOptions_t::ofFile(const std::string &name) const {
    readingOptions_t one = *this;
    one.files = {name};
    return one;
}

// Unasked not on many, each of which takes memory, nor where one is done before others have begun.
unsigned readingOptions_t::threads(std::uint64_t size) const {
    constexpr std::uint64_t large = std::uint64_t{4} << 20;
    constexpr unsigned most = 4;
    const unsigned all = std::max(1U, std::thread::hardware_concurrency());
    if (!jobs)
        return size < large ? 1 : std::min(all, most);
    return *jobs > 0 ? static_cast<unsigned>(*jobs) : all;
}

void sourceOption_t::declare(argumentList_t &list) {
    list.add(source, {"--source", "What the log is called in the tables, instead of the file's name", "NAME"});
}

} // namespace vek::tool
