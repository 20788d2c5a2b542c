// What every form has in common when it is read: header numbers, a body, and the text that may stand beside them.
#pragma once

#include "vek/inspect/forms/forms.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

struct formText_t {
    std::optional<std::int32_t> id, echoTag, sequenceNumber;
    std::optional<std::string> text; ///< the message's own, when the form's words don't say it all
    std::string body;
    std::string error;
    std::size_t offset = 0;

    bool operator==(const formText_t &) const = default;
};

/// The message of a form that was read: its own text when the rest is what `write` and `read` make of that text, else a
/// sealed message.
formResult_t messageOf(const formText_t &form, void (*write)(std::string &out, const tree_t &tree),
                       formText_t (*read)(std::string_view form));

} // namespace vek::inspect
