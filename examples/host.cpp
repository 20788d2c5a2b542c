// A host of the library: reads a message, changes it, and writes messages.
#include "vek/api/vekParams2ASCII.hpp"

#include <iostream>

int main() {
    try {
        // A message that came over the line. Its structure releases itself.
        auto focus = vek::parse<vek::FocusValue>("@@4112    62 7 41 {MEDIA_NAME=Violet;FOCUS_VALUE=3.250000;}!!");
        std::cout << focus->mediaName.c_str() << " is in focus at " << focus->focusValue << '\n';
        focus->focusValue += 0.25;
        std::cout << vek::print(*focus) << '\n';

        // A message of our own. Members have their defaults until we say otherwise.
        vek::CassetteArray cassettes;
        vek::Cassette &plates = cassettes.add();
        plates.name = "Plates";
        plates.media.size = {.width = 1030.0, .height = 800.0};
        for (const vek::Cassette *cassette : cassettes)
            std::cout << cassette->name.c_str() << " of vendor " << cassette->media.vendor.c_str() << '\n';
        std::cout << vek::print(cassettes) << '\n';

        // A message whose id is not known beforehand.
        const std::string text = "@@4194    67 7 43 {JOB_NAME={72,105,0,};JOB_ID=1207;JOB_PORT=2;}!!";
        if (vek::messageId(text) == VEK_MSG_JOB_PORT)
            std::cout << "Job " << vek::parse<vek::JobPort>(text)->jobId << '\n';

        // A message that was cut off on its way.
        std::cout << vek::parse<vek::DeviceStatus>("@@4161    71 7 44 {STATUS=3;LOW_STATUS=17")->status << '\n';
    } catch (const vek::messageError_t &error) {
        std::cout << "Refused: " << error.what() << '\n';
    }
}
