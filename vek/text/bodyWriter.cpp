#include "vek/text/bodyWriter.hpp"

#include <algorithm>

namespace vek {

// Doubles, so that each character is moved about once on average however long the message gets. By the C heap, since
// the very buffer is handed out in the end and freed by vekParamsDelete. When there is no memory the old buffer stays
// the writer's, which frees it.
char *bodyBuffer_t::grow(std::size_t used, std::size_t count) {
    const std::size_t room = std::max(2 * static_cast<std::size_t>(end_ - start_), used + count);
    auto *grown = static_cast<char *>(std::realloc(start_, room));
    if (grown == nullptr)
        throw std::bad_alloc();
    start_ = grown;
    end_ = grown + room;
    return grown + used;
}

} // namespace vek
