#include "vek/inspect/forms/lineForm.hpp"
#include "vek/inspect/message/bodyBuilder.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <memory>
#include <vector>

namespace vek::inspect {

namespace {

// A step of a path: a key, which may look like anything when it stands in quotes, or an element's number in brackets.
struct step_t {
    std::string words{};
    bool isElement = false;

    /// As the builder takes it: an element has none.
    std::string_view name() const { return isElement ? std::string_view() : words; }
    bool operator==(const step_t &) const = default;
};

// A group that is open: from a line of its own, or since the paths of lines go through it.
struct openGroup_t {
    step_t step;
    std::size_t indent;
    bool hasLine;
};

class lineReader_t {
public:
    explicit lineReader_t(std::string_view text) : text_(text) {}

    formText_t read() {
        while (form_.error.empty() && at_ < text_.size())
            readLine();
        while (!groups_.empty())
            closeGroup();
        form_.body = builder().body();
        return std::move(form_);
    }

private:
    bool isAt(char c) const { return at_ < text_.size() && text_[at_] == c; }
    bool isAtLineEnd() const {
        return at_ >= text_.size() || text_[at_] == '\n' || text_[at_] == '\r' || text_[at_] == '#';
    }

    std::size_t skipBlanks() {
        const std::size_t start = at_;
        while (isAt(' ') || isAt('\t'))
            ++at_;
        return at_ - start;
    }

    void skipLine() {
        const std::size_t end = text_.find('\n', at_);
        at_ = end == std::string_view::npos ? text_.size() : end + 1;
    }

    void refuse(std::string_view why) {
        if (form_.error.empty())
            form_.error = why;
        form_.offset = at_;
    }

    // The record follows from the id, which comes first.
    bodyBuilder_t &builder() {
        if (builder_ == nullptr) {
            const messageSchema_t *message = form_.id ? schema().find(*form_.id) : nullptr;
            builder_ = std::make_unique<bodyBuilder_t>(message != nullptr ? message->record : nullptr);
        }
        return *builder_;
    }

    void readLine() {
        if (at_ == 0)
            at_ = text_.size() - withoutByteOrderMark(text_).size();
        const std::size_t indent = skipBlanks();
        const bool isNumbered = isAt('#') && at_ + 1 < text_.size() && isDigit(text_[at_ + 1]); // no comment: "#1 = x"
        if (isAtLineEnd() && !isNumbered)
            return skipLine();
        if (isAt('@')) {
            ++at_;
            readHeaderValue(readWord());
        } else if (indent == 0 && !hasBegun_ && !form_.id) {
            readTitle();
        } else {
            readPair(indent);
        }
        hasBegun_ = true;
        skipBlanks();
        if (!isAtLineEnd())
            refuse("something stands behind the value: put texts into double quotes");
        skipLine();
    }

    std::string_view readWord() {
        const std::size_t start = at_;
        while (at_ < text_.size() && (isDigit(text_[at_]) || (text_[at_] >= 'a' && text_[at_] <= 'z') ||
                                      (text_[at_] >= 'A' && text_[at_] <= 'Z') || text_[at_] == '_'))
            ++at_;
        return text_.substr(start, at_ - start);
    }

    std::optional<std::int32_t> readNumber() {
        const std::size_t start = at_;
        at_ += isAt('-') ? 1 : 0;
        const std::string_view digits = readWord();
        if (digits.empty() || !isDigit(digits[0]))
            return {};
        return readInteger(text_.substr(start, at_ - start));
    }

    void setNumber(std::string_view name, std::optional<std::int32_t> number) {
        if (name == "id")
            form_.id = number;
        else if (name == "echo")
            form_.echoTag = number;
        else if (name == "seq" || name == "sequence")
            form_.sequenceNumber = number;
        else if (name != "length")
            refuse("this name is not known here");
    }

    void readHeaderValue(std::string_view name) {
        skipBlanks();
        if (!isAt('='))
            return refuse("a \"=\" is missing");
        ++at_;
        skipBlanks();
        if (name != "text")
            return setNumber(name, readNumber());
        form_.text.emplace();
        if (!readQuoted(text_, at_, *form_.text))
            refuse("a text in double quotes is missing");
    }

    // focusValue_t 4112, length 80, echo 7, sequence 41
    void readTitle() {
        readWord();
        skipBlanks();
        form_.id = readNumber();
        while (form_.error.empty() && isAt(',')) {
            ++at_;
            skipBlanks();
            const std::string_view name = readWord();
            skipBlanks();
            setNumber(name, readNumber());
        }
    }

    void closeGroup() {
        builder().end();
        groups_.pop_back();
    }

    void openGroup(step_t step, std::size_t indent, bool hasLine) {
        if (groups_.size() >= bodyBuilder_t::deepest)
            return refuse("too many levels");
        builder().begin(step.name());
        groups_.push_back({std::move(step), indent, hasLine});
    }

    void readPair(std::size_t indent) {
        std::vector<step_t> steps;
        if (!readPath(steps))
            return refuse("a key is missing, or a \"]\"");
        const auto isOver = [&](const openGroup_t &group) { return group.hasLine && group.indent >= indent; };
        while (std::any_of(groups_.begin(), groups_.end(), isOver))
            closeGroup();
        enter(steps, indent);
        skipBlanks();
        if (!isAt('='))
            return openGroup(std::move(steps.back()), indent, true);
        ++at_;
        skipBlanks();
        readValue(steps.back().name());
    }

    // Closes the groups that the path doesn't go through, and opens those that it goes through.
    void enter(const std::vector<step_t> &steps, std::size_t indent) {
        std::size_t first = groups_.size();
        while (first > 0 && !groups_[first - 1].hasLine)
            --first;
        std::size_t shared = 0;
        while (first + shared < groups_.size() && shared + 1 < steps.size() &&
               groups_[first + shared].step == steps[shared])
            ++shared;
        while (groups_.size() > first + shared)
            closeGroup();
        for (; shared + 1 < steps.size(); ++shared)
            openGroup(steps[shared], indent, false);
    }

    bool readPath(std::vector<step_t> &steps) {
        do {
            step_t step;
            if (isAt('[')) {
                step.isElement = true;
                const std::size_t end = text_.find(']', at_);
                if (end == std::string_view::npos)
                    return false;
                step.words = text_.substr(at_, end + 1 - at_);
                at_ = end + 1;
            } else {
                at_ += isAt('.') ? 1 : 0;
                const std::size_t start = at_;
                if (!isAt('"'))
                    step.words = readWord();
                else if (!readQuoted(text_, at_, step.words))
                    return false;
                if (isAt('#')) {
                    step.words += text_[at_++];
                    step.words += readWord();
                }
                if (at_ == start)
                    return false;
            }
            steps.push_back(std::move(step));
        } while (isAt('.') || isAt('['));
        return true;
    }

    void readValue(std::string_view name) {
        if (!isAt('['))
            return readScalar(name, false);
        ++at_;
        builder().begin(name);
        while (form_.error.empty()) {
            while (at_ < text_.size() && (isSpace(text_[at_]) || text_[at_] == ','))
                ++at_;
            if (isAt(']')) {
                ++at_;
                break;
            }
            if (at_ >= text_.size())
                refuse("a \"]\" is missing");
            else if (isAt('['))
                readCodes();
            else
                readScalar({}, true);
        }
        builder().end();
    }

    // A list inside of a list: the codes of a 16-bit text that could not be shown as one.
    void readCodes() {
        ++at_;
        builder().begin({});
        while (form_.error.empty() && !isAt(']')) {
            while (isAt(',') || isAt(' '))
                ++at_;
            if (at_ >= text_.size() || isAt('['))
                refuse("a \"]\" is missing");
            else if (!isAt(']'))
                readScalar({}, true);
        }
        at_ += isAt(']') ? 1 : 0;
        builder().end();
    }

    void readScalar(std::string_view name, bool isInList) {
        std::string text;
        const bool isWide = text_.substr(at_).starts_with("u\"");
        if (isWide || isAt('"')) {
            at_ += isWide ? 1 : 0;
            if (!readQuoted(text_, at_, text))
                return refuse("the closing double quote is missing");
            return builder().value(name, text, isWide ? spelling_t::wide : spelling_t::words);
        }
        const std::size_t end = std::min(text_.find_first_of(isInList ? ",]\r\n#" : "\r\n#", at_), text_.size());
        std::size_t behind = end;
        while (behind > at_ && isSpace(text_[behind - 1]))
            --behind;
        text = text_.substr(at_, behind - at_);
        if (isInList && end == at_)
            return refuse("a value is missing");
        at_ = end;
        builder().value(name, text);
    }

    std::string_view text_;
    std::size_t at_ = 0;
    formText_t form_;
    std::unique_ptr<bodyBuilder_t> builder_;
    std::vector<openGroup_t> groups_;
    bool hasBegun_ = false;
};

} // namespace

formText_t readLines(std::string_view form) {
    return lineReader_t(form).read();
}

} // namespace vek::inspect
