// valueRange_t: the admissible values of a device parameter, as an interval or as a set of single values.
//
// A value type that owns its values; member of message structures. Not safe for concurrent use.
#pragma once

#include "vek/text/enumeration.h"
#include "vek/text/growableList.hpp"
#include "vek/text/members.h"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <cstdint>
#include <initializer_list>

namespace vek {

class valueRange_t {
public:
    /// The two kinds by name. Any kind but `discrete` is taken as continuous.
    static constexpr std::int32_t discrete = VEK_RANGE_DISCRETE;
    static constexpr std::int32_t continuous = VEK_RANGE_CONTINUOUS;

    /// The kind of the range. It and the values are stored independently.
    enumMember_t<vekRangeType> kind = VEK_RANGE_CONTINUOUS;

    /// Makes the range continuous and appends `lower` and `upper`. Present values stay: clear() first to replace them.
    void setInterval(double lower, double upper);

    /// Makes the range discrete and appends `count` values, which may be the range's own. Present values stay: clear()
    /// first to replace them.
    void setValues(std::int32_t count, const double *values);
    void setValues(std::initializer_list<double> values) {
        setValues(static_cast<std::int32_t>(values.size()), values.begin());
    }

    /// Removes all values and keeps the kind.
    void clear() { values_.clear(); }

    bool isEmpty() const { return values_.isEmpty(); }
    std::int32_t count() const { return values_.count(); }

    /// The value at `index`, which must be at least 0 and below count(); it is not checked.
    double valueAt(std::int32_t index) const { return values_[index]; }

    /// That value with six decimals, for example "600.000000".
    string_t valueText(std::int32_t index) const;

    /// The smallest value; 0.0 when there is none.
    double minimum() const;

    /// The largest value, but never less than -1.0; 0.0 when there is none.
    double maximum() const;

    /// Of the same kind, with the same values in the same order.
    bool operator==(const valueRange_t &) const = default;

    const double *begin() const { return values_.begin(); }
    const double *end() const { return values_.end(); }

    /// Memory for the first appended value is taken for 512 values at once.
    using values_t = growableList_t<double, 512>;
    values_t &values() { return values_; }
    const values_t &values() const { return values_; }

private:
    template <class>
    friend struct layoutOf; // pins where the members lie

    values_t values_;
};

} // namespace vek
