// Any bytes as a form, split into forms and sealed: read, or refused with a reason; what was read is read again from
// every form of it.
#include "fuzz/fuzzInput.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/forms/forms.hpp"

using namespace vek::test;
using namespace vek::inspect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text = textOf(data, size);
    const form_t form = formOf(text);
    const formResult_t result = readForm(text, form);
    if (result.isRead() == result.text.empty() || result.offset > size)
        expectSame(text, "a text or a reason", result.error);
    if (result.isRead()) {
        const std::string whole = result.text + '\0'; // a tree leaves one NUL out
        std::string flat;
        appendFlat(flat, tree_t(whole));
        expectSame(text, result.text, readFlat(flat).text);
    }
    for (const std::string_view part : splitForms(text, form))
        if (part.data() < text.data() || part.data() + part.size() > text.data() + size)
            expectSame(text, "parts of the text", part);
    const formResult_t sealed = seal(text);
    if (sealed.isRead() == sealed.text.empty())
        expectSame(text, "a sealed text or a reason", sealed.error);
    return 0;
}
