// bodyBuilder_t: a body in the library's spelling and order, from what a form says; and the message that is made of it,
// which is judged before it is handed out.
//
// What is written is what a host reads, or it is refused: keys in the order of the record, values spelt as the library
// spells them, what is empty left out, a count put beside a list that came without.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/message/said.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// Why something is not written.
struct refusal_t {
    std::string words;      ///< with path, reason and remedy
    std::size_t offset = 0; ///< where in the form, in bytes
};

class bodyBuilder_t {
public:
    /// `record` may be null: then nothing is known, and all is put as it is said. `isRaw`: so it is anyway, only texts
    /// and 16-bit texts are put into codes.
    bodyBuilder_t(const said_t &said, const recordSchema_t *record, bool isRaw);

    /// Of no values the empty one.
    const std::string &body() const { return text_; }
    const std::vector<refusal_t> &refusals() const { return refusals_; }

    /// Whether a message's tree has exactly what was put, each value where it was put; else where the form says what
    /// it has not.
    bool isReadIn(const tree_t &tree, std::size_t &offset) const;
    /// Where in the form that stands which is at a place of the body.
    std::size_t offsetOf(std::size_t place) const;

private:
    struct piece_t {
        std::size_t start, end; // of the value, in the body
        std::size_t offset;     // in the form
    };

    void putMembers(const said_t &group, const bodyTarget_t &around);
    void putRecord(const said_t &group, const recordSchema_t &record);
    void put(const said_t &said, const bodyTarget_t &around, const fieldSchema_t *field, std::size_t ordinal);
    bool putValue(const said_t &said, const bodyTarget_t &around, const fieldSchema_t *field);
    bool putGroup(const said_t &said, const bodyTarget_t &target);
    bool putWide(const said_t &said);
    bool refuse(const said_t &said, std::string_view why);

    bool isRaw_;
    std::string text_ = "{";
    std::string path_;
    std::vector<piece_t> pieces_;
    std::vector<refusal_t> refusals_;
};

/// What is missing, when who asks can give it.
enum class missing_t : std::uint8_t { nothing, id, numbers };

/// What making a message gives.
struct formResult_t {
    std::string text;                 ///< the message, without a NUL; empty when there is none
    std::string error{};              ///< why there is none, for people; empty when there is one
    std::size_t offset = 0;           ///< where in the form, in bytes
    std::vector<refusal_t> further{}; ///< what else is wrong
    bool isRaw = false;               ///< it was wanted as it is, whatever a host will read
    missing_t missing = missing_t::nothing;

    bool isRead() const { return error.empty(); }
    /// The error with its place in the form: "line 3, column 7 (byte 41): ...". Bytes count from 0.
    std::string errorIn(std::string_view form) const;
};

/// Nothing made, for these reasons, of which there is one at least.
formResult_t refused(std::vector<refusal_t> refusals);

/// The message that the words of a form make: one in which check() finds no error, and which the library reads as
/// exactly what was said; or the reasons why there is none. `isRaw`: whatever it will be read as.
formResult_t messageSaid(const envelopeNumbers_t &numbers, const said_t &said, bool isRaw = false);

/// Why a message would be read as something else than it says, in the words of check(), with the path; empty when a
/// host reads it as it is; places are in its text. `isAnew`: a count that is not its list's is refused too.
std::vector<refusal_t> refusalsOf(const tree_t &tree, bool isAnew = false);

/// Whether a message is spelt throughout as the library spells messages. Its keys and values may be anything.
bool isPlain(const tree_t &tree);

/// Whether the words of a form say all of a message: then messageSaid() makes the very text of them.
bool isSaidByItsWords(const tree_t &tree);

} // namespace vek::inspect
