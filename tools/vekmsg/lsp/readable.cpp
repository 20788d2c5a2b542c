#include "tools/vekmsg/lsp/readable.hpp"

#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>

namespace vek::tool::lsp {

namespace {

using lineKind_t = readableLine_t::kind_t;
using inspect::isWordCharacter;

// A word of a path, with its quotes, brackets or point in front; empty when there is none.
std::string_view nextStep(std::string_view path) {
    std::size_t end = path.starts_with('.') ? 1 : 0;
    if (path.substr(end).starts_with('['))
        return path.substr(0, std::min(path.find(']'), path.size() - 1) + 1);
    if (path.substr(end).starts_with('"')) {
        for (++end; end < path.size() && path[end] != '"'; ++end)
            end += path[end] == '\\' ? 1 : 0;
        return path.substr(0, std::min(end + 1, path.size()));
    }
    while (end < path.size() && (isWordCharacter(path[end]) || path[end] == '#'))
        ++end;
    return path.substr(0, end);
}

} // namespace

target_t target_t::member(std::string_view key) const {
    target_t its;
    its.field = record != nullptr ? record->find(key) : nullptr;
    if (its.field != nullptr && !its.field->isList())
        its.record = its.field->record();
    return its;
}

target_t target_t::element() const {
    if (field == nullptr || !field->isList() || isElement)
        return {};
    return {field, field->record(), true};
}

readable_t::readable_t(std::string_view text, place_t piece) : text_(text), piece_(piece) {
    for (std::size_t at = piece.start; at < piece.end;) {
        const std::size_t end = std::min<std::size_t>(text.find('\n', at), piece.end);
        const bool hasReturn = end > at && text[end - 1] == '\r';
        addLine({static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(end - (hasReturn ? 1 : 0))});
        at = std::max<std::size_t>(end, lines_.back().whole.end) + 1;
    }
}

void readable_t::addLine(place_t line) {
    readableLine_t &added = lines_.emplace_back();
    added.whole = line;
    const std::string_view words = line.in(text_);
    added.indent = std::min(words.find_first_not_of(" \t"), words.size());
    const std::string_view rest = words.substr(added.indent);
    const bool isNumbered = rest.size() > 1 && rest[0] == '#' && isDigit(rest[1]);
    added.group = groupAt(added.indent);
    if (added.group != readableLine_t::top)
        added.around = lines_[added.group].target;
    else if (message_ != nullptr)
        added.around.record = message_->record;
    if (rest.starts_with('#') && !isNumbered)
        added.kind = lineKind_t::comment;
    else if (lines_.size() == 1)
        addTitle(added);
    else if (!rest.empty() && !rest.starts_with('@'))
        addPair(added);
}

void readable_t::addTitle(readableLine_t &line) {
    line.kind = lineKind_t::title;
    const std::string_view words = line.whole.in(text_);
    const std::string_view name = words.substr(0, words.find_first_of(" ,#"));
    line.key = {line.whole.start, line.whole.start + static_cast<std::uint32_t>(name.size())};
    const std::string_view number = inspect::trimmed(words.substr(name.size(), words.find(',') - name.size()));
    if (!number.empty() && isDigit(number.front()))
        message_ = inspect::schema().find(readInteger(number));
    for (const inspect::messageSchema_t &one : inspect::schema().messages())
        if (message_ == nullptr && one.record != nullptr && one.record->name == name)
            message_ = &one;
}

// The group around a line that is indented so far.
std::size_t readable_t::groupAt(std::size_t indent) const {
    for (auto group = open_.rbegin(); group != open_.rend(); ++group)
        if (lines_[*group].indent < indent)
            return *group;
    return readableLine_t::top;
}

void readable_t::addPair(readableLine_t &line) {
    while (!open_.empty() && lines_[open_.back()].indent >= line.indent)
        open_.pop_back();
    const std::size_t start = line.whole.start + line.indent;
    std::string_view rest = text_.substr(start, line.whole.end - start);
    line.target = line.around;
    line.path = line.group != readableLine_t::top ? lines_[line.group].path : "";
    std::size_t size = 0;
    for (std::string_view step; !(step = nextStep(rest.substr(size))).empty(); size += step.size()) {
        const std::string_view word = step.substr(step.starts_with('.') ? 1 : 0);
        const bool isElement = word.starts_with('[');
        line.target = isElement ? line.target.element() : line.target.member(word);
        line.path.append(isElement || line.path.empty() ? "" : ".").append(word);
    }
    line.key = {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(start + size)};
    const std::size_t equals = rest.find_first_not_of(" \t", size);
    if (equals == std::string_view::npos || rest[equals] != '=') {
        line.kind = lineKind_t::group;
        open_.push_back(lines_.size() - 1);
        return;
    }
    line.kind = lineKind_t::pair;
    const std::size_t value = std::min(rest.find_first_not_of(" \t", equals + 1), rest.size());
    if (rest.substr(value).starts_with('['))
        line.whole.end = static_cast<std::uint32_t>(endOfList(start + value));
    line.value = {static_cast<std::uint32_t>(start + value), line.whole.end};
}

// A list goes on up to its bracket, unless a line comes in front that is none of it: then it is being typed.
std::size_t readable_t::endOfList(std::size_t from) const {
    const std::string_view text = text_.substr(0, piece_.end);
    bool isInQuotes = false;
    std::size_t lineEnd = std::min(text.find_first_of("\r\n", from), text.size());
    const std::size_t firstLineEnd = lineEnd;
    for (std::size_t at = from; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '\n') {
            lineEnd = std::min(text.find_first_of("\r\n", at + 1), text.size());
            const std::string_view line = inspect::trimmed(text.substr(at, lineEnd - at));
            const std::string_view step = nextStep(line);
            if (step.empty() ? line.empty() : inspect::trimmed(line.substr(step.size())).starts_with('='))
                return firstLineEnd;
            isInQuotes = false;
        } else if (isInQuotes && c == '\\') {
            ++at;
        } else if (c == '"') {
            isInQuotes = !isInQuotes;
        } else if (c == ']' && !isInQuotes && (at + 1 >= lineEnd || text[at + 1] != ',')) {
            return lineEnd;
        }
    }
    return firstLineEnd;
}

const readableLine_t *readable_t::at(std::size_t offset) const {
    const auto behind =
        std::partition_point(lines_.begin(), lines_.end(), [&](const auto &one) { return one.whole.start <= offset; });
    return behind == lines_.begin() ? nullptr : &*std::prev(behind);
}

place_t readable_t::placeOf(std::string path) const {
    while (!path.empty()) {
        for (const readableLine_t &line : lines_)
            if (!line.key.isEmpty() && line.path == path)
                return line.key;
        const std::size_t step = path.find_last_of(".[");
        path.resize(step != std::string::npos ? step : 0);
    }
    return lines_.empty() ? piece_ : lines_.front().key;
}

std::size_t readable_t::lastOf(std::size_t group) const {
    std::size_t last = group;
    for (std::size_t i = group + 1; i < lines_.size(); ++i) {
        const bool isLine = lines_[i].kind == lineKind_t::pair || lines_[i].kind == lineKind_t::group;
        if (isLine && lines_[i].indent <= lines_[group].indent && lines_[group].kind != lineKind_t::title)
            break;
        last = isLine ? i : last;
    }
    return last;
}

} // namespace vek::tool::lsp
