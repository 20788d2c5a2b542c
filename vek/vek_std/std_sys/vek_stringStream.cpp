#include "vek/vek_std/std_sys/vek_stringStream.hpp"

#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <istream>

namespace vek {

namespace {

using traits = std::char_traits<char>;

constexpr std::uint32_t readingRoom = 64; // what a full buffer grows by, before rounding

} // namespace

// One reading: empties the text, takes characters one by one, and shrinks the buffer at the end. Without memory the
// characters are taken and lost, so that the stream stands behind the word or line whether there was memory or not. The
// buffer is written to directly, since its spare room while reading is more slack than an append may leave.
class stringReader_t {
public:
    stringReader_t(std::istream &source, string_t &target) : stream_(source), text_(target), ready_(source, true) {
        if (text_.makePrivate())
            setLength(0);
    }

    bool isReady() const { return static_cast<bool>(ready_); }

    void skipWhitespace() {
        while (isSpace(traits::to_char_type(next())))
            skip();
    }

    void takeWord() {
        for (int c = next(); c != traits::eof() && !isSpace(traits::to_char_type(c)); c = next())
            take(traits::to_char_type(c));
    }

    void takeToDelim(char delim) {
        for (int c = next(); c != traits::eof(); c = next()) {
            if (c == traits::to_int_type(delim)) {
                skip();
                isFilled_ = true;
                return;
            }
            take(traits::to_char_type(c));
        }
    }

    // The state is set last: it throws where the stream's owner asked for exceptions.
    void finish() {
        if (text_.body != nullptr)
            text_.keepIf(text_.body->shrinkToFit());
        const auto ended = hasEnded_ ? std::ios_base::eofbit : std::ios_base::goodbit;
        stream_.setstate(isFilled_ ? ended : ended | std::ios_base::failbit);
    }

private:
    int next() {
        const int c = stream_.rdbuf()->sgetc();
        hasEnded_ = c == traits::eof();
        return c;
    }

    void skip() { stream_.rdbuf()->sbumpc(); }

    void take(char c) {
        if (text_.body != nullptr && text_.length() == text_.capacity())
            text_.keepIf(text_.body->setCapacity(stringRep_t::roundedCapacity(text_.length() + readingRoom)));
        if (text_.body != nullptr) {
            text_.body->data[text_.length()] = c;
            setLength(text_.body->length + 1);
        }
        skip();
        isFilled_ = true;
    }

    void setLength(std::uint32_t length) {
        text_.body->length = length;
        text_.body->data[length] = '\0';
    }

    std::istream &stream_;
    string_t &text_;
    std::istream::sentry ready_;
    bool hasEnded_ = false;
    bool isFilled_ = false; // something was read, if only the delimiter
};

namespace {

// Runs one reading on a stream that has not failed.
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
        if ((stream.flags() & std::ios_base::skipws) != 0)
            reader.skipWhitespace();
        reader.takeWord();
    });
}

std::istream &readLine(std::istream &stream, string_t &text) {
    return reading(stream, text, [](stringReader_t &reader) {
        if (stringSettings.skipWhitespace != 0)
            reader.skipWhitespace();
        reader.takeToDelim('\n');
    });
}

} // namespace vek
