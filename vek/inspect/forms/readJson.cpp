#include "vek/inspect/forms/forms.hpp"

#include "vek/inspect/forms/private/formText.hpp"
#include "vek/inspect/forms/private/jsonText.hpp"
#include "vek/inspect/message/bodyBuilder.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <utility>

namespace vek::inspect {

namespace {

using json_t = nlohmann::json;

const recordSchema_t *recordNamed(std::string_view name) {
    for (const messageSchema_t &message : schema().messages())
        if (message.record != nullptr && message.record->name == name)
            return message.record;
    return nullptr;
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

// Hears of the values one by one, in their order and with all that are there twice.
class jsonReader_t : public nlohmann::json_sax<json_t> {
public:
    explicit jsonReader_t(std::size_t size) : size_(size) {}

    formText_t form;

    bool null() override { return leave(); }
    bool boolean(bool value) override { return scalar(value ? "TRUE" : "FALSE"); }
    bool number_integer(number_integer_t value) override { return integer(value, std::to_string(value)); }
    bool number_unsigned(number_unsigned_t value) override {
        return integer(static_cast<std::int64_t>(std::min<std::uint64_t>(value, INT64_MAX)), std::to_string(value));
    }
    bool number_float(number_float_t, const string_t &digits) override {
        std::string text = digits; // with the point of the host's locale
        std::replace_if(
            text.begin(), text.end(),
            [](char c) { return !isDigit(c) && std::string_view("+-eE").find(c) == std::string_view::npos; }, '.');
        return scalar(text);
    }
    bool string(string_t &value) override {
        if (depth_ == 1 && name_ == "text") {
            form.text = jsonBytes(value);
            return true;
        }
        return scalar(jsonBytes(value));
    }
    bool binary(binary_t &) override { return false; }
    bool key(string_t &name) override {
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
        const std::string words = whatIsWrong(error.what());
        const bool isKnown = words.starts_with("unexpected string") || words.starts_with("unexpected number");
        const std::size_t start = position - (isKnown && token.size() <= position ? token.size() : 1);
        return refuse(joined({"this is no well-formed JSON: ", words}), std::min(start, size_));
    }

    /// Whether the one message is complete.
    bool isComplete() const { return hasBody_; }

private:
    bool refuse(std::string why, std::size_t position) {
        form.error = std::move(why);
        form.offset = position;
        return false;
    }

    bool leave() {
        name_.clear();
        return depth_ > 0 || refuse("a message is a JSON object", 0);
    }

    // Values outside of the body are the header numbers, or for others.
    bool scalar(std::string_view text) {
        if (body_ != nullptr)
            body_->value(name_, text);
        return leave();
    }

    bool integer(std::int64_t value, std::string_view digits) {
        if (body_ == nullptr && depth_ == 1) {
            const auto number = static_cast<std::int32_t>(std::clamp<std::int64_t>(value, INT32_MIN, INT32_MAX));
            if (name_ == "id")
                form.id = number;
            else if (name_ == "echo")
                form.echoTag = number;
            else if (name_ == "seq")
                form.sequenceNumber = number;
        }
        return scalar(digits);
    }

    bool begin(bool isObject) {
        if (depth_ == 0 && !isObject)
            return refuse("a message is a JSON object", 0);
        if (++depth_ > bodyBuilder_t::deepest)
            return refuse(joined({"more than ", std::to_string(bodyBuilder_t::deepest), " levels"}), 0);
        if (body_ != nullptr) {
            body_->begin(name_);
        } else if (depth_ == 2 && isObject && !hasBody_) {
            const recordSchema_t *record = recordNamed(name_);
            if (record != nullptr || name_ == "body") {
                body_ = std::make_unique<bodyBuilder_t>(record);
                hasBody_ = true;
            }
        }
        name_.clear();
        return true;
    }

    bool end() {
        name_.clear();
        --depth_;
        if (body_ == nullptr)
            return true;
        if (depth_ > 1) {
            body_->end();
            return true;
        }
        form.body = body_->body();
        body_.reset();
        return true;
    }

    const std::size_t size_; // of the form
    std::size_t depth_ = 0;
    std::string name_;
    std::unique_ptr<bodyBuilder_t> body_;
    bool hasBody_ = false;
};

formText_t readJsonForm(std::string_view text) {
    jsonReader_t reader(text.size());
    const bool isRead = json_t::sax_parse(text.begin(), text.end(), &reader);
    if (isRead && !reader.isComplete())
        reader.form.error = "the JSON has no message in it: no member has a record's name, nor \"body\"";
    return std::move(reader.form);
}

} // namespace

formResult_t readJson(std::string_view form) {
    return messageOf(
        readJsonForm(form), [](std::string &out, const tree_t &tree) { appendJson(out, tree); }, &readJsonForm);
}

} // namespace vek::inspect
