// readable_t: the lines of a message in the readable form, also of one that is being typed: what each is about.
//
// Nothing is refused here; whether it is a message is judged by readShow(). Views its text, which must outlive it.
#pragma once

#include "tools/vekmsg/lsp/text.hpp"
#include "vek/inspect/schema/schema.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vek::tool::lsp {

/// A place in a message where keys or values stand, as the schema knows it.
struct target_t {
    const inspect::fieldSchema_t *field = nullptr;   ///< null when there is none
    const inspect::recordSchema_t *record = nullptr; ///< whose keys stand in there; null when there are none
    bool isElement = false;                          ///< of the field, a list

    /// Below a key, and in an element.
    target_t member(std::string_view key) const;
    target_t element() const;
};

struct readableLine_t {
    enum class kind_t : std::uint8_t { title, group, pair, comment, other };
    static constexpr std::size_t top = SIZE_MAX;

    place_t whole; ///< with the lines that a list goes on in, without the line end
    place_t key;   ///< as it stands: a path
    place_t value; ///< of a pair, with a comment behind it
    kind_t kind = kind_t::other;
    std::size_t indent = 0;
    std::size_t group = top; ///< the line that opens the group around
    std::string path;        ///< as tree_t::path
    target_t target;         ///< what it is about
    target_t around;         ///< the group that it stands in
};

class readable_t {
public:
    readable_t(std::string_view text, place_t piece);

    const inspect::messageSchema_t *message() const { return message_; }
    const std::vector<readableLine_t> &lines() const { return lines_; }
    std::string_view text() const { return text_; }

    /// The line that holds an offset; null when there is none.
    const readableLine_t *at(std::size_t offset) const;
    /// The key of the line that says what is at a path of the message, or of the one around; else the title.
    place_t placeOf(std::string path) const;
    /// The last line of a group: that is on a deeper level than the one that opens it.
    std::size_t lastOf(std::size_t group) const;

private:
    void addLine(place_t line);
    void addTitle(readableLine_t &line);
    void addPair(readableLine_t &line);
    std::size_t groupAt(std::size_t indent) const;
    std::size_t endOfList(std::size_t from) const;

    std::string_view text_;
    place_t piece_;
    const inspect::messageSchema_t *message_ = nullptr;
    std::vector<readableLine_t> lines_;
    std::vector<std::size_t> open_; // lines of groups
};

} // namespace vek::tool::lsp
