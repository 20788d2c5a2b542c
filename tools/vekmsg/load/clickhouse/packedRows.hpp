// packedRows_t: rows on their way to a server, packed as they come, where this build can. So many take little memory,
// and go out again as the very same bytes.
//
// One thread at a time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vek::tool {

class packedRows_t {
public:
    /// In blocks as the server itself packs them, in zstd and without checksums; else the bytes are the rows.
#ifdef VEK_ZSTD
    static constexpr bool isPacked = true;
#else
    static constexpr bool isPacked = false;
#endif

    packedRows_t() = default;
    explicit packedRows_t(std::string_view rows) : rest_(rows) {}

    /// Adds a row, which is appended to the string that is given to `append`.
    template <class Append>
    void add(Append append) {
        constexpr std::size_t blockSize = std::size_t{1} << 20;
        append(rest_);
        if (isPacked && rest_.size() >= blockSize)
            packRest();
    }

    /// Of all rows, not packed.
    std::size_t size() const {
        return packedSize_ + rest_.size();
    }
    const std::string &bytes();
    void clear();

private:
    void packRest();

    std::string packed_, rest_;
    std::size_t packedSize_ = 0; // of the rows in it
};

} // namespace vek::tool
