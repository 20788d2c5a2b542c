#include "vek/text/private/rangeFields.hpp"

#include "vek/text/enumeration.h"

namespace vek {

namespace {
constexpr std::array rangeTypes{VEK_RANGE_TYPES(VEK_NAME_OF)};
} // namespace

constinit const enumNames_t rangeTypeNames{rangeTypes, "range type"};

} // namespace vek
