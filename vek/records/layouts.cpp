#include "vek/records/private/layouts/layouts.hpp"

#include "vek/records/private/layouts/device.hpp"
#include "vek/records/private/layouts/exposure.hpp"
#include "vek/records/private/layouts/jobs.hpp"
#include "vek/records/private/layouts/media.hpp"
#include "vek/records/private/layouts/punch.hpp"
#include "vek/records/private/layouts/status.hpp"
#include "vek/records/private/layouts/tables.hpp"

namespace vek {

namespace {

constexpr std::array families{&deviceLayouts,   &mediaLayouts, &punchLayouts,  &tableLayouts,
                              &exposureLayouts, &jobLayouts,   &statusLayouts, &sizeLayouts,
                              &stringLayouts,   &listLayouts,  &rangeLayouts,  &containerLayouts};

} // namespace

std::span<const layoutFamily_t *const> layoutFamilies() {
    return families;
}

} // namespace vek
