// expression_t: which messages are meant, by their values: "FOCUS_VALUE >= 3 and not MEDIA_NAME ~ violet".
//
//     PATH                     the message has it
//     PATH = VALUE   == !=     the same, or not; numbers as numbers
//     PATH < VALUE   <= > >=   less, greater; texts by their bytes
//     PATH ~ PART              the value contains the part
//     PATH =~ REGEX            a regular expression (of JavaScript) is found in the value
//     not, and, or, ( )        in this order; also ! && ||
//
// Paths are those of tree_t::path(), with [*] for any element, and @id, @echo, @seq, @length. What a comparison asks of
// a path that a message lacks does not hold. A value ends in front of "and", "or" and the ")" of an open bracket; in
// quotes (of either kind, with \ in front of those within) it may be anything.
//
// Never changes once it is read, and may then be used from several threads.
#pragma once

#include "vek/inspect/message/place.hpp"
#include "vek/inspect/message/tree.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// Why an expression can't be used, and where.
struct expressionError_t {
    std::string words;
    place_t place; ///< in the expression

    /// The words, and below them the expression with the place underlined.
    std::string inText(std::string_view expression) const;
};

class expression_t {
public:
    /// A step of a path: a key, or an element.
    struct step_t {
        std::string name; ///< as it stands in paths; empty for an element
        bool isAny = false;
        std::int32_t index = 0; ///< of the element, unless it is any one
    };
    enum class comparison_t : std::uint8_t {
        isThere,
        equal,
        different,
        less,
        atMost,
        greater,
        atLeast,
        contains,
        matches
    };
    struct regex_t;
    struct condition_t {
        std::string path;
        std::vector<step_t> steps; ///< none for a header number
        comparison_t comparison = comparison_t::isThere;
        std::string value;
        std::optional<double> number; ///< that the value is
        std::shared_ptr<const regex_t> regex;
        place_t pathPlace, valuePlace;
    };

    /// Reads an expression that is to choose among the messages of these ids (none: of all). One that can't be read,
    /// and one with a comparison that no such message can ever pass, is an error. Throws std::bad_alloc.
    std::optional<expressionError_t> read(std::string_view text, std::span<const std::int32_t> ids = {});

    /// Whether a message is meant; before anything was read, all are.
    bool holds(const tree_t &tree) const { return terms_.empty() || holds(tree, terms_.back()); }

private:
    friend class expressionReader_t;

    /// A condition, or what joins the terms in front of it.
    struct term_t {
        enum class kind_t : std::uint8_t { condition, negation, conjunction, disjunction };
        kind_t kind = kind_t::condition;
        std::size_t left = 0, right = 0; ///< terms; of a condition, its number
    };
    bool holds(const tree_t &tree, const term_t &term) const;

    std::vector<condition_t> conditions_;
    std::vector<term_t> terms_; ///< the last one is the whole
};

/// A text as a number, when all of it is one.
std::optional<double> asNumber(std::string_view text);

} // namespace vek::inspect
