#include "vek/vek_std/std_sys/vek_stringStream.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <istream>

namespace vek {
namespace {

using traits = std::char_traits<char>;

constexpr std::uint32_t readingRoom = 64; // what a full buffer grows by, before rounding

} // namespace

/// One reading: empties the text, takes characters one by one, and shrinks the buffer at the end. Without memory the
/// characters are taken and lost.
class stringReader_t {
public:
    stringReader_t(std::istream &source, string_t &target) : stream(source), text(target), ready(source, true) {
        if (text.makePrivate())
            setLength(0);
    }

    bool isReady() const { return static_cast<bool>(ready); }

    void skipWhitespace() {
        while (isAsciiSpace(traits::to_char_type(next())))
            skip();
    }

    void takeWord() {
        for (int c = next(); c != traits::eof() && !isAsciiSpace(traits::to_char_type(c)); c = next())
            take(traits::to_char_type(c));
    }

    void takeToDelim(char delim) {
        for (int c = next(); c != traits::eof(); c = next()) {
            if (c == traits::to_int_type(delim)) {
                skip();
                isFilled = true;
                return;
            }
            take(traits::to_char_type(c));
        }
    }

    void finish() {
        if (text.body)
            text.keepIf(text.body->shrinkToFit());
        const auto ended = hasEnded ? std::ios_base::eofbit : std::ios_base::goodbit;
        stream.setstate(isFilled ? ended : ended | std::ios_base::failbit);
    }

private:
    int next() {
        const int c = stream.rdbuf()->sgetc();
        hasEnded = c == traits::eof();
        return c;
    }

    void skip() { stream.rdbuf()->sbumpc(); }

    void take(char c) {
        if (text.body && text.length() == text.capacity())
            text.keepIf(text.body->setCapacity(stringRep_t::roundedCapacity(text.length() + readingRoom)));
        if (text.body) {
            text.body->data[text.length()] = c;
            setLength(text.body->length + 1);
        }
        skip();
        isFilled = true;
    }

    void setLength(std::uint32_t length) {
        text.body->length = length;
        text.body->data[length] = '\0';
    }

    std::istream &stream;
    string_t &text;
    std::istream::sentry ready;
    bool hasEnded = false;
    bool isFilled = false; // something was read, if only the delimiter
};

namespace {

/// Runs one reading on a stream that has not failed.
template <class Taking>
std::istream &reading(std::istream &stream, string_t &text, Taking taking) {
    if (stream) {
        stringReader_t reader(stream, text);
        if (reader.isReady())
            taking(reader);
        reader.finish();
    }
    return stream;
}

} // namespace

std::istream &readToDelim(std::istream &stream, string_t &text, char delim) {
    return reading(stream, text, [delim](stringReader_t &reader) { reader.takeToDelim(delim); });
}

std::istream &readToken(std::istream &stream, string_t &text) {
    return reading(stream, text, [&stream](stringReader_t &reader) {
        if (stream.flags() & std::ios_base::skipws)
            reader.skipWhitespace();
        reader.takeWord();
    });
}

std::istream &readLine(std::istream &stream, string_t &text) {
    return reading(stream, text, [](stringReader_t &reader) {
        if (stringSettings.skipWhitespace)
            reader.skipWhitespace();
        reader.takeToDelim('\n');
    });
}

} // namespace vek
