// Each finding with an example, what check() says of it, and the remedy. The words are check()'s own.
#include "tools/reference/pages.hpp"

#include "tools/reference/markdown.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/message/written.hpp"

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace vek {

namespace {

using namespace inspect;

constexpr std::string_view findingIntroduction = R"(# What is found in messages

What `vekmsg check`, the inspector and `vekInspectToJson` find, by its stable name, the `code` in JSON. An **error**
means that a host reads something else than the text seems to say, or nothing; a **warning**, that it reads what was
meant, but writes it another way. A finding that is an error may be a warning in a milder form. Certain remedies are done by `vekmsg seal`, as it says there.

Of each an example, and below it what `vekmsg check` says. Control characters are shown as pictures (␊ is a line end, ␀ a
NUL). What a host makes of the rest of a message is on [text-format.md](text-format.md).

| Finding | | |
|---|---|---|
)";

// A text that has the finding.
std::string exampleOf(const findingKind_t &kind) {
    if (kind.code == findingCode_t::tooLong)
        return sealed(kind.exampleId, 7, 42, joined({"{DEVICE_MEDIA_NAME_ARRAY={", std::string(100'000, 'n'), ",};}"}));
    return kind.exampleId == 0 ? std::string(kind.example) : sealed(kind.exampleId, 7, 42, kind.example);
}

// Control characters as U+2400 to U+241F, and the beginning of what is too long to be shown.
std::string withPictures(std::string_view text) {
    std::string shown;
    for (const char c : text.substr(0, 400))
        if (static_cast<unsigned char>(c) < 0x20)
            shown.append("\xE2\x90").append(1, static_cast<char>(0x80 + c));
        else
            shown += c;
    return text.size() > 400 ? shown.substr(0, 80) + "…" : shown;
}

void writeFinding(std::ostream &out, const findingKind_t &kind) {
    const std::string text = exampleOf(kind);
    const auto isIt = [&](const finding_t &finding) { return finding.code == kind.code; };
    const std::vector<finding_t> findings = check(tree_t(text));
    const auto found = std::find_if(findings.begin(), findings.end(), isIt);
    if (found == findings.end())
        throw std::runtime_error(
            joined({"check() does not find ", kind.name, " in its example, ", text.substr(0, 200)}));
    out << "\n## " << kind.name << "\n\n"
        << (kind.severity == severity_t::error ? "An error: " : "A warning: ") << kind.about << ".\n\n```\n"
        << withPictures(text) << "\n"
        << withPictures(found->inWords()) << "\n```\n\n"
        << kind.remedy;
    const formResult_t whole = seal(text);
    if (whole.isRead()) {
        const std::vector<finding_t> left = check(tree_t(whole.text));
        if (std::none_of(left.begin(), left.end(), isIt))
            out << " `vekmsg seal` does that.";
    }
    out << "\n";
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
