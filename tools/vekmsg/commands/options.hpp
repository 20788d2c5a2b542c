// options_t: what the command line said, in one struct for all commands; each looks at what concerns it.
#pragma once

#include "vek/api/problem.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vek::tool {

struct options_t {
    std::string command;

    // Of every command that reads messages:
    std::vector<std::string> files; ///< "-" when none was named
    std::vector<std::string> ids, conditions;
    std::string since, until, timeExpression;
    std::optional<std::uint64_t> head;
    bool follows = false;
    unsigned jobs = 1;
    std::size_t longest = largestMessage; ///< characters of a message that is read, its NUL included
    std::string color = "auto";

    // Of one or a few:
    bool isQuiet = false, isJson = false, isInPlace = false;
    bool asRead = false, onlyChanges = false;
    bool isTabs = false, isChecked = false;
    std::vector<std::string> ignored; ///< findings of check, paths of diff
    std::vector<std::string> keys;    ///< of table
    std::vector<std::string> words;   ///< assignments, ids and names
    std::string path;                 ///< of get
    std::optional<std::int32_t> echoTag, sequenceNumber;
    std::optional<std::string> id; ///< of seal and new
    std::string at;                ///< a time
    double tolerance = 0.0;
    bool comparesHeader = false;
    bool isRows = false;    ///< of json
    std::string table;      ///< of json: the one table whose rows are wanted
    std::string source;     ///< what the log is called in tables, when not by its file
    std::string sqlDialect; ///< of schema
    std::string target;     ///< of load: the database
    std::string page;       ///< "man", "bash" or "zsh"
};

} // namespace vek::tool
