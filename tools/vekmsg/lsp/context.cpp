#include "tools/vekmsg/lsp/context.hpp"

#include "vek/inspect/message/envelopeParts.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool::lsp {

namespace {

using contextKind_t = context_t::kind_t;

place_t placeFrom(std::size_t start, std::size_t end) {
    return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end)};
}

// Goes through a body that may not be whole, up to an offset, and on to the end of the group that it is in.
class bodyWalk_t {
public:
    bodyWalk_t(std::string_view text, place_t body, std::size_t offset, context_t &context)
        : text_(text), body_(body), offset_(offset), context_(context) {}

    void walk(const inspect::recordSchema_t *record) {
        groups_.push_back({{nullptr, record, false}, {}, {}});
        start_ = body_.start + 1;
        for (std::size_t at = start_; at < body_.end && !groups_.empty(); ++at) {
            if (text_[at] == '"' && at == start_)
                at = std::min<std::size_t>(text_.find('"', at + 1), body_.end);
            if (at < body_.end && std::string_view("{}=;,").find(text_[at]) != std::string_view::npos && !take(at))
                return;
        }
        if (!groups_.empty())
            endToken(body_.end, '\0');
    }

private:
    struct group_t {
        target_t target;
        target_t value; // behind a "=": what comes there
        std::vector<std::string_view> keys;
    };

    // A separator or brace; false when nothing more is of interest.
    bool take(std::size_t at) {
        const char c = text_[at];
        endToken(at, c);
        start_ = at + 1;
        if (c == '{') {
            const bool isElement = !isValue_ && groups_.back().target.field != nullptr;
            const target_t inner = isElement ? groups_.back().target.element() : groups_.back().value;
            groups_.push_back({inner, {}, {}});
        } else if (c == '}') {
            groups_.pop_back();
            if (found_ != 0 && groups_.size() < found_)
                return false;
        }
        isValue_ = c == '=';
        return true;
    }

    void endToken(std::size_t end, char separator) {
        group_t &group = groups_.back();
        const std::string_view word = inspect::trimmed(text_.substr(start_, end - start_));
        const bool isHere = found_ == 0 && offset_ >= start_ && offset_ <= end;
        if (isHere) {
            found_ = groups_.size();
            const std::size_t blanks = std::min(text_.find_first_not_of(inspect::whiteSpace, start_), end) - start_;
            context_.token = placeFrom(start_ + blanks, start_ + blanks + word.size());
            const bool isOfList = group.target.field != nullptr && group.target.record == nullptr;
            context_.kind = isValue_ || isOfList ? contextKind_t::value : contextKind_t::key;
            context_.target = isValue_                                ? group.value
                              : context_.kind == contextKind_t::value ? group.target.element()
                                                                      : group.target.member(word);
            context_.group = group.target;
            context_.keys = group.keys;
            context_.hasEquals = separator == '=';
        }
        if (separator != '=')
            return;
        group.value = group.target.member(word);
        group.keys.push_back(word);
        if (!isHere && found_ == groups_.size())
            context_.keys.push_back(word);
    }

    std::string_view text_;
    place_t body_;
    std::size_t offset_;
    context_t &context_;
    std::vector<group_t> groups_;
    std::size_t start_ = 0; // of the token
    std::size_t found_ = 0; // how many groups are open where the offset is
    bool isValue_ = false;
};

void lookIntoMessage(std::string_view text, const piece_t &piece, std::size_t offset, context_t &context) {
    const inspect::envelopeParts_t parts = inspect::takeEnvelopeApart(piece.place.in(text));
    context.message = parts.id.isThere ? inspect::schema().find(parts.id.value) : nullptr;
    const std::size_t brace = text.substr(0, piece.place.end).find('{', piece.place.start);
    if (brace == std::string_view::npos || offset <= brace) {
        context.kind = contextKind_t::message;
        context.token = placeFrom(piece.place.start + parts.id.place.start, piece.place.start + parts.id.place.end);
        return;
    }
    const std::size_t end = piece.place.start + (parts.endMarker.isEmpty() ? parts.whole.end : parts.endMarker.start);
    if (offset <= end)
        bodyWalk_t(text, placeFrom(brace, end), offset, context)
            .walk(context.message != nullptr ? context.message->record : nullptr);
}

// The item of a list that an offset is in.
place_t itemAt(std::string_view text, place_t list, std::size_t offset) {
    std::size_t start = list.start;
    if (offset > start)
        start = text.substr(0, offset).find_last_of("[,");
    start = std::max<std::size_t>(start == std::string_view::npos ? 0 : start + 1, list.start);
    start = std::min(text.find_first_not_of(inspect::whiteSpace, start), offset);
    const std::size_t end = std::min<std::size_t>(text.find_first_of(",]\r\n", offset), list.end);
    return placeFrom(std::min(start, end), end);
}

void lookIntoPair(std::string_view text, const readableLine_t &line, std::size_t offset, context_t &context) {
    context.kind = contextKind_t::value;
    context.target = line.target;
    if (text.substr(line.value.start).starts_with('[') && offset > line.value.start) {
        context.target = line.target.element();
        context.token = itemAt(text, line.value, offset);
        return;
    }
    const std::string_view value = line.value.in(text);
    const std::string_view words = inspect::trimmed(value.substr(0, value.find("  #")));
    context.token = placeFrom(line.value.start, line.value.start + words.size());
}

void lookIntoReadable(std::string_view text, const piece_t &piece, std::size_t offset, context_t &context) {
    const readable_t readable(text, piece.place);
    const readableLine_t *line = readable.at(offset);
    context.message = readable.message();
    context.isReadable = true;
    if (line == nullptr || line->kind == readableLine_t::kind_t::comment)
        return;
    if (line->kind == readableLine_t::kind_t::title) {
        context.kind = contextKind_t::message;
        context.token = line->key;
        return;
    }
    if (line->kind == readableLine_t::kind_t::pair && offset > line->key.end) {
        if (offset >= line->value.start)
            lookIntoPair(text, *line, offset, context);
        return;
    }
    context.kind = contextKind_t::key;
    context.token = line->key.isEmpty() ? placeFrom(offset, offset) : line->key;
    context.target = line->target;
    context.group = line->around;
    context.hasEquals = line->kind == readableLine_t::kind_t::pair;
    for (const readableLine_t &other : readable.lines())
        if (&other != line && other.group == line->group && !other.key.isEmpty() &&
            other.kind != readableLine_t::kind_t::title)
            context.keys.push_back(other.key.in(text));
}

} // namespace

context_t contextAt(std::string_view text, const piece_t &piece, std::size_t offset) {
    context_t context;
    if (piece.kind == pieceKind_t::readable)
        lookIntoReadable(text, piece, offset, context);
    else
        lookIntoMessage(text, piece, offset, context);
    return context;
}

} // namespace vek::tool::lsp
