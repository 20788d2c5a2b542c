// Rows as they go to a server: packed, where this build can.
#pragma once

#include <string>
#include <string_view>

namespace vek::tool {

struct packedRows_t {
    std::string bytes; ///< blocks as the server itself packs them, in zstd and without checksums
    bool isPacked = false;
};

/// Without zstd they are as they were. Throws std::bad_alloc.
packedRows_t packedRows(std::string_view rows);

} // namespace vek::tool
