// The two fields of a range: its type, and the list of its values under a key of its own. Both are bound to the same
// valueRange_t and read independently, in either order.
#pragma once

#include "vek/text/enumField.hpp"
#include "vek/text/fieldArray.hpp"
#include "vek/text/scalarFields.hpp"
#include "vek/text/valueRange.hpp"

#include <cstdint>
#include <string_view>

namespace vek {

/// The type is printed only when the range has values. An absent key gives `discrete`.
struct rangeTypeField_t : enumField_t {
    rangeTypeField_t(textGroup_t &group, std::string_view key, valueRange_t &range)
        : enumField_t(group, key, range.kind, rangeTypeNames, !range.isEmpty()) {}
};

/// What a list of range values prints: every value of a discrete range, the minimum and the maximum of any other.
class rangeElements_t {
public:
    rangeElements_t(pass_t pass, valueRange_t &range) : range_(range) {
        if (pass == pass_t::parse) {
            range.clear();
        } else if (range.kind != valueRange_t::discrete) {
            ends_[0] = range.minimum();
            ends_[1] = range.maximum();
        }
    }

    doubleField_t element(std::int32_t index, pass_t pass) const { return {pass, range_.values()[index]}; }
    bodyWriter_t write(std::int32_t index, bodyWriter_t out) const {
        return writeElement(range_.kind == valueRange_t::discrete ? range_.values()[index] : ends_[index], out);
    }
    std::int32_t printed() const {
        return range_.kind == valueRange_t::discrete || range_.isEmpty() ? range_.count() : 2;
    }
    std::int32_t allocated() const { return range_.count(); }
    void append() { range_.values().add(); }
    void reserve(std::int32_t count) { range_.values().reserve(count); }
    void describe(fieldDescription_t &description) const {
        description.kind = doubleCodec_t::kind;
        description.bindTo(range_);
        const auto elements = [](const void *range) -> elementRun_t {
            return {static_cast<const valueRange_t *>(range)->begin(),
                    static_cast<const valueRange_t *>(range)->count()};
        };
        description.list = {.kind = listKind_t::range, .elements = elements, .elementSize = sizeof(double)};
    }

private:
    valueRange_t &range_;
    double ends_[2] = {};
};

using rangeValuesField_t = fieldArray_t<rangeElements_t>;

} // namespace vek
