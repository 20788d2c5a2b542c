// What every form has in common when it is read: header numbers, what is said of the body, and the text that may stand
// beside them.
#pragma once

#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/message/said.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

struct formText_t {
    std::optional<std::int32_t> id, echoTag, sequenceNumber;
    std::string record;              ///< the body's name, when the form gives it
    std::optional<std::string> text; ///< the message's own, when the form's words don't say it all
    said_t body;
    bool isRaw = false; ///< the form wants its words as they are
    std::string error;
    std::size_t offset = 0;

    bool operator==(const formText_t &) const = default;
};

/// The message of a form that was read: its own text when the rest is what `write` and `read` make of that text, else
/// one that is made of the words.
formResult_t messageOf(const formText_t &form, const readOptions_t &options,
                       void (*write)(std::string &out, const tree_t &tree), formText_t (*read)(std::string_view form));

} // namespace vek::inspect
