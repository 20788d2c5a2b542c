// enumNames_t: the names of an enumeration in texts.
#pragma once

#include "vek/text/description.hpp"
#include "vek/vek_std/std_sys/vek_shortRuns.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vek {

/// The names of an enumeration, in order of their values from 0. The table must outlive every field that uses it.
class enumNames_t {
public:
    /// `title` says in words what the enumeration is.
    template <std::size_t Count>
    constexpr explicit enumNames_t(const std::array<const char *, Count> &names, std::string_view title = {})
        : names_(names.data()), count_(static_cast<std::int32_t>(Count)), title_(title) {
        static_assert(Count <= mostNames);
        for (std::size_t value = 0; value < Count; ++value)
            lengths_[value] = static_cast<std::uint8_t>(std::string_view(names[value]).size());
    }

    /// The name of `value`; empty when the table has none.
    std::string_view nameOf(std::int32_t value) const { return value >= 0 && value < count_ ? name(value) : ""; }

    /// The value of a name, letter case counting; -1 when the table lacks it.
    std::int32_t valueOf(std::string_view name) const {
        for (std::int32_t value = 0; value < count_; ++value)
            if (name.size() == lengths_[static_cast<std::size_t>(value)] &&
                areSame(name.data(), names_[value], name.size()))
                return value;
        return -1;
    }

    enumWords_t words() const { return {title_, {names_, static_cast<std::size_t>(count_)}}; }

private:
    static constexpr std::size_t mostNames = 16;

    std::string_view name(std::int32_t value) const {
        return {names_[value], lengths_[static_cast<std::size_t>(value)]};
    }

    const char *const *names_;
    std::int32_t count_;
    std::string_view title_;
    std::uint8_t lengths_[mostNames] = {};
};

/// The two kinds of a range, in order of valueRange_t::kind.
extern const enumNames_t rangeTypeNames;

} // namespace vek
