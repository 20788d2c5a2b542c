// One line on standard error, drawn over itself ten times a second at most, and not within the first second: what is
// soon done needs none.
#include "tools/vekmsg/terminal/progress.hpp"

#include "tools/vekmsg/terminal/platform.hpp"

#include <algorithm>
#include <cstdio>

namespace vek::tool {

progress_t::progress_t() : isShown_(isTerminal(2)) {}

void progress_t::start(std::string_view file, std::uint64_t size) {
    clear();
    file_ = file;
    size_ = size;
    begun_ = drawn_ = isShown_ ? milliseconds() : 0;
}

void progress_t::update(std::uint64_t taken) {
    if (!isShown_)
        return;
    const std::uint64_t now = milliseconds();
    if (now - begun_ < 1000 || now - drawn_ < 100)
        return;
    drawn_ = now;
    isDrawn_ = true;
    writeAll(2, "\r\x1b[K" + line(taken, now - begun_));
}

void progress_t::clear() {
    if (isDrawn_)
        writeAll(2, "\r\x1b[K");
    isDrawn_ = false;
}

std::string progress_t::line(std::uint64_t taken, std::uint64_t elapsed) const {
    const double rate = static_cast<double>(taken) / 1e3 / static_cast<double>(std::max<std::uint64_t>(elapsed, 1));
    char numbers[96];
    std::string bar;
    if (size_ == 0) {
        std::snprintf(numbers, sizeof numbers, " %.0f MB  %.0f MB/s", static_cast<double>(taken) / 1e6, rate);
    } else {
        const double part = std::min(1.0, static_cast<double>(taken) / static_cast<double>(size_));
        const double left = static_cast<double>(elapsed) / 1e3 * (1 - part) / std::max(part, 1e-9);
        std::snprintf(numbers, sizeof numbers, " %3.0f %%  %.0f MB/s  %d:%02d left", part * 100, rate,
                      static_cast<int>(left) / 60, static_cast<int>(left) % 60);
        constexpr std::size_t cells = 24;
        const auto full = static_cast<std::size_t>(part * cells);
        bar = " [" + std::string(full, '=') + std::string(cells - full, ' ') + "]";
    }
    const std::size_t room = terminalWidth() - 1;
    const std::size_t rest = std::min(room, bar.size() + std::string_view(numbers).size());
    return file_.substr(0, room - rest) + (bar + numbers).substr(0, rest);
}

} // namespace vek::tool
