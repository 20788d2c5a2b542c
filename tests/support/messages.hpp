// Messages for tests: texts around bodies, the samples, and the four calls with owners for what they hand out.
// Free of the test framework, so that the fuzzers use it too.
#pragma once

#include "vek/api/vekParams2ASCII.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vek::test {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isInstrumented = true;
#elif defined(__has_feature)
inline constexpr bool isInstrumented = __has_feature(address_sanitizer);
#else
inline constexpr bool isInstrumented = false;
#endif

/// How often a test repeats something: less often where the sanitizers make it slow, and in another locale.
inline int rounds(int optimised) {
    static const int share = isInstrumented ? 5 : std::getenv("VEK_TEST_LOCALE") != nullptr ? 20 : 1;
    return optimised / share;
}

/// The whole text of a message around a body.
std::string message(std::int32_t id, std::string_view body, std::int32_t echoTag = 7, std::int32_t sequenceNumber = 41);

/// The body in a text that the library wrote; empty when there is none.
std::string bodyOf(std::string_view message);

struct sample_t {
    std::string file;
    std::string text;
    std::int32_t id;
    std::string body;
};
const std::vector<sample_t> &samples();
const sample_t &sampleOf(std::int32_t id);

/// The id of every message with a body.
std::vector<std::int32_t> bodyIds();

/// Whether a message's structure holds growable lists, which end the process when they can't grow.
bool hasGrowableLists(std::int32_t id);

/// A structure and the text it was read from. Released as its id wants it.
class structure_t {
public:
    /// What a text converts to. `id` is what the caller's id is before the call.
    explicit structure_t(const char *text, std::int32_t id = 0);
    explicit structure_t(const std::string &text) : structure_t(text.c_str()) {}
    /// Takes over a structure.
    structure_t(std::int32_t messageId, void *taken) : address(taken), result(0), id(messageId) {}
    structure_t(structure_t &&other) noexcept
        : address(std::exchange(other.address, nullptr)), result(other.result), id(other.id) {}
    ~structure_t();

    template <class Structure>
    Structure &as() const {
        return *static_cast<Structure *>(address);
    }

    void *address = nullptr;
    std::int32_t result;
    std::int32_t id;
};

inline structure_t defaultsOf(std::int32_t id) {
    return structure_t(nullptr, id);
}
inline structure_t structureOf(std::int32_t id, std::string_view body) {
    return structure_t(message(id, body));
}

/// The text of a structure. Receives what the call returned, if asked.
std::string written(std::int32_t id, void *structure, std::int32_t *result = nullptr);

/// The body of a structure, and of what a body converts to.
inline std::string writtenBody(std::int32_t id, void *structure) {
    return bodyOf(written(id, structure));
}
inline std::string converted(std::int32_t id, std::string_view body) {
    const structure_t structure = structureOf(id, body);
    return writtenBody(id, structure.address);
}

/// A text with its control characters spelt out.
std::string shown(std::string_view text);

} // namespace vek::test
