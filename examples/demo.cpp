// Converts text messages to structures and back through the shared library, and shows the result.
//
//   demo FILE...    each file holds one text message

#include "vek/api/vekParams2ASCII.h"
#include "vek/records/media.hpp"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace {

std::string readFile(const char *name) {
    std::ifstream in(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// A message from its first brace on: all but the header, whose sequence number changes with every message.
std::string_view bodyOf(std::string_view message) {
    const std::size_t brace = message.find('{');
    return brace == std::string_view::npos ? std::string_view{} : message.substr(brace);
}

void showStructure(std::int32_t id, void *structure) {
    if (id == VEK_MSG_CASSETTE) {
        const auto &cassette = *static_cast<vek::Cassette *>(structure);
        std::printf("      name \"%s\", exposure offset %g x %g, %d punch systems, media \"%s\" %g thick\n",
                    cassette.name.c_str(), cassette.exposeOffset.width, cassette.exposeOffset.height,
                    static_cast<int>(cassette.punchSysName.count()), cassette.media.vendor.c_str(),
                    cassette.media.thick);
    } else if (id == VEK_MSG_DEVICE_STATUS) {
        const auto &status = *static_cast<vekDeviceStatus *>(structure);
        std::printf("      status %d, severity %d:", static_cast<int>(status.status),
                    static_cast<int>(status.severity));
        for (int i = 0; i < status.numOfMessages; ++i)
            std::printf(" \"%.255s\"", status.msgs[i]);
        std::printf("\n");
    }
}

void releaseStructure(std::int32_t id, void *structure) {
    if (id == VEK_MSG_SUPPORT_DATA_PORTS || id == VEK_MSG_DEVICE_INFO_2)
        delete static_cast<vek::MessageBase *>(structure); // the call does not take these two
    else
        vekParamsDeleteStruct(id, &structure);
}

bool roundTrip(const char *file) {
    const std::string message = readFile(file);
    std::int32_t id = 0;
    void *structure = nullptr;
    if (vekStrToVal(message.c_str(), &id, &structure) != 0 || structure == nullptr) {
        std::printf("%s: no message that has a structure\n", file);
        return false;
    }
    char *written = nullptr;
    const bool isWritten = vekValToStr(id, structure, &written) == 0;
    const bool isSame = isWritten && bodyOf(written) == bodyOf(message);
    const std::string_view body = isWritten ? bodyOf(written) : std::string_view{};
    constexpr int shown = 90;
    std::printf("%d  %6zu characters  %s  %.*s%s\n", static_cast<int>(id), message.size(),
                isSame ? "same text" : "DIFFERENT", shown, body.data() != nullptr ? body.data() : "",
                body.size() > shown ? "..." : "");
    showStructure(id, structure);
    vekParamsDelete(written);
    releaseStructure(id, structure);
    return isSame;
}

} // namespace

int main(int argc, char **argv) {
    if (argc == 1) {
        std::puts("demo FILE...    each file holds one text message");
        return 2;
    }
    int same = 0;
    for (int i = 1; i < argc; ++i)
        same += roundTrip(argv[i]) ? 1 : 0;
    std::printf("%d of %d messages came back as they were.\n", same, argc - 1);
    return same == argc - 1 ? 0 : 1;
}
