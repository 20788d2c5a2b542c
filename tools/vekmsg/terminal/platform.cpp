#include "tools/vekmsg/terminal/platform.hpp"

#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/words/quoting.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#ifdef _WIN32
#    include <io.h>
#    include <windows.h>
#else
#    include <poll.h>
#    include <sys/ioctl.h>
#    include <sys/resource.h>
#endif

namespace vek::tool {

namespace {

#ifdef _WIN32
// Others may rename and delete the file meanwhile, as they do with logs.
HANDLE openShared(const std::string &name, DWORD access) {
    return CreateFileA(name.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                       OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

HANDLE handleOf(int descriptor) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
}

int openToRead(const std::string &name) {
    const HANDLE file = openShared(name, GENERIC_READ);
    if (file != INVALID_HANDLE_VALUE)
        return _open_osfhandle(reinterpret_cast<std::intptr_t>(file), O_RDONLY | O_BINARY);
    const DWORD error = GetLastError();
    errno = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? ENOENT : EACCES;
    return -1;
}

fileIdentity_t identityFrom(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION status;
    if (!GetFileInformationByHandle(file, &status))
        return {};
    const auto whole = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
    return {status.dwVolumeSerialNumber, whole(status.nFileIndexHigh, status.nFileIndexLow),
            whole(status.nFileSizeHigh, status.nFileSizeLow), GetFileType(file) == FILE_TYPE_DISK};
}
#else
// What a shell lets a program have open, it may raise by itself up to another limit.
bool mayOpenMore() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= limit.rlim_max)
        return false;
    limit.rlim_cur = limit.rlim_max;
    return setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

int openToRead(const std::string &name) {
    const auto tryIt = [&] { return open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); };
    const int descriptor = tryIt();
    if (descriptor >= 0 || errno != EMFILE)
        return descriptor;
    if (mayOpenMore())
        return tryIt();
    throw usageError_t("cannot read " + name +
                       ": too many files are open; ulimit -Hn says how many there may be, "
                       "LimitNOFILE= of a service how many it may have");
}

fileIdentity_t identityFrom(const struct stat &status) {
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
            static_cast<std::uint64_t>(status.st_size), S_ISREG(status.st_mode)};
}
#endif

} // namespace

void complain(const std::string &words) {
    writeText(2, "vekmsg: " + words + "\n");
}

void failOnFile(const std::string &doing, const std::string &file) {
    throw usageError_t("cannot " + doing + " " + (file == "-" ? std::string("standard input") : file) + ": " +
                       std::strerror(errno));
}

void prepareStreams() {
#ifdef _WIN32
    for (const int descriptor : {0, 1, 2})
        _setmode(descriptor, O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    for (const DWORD which : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        DWORD mode = 0;
        const HANDLE handle = GetStdHandle(which);
        if (GetConsoleMode(handle, &mode))
            SetConsoleMode(handle, mode | 4 /* ENABLE_VIRTUAL_TERMINAL_PROCESSING */);
    }
#else
    std::signal(SIGXFSZ, SIG_IGN);     // a file that may not grow is an error as any other
#endif
}

bool isTerminal(int descriptor) {
#ifdef _WIN32
    DWORD mode = 0;
    return GetConsoleMode(handleOf(descriptor), &mode) != 0;
#else
    return tcgetpgrp(descriptor) >= 0; // which fails of others than the one that the program was started from
#endif
}

std::size_t terminalWidth() {
#ifdef _WIN32
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info))
        return static_cast<std::size_t>(info.dwSize.X);
#else
    struct winsize size;
    for (const int descriptor : {1, 2})
        if (ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
            return size.ws_col;
#endif
    return 80;
}

std::optional<std::string> environment(const char *name) {
    const char *value = std::getenv(name);
    if (value == nullptr || *value == '\0')
        return std::nullopt;
    return std::string(value);
}

void sleepMilliseconds(unsigned milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::int64_t secondsSinceEpoch() {
    return std::time(nullptr);
}

std::int64_t localSeconds(std::int64_t secondsAtUtc) {
    const auto time = static_cast<std::time_t>(secondsAtUtc);
    std::tm here{};
#ifdef _WIN32
    localtime_s(&here, &time);
    return _mkgmtime(&here);
#else
    localtime_r(&time, &here);
    return timegm(&here);
#endif
}

bool inZone(const std::string &name, const std::function<void()> &act) {
    if (name.empty()) {
        act();
        return true;
    }
#ifdef _WIN32
    return false;
#else
    const std::filesystem::path folder = environment("TZDIR").value_or("/usr/share/zoneinfo");
    std::error_code error;
    if (name.find("..") != std::string::npos || !std::filesystem::is_regular_file(folder / name, error))
        return false;
    const std::optional<std::string> before = environment("TZ");
    const auto set = [](const std::optional<std::string> &zone) {
        zone ? setenv("TZ", zone->c_str(), 1) : unsetenv("TZ");
        tzset();
    };
    set(":" + name);
    act();
    set(before);
    return true;
#endif
}

std::uint64_t milliseconds() {
    using namespace std::chrono;
    return static_cast<std::uint64_t>(
        duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count());
}

rawFile_t::rawFile_t(const std::string &name) : name_(name), descriptor_(0) {
    if (name == "-")
        return;
    struct stat status;
    if (stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
        throw usageError_t(name + " is a folder; name the files in it: " + name + "/*");
    descriptor_ = openToRead(name);
    if (descriptor_ < 0)
        failOnFile("read", name);
}

rawFile_t::~rawFile_t() {
    if (descriptor_ > 0)
        close(descriptor_);
}

#ifdef _WIN32
// Not by the C run-time: once at its end, some read nothing of a file that grows.
std::size_t rawFile_t::read(char *buffer, std::size_t room) {
    DWORD got = 0;
    if (!ReadFile(handleOf(descriptor_), buffer, static_cast<DWORD>(room), &got, nullptr) &&
        GetLastError() != ERROR_BROKEN_PIPE && GetLastError() != ERROR_HANDLE_EOF) {
        errno = EIO;
        failOnFile("read", name_);
    }
    return got;
}
#else
std::size_t rawFile_t::read(char *buffer, std::size_t room) {
    while (true) {
        const ssize_t got = ::read(descriptor_, buffer, room);
        if (got >= 0)
            return static_cast<std::size_t>(got);
        if (errno != EINTR)
            failOnFile("read", name_);
    }
}
#endif

bool rawFile_t::comesUntil(std::uint64_t moment) const {
#ifdef _WIN32
    for (constexpr unsigned pause = 10;; sleepMilliseconds(pause)) {
        DWORD size = 0;
        const HANDLE file = handleOf(descriptor_);
        const DWORD kind = GetFileType(file);
        if (kind == FILE_TYPE_DISK ||
            (kind == FILE_TYPE_PIPE && !PeekNamedPipe(file, nullptr, 0, nullptr, &size, nullptr)) || size > 0)
            return true;
        if (milliseconds() >= moment)
            return false;
    }
#else
    const std::uint64_t now = milliseconds();
    pollfd waiting{descriptor_, POLLIN, 0};
    return poll(&waiting, 1, static_cast<int>(std::max(moment, now) - now)) != 0;
#endif
}

bool rawFile_t::canWait() const {
#ifdef _WIN32
    return GetFileType(handleOf(descriptor_)) != FILE_TYPE_CHAR;
#else
    return true;
#endif
}

void rawFile_t::seek(std::uint64_t offset) {
    if (lseek(descriptor_, static_cast<off_t>(offset), SEEK_SET) < 0)
        failOnFile("read", name_);
}

#ifdef _WIN32
fileIdentity_t rawFile_t::identity() const {
    return identityFrom(handleOf(descriptor_));
}

std::optional<fileIdentity_t> identityOf(const std::string &name) {
    const HANDLE file = openShared(name, 0);
    if (file == INVALID_HANDLE_VALUE)
        return std::nullopt;
    const fileIdentity_t identity = identityFrom(file);
    CloseHandle(file);
    return identity;
}
#else
fileIdentity_t rawFile_t::identity() const {
    struct stat status;
    return fstat(descriptor_, &status) == 0 ? identityFrom(status) : fileIdentity_t{};
}

std::optional<fileIdentity_t> identityOf(const std::string &name) {
    struct stat status;
    if (stat(name.c_str(), &status) != 0)
        return std::nullopt;
    return identityFrom(status);
}
#endif

std::optional<std::string> readLine() {
    std::string line;
    for (char c = 0; ::read(0, &c, 1) == 1; line += c)
        if (c == '\n')
            return line;
    return line.empty() ? std::nullopt : std::optional(line);
}

void writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto room = static_cast<unsigned>(std::min<std::size_t>(bytes.size(), 1U << 20));
        const auto written = ::write(descriptor, bytes.data(), room);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0 && (errno == EPIPE || (errno == EINVAL && descriptor == 1)))
            std::_Exit(exitFine);
        if (written < 0)
            throw usageError_t(std::string("cannot write the output: ") + std::strerror(errno));
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void writeText(int descriptor, std::string_view text, bool hasColours) {
    if (isTerminal(descriptor))
        writeAll(descriptor, inspect::visible(text, hasColours));
    else
        writeAll(descriptor, text);
}

replacement_t::replacement_t(const std::string &name) : target_(name) {
#ifdef _WIN32
    temporary_ = target_ + ".vekmsg-" + std::to_string(GetCurrentProcessId());
    descriptor_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_BINARY, 0600);
#else
    if (char *resolved = realpath(name.c_str(), nullptr); resolved != nullptr) {
        target_ = resolved;
        std::free(resolved);
    }
    temporary_ = target_ + ".XXXXXX";
    descriptor_ = mkstemp(temporary_.data());
#endif
    if (descriptor_ < 0)
        failOnFile("make a file beside", target_);
}

replacement_t::~replacement_t() {
    if (descriptor_ < 0)
        return;
    close(descriptor_);
    std::remove(temporary_.c_str());
}

void replacement_t::commit() {
#ifdef _WIN32
    close(descriptor_);
    descriptor_ = -1;
    if (!MoveFileExA(temporary_.c_str(), target_.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        std::remove(temporary_.c_str());
        throw usageError_t("cannot replace " + target_ + "; is it open in another program?");
    }
#else
    struct stat status;
    if (stat(target_.c_str(), &status) != 0)
        failOnFile("replace", target_);
    // The owner first: changing it takes set-id bits away.
    struct stat own;
    const bool isOwn = fstat(descriptor_, &own) == 0 && own.st_uid == status.st_uid && own.st_gid == status.st_gid;
    if (!isOwn && fchown(descriptor_, status.st_uid, status.st_gid) != 0)
        failOnFile("keep the owner of", target_);
    if (fchmod(descriptor_, status.st_mode & 07777) != 0 || fsync(descriptor_) != 0)
        failOnFile("write beside", target_);
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0)
        failOnFile("replace", target_);
    close(descriptor_);
    descriptor_ = -1;
#endif
}

std::string makeDraft() {
#ifdef _WIN32
    const std::string folder = environment("TEMP").value_or(environment("TMP").value_or("."));
    const std::string name = folder + "\\vekmsg-" + std::to_string(milliseconds()) + ".txt";
    const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_BINARY, 0600);
#else
    std::string name = environment("TMPDIR").value_or("/tmp") + "/vekmsg-XXXXXX.txt";
    const int descriptor = mkstemps(name.data(), 4);
#endif
    if (descriptor < 0)
        failOnFile("make", name);
    close(descriptor);
    return name;
}

bool runEditor(const std::string &editor, const std::string &file) {
#ifdef _WIN32
    const std::string command = "\"" + editor + " \"" + file + "\"\"";
#else
    std::string quoted = "'";
    for (const char c : file)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    const std::string command = editor + " " + quoted + "'";
#endif
    return std::system(command.c_str()) == 0;
}

} // namespace vek::tool
