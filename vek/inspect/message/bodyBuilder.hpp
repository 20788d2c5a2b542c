// bodyBuilder_t: a body in the library's spelling, from what a form has: groups, and values by name.
//
// The record says how values are spelt. Nothing is left out: names that the record lacks become keys too.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// How a form gives a value.
enum class spelling_t : std::uint8_t {
    words, ///< of a text its characters, else what is to stand there
    wide,  ///< a 16-bit text as UTF-8
};

class bodyBuilder_t {
public:
    /// Deeper groups are refused by the readers of forms.
    static constexpr std::size_t deepest = 64;

    /// `record` may be null: then nothing is known.
    explicit bodyBuilder_t(const recordSchema_t *record);

    /// Without a name: an element, or a value alone. A name may end in "#2", which is no part of the key.
    void begin(std::string_view name);
    void end();
    void value(std::string_view name, std::string_view text, spelling_t spelling = spelling_t::words);

    std::size_t depth() const { return levels_.size(); }

    /// Whether the innermost group is a list, whose values have no names.
    bool isInList() const { return !levels_.empty() && levels_.back().target.kind == bodyTarget_t::kind_t::list; }

    /// The body; of no values the empty one. The groups must have ended.
    std::string body() const { return text_.size() == 1 ? std::string() : text_ + '}'; }

private:
    struct level_t {
        bodyTarget_t target;
        bool isKeyed; ///< it stands under a key in the group around it
    };

    const fieldSchema_t *fieldOf(std::string_view key) const;
    /// Writes the key; tells whether there is one.
    bool putKey(std::string_view &name);
    void putEnd(bool isKeyed) { text_ += isKeyed ? ';' : ','; }

    std::string text_ = "{";
    bodyTarget_t top_;
    std::vector<level_t> levels_;
};

} // namespace vek::inspect
