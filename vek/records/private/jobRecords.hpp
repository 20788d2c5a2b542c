// Record class of the cylinder job; the other jobs' records are their structures, in jobs.hpp.
#pragma once

#include "vek/records/jobs.hpp"
#include "vek/records/private/record.hpp"

namespace vek {

class cylinderJob_t : public record_t<CylinderJob> {
public:
    using record_t::record_t;

    longField_t cylinderId{*this, "CYLINDER_ID", structure.cylinderId};
    boolField_t isEndlessScreen{*this, "IS_ENDLESS_SCREEN", structure.isEndlessScreen};
    longField_t jobId{*this, "JOB_ID", structure.jobId};
    fixedTextField_t<256> deviceMediaNameId{*this, "DEVICE_MEDIA_NAME_ID", structure.deviceMediaNameId};
};

} // namespace vek
