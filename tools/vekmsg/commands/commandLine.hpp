// The command line: all commands with their arguments, for --help, the manual page and the shells' completion.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace vek::tool {

/// The help of all commands, or of one; throws usageError_t when there is none of this name.
std::string helpOf(const CLI::App &all, const std::string &command);

/// Runs what the arguments say; gives the exit code.
int runCommandLine(int argc, char **argv);

} // namespace vek::tool
