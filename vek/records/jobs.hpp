// Message structures of jobs.
//
// Those of 4193 to 4195 are their records themselves: groups of fields that keep their values. A field is read and
// assigned like its value, `job.jobId = 1207`, a 16-bit text as a std::u16string_view, `job.jobName = u"Spring"`. It
// stands in the text once it was assigned, until clear(); isSet tells. They are copied with what is set of them, and
// are equal when the same fields are set, to equal values.
#pragma once

#include "vek/records/enumerations.hpp"
#include "vek/records/messageBase.hpp"
#include "vek/text/enumField.hpp"
#include "vek/text/scalarFields.hpp"
#include "vek/text/wideStringField.hpp"

#include <cstdint>

namespace vek {

/// 4129
struct CylinderJob : MessageBase {
    CylinderJob() : MessageBase(VEK_MSG_CYLINDER_JOB) {}

    std::int32_t cylinderId = 0;
    std::uint8_t isEndlessScreen = 0; ///< 0 or 1
    std::int32_t jobId = 0;
    char deviceMediaNameId[256] = {};

    bool operator==(const CylinderJob &other) const {
        using s = CylinderJob;
        return MessageBase::operator==(other) &&
               detail::areSame(*this, other, &s::cylinderId, &s::isEndlessScreen, &s::jobId, &s::deviceMediaNameId);
    }
};

namespace detail {

/// Of records that are their own structures: all but what ties the fields to their group.
template <class Record, class... Fields>
Record &copyFields(Record &to, const Record &from, Fields Record::*...fields) {
    to.isSet = from.isSet;
    ((to.*fields).copyFrom(from.*fields), ...);
    return to;
}
template <class Record, class... Fields>
bool haveSameFields(const Record &a, const Record &b, Fields Record::*...fields) {
    return (((a.*fields).isSet == (b.*fields).isSet && (a.*fields) == (b.*fields)) && ...);
}

} // namespace detail

/// 4193: a job's name and its separations
struct jobSepList_t : textGroup_t {
    static constexpr std::string_view about = "A job's name and its separations. A 16-bit text stands in the body as a "
                                              "list of character codes, the terminating 0 included.";

    jobSepList_t() : textGroup_t(pass_t::parse) {}
    jobSepList_t(const jobSepList_t &other) : jobSepList_t() { *this = other; }
    jobSepList_t &operator=(const jobSepList_t &other) {
        return detail::copyFields(*this, other, &jobSepList_t::jobName, &jobSepList_t::sepList);
    }
    bool operator==(const jobSepList_t &other) const {
        return detail::haveSameFields(*this, other, &jobSepList_t::jobName, &jobSepList_t::sepList);
    }

    wideStringField_t jobName{*this, "JOB_NAME"};
    wideStringListField_t sepList{*this, "SEP_LIST"};
};

/// 4194
struct jobPort_t : textGroup_t {
    static constexpr std::string_view about =
        "The port of a job. The name stands in the body as a list of character codes, the terminating 0 included.";

    jobPort_t() : textGroup_t(pass_t::parse) {}
    jobPort_t(const jobPort_t &other) : jobPort_t() { *this = other; }
    jobPort_t &operator=(const jobPort_t &other) {
        return detail::copyFields(*this, other, &jobPort_t::jobName, &jobPort_t::jobId, &jobPort_t::jobPort);
    }
    bool operator==(const jobPort_t &other) const {
        return detail::haveSameFields(*this, other, &jobPort_t::jobName, &jobPort_t::jobId, &jobPort_t::jobPort);
    }

    wideStringField_t jobName{*this, "JOB_NAME"};
    ownField_t<longCodec_t> jobId{*this, "JOB_ID"};
    ownField_t<longCodec_t> jobPort{*this, "JOB_PORT"};
};

/// 4195
struct gdapiDataPath_t : textGroup_t {
    static constexpr std::string_view about = "The data path and its port.";

    gdapiDataPath_t() : textGroup_t(pass_t::parse) {}
    gdapiDataPath_t(const gdapiDataPath_t &other) : gdapiDataPath_t() { *this = other; }
    gdapiDataPath_t &operator=(const gdapiDataPath_t &other) {
        return detail::copyFields(*this, other, &gdapiDataPath_t::gdapiDataPath, &gdapiDataPath_t::lptScsiPort);
    }
    bool operator==(const gdapiDataPath_t &other) const {
        return detail::haveSameFields(*this, other, &gdapiDataPath_t::gdapiDataPath, &gdapiDataPath_t::lptScsiPort);
    }

    ownEnumFieldOf_t<dataPath_t> gdapiDataPath{*this, "GDAPI_DATA_PATH", dataPathNames};
    ownField_t<longCodec_t> lptScsiPort{*this, "LPT_SCSI_port"}; // the device's own spelling
};

using JobSepList = jobSepList_t;
using JobPort = jobPort_t;
using GdapiDataPath = gdapiDataPath_t;

} // namespace vek
