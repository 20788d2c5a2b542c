// The messages of a document with their keys, and what can be folded.
#include "tools/vekmsg/lsp/features.hpp"

#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/words.hpp"

namespace vek::tool::lsp {

namespace {

using inspect::joined;
using inspect::node_t;
using inspect::tree_t;

constexpr int messageNumber = 23, fieldNumber = 8, listNumber = 18; // a structure, a field, an array
constexpr std::size_t mostMessages = 2000;                          // of a log, more are no help in a list
constexpr std::size_t mostWithKeys = 20;                            // their keys are told too
constexpr std::size_t longestDetail = 60;

class symbols_t {
public:
    symbols_t(jsonAppender_t &json, const document_t &document)
        : json_(json), document_(document), positions_(document.positions()) {}

    void write() {
        const std::vector<piece_t> &pieces = document_.pieces().all();
        for (std::size_t i = 0; i < std::min(pieces.size(), mostMessages); ++i)
            pieces[i].kind == pieceKind_t::readable ? writeReadable(pieces[i], pieces.size() <= mostWithKeys)
                                                    : writeMessage(pieces[i], pieces.size() <= mostWithKeys);
    }

private:
    void open(std::string_view name, std::string_view detail, int kind, place_t whole, place_t own) {
        json_.open('{');
        json_.member("name", name.empty() ? std::string_view("?") : name);
        json_.member("detail", detail.substr(0, longestDetail));
        json_.member("kind", kind);
        json_.name("range");
        appendRange(json_, positions_, whole);
        json_.name("selectionRange");
        appendRange(json_, positions_, own);
        json_.name("children");
        json_.open('[');
    }
    void close() {
        json_.close(']');
        json_.close('}');
    }

    static std::string nameOf(const inspect::messageSchema_t *message) {
        return message == nullptr           ? std::string("message")
               : message->record == nullptr ? std::to_string(message->id)
                                            : joined({std::to_string(message->id), " ", message->record->name});
    }

    void writeMessage(const piece_t &piece, bool withKeys) {
        const tree_t tree(piece.place.in(document_.text()));
        const inspect::envelopeNumber_t &number = tree.envelope().sequenceNumber;
        open(nameOf(tree.message()), number.isThere ? joined({"sequence ", std::to_string(number.value)}) : "",
             messageNumber, piece.place, piece.place);
        if (withKeys)
            writeChildren(tree, tree.body(), piece.place.start);
        close();
    }

    void writeChildren(const tree_t &tree, const node_t &group, std::uint32_t start) {
        for (const node_t &node : tree.children(group)) {
            if (node.isCode)
                return;
            std::string name;
            inspect::appendName(name, tree, node);
            const auto moved = [&](place_t place) { return place_t{place.start + start, place.end + start}; };
            const bool isList = node.field != nullptr && node.field->isList() && !node.isElement;
            const place_t whole{node.hasKey ? node.key.start : node.value.start, node.value.end};
            open(name, node.isBody ? std::string() : inspect::scalarText(tree, node),
                 isList        ? listNumber
                 : node.isBody ? messageNumber
                               : fieldNumber,
                 moved(whole), moved(node.hasKey ? node.key : node.value));
            if (node.isBody)
                writeChildren(tree, node, start);
            close();
        }
    }

    void writeReadable(const piece_t &piece, bool withKeys) {
        const readable_t readable(document_.text(), piece.place);
        const std::vector<readableLine_t> &lines = readable.lines();
        const place_t title = lines.front().key;
        open(nameOf(readable.message()), "", messageNumber, {piece.place.start, lines[readable.lastOf(0)].whole.end},
             title);
        std::vector<std::size_t> open; // groups
        for (std::size_t i = 0; withKeys && i < lines.size(); ++i) {
            using kind_t = readableLine_t::kind_t;
            if (lines[i].kind != kind_t::group && lines[i].kind != kind_t::pair)
                continue;
            for (; !open.empty() && open.back() != lines[i].group; open.pop_back())
                close();
            writeLine(readable, i);
            if (lines[i].kind == kind_t::group)
                open.push_back(i);
            else
                close();
        }
        for (; !open.empty(); open.pop_back())
            close();
        close();
    }

    void writeLine(const readable_t &readable, std::size_t number) {
        const readableLine_t &line = readable.lines()[number];
        const bool isGroup = line.kind == readableLine_t::kind_t::group;
        open(line.key.in(document_.text()), line.value.in(document_.text()), isGroup ? messageNumber : fieldNumber,
             {line.key.start, readable.lines()[isGroup ? readable.lastOf(number) : number].whole.end}, line.key);
    }

    jsonAppender_t &json_;
    const document_t &document_;
    positions_t positions_;
};

} // namespace

void appendSymbols(jsonAppender_t &json, const document_t &document) {
    json.open('[');
    symbols_t(json, document).write();
    json.close(']');
}

void appendFolding(jsonAppender_t &json, const document_t &document) {
    const text_t &text = document.lines();
    const auto fold = [&](std::size_t from, std::size_t to) {
        const std::size_t first = text.lineOf(from), last = text.lineOf(to);
        if (first >= last)
            return;
        json.open('{');
        json.member("startLine", first);
        json.member("endLine", last);
        json.close('}');
    };
    json.open('[');
    for (const piece_t &piece : document.pieces().all()) {
        if (piece.kind != pieceKind_t::readable) {
            const std::string_view words = piece.place.in(document.text());
            fold(piece.place.start, piece.place.start + words.find_last_not_of("\r\n") + 1);
            continue;
        }
        const readable_t readable(document.text(), piece.place);
        for (std::size_t i = 0; i < readable.lines().size(); ++i) {
            const readableLine_t &line = readable.lines()[i];
            if (line.kind != readableLine_t::kind_t::pair || line.whole.end > line.whole.start)
                fold(line.whole.start, readable.lines()[readable.lastOf(i)].whole.end);
        }
    }
    json.close(']');
}

} // namespace vek::tool::lsp
