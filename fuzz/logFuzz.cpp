// The scanner finds the same messages however the log is cut.
#include "fuzz/fuzzInput.hpp"
#include "vek/inspect/log/logScanner.hpp"

using namespace vek::test;
using namespace vek::inspect;

namespace {

class sink_t : public messageSink_t {
public:
    void message(const foundMessage_t &found) override {
        all += std::to_string(found.offset) + ':' + std::to_string(found.line) + ':' + std::to_string(found.column) +
               ' ' + std::string(found.lineHead) + '|' + std::string(found.before) + '|' + std::string(found.text) +
               '\n';
    }
    std::string all;
};

std::string scanned(std::string_view log, std::size_t block) {
    logScanner_t scanner;
    sink_t sink;
    for (std::size_t at = 0; at < log.size(); at += block)
        scanner.feed(log.substr(at, block), sink);
    scanner.finish(sink);
    return sink.all;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string log = textOf(data, size);
    const std::string whole = scanned(log, size + 1);
    for (const std::size_t block : {1 + size / 64, 5 + size / 9}) // single bytes while the log is short
        expectSame(log, whole, scanned(log, block));
    return 0;
}
