// The messages that are their own records: their fields as a host sees them.
#include "api/vekParams2ASCII.hpp"
#include "support/messages.hpp"
#include "tests/front/hostTest.hpp"

#include <string>
#include <string_view>
#include <utility>

namespace {

using namespace vek;
using test::bodyOf;

class JobsTest : public HostTest {};

TEST_F(JobsTest, FieldsReadAndAssignLikeTheirValues) {
    const auto job = parse<JobPort>("@@4194    67 7 43 {JOB_NAME={72,105,0,};JOB_ID=1207;JOB_PORT=2;}!!");
    const std::u16string_view name = job->jobName;
    const std::int32_t id = job->jobId;
    EXPECT_TRUE(name == u"Hi" && job->jobName == u"Hi" && !(job->jobName == u"Hi!"));
    EXPECT_EQ(job->jobName.count(), 3); // with its terminating 0
    EXPECT_EQ(id, 1207);
    EXPECT_TRUE(job->jobPort == 2);

    JobPort copy;
    EXPECT_EQ(bodyOf(print(copy)), "");
    copy.jobName = job->jobName;
    copy.jobPort = job->jobPort;
    copy.jobId = 8;
    EXPECT_TRUE(copy.jobName == job->jobName);
    EXPECT_EQ(bodyOf(print(copy)), "{JOB_NAME={72,105,0,};JOB_ID=8;JOB_PORT=2;}");
    copy.jobName.clear();
    copy.jobId.clear();
    EXPECT_TRUE(copy.jobName == u"" && copy.jobId == 0);
    EXPECT_EQ(bodyOf(print(copy)), "{JOB_PORT=2;}");
}

TEST_F(JobsTest, SixteenBitTextsKeepEveryCharacter) {
    JobSepList job;
    job.jobName = u"";
    EXPECT_EQ(bodyOf(print(job)), "{JOB_NAME={0,};}");
    const std::u16string all{u'Ü', u'\u05D0', u'\0', u'\uFFFD', u'='};
    job.jobName = all;
    job.jobName = job.jobName; // its own text
    EXPECT_EQ(bodyOf(print(job)), "{JOB_NAME={220,1488,0,-3,61,0,};}");
    EXPECT_TRUE(parse<JobSepList>(print(job))->jobName == all);
}

TEST_F(JobsTest, ListsGrowAndEmpty) {
    const auto job = defaults<JobSepList>();
    job->sepList.add(u"Cyan");
    job->sepList.add(u"") = u"B";
    EXPECT_EQ(bodyOf(print(*job)), "{SEP_LIST={{67,121,97,110,0,},{66,0,},};}");

    const auto read = parse<JobSepList>(print(*job));
    read->sepList.at(0) = u"M";
    read->sepList.add(u"Yellow");
    std::u16string seen;
    for (const wideStringField_t &text : std::as_const(*read).sepList)
        seen.append(text).append(u"|");
    EXPECT_EQ(seen, u"M|B|Yellow|");
    EXPECT_EQ(read->sepList.count(), 3);
    read->sepList.clear();
    EXPECT_EQ(print(*read).find("SEP_LIST"), std::string::npos);
}

TEST_F(JobsTest, EnumerationsKnowTheirNames) {
    const auto path = parse<GdapiDataPath>("@@4195    59 7 41 {GDAPI_DATA_PATH=TSP;LPT_SCSI_port=1;}!!");
    EXPECT_TRUE(path->gdapiDataPath == 1 && path->gdapiDataPath.name() == "TSP");
    path->gdapiDataPath = 3;
    EXPECT_EQ(bodyOf(print(*path)), "{GDAPI_DATA_PATH=BITMAP;LPT_SCSI_port=1;}");
    path->gdapiDataPath = 4; // without a name it is not written
    EXPECT_EQ(path->gdapiDataPath.name(), "");
    EXPECT_EQ(bodyOf(print(*path)), "{LPT_SCSI_port=1;}");
}

} // namespace
