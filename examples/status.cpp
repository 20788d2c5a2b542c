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

void tell(const vek::DeviceState &state) {
    std::cout << "State " << state.deviceState << '\n';
}

void tell(const vek::Info &info) {
    std::cout << "Info: " << info.info << '\n';
}

void take(std::string_view text) {
    switch (vek::messageId(text)) {
    case VEK_MSG_DEVICE_STATUS:
        return tell(*vek::parse<vek::DeviceStatus>(text));
    case VEK_MSG_DEVICE_STATE:
        return tell(*vek::parse<vek::DeviceState>(text));
    case VEK_MSG_INFO:
        return tell(*vek::parse<vek::Info>(text));
    default:
        std::cout << "Message " << vek::messageId(text) << " is not for this host\n";
    }
}

} // namespace

int main() {
    for (const std::string_view text :
         {"@@4161    81 7 41 {STATUS=3;NUM_OF_MESSAGES=2;MSGS={Stopped,Close the door,};}!!",
          "@@4118    38 7 42 {DEVICE_STATE=1;}!!", "@@4202    52 7 43 {TYPE=TRUE;INFO=Plates loaded;}!!",
          "@@4112    62 7 44 {MEDIA_NAME=Violet;FOCUS_VALUE=3.250000;}!!", "@@4118    38 7 45 {DEVICE_STA"})
        try {
            take(text);
        } catch (const vek::messageError_t &error) {
            std::cout << "Refused: " << error.what() << '\n';
        }
}
