// Problems of the program's own work (not of messages): a file that can't be read, an argument that makes no sense.
//
// They end the program with exit code 2. The words say what to do next.
#pragma once

#include <stdexcept>
#include <string>

namespace vek::tool {

/// What a program's exit code says.
enum exitCode_t : int {
    exitFine = 0,
    exitDifferences = 1, ///< differences, invalid messages, or nothing found
    exitUsage = 2,       ///< usage or files
};

/// Thrown where the work can't go on.
class usageError_t : public std::runtime_error {
public:
    explicit usageError_t(const std::string &words) : std::runtime_error(words) {}
};

/// "vekmsg: WORDS" on standard error.
void complain(const std::string &words);

/// "vekmsg: cannot read a.log: No such file or directory": the system's reason for the last failed call.
[[noreturn]] void failOnFile(const std::string &doing, const std::string &file);

} // namespace vek::tool
