// progress_t: how far the reading of a file is, with rate and time left, on a terminal when it takes over a second.
//
// One thread at a time.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vek::tool {

class progress_t {
public:
    progress_t();
    ~progress_t() { clear(); }
    progress_t(const progress_t &) = delete;
    progress_t &operator=(const progress_t &) = delete;

    /// A file begins; `size` 0 when it is unknown.
    void start(std::string_view file, std::uint64_t size);
    void update(std::uint64_t taken);
    /// Takes the bar away, in front of other output.
    void clear();

private:
    std::string line(std::uint64_t taken, std::uint64_t elapsed) const;

    const bool isShown_; // there is a terminal
    bool isDrawn_ = false;
    std::string file_;
    std::uint64_t size_ = 0, begun_ = 0, drawn_ = 0;
};

} // namespace vek::tool
