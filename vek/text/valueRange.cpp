#include "vek/text/valueRange.hpp"

#include "vek/text/numberText.hpp"

#include <functional>

namespace vek {

// Appends, as setValues does. What more than two values mean is left to whoever reads the range: an interval is printed
// by its minimum and maximum.
void valueRange_t::setInterval(double lower, double upper) {
    kind = continuous;
    values_.add(lower);
    values_.add(upper);
}

void valueRange_t::setValues(std::int32_t count, const double *values) {
    kind = discrete;
    const bool areOwn = std::less_equal<>()(begin(), values) && std::less<>()(values, end());
    const values_t kept = areOwn ? values_ : values_t(); // growing would move them away
    if (areOwn)
        values = kept.begin() + (values - begin());
    values_.reserve(count);
    for (std::int32_t i = 0; i < count; ++i)
        values_.add(values[i]);
}

// As it stands in a message, so that what is shown can be compared with what was sent.
string_t valueRange_t::valueText(std::int32_t index) const {
    char text[realRoom];
    return {text, static_cast<std::size_t>(writeReal(valueAt(index), text) - text)};
}

double valueRange_t::minimum() const {
    if (isEmpty())
        return 0.0;
    double smallest = values_[0];
    for (const double value : values_)
        if (value < smallest)
            smallest = value;
    return smallest;
}

double valueRange_t::maximum() const {
    if (isEmpty())
        return 0.0;
    double largest = -1.0; // hosts rely on this floor
    for (const double value : values_)
        if (value > largest)
            largest = value;
    return largest;
}

} // namespace vek
