#include "tools/vekmsg/lsp/params.hpp"

#include "vek/inspect/forms/forms.hpp"

#include <algorithm>

namespace vek::tool::lsp {

using json_t = nlohmann::json;

namespace {

constexpr int deepest = 64;
constexpr std::size_t mostValues = 4'000'000;

// Half a pair is a character for some editors; here it becomes one that stands for what can't be shown.
std::string withoutHalfPairs(std::string_view text) {
    std::string out(text);
    const auto isHalf = [&](std::size_t at, char from, char to) {
        const char digit = static_cast<char>(at + 3 < out.size() ? out[at + 3] | 0x20 : 0);
        return at + 6 <= out.size() && out[at] == '\\' && out[at + 1] == 'u' && (out[at + 2] | 0x20) == 'd' &&
               digit >= from && digit <= to;
    };
    for (std::size_t at = 0; (at = out.find('\\', at)) != std::string::npos; at += 2) {
        const bool isFirst = isHalf(at, '8', '9') || isHalf(at, 'a', 'b');
        if (isFirst && isHalf(at + 6, 'c', 'f'))
            at += 10;
        else if (isFirst || isHalf(at, 'c', 'f'))
            out.replace(at, 6, "\\ufffd");
    }
    return out;
}

json_t parsedOnce(std::string_view text) {
    std::size_t values = 0;
    return json_t::parse(text, [&](int depth, json_t::parse_event_t, const json_t &) {
        if (depth > deepest || ++values > mostValues)
            throw rpcError_t(rpcError_t::invalidRequest, "the message is deeper or has more values than any");
        return true;
    });
}

} // namespace

json_t parsed(const std::string &text) {
    std::string room;
    const std::string_view wellFormed = inspect::wellFormed(text, room);
    try {
        try {
            return parsedOnce(wellFormed);
        } catch (const json_t::parse_error &) {
            return parsedOnce(withoutHalfPairs(wellFormed));
        }
    } catch (const json_t::parse_error &error) {
        throw rpcError_t(rpcError_t::parseError,
                         "the message is no JSON from its byte " + std::to_string(error.byte) + " on");
    } catch (const json_t::exception &) {
        throw rpcError_t(rpcError_t::parseError, "the message has a number in it that is beyond any range");
    }
}

const json_t &memberOf(const json_t &object, const char *name) {
    if (const json_t *member = findMember(object, {name}))
        return *member;
    throw rpcError_t(rpcError_t::invalidParams, std::string("\"") + name + "\" is missing");
}

const json_t *findMember(const json_t &object, std::initializer_list<const char *> path) {
    const json_t *found = &object;
    for (const char *name : path) {
        const auto member = found->is_object() ? found->find(name) : found->end();
        if (!found->is_object() || member == found->end())
            return nullptr;
        found = &*member;
    }
    return found;
}

std::string textIn(const json_t &object, const char *name) {
    const json_t &member = memberOf(object, name);
    if (!member.is_string())
        throw rpcError_t(rpcError_t::invalidParams, std::string("\"") + name + "\" is no text");
    return inspect::jsonBytes(member.get_ref<const std::string &>());
}

std::int64_t numberIn(const json_t &object, const char *name) {
    const json_t &member = memberOf(object, name);
    if (!member.is_number_integer())
        throw rpcError_t(rpcError_t::invalidParams, std::string("\"") + name + "\" is no whole number");
    return member.is_number_unsigned()
               ? static_cast<std::int64_t>(std::min<std::uint64_t>(member.get<std::uint64_t>(), INT64_MAX))
               : member.get<std::int64_t>();
}

position_t positionIn(const json_t &object, const char *name) {
    const json_t &position = memberOf(object, name);
    const auto number = [&](const char *its) {
        const std::int64_t value = numberIn(position, its);
        if (value < 0)
            throw rpcError_t(rpcError_t::invalidParams, std::string("\"") + its + "\" is below 0");
        return static_cast<std::size_t>(value);
    };
    return {number("line"), number("character")};
}

range_t rangeIn(const json_t &object, const char *name) {
    const json_t &range = memberOf(object, name);
    return {positionIn(range, "start"), positionIn(range, "end")};
}

} // namespace vek::tool::lsp
