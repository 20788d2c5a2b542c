// What a person can have done at a place: quick fixes, the other form, the words of a finding.
#include "tools/vekmsg/lsp/features.hpp"

#include "vek/inspect/change/mending.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <span>

namespace vek::tool::lsp {

namespace {

using inspect::joined;

constexpr std::string_view quickFix = "quickfix", rewrite = "refactor.rewrite";

class actions_t {
public:
    actions_t(jsonAppender_t &json, const document_t &document, std::string_view only)
        : json_(json), document_(document), only_(only) {}

    void ofPiece(piece_t piece, place_t place) {
        if (piece.count() == 0 || !isWanted(quickFix))
            return;
        const inspect::tree_t tree(piece.place.in(document_.text()));
        std::vector<std::string_view> names;
        for (const problem_t &problem : problemsOf(document_.text(), piece, SIZE_MAX)) {
            if (!problem.code || problem.place.start > place.end || place.start > problem.place.end)
                continue;
            if (problem.remedy)
                fix(tree, piece, problem);
            names.push_back(inspect::findingName(*problem.code));
        }
        if (piece.kind != pieceKind_t::readable)
            mendAll(tree, piece);
        std::sort(names.begin(), names.end());
        names.erase(std::unique(names.begin(), names.end()), names.end());
        for (const std::string_view name : names)
            command(joined({"Explain ", name}), quickFix, explainCommand, name);
    }

    void ofDocument() {
        if (document_.pieces().all().empty() || !isWanted(rewrite))
            return;
        if (document_.pieces().isReadable())
            command("Write as messages, one a line", rewrite, toLinesCommand, document_.uri);
        else
            command("Write in the readable form", rewrite, toReadableCommand, document_.uri);
    }

private:
    // Those that are asked for, by their own name or one above: "refactor" asks for "refactor.rewrite" too.
    bool isWanted(std::string_view kind) const {
        return only_.empty() || kind == only_ || (kind.starts_with(only_) && kind[only_.size()] == '.');
    }

    void fix(const inspect::tree_t &tree, const piece_t &piece, const problem_t &problem) {
        std::string title = inspect::inWords(*problem.remedy, tree.text());
        title[0] = static_cast<char>(title[0] - ('a' - 'A'));
        open(title, quickFix);
        json_.member("isPreferred", problem.remedy->isCertain);
        json_.name("diagnostics");
        json_.open('[');
        positions_t positions = document_.positions();
        appendProblem(json_, positions, problem);
        json_.close(']');
        edit(piece, inspect::withLength(tree, {*problem.remedy}));
    }

    void mendAll(const inspect::tree_t &tree, const piece_t &piece) {
        const inspect::mending_t mending = inspect::mended(tree.text());
        if (mending.text == tree.text())
            return;
        open(mending.isSound() ? "Mend this message" : "Mend what is certain in this message", quickFix);
        const auto whole = static_cast<std::uint32_t>(tree.text().size());
        const inspect::remedy_t all[] = {{{0, whole}, mending.text, true}};
        edit(piece, all);
    }

    // Ends the action with what it changes.
    void edit(const piece_t &piece, std::span<const inspect::remedy_t> remedies) {
        json_.object("edit", [&] {
            json_.object("changes", [&] {
                positions_t positions = document_.positions();
                json_.anyName(document_.uri);
                json_.open('[');
                for (const inspect::remedy_t &remedy : remedies)
                    appendTextEdit(json_, positions,
                                   {piece.place.start + remedy.place.start, piece.place.start + remedy.place.end},
                                   remedy.text);
                json_.close(']');
            });
        });
        json_.close('}');
    }

    void command(std::string_view title, std::string_view kind, std::string_view name, std::string_view argument) {
        open(title, kind);
        json_.object("command", [&] {
            json_.member("title", title);
            json_.member("command", name);
            json_.list("arguments", std::initializer_list<std::string_view>{argument},
                       [&](std::string_view one) { json_.value(one); });
        });
        json_.close('}');
    }

    void open(std::string_view title, std::string_view kind) {
        json_.open('{');
        json_.member("title", title);
        json_.member("kind", kind);
    }

    jsonAppender_t &json_;
    const document_t &document_;
    const std::string_view only_;
};

} // namespace

void appendActions(jsonAppender_t &json, const document_t &document, place_t place, std::string_view only) {
    json.open('[');
    actions_t actions(json, document, only);
    const std::vector<piece_t> &pieces = document.pieces().all();
    for (auto piece = std::partition_point(pieces.begin(), pieces.end(),
                                           [&](const piece_t &one) { return one.place.end < place.start; });
         piece != pieces.end() && piece->place.start <= place.end; ++piece)
        actions.ofPiece(*piece, place);
    actions.ofDocument();
    json.close(']');
}

} // namespace vek::tool::lsp
