// Hears from the parser of one value after the other, and goes through the text beside it to know their places.
#include "vek/inspect/forms/forms.hpp"

#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/forms/private/formText.hpp"
#include "vek/inspect/forms/private/jsonText.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>
#include <vector>

namespace vek::inspect {

namespace {

using json_t = nlohmann::json;

const recordSchema_t *recordNamed(std::string_view name) {
    for (const messageSchema_t &message : schema().messages())
        if (message.record != nullptr && message.record->name == name)
            return message.record;
    return nullptr;
}

std::vector<std::string_view> recordNames() {
    std::vector<std::string_view> names;
    for (const messageSchema_t &message : schema().messages())
        if (message.record != nullptr)
            names.push_back(message.record->name);
    return names;
}

// Of what the parser says the last part: "[...] while parsing object - unexpected '}'; expected string literal". What
// it read last may be of any length, and stands at the place anyway.
std::string whatIsWrong(std::string_view said) {
    constexpr std::string_view lastRead = "; last read: '";
    constexpr std::pair<std::string_view, std::string_view> plainWords[] = {
        {"unexpected end of input", "it ends too early"},
        {"invalid literal", "a word without quotes; expected a value, true, false or null"},
        {"; expected '}'", "; expected ',' or '}'"},
        {"; expected ']'", "; expected ',' or ']'"},
        {"; expected string literal", "; expected a name in quotes"},
        {"; expected end of input", "; expected nothing more"},
        {"; expected '[', '{', or a literal", "; expected a value"},
    };
    std::string words(said.substr(std::min(said.find(" - "), said.size() - 3) + 3));
    if (const std::size_t read = words.find(lastRead); read != std::string::npos) {
        const std::size_t end = words.rfind("; expected ");
        words.erase(read, (end == std::string::npos || end < read ? words.size() : end) - read);
    }
    for (const auto &[theirs, ours] : plainWords)
        if (const std::size_t at = words.find(theirs); at != std::string::npos)
            words.replace(at, theirs.size(), ours);
    return words;
}

// Hears of the values one by one, in their order and with all that are there twice. Where they stand the parser does
// not tell: the reader goes through the text with it, token by token.
class jsonReader_t : public nlohmann::json_sax<json_t> {
public:
    explicit jsonReader_t(std::string_view text) : text_(text), end_(text.size() - withoutByteOrderMark(text).size()) {}

    formText_t form;

    bool null() override {
        step();
        return scalar(kind_t::nothing, {});
    }
    bool boolean(bool value) override {
        step();
        if (depth_ == 1 && name_ == "raw") {
            form.isRaw = value;
            return true;
        }
        return scalar(kind_t::words, value ? "TRUE" : "FALSE");
    }
    bool number_integer(number_integer_t value) override {
        step();
        return integer(value, std::to_string(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        step();
        return integer(static_cast<std::int64_t>(std::min<std::uint64_t>(value, INT64_MAX)), std::to_string(value));
    }
    bool number_float(number_float_t, const string_t &digits) override {
        step();
        std::string text = digits; // with the point of the host's locale
        std::replace_if(
            text.begin(), text.end(),
            [](char c) { return !isDigit(c) && std::string_view("+-eE").find(c) == std::string_view::npos; }, '.');
        return scalar(kind_t::words, text);
    }
    bool string(string_t &value) override {
        step();
        if (depth_ == 1 && name_ == "text") {
            form.text = jsonBytes(value);
            return true;
        }
        return scalar(kind_t::words, jsonBytes(value));
    }
    bool binary(binary_t &) override { return false; }
    bool key(string_t &name) override {
        step();
        nameStart_ = start_;
        name_ = jsonBytes(name);
        return true;
    }
    bool start_object(std::size_t) override { return begin(true); }
    bool start_array(std::size_t) override { return begin(false); }
    bool end_object() override { return end(); }
    bool end_array() override { return end(); }
    // The position counts from 1; of what was read last, the parser knows the start when it is a string or a number.
    bool parse_error(std::size_t position, const std::string &token,
                     const nlohmann::detail::exception &error) override {
        constexpr int beyondRange = 406; // the parser's number for a number that no double holds
        const bool isBeyond = error.id == beyondRange;
        const std::string words = isBeyond ? joined({token.substr(0, 40), " is beyond the range of numbers"})
                                           : joined({"this is no well-formed JSON: ", whatIsWrong(error.what())});
        const bool isKnown = isBeyond || words.find(": unexpected string") != std::string::npos ||
                             words.find(": unexpected number") != std::string::npos;
        const std::size_t start = position - (isKnown && token.size() <= position ? token.size() : 1);
        start_ = std::min(start, text_.size());
        return refuse(words);
    }

    void finish() {
        if (!hasBody_)
            refuse(withSuggestion("the JSON has no message in it: no member has a record's name, nor \"body\"",
                                  nearest(otherObject_, recordNames())));
        form.body = said_.take();
        form.body.offset = bodyStart_;
    }

private:
    using kind_t = said_t::kind_t;

    bool refuse(std::string why) {
        form.error = std::move(why);
        form.offset = start_;
        return false;
    }

    // To the token that is told of now.
    void step() {
        start_ = std::min(text_.find_first_not_of(" \t\r\n,:", end_), text_.size());
        if (start_ == text_.size()) {
            end_ = start_;
        } else if (text_[start_] == '"') {
            for (end_ = start_ + 1; end_ < text_.size() && text_[end_] != '"'; ++end_)
                end_ += text_[end_] == '\\' ? 1 : 0;
            end_ = std::min(end_ + 1, text_.size());
        } else {
            const bool isBracket = std::string_view("{}[]").find(text_[start_]) != std::string_view::npos;
            end_ = isBracket ? start_ + 1 : std::min(text_.find_first_of(" \t\r\n,:{}[]", start_), text_.size());
        }
    }
    said_t said(kind_t kind, std::string_view text = {}) {
        said_t one{kind, std::exchange(name_, {}), -1, std::string(text)};
        one.offset = std::exchange(nameStart_, std::nullopt).value_or(start_);
        return one;
    }

    // The header number that a member outside of the body is; null for what others have put there.
    std::optional<std::int32_t> *headerNumber() {
        return depth_ != 1       ? nullptr
               : name_ == "id"   ? &form.id
               : name_ == "echo" ? &form.echoTag
               : name_ == "seq"  ? &form.sequenceNumber
                                 : nullptr;
    }

    // Of what stands outside of the body, what is of use.
    bool isOurs() { return headerNumber() != nullptr || (depth_ == 1 && (name_ == "text" || name_ == "raw")); }
    bool isBodyName() const { return name_ == "body" || recordNamed(name_) != nullptr; }

    bool scalar(kind_t kind, std::string_view text) {
        if (depth_ == 0)
            return refuse("a message is a JSON object");
        if (isInBody_) {
            said_.value(said(kind, text));
            return true;
        }
        if (isOurs() && kind != kind_t::nothing)
            return refuse(joined({"\"", name_, "\" can't be ", shownValue(text),
                                  headerNumber() != nullptr ? ", it is a number without quotes" : ""}));
        if (depth_ == 1 && isBodyName())
            return refuse(joined({"\"", name_, "\" is the body, which is an object"}));
        return true;
    }

    bool integer(std::int64_t value, std::string_view digits) {
        std::optional<std::int32_t> *number = isInBody_ ? nullptr : headerNumber();
        if (number == nullptr)
            return scalar(kind_t::words, digits);
        if (number->has_value())
            return refuse(joined({"\"", name_, "\" stands here again"}));
        if (value != static_cast<std::int32_t>(value))
            return refuse(joined({"\"", name_, "\" does not fit 32 bits: ", digits}));
        *number = static_cast<std::int32_t>(value);
        return true;
    }

    bool begin(bool isObject) {
        step();
        if (depth_ == 0 && !isObject)
            return refuse("a message is a JSON object");
        if (isOurs())
            return refuse(joined({"\"", name_, isObject ? "\" can't be an object" : "\" can't be a list"}));
        if (++depth_ > saidReader_t::deepest)
            return refuse(joined({"more than ", std::to_string(saidReader_t::deepest), " levels"}));
        if (isInBody_) {
            said_.begin(said(kind_t::group));
        } else if (depth_ == 2 && isBodyName()) {
            if (hasBody_ || !isObject)
                return refuse(
                    joined({"\"", name_, hasBody_ ? "\" is a second body" : "\" is the body, which is an object"}));
            form.record = name_ == "body" ? "" : name_;
            hasBody_ = isInBody_ = true;
            bodyStart_ = nameStart_.value_or(start_);
        } else if (depth_ == 2 && isObject) {
            otherObject_ = name_;
        }
        name_.clear();
        nameStart_.reset();
        return true;
    }

    bool end() {
        step();
        name_.clear();
        --depth_;
        if (isInBody_ && depth_ > 1)
            said_.end();
        isInBody_ = isInBody_ && depth_ > 1;
        return true;
    }

    const std::string_view text_;
    std::size_t start_ = 0, end_;          // of the token
    std::optional<std::size_t> nameStart_; // of the value that follows
    std::size_t bodyStart_ = 0, depth_ = 0;
    std::string name_, otherObject_; // the latter: of what may be meant for the body
    saidReader_t said_;
    bool isInBody_ = false, hasBody_ = false;
};

formText_t readJsonForm(std::string_view text) {
    jsonReader_t reader(text);
    if (json_t::sax_parse(text.begin(), text.end(), &reader))
        reader.finish();
    return std::move(reader.form);
}

} // namespace

formResult_t readJson(std::string_view form, const readOptions_t &options) {
    return messageOf(
        readJsonForm(form), options, [](std::string &out, const tree_t &tree) { appendJson(out, tree); },
        &readJsonForm);
}

} // namespace vek::inspect
