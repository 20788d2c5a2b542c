#include "vek/vek_std/std_sys/vek_stringRep.hpp"
#include "vek/vek_std/std_sys/private/vek_spareBodies.hpp"
#include "vek/vek_std/std_sys/vek_shortRuns.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace vek {

namespace {

// The lines that reports name. They are fixed: a report stays the same when the code around it moves.
constexpr std::uint32_t destroyLine = 89;
constexpr std::uint32_t outOfMemoryLine = 598;
constexpr std::uint64_t largestCapacity = 0xFFFFFFFEU;

void reportOutOfMemory() {
    report("string_t : VEK_ENOMEM");
}
void reportBadIndex() {
    report("string_t : VEK_BAD_INDEX");
}
void reportNonZeroReference() {
    report(" : DESTRUCT_NON_ZERO_REF");
}

// The mark is never taken back: bodies made in between keep the capacities of their time.
std::uint32_t setSize(processWide_t<std::uint32_t> &size, std::uint32_t characters) {
    stringSettings.sizesChanged = true;
    return size.exchange(characters);
}

void signalOutOfMemory() {
    stringRep_t::signal(outOfMemoryLine, stringOutOfMemoryHook);
}

} // namespace

constinit processWide_t<errorHook_t> stringOutOfMemoryHook = reportOutOfMemory;
constinit processWide_t<errorHook_t> stringBadIndexHook = reportBadIndex;
constinit processWide_t<errorHook_t> stringNonZeroReferenceHook = reportNonZeroReference;

std::uint32_t setInitialCapacity(std::uint32_t characters) {
    return setSize(stringSettings.initialCapacity, characters);
}
std::uint32_t setGrowthStep(std::uint32_t characters) {
    return setSize(stringSettings.growthStep, characters);
}
std::uint32_t setSlackLimit(std::uint32_t characters) {
    return setSize(stringSettings.slackLimit, characters);
}

// Made by the compiler, so that it is there before any static string. It lies in constant memory: whoever writes to it,
// if only to its count, faults instead of changing every empty string of the process.
constinit const stringRep_t stringRep_t::constantEmpty = constant(constantEmpty, "");

// The initial capacity and then whole steps, so that a text that grows a character at a time is moved once a step. In
// 64 bits, and cut to one more than the largest: no sum wraps, and setCapacity then refuses what is too long.
std::uint64_t stringRep_t::roundedCapacity(std::uint64_t length) {
    length = std::min(length, largestCapacity + 1);
    const std::uint64_t initial = stringSettings.initialCapacity;
    if (length <= initial)
        return initial;
    const std::uint64_t step = std::max(stringSettings.growthStep.get(), 1U);
    return (length - initial + step - 1) / step * step + initial;
}

stringRep_t *stringRep_t::make(std::size_t length) {
    // Owned, since a hook may throw.
    std::unique_ptr<stringRep_t, void (*)(stringRep_t *)> body(static_cast<stringRep_t *>(takeBody()), giveBody);
    if (body == nullptr) {
        signalOutOfMemory();
        return nullptr;
    }
    body->referenceCount = 1;
    body->data = body->room;
    body->length = 0;
    body->capacity = inlineCapacity;
    body->room[0] = '\0';
    if (length > inlineCapacity || stringSettings.sizesChanged) [[unlikely]] {
        // Also a smaller capacity than the room is kept to: callers see it, and growth is counted from it.
        const std::uint64_t wanted = roundedCapacity(length);
        if (wanted != inlineCapacity && !body->setCapacity(wanted))
            return nullptr;
    }
    body->length = static_cast<std::uint32_t>(length);
    body->data[length] = '\0';
    return body.release();
}

stringRep_t *stringRep_t::make(const char *text, std::size_t length) {
    stringRep_t *body = make(length);
    if (body != nullptr)
        copyShort(text, length, body->data);
    return body;
}

// A body that handles still count on is freed all the same: it was destroyed by name, which only a mistaken program
// does, and the report is all there is to help it.
void stringRep_t::destroy(stringRep_t *body) {
    if (body == nullptr || body->isConstant())
        return;
    if (body->referenceCount != 0)
        signal(destroyLine, stringNonZeroReferenceHook);
    if (!body->isInline())
        std::free(body->data);
    giveBody(body);
}

void stringRep_t::signal(std::uint32_t line, errorHook_t hook) {
    signalError("vek_std/std_sys/vek_string", line, hook);
}

// Four ways, between the body's own room and a buffer. A text in the room can't be left to realloc, which knows only
// buffers. When there is no memory the old buffer and its text are still there, and freed with the body: the caller
// gives the body up (string_t::keepIf), since a text cut to what fits would look like a whole one.
bool stringRep_t::setCapacity(std::uint64_t wanted) {
    char *buffer = room;
    if (wanted > inlineCapacity) {
        void *block = nullptr;
        if (wanted <= largestCapacity)
            block = std::realloc(isInline() ? nullptr : data, static_cast<std::size_t>(wanted) + 1);
        if (block == nullptr) {
            signalOutOfMemory();
            return false;
        }
        buffer = static_cast<char *>(block);
        if (isInline())
            std::memcpy(buffer, room, length + std::size_t{1});
    } else if (!isInline()) {
        std::memcpy(room, data, length + std::size_t{1});
        std::free(data);
    }
    data = buffer;
    capacity = static_cast<std::uint32_t>(wanted);
    return true;
}

// With the default settings one step is more slack than the limit, so that every capacity is the rounded one of its
// length. append's short cut builds on that.
bool stringRep_t::shrinkToFit() {
    const std::uint64_t wanted = roundedCapacity(length);
    return capacity <= wanted || capacity - wanted <= stringSettings.slackLimit || setCapacity(wanted);
}

bool stringRep_t::replace(std::size_t position, std::size_t removed, const char *source, std::size_t inserted) {
    // Cut before it is added: `inserted` may be anything a caller passes, and 32 bits of it have no room for a sum.
    const std::uint64_t newLength = length - removed + std::min<std::uint64_t>(inserted, largestCapacity + 1);
    const std::uint64_t wanted = roundedCapacity(newLength);
    if (wanted > capacity && !setCapacity(wanted))
        return false;

    char *place = data + position;
    std::memmove(place + inserted, place + removed, length - position - removed);
    if (source != nullptr)
        std::memcpy(place, source, inserted);
    else
        std::memset(place, ' ', inserted);
    length = static_cast<std::uint32_t>(newLength);
    data[newLength] = '\0';
    return shrinkToFit();
}

} // namespace vek
