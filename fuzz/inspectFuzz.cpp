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

void expect(const fuzzInput_t &input, const std::string &actual, const std::string &expected) {
    if (actual != expected)
        fail(input, expected, actual);
}

void checkForms(const fuzzInput_t &input, const std::string &text) {
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
    expect(input, readShow(show).text, expected);
    expect(input, readJson(json).text, expected);
    expect(input, readFlat(flat).text, expected);
    if (const std::optional<std::string> kept = asRead(tree); kept && findings.empty())
        expect(input, std::string(tree_t(*kept).envelope().body.in(*kept)), std::string(tree.value(tree.body())));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const fuzzInput_t input = fuzzInput(data, size);
    const std::string text(reinterpret_cast<const char *>(data), size);
    checkForms(input, message(input.id, input.body));
    if (text.starts_with("@@"))
        checkForms(input, text);
    // Any bytes as a form: read, or refused with a reason.
    for (const auto read : {&readShow, &readJson, &readFlat})
        if (const formResult_t result = read(text); result.isRead() == result.text.empty())
            fail(input, "a text or a reason", result.error);
    seal(text);
    const std::string whole = scanned(text, size + 1);
    for (const std::size_t block : {std::size_t{1}, std::size_t{7}})
        expect(input, scanned(text, block), whole);
    return 0;
}
