// Reads an expression by recursive descent: disjunction, conjunction, negation, condition. Then each condition is held
// to the schema.
#include "vek/inspect/filter/private/possible.hpp"
#include "vek/inspect/filter/private/regex.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace vek::inspect {

namespace {

constexpr std::size_t deepest = 64;

using comparison_t = expression_t::comparison_t;

// Longer ones first.
constexpr std::array<std::pair<std::string_view, comparison_t>, 9> operators{{{"==", comparison_t::equal},
                                                                              {"!=", comparison_t::different},
                                                                              {"<=", comparison_t::atMost},
                                                                              {">=", comparison_t::atLeast},
                                                                              {"=~", comparison_t::matches},
                                                                              {"=", comparison_t::equal},
                                                                              {"<", comparison_t::less},
                                                                              {">", comparison_t::greater},
                                                                              {"~", comparison_t::contains}}};

constexpr std::string_view operatorCharacters = "=<>~";

} // namespace

// Once something is wrong, nothing more is read.
class expressionReader_t {
public:
    explicit expressionReader_t(std::string_view text) : text_(text) {}

    std::optional<expressionError_t> read(expression_t &expression) {
        disjunction(0);
        if (!error_ && at_ < text_.size())
            fail(at_, text_.size(),
                 text_[at_] == ')' ? "this bracket was not opened" : "write \"and\" or \"or\" in front of this");
        if (!error_) {
            expression.conditions_ = std::move(conditions_);
            expression.terms_ = std::move(terms_);
        }
        return std::move(error_);
    }

private:
    using term_t = expression_t::term_t;

    void fail(std::size_t start, std::size_t end, std::string words) {
        if (!error_)
            error_ = {std::move(words),
                      {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(std::max(end, start + 1))}};
        at_ = text_.size();
    }
    void skipBlanks() {
        while (at_ < text_.size() && isSpace(text_[at_]))
            ++at_;
    }
    // Takes a word that joins or negates, when it stands at a place.
    std::size_t sizeOfWord(std::size_t at, std::string_view word, std::string_view sign) const {
        if (text_.substr(at, sign.size()) == sign)
            return sign.size();
        const std::string_view there = text_.substr(at, word.size());
        const bool isSame = std::equal(there.begin(), there.end(), word.begin(), word.end(),
                                       [](char c, char wanted) { return asciiToLower(c) == wanted; });
        const bool isWhole = (at == 0 || !isWordCharacter(text_[at - 1])) &&
                             (at + word.size() >= text_.size() || !isWordCharacter(text_[at + word.size()]));
        return isSame && isWhole ? word.size() : 0;
    }
    bool take(std::string_view word, std::string_view sign) {
        skipBlanks();
        const std::size_t size = sizeOfWord(at_, word, sign);
        at_ += size;
        return size > 0;
    }
    std::size_t add(term_t term) {
        terms_.push_back(term);
        return terms_.size() - 1;
    }

    std::size_t disjunction(std::size_t depth) {
        std::size_t left = conjunction(depth);
        while (!error_ && take("or", "||"))
            left = add({term_t::kind_t::disjunction, left, conjunction(depth)});
        return left;
    }
    std::size_t conjunction(std::size_t depth) {
        std::size_t left = negation(depth);
        while (!error_ && take("and", "&&"))
            left = add({term_t::kind_t::conjunction, left, negation(depth)});
        return left;
    }
    std::size_t negation(std::size_t depth) {
        if (depth > deepest) {
            fail(at_, at_, "the brackets are too deep");
            return 0;
        }
        if (take("not", "!")) {
            const std::size_t negated = negation(depth + 1);
            return add({term_t::kind_t::negation, negated});
        }
        skipBlanks();
        if (at_ < text_.size() && text_[at_] == '(') {
            const std::size_t opened = at_++;
            const std::size_t inside = disjunction(depth + 1);
            skipBlanks();
            if (error_ || at_ >= text_.size() || text_[at_] != ')')
                fail(opened, opened, "this bracket is not closed");
            else
                ++at_;
            return inside;
        }
        return condition(depth);
    }

    std::size_t condition(std::size_t depth) {
        expression_t::condition_t condition;
        readPath(condition);
        skipBlanks();
        for (const auto &[sign, comparison] : operators)
            if (condition.comparison == comparison_t::isThere && text_.substr(at_).starts_with(sign)) {
                condition.comparison = comparison;
                at_ += sign.size();
                readValue(condition, depth);
            }
        if (error_)
            return 0;
        conditions_.push_back(std::move(condition));
        return add({term_t::kind_t::condition, conditions_.size() - 1});
    }

    void readPath(expression_t::condition_t &condition) {
        const std::size_t start = at_;
        while (at_ < text_.size() && !isSpace(text_[at_]) &&
               std::string_view("=!<>~()&|").find(text_[at_]) == std::string_view::npos) {
            std::string ignored;
            if (text_[at_] == '"' ? !readQuoted(text_, at_, ignored) : (++at_, false))
                return fail(start, text_.size(), "this quote is not closed");
        }
        if (at_ == start)
            return fail(at_, at_,
                        "a path is missing here; write PATH=VALUE, with ==, !=, <, <=, >, >=, ~ (contains) or =~ (a "
                        "regular expression)");
        condition.pathPlace = {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(at_)};
        condition.path = condition.pathPlace.in(text_);
        if (condition.path.starts_with('@') ? !headerNumberOf(condition.path)
                                            : !readSteps(condition.path, condition.steps))
            fail(start, at_,
                 condition.path.starts_with('@') ? "there are @id, @echo, @seq and @length"
                                                 : "this is no path; they look like KEY, LIST[0].KEY and LIST[*].KEY");
    }
    static bool headerNumberOf(std::string_view path) { return headerNumberAt(envelopeParts_t(), path) != nullptr; }

    static bool readSteps(std::string_view path, std::vector<expression_t::step_t> &steps) {
        for (std::size_t at = 0; at < path.size();) {
            if (path[at] == '[') {
                const std::size_t end = path.find(']', at);
                if (end == std::string_view::npos || end == at + 1 || steps.empty())
                    return false;
                const std::string_view inside = path.substr(at + 1, end - at - 1);
                constexpr std::size_t mostDigits = 9;
                if (inside != "*" &&
                    (inside.size() > mostDigits || !std::all_of(inside.begin(), inside.end(), &isDigit)))
                    return false;
                steps.push_back({{}, inside == "*", inside == "*" ? 0 : readInteger(inside)});
                at = end + 1;
                continue;
            }
            if (!steps.empty() && path[at++] != '.')
                return false;
            const std::size_t start = at;
            std::string ignored;
            if (at < path.size() && path[at] == '"' && !readQuoted(path, at, ignored))
                return false;
            at = std::min(path.find_first_of(".[", at), path.size());
            if (at == start)
                return false;
            steps.push_back({std::string(path.substr(start, at - start))});
        }
        return true;
    }

    void readValue(expression_t::condition_t &condition, std::size_t depth) {
        skipBlanks();
        const std::size_t start = at_;
        const bool isQuoted = at_ < text_.size() && (text_[at_] == '"' || text_[at_] == '\'');
        if (isQuoted)
            readQuotedValue(condition.value);
        else
            readBareValue(condition.value, depth);
        condition.valuePlace = {static_cast<std::uint32_t>(start),
                                static_cast<std::uint32_t>(std::max(start, std::min(at_, text_.size())))};
        if (error_)
            return;
        if (condition.value.empty() && !isQuoted)
            return fail(start, start, "a value is missing here; write '' for an empty one");
        if (condition.comparison == comparison_t::matches) {
            condition.regex = expression_t::regex_t::of(condition.value);
            if (!condition.regex)
                fail(start, at_, "this is no regular expression");
        } else {
            condition.number = asNumber(condition.value);
        }
    }
    void readQuotedValue(std::string &value) {
        const std::size_t start = at_;
        const char quote = text_[at_++];
        for (; at_ < text_.size() && text_[at_] != quote; ++at_) {
            const bool isEscape =
                text_[at_] == '\\' && at_ + 1 < text_.size() && (text_[at_ + 1] == quote || text_[at_ + 1] == '\\');
            value += text_[isEscape ? ++at_ : at_];
        }
        if (at_ >= text_.size())
            return fail(start, text_.size(), "this quote is not closed");
        ++at_;
    }
    // Up to what joins it with the next, or the bracket that is open.
    void readBareValue(std::string &value, std::size_t depth) {
        const std::size_t start = at_;
        for (std::size_t opened = 0; at_ < text_.size(); ++at_) {
            const char c = text_[at_];
            if (operatorCharacters.find(c) != std::string_view::npos)
                return fail(at_, at_, "put a value with this in quotes, or \"and\" or \"or\" between two comparisons");
            const bool isBehindBlank = at_ > start && isSpace(text_[at_ - 1]);
            if ((isBehindBlank && (sizeOfWord(at_, "and", "&&") > 0 || sizeOfWord(at_, "or", "||") > 0)) ||
                (c == ')' && depth > 0 && opened == 0))
                break;
            opened += c == '(' ? 1 : 0;
            opened -= c == ')' && opened > 0 ? 1 : 0;
        }
        value = trimmed(text_.substr(start, at_ - start));
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<expression_t::condition_t> conditions_;
    std::vector<term_t> terms_;
    std::optional<expressionError_t> error_;
};

std::optional<expressionError_t> expression_t::read(std::string_view text, std::span<const std::int32_t> ids) {
    expression_t own;
    if (std::optional<expressionError_t> error = expressionReader_t(text).read(own))
        return error;
    for (const condition_t &condition : own.conditions_)
        if (std::optional<expressionError_t> error = whyImpossible(condition, ids))
            return error;
    *this = std::move(own);
    return std::nullopt;
}

std::string expressionError_t::inText(std::string_view expression) const {
    std::string line, under;
    const auto columns = [](std::string_view bytes) {
        return static_cast<std::size_t>(std::count_if(
            bytes.begin(), bytes.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
    };
    for (const char c : expression)
        line += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c;
    const std::size_t start = std::min<std::size_t>(place.start, line.size()),
                      end = std::min<std::size_t>(place.end, line.size());
    under.append(columns(std::string_view(line).substr(0, start)), ' ').append("^");
    under.append(std::max<std::size_t>(columns(std::string_view(line).substr(start, end - start)), 1) - 1, '~');
    return joined({words, "\n  ", line, "\n  ", under});
}

} // namespace vek::inspect
