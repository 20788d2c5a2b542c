// Messages both ways through the four calls, beside RapidJSON with the same content in the same run. What is compared
// is whole: a structure or text made, filled and released each time.
#include "bench/jsonMessages.hpp"
#include "vek/api/vekParams2ASCII.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace {

std::string sampleMessage(const char *file) {
    std::ifstream in(std::string(VEK_SAMPLES) + '/' + file, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (text.empty()) {
        std::cerr << "can't read sample message " << file << '\n';
        std::exit(1);
    }
    return text;
}

void readMessage(benchmark::State &state, const char *file) {
    const std::string text = sampleMessage(file);
    for (auto _ : state) {
        std::int32_t id = 0;
        void *structure = nullptr;
        vekStrToVal(text.c_str(), &id, &structure);
        benchmark::DoNotOptimize(structure);
        vekParamsDeleteStruct(id, &structure);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void writeMessage(benchmark::State &state, const char *file) {
    const std::string text = sampleMessage(file);
    std::int32_t id = 0;
    void *structure = nullptr;
    vekStrToVal(text.c_str(), &id, &structure);
    for (auto _ : state) {
        char *written = nullptr;
        vekValToStr(id, structure, &written);
        benchmark::DoNotOptimize(written);
        vekParamsDelete(written);
    }
    vekParamsDeleteStruct(id, &structure);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// The body of a message as JSON: keys quoted, braces of lists as brackets, numbers as RapidJSON writes them.
std::string asJson(const std::string &message) {
    // Tokens are cut by hand here: a value is a record when a "=" comes before the next "," at its level.
    std::string out;
    std::size_t at = message.find('{');
    const auto value = [&](const auto &self) -> void {
        if (message[at] != '{') {
            const std::size_t end = message.find_first_of(";,", at);
            const std::string token = message.substr(at, end - at);
            at = end;
            const bool isNumber = token.find_first_not_of("-.0123456789") == std::string::npos;
            const bool isFlag = token == "TRUE" || token == "FALSE";
            if (isNumber && token.find('.') != std::string::npos) {
                rapidjson::StringBuffer buffer;
                json::writer_t(buffer).Double(std::atof(token.c_str()));
                out += buffer.GetString();
            } else if (isNumber) {
                out += token;
            } else if (isFlag) {
                out += token == "TRUE" ? "true" : "false";
            } else {
                out += '"' + token + '"';
            }
            return;
        }
        ++at;
        const std::size_t stop = message.find_first_of("=,{", at);
        const bool isRecord = message[stop] == '=';
        out += isRecord ? '{' : '[';
        for (bool isFirst = true; message[at] != '}'; isFirst = false) {
            if (!isFirst)
                out += ',';
            if (isRecord) {
                const std::size_t equals = message.find('=', at);
                out += '"' + message.substr(at, equals - at) + "\":";
                at = equals + 1;
            }
            self(self);
            ++at;
        }
        ++at;
        out += isRecord ? '}' : ']';
    };
    value(value);
    return out;
}

template <class Object>
std::string checkedJson(const char *file) {
    const std::string text = asJson(sampleMessage(file));
    rapidjson::StringBuffer buffer;
    json::write(*json::read<Object>(text), buffer);
    if (text != buffer.GetString()) {
        std::cerr << "the JSON of " << file << " does not come back as it was:\n"
                  << text << '\n'
                  << buffer.GetString() << '\n';
        std::exit(1);
    }
    return text;
}

template <class Object>
void readJson(benchmark::State &state, const char *file) {
    const std::string text = checkedJson<Object>(file);
    for (auto _ : state) {
        auto object = json::read<Object>(text);
        benchmark::DoNotOptimize(object.get());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

template <class Object>
void writeJson(benchmark::State &state, const char *file) {
    const std::string text = checkedJson<Object>(file);
    const auto object = json::read<Object>(text);
    for (auto _ : state) {
        rapidjson::StringBuffer buffer;
        json::write(*object, buffer);
        benchmark::DoNotOptimize(buffer.GetString());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// The library and RapidJSON side by side, reading and writing.
template <class Object>
bool compare(const std::string &name, const char *file) {
    benchmark::RegisterBenchmark(("read/" + name + "/library").c_str(), readMessage, file);
    benchmark::RegisterBenchmark(("read/" + name + "/RapidJSON").c_str(), readJson<Object>, file);
    benchmark::RegisterBenchmark(("write/" + name + "/library").c_str(), writeMessage, file);
    benchmark::RegisterBenchmark(("write/" + name + "/RapidJSON").c_str(), writeJson<Object>, file);
    return true;
}

[[maybe_unused]] const bool registered = compare<json::cassette_t>("cassette", "4100-cassette.txt") &&
                                         compare<json::deviceInfo_t>("deviceInfo", "4096-device-info.txt") &&
                                         compare<json::focusValue_t>("focusValue", "4112-focus-value.txt");

} // namespace
