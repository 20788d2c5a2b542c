// Reads line by line what stands in front of the "=", a path, and what behind. Groups open and close by the paths, in
// the readable form also by indentation. Once something is wrong, nothing more is read.
#include "vek/inspect/forms/lineForm.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <vector>

namespace vek::inspect {

namespace {

// A step of a path: a key, which may look like anything when it stands in quotes, or an element's number in brackets.
struct step_t {
    std::string words{};
    std::int32_t index = -1;

    bool operator==(const step_t &) const = default;
};

constexpr std::size_t unknownIndent = SIZE_MAX;

// A group that is open: from a line of its own, or since the paths of lines go through it.
struct openGroup_t {
    step_t step;
    std::size_t indent;
    bool hasLine;
    std::size_t innerIndent = unknownIndent; ///< of the lines in it
};

class lineReader_t {
public:
    explicit lineReader_t(std::string_view text) : text_(text) {}

    formText_t read() {
        while (form_.error.empty() && at_ < text_.size())
            readLine();
        while (!groups_.empty())
            closeGroup();
        form_.body = said_.take();
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
        if (!form_.error.empty())
            return;
        form_.error = why;
        form_.offset = at_;
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
        while (at_ < text_.size() && isWordCharacter(text_[at_]))
            ++at_;
        return text_.substr(start, at_ - start);
    }

    // A header number; "none" is one that the message has not.
    std::optional<std::int32_t> readNumber() {
        const std::size_t start = at_;
        at_ += isAt('-') || isAt('+') ? 1 : 0;
        const std::string_view digits = readWord(), word = text_.substr(start, at_ - start);
        if (word == "none")
            return {};
        const bool isNumber = !digits.empty() && std::all_of(digits.begin(), digits.end(), isDigit);
        const std::int32_t number = isNumber ? readInteger(word) : 0;
        if (!isNumber || readReal(word) != static_cast<double>(number))
            refuse(isNumber ? "this number does not fit 32 bits" : "a number is missing");
        return number;
    }

    void readNumberOf(std::string_view name) {
        std::optional<std::int32_t> length;
        std::optional<std::int32_t> *const number = name == "id"                          ? &form_.id
                                                    : name == "echo"                      ? &form_.echoTag
                                                    : name == "seq" || name == "sequence" ? &form_.sequenceNumber
                                                    : name == "length"                    ? &length
                                                                                          : nullptr;
        if (number == nullptr)
            return refuse("this name is not known here");
        if (number->has_value())
            return refuse("this number stands here again");
        *number = readNumber();
    }

    void readHeaderValue(std::string_view name) {
        skipBlanks();
        if (!isAt('='))
            return refuse("a \"=\" is missing");
        ++at_;
        skipBlanks();
        if (name != "text")
            return readNumberOf(name);
        form_.text.emplace();
        if (!readQuoted(text_, at_, *form_.text))
            refuse("a text in double quotes is missing");
    }

    // focusValue_t 4112, length 80, echo 7, sequence 41
    void readTitle() {
        form_.record = readWord();
        if (form_.record == unknownName)
            form_.record.clear();
        skipBlanks();
        if (!isAtLineEnd() && !isAt(','))
            readNumberOf("id");
        while (form_.error.empty() && isAt(',')) {
            ++at_;
            skipBlanks();
            const std::string_view name = readWord();
            skipBlanks();
            readNumberOf(name);
        }
    }

    said_t said(const step_t &step, said_t::kind_t kind = said_t::kind_t::group) const {
        said_t one{kind, step.words, step.index};
        one.offset = lineStart_;
        return one;
    }

    void closeGroup() {
        said_.end();
        groups_.pop_back();
    }

    void openGroup(step_t step, std::size_t indent, bool hasLine) {
        if (groups_.size() >= saidReader_t::deepest)
            return refuse("too many levels");
        said_.begin(said(step));
        groups_.push_back({std::move(step), indent, hasLine});
    }

    void readPair(std::size_t indent) {
        lineStart_ = at_;
        const auto isOver = [&](const openGroup_t &group) { return group.hasLine && group.indent >= indent; };
        while (std::any_of(groups_.begin(), groups_.end(), isOver))
            closeGroup();
        const auto around = std::find_if(groups_.rbegin(), groups_.rend(), [](const auto &one) { return one.hasLine; });
        std::size_t &own = around == groups_.rend() ? topIndent_ : around->innerIndent;
        if (own != unknownIndent && own != indent)
            return refuse("the indentation is not that of the lines around, so the group is not certain");
        own = indent;
        std::vector<step_t> steps;
        if (!readPath(steps))
            return refuse("a key is missing, or a \"]\"");
        enter(steps, indent);
        skipBlanks();
        if (isAt(':'))
            return refuse("a \"=\" belongs behind the key, not a \":\"");
        if (!isAt('=') && !isAtLineEnd())
            return refuse("a \"=\" is missing behind the key");
        if (!isAt('='))
            return openGroup(std::move(steps.back()), indent, true);
        ++at_;
        skipBlanks();
        readValue(steps.back());
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
                ++at_;
                const std::string_view digits = readWord();
                step.index = readInteger(digits);
                if (!isAt(']') || std::to_string(step.index) != digits)
                    return false;
                ++at_;
            } else {
                at_ += isAt('.') ? 1 : 0;
                const std::size_t start = at_;
                if (!isAt('"'))
                    step.words = readWord();
                else if (!readQuoted(text_, at_, step.words))
                    return false;
                if (isAt('#')) {
                    if (at_ != start && step.words.empty())
                        step.words = emptyKey; // apart from the pairs without a key
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

    void readValue(const step_t &step) {
        if (!isAt('['))
            return readScalar(step, false);
        ++at_;
        said_.begin(said(step));
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
        said_.end();
    }

    // A list inside of a list: the codes of a 16-bit text that could not be shown as one.
    void readCodes() {
        ++at_;
        said_.begin(said({}));
        while (form_.error.empty() && !isAt(']')) {
            while (isAt(',') || isAt(' '))
                ++at_;
            if (at_ >= text_.size() || isAt('['))
                refuse("a \"]\" is missing");
            else if (!isAt(']'))
                readScalar({}, true);
        }
        at_ += isAt(']') ? 1 : 0;
        said_.end();
    }

    void readScalar(const step_t &step, bool isInList) {
        said_t one = said(step, text_.substr(at_).starts_with("u\"") ? said_t::kind_t::wide : said_t::kind_t::words);
        one.offset = at_;
        if (one.kind == said_t::kind_t::wide || isAt('"')) {
            at_ += one.kind == said_t::kind_t::wide ? 1 : 0;
            if (!readQuoted(text_, at_, one.text))
                return refuse("the closing double quote is missing, or a backslash is not written twice");
            return add(std::move(one));
        }
        std::size_t end = std::min(text_.find_first_of(isInList ? ",]\r\n" : "\r\n", at_), text_.size());
        for (std::size_t mark = at_; (mark = text_.substr(0, end).find('#', mark)) != std::string_view::npos; ++mark) {
            if (isInList || !isComment(mark)) {
                at_ = mark;
                return refuse("a \"#\" in a value: put the value into double quotes; two blanks stand in front of "
                              "the \"# \" of a comment");
            }
            end = mark;
        }
        std::size_t behind = end;
        while (behind > at_ && isSpace(text_[behind - 1]))
            --behind;
        if (isInList && end == at_)
            return refuse("a value is missing");
        one.text = text_.substr(at_, behind - at_);
        at_ = end;
        add(std::move(one));
    }

    // No characters are no value: an empty 16-bit text is u"".
    void add(said_t one) {
        if (one.kind == said_t::kind_t::words && one.text.empty())
            one.kind = said_t::kind_t::nothing;
        said_.value(std::move(one));
    }

    // As they are written behind a value.
    bool isComment(std::size_t mark) const {
        const std::string_view front = text_.substr(0, mark), rest = text_.substr(mark + 1);
        return (front.ends_with("  ") || front.ends_with('\t')) && (rest.empty() || isSpace(rest.front()));
    }

    std::string_view text_;
    std::size_t at_ = 0;
    formText_t form_;
    saidReader_t said_;
    std::vector<openGroup_t> groups_;
    std::size_t topIndent_ = unknownIndent, lineStart_ = 0;
    bool hasBegun_ = false;
};

} // namespace

formText_t readLines(std::string_view form) {
    return lineReader_t(form).read();
}

} // namespace vek::inspect
