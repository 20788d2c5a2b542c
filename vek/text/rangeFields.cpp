#include "vek/text/private/rangeFields.hpp"

namespace vek {

namespace {
constexpr std::array rangeTypes{"discrete_e", "continuous_e"};
} // namespace

constinit const enumNames_t rangeTypeNames{rangeTypes, "range type"};

} // namespace vek
