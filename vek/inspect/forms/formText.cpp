#include "vek/inspect/forms/private/formText.hpp"

#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <utility>

namespace vek::inspect {

std::string formResult_t::errorIn(std::string_view form) const {
    const std::string_view before = form.substr(0, offset);
    const auto isCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::string_view line = before.substr(before.rfind('\n') + 1);
    const auto column = std::count_if(line.begin(), line.end(), isCharacter);
    return joined({"line ", std::to_string(lines + 1), ", column ", std::to_string(column + 1), " (byte ",
                   std::to_string(before.size()), "): ", error});
}

formResult_t messageOf(const formText_t &form, void (*write)(std::string &out, const tree_t &tree),
                       formText_t (*read)(std::string_view form)) {
    if (!form.error.empty())
        return {{}, form.error, form.offset};
    if (form.text && !form.text->empty()) {
        std::string again;
        const std::string whole = *form.text + '\0'; // a tree leaves one NUL out
        write(again, tree_t(whole));
        if (read(again) == form)
            return {*form.text, {}, 0};
    }
    if (!form.id)
        return {{}, "the message has no id", 0};
    return {sealed(*form.id, form.echoTag.value_or(-1), form.sequenceNumber.value_or(0), form.body), {}, 0};
}

} // namespace vek::inspect
