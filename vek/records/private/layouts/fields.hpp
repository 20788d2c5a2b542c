// Layouts of the records that are message structures themselves, and of the fields they consist of.
#pragma once

#include "vek/records/jobs.hpp"
#include "vek/records/private/layouts/foundation.hpp"

// offsetof in classes with a virtual table or hidden members is left to compilers; all that build this support it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace vek {

// clang-format off: one line a member

template <>
struct layoutOf<textField_t> : pinned_t<textField_t, void, 20, 32> {
    static constexpr std::array members{
        VEK_MEMBER(uint8_t, isSet, 4, 8),         VEK_MEMBER(bool, matched_, 5, 9),
        VEK_MEMBER(uint32_t, keyLength_, 8, 12),  VEK_MEMBER(const char *, key_, 12, 16),
        VEK_MEMBER(textField_t *, next_, 16, 24),
    };
};

template <>
struct layoutOf<textGroup_t> : pinned_t<textGroup_t, textField_t, 36, 56> {
    static constexpr std::array members{
        VEK_MEMBER(textField_t *, first_, 20, 32), VEK_MEMBER(textField_t *, last_, 24, 40),
        VEK_MEMBER(pass_t, pass_, 28, 48),         VEK_MEMBER(textGroup_t::layout_t, layout_, 30, 50),
        VEK_MEMBER(uint32_t, parsed_, 32, 52),
    };
};

template <>
struct layoutOf<wideCharacter_t> : pinned_t<wideCharacter_t, void, 4, 4> {
    static constexpr std::array members{
        VEK_MEMBER(int16_t, code, 0, 0),
        VEK_MEMBER(uint16_t, isSet, 2, 2),
    };
};

template <>
struct layoutOf<wideElements_t> : pinned_t<wideElements_t, void, 12, 16> {
    static constexpr std::array members{
        VEK_MEMBER(growableList_t<wideCharacter_t>, characters_, 0, 0),
    };
};

template <>
struct layoutOf<fieldArray_t<wideElements_t>> : pinned_t<fieldArray_t<wideElements_t>, textGroup_t, 56, 80> {
    static constexpr std::array members{
        VEK_MEMBER(wideElements_t, elements_, 36, 56),
        VEK_MEMBER(int32_t, found_, 48, 72),
        VEK_MEMBER(int32_t, ordinal_, 52, 76),
    };
};

template <>
struct layoutOf<wideStringField_t> : pinned_t<wideStringField_t, fieldArray_t<wideElements_t>, 68, 96> {
    static constexpr std::array members{
        VEK_MEMBER(growableList_t<char16_t>, text_, 56, 80),
    };
};

template <>
struct layoutOf<wideStringElements_t> : pinned_t<wideStringElements_t, void, 20, 32> {
    static constexpr std::array members{
        VEK_MEMBER(const char *, key_, 0, 0),
        VEK_MEMBER(size_t, keyLength_, 4, 8),
        VEK_MEMBER(growableList_t<wideStringField_t *>, texts_, 8, 16),
    };
};

template <>
struct layoutOf<fieldArray_t<wideStringElements_t>>
    : pinned_t<fieldArray_t<wideStringElements_t>, textGroup_t, 64, 96> {
    static constexpr std::array members{
        VEK_MEMBER(wideStringElements_t, elements_, 36, 56),
        VEK_MEMBER(int32_t, found_, 56, 88),
        VEK_MEMBER(int32_t, ordinal_, 60, 92),
    };
};

template <>
struct layoutOf<wideStringListField_t> : pinned_t<wideStringListField_t, fieldArray_t<wideStringElements_t>, 64, 96> {};

template <>
struct layoutOf<valueField_t<longCodec_t, int32_t>>
    : pinned_t<valueField_t<longCodec_t, int32_t>, textField_t, 24, 40> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, value_, 20, 32),
    };
};

template <>
struct layoutOf<ownField_t<longCodec_t>>
    : pinned_t<ownField_t<longCodec_t>, valueField_t<longCodec_t, int32_t>, 24, 40> {
    static constexpr std::string_view name = "ownField_t<longCodec_t>";
};

template <>
struct layoutOf<basicEnumField_t<int32_t>> : pinned_t<basicEnumField_t<int32_t>, textField_t, 28, 48> {
    static constexpr std::array members{
        VEK_MEMBER(const enumNames_t *, names_, 20, 32),
        VEK_MEMBER(int32_t, value_, 24, 40),
    };
};

template <>
struct layoutOf<ownEnumField_t> : pinned_t<ownEnumField_t, basicEnumField_t<int32_t>, 28, 48> {};

template <>
struct layoutOf<jobSepList_t> : pinned_t<jobSepList_t, textGroup_t, 168, 248> {
    static constexpr std::array members{
        VEK_MEMBER(wideStringField_t, jobName, 36, 56),
        VEK_MEMBER(wideStringListField_t, sepList, 104, 152),
    };
};

template <>
struct layoutOf<jobPort_t> : pinned_t<jobPort_t, textGroup_t, 152, 232> {
    static constexpr std::array members{
        VEK_MEMBER(wideStringField_t, jobName, 36, 56),
        VEK_MEMBER(ownField_t<longCodec_t>, jobId, 104, 152),
        VEK_MEMBER(ownField_t<longCodec_t>, jobPort, 128, 192),
    };
};

template <>
struct layoutOf<gdapiDataPath_t> : pinned_t<gdapiDataPath_t, textGroup_t, 88, 144> {
    static constexpr std::array members{
        VEK_MEMBER(ownEnumField_t, gdapiDataPath, 36, 56),
        VEK_MEMBER(ownField_t<longCodec_t>, lptScsiPort, 64, 104),
    };
};

// clang-format on

} // namespace vek

#pragma GCC diagnostic pop
