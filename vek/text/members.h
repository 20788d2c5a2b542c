/*
 * How members of the message structures are declared where C and C++ hosts share them. In C each macro is the plain
 * member and nothing else. C++ has the same layout, and refuses what would be silently wrong: members begin as zeros,
 * sizes are given by name, and a member that holds an enumeration takes no constant of another one.
 */
#ifndef VEK_MEMBERS_H
#define VEK_MEMBERS_H

#include <stdint.h>

#if defined(_MSVC_LANG)
#    define VEK_LANGUAGE _MSVC_LANG
#elif defined(__cplusplus)
#    define VEK_LANGUAGE __cplusplus
#else
#    define VEK_LANGUAGE 0
#endif

/* Behind a member: zero from the beginning. */
#if VEK_LANGUAGE >= 201402L
#    define VEK_ZEROED = {}
#else
#    define VEK_ZEROED
#endif

#if VEK_LANGUAGE >= 201103L

#    include <type_traits>

namespace vek {

template <class Enumeration>
class enumMember_t;

template <class Value>
struct isEnumerated_t : std::is_enum<Value> {};
template <class Enumeration>
struct isEnumerated_t<enumMember_t<Enumeration>> : std::true_type {};

/* A 32-bit integer that holds a value of an enumeration. It takes the enumeration's constants and plain integers, and
 * is read and changed like an integer; constants and members of another enumeration do not compile. */
template <class Enumeration>
class enumMember_t {
    template <class Value, class Type = void>
    using ifOwn_t = typename std::enable_if<std::is_same<Value, Enumeration>::value, Type>::type;
    template <class Value, class Type = void>
    using ifOther_t =
        typename std::enable_if<isEnumerated_t<Value>::value && !std::is_same<Value, Enumeration>::value &&
                                    !std::is_same<Value, enumMember_t>::value,
                                Type>::type;

public:
    constexpr enumMember_t() : value_(0) {}
    constexpr enumMember_t(Enumeration value) : value_(static_cast<int32_t>(value)) {}
    constexpr enumMember_t(int32_t value) : value_(value) {}
    template <class Other, class = ifOther_t<Other>>
    enumMember_t(Other) = delete; /* of another enumeration */

    operator int32_t &() { return value_; }
    constexpr operator const int32_t &() const { return value_; }
    template <class Own, class = ifOwn_t<Own>>
    constexpr explicit operator Own() const {
        return static_cast<Own>(value_);
    }

    template <class Other>
    friend ifOther_t<Other, bool> operator==(const enumMember_t &, Other) = delete; /* of another enumeration */

private:
    int32_t value_;
};

} /* namespace vek */

#    define VEK_ENUM(enumeration) vek::enumMember_t<enumeration>
#else
#    define VEK_ENUM(enumeration) int32_t
#endif

/* The first member of a size. A brace with bare numbers, {80, 120}, would begin with what takes none. */
#if VEK_LANGUAGE >= 202002L

namespace vek {

struct byName_t {
    byName_t() = default;
    template <class Value>
    byName_t(Value) = delete; /* say which is which, in the order of the members: {.width = 120, .height = 80} */
};

} /* namespace vek */

#    define VEK_BY_NAME(type, name)                                                                                    \
        union {                                                                                                        \
            vek::byName_t byName;                                                                                      \
            type name VEK_ZEROED;                                                                                      \
        }
#else
#    define VEK_BY_NAME(type, name) type name VEK_ZEROED
#endif

#endif
