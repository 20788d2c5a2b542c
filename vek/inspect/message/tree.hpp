// tree_t: one message as it stands in its text, pair by pair, and what the library's reader makes of each pair.
//
// Pairs are cut by the library's own scanner, so they are what it finds: an empty value has swallowed the next token, a
// quoted text has no quotes, a brace without its end has lost the rest. Places refer to the caller's text, which a tree
// only views: it must outlive the tree. Nodes lie in one array and refer to each other by index; the children of a node
// lie side by side. Making a tree takes linear time; unknown braces are followed for a few levels, deeper ones stay
// values. A tree may be used for one text after another, which keeps its memory. Not safe for concurrent use.
#pragma once

#include "vek/inspect/message/envelopeParts.hpp"
#include "vek/inspect/schema/schema.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// What the reader does with a pair.
enum class pairUse_t : std::uint8_t {
    assigned,  ///< its value goes to its field or element
    empty,     ///< it belongs to a field or element, but has no value: it takes the place and assigns nothing
    unknown,   ///< ignored: no such key
    duplicate, ///< ignored: a pair with this key came before
    noKey,     ///< ignored: a value alone in a body that is read by keys
    surplus,   ///< ignored: behind the last field of a positional body, or beyond the room of an array
    unread,    ///< part of something that the reader ignores or never looks into
};

struct node_t {
    static constexpr std::uint32_t none = UINT32_MAX;

    place_t key;   ///< as it stands, without quotes; see hasKey
    place_t value; ///< as it stands, without quotes, with braces; see hasValue
    place_t whole; ///< from the key to behind the separators that follow the value
    place_t lost;  ///< the rest of a body behind an opening brace without its closing one, which is in no value

    const fieldSchema_t *field = nullptr; ///< that it belongs to; of an element, its list's; null when there is none
    std::uint32_t parent = none;          ///< none for the body itself, node 0
    std::uint32_t firstChild = 0;
    std::uint32_t childCount = 0;
    std::int32_t index = -1;   ///< of an element: its number in its list, from 0
    std::uint32_t ordinal = 1; ///< of several pairs with one key, or of values without keys: the first, the second...
    std::uint16_t depth = 0;   ///< of the body 0, of its pairs 1

    pairUse_t use = pairUse_t::unread;
    bool hasKey = false;   ///< a "=" followed the key's token
    bool hasValue = false; ///< there is a token, be it an empty quoted one
    bool isKeyQuoted = false;
    bool isQuoted = false;    ///< the value stands in quotes
    bool isQuoteOpen = false; ///< the closing quote is missing
    bool isBody = false;      ///< the value is taken for a body of pairs: its children
    bool isKeyed = false;     ///< of a body: it is read by keys, since a "=" stands somewhere in it
    bool isElement = false;   ///< the value of one element of its field's list
    bool isCode = false;      ///< one character's code of a 16-bit text
    bool isCanonical = false; ///< spelt as the library spells it: KEY=value; or value, without quotes

    /// What a single value here is; `record` where a list belongs, and of what is unknown.
    fieldKind_t valueKind() const {
        return field != nullptr && (isElement || !field->isList()) ? field->kind : fieldKind_t::record;
    }
};

class tree_t {
public:
    tree_t() = default;
    /// Takes a message apart. The text may end with its NUL.
    explicit tree_t(std::string_view text) { read(text); }

    /// Takes another message apart. Throws std::bad_alloc.
    void read(std::string_view text);

    std::string_view text() const { return text_; }
    const envelopeParts_t &envelope() const { return envelope_; }

    /// The catalogue's row of the id; null when it is unknown or can't be read.
    const messageSchema_t *message() const { return message_; }
    /// The record of the message; null when there is none.
    const recordSchema_t *record() const { return message_ != nullptr ? message_->record : nullptr; }

    /// Every pair; the first node is the body. A node comes behind its parent.
    const std::vector<node_t> &nodes() const { return nodes_; }
    const node_t &body() const { return nodes_.front(); }
    std::span<const node_t> children(const node_t &node) const {
        return {nodes_.data() + node.firstChild, node.childCount};
    }
    std::uint32_t indexOf(const node_t &node) const { return static_cast<std::uint32_t>(&node - nodes_.data()); }

    std::string_view key(const node_t &node) const { return node.key.in(text_); }
    std::string_view value(const node_t &node) const { return node.value.in(text_); }

    /// The record that a body's pairs are read into: the message's, a nested one, an element's; null for lists and for
    /// what is unknown.
    const recordSchema_t *recordOf(const node_t &node) const;

    /// Where a node is: "ARRAY_CASSETTE[0].VERSION.TYPE". A pair of a positional body goes by its field's key; the
    /// second and further pairs of a key by "KEY#2"; a value that belongs to nothing by its number among the values
    /// without a key, "#1". Of the body it is empty.
    std::string path(const node_t &node) const;

    /// The node with a path that counts for the reader; null when there is none.
    const node_t *find(std::string_view path) const;

private:
    friend class treeBuilder_t;

    std::string_view text_;
    envelopeParts_t envelope_;
    const messageSchema_t *message_ = nullptr;
    std::vector<node_t> nodes_;
};

/// What a body is read into.
struct bodyTarget_t {
    enum class kind_t : std::uint8_t { unknown, record, list, codes };
    kind_t kind = kind_t::unknown;
    const recordSchema_t *record = nullptr;
    const fieldSchema_t *field = nullptr; ///< of a list or a 16-bit text

    bool isOfElements() const { return kind == kind_t::list || kind == kind_t::codes; }
};

bodyTarget_t targetOf(const tree_t &tree, const node_t &node);

/// Appends the name of a pair in its group, a step of its path: a key, "[3]", "KEY#2", "#1".
void appendName(std::string &out, const tree_t &tree, const node_t &node);

/// Appends the same to the path of the group around it, with what stands between them.
void appendStep(std::string &path, const tree_t &tree, const node_t &node);

/// Takes every value that stands at a path of its own, in text order: those that the reader uses and those that it
/// ignores; a 16-bit text, and a group with nothing in it, as one.
using takeLeaf_t = std::function<void(const std::string &path, const node_t &node)>;
void forEachLeaf(const tree_t &tree, const takeLeaf_t &take);

/// A 16-bit text, a list of codes, as UTF-8; nothing when the codes are not exactly those that the library writes for
/// that text with its terminating 0, so that nothing would be lost.
std::optional<std::string> wideText(const tree_t &tree, const node_t &node);

/// What stands in a 16-bit text up to its first 0 or its end, as UTF-8 for people; halves of characters become U+FFFD.
std::string wideTextRead(const tree_t &tree, const node_t &node);

/// The list of codes of a UTF-8 text as a body has it, "{72,105,0,}"; nothing when the text is not UTF-8.
std::optional<std::string> wideCodes(std::string_view utf8);

} // namespace vek::inspect
