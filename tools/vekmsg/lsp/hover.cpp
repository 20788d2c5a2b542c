// What a key, a value or a message is, in words.
#include "tools/vekmsg/lsp/features.hpp"

#include "vek/inspect/change/explanation.hpp"
#include "vek/inspect/words/words.hpp"

namespace vek::tool::lsp {

namespace {

using inspect::fieldSchema_t;
using inspect::joined;

constexpr std::string_view paragraph = "\n\n";

std::string code(std::string_view words, bool isMarkdown) {
    return isMarkdown ? joined({"`", words, "`"}) : std::string(words);
}

std::string ofField(const target_t &target, bool isMarkdown) {
    const fieldSchema_t &field = *target.field;
    std::string words = joined(
        {code(field.key, isMarkdown), ": ", target.isElement ? "element of a " : "", inspect::kindInWords(field)});
    if (const std::string_view preset = inspect::defaultInWords(field); !preset.empty() && !target.isElement)
        words += joined({"; default ", preset});
    std::string names;
    for (const char *name : field.words().names)
        names += joined({names.empty() ? "" : ", ", code(name, isMarkdown)});
    if (!names.empty())
        words += joined({paragraph, "One of ", names});
    if (field.record() != nullptr && !field.record()->about.empty())
        words += joined({paragraph, field.record()->about});
    return words;
}

std::string ofMessage(const inspect::messageSchema_t *message, bool isMarkdown) {
    if (message == nullptr)
        return "No message has this id: vekmsg list shows all.";
    const std::string id = std::to_string(message->id);
    if (message->record == nullptr)
        return id + ": the calls take this id, but no structure belongs to it.";
    return joined({code(joined({id, " ", message->record->name}), isMarkdown), " ", message->constant,
                   message->record->about.empty() ? "" : paragraph, message->record->about});
}

std::string ofContext(const context_t &context, bool isMarkdown) {
    switch (context.kind) {
    case context_t::kind_t::nothing:
        return {};
    case context_t::kind_t::message:
        return ofMessage(context.message, isMarkdown);
    default:
        break;
    }
    if (context.target.field == nullptr)
        return {};
    std::string words = ofField(context.target, isMarkdown);
    if (context.message != nullptr && context.message->record != nullptr)
        words += joined({paragraph, "In ", ofMessage(context.message, isMarkdown)});
    return words;
}

std::string ofProblem(const problem_t &problem, bool isMarkdown) {
    std::string words = problem.words;
    if (!problem.code)
        return words;
    const inspect::findingKind_t &kind = inspect::findingKind(*problem.code);
    return joined({words, paragraph, inspect::plainWords(kind.remedy), " ",
                   code(joined({"vekmsg explain ", kind.name}), isMarkdown), " has an example."});
}

} // namespace

void appendHover(jsonAppender_t &json, const document_t &document, std::size_t offset, bool isMarkdown) {
    const piece_t *found = document.pieces().at(offset);
    if (found == nullptr)
        return json.ready("null");
    piece_t piece = *found;
    const context_t context = contextAt(document.text(), piece, offset);
    std::string words = ofContext(context, isMarkdown);
    if (piece.count() > 0)
        for (const problem_t &problem : problemsOf(document.text(), piece, SIZE_MAX))
            if (problem.place.start <= offset && offset <= problem.place.end)
                words += joined({words.empty() ? "" : paragraph, ofProblem(problem, isMarkdown)});
    if (words.empty())
        return json.ready("null");
    json.open('{');
    json.object("contents", [&] {
        json.member("kind", isMarkdown ? "markdown" : "plaintext");
        json.member("value", words);
    });
    if (context.kind != context_t::kind_t::nothing && !context.token.isEmpty()) {
        positions_t positions = document.positions();
        json.name("range");
        appendRange(json, positions, context.token);
    }
    json.close('}');
}

} // namespace vek::tool::lsp
