// context_t: what stands at an offset of a document, or what may be written there, in whatever form.
#pragma once

#include "tools/vekmsg/lsp/pieces.hpp"
#include "tools/vekmsg/lsp/readable.hpp"

#include <string_view>
#include <vector>

namespace vek::tool::lsp {

struct context_t {
    enum class kind_t : std::uint8_t { nothing, message, key, value };

    kind_t kind = kind_t::nothing;
    const inspect::messageSchema_t *message = nullptr; ///< null for an unknown one
    place_t token;                                     ///< the word; of what is being typed, up to its end
    target_t target;                                   ///< what the key or value is about
    target_t group;                                    ///< of a key: where it stands
    std::vector<std::string_view> keys;                ///< of a key: the others in its group
    bool hasEquals = false;                            ///< of a key: a "=" follows
    bool isReadable = false;
};

context_t contextAt(std::string_view text, const piece_t &piece, std::size_t offset);

} // namespace vek::tool::lsp
