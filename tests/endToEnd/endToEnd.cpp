// The four calls over every message, its defaults, damaged texts and what they refuse; run under tools that see each
// byte which is used without having been set.
//
// Those tools know nothing of what the C++ library's own file does (streams, trees): here stands only what is compiled
// with the program, and C.
//   endToEnd SAMPLE_FILE...
#include "tests/support/messages.hpp"
#include "tests/support/model/bodyMutator.hpp"
#include "vek/api/messageTable.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace vek;
using namespace vek::test;

constexpr int damagedOfEach = 60;

unsigned long calls = 0;
unsigned long sevens = 0;

// Decides on every byte, which is what the tools look for.
void look(const void *bytes, std::size_t size) {
    const auto *const at = static_cast<const unsigned char *>(bytes);
    for (std::size_t i = 0; i < size; ++i)
        if (at[i] == 7)
            ++sevens;
}

void expect(bool holds, const char *what, const char *text) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n  of %s\n", what, text);
    std::exit(1);
}

// Every byte of a plain structure is set, also those between its members.
void lookAt(std::int32_t id, const void *structure) {
    messages_t::forEach([&]<class Message>(Message) {
        if constexpr (!std::is_polymorphic_v<typename Message::structure_t>)
            if (Message::id == id)
                look(structure, sizeof(typename Message::structure_t));
    });
}

// Reads a text (or makes defaults), and writes what became of it.
std::string convert(const char *text, std::int32_t id = 0) {
    calls += 2;
    const structure_t structure(text, id);
    if (structure.result != 0 || structure.address == nullptr)
        return {};
    lookAt(structure.id, structure.address);
    char *written = nullptr;
    expect(vekValToStr(structure.id, structure.address, &written) == 0, "it is written",
           text != nullptr ? text : "a structure with its defaults");
    std::string copy(written, std::strlen(written));
    vekParamsDelete(written);
    look(copy.data(), copy.size());
    return copy;
}

std::string contentOf(const char *file) {
    std::FILE *const in = std::fopen(file, "rb");
    expect(in != nullptr, "the file opens", file);
    char room[1 << 16];
    const std::size_t size = std::fread(room, 1, sizeof room, in);
    std::fclose(in);
    return {room, size};
}

void refuse() {
    char *text = nullptr;
    void *structure = nullptr;
    std::int32_t id = 4112;
    const bool areRefused = vekStrToVal("", &id, &structure) == -1 && vekStrToVal("x", nullptr, &structure) == -1 &&
                            vekStrToVal("x", &id, nullptr) == -1 && vekValToStr(4112, nullptr, nullptr) == -1 &&
                            vekParamsDeleteStruct(4112, nullptr) == -1 &&
                            vekStrToVal("@@1 8 !!", &id, &structure) == -1;
    expect(areRefused, "it is refused", "calls without a place for their result");
    for (std::int32_t any = 4090; any <= 4210; ++any) {
        convert(convert(nullptr, any).c_str());
        vekValToStr(any, nullptr, &text);
        look(text, std::strlen(text));
        vekParamsDelete(text);
    }
}

} // namespace

int main(int count, char **files) {
    std::vector<std::string> texts, corpus;
    for (int i = 1; i < count; ++i) {
        texts.push_back(contentOf(files[i]));
        corpus.push_back(bodyOf(texts.back()));
    }
    expect(texts.size() >= 40, "there are samples", "the command line");
    refuse();
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::int32_t id = std::atoi(texts[i].c_str() + 2);
        model::bodyMutator_t mutator(i, corpus);
        expect(bodyOf(convert(texts[i].c_str())) == corpus[i], "the sample comes back", texts[i].c_str());
        for (std::size_t size = 0; size < texts[i].size(); size += 1 + size / 8)
            convert(texts[i].substr(0, size).c_str());
        for (int n = 0; n < damagedOfEach; ++n) {
            const std::string body = n % 3 == 0 ? mutator.withOtherReals(corpus[i]) : corpus[i];
            convert(convert(message(id, mutator.mutated(body)).c_str()).c_str());
        }
    }
    std::fprintf(stderr, "%lu calls\n", calls);
    return calls > 10000 && sevens < calls ? 0 : 1;
}
