// The body behind a string_t, the settings of the string class and its error hooks.
//
// A body is one block of the C heap: its fields and room for a text of up to 63 characters. A longer text has a buffer
// of its own, from the C heap too. The handles that share a body own it together and count themselves in it. All empty
// strings made with the default settings share one constant body that is never counted, changed or freed. It is known
// by a mark in its count, not by its address: each module that links this class has one, and each must leave
// another's alone.
//
// Thread rule: counts, settings and hooks are unguarded; one thread at a time.
#pragma once

#include "vek/vek_std/std_sys/vek_stdlib.hpp"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace vek {

/// Process-wide settings. Change them with the setters, each of which returns the previous value.
struct stringSettings_t {
    std::uint32_t initialCapacity = 63; ///< Smallest capacity of a buffer, in characters.
    std::uint32_t growthStep = 64;      ///< Capacities grow by multiples of this; 0 acts as 1.
    std::uint32_t slackLimit = 63;      ///< A buffer that would keep more unused characters is shrunk.
    bool sizesChanged = false;          ///< Was one of these three ever set? Else every capacity is in their steps.
    int caseSensitive = 1;              ///< 0: comparing, searching and hashing take no notice of case.
    int skipWhitespace = 1;             ///< Does readLine skip white space first?
    int spareFlag = 1;                  ///< Read by no operation.
    int skipIndexCheck = 0;             ///< Not 0: operator[] reports no bad index.
};
inline constinit stringSettings_t stringSettings;

std::uint32_t setInitialCapacity(std::uint32_t characters);
std::uint32_t setGrowthStep(std::uint32_t characters);
std::uint32_t setSlackLimit(std::uint32_t characters);
inline int setCaseSensitive(int flag) {
    return std::exchange(stringSettings.caseSensitive, flag);
}
inline int setSkipWhitespace(int flag) {
    return std::exchange(stringSettings.skipWhitespace, flag);
}
inline int setSpareFlag(int flag) {
    return std::exchange(stringSettings.spareFlag, flag);
}
inline int setSkipIndexCheck(int flag) {
    return std::exchange(stringSettings.skipIndexCheck, flag);
}

/// Error hooks; null keeps silent. The defaults report "string_t : VEK_ENOMEM", "string_t : VEK_BAD_INDEX" and
/// " : DESTRUCT_NON_ZERO_REF".
extern errorHook_t stringOutOfMemoryHook;
extern errorHook_t stringBadIndexHook;
extern errorHook_t stringNonZeroReferenceHook;

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

    static stringRep_t *share(stringRep_t *body) {
        if (body != nullptr && !body->isConstant())
            ++body->referenceCount;
        return body;
    }
    static void release(stringRep_t *body) {
        if (body != nullptr && !body->isConstant() && --body->referenceCount == 0)
            destroy(body);
    }

    /// The capacity that a text of `length` characters gets.
    static std::uint64_t roundedCapacity(std::uint64_t length);

    /// Calls one of the hooks for an error of the string class.
    static void signal(std::uint32_t line, errorHook_t hook);

    bool isConstant() const { return (referenceCount & constantMark) != 0; }
    bool isPrivate() const { return referenceCount == 1; }

    // The changing operations below need a private body. False: no memory; the text is no longer of use.

    /// Moves the text, which must fit, to a buffer of exactly this capacity.
    bool setCapacity(std::uint64_t wanted);
    /// Shrinks the buffer when it has more unused characters than the slack limit allows.
    bool shrinkToFit();
    /// Replaces `removed` characters at `position`, which must be there, by `inserted` characters of `source`, which
    /// must not be this text; by blanks when it is null.
    bool replace(std::size_t position, std::size_t removed, const char *source, std::size_t inserted);

    static const stringRep_t constantEmpty;

private:
    bool isInline() const { return data == room; }
};

inline stringRep_t *stringRep_t::empty() {
    return stringSettings.initialCapacity == inlineCapacity ? const_cast<stringRep_t *>(&constantEmpty) : make(0);
}

} // namespace vek
