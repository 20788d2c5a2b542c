// What differs between systems: terminals, raw files, replacing a file. Everything else of the tool is the same
// everywhere.
//
// File descriptors are owned by rawFile_t. Functions throw usageError_t when a file can't be had.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vek::tool {

/// Standard streams carry bytes; consoles understand colour sequences where they can. A file that may not grow is an
/// error.
void prepareStreams();
/// Whether a person sits there: not of the terminals that serial lines and the ends of tunnels are.
bool isTerminal(int descriptor);
/// What a person does on a terminal to end the input.
#ifdef _WIN32
inline constexpr const char *endOfTyping = "Ctrl-Z and Enter end it";
#else
inline constexpr const char *endOfTyping = "Ctrl-D ends it";
#endif
/// Columns of the terminal at standard output, or at standard error; 80 when there is none.
std::size_t terminalWidth();
std::optional<std::string> environment(const char *name);
void sleepMilliseconds(unsigned milliseconds);
/// The time of day: seconds since 1970 at UTC, and the same moment on the clocks of this place.
std::int64_t secondsSinceEpoch();
std::int64_t localSeconds(std::int64_t secondsAtUtc);
/// Has the clocks of this place be those of a zone, such as Europe/Berlin, while something is done; empty: they stay.
/// False when the system knows no such zone, and nothing is done. Not while other threads run.
bool inZone(const std::string &name, const std::function<void()> &act);
/// Milliseconds of a clock that never goes back.
std::uint64_t milliseconds();

/// What tells one file from another under the same name.
struct fileIdentity_t {
    std::uint64_t device = 0, number = 0, size = 0;
    bool isRegular = false;

    bool isSameFile(const fileIdentity_t &other) const { return device == other.device && number == other.number; }
};

/// A file opened for reading. "-" is standard input.
class rawFile_t {
public:
    explicit rawFile_t(const std::string &name);
    rawFile_t(const rawFile_t &) = delete;
    rawFile_t &operator=(const rawFile_t &) = delete;
    ~rawFile_t();

    /// Up to `room` bytes; 0 at the end.
    std::size_t read(char *buffer, std::size_t room);
    /// Whether read() has something to tell before a moment of milliseconds(), be it the end.
    bool comesUntil(std::uint64_t moment) const;
    /// Whether comesUntil() knows: what is typed at some consoles shows only when it is read.
    bool canWait() const;
    void seek(std::uint64_t offset);
    fileIdentity_t identity() const;
    const std::string &name() const { return name_; }

private:
    std::string name_;
    int descriptor_;
};

/// Whether there is such a file, and which.
std::optional<fileIdentity_t> identityOf(const std::string &name);

/// A line that a person types, without its end; nothing at the end of the input.
std::optional<std::string> readLine();

/// Writes all to a descriptor. A pipe without a reader ends the program quietly.
void writeAll(int descriptor, std::string_view bytes);

/// The same of what people read: on a terminal, what no terminal shows as it is is made visible. Colours stay when they
/// are the program's own.
void writeText(int descriptor, std::string_view text, bool hasColours = false);

/// A new file beside another one that takes its place, with its owner and mode, when commit() is called. Until then,
/// and whenever commit() was not reached, the other file is as it was.
class replacement_t {
public:
    explicit replacement_t(const std::string &name);
    replacement_t(const replacement_t &) = delete;
    replacement_t &operator=(const replacement_t &) = delete;
    ~replacement_t();

    void write(std::string_view bytes) { writeAll(descriptor_, bytes); }
    void commit();

private:
    std::string target_; // symbolic links followed
    std::string temporary_;
    int descriptor_ = -1;
};

/// Makes a file for a draft among the temporary ones, which nobody but the user may read; its name. Throws
/// usageError_t.
std::string makeDraft();

/// Runs an editor on a file and waits for it; false when it could not be run or ended with an error.
bool runEditor(const std::string &editor, const std::string &file);

} // namespace vek::tool
