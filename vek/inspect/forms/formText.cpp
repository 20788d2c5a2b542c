#include "vek/inspect/forms/private/formText.hpp"

#include "vek/inspect/message/written.hpp"

#include <utility>

namespace vek::inspect {

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
