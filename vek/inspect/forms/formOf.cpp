// The first line tells the form; the rest is looked over for messages that stand outside of it, as in a log.
#include "vek/inspect/forms/forms.hpp"

#include "vek/inspect/forms/lineForm.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

// The text from its first line that is neither empty nor a comment.
std::string_view fromFirstLine(std::string_view text) {
    text = withoutByteOrderMark(text);
    while (!text.empty()) {
        if (isSpace(text.front())) {
            text.remove_prefix(1);
        } else if (text.front() == '#') {
            const std::size_t end = text.find('\n');
            text.remove_prefix(end == std::string_view::npos ? text.size() : end);
        } else {
            break;
        }
    }
    return text;
}

// "focusValue_t 4112", with the end of the line or a comma behind it; or a record's name, or "unknown", alone.
bool isTitle(std::string_view text) {
    const std::size_t end = text.find_first_of(" ,\r\n#");
    const std::string_view word = text.substr(0, end);
    bool isKnown = word == unknownName;
    for (const messageSchema_t &message : schema().messages())
        isKnown |= message.record != nullptr && message.record->name == word;
    return isKnown;
}

std::vector<std::string_view> splitObjects(std::string_view text) {
    std::vector<std::string_view> objects;
    std::size_t depth = 0, start = 0;
    bool isInString = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (isInString) {
            at += c == '\\' ? 1 : 0;
            isInString = c != '"';
        } else if (c == '"') {
            isInString = true;
        } else if (c == '{' && depth++ == 0) {
            start = at;
        } else if (c == '}' && depth > 0 && --depth == 0) {
            objects.push_back(text.substr(start, at + 1 - start));
        }
    }
    if (depth > 0)
        objects.push_back(text.substr(start));
    return objects;
}

// Each message begins with a line that `isFirst` knows.
std::vector<std::string_view> splitLines(std::string_view text, bool (*isFirst)(std::string_view)) {
    std::vector<std::string_view> messages;
    std::size_t start = std::string_view::npos;
    for (std::size_t at = 0; at < text.size();) {
        if (isFirst(text.substr(at))) {
            if (start != std::string_view::npos)
                messages.push_back(text.substr(start, at - start));
            start = at;
        }
        const std::size_t end = text.find('\n', at);
        at = end == std::string_view::npos ? text.size() : end + 1;
    }
    if (start != std::string_view::npos)
        messages.push_back(text.substr(start));
    return messages;
}

} // namespace

namespace {

form_t formOfStart(std::string_view text) {
    if (text.starts_with("@@"))
        return form_t::message;
    if (text.starts_with("@id"))
        return form_t::flat;
    if (text.starts_with('['))
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n", 1), text.size()));
    if (text.starts_with('{')) {
        const std::size_t first = text.find_first_not_of(" \t\r\n", 1);
        return first != std::string_view::npos && text[first] == '"' ? form_t::json : form_t::none;
    }
    return isTitle(text) ? form_t::show : form_t::none;
}

bool isQuotedBehind(std::string_view text) {
    bool isQuoted = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '"')
            isQuoted = !isQuoted;
        else if (text[at] == '\\' && isQuoted)
            ++at;
    }
    return isQuoted;
}

// A line of the form, or of anything that is no log's: what stands in front of a message's start is a value's name, or
// begins a quoted one.
bool isLineOf(std::string_view line, form_t form) {
    if (line.find("@@") == std::string_view::npos || line.starts_with('#'))
        return true;
    if (form != form_t::flat)
        return isSpace(line.front());
    const std::string_view before = line.substr(0, line.find("@@"));
    return before.find(" = ") != std::string_view::npos || isQuotedBehind(before);
}

// Whether messages stand in a text beside what is in the form, so that it is a log after all.
bool hasOthers(std::string_view text, form_t form) {
    if (form == form_t::json) {
        const char *at = text.data();
        for (const std::string_view object : splitObjects(text)) {
            if (std::string_view(at, static_cast<std::size_t>(object.data() - at)).find("@@") != std::string_view::npos)
                return true;
            at = object.data() + object.size();
        }
        return std::string_view(at, static_cast<std::size_t>(text.data() + text.size() - at)).find("@@") !=
               std::string_view::npos;
    }
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        if (!isLineOf(text.substr(0, end), form))
            return true;
        text.remove_prefix(end);
    }
    return false;
}

} // namespace

form_t formOf(std::string_view text) {
    text = fromFirstLine(text);
    const form_t form = formOfStart(text);
    return isForm(form) && hasOthers(text, form) ? form_t::none : form;
}

std::vector<std::string_view> splitForms(std::string_view text, form_t form) {
    text = withoutByteOrderMark(text);
    switch (form) {
    case form_t::json:
        return splitObjects(text);
    case form_t::flat:
        return splitLines(text, [](std::string_view line) { return line.starts_with("@id"); });
    case form_t::show:
        return splitLines(text, &isTitle);
    default:
        return {text};
    }
}

formResult_t readForm(std::string_view text, form_t form, const readOptions_t &options) {
    switch (form) {
    case form_t::show:
        return readShow(text, options);
    case form_t::json:
        return readJson(text, options);
    case form_t::flat:
        return readFlat(text, options);
    default:
        return {std::string(text)};
    }
}

wrapping_t wrappingOfLog(std::string_view start, bool isAll) {
    const wrapping_t wrapping = wrappingOf(start);
    const bool isAlone = isAll && withoutByteOrderMark(start).starts_with("@@");
    return wrapping == wrapping_t::escapes && (isAlone || isForm(formOf(start))) ? wrapping_t::none : wrapping;
}

} // namespace vek::inspect
