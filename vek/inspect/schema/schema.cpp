// Looking things up in the schema: it is small, so that plain walks over it are fast enough for people.
#include "vek/inspect/schema/schema.hpp"

#include "vek/inspect/schema/private/schemaBuilder.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"
#include "vek/vek_std/std_sys/vek_lasting.hpp"

#include <algorithm>
#include <set>

namespace vek::inspect {

namespace {

bool isSameWord(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char a, char b) { return asciiToLower(a) == asciiToLower(b); });
}

// Whether a word names the message in one of the ways that people may.
bool isNamed(const messageSchema_t &message, std::string_view word) {
    if (word == std::to_string(message.id))
        return true;
    if (message.record == nullptr)
        return false;
    constexpr std::string_view prefix = "VEK_MSG_", ending = "_t";
    const std::string_view name = message.record->name;
    return isSameWord(word, message.constant) || isSameWord(word, message.constant.substr(prefix.size())) ||
           isSameWord(word, name) ||
           (name.ends_with(ending) && isSameWord(word, name.substr(0, name.size() - ending.size()))) ||
           isSameWord(word, message.record->structure);
}

void addUses(const messageSchema_t &message, const recordSchema_t &record, const std::string &front,
             std::string_view key, std::vector<keyUse_t> &uses) {
    for (const fieldSchema_t &field : record.fields) {
        const std::string path = front + std::string(field.key);
        if (isSameWord(field.key, key))
            uses.push_back({&message, &field, path});
        if (field.record() != nullptr)
            addUses(message, *field.record(), path + (field.isList() ? "[]." : "."), key, uses);
    }
}

void addKeys(const recordSchema_t &record, std::set<std::string_view> &keys) {
    for (const fieldSchema_t &field : record.fields) {
        keys.insert(field.key);
        if (field.record() != nullptr)
            addKeys(*field.record(), keys);
    }
}

} // namespace

std::int32_t fieldSchema_t::valueOf(std::string_view name) const {
    const std::span<const char *const> names = words().names;
    const auto found = std::find(names.begin(), names.end(), name);
    return found != names.end() ? static_cast<std::int32_t>(found - names.begin()) : -1;
}

const recordSchema_t *fieldSchema_t::record() const {
    const auto *found = std::get_if<const recordSchema_t *>(&details);
    return found != nullptr ? *found : nullptr;
}

enumWords_t fieldSchema_t::words() const {
    const auto *found = std::get_if<enumWords_t>(&details);
    return found != nullptr ? *found : enumWords_t();
}

std::optional<std::int32_t> fieldSchema_t::textRoom() const {
    const auto *found = std::get_if<arrayText_t>(&details);
    return found != nullptr ? std::optional(found->room) : std::nullopt;
}

std::string_view recordSchema_t::purpose() const {
    const std::size_t end = about.find(". ");
    return about.substr(0, end == std::string_view::npos ? end : end + 1);
}

const fieldSchema_t *recordSchema_t::find(std::string_view key, std::size_t hint) const {
    if (hint < fields.size() && fields[hint].key == key)
        return &fields[hint];
    const auto found =
        std::find_if(fields.begin(), fields.end(), [key](const auto &field) { return field.key == key; });
    return found != fields.end() ? &*found : nullptr;
}

schema_t::schema_t() {
    schemaBuilder_t(*this).build();
}

const messageSchema_t *schema_t::find(std::int32_t id) const {
    const auto found = std::lower_bound(messages_.begin(), messages_.end(), id,
                                        [](const auto &message, std::int32_t wanted) { return message.id < wanted; });
    return found != messages_.end() && found->id == id ? &*found : nullptr;
}

const enumeration_t *schema_t::enumerationOf(const fieldSchema_t &field) const {
    for (const enumeration_t &enumeration : enumerations_)
        if (enumeration.names.data() == field.words().names.data())
            return &enumeration;
    return nullptr;
}

std::vector<const recordSchema_t *> schema_t::records() const {
    std::vector<const recordSchema_t *> records;
    for (const recordSchema_t &record : records_)
        if (!record.isNested)
            records.push_back(&record);
    return records;
}

std::vector<const messageSchema_t *> schema_t::findNamed(std::string_view word) const {
    std::vector<const messageSchema_t *> found;
    for (const messageSchema_t &message : messages_)
        if (isNamed(message, word))
            found.push_back(&message);
    return found;
}

std::vector<keyUse_t> schema_t::usesOf(std::string_view key) const {
    std::vector<keyUse_t> uses;
    for (const messageSchema_t &message : messages_)
        if (message.record != nullptr)
            addUses(message, *message.record, {}, key, uses);
    return uses;
}

std::vector<std::string_view> schema_t::keys() const {
    std::set<std::string_view> keys;
    for (const messageSchema_t &message : messages_)
        if (message.record != nullptr)
            addKeys(*message.record, keys);
    return {keys.begin(), keys.end()};
}

const schema_t &schema() {
    static const lasting_t<schema_t> one;
    return one.get();
}

} // namespace vek::inspect
