#include "tools/reference/keyTable.hpp"

#include "tools/reference/markdown.hpp"
#include "tools/reference/memberPlace.hpp"
#include "vek/text/bodyWriter.hpp"

#include <algorithm>
#include <cstring>
#include <ostream>
#include <stdexcept>

namespace vek {

namespace {

fieldDescription_t describe(const textField_t &field) {
    fieldDescription_t description;
    field.describe(description);
    return description;
}

constexpr std::string_view words(fieldKind_t kind) {
    switch (kind) {
    case fieldKind_t::record:
        return "nested record";
    case fieldKind_t::integer32:
        return "long integer";
    case fieldKind_t::integer16:
        return "short integer";
    case fieldKind_t::float64:
    case fieldKind_t::pixels:
        return "double";
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

constexpr std::string_view words(listKind_t list) {
    switch (list) {
    case listKind_t::none:
        return "";
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

class keyTable_t {
public:
    keyTable_t(std::ostream &out, const recordDescription_t &record, references_t &references)
        : out_(out), record_(record), references_(references), layout_(layoutNamed(record.structure).layout) {}

    void writeRows(const textGroup_t &group, int depth) {
        for (const textField_t *field = group.firstMember(); field != nullptr; field = field->nextMember()) {
            const fieldDescription_t description = describe(*field);
            const memberPlace_t place =
                memberAt(layout_,
                         static_cast<std::size_t>(static_cast<const char *>(description.member) -
                                                  static_cast<const char *>(record_.address)),
                         description.memberSize);
            out_ << "| ";
            for (int i = 0; i < depth; ++i)
                out_ << "· ";
            out_ << code(field->key()) << " | " << kind(description, group) << " | "
                 << (place.path.empty() ? "*the base*" : code(place.path)) << " | " << code(place.type) << " | "
                 << place.offset.windows32 << " | " << place.offset.linux64 << " | "
                 << defaultValue(*field, description, place) << " |\n";
            if (description.group != nullptr)
                writeRows(*description.group, depth + 1);
        }
    }

private:
    std::string kind(const fieldDescription_t &field, const textGroup_t &group) {
        if (field.group != nullptr) {
            const auto section = references_.anchors.find(field.structure);
            if (section == references_.anchors.end())
                return "nested record";
            return joined({"nested record, as ", link(field.structure, section->second)});
        }
        if (field.kind == fieldKind_t::enumeration)
            return joined({"enumeration ", link(enumeration(field), anchorOf(field.enumeration))});
        if (field.list == listKind_t::none)
            return std::string(words(field.kind));
        const std::string count = field.countMember != nullptr ? countKey(field, group) : "";
        return joined({words(field.list), " of ", field.room >= 0 ? std::to_string(field.room) + " " : "",
                       field.visitElement != nullptr ? element(field.visitElement) : joined({words(field.kind), "s"}),
                       count.empty()          ? ""
                       : field.isCountChecked ? joined({"; at most ", count, " of them are written"})
                                              : joined({"; ", count, " of them are written, unchecked"})});
    }

    std::string_view enumeration(const fieldDescription_t &field) {
        if (field.enumeration.empty())
            throw std::runtime_error("an enumeration without a title");
        auto &known = references_.enumerations;
        if (std::none_of(known.begin(), known.end(), [&](const auto &one) { return one.names == field.names; }))
            known.push_back({field.enumeration, field.names, field.nameCount});
        return field.enumeration;
    }

    std::string element(void (*visit)(recordVisitor_t &)) {
        struct : recordVisitor_t {
            void visit(const recordDescription_t &description) override { record = description.record; }
            std::string_view record;
        } named;
        visit(named);
        const auto [section, isNew] = references_.anchors.emplace(std::string(named.record), anchorOf(named.record));
        if (isNew)
            references_.elements.push_back(visit);
        return link(code(named.record), section->second);
    }

    static std::string countKey(const fieldDescription_t &list, const textGroup_t &group) {
        for (const textField_t *field = group.firstMember(); field != nullptr; field = field->nextMember())
            if (describe(*field).member == list.countMember)
                return code(field->key());
        throw std::runtime_error("no key for the count of a list");
    }

    std::string defaultValue(const textField_t &field, const fieldDescription_t &description,
                             const memberPlace_t &place) const {
        const bool keepsItsValues = record_.record == record_.structure;
        const auto *bytes = static_cast<const char *>(description.member);
        if (description.group != nullptr)
            return "";
        if (keepsItsValues && field.isSet == 0)
            return "not set";
        if (description.names != nullptr) {
            std::int32_t value = 0;
            std::memcpy(&value, bytes, sizeof value);
            return value >= 0 && value < description.nameCount ? code(description.names[value]) : std::to_string(value);
        }
        const bool isZero = std::all_of(bytes, bytes + description.memberSize, [](char byte) { return byte == 0; });
        if (isZero && place.type.ends_with('*'))
            return "null";
        if (isZero && description.list == listKind_t::array)
            return "zero";
        bodyBuffer_t buffer(64);
        const bodyWriter_t text = field.toText(bodyWriter_t(buffer));
        return text.size() == 0 ? "empty" : code(text.text());
    }

    std::ostream &out_;
    const recordDescription_t &record_;
    references_t &references_;
    const structureLayout_t &layout_;
};

} // namespace

void writeKeyTable(std::ostream &out, const recordDescription_t &record, references_t &references) {
    out << "| Key | Kind | Member | C type | Windows | Linux | Default |\n|---|---|---|---|--:|--:|---|\n";
    keyTable_t(out, record, references).writeRows(record.fields, 0);
}

} // namespace vek
