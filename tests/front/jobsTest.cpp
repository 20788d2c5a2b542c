// The messages that are their own records: their fields as a host sees them.
#include "tests/front/hostTest.hpp"
#include "tests/support/messages.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

    JobPort copy;
    EXPECT_EQ(bodyOf(print(copy)), "");
    copy.jobName = job->jobName;
    copy.jobPort = job->jobPort;
    copy.jobId = 8;
    EXPECT_EQ(bodyOf(print(copy)), "{JOB_NAME={72,105,0,};JOB_ID=8;JOB_PORT=2;}");
    copy.jobId.clear();
    const std::u16string all{u'Ü', u'\u05D0', u'\0', u'\uFFFD', u'='};
    copy.jobName = all;
    copy.jobName = copy.jobName; // its own text
    EXPECT_EQ(bodyOf(print(copy)), "{JOB_NAME={220,1488,0,-3,61,0,};JOB_PORT=2;}");
    EXPECT_TRUE(parse<JobPort>(print(copy))->jobName == all);
    copy.jobName.clear();
    EXPECT_TRUE(copy.jobName == u"" && copy.jobName.count() == 0 && copy.jobName.isSet == 0 && copy.jobId == 0);
    EXPECT_EQ(bodyOf(print(copy)), "{JOB_PORT=2;}");
}

// Hosts ask for 1 and for 0.
TEST_F(JobsTest, FlagsAreOneOrZero) {
    JobSepList job;
    GdapiDataPath path;
    const auto flags = [&] {
        return std::vector<int>{job.jobName.isSet, job.sepList.isSet, path.gdapiDataPath.isSet, path.lptScsiPort.isSet};
    };
    EXPECT_EQ(flags(), (std::vector{0, 0, 0, 0}));
    EXPECT_EQ(job.jobName.count(), 0);
    job.jobName = u"Hi";
    job.sepList.add(u"C");
    path.gdapiDataPath = 3;
    path.lptScsiPort = 2;
    EXPECT_EQ(flags(), (std::vector{1, 1, 1, 1}));
    path.gdapiDataPath.clear();
    path.lptScsiPort.clear();
    job.jobName.clear();
    job.sepList.clear();
    EXPECT_EQ(flags(), (std::vector{0, 0, 0, 0}));
    EXPECT_TRUE(path.gdapiDataPath == 0 && path.lptScsiPort == 0);
    for (const char *body : {"{JOB_NAME={72,0,};SEP_LIST={{67,0,},};}", "{{72,0,},{{67,0,},},}"})
        job.fromText(body);
    for (const char *body : {"{GDAPI_DATA_PATH=TSP;LPT_SCSI_port=1;}", "{TSP,1,}"})
        path.fromText(body);
    EXPECT_EQ(flags(), (std::vector{1, 1, 1, 1}));
}

TEST_F(JobsTest, TextsKeepTheirCharacters) {
    JobPort job;
    job.jobName = u"Hi!";
    // Characters beyond those there before are dropped, yet counted.
    job.fromText("{JOB_NAME={65,66,67,68,65533,};}");
    EXPECT_EQ(job.jobName.count(), 5);
    EXPECT_EQ(bodyOf(print(job)), "{JOB_NAME={65,66,67,68,};}");
    job.fromText("{JOB_NAME={JOB_NAME1=-3;JOB_NAME2=0;};}");
    EXPECT_EQ(job.jobName.count(), 2);
    job.fromText("{JOB_NAME={};}");
    EXPECT_EQ(job.jobName.text(), u"A\xFFFD");
    EXPECT_EQ(job.jobName.text().data()[2], u'\0');
    EXPECT_EQ(test::converted(4194, "{JOB_NAME={65533,-3,32768,65536,72,};}"), "{JOB_NAME={-3,-3,-32768,0,72,};}");
    EXPECT_EQ(test::converted(4193, "{SEP_LIST={{67,0,},{},\"\",{66,},};}"), "{SEP_LIST={{67,0,},{66,},};}");
    job.jobName.clear(); // after which there is room for any text
    job.fromText("{JOB_NAME={65,66,67,68,69,0,};}");
    EXPECT_TRUE(job.jobName == u"ABCDE");
}

TEST_F(JobsTest, ListsGrowAndEmpty) {
    const auto job = parse<JobSepList>("@@4193    51 7 41 {SEP_LIST={{67,0,},{66,0,},};}!!");
    job->sepList.at(0) = u"M";
    job->sepList.add(u"Yellow");
    job->sepList.at(1).isSet = 0; // a list prints its texts whatever they say
    std::u16string seen;
    for (const wideStringField_t &text : std::as_const(*job).sepList)
        seen.append(text).append(u"|");
    EXPECT_EQ(seen, u"M|B|Yellow|");
    EXPECT_EQ(bodyOf(print(*job)), "{SEP_LIST={{77,0,},{66,0,},{89,101,108,108,111,119,0,},};}");
    job->fromText("{SEP_LIST={SEP_LIST1={SEP_LIST10=75;};SEP_LIST3={1,};};}");
    EXPECT_EQ(job->sepList.count(), 3);
    EXPECT_EQ(job->sepList.at(1).text(), u"K");
    job->sepList.clear();
    EXPECT_TRUE(job->sepList.count() == 0 && job->sepList.isSet == 0);
    EXPECT_EQ(bodyOf(print(*job)), "");
    job->fromText("{SEP_LIST={{1,},{2,},{3,},{4,},};}");
    EXPECT_EQ(job->sepList.count(), 4);
}

TEST_F(JobsTest, AreCopiedAndMovedLikeValues) {
    std::vector<JobSepList> jobs;
    const auto read = parse<JobSepList>("@@4193    70 7 41 {JOB_NAME={72,105,};SEP_LIST={{67,0,},{66,0,},};}!!");
    for (int i = 0; i < 20; ++i) { // which moves them
        jobs.push_back(i % 2 == 0 ? *read : JobSepList());
        jobs.back().sepList.push_back(i % 2 == 0 ? u"even" : u"odd");
    }
    JobSepList &last = jobs.back() = jobs[18];
    EXPECT_TRUE(last == jobs[0] && last != *read && last.sepList[0] == read->sepList[0]);
    last.fromText("{SEP_LIST={{65,0,},};JOB_NAME={66,0,0,};}"); // its own members, by their keys
    EXPECT_EQ(bodyOf(print(last)), "{JOB_NAME={66,0,};SEP_LIST={{65,0,},{66,0,},{101,118,101,110,0,},};}");
    EXPECT_EQ(bodyOf(print(jobs[18])), "{JOB_NAME={72,105,};SEP_LIST={{67,0,},{66,0,},{101,118,101,110,0,},};}");
    last = *&last;
    std::swap(last, jobs[1]);
    EXPECT_EQ(bodyOf(print(last)), "{SEP_LIST={{111,100,100,0,},};}");
    EXPECT_TRUE(jobs[1].jobName == u"B" && jobs[1].sepList.size() == 3);
    JobPort unset, zero;
    zero.jobId = 0;
    EXPECT_FALSE(unset == zero);
    unset = zero;
    EXPECT_TRUE(unset == zero && JobPort(unset).jobId.isSet == 1 && unset.jobName.isSet == 0);
}

TEST_F(JobsTest, EnumerationsKnowTheirNames) {
    const auto path = parse<GdapiDataPath>("@@4195    59 7 41 {GDAPI_DATA_PATH=TSP;LPT_SCSI_port=1;}!!");
    EXPECT_TRUE(path->gdapiDataPath == 1 && path->gdapiDataPath.name() == "TSP");
    path->gdapiDataPath = 3;
    EXPECT_EQ(bodyOf(print(*path)), "{GDAPI_DATA_PATH=BITMAP;LPT_SCSI_port=1;}");
    path->gdapiDataPath = 4; // without a name it is not written
    EXPECT_EQ(path->gdapiDataPath.name(), "");
    EXPECT_EQ(bodyOf(printLossy(*path)), "{LPT_SCSI_port=1;}");
}

} // namespace
