#include "tests/support/messages.hpp"

#include "vek/api/envelope.hpp"
#include "vek/api/messageTable.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vek::test {

std::string message(std::int32_t id, std::string_view body, std::int32_t echoTag, std::int32_t sequenceNumber) {
    char header[64];
    const auto write = [&](std::size_t length) {
        return static_cast<std::size_t>(
            std::snprintf(header, sizeof header, "@@%d %5zu %d %d ", id, length, echoTag, sequenceNumber));
    };
    std::size_t length = write(0) + body.size() + 3;
    length += length > longestReadableMessage ? std::to_string(length).size() - 5 : 0;
    write(length);
    return std::string(header) + std::string(body) + "!!";
}

std::string bodyOf(std::string_view message) {
    std::size_t at = message.find(' ') + 7; // over the length
    for (int numbers = 0; numbers < 2; ++numbers)
        at = message.find(' ', at) + 1;
    return message.size() < at + 2 ? std::string() : std::string(message.substr(at, message.size() - at - 2));
}

const std::vector<sample_t> &samples() {
    static const std::vector<sample_t> all = [] {
        std::vector<sample_t> read;
        for (const auto &entry : std::filesystem::directory_iterator(VEK_SAMPLES)) {
            std::ifstream in(entry.path(), std::ios::binary);
            const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            read.push_back({entry.path().filename().string(), text, std::atoi(text.c_str() + 2), bodyOf(text)});
        }
        std::sort(read.begin(), read.end(), [](const auto &a, const auto &b) { return a.file < b.file; });
        return read;
    }();
    return all;
}

const sample_t &sampleOf(std::int32_t id) {
    const auto sample =
        std::find_if(samples().begin(), samples().end(), [id](const auto &one) { return one.id == id; });
    if (sample == samples().end())
        throw std::runtime_error("message " + std::to_string(id) + " has no sample in examples/messages");
    return *sample;
}

std::vector<std::int32_t> bodyIds() {
    std::vector<std::int32_t> ids;
    messages_t::forEach([&ids]<class Message>(Message) { ids.push_back(Message::id); });
    return ids;
}

bool hasGrowableLists(std::int32_t id) {
    constexpr std::int32_t ids[] = {4096, 4099, 4100, 4101, 4102, 4105, 4114, 4115, 4116, 4119, 4136, 4193, 4194};
    return std::find(std::begin(ids), std::end(ids), id) != std::end(ids);
}

structure_t::structure_t(const char *text, std::int32_t initialId)
    : result(vekStrToVal(text, &initialId, &address)), id(initialId) {}

structure_t::~structure_t() {
    if (id == VEK_MSG_SUPPORT_DATA_PORTS || id == VEK_MSG_DEVICE_INFO_2)
        delete static_cast<MessageBase *>(address); // the call does not take these two
    else if (address != nullptr)
        vekParamsDeleteStruct(id, &address);
}

std::string written(std::int32_t id, void *structure, std::int32_t *result) {
    char *text = nullptr;
    const std::int32_t returned = vekValToStr(id, structure, &text);
    if (result != nullptr)
        *result = returned;
    std::string copy = text != nullptr ? text : "(null)";
    vekParamsDelete(text);
    return copy;
}

std::string shown(std::string_view text) {
    std::string out;
    for (const char c : text) {
        char code[8];
        std::snprintf(code, sizeof code, c >= ' ' && c <= '~' ? "%c" : "\\x%02x", static_cast<unsigned char>(c));
        out += code;
    }
    return out;
}

} // namespace vek::test
