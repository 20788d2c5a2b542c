// What the comparison converts.
#include "bench/peer.hpp"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>

namespace bench {

namespace {

content_t sample(const char *file, const objectType_t &type) {
    std::ifstream in(std::string(VEK_PROJECT_FOLDER "/examples/messages/") + file, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (text.empty()) {
        std::cerr << "can't read sample message " << file << "; run from a checkout\n";
        std::exit(1);
    }
    content_t content(type);
    readBody(std::string_view(text).substr(text.find('{')), type, content.get());
    return content;
}

content_t repeated(content_t content, std::string_view key, std::size_t count) {
    repeat(content, key, count);
    return content;
}

std::vector<content_t> varied(const content_t &content) {
    constexpr std::size_t count = 1024;
    std::mt19937 random(count);
    std::vector<content_t> contents;
    contents.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        vary(*content.type, contents.emplace_back(content).get(), random);
    }
    return contents;
}

} // namespace

std::vector<row_t> makeRows() {
    const content_t cassette = sample("4100-cassette.txt", cassetteType());
    const content_t exposeParams = sample("4165-expose-params.txt", exposeParamsType());
    content_t table = repeated(sample("4105-res-int-table.txt", resIntTableType()), "RES_INT_TABLE", 100);
    std::size_t due = 0;
    table.type->find("NUM_ENTRIES", due);
    table.type->members[due - 1].in<std::int32_t>(table.get()) = 100;
    std::vector<row_t> rows;
    rows.push_back({"4100 cassette", 4100, {cassette}});
    rows.push_back({"4096 device info", 4096, {sample("4096-device-info.txt", deviceInfoType())}});
    rows.push_back({"4165 exposure", 4165, {exposeParams}});
    rows.push_back({"4105, 100 entries", 4105, {table}});
    rows.push_back({"4171 colour table", 4171, {sample("4171-color-table.txt", colorTableType())}});
    rows.push_back({"4101, 20 cassettes",
                    4101,
                    {repeated(sample("4101-cassette-array.txt", cassetteArrayType()), "ARRAY_CASSETTE", 20)}});
    rows.push_back({"1,024 different 4100", 4100, varied(cassette)});
    rows.push_back({"1,024 different 4165", 4165, varied(exposeParams)});
    rows.push_back(
        {"4193, 10 separations", 4193, {repeated(sample("4193-job-sep-list.txt", jobSepListType()), "SEP_LIST", 10)}});
    return rows;
}

} // namespace bench
