// How the foundation reports a programming or resource error, and two small helpers.
//
// The code that finds an error records where (a fixed text that names its module, and a line), then calls that error
// kind's hook. The default hooks print one line on standard error; a null hook keeps silent. Reporting never throws
// and never ends the process: the caller goes on with its own fallback.
//
// Thread rule: location, line and hooks are those of the process, which any thread may set and read. Of errors that
// several threads find at once, a report may name the place of one with the message of another.
#pragma once

#include "vek/vek_std/std_sys/vek_processWide.hpp"

#include <cstddef>
#include <cstdint>
#include <iosfwd>

namespace vek {

/// What is called when an error of one kind is found. Null keeps silent.
using errorHook_t = void (*)();

/// Stores where an error was found. The text is not copied: it must stay valid, as a literal does. Null: unknown.
void setLocation(const char *where);
const char *getLocation();

/// Stores the line within the location. It stays set after a report, as the location does.
void setLine(std::uint32_t line);
std::uint32_t getLine();

/// Prints "\n<message> ; called from <location>,<line>\n" on standard error. Returns what the print returned: the
/// number of characters, or a negative number when it failed.
int report(const char *message);

/// Records location and line, then calls the hook unless it is null.
void signalError(const char *where, std::uint32_t line, errorHook_t hook);

/// Called when swapMemory is given two sizes. Its default reports " : DIFF_SZ_SWAP".
extern processWide_t<errorHook_t> swapSizeHook;

/// Exchanges `sizeA` bytes between `a` and `b` and returns `a`. The same address twice changes nothing; otherwise the
/// two must not overlap. Different sizes: nothing is exchanged, the hook is called, null is returned.
void *swapMemory(void *a, void *b, std::size_t sizeA, std::size_t sizeB);

/// Stream manipulator: writes " ...Hit enter", flushes, and waits until standard input has given a line end (or has
/// ended).
std::ostream &pause(std::ostream &stream);

} // namespace vek
