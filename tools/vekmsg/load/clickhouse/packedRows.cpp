// A block: 16 bytes of checksum, a method, the sizes packed (with method and sizes) and plain in 32 bits, the packed
// bytes.
#include "tools/vekmsg/load/clickhouse/packedRows.hpp"

#include <algorithm>
#include <cstdint>
#include <new>

#ifdef VEK_ZSTD
#    include <zstd.h>
#endif

namespace vek::tool {

#ifdef VEK_ZSTD

namespace {

constexpr std::size_t checksumSize = 16, headSize = 9;

void putSize(char *out, std::size_t size) {
    for (unsigned byte = 0; byte < 4; ++byte)
        out[byte] = static_cast<char>(size >> (8 * byte));
}

} // namespace

packedRows_t packedRows(std::string_view rows) {
    constexpr std::size_t blockSize = std::size_t{1} << 20;
    constexpr char method = '\x90';
    packedRows_t packed{{}, true};
    for (; !rows.empty(); rows.remove_prefix(std::min(blockSize, rows.size()))) {
        const std::string_view block = rows.substr(0, blockSize);
        const std::size_t begin = packed.bytes.size(), room = ZSTD_compressBound(block.size());
        packed.bytes.resize(begin + checksumSize + headSize + room);
        char *const head = packed.bytes.data() + begin + checksumSize;
        const std::size_t size = ZSTD_compress(head + headSize, room, block.data(), block.size(), 1);
        if (ZSTD_isError(size) != 0)
            throw std::bad_alloc();
        head[0] = method;
        putSize(head + 1, size + headSize);
        putSize(head + 5, block.size());
        packed.bytes.resize(begin + checksumSize + headSize + size);
    }
    return packed;
}

#else

packedRows_t packedRows(std::string_view rows) {
    return {std::string(rows), false};
}

#endif

} // namespace vek::tool
