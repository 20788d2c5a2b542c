// In the build that counts what is reached: a program that ends at once, or is ended, keeps its counts.
#include <csignal>
#include <unistd.h>

extern "C" void __gcov_dump();
extern "C" [[noreturn]] void __real__Exit(int status);

extern "C" [[noreturn]] void __wrap__Exit(int status) {
    __gcov_dump();
    __real__Exit(status);
}

namespace {

[[noreturn]] void onSignal(int signal) {
    __gcov_dump();
    _exit(128 + signal);
}

[[maybe_unused]] const bool isListening = std::signal(SIGTERM, &onSignal) != SIG_ERR;

} // namespace
