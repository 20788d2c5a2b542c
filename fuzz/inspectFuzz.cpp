// Whatever the text: the forms give it back, the scanner finds the same messages however it is cut, and where check()
// finds nothing, reading and writing change nothing.
#include "fuzz/fuzzInput.hpp"
#include "vek/inspect/forms.hpp"
#include "vek/inspect/logScanner.hpp"
#include "vek/inspect/seal.hpp"

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

void checkForms(const input_t &input, const std::string &text) {
    const tree_t tree(text);
    const std::vector<finding_t> findings = check(tree);
    std::string show, json, flat;
    showOptions_t showOptions;
    showOptions.findings = findings;
    appendShow(show, tree, showOptions);
    jsonOptions_t jsonOptions;
    jsonOptions.findings = findings;
    appendJson(json, tree, jsonOptions);
    appendFlat(flat, tree);
    const std::string expected(vek::withoutNul(text));
    expectSame(input, expected, readShow(show).text);
    expectSame(input, expected, readJson(json).text);
    expectSame(input, expected, readFlat(flat).text);
    if (const std::optional<std::string> kept = asRead(tree); kept && findings.empty())
        expectSame(input, std::string(tree.value(tree.body())), std::string(tree_t(*kept).envelope().body.in(*kept)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);
    const input_t input = inputOf(text.c_str());
    checkForms(input, message(input.id, input.body));
    if (text.starts_with("@@"))
        checkForms(input, text);
    // Any bytes as a form: read, or refused with a reason.
    for (const auto read : {&readShow, &readJson, &readFlat})
        if (const formResult_t result = read(text); result.isRead() == result.text.empty())
            expectSame(input, "a text or a reason", result.error);
    seal(text);
    const std::string whole = scanned(text, size + 1);
    for (const std::size_t block : {1 + size / 64, 5 + size / 9}) // single bytes while the text is short
        expectSame(input, whole, scanned(text, block));
    return 0;
}
