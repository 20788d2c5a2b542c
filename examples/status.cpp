// A host that tells what a device reports: each message goes to what is there for its structure.
#include "vek/api/vekParams2ASCII.hpp"

#include <iostream>
#include <string_view>

namespace {

void tell(const vek::DeviceStatus &status) {
    std::cout << "Status " << status.status << ":";
    for (int i = 0; i < status.numOfMessages; ++i) // at most as many as there are, in what the library made
        std::cout << ' ' << vek::textOf(status.msgs[i]) << '.';
    std::cout << '\n';
}

} // namespace

int main() {
    for (const std::string_view text :
         {"@@4161    81 7 41 {STATUS=3;NUM_OF_MESSAGES=2;MSGS={Stopped,Close the door,};}!!",
          "@@4118    38 7 42 {DEVICE_STATE=1;}!!", "@@4202    52 7 43 {TYPE=TRUE;INFO=Plates loaded;}!!",
          "@@4112    62 7 44 {MEDIA_NAME=Violet;FOCUS_VALUE=3.250000;}!!", "@@4118    38 7 45 {DEVICE_STA"})
        vek::dispatch(
            text,
            vek::overloaded{[](const vek::DeviceStatus &status) { tell(status); },
                            [](const vek::DeviceState &state) { std::cout << "State " << state.deviceState << '\n'; },
                            [](const vek::Info &info) { std::cout << "Info: " << info.info << '\n'; },
                            [](const vek::problem_t &problem) { std::cout << "Refused: " << problem.text << '\n'; }});
}
