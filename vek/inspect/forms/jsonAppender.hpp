// jsonAppender_t: JSON put to the end of a string, piece by piece. All JSON that is written here comes from it.
//
// It sets the commas; whoever uses it closes what was opened. What is appended throws std::bad_alloc at most.
#pragma once

#include "vek/inspect/message/place.hpp"

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>

namespace vek::inspect {

/// Of all JSON here: what members are called and hold.
inline constexpr int jsonVersion = 2;

/// A JSON string literal of any bytes. Those that are no UTF-8 become the characters U+EF80 to U+EFFF, as do the bytes
/// of these characters themselves; readers that undo it get the very bytes.
void appendJsonString(std::string &out, std::string_view bytes);

/// Three pieces at once: one by one they take twice the time.
inline void appendPieces(std::string &out, std::string_view front, std::string_view middle, std::string_view back) {
    const std::size_t size = out.size();
    out.resize(size + front.size() + middle.size() + back.size());
    char *to = out.data() + size;
    to += front.copy(to, front.size());
    to += middle.copy(to, middle.size());
    back.copy(to, back.size());
}

class jsonAppender_t {
public:
    explicit jsonAppender_t(std::string &out) : out_(out), start_(out.size()) {}

    /// A value: '{' or '[' opens one.
    void open(char bracket) {
        next();
        out_ += bracket;
    }
    void close(char bracket) { out_ += bracket; }

    /// The name of a member, whose value comes next. It needs no escapes.
    void name(std::string_view plain) { appendPieces(out_, needsComma() ? ",\"" : "\"", plain, "\":"); }
    /// The same for a name of any bytes.
    void anyName(std::string_view bytes) {
        next();
        appendJsonString(out_, bytes);
        out_ += ':';
    }

    template <class Value>
    void value(const Value &value) {
        next();
        if constexpr (std::is_same_v<Value, bool>)
            out_ += value ? "true" : "false";
        else if constexpr (std::is_same_v<Value, place_t>)
            place(value);
        else if constexpr (std::is_arithmetic_v<Value>)
            number(value);
        else
            appendJsonString(out_, value);
    }
    /// A value that is JSON already.
    void ready(std::string_view json) {
        next();
        out_ += json;
    }

    template <class Value>
    void member(std::string_view plainName, const Value &its) {
        name(plainName);
        value(its);
    }
    void memberIfAny(std::string_view plainName, std::string_view text) {
        if (!text.empty())
            member(plainName, text);
    }
    /// An array: `write` appends each of the values.
    template <class List, class Write>
    void list(std::string_view plainName, const List &values, Write write) {
        name(plainName);
        open('[');
        for (const auto &one : values)
            write(one);
        close(']');
    }
    /// An object, whose members `write` appends.
    template <class Write>
    void object(std::string_view plainName, Write write) {
        name(plainName);
        open('{');
        write();
        close('}');
    }

private:
    // Strings end with their quotes, so a bracket or a colon at the end is one of these pieces.
    bool needsComma() const {
        return out_.size() > start_ && out_.back() != '{' && out_.back() != '[' && out_.back() != ':';
    }
    void next() {
        if (needsComma())
            out_ += ',';
    }
    template <class Number>
    void number(Number value) {
        char digits[32];
        out_.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    }
    void place(place_t place) {
        out_ += '{';
        member("start", place.start);
        member("end", place.end);
        out_ += '}';
    }

    std::string &out_;
    const std::size_t start_;
};

} // namespace vek::inspect
