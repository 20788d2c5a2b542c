// How cost and memory grow: every message with a list, from 1 kB to 99 kB, and texts made to be dear to read.
//
//   growth FILE   writes "direction,id,bytes,nanoseconds a byte" to FILE (scripts/bench.sh plots it), and prints a
//   summary
#include "bench/heapCount.hpp"
#include "bench/timing.hpp"
#include "vek/api/vekParams2ASCII.h"
#include "vek/api/vekParams2ASCII.hpp"

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
    std::string_view record = {}; ///< that the list stands in
};

constexpr listed_t lists[] = {
    {4096, "RESOLUTION", "", "DEVICE_INFO"},
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

/// A message with nothing but its list, whose elements are the sample's, repeated until the text has about so many
/// bytes. (Beside the other members, a longer list would also show how dear its elements are.)
std::string grown(const listed_t &listed, std::size_t bytes) {
    const std::string sample = sampleBody(listed.id);
    const std::string start = std::string(listed.list) + "={";
    const std::size_t begin = sample.find(start) + start.size();
    std::size_t end = begin;
    for (int depth = 1; depth > 0; ++end)
        depth += sample[end] == '{' ? 1 : sample[end] == '}' ? -1 : 0;
    const std::string elements = sample.substr(begin, end - 1 - begin);
    std::string body = "{";
    if (!listed.record.empty())
        body.append(listed.record).append("={");
    if (!listed.countKey.empty())
        body.append(listed.countKey).append("=99999;");
    body += start;
    while (body.size() + elements.size() < bytes)
        body += elements;
    return message(listed.id, body + (listed.record.empty() ? "};}" : "};};}"));
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

/// A body whose pairs, within every record, stand in reverse order.
std::string reversed(std::string_view list) {
    std::vector<std::string> items; // what is between separators, with them
    int depth = 0;
    std::size_t begin = 0;
    for (std::size_t at = 0; at < list.size(); ++at) {
        depth += list[at] == '{' ? 1 : list[at] == '}' ? -1 : 0;
        if (depth != 0 || (list[at] != ';' && list[at] != ','))
            continue;
        std::string item(list.substr(begin, at + 1 - begin));
        if (const std::size_t open = item.find('{'); open != std::string::npos) {
            const std::size_t close = item.rfind('}');
            item.replace(open + 1, close - open - 1,
                         reversed(std::string_view(item).substr(open + 1, close - open - 1)));
        }
        items.push_back(std::move(item));
        begin = at + 1;
    }
    std::string text;
    while (!items.empty()) {
        text += items.back();
        items.pop_back();
    }
    return text.append(list.substr(begin));
}

/// Makes a copy of a structure and releases it, as hosts do: what its records cost without a text.
template <class Structure>
void copy(const void *structure) {
    [[maybe_unused]] const Structure copied(*static_cast<const Structure *>(structure));
}

void hostile() {
    constexpr std::size_t bytes = 90000;
    const double ordinary = readingCost(grown({4101, "ARRAY_CASSETTE", ""}, bytes));
    std::printf(
        "\nCost a byte of reading texts made to be dear, as multiples of that of 90 kB of cassettes, and of copying "
        "and releasing the structure that was read:\n\n"
        "| id | body | of cassettes | of copying | largest memory while reading / held after, plus the text |\n"
        "|--:|---|--:|--:|--:|\n");
    const auto test = [&](std::int32_t id, void (*copyOnce)(const void *), const char *shown, const std::string &body) {
        const std::string text = message(id, body);
        const structure_t original(text);
        startHeapCount();
        std::size_t held = 0;
        {
            const structure_t structure(text);
            held = stopHeapCount().bytes;
        }
        startHeapCount();
        read(text);
        const std::size_t peak = stopHeapCount().peak;
        const std::vector<double> times = timeInTurn({[&](std::size_t count) {
                                                          while (count-- > 0)
                                                              read(text);
                                                      },
                                                      [&](std::size_t count) {
                                                          while (count-- > 0)
                                                              copyOnce(original.address);
                                                      }});
        std::printf("| %d | `%s` | %.2f | ", static_cast<int>(id), shown,
                    times[0] / static_cast<double>(text.size()) / ordinary);
        if (constexpr double negligible = 0.01; times[1] > negligible * times[0])
            std::printf("%.2f", times[0] / times[1]);
        std::printf(" | %.2f |\n", static_cast<double>(peak + text.size()) / static_cast<double>(held + text.size()));
    };
    test(4101, copy<vek::CassetteArray>, "{{,,,...}}", "{{" + repeated(",", bytes) + "}}");
    test(4101, copy<vek::CassetteArray>, "{ARRAY_CASSETTE={1,1,...}}",
         "{ARRAY_CASSETTE={" + repeated("1,", bytes) + "};}");
    test(4101, copy<vek::CassetteArray>, "{ARRAY_CASSETTE={{},{},...}}",
         "{ARRAY_CASSETTE={" + repeated("{},", bytes) + "};}");
    test(4101, copy<vek::CassetteArray>, "{ARRAY_CASSETTE={{A=1},{A=1},...}}",
         "{ARRAY_CASSETTE={" + repeated("{A=1},", bytes) + "};}");
    test(4101, copy<vek::CassetteArray>, "cassettes, then {=}",
         "{ARRAY_CASSETTE={" + repeated("{NAME=a;},", bytes) + "=,};}");
    test(4105, copy<vek::ResIntTable>, "{RES_INT_TABLE={1,1,...}}", "{RES_INT_TABLE={" + repeated("1,", bytes) + "};}");
    test(4105, copy<vek::ResIntTable>, "{RES_INT_TABLE={{},{},...}}",
         "{RES_INT_TABLE={" + repeated("{},", bytes) + "};}");
    test(4114, copy<vek::MediaGroup>, "{MEDIA_GROUP={1,1,...}}", "{MEDIA_GROUP={" + repeated("1,", bytes) + "};}");
    test(4116, copy<vek::MediaArray>, "{MEDIA_ARRAY={{},{},...}}", "{MEDIA_ARRAY={" + repeated("{},", bytes) + "};}");
    test(4193, copy<vek::JobSepList>, "{SEP_LIST={1,1,...}}", "{SEP_LIST={" + repeated("1,", bytes) + "};}");
    test(4193, copy<vek::JobSepList>, "{SEP_LIST={{},{},...}}", "{SEP_LIST={" + repeated("{},", bytes) + "};}");
    test(4165, copy<vek::ExposeParams>, "{A=1;A=1;...}", "{" + repeated("A=1;", bytes) + "}");
    test(4165, copy<vek::ExposeParams>, "{SCREEN_TYPE=1;DRUM_ID=1;...}",
         "{" + repeated("SCREEN_TYPE=1;DRUM_ID=1;", bytes) + "}");
    test(4165, copy<vek::ExposeParams>, "{LD=1e-300;...}", "{LD=" + repeated("123456789", bytes) + "e-300;}");
    test(4165, copy<vek::ExposeParams>, "{LD=\"\"\"...}", "{LD=" + repeated("\"", bytes) + ";}");
    test(4165, copy<vek::ExposeParams>, "{LD=1;x,x,...}", "{LD=1;" + repeated("x,", bytes) + "}");
    test(4165, copy<vek::ExposeParams>, "{LD=1;{}{}...}", "{LD=1;" + repeated("{}", bytes) + "}");
    test(4165, copy<vek::ExposeParams>, "{LD=1;A=\"\";...}", "{LD=1;" + repeated("A=\"\";", bytes) + "}");
    test(4165, copy<vek::ExposeParams>, "{LD=1;\"\"x=...}", "{LD=1;" + repeated("\"\"x=", bytes) + "}");
    test(4171, copy<vek::ColorTable>, "{COLOR_TABLE={{X=1;},...}}",
         "{COLOR_TABLE={" + repeated("{X=1;},", bytes) + "};}");
    test(4171, copy<vek::ColorTable>, "{COLOR_TABLE={X=1;X=1;...}}",
         "{COLOR_TABLE={" + repeated("X=1;", bytes) + "};}");
    test(4202, copy<vek::Info>, "{INFO=\\1\\1...}", "{INFO=" + repeated("\1", bytes) + ";}");
    const std::string cassettes = grown({4101, "ARRAY_CASSETTE", ""}, bytes);
    const std::size_t begin = cassettes.find('{') + 1;
    test(4101, copy<vek::CassetteArray>, "cassettes, keys in reverse order",
         "{" + reversed(std::string_view(cassettes).substr(begin, cassettes.size() - begin - 3)) + "}");
    test(4096, copy<vek::DeviceInfo>, "{{{{...}}}}", repeated("{", bytes / 2) + repeated("}", bytes / 2));
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
