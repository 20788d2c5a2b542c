// The forms of a message for people and programs: readable, JSON, flat. Each is lossless both ways.
//
// A form shows what stands in the text, by kind. Where its own words don't give the text again byte for byte (a damaged
// envelope, quotes, pairs twice, values without keys), it holds the text as well; reading the form gives that text as
// long as the rest of the form was not changed, and else a message made from the rest, when a host would read just
// that. Bytes that are no UTF-8 are kept in all forms. Pure functions; what is appended to a string throws
// std::bad_alloc at most.
#pragma once

#include "vek/inspect/check/bodyBuilder.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"
#include "vek/inspect/log/unwrapping.hpp"
#include "vek/inspect/message/tree.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// What show() puts in front of and behind pieces of its lines: a terminal's colour sequences, say. Empty by default.
struct showStyles_t {
    std::string_view title, key, number, text, name, comment, warning, error, reset;
};

struct showOptions_t {
    showStyles_t styles;
    std::span<const finding_t> findings; ///< shown as comments behind their lines
    /// Another message that this one is compared with: the previous one of its kind, or the text that it was read from.
    const tree_t *other = nullptr;
    bool onlyChanges = false; ///< leave out what is the same as in `other`; such a form is not read back
    bool noteChanges = false; ///< say behind a line what `other` has there, when it is something else
    std::size_t width = 100;  ///< lists are broken into lines of about so many columns
};

/// The readable form, with a line end behind each line:
///
///     focusValue_t 4112, length 80, echo 7, sequence 41
///       MEDIA_NAME  = Northlight violet 0.3
///       FOCUS_VALUE = 1024.500000
void appendShow(std::string &out, const tree_t &tree, const showOptions_t &options = {});

struct jsonOptions_t {
    std::span<const finding_t> findings; ///< for "problems"
    bool hasTree = false; ///< also "nodes": every pair with its byte places, for a host that draws the tree
};

/// One object without a line end, in this order: "id", "name" (of the record), "echo", "seq", "length", "problems" when
/// there are any, "text" when the rest does not say it all, and the body as an object under its record's name ("body"
/// for an id without a record). Values are typed where the number or boolean written again is the very text; else they
/// are strings of what stands there. 16-bit texts are strings.
void appendJson(std::string &out, const tree_t &tree, const jsonOptions_t &options = {});

/// The members of such an object, for one that holds others too.
void appendJsonMembers(jsonAppender_t &json, const tree_t &tree, const jsonOptions_t &options = {});

/// The members of a finding.
void appendFinding(jsonAppender_t &json, const finding_t &finding);

/// The flat form: "@id = 4112", "@echo = 7", "@seq = 41", then "PATH = value" a line.
void appendFlat(std::string &out, const tree_t &tree);

/// The characters that appendJsonString() has, without quotes and escapes: bytes as well-formed UTF-8. `room` is used
/// when they aren't.
std::string_view wellFormed(std::string_view bytes, std::string &room);
/// And back: the bytes that such characters stand for.
std::string jsonBytes(std::string_view text);

/// The bytes that such characters stand for.
std::string jsonBytes(std::string_view text);

/// What a text looks like.
enum class form_t : std::uint8_t { message, show, json, flat, none };

/// Whether it is one of the forms for people and programs, so that messages are read from it by readForm().
constexpr bool isForm(form_t form) {
    return form == form_t::show || form == form_t::json || form == form_t::flat;
}

struct readOptions_t {
    std::optional<std::int32_t> id; ///< the message's, instead of the form's own
    bool isRaw = false;             ///< the words as they are, whatever a host will read
};

/// One message in each form: as it was put into the form, when nothing of it was changed; else one that is made of its
/// words, see messageSaid(). A key that is not there is absent in the message too: a host reads 0 or an empty text.
/// Colours must not be in it. Comments are skipped.
formResult_t readShow(std::string_view form, const readOptions_t &options = {});
formResult_t readJson(std::string_view form, const readOptions_t &options = {});
formResult_t readFlat(std::string_view form, const readOptions_t &options = {});
/// Of a message in no form, the text itself.
formResult_t readForm(std::string_view text, form_t form, const readOptions_t &options = {});

/// Judges by the first characters that are no white space, comment or byte order mark; a log is `none`, and so is a
/// text with messages beside those in the form.
form_t formOf(std::string_view text);

/// How a log is wrapped, by its start; `isAll`: the start is all of it. One message alone is what a host gets of it,
/// escapes and all, and forms have escapes of their own.
wrapping_t wrappingOfLog(std::string_view start, bool isAll);

/// The stretches of a text that are one message in a form each (JSON lines, several messages of show one behind the
/// other). For form_t::message and none, use the log scanner.
std::vector<std::string_view> splitForms(std::string_view text, form_t form);

/// The catalogue as one JSON object: every message, every enumeration, and every record with its keys, kinds, members
/// and defaults.
void appendCatalogueJson(std::string &out);

} // namespace vek::inspect
