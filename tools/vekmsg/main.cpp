// vekmsg: messages for people, on the command line.
#include "tools/vekmsg/commands/commandLine.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/text/growableList.hpp"

#include <cstdio>
#include <new>

int main(int argc, char **argv) {
    using namespace vek::tool;
    try {
        prepareStreams();
        vek::throwWithoutMemory();
        return runCommandLine(argc, argv);
    } catch (const usageError_t &error) {
        complain(error.what());
    } catch (const std::bad_alloc &) {
        std::fputs("vekmsg: there is not enough memory\n", stderr); // takes none
    }
    return exitUsage;
}
