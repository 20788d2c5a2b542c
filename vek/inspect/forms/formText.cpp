// A form that nobody changed gives back the very text that it holds: it is written again and compared to know that.
#include "vek/inspect/forms/private/formText.hpp"

#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <utility>

namespace vek::inspect {

formResult_t messageOf(const formText_t &form, const readOptions_t &options,
                       void (*write)(std::string &out, const tree_t &tree), formText_t (*read)(std::string_view form)) {
    if (!form.error.empty())
        return {{}, form.error, form.offset};
    if (form.text && !form.text->empty()) {
        std::string again;
        const std::string whole = *form.text + '\0'; // a tree leaves one NUL out
        write(again, tree_t(whole));
        formText_t own = read(again);
        own.isRaw = form.isRaw;
        if (own == form)
            return {*form.text, {}, 0, {}, form.isRaw || options.isRaw};
    }
    if (!form.id && !options.id)
        return {{}, "the message has no id; say which message it is", 0, {}, false, missing_t::id};
    const std::int32_t id = options.id.value_or(form.id.value_or(0));
    const messageSchema_t *message = schema().find(id);
    const recordSchema_t *record = message != nullptr ? message->record : nullptr;
    const bool isRaw = form.isRaw || options.isRaw;
    if (!isRaw && !form.record.empty() && (record == nullptr || record->name != form.record))
        return {{},
                joined({"the id ", std::to_string(id), " is that of ", record != nullptr ? record->name : "no record",
                        ", not of ", form.record}),
                form.body.offset};
    return messageSaid({id, form.echoTag.value_or(-1), form.sequenceNumber.value_or(0)}, form.body, isRaw);
}

} // namespace vek::inspect
