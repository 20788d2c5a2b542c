// A host that names jobs in any script: their names and separations are texts of 16-bit characters.
#include "vek/api/vekParams2ASCII.hpp"

#include <iostream>

int main() {
    vek::JobSepList job;
    job.jobName = u"Frühling";
    for (const char16_t *separation : {u"Cyan", u"黒"})
        job.sepList.add(separation);
    const vek::messageText_t sent = vek::print(job);
    std::cout << sent << '\n';

    const auto received = vek::parse<vek::JobSepList>(sent);
    std::cout << (received->jobName == u"Frühling" && received->sepList[1] == u"黒" ? "The same" : "Another")
              << " with " << received->sepList.size() << " separations\n";
}
