// pieces_t: the messages of a document, each where it stands, with what is wrong with it.
//
// A document is what vekmsg check takes a file of the same bytes for: a log, one message alone, or messages in the
// readable form. When it changes, only what the change may have touched is looked for again, and only messages that it
// did touch are judged again. One thread at a time.
#pragma once

#include "tools/vekmsg/lsp/text.hpp"
#include "vek/inspect/check/check.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vek::tool::lsp {

/// Something wrong with a piece.
struct problem_t {
    place_t place; ///< in the document
    inspect::severity_t severity{};
    std::optional<inspect::findingCode_t> code; ///< none: why a form is no message
    std::string words;
    std::optional<inspect::remedy_t> remedy{}; ///< its place is in the piece
};

enum class pieceKind_t : std::uint8_t {
    message,  ///< in a log
    alone,    ///< the whole document is one message
    readable, ///< in the readable form
};

struct piece_t {
    place_t place; ///< in the document
    pieceKind_t kind = pieceKind_t::message;
    bool isJudged = false;
    std::size_t errors = 0, warnings = 0; ///< once it is judged

    std::size_t count() const { return errors + warnings; }
};

/// The first problems of a piece, by their places in the document, and how many there are: they are counted in `piece`.
std::vector<problem_t> problemsOf(std::string_view text, piece_t &piece, std::size_t most);

/// A stretch of a text that was replaced: in the old text up to `oldEnd`, in the new one up to `newEnd`.
struct change_t {
    std::size_t start = 0, oldEnd = 0, newEnd = 0;

    /// This one and then another one, as one.
    void join(const change_t &later);
};

class pieces_t {
public:
    explicit pieces_t(std::string_view text) { find(text, {0, 0, text.size()}); }

    /// Looks at a text that was changed.
    void find(std::string_view text, const change_t &change);

    const std::vector<piece_t> &all() const { return pieces_; }
    /// The one that holds an offset, or ends there; null when there is none.
    const piece_t *at(std::size_t offset) const;
    bool isReadable() const { return !pieces_.empty() && pieces_.front().kind == pieceKind_t::readable; }

    /// How many problems there are, and the first ones: errors in front of warnings when not all are shown.
    std::size_t problemCount() const;
    std::vector<problem_t> problems(std::string_view text, std::size_t most) const;

private:
    std::vector<piece_t> pieces_;
    bool isLog_ = false;
};

} // namespace vek::tool::lsp
