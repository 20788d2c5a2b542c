#include "tools/reference/keyTable.hpp"

#include "tools/reference/markdown.hpp"

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace vek {

using namespace inspect;

namespace {

std::string enumerationLink(const fieldSchema_t &field, references_t &references) {
    if (field.words().title.empty())
        throw std::runtime_error("an enumeration without a title");
    auto &known = references.enumerations;
    if (std::none_of(known.begin(), known.end(),
                     [&](const auto *one) { return one->words().names.data() == field.words().names.data(); }))
        known.push_back(&field);
    return joined({"enumeration ", link(field.words().title, anchorOf(field.words().title))});
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
    if (field.isList() && field.record() != nullptr)
        replace(field.record()->name, elementLink(*field.record(), references));
    if (field.counter() != nullptr)
        replace(field.counter()->key, code(field.counter()->key));
    const std::string_view nested = field.isList() || field.record() == nullptr ? "" : field.record()->structure;
    if (const auto section = references.anchors.find(nested); section != references.anchors.end())
        words += joined({", as ", link(nested, section->second)});
    return words;
}

// Of a container with the item that it holds.
std::string typeOf(const fieldSchema_t &field) {
    if (!field.isList(listKind_t::container))
        return std::string(field.member.type);
    return joined({"Container<", field.record() != nullptr ? field.record()->structure : "string_t", ">"});
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

// A nested record that has a section of its own is indexed there.
void writeRows(std::ostream &out, const recordSchema_t &record, const std::string &section, references_t &references,
               int depth) {
    const bool isIndexed = depth == 0 || !references.anchors.contains(record.structure);
    for (const fieldSchema_t &field : record.fields) {
        if (field.member.type.empty())
            throw std::runtime_error(joined({"no member for ", field.key, " in ", record.name}));
        const std::string kind = kindOf(field, references);
        if (isIndexed)
            references.keys[field.key][kind.substr(0, kind.find(';'))].push_back(section);
        out << "| ";
        for (int i = 0; i < depth; ++i)
            out << "· ";
        out << code(field.key) << " | " << kind << " | "
            << (field.member.path.empty() ? "*the base*" : code(field.member.path)) << " | " << code(typeOf(field))
            << " | " << defaultOf(field) << " |\n";
        if (field.record() != nullptr && !field.isList())
            writeRows(out, *field.record(), section, references, depth + 1);
    }
}

} // namespace

void writeKeyTable(std::ostream &out, const recordSchema_t &record, std::string_view section,
                   references_t &references) {
    out << "| Key | Kind | Member | C type | Default |\n|---|---|---|---|---|\n";
    writeRows(out, record, link(section, anchorOf(section)), references, 0);
}

void writeKeyIndex(std::ostream &out, const references_t &references) {
    out << "| Key | Kind | In |\n|---|---|---|\n";
    for (const auto &[key, meanings] : references.keys)
        for (const auto &[kind, sections] : meanings) {
            out << "| " << code(key) << " | " << kind << " |";
            for (const std::string &section : sections)
                out << (&section == sections.data() ? " " : ", ") << section;
            out << " |\n";
        }
}

} // namespace vek
