// The enumerations in messages as C++ hosts use them: types, names by values, values by names.
//
//     media.type = VEK_MEDIA_PLATE;
//     std::cout << vek::nameOf(media.type);
//     if (const auto type = vek::valueOf<vek::mediaType_t>("mediaFilm_e"))
//         media.type = *type;
//
// Members of structures are 32-bit integers that take the constants of their own enumeration alone, and plain integers.
// Everything here is constant.
#pragma once

#include "vek/records/enumerations.h"
#include "vek/text/enumNames.hpp"
#include "vek/text/members.h"

#include <concepts>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vek {

using mediaType_t = ::vekMediaType;
using exposurePolarity_t = ::vekExposurePolarity;
using transport_t = ::vekTransport;
using dataPath_t = ::vekDataPath;
using rangeType_t = ::vekRangeType;

extern const enumNames_t mediaTypeNames;
extern const enumNames_t exposurePolarityNames;
extern const enumNames_t transportNames;
extern const enumNames_t dataPathNames;

namespace detail {

inline const enumNames_t &namesOf(mediaType_t) {
    return mediaTypeNames;
}
inline const enumNames_t &namesOf(exposurePolarity_t) {
    return exposurePolarityNames;
}
inline const enumNames_t &namesOf(transport_t) {
    return transportNames;
}
inline const enumNames_t &namesOf(dataPath_t) {
    return dataPathNames;
}
inline const enumNames_t &namesOf(rangeType_t) {
    return rangeTypeNames;
}

} // namespace detail

/// An enumeration that members of messages hold.
template <class T>
concept messageEnumeration = requires(T value) {
    { detail::namesOf(value) } -> std::same_as<const enumNames_t &>;
    requires std::is_enum_v<T>;
};

/// The name that stands for a value in texts; empty when it has none.
template <messageEnumeration Enumeration>
[[nodiscard]] std::string_view nameOf(std::int32_t value) {
    return detail::namesOf(Enumeration()).nameOf(value);
}
template <messageEnumeration Enumeration>
[[nodiscard]] std::string_view nameOf(Enumeration value) {
    return nameOf<Enumeration>(static_cast<std::int32_t>(value));
}
template <messageEnumeration Enumeration>
[[nodiscard]] std::string_view nameOf(const enumMember_t<Enumeration> &value) {
    return nameOf<Enumeration>(static_cast<std::int32_t>(value));
}

/// The value of a name, letter case counting; none when it is no name of the enumeration.
template <messageEnumeration Enumeration>
[[nodiscard]] std::optional<Enumeration> valueOf(std::string_view name) {
    const std::int32_t value = detail::namesOf(Enumeration()).valueOf(name);
    return value < 0 ? std::nullopt : std::optional(static_cast<Enumeration>(value));
}

} // namespace vek
