// The problems of a document as the protocol has them.
#include "tools/vekmsg/lsp/features.hpp"

#include "vek/inspect/words/words.hpp"

namespace vek::tool::lsp {

namespace {

constexpr int errorNumber = 1, warningNumber = 2, informationNumber = 3;

} // namespace

void appendPosition(jsonAppender_t &json, position_t position) {
    json.open('{');
    json.member("line", position.line);
    json.member("character", position.character);
    json.close('}');
}

void appendRange(jsonAppender_t &json, positions_t &positions, place_t place) {
    json.open('{');
    json.name("start");
    appendPosition(json, positions.of(place.start));
    json.name("end");
    appendPosition(json, positions.of(place.end));
    json.close('}');
}

void appendTextEdit(jsonAppender_t &json, positions_t &positions, place_t place, std::string_view by) {
    json.open('{');
    json.name("range");
    appendRange(json, positions, place);
    json.member("newText", by);
    json.close('}');
}

void appendProblem(jsonAppender_t &json, positions_t &positions, const problem_t &problem) {
    json.open('{');
    json.name("range");
    appendRange(json, positions, problem.place);
    json.member("severity", problem.severity == inspect::severity_t::error ? errorNumber : warningNumber);
    if (problem.code)
        json.member("code", inspect::findingName(*problem.code));
    json.member("source", "vekmsg");
    json.member("message", problem.words);
    json.close('}');
}

void appendProblems(jsonAppender_t &json, const document_t &document) {
    json.member("uri", document.uri);
    json.member("version", document.version);
    positions_t positions = document.positions();
    const std::vector<problem_t> shown = document.pieces().problems(document.text(), mostProblems);
    const std::size_t count = document.pieces().problemCount();
    json.name("diagnostics");
    json.open('[');
    for (const problem_t &problem : shown)
        appendProblem(json, positions, problem);
    if (count > shown.size()) {
        json.open('{');
        json.name("range");
        appendRange(json, positions, {});
        json.member("severity", informationNumber);
        json.member("source", "vekmsg");
        json.member("message", inspect::joined({"and ", std::to_string(count - shown.size()),
                                                " more problems in this document: vekmsg check --all tells them"}));
        json.close('}');
    }
    json.close(']');
}

} // namespace vek::tool::lsp
