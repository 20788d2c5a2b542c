#include "vek/inspect/schema/schema.hpp"
#include "vek/inspect/words/words.hpp"

namespace vek::inspect {

std::string_view listName(listKind_t list) {
    switch (list) {
    case listKind_t::growable:
        return "list";
    case listKind_t::container:
        return "container";
    case listKind_t::array:
        return "array";
    case listKind_t::range:
        break;
    }
    return "range";
}

std::string_view kindName(fieldKind_t kind) {
    switch (kind) {
    case fieldKind_t::record:
        return "nested record";
    case fieldKind_t::integer32:
        return "long integer";
    case fieldKind_t::integer16:
        return "short integer";
    case fieldKind_t::float64:
        return "double";
    case fieldKind_t::pixels:
        return "pixels";
    case fieldKind_t::float32:
        return "float";
    case fieldKind_t::boolean:
        return "boolean";
    case fieldKind_t::enumeration:
        return "enumeration";
    case fieldKind_t::text:
        return "string";
    case fieldKind_t::text16:
        break;
    }
    return "16-bit character string";
}

std::string kindInWords(const fieldSchema_t &field) {
    if (!field.isList()) {
        const std::string_view enumeration = field.words().title;
        return joined({kindName(field.kind), enumeration.empty() ? "" : " ", enumeration});
    }
    const std::string room = field.list->room ? joined({std::to_string(*field.list->room), " "}) : std::string();
    const std::string elements =
        field.record() != nullptr ? std::string(field.record()->name) : joined({kindName(field.kind), "s"});
    std::string words = joined({listName(field.list->kind), " of ", room, elements});
    if (field.counter() == nullptr)
        return words;
    return field.list->isCountChecked ? joined({words, "; at most ", field.counter()->key, " of them are written"})
                                      : joined({words, "; ", field.counter()->key, " of them are written, unchecked"});
}

} // namespace vek::inspect
