#include "tools/vekmsg/load/loadSummary.hpp"

#include "tools/vekmsg/terminal/platform.hpp"

#include <algorithm>
#include <string>

namespace vek::tool {

namespace {

std::string messagesInWords(std::int64_t count) {
    return std::to_string(count) + (count == 1 ? " message" : " messages");
}

} // namespace

// Damaged messages that have become whole since the last time count below 0.
void sayLoaded(std::int64_t messages, std::int64_t damaged, std::uint64_t milliseconds) {
    std::string words =
        messagesInWords(messages) + " loaded, " + std::to_string(std::max<std::int64_t>(damaged, 0)) + " damaged";
    constexpr std::int64_t many = 100'000; // a rate says little of fewer
    if (messages >= many && milliseconds >= 1000)
        words += "; " + std::to_string(milliseconds / 1000) + " s, " +
                 std::to_string(messages * 1000 / static_cast<std::int64_t>(milliseconds)) + " a second";
    writeAll(2, words + "\n");
}

void sayForgotten(std::string_view log) {
    writeAll(2, std::string(log) + " taken out, with all that was known of it\n");
}

void sayRemoved(std::int64_t messages, std::string_view time) {
    writeAll(2, messagesInWords(messages) + " removed, older than " + std::string(time) + "\n");
}

void sayHolds(std::string_view target, std::int64_t messages) {
    writeAll(2, std::string(target) + " holds " + messagesInWords(messages) + "\n");
}

} // namespace vek::tool
