// vekmsg: messages for people, on the command line.
#include "tools/vekmsg/commands/commandLine.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"

#include <new>

int main(int argc, char **argv) {
    using namespace vek::tool;
    prepareStreams();
    try {
        return runCommandLine(argc, argv);
    } catch (const usageError_t &error) {
        complain(error.what());
    } catch (const std::bad_alloc &) {
        complain("there is not enough memory");
    }
    return exitUsage;
}
