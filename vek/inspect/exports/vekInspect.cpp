// The three exported calls.
#include "vek/inspect/vekInspect.h"

#include "vek/inspect/forms/forms.hpp"
#include "vek/text/growableList.hpp"
#include "vek/vek_std/std_sys/private/vek_floatingPoint.hpp"

#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace vek::inspect;

constexpr std::int32_t failure = -1;
constexpr std::size_t largestText = std::size_t{1} << 30;

// As much as there is room for, with a NUL behind it.
void copyOut(std::string_view text, char *buffer, std::size_t room) {
    if (buffer != nullptr && room > 0)
        buffer[text.copy(buffer, room - 1)] = '\0';
}

// What is handed out: a result or, with a size of -1, why there is none.
struct outcome_t {
    std::string text;
    bool isResult = true;
};

outcome_t refused(std::string why) {
    return {std::move(why), false};
}

// No exception leaves the three calls, and nothing that they use ends the process: whatever fails is told in words.
template <class Make>
std::int32_t handOut(char *buffer, std::size_t room, const Make &make) {
    const vek::floatingPointGuard_t guard;
    try {
        vek::throwWithoutMemory();
        const outcome_t outcome = make();
        const bool isTooLarge = outcome.text.size() > INT32_MAX;
        copyOut(isTooLarge ? "the result has more than 2147483647 bytes" : std::string_view(outcome.text), buffer,
                room);
        return outcome.isResult && !isTooLarge ? static_cast<std::int32_t>(outcome.text.size()) : failure;
    } catch (const std::bad_alloc &) {
        copyOut("out of memory", buffer, room);
    } catch (const std::exception &error) {
        copyOut(error.what(), buffer, room);
    }
    return failure;
}

// As handOut, of a text that is given.
template <class Make>
std::int32_t handOutFrom(const char *text, std::size_t size, char *buffer, std::size_t room, const Make &make) {
    return handOut(buffer, room, [&] {
        return text == nullptr      ? refused("there is no text: the pointer is null")
               : size > largestText ? refused("the text is larger than 1 GB")
                                    : make(std::string_view(text, size));
    });
}

} // namespace

extern "C" {

std::int32_t VEK_INSPECT_CALL vekInspectToJson(const char *text, std::size_t size, char *buffer, std::size_t room) {
    return handOutFrom(text, size, buffer, room, [](std::string_view message) {
        const tree_t tree(message);
        const std::vector<finding_t> findings = check(tree);
        outcome_t outcome;
        appendJson(outcome.text, tree, {.findings = findings, .hasTree = true});
        return outcome;
    });
}

std::int32_t VEK_INSPECT_CALL vekInspectFromJson(const char *json, std::size_t size, char *buffer, std::size_t room) {
    return handOutFrom(json, size, buffer, room, [](std::string_view written) {
        formResult_t read = readJson(written);
        return read.isRead() ? outcome_t{std::move(read.text)} : refused(read.errorIn(written));
    });
}

std::int32_t VEK_INSPECT_CALL vekInspectCatalogue(char *buffer, std::size_t room) {
    return handOut(buffer, room, [] {
        outcome_t outcome;
        appendCatalogueJson(outcome.text);
        return outcome;
    });
}

} // extern "C"
