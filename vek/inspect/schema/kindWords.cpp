// The kinds of keys in words for people: one table for each sort of words.
#include "vek/inspect/schema/schema.hpp"
#include "vek/inspect/words/words.hpp"

#include <iterator>

namespace vek::inspect {

namespace {

// In order of fieldKind_t and of listKind_t.
constexpr std::string_view kindNames[] = {
    "nested record", "long integer", "short integer", "double", "float",
    "pixels",        "boolean",      "enumeration",   "string", "16-bit character string"};
constexpr std::string_view listNames[] = {"list", "container", "array", "range"};

static_assert(std::size(kindNames) == static_cast<std::size_t>(fieldKind_t::text16) + 1);
static_assert(std::size(listNames) == static_cast<std::size_t>(listKind_t::range) + 1);

} // namespace

std::string_view listName(listKind_t list) {
    return listNames[static_cast<std::size_t>(list)];
}

std::string_view kindName(fieldKind_t kind) {
    return kindNames[static_cast<std::size_t>(kind)];
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

std::string_view defaultInWords(const fieldSchema_t &field) {
    switch (field.defaultKind) {
    case defaultKind_t::value:
        return field.defaultText;
    case defaultKind_t::zero:
        return "all zero";
    case defaultKind_t::null:
        return "(null)";
    case defaultKind_t::notSet:
        return "(not set)";
    default:
        return "";
    }
}

} // namespace vek::inspect
