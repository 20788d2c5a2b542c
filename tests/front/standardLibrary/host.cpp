// A host that is built with a standard library other than vekTypes, or another mode of it. Ends with 0 when all is as
// it should be.
#include "vek/api/vekParams2ASCII.hpp"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace {

void expect(bool isTrue, const char *what) {
    if (!isTrue) {
        std::fprintf(stderr, "not so: %s\n", what);
        std::exit(1);
    }
}

void checks() {
    vek::Cassette cassette;
    cassette.name = "Plates";
    expect(vek::check(cassette).empty(), "nothing is wrong with a cassette");
    cassette.name = std::string(200, 'x') + '\x02';
    cassette.exposeOffset.width = std::numeric_limits<double>::infinity();
    cassette.media.type = 77;
    const std::vector<vek::problem_t> problems = vek::check(cassette);
    expect(problems.size() == 3, "three things are wrong");
    expect(problems[0].member == "name" && problems[0].text.ends_with("';': leave it out"), "the name is told");
    expect(problems[2].code == vek::problemCode_t::unnamedValue && problems[2].member == "media.type",
           "the type is told");
    vek::problem_t problem;
    expect(vek::print(cassette, problem).empty() && problem.member == "name", "it is not printed");
    try {
        (void)vek::print(cassette);
        expect(false, "printing throws");
    } catch (const vek::messageError_t &error) {
        expect(std::string_view(error.what()) == problems[0].text, "what is thrown is told");
    }
}

void converts() {
    vek::FocusValue focus;
    focus.mediaName = std::string("a longer name than fits into any small text of a standard library ") + 'x';
    focus.focusValue = 3.25;
    const vek::messageText_t written = vek::print(focus);
    const vek::owned_t<vek::FocusValue> read = vek::parse<vek::FocusValue>(written);
    expect(*read == focus && std::string(read->mediaName) == std::string(focus.mediaName), "it comes back");

    vek::MediaGroup group;
    group.mediaGroup.add("Blue");
    group.mediaGroup.add("Green");
    vek::MediaGroupArray groups;
    groups.add(group);
    expect(*vek::parseStrictly<vek::MediaGroupArray>(vek::print(groups).str()) == groups,
           "containers and lists come back");
    expect(vek::nameOf<vek::mediaType_t>(VEK_MEDIA_PLATE) == "mediaPlate_e", "enumerations have names");

    vek::DeviceStatus status{};
    status.numOfMessages = 1;
    vek::setText(status.msgs[0], "Drum stopped");
    expect(*vek::parseStrictly<vek::DeviceStatus>(vek::print(status)) == status, "plain structures come back");

    const std::string_view job = "@@4194    49 -1 0 {JOB_NAME={65,0,};JOB_ID=7;}!!";
    const auto asked = vek::parse<vek::JobPort>(job);
    expect(vek::check(*asked).empty() && vek::print(*asked).view().ends_with("{JOB_NAME={65,0,};JOB_ID=7;}!!"),
           "a job structure is read, checked and printed");
#ifndef WITHOUT_JOBS
    vek::JobPort port;
    port.jobName = u"Spring";
    expect(vek::check(port).empty() && *vek::parse<vek::JobPort>(vek::print(port)) == port, "job structures come back");
    vek::GdapiDataPath path;
    path.gdapiDataPath = 9;
    expect(vek::check(path).size() == 1, "an enumeration of a job structure is checked");
    vek::JobSepList separations;
    separations.sepList.add(u"Cyan");
    expect(*vek::parseStrictly<vek::JobSepList>(vek::print(separations)) == separations,
           "lists of job structures come back");
#endif
}

} // namespace

int main() {
    converts();
    checks();
}
