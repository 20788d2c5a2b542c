// Any bytes as a form, split into forms and sealed, and a message in every form whose words alone count: refused with a
// reason, or read as just that.
#include "fuzz/fuzzInput.hpp"
#include "tests/support/promises.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/forms/forms.hpp"

using namespace vek::test;
using namespace vek::inspect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text = textOf(data, size);
    const form_t form = formOf(text);
    expectSame(text, "", form == form_t::message ? brokenOfWords(text) : brokenOfForm(text));
    if (const formResult_t result = readForm(text, form); result.isRead()) {
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
