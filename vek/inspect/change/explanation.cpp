#include "vek/inspect/change/explanation.hpp"

#include "vek/inspect/change/mending.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <stdexcept>

namespace vek::inspect {

namespace {

std::string exampleOf(const findingKind_t &kind) {
    if (kind.code == findingCode_t::tooLong)
        return sealed(kind.exampleId, 7, 42, joined({"{DEVICE_MEDIA_NAME_ARRAY={", std::string(100'000, 'n'), ",};}"}));
    return kind.exampleId == 0 ? std::string(kind.example) : sealed(kind.exampleId, 7, 42, kind.example);
}

std::string withPictures(std::string_view text) {
    std::string shown;
    for (const char c : text.substr(0, 400))
        if (static_cast<unsigned char>(c) < 0x20)
            shown.append("\xE2\x90").append(1, static_cast<char>(0x80 + c));
        else
            shown += c;
    return text.size() > 400 ? shown.substr(0, 80) + "…" : shown;
}

} // namespace

explanation_t explain(const findingKind_t &kind) {
    const std::string text = exampleOf(kind);
    const auto isIt = [&](const finding_t &finding) { return finding.code == kind.code; };
    const std::vector<finding_t> findings = check(tree_t(text));
    const auto found = std::find_if(findings.begin(), findings.end(), isIt);
    if (found == findings.end())
        throw std::logic_error(joined({"check() does not find ", kind.name, " in its example, ", text.substr(0, 200)}));
    const std::vector<finding_t> left = mended(text).left;
    const bool isMended = found->remedy && found->remedy->isCertain && std::none_of(left.begin(), left.end(), isIt);
    return {withPictures(text), withPictures(found->inWords()), std::string(kind.remedy), isMended};
}

std::string plainWords(std::string_view markdown) {
    std::string out;
    for (std::size_t i = 0; i < markdown.size(); ++i)
        if (markdown.substr(i, 2) == "](")
            i = markdown.find(')', i);
        else if (markdown[i] != '[' && markdown[i] != '`')
            out += markdown[i];
    return out;
}

} // namespace vek::inspect
