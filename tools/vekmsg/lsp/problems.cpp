// What is wrong with a piece: of a message what check() finds; of the readable form why it is none, or what check()
// finds in the message that it makes, put to the lines that say it.
#include "tools/vekmsg/lsp/pieces.hpp"
#include "tools/vekmsg/lsp/readable.hpp"
#include "vek/inspect/forms/forms.hpp"

#include <algorithm>

namespace vek::tool::lsp {

namespace {

using inspect::finding_t;
using inspect::refusal_t;

// Of one message; more than a person mends before looking again.
constexpr std::size_t mostOfMessage = 100;

place_t moved(place_t place, std::size_t by) {
    return {static_cast<std::uint32_t>(place.start + by), static_cast<std::uint32_t>(place.end + by)};
}

inspect::checkResult_t checked(const inspect::tree_t &tree, piece_t &piece, std::size_t most) {
    inspect::checkResult_t result;
    if (most > 0 || !inspect::isClean(tree)) {
        inspect::checkOptions_t options;
        options.most = std::min(most, mostOfMessage);
        result = inspect::check(tree, options);
    }
    piece.errors = result.errors;
    piece.warnings = result.warnings;
    return result;
}

problem_t problemOf(const finding_t &finding, place_t place) {
    return {place, finding.severity, finding.code, finding.inWords()};
}

// From where a form can't be read to the end of that line.
problem_t problemOf(const refusal_t &refusal, std::string_view text, place_t piece) {
    const std::string_view form = piece.in(text);
    const std::size_t offset = std::min(refusal.offset, form.size());
    const std::size_t end = std::min(form.find_first_of("\r\n", offset), form.size());
    return {moved({static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(end)}, piece.start),
            inspect::severity_t::error,
            {},
            refusal.words};
}

std::vector<problem_t> problemsOfReadable(std::string_view text, piece_t &piece, std::size_t most) {
    std::vector<problem_t> problems;
    inspect::formResult_t read = inspect::readShow(piece.place.in(text));
    if (!read.isRead()) {
        read.further.insert(read.further.begin(), {read.error, read.offset});
        piece.errors = read.further.size();
        for (const refusal_t &refusal : read.further)
            if (problems.size() < most)
                problems.push_back(problemOf(refusal, text, piece.place));
        return problems;
    }
    const inspect::tree_t tree(read.text);
    const inspect::checkResult_t result = checked(tree, piece, most);
    if (result.findings.empty())
        return problems;
    const readable_t readable(text, piece.place);
    for (const finding_t &finding : result.findings)
        problems.push_back(problemOf(finding, readable.placeOf(finding.path)));
    return problems;
}

} // namespace

std::vector<problem_t> problemsOf(std::string_view text, piece_t &piece, std::size_t most) {
    piece.isJudged = true;
    if (piece.kind == pieceKind_t::readable)
        return problemsOfReadable(text, piece, most);
    std::vector<problem_t> problems;
    const inspect::tree_t tree(piece.place.in(text));
    for (const finding_t &finding : checked(tree, piece, most).findings) {
        problems.push_back(problemOf(finding, moved(finding.place, piece.place.start)));
        problems.back().remedy = finding.remedy;
    }
    return problems;
}

} // namespace vek::tool::lsp
