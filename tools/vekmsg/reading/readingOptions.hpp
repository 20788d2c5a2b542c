// readingOptions_t: the options of every command that reads messages: which inputs, and which messages of them.
#pragma once

#include "tools/vekmsg/terminal/argumentList.hpp"
#include "vek/api/problem.hpp"
#include "vek/inspect/forms/forms.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vek::tool {

struct readingOptions_t {
    std::vector<std::string> files{"-"}; ///< standard input when none was named
    std::vector<std::string> ids, conditions;
    std::optional<std::string> since, until;
    std::string timeExpression, zone; ///< where the time stands on a line, and of which clock it is
    std::optional<std::string> at;    ///< instead of `until`, of who wants the state at a time
    std::optional<std::uint64_t> head;
    bool follows = false;
    std::optional<std::int32_t> jobs;             ///< 0: as many as there are processors
    std::size_t longest = longestReadableMessage; ///< characters of a message that is read, its NUL included
    inspect::readOptions_t forms;

    /// The files, in front of a command's own options, and what is said of messages, behind these.
    void declareFiles(argumentList_t &list);
    void declare(argumentList_t &list, bool isStream = true, bool canSplit = true);
    void declareTime(argumentList_t &list);
    void declareFollowing(argumentList_t &list);

    /// The same of one file alone.
    readingOptions_t ofFile(const std::string &name) const;
    /// How many read a file of this size.
    unsigned threads(std::uint64_t size) const;
};

/// What a log is called where rows are made of its messages.
struct sourceOption_t {
    std::string source; ///< empty: as its file

    void declare(argumentList_t &list);
};

} // namespace vek::tool
