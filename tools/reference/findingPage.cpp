// Each finding with an example, what check() says of it, and the remedy. The words are check()'s own.
#include "tools/reference/pages.hpp"

#include "tools/reference/markdown.hpp"
#include "vek/inspect/change/explanation.hpp"

#include <ostream>

namespace vek {

namespace {

using namespace inspect;

constexpr std::string_view findingIntroduction = R"(# What is found in messages

What `vekmsg check`, the inspector and `vekInspectToJson` find, by its stable name, the `code` in JSON. An **error**
means that a host reads something else than the text seems to say, or nothing; a **warning**, that it reads what was
meant, but writes it another way. A finding that is an error may be a warning in a milder form. What has one meaning to any careful reader is put
right by `vekmsg fix`, of these examples where it says so.

Of each an example, and below it what `vekmsg check` says. Control characters are shown as pictures (␊ is a line end, ␀ a
NUL). What a host makes of the rest of a message is on [text-format.md](text-format.md).

| Finding | | |
|---|---|---|
)";

void writeFinding(std::ostream &out, const findingKind_t &kind) {
    const explanation_t explanation = explain(kind);
    out << "\n## " << kind.name << "\n\n"
        << (kind.severity == severity_t::error ? "An error: " : "A warning: ") << kind.about << ".\n\n```\n"
        << explanation.example << "\n"
        << explanation.words << "\n```\n\n"
        << explanation.remedy << (explanation.isMended ? " `vekmsg fix` does that.\n" : "\n");
}

} // namespace

void writeFindingPage(std::ostream &out) {
    out << generatedNotice << findingIntroduction;
    for (const findingKind_t &kind : findingKinds)
        out << "| " << link(code(kind.name), anchorOf(kind.name)) << " | " << severityName(kind.severity) << " | "
            << kind.about << " |\n";
    for (const findingKind_t &kind : findingKinds)
        writeFinding(out, kind);
}

} // namespace vek
