// The three exported calls.
#include "vek/inspect/vekInspect.h"

#include "vek/inspect/forms/forms.hpp"
#include "vek/vek_std/std_sys/private/vek_floatingPoint.hpp"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

namespace {

using namespace vek::inspect;

constexpr std::int32_t failure = -1;
constexpr std::size_t largestText = std::size_t{1} << 30;

// As much as there is room for, with a NUL behind it.
std::int32_t handOut(std::string_view result, char *buffer, std::size_t room) {
    if (buffer != nullptr && room > 0)
        buffer[result.copy(buffer, room - 1)] = '\0';
    return result.size() <= INT32_MAX ? static_cast<std::int32_t>(result.size()) : failure;
}

} // namespace

extern "C" {

std::int32_t VEK_INSPECT_CALL vekInspectToJson(const char *text, std::size_t size, char *buffer, std::size_t room) try {
    const vek::floatingPointGuard_t guard;
    if (text == nullptr || size > largestText)
        return failure;
    const tree_t tree({text, size});
    const std::vector<finding_t> findings = check(tree);
    std::string json;
    appendJson(json, tree, {.findings = findings, .hasTree = true});
    return handOut(json, buffer, room);
} catch (const std::bad_alloc &) {
    return failure;
}

std::int32_t VEK_INSPECT_CALL vekInspectFromJson(const char *json, std::size_t size, char *buffer,
                                                 std::size_t room) try {
    const vek::floatingPointGuard_t guard;
    if (json == nullptr || size > largestText)
        return failure;
    const formResult_t read = readJson({json, size});
    if (read.isRead())
        return handOut(read.text, buffer, room);
    handOut(read.errorIn({json, size}), buffer, room);
    return failure;
} catch (const std::bad_alloc &) {
    return failure;
}

std::int32_t VEK_INSPECT_CALL vekInspectCatalogue(char *buffer, std::size_t room) try {
    const vek::floatingPointGuard_t guard;
    std::string json;
    appendCatalogueJson(json);
    return handOut(json, buffer, room);
} catch (const std::bad_alloc &) {
    return failure;
}

} // extern "C"
