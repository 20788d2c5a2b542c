// A document from one line a message to the readable form and back. What would not come back is refused.
#include "tools/vekmsg/lsp/features.hpp"

#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool::lsp {

namespace {

using inspect::joined;
using inspect::trimmed;

std::string lineNumber(const document_t &document, std::size_t offset) {
    return joined({"line ", std::to_string(document.lines().lineOf(offset) + 1), ": "});
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t size = inspect::utf8Size(text);
        if (size == 0)
            return false;
        text.remove_prefix(size);
    }
    return true;
}

// Whether a comment stands behind what a line says.
bool hasComment(std::string_view text, const readableLine_t &line) {
    using kind_t = readableLine_t::kind_t;
    if (line.kind == kind_t::comment)
        return true;
    const std::string_view whole = text.substr(0, line.whole.end);
    std::size_t at = line.kind == kind_t::other ? line.whole.start : line.key.end;
    if (line.kind == kind_t::pair || line.kind == kind_t::other)
        at = std::min(whole.find_first_not_of(" =\tu", std::min(whole.find('=', at), whole.size())), whole.size());
    std::string words;
    if (whole.substr(at).starts_with('"'))
        inspect::readQuoted(whole, at, words);
    else if (whole.substr(at).starts_with('['))
        at = std::max(at, std::min(whole.rfind(']'), whole.size()));
    else if (line.kind == kind_t::pair)
        at = std::min(whole.find("  #", at), whole.find("\t#", at));
    return at < whole.size() && whole.find('#', at) != std::string_view::npos;
}

// The line of a comment, which no message can hold; empty when there is none.
std::string commentIn(const document_t &document) {
    const std::string_view text = document.text();
    std::size_t at = 0;
    for (const piece_t &piece : document.pieces().all()) {
        const std::string_view between = text.substr(at, piece.place.start - at);
        if (!trimmed(inspect::withoutByteOrderMark(between)).empty())
            return lineNumber(document, static_cast<std::size_t>(trimmed(between).data() - text.data()));
        const readable_t readable(text, piece.place);
        for (const readableLine_t &line : readable.lines())
            if (hasComment(text, line))
                return lineNumber(document, line.whole.start);
        at = piece.place.end;
    }
    return {};
}

// The messages of a document; or why they can't be had, or what would be lost.
struct messages_t {
    std::vector<std::string> all;
    std::string error;

    explicit messages_t(const document_t &document) {
        if (document.pieces().all().empty())
            error = "there is no message here: one begins with \"@@\" and its number, or with the name of its record";
        else if (document.pieces().isReadable())
            readForms(document);
        else
            takeLines(document);
    }

private:
    void readForms(const document_t &document) {
        if (const std::string line = commentIn(document); !line.empty()) {
            error = line + "a message can't hold this comment: take it out first";
            return;
        }
        for (const piece_t &piece : document.pieces().all()) {
            inspect::formResult_t read = inspect::readShow(piece.place.in(document.text()));
            if (!read.isRead()) {
                error = lineNumber(document, piece.place.start + read.offset) + read.error;
                return;
            }
            all.push_back(std::move(read.text));
        }
    }

    void takeLines(const document_t &document) {
        const std::string_view text = document.text();
        std::size_t at = 0;
        for (const piece_t &piece : document.pieces().all()) {
            if (!trimmed(text.substr(at, piece.place.start - at)).empty())
                break;
            all.emplace_back(trimmed(piece.place.in(text)));
            at = piece.place.end;
        }
        if (!trimmed(text.substr(at)).empty())
            error = lineNumber(document, at) + "other words stand between the messages, and would be lost: copy the "
                                               "messages into a document of their own, or see vekmsg show";
    }
};

} // namespace

rewritten_t inReadableForm(const document_t &document) {
    const messages_t messages(document);
    if (!messages.error.empty())
        return {{}, messages.error};
    std::string text;
    for (const std::string &message : messages.all) {
        const std::size_t start = text.size();
        inspect::appendShow(text, inspect::tree_t(message));
        if (inspect::readShow(std::string_view(text).substr(start)).text != message)
            return {{}, "the readable form would not say all of a message, so it stays as it is"};
    }
    if (inspect::splitForms(text, inspect::formOf(text)).size() != messages.all.size())
        return {{}, "the readable form would not say where a message ends, so it stays as it is"};
    return {text};
}

rewritten_t inLines(const document_t &document) {
    const messages_t messages(document);
    if (!messages.error.empty())
        return {{}, messages.error};
    std::string text;
    for (const std::string &message : messages.all) {
        if (!isUtf8(message))
            return {{}, "a message has bytes that are no UTF-8, which an editor would change: vekmsg seal writes it"};
        if (messages.all.size() > 1 && message.find('\n') != std::string::npos)
            return {{}, "a message has several lines, so it stays as it is: vekmsg seal puts it into one"};
        text.append(message).append(messages.all.size() > 1 ? "\n" : ""); // one alone is what a host gets
    }
    return {text};
}

} // namespace vek::tool::lsp
