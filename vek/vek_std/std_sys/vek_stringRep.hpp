// The body behind a string_t, the settings of the string class and its error hooks.
//
// A body is one block of the C heap: its fields and room for a text of up to 63 characters. A longer text has a buffer
// of its own, from the C heap too. The handles that share a body own it together and count themselves in it. All empty
// strings made with the default settings share one constant body that is never counted, changed or freed. It is known
// by a mark in its count, not by its address: each module that links this class has one, and each must leave
// another's alone.
//
// Thread rule: handles of several threads may share a body, which is counted safely, and is changed only by the one
// handle it has. Settings and hooks may be read and changed by any thread.
#pragma once

#include "vek/vek_std/std_sys/vek_processWide.hpp"
#include "vek/vek_std/std_sys/vek_sharedCount.hpp"
#include "vek/vek_std/std_sys/vek_stdlib.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vek {

/// Process-wide settings. Change them with the setters, each of which returns the previous value.
struct stringSettings_t {
    static constexpr std::uint32_t defaultCapacity = 63, defaultStep = 64;

    processWide_t<std::uint32_t> initialCapacity = defaultCapacity; ///< Smallest capacity of a buffer, in characters.
    processWide_t<std::uint32_t> growthStep = defaultStep; ///< Capacities grow by multiples of this; 0 acts as 1.
    processWide_t<std::uint32_t> slackLimit = 63; ///< A buffer that would keep more unused characters is shrunk.
    processWide_t<bool> sizesChanged =
        false;                             ///< Was one of these three ever set? Else every capacity is in their steps.
    processWide_t<int> caseSensitive = 1;  ///< 0: comparing, searching and hashing take no notice of case.
    processWide_t<int> skipWhitespace = 1; ///< Does readLine skip white space first?
    processWide_t<int> spareFlag = 1;      ///< Read by no operation.
    processWide_t<int> skipIndexCheck = 0; ///< Not 0: operator[] reports no bad index.
};
inline constinit stringSettings_t stringSettings;

std::uint32_t setInitialCapacity(std::uint32_t characters);
std::uint32_t setGrowthStep(std::uint32_t characters);
std::uint32_t setSlackLimit(std::uint32_t characters);
inline int setCaseSensitive(int flag) {
    return stringSettings.caseSensitive.exchange(flag);
}
inline int setSkipWhitespace(int flag) {
    return stringSettings.skipWhitespace.exchange(flag);
}
inline int setSpareFlag(int flag) {
    return stringSettings.spareFlag.exchange(flag);
}
inline int setSkipIndexCheck(int flag) {
    return stringSettings.skipIndexCheck.exchange(flag);
}

/// Error hooks; null keeps silent. The defaults report "string_t : VEK_ENOMEM", "string_t : VEK_BAD_INDEX" and
/// " : DESTRUCT_NON_ZERO_REF".
extern processWide_t<errorHook_t> stringOutOfMemoryHook;
extern processWide_t<errorHook_t> stringBadIndexHook;
extern processWide_t<errorHook_t> stringNonZeroReferenceHook;

/// The shared body. Whoever makes one holds its first reference. Functions that can run out of memory report it
/// through stringOutOfMemoryHook first.
struct stringRep_t {
    static constexpr std::uint32_t inlineCapacity = 63;
    static constexpr std::uint32_t constantMark = 0x80000000U;

    std::uint32_t referenceCount;
    char *data; ///< `room`, or a buffer of the C heap; capacity + 1 bytes, with a NUL at data[length].
    std::uint32_t length;
    std::uint32_t capacity;
    char room[inlineCapacity + 1];

    /// A new body for `length` characters, which are not set yet; null without memory.
    static stringRep_t *make(std::size_t length);
    /// A new body with a copy of the text; null without memory.
    static stringRep_t *make(const char *text, std::size_t length);
    /// The constant empty body with the default settings, else a new one; null without memory.
    static stringRep_t *empty();
    /// Frees a body and its buffer, and reports one that is still referenced. The constant body stays.
    static void destroy(stringRep_t *body);

    // The last handle is told by a count of 1, which no other thread can change then, and which costs no locked
    // operation. Whoever frees or changes the body sees all that was done to it through other handles before.
    static stringRep_t *share(stringRep_t *body) {
        if (body != nullptr && !body->isConstant())
            body->count().fetch_add(1, std::memory_order_relaxed);
        return body;
    }
    static void release(stringRep_t *body) {
        if (body == nullptr)
            return;
        const std::uint32_t handles = body->count().load(std::memory_order_acquire);
        if (handles == 1)
            body->referenceCount = 0;
        else if ((handles & constantMark) != 0 || body->count().fetch_sub(1, std::memory_order_acq_rel) != 1)
            return;
        destroy(body);
    }

    /// The capacity that a text of `length` characters gets.
    static std::uint64_t roundedCapacity(std::uint64_t length);

    /// Calls one of the hooks for an error of the string class.
    static void signal(std::uint32_t line, errorHook_t hook);

    bool isConstant() const { return (count().load(std::memory_order_relaxed) & constantMark) != 0; }
    bool isPrivate() const { return count().load(std::memory_order_acquire) == 1; }

    // The changing operations below need a private body. False: no memory; the text is no longer of use.

    /// Moves the text, which must fit, to a buffer of exactly this capacity.
    bool setCapacity(std::uint64_t wanted);
    /// Shrinks the buffer when it has more unused characters than the slack limit allows.
    bool shrinkToFit();
    /// Replaces `removed` characters at `position`, which must be there, by `inserted` characters of `source`, which
    /// must not be this text; by blanks when it is null.
    bool replace(std::size_t position, std::size_t removed, const char *source, std::size_t inserted);

    static const stringRep_t constantEmpty;

    /// What a constant body is initialised with: a text that strings share until they change it, in constant memory, so
    /// that no module ever counts or frees it. `body` is the one that is initialised.
    static constexpr stringRep_t constant(const stringRep_t &body, std::string_view text) {
        stringRep_t made{constantMark, const_cast<char *>(body.room), 0, inlineCapacity, {}};
        for (const char c : text)
            made.room[made.length++] = c;
        return made;
    }

private:
    sharedCount_t count() const {
        return sharedCount_t(const_cast<std::uint32_t &>(referenceCount)); // constant ones are only read
    }
    bool isInline() const { return data == room; }
};

inline stringRep_t *stringRep_t::empty() {
    return stringSettings.initialCapacity == inlineCapacity ? const_cast<stringRep_t *>(&constantEmpty) : make(0);
}

} // namespace vek
