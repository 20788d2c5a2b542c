#include "vek/records/private/exposureRecords.hpp"

#include <algorithm>

namespace vek {

void placedTextField_t::describe(fieldDescription_t &description) const {
    description.kind = "string";
    description.memberType = "char";
    description.member = start_;
    description.memberSize = size_;
    description.room = static_cast<std::int32_t>(size_);
}

void placedTextField_t::place() {
    const std::size_t length = std::min(text_.size(), room_ - 1);
    std::transform(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(length), start_, unescaped);
    start_[length] = '\0';
}

void imageTopLeft_t::assignPairs(bodyScanner_t &pairs) {
    std::fill(std::begin(structure.name), std::end(structure.name), '\0');
    std::fill(std::begin(structure.separation), std::end(structure.separation), '\0');
    record_t::assignPairs(pairs);
    name.place();
    separation.place();
}

template struct conversionOf<exposeResolution_t>;
template struct conversionOf<cylinderSize_t>;
template struct conversionOf<bitmapType_t>;
template struct conversionOf<layout_t>;
template struct conversionOf<exposeJob_t>;
template struct conversionOf<exposeParams_t>;
template struct conversionOf<imageTopLeft_t>;

} // namespace vek
