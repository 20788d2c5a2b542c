// What the server answers about a document: a function each, which appends its result as the protocol has it.
#pragma once

#include "tools/vekmsg/lsp/context.hpp"
#include "tools/vekmsg/lsp/document.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"

#include <string>
#include <string_view>

namespace vek::tool::lsp {

using inspect::jsonAppender_t;

/// As many problems are told of a document at once.
inline constexpr std::size_t mostProblems = 500;

void appendPosition(jsonAppender_t &json, position_t position);
void appendRange(jsonAppender_t &json, positions_t &positions, place_t place);
/// {"range":...,"newText":...}
void appendTextEdit(jsonAppender_t &json, positions_t &positions, place_t place, std::string_view by);

void appendProblem(jsonAppender_t &json, positions_t &positions, const problem_t &problem);
/// The members of publishDiagnostics.
void appendProblems(jsonAppender_t &json, const document_t &document);

/// What is at an offset, and what is wrong there; null when there is nothing to say.
void appendHover(jsonAppender_t &json, const document_t &document, std::size_t offset, bool isMarkdown);

void appendCompletion(jsonAppender_t &json, const document_t &document, std::size_t offset);

void appendSymbols(jsonAppender_t &json, const document_t &document);
void appendFolding(jsonAppender_t &json, const document_t &document);

/// What a person can have done about a stretch of a document; of one kind alone unless `only` is empty.
void appendActions(jsonAppender_t &json, const document_t &document, place_t place, std::string_view only);

/// The whole document in the other form, or why it stays as it is.
struct rewritten_t {
    std::string text;
    std::string error{};
};
rewritten_t inReadableForm(const document_t &document);
rewritten_t inLines(const document_t &document);

/// Names of commands, which take the document's URI; of the last one, the name of a finding.
inline constexpr std::string_view toReadableCommand = "vekmsg.toReadable", toLinesCommand = "vekmsg.toLines",
                                  explainCommand = "vekmsg.explain";

} // namespace vek::tool::lsp
