// Whatever the text: each form gives it back, and where check() finds nothing, reading and writing change nothing; what
// the page's calls say of it is JSON, its forms come back through them, a list of its own elements changes nothing, and
// what they mend stays readable. One of these is tried at a time.
#include "fuzz/fuzzInput.hpp"
#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/words.hpp"

#include <nlohmann/json.hpp>

using namespace vek::test;
using namespace vek::inspect;

extern "C" {
char *pageInput(std::size_t size);
const char *pageResult();
std::size_t pageResultSize();
std::int32_t pageView(std::size_t size);
std::int32_t pageSetList(std::size_t textSize, std::size_t pathSize, std::size_t itemsSize);
std::int32_t pageRemedies(std::size_t size);
std::int32_t pageMend(std::size_t size, std::int32_t number);
std::int32_t pageForm(std::size_t size, std::int32_t form);
std::int32_t pageDifferences(std::size_t leftSize, std::size_t rightSize);
std::int32_t pageAddable(std::size_t size, std::int32_t node);
std::int32_t pageReadForms(std::size_t size);
std::int32_t pageDigest(std::size_t size, std::size_t pathsSize);
}

namespace {

// What a form may hold beside the message; now and then, as it makes a form many times as long.
std::vector<finding_t> extras(const tree_t &tree, const std::string &text) {
    return choiceBy(text) / 8 % 8 == 0 ? check(tree) : std::vector<finding_t>();
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

// What a call makes of bytes that are given to it; nothing when it refuses them.
template <class... More>
std::optional<std::string> paged(std::int32_t (*call)(More...), const std::string &bytes,
                                 std::type_identity_t<More>... more) {
    std::copy(bytes.begin(), bytes.end(), pageInput(bytes.size()));
    const bool isDone = call(more...) != 0;
    return isDone ? std::optional(std::string(pageResult(), pageResultSize())) : std::nullopt;
}

void tryPage(const tree_t &tree, const std::string &text) {
    const std::size_t size = text.size(), choice = choiceBy(text) / 8;
    const node_t &node = tree.nodes()[choice % tree.nodes().size()];
    const std::string path = tree.path(node);
    const auto number = static_cast<std::int32_t>(choice % 64);
    const std::string mended = paged(&pageMend, text, size, number).value();
    for (const std::optional<std::string> &json :
         {paged(&pageView, text, size), paged(&pageRemedies, text, size),
          paged(&pageAddable, text, size, static_cast<std::int32_t>(choice % tree.nodes().size())),
          paged(&pageDigest, text + path, size, path.size()),
          paged(&pageDifferences, text + mended, size, mended.size())})
        if (!nlohmann::json::accept(json.value()))
            expectSame(text, "JSON", *json);
    const std::string form = paged(&pageForm, text, size, number % 3).value();
    expectSame(form, std::string(vek::withoutNul(text)) + '\n', // as all faces take one that a host ends its text by
               paged(&pageReadForms, form, form.size()).value_or(pageResult()));
    if (node.field == nullptr || !node.field->isList() || node.isElement)
        return;
    std::string items;
    for (std::uint32_t i = 0; i < node.childCount; ++i)
        items += vek::inspect::joined({"@", std::to_string(i), std::string(1, '\0')});
    if (const auto same = paged(&pageSetList, text + path + items, size, path.size(), items.size());
        same && isClean(tree) && !differences(tree, tree_t(*same)).empty())
        expectSame(text, "the same values", *same);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    constexpr void (*tries[])(const tree_t &tree, const std::string &text) = {&tryShow, &tryJson, &tryFlat, &tryCheck,
                                                                              &tryShow, &tryJson, &tryFlat, &tryPage};
    const std::string text = textOf(data, size);
    static tree_t tree; // keeps its memory
    tree.read(text);
    tries[choiceBy(text) % std::size(tries)](tree, std::string(vek::withoutNul(text)));
    return 0;
}
