// Record class of the cylinder job; the other jobs' records are their structures, in jobs.hpp.
#include "vek/records/jobs.hpp"

#include "vek/records/private/record.hpp"

#include <string_view>

namespace vek {

struct cylinderJob_t : record_t<CylinderJob> {
    using record_t::record_t;
    static constexpr std::string_view about = "A job on a cylinder.";

    longField_t cylinderId{*this, "CYLINDER_ID", structure.cylinderId};
    boolField_t isEndlessScreen{*this, "IS_ENDLESS_SCREEN", structure.isEndlessScreen};
    longField_t jobId{*this, "JOB_ID", structure.jobId};
    fixedTextField_t<256> deviceMediaNameId{*this, "DEVICE_MEDIA_NAME_ID", structure.deviceMediaNameId};
};

template struct conversionOf<CylinderJob, cylinderJob_t>;
template struct conversionOf<JobSepList, jobSepList_t>;
template struct conversionOf<JobPort, jobPort_t>;
template struct conversionOf<GdapiDataPath, gdapiDataPath_t>;

} // namespace vek
