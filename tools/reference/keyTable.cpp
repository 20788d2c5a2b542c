#include "tools/reference/keyTable.hpp"

#include "tools/reference/markdown.hpp"

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace vek {

using namespace inspect;

namespace {

std::string enumerationLink(const fieldSchema_t &field, references_t &references) {
    if (field.enumeration.empty())
        throw std::runtime_error("an enumeration without a title");
    auto &known = references.enumerations;
    if (std::none_of(known.begin(), known.end(),
                     [&](const auto *one) { return one->names.data() == field.names.data(); }))
        known.push_back(&field);
    return joined({"enumeration ", link(field.enumeration, anchorOf(field.enumeration))});
}

std::string elementLink(const recordSchema_t &record, references_t &references) {
    const auto [section, isNew] = references.anchors.emplace(std::string(record.name), anchorOf(record.name));
    if (isNew)
        references.elements.push_back(&record);
    return link(code(record.name), section->second);
}

// The kind in words, with links where the words name a section.
std::string kindOf(const fieldSchema_t &field, references_t &references) {
    if (field.kind == fieldKind_t::enumeration && !field.isList())
        return enumerationLink(field, references);
    std::string words = kindInWords(field);
    const auto replace = [&words](std::string_view word, const std::string &by) {
        if (const std::size_t at = words.find(word); at != std::string::npos)
            words.replace(at, word.size(), by);
    };
    if (field.isList() && field.record != nullptr)
        replace(field.record->name, elementLink(*field.record, references));
    if (field.countField != nullptr)
        replace(field.countField->key, code(field.countField->key));
    if (const auto section = references.anchors.find(field.structure); section != references.anchors.end())
        words += joined({", as ", link(field.structure, section->second)});
    return words;
}

// Of a container with the item that it holds.
std::string typeOf(const fieldSchema_t &field) {
    if (field.list != listKind_t::container)
        return std::string(field.member.type);
    return joined({"Container<", field.record != nullptr ? field.record->structure : "string_t", ">"});
}

std::string defaultOf(const fieldSchema_t &field) {
    switch (field.defaultKind) {
    case defaultKind_t::record:
        return "";
    case defaultKind_t::value:
        return field.kind == fieldKind_t::enumeration && field.valueOf(field.defaultText) < 0 ? field.defaultText
                                                                                              : code(field.defaultText);
    case defaultKind_t::zero:
        return "zero";
    case defaultKind_t::null:
        return "null";
    case defaultKind_t::notSet:
        return "not set";
    case defaultKind_t::empty:
        break;
    }
    return "empty";
}

void writeRows(std::ostream &out, const recordSchema_t &record, references_t &references, int depth) {
    for (const fieldSchema_t &field : record.fields) {
        if (field.member.type.empty())
            throw std::runtime_error(joined({"no member for ", field.key, " in ", record.name}));
        out << "| ";
        for (int i = 0; i < depth; ++i)
            out << "· ";
        out << code(field.key) << " | " << kindOf(field, references) << " | "
            << (field.member.path.empty() ? "*the base*" : code(field.member.path)) << " | " << code(typeOf(field))
            << " | " << field.member.windows32 << " | " << field.member.linux64 << " | " << defaultOf(field) << " |\n";
        if (field.record != nullptr && !field.isList())
            writeRows(out, *field.record, references, depth + 1);
    }
}

} // namespace

void writeKeyTable(std::ostream &out, const recordSchema_t &record, references_t &references) {
    out << "| Key | Kind | Member | C type | Windows | Linux | Default |\n|---|---|---|---|--:|--:|---|\n";
    writeRows(out, record, references, 0);
}

} // namespace vek
