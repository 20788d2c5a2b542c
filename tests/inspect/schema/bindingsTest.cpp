// Each key is bound to the member that it names. Keys of one kind could be exchanged in a record class, and everything
// that is read and written would be whole, but not for hosts.
#include "vek/inspect/schema/schema.hpp"

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <set>
#include <string>

namespace {

using namespace vek;
using namespace vek::inspect;

// The keys that do not name their members in this way, by record and key.
const std::map<std::string, std::string> exceptions{
    {"cassette_t VERSION", "media"},
    {"deviceInfo_t RES_RANGE_TYPE", "resolution.kind"},
    {"deviceInfo2_t RES_RANGE_TYPE", "resolution.kind"},
    {"punchSystem_t W_UNIT_LOCATION", "wUnitLocation"},
    {"punchSystem_t H_UNIT_LOCATION", "hUnitLocation"},
    {"resIntEntry_t INT", "intensity"},
};

std::string inLowerCamelCase(std::string_view key) {
    std::string name;
    bool isFirst = false;
    for (const char c : key) {
        if (c != '_')
            name += static_cast<char>(isFirst ? std::toupper(c) : std::tolower(c));
        isFirst = c == '_';
    }
    return name;
}

// "W_SIZE" is size.width, "SIZE_RANGE_TYPE" is size.kind.
std::string memberOf(const fieldSchema_t &field) {
    const std::string_view key = field.key, rangeType = "_RANGE_TYPE";
    if (key.starts_with("W_") || key.starts_with("H_"))
        return inLowerCamelCase(key.substr(2)) + (key[0] == 'W' ? ".width" : ".height");
    if (key.ends_with(rangeType))
        return inLowerCamelCase(key.substr(0, key.size() - rangeType.size())) + ".kind";
    return inLowerCamelCase(key);
}

std::size_t compared = 0;
std::set<std::string> met;

// `inside`: what is in front of the members of a nested record.
void compare(const recordSchema_t &record, const std::string &top, const std::string &inside) {
    for (const fieldSchema_t &field : record.fields) {
        const std::string name = top + ' ' + std::string(field.key);
        const bool isWhole = field.member.path.empty(); // the structure is the list, or its base is the record
        if (isWhole) {
            EXPECT_TRUE(field.isList(listKind_t::container) || field.key == "DEVICE_INFO") << name;
        } else {
            const auto exception = exceptions.find(name);
            EXPECT_EQ(field.member.path, inside + (exception != exceptions.end() ? exception->second : memberOf(field)))
                << name;
            met.insert(name);
            ++compared;
        }
        if (field.record() != nullptr && field.isList())
            compare(*field.record(), std::string(field.record()->name), "");
        else if (field.record() != nullptr)
            compare(*field.record(), top, isWhole ? inside : field.member.path + '.');
    }
}

TEST(Bindings, AreToTheMembersThatTheKeysName) {
    for (const messageSchema_t &message : schema().messages())
        if (message.record != nullptr)
            compare(*message.record, std::string(message.record->name), "");
    EXPECT_GT(compared, 231U);
    for (const auto &[name, member] : exceptions)
        EXPECT_TRUE(met.contains(name)) << name;
}

} // namespace
