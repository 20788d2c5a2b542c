// The command line: all commands with their arguments, for --help, the manual page and the shells' completion.
#pragma once

namespace vek::tool {

/// Runs what the arguments say; gives the exit code.
int runCommandLine(int argc, char **argv);

} // namespace vek::tool
