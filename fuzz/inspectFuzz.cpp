// Whatever the text: each form gives it back, and where check() finds nothing, reading and writing change nothing. One
// of these is tried at a time.
#include "fuzz/fuzzInput.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/message/written.hpp"

using namespace vek::test;
using namespace vek::inspect;

namespace {

// What a form may hold beside the message; now and then, as it makes a form many times as long.
std::vector<finding_t> extras(const tree_t &tree, const std::string &text) {
    return choiceBy(text) / 4 % 8 == 0 ? check(tree) : std::vector<finding_t>();
}

void tryShow(const tree_t &tree, const std::string &text) {
    static std::string form;
    form.clear();
    const std::vector<finding_t> findings = extras(tree, text);
    showOptions_t options;
    options.findings = findings;
    appendShow(form, tree, options);
    expectSame(form, text, readShow(form).text);
}

void tryJson(const tree_t &tree, const std::string &text) {
    static std::string form;
    form.clear();
    const std::vector<finding_t> findings = extras(tree, text);
    jsonOptions_t options;
    options.findings = findings;
    options.hasTree = !findings.empty();
    appendJson(form, tree, options);
    expectSame(form, text, readJson(form).text);
}

void tryFlat(const tree_t &tree, const std::string &text) {
    static std::string form;
    form.clear();
    appendFlat(form, tree);
    expectSame(form, text, readFlat(form).text);
}

void tryCheck(const tree_t &tree, const std::string &text) {
    const std::vector<finding_t> findings = check(tree);
    if (isClean(tree) != findings.empty())
        expectSame(text, "the same with words and without", findings.empty() ? "with" : findings.front().inWords());
    if (const std::optional<std::string> kept = asRead(tree); kept && findings.empty())
        expectSame(text, tree.value(tree.body()), tree_t(*kept).envelope().body.in(*kept));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    constexpr void (*tries[])(const tree_t &tree, const std::string &text) = {&tryShow, &tryJson, &tryFlat, &tryCheck};
    const std::string text = textOf(data, size);
    static tree_t tree; // keeps its memory
    tree.read(text);
    tries[choiceBy(text) % std::size(tries)](tree, std::string(vek::withoutNul(text)));
    return 0;
}
