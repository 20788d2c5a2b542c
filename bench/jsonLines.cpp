// Reads a file of JSON lines with simdjson, whole: a yardstick for the tool's commands (scripts/bench.sh --logs).
//
//   jsonLines FILE   prints how many documents it has
#include <cstdio>
#include <simdjson.h>

int main(int count, char **arguments) {
    if (count != 2) {
        std::fputs("jsonLines FILE\n", stderr);
        return 2;
    }
    simdjson::dom::parser parser;
    simdjson::padded_string text;
    simdjson::dom::document_stream documents;
    if (simdjson::padded_string::load(arguments[1]).get(text) != simdjson::SUCCESS ||
        parser.parse_many(text).get(documents) != simdjson::SUCCESS) {
        std::fprintf(stderr, "jsonLines: %s can't be read\n", arguments[1]);
        return 1;
    }
    std::size_t read = 0;
    for (const auto document : documents) {
        if (document.error() != simdjson::SUCCESS) {
            std::fprintf(stderr, "jsonLines: %s\n", simdjson::error_message(document.error()));
            return 1;
        }
        ++read;
    }
    std::printf("%zu\n", read);
}
