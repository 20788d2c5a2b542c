// Messages both ways through the four calls, beside RapidJSON with the same content in the same run: the files of
// bench/json say what the sample messages say. What is compared is whole: a structure or text made, filled and released
// each time.
#include "bench/jsonMessages.hpp"
#include "vek/api/vekParams2ASCII.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace {

std::string sample(const std::string &path) {
    std::ifstream in(VEK_PROJECT_FOLDER "/" + path, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (text.empty()) {
        std::cerr << "can't read " VEK_PROJECT_FOLDER "/" << path << '\n';
        std::exit(1);
    }
    return text;
}

void readMessage(benchmark::State &state, const std::string &file) {
    const std::string text = sample(file);
    for (auto _ : state) {
        std::int32_t id = 0;
        void *structure = nullptr;
        vekStrToVal(text.c_str(), &id, &structure);
        benchmark::DoNotOptimize(structure);
        vekParamsDeleteStruct(id, &structure);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void writeMessage(benchmark::State &state, const std::string &file) {
    const std::string text = sample(file);
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

template <class Object>
std::string checkedJson(const std::string &file) {
    std::string text = sample(file);
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
void readJson(benchmark::State &state, const std::string &file) {
    const std::string text = checkedJson<Object>(file);
    for (auto _ : state) {
        auto object = json::read<Object>(text);
        benchmark::DoNotOptimize(object.get());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

template <class Object>
void writeJson(benchmark::State &state, const std::string &file) {
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
bool compare(const std::string &name, const std::string &messageFile) {
    const std::string message = "examples/messages/" + messageFile;
    const std::string json = "bench/json/" + name + ".json";
    benchmark::RegisterBenchmark(("read/" + name + "/library").c_str(), readMessage, message);
    benchmark::RegisterBenchmark(("read/" + name + "/RapidJSON").c_str(), readJson<Object>, json);
    benchmark::RegisterBenchmark(("write/" + name + "/library").c_str(), writeMessage, message);
    benchmark::RegisterBenchmark(("write/" + name + "/RapidJSON").c_str(), writeJson<Object>, json);
    return true;
}

[[maybe_unused]] const bool registered = compare<json::cassette_t>("cassette", "4100-cassette.txt") &&
                                         compare<json::deviceInfo_t>("deviceInfo", "4096-device-info.txt") &&
                                         compare<json::focusValue_t>("focusValue", "4112-focus-value.txt");

} // namespace
