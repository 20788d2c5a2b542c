// A block: 16 bytes of checksum, a method, the sizes packed (with method and sizes) and plain in 32 bits, the packed
// bytes.
#include "tools/vekmsg/load/clickhouse/packedRows.hpp"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

#ifdef VEK_ZSTD
#    include <zstd.h>
#endif

namespace vek::tool {

const std::string &packedRows_t::bytes() {
    if (!isPacked)
        return rest_;
    packRest();
    return packed_;
}

void packedRows_t::clear() {
    packed_.clear();
    rest_.clear();
    packedSize_ = 0;
}

#ifdef VEK_ZSTD

namespace {

constexpr std::size_t checksumSize = 16, headSize = 9;

void putSize(char *out, std::size_t size) {
    for (unsigned byte = 0; byte < 4; ++byte)
        out[byte] = static_cast<char>(size >> (8 * byte));
}

struct releaser_t {
    void operator()(ZSTD_CCtx *context) const { ZSTD_freeCCtx(context); }
};

} // namespace

void packedRows_t::packRest() {
    constexpr std::size_t mostBytes = std::size_t{1} << 26; // of a block; a row may be long
    constexpr char method = '\x90';
    constexpr int level = -1; // half the time of level 1, for a tenth more bytes
    thread_local const std::unique_ptr<ZSTD_CCtx, releaser_t> context(ZSTD_createCCtx());
    if (!context)
        throw std::bad_alloc();
    for (std::string_view rows = rest_; !rows.empty(); rows.remove_prefix(std::min(mostBytes, rows.size()))) {
        const std::string_view block = rows.substr(0, mostBytes);
        const std::size_t begin = packed_.size(), room = ZSTD_compressBound(block.size());
        packed_.resize(begin + checksumSize + headSize + room);
        char *const head = packed_.data() + begin + checksumSize;
        const std::size_t size =
            ZSTD_compressCCtx(context.get(), head + headSize, room, block.data(), block.size(), level);
        if (ZSTD_isError(size) != 0)
            throw std::bad_alloc();
        head[0] = method;
        putSize(head + 1, size + headSize);
        putSize(head + 5, block.size());
        packed_.resize(begin + checksumSize + headSize + size);
    }
    packedSize_ += rest_.size();
    rest_.clear();
}

#else

void packedRows_t::packRest() {}

#endif

} // namespace vek::tool
