// How cost and memory grow: every message with a list, from 1 kB to 99 kB, and texts made to be dear to read.
//
//   growth FILE   writes "direction,id,bytes,nanoseconds a byte" to FILE (scripts/bench.sh plots it), and prints a
//   summary
#include "bench/heapCount.hpp"
#include "bench/timing.hpp"
#include "vek/api/vekParams2ASCII.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

namespace {

/// A message's list, and the key that says how many of its elements are written, if one does.
struct listed_t {
    std::int32_t id;
    std::string_view list;
    std::string_view countKey;
};

constexpr listed_t lists[] = {
    {4096, "RESOLUTION", ""},
    {4100, "PUNCH_SYS_NAME", "NUM_AVAILABLE_PUNCH_SYS"},
    {4101, "ARRAY_CASSETTE", ""},
    {4102, "ARRAY_PUNCH", ""},
    {4105, "RES_INT_TABLE", "NUM_ENTRIES"},
    {4107, "ARRAY_RES_INT", ""},
    {4110, "DELAY_VALUE_TABLE", ""},
    {4111, "RES_MOTOR_TABLE", ""},
    {4114, "MEDIA_GROUP", ""},
    {4115, "MEDIA_GROUP", ""},
    {4116, "MEDIA_ARRAY", ""},
    {4130, "DEVICE_MEDIA_NAME_ARRAY", ""},
    {4193, "SEP_LIST", ""},
};

constexpr std::size_t kilobytes[] = {1, 2, 4, 8, 16, 32, 64, 99};

std::string sampleBody(std::int32_t id) {
    for (const auto &file : std::filesystem::directory_iterator(VEK_PROJECT_FOLDER "/examples/messages"))
        if (file.path().filename().string().starts_with(std::to_string(id))) {
            std::ifstream in(file.path(), std::ios::binary);
            const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            return text.substr(text.find('{'), text.rfind("!!") - text.find('{'));
        }
    std::cerr << "no sample message " << id << "; run from a checkout\n";
    std::exit(1);
}

std::string message(std::int32_t id, const std::string &body) {
    const std::string rest = " 7 41 " + body + "!!";
    char start[32];
    std::snprintf(start, sizeof start, "@@%d %5zu", static_cast<int>(id), 2 + 4 + 1 + 5 + rest.size() + 1);
    return start + rest;
}

/// The sample of a message with the elements of its list repeated until the text has about so many bytes.
std::string grown(const listed_t &listed, std::size_t bytes) {
    std::string body = sampleBody(listed.id);
    if (!listed.countKey.empty()) {
        const std::size_t count = body.find(std::string(listed.countKey) + '=') + listed.countKey.size() + 1;
        body.replace(count, body.find(';', count) - count, "99999");
    }
    const std::size_t begin = body.find(std::string(listed.list) + "={") + listed.list.size() + 2;
    std::size_t end = begin;
    for (int depth = 1; depth > 0; ++end)
        depth += body[end] == '{' ? 1 : body[end] == '}' ? -1 : 0;
    const std::string elements = body.substr(begin, end - 1 - begin);
    std::string added;
    while (body.size() + added.size() + elements.size() < bytes)
        added += elements;
    return message(listed.id, body.insert(begin, added));
}

void read(const std::string &text) {
    std::int32_t id = 0;
    void *structure = nullptr;
    vekStrToVal(text.c_str(), &id, &structure);
    vekParamsDeleteStruct(id, &structure);
}

/// Owns what a text was read into.
struct structure_t {
    explicit structure_t(const std::string &text) { vekStrToVal(text.c_str(), &id, &address); }
    ~structure_t() { vekParamsDeleteStruct(id, &address); }
    structure_t(const structure_t &) = delete;
    structure_t &operator=(const structure_t &) = delete;

    std::int32_t id = 0;
    void *address = nullptr;
};

/// Writes a structure so many times, and returns the length of its text.
std::size_t write(const structure_t &structure, std::size_t count) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < count; ++i) {
        char *text = nullptr;
        vekValToStr(structure.id, structure.address, &text);
        length = i == 0 ? std::string_view(text).size() : length;
        vekParamsDelete(text);
    }
    return length;
}

double readingCost(const std::string &text) {
    return timeInTurn({[&](std::size_t count) {
               while (count-- > 0)
                   read(text);
           }})[0] /
           static_cast<double>(text.size());
}

double writingCost(const structure_t &structure) {
    const std::size_t length = write(structure, 1);
    return timeInTurn({[&](std::size_t count) { write(structure, count); }})[0] / static_cast<double>(length);
}

void growth(std::ofstream &out) {
    std::printf("| id | reading: ns a byte at 1 kB | at 99 kB | largest / smallest | writing: at 1 kB | at 99 kB | "
                "largest / smallest |\n|--:|--:|--:|--:|--:|--:|--:|\n");
    for (const listed_t &listed : lists) {
        std::printf("| %d |", static_cast<int>(listed.id));
        for (const char *direction : {"reading", "writing"}) {
            std::vector<double> costs;
            for (const std::size_t size : kilobytes) {
                const std::string text = grown(listed, size * 1000);
                costs.push_back(direction[0] == 'r' ? readingCost(text) : writingCost(structure_t(text)));
                out << direction << ',' << listed.id << ',' << text.size() << ',' << costs.back() << '\n';
            }
            std::printf(" %.3f | %.3f | %.2f |", costs.front(), costs.back(),
                        *std::max_element(costs.begin(), costs.end()) / *std::min_element(costs.begin(), costs.end()));
        }
        std::printf("\n");
        std::fflush(stdout);
    }
}

std::string repeated(std::string_view part, std::size_t bytes) {
    std::string text;
    while (text.size() + part.size() <= bytes)
        text += part;
    return text;
}

void hostile() {
    constexpr std::size_t bytes = 90000;
    const double ordinary = readingCost(grown({4101, "ARRAY_CASSETTE", ""}, bytes));
    std::printf(
        "\nCost a byte of reading texts made to be dear, as multiples of that of 90 kB of cassettes:\n\n"
        "| id | body | multiple | largest memory while reading / held after, plus the text |\n|--:|---|--:|--:|\n");
    const auto test = [&](std::int32_t id, const char *shown, const std::string &body) {
        const std::string text = message(id, body);
        startHeapCount();
        std::size_t held = 0;
        {
            const structure_t structure(text);
            held = stopHeapCount().bytes;
        }
        startHeapCount();
        read(text);
        const std::size_t peak = stopHeapCount().peak;
        std::printf("| %d | `%s` | %.2f | %.2f |\n", static_cast<int>(id), shown, readingCost(text) / ordinary,
                    static_cast<double>(peak + text.size()) / static_cast<double>(held + text.size()));
    };
    test(4101, "{{,,,...}}", "{{" + repeated(",", bytes) + "}}");
    test(4101, "{ARRAY_CASSETTE={1,1,...}}", "{ARRAY_CASSETTE={" + repeated("1,", bytes) + "};}");
    test(4101, "{ARRAY_CASSETTE={{},{},...}}", "{ARRAY_CASSETTE={" + repeated("{},", bytes) + "};}");
    test(4101, "{ARRAY_CASSETTE={{A=1},{A=1},...}}", "{ARRAY_CASSETTE={" + repeated("{A=1},", bytes) + "};}");
    test(4101, "cassettes, then {=}", "{ARRAY_CASSETTE={" + repeated("{NAME=a;},", bytes) + "=,};}");
    test(4105, "{RES_INT_TABLE={1,1,...}}", "{RES_INT_TABLE={" + repeated("1,", bytes) + "};}");
    test(4105, "{RES_INT_TABLE={{},{},...}}", "{RES_INT_TABLE={" + repeated("{},", bytes) + "};}");
    test(4114, "{MEDIA_GROUP={1,1,...}}", "{MEDIA_GROUP={" + repeated("1,", bytes) + "};}");
    test(4116, "{MEDIA_ARRAY={{},{},...}}", "{MEDIA_ARRAY={" + repeated("{},", bytes) + "};}");
    test(4193, "{SEP_LIST={1,1,...}}", "{SEP_LIST={" + repeated("1,", bytes) + "};}");
    test(4193, "{SEP_LIST={{},{},...}}", "{SEP_LIST={" + repeated("{},", bytes) + "};}");
    test(4165, "{A=1;A=1;...}", "{" + repeated("A=1;", bytes) + "}");
    test(4165, "{SCREEN_TYPE=1;DRUM_ID=1;...}", "{" + repeated("SCREEN_TYPE=1;DRUM_ID=1;", bytes) + "}");
    test(4165, "{LD=1e-300;...}", "{LD=" + repeated("123456789", bytes) + "e-300;}");
    test(4096, "{{{{...}}}}", repeated("{", bytes / 2) + repeated("}", bytes / 2));
}

} // namespace

} // namespace bench

int main(int count, char **arguments) {
    if (count != 2) {
        std::cerr << "growth FILE\n";
        return 2;
    }
    std::ofstream out(arguments[1]);
    bench::growth(out);
    bench::hostile();
}
