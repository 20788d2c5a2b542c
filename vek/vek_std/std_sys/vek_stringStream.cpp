// Reading a string_t from an input stream, and writing one. Apart from the rest of the class, which needs no streams.
#include "vek/vek_std/std_sys/vek_string.hpp"

#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <exception>
#include <istream>
#include <ostream>

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

    // The state is set last: it throws where the stream's owner asked for exceptions, and what a buffer threw is thrown
    // on where badbit was among those.
    void finish() {
        if (text_.body != nullptr)
            text_.keepIf(text_.body->shrinkToFit());
        if (!isFilled_)
            state_ |= std::ios_base::failbit;
        const bool isThrownOn = thrown_ != nullptr && (stream_.exceptions() & std::ios_base::badbit) != 0;
        try {
            stream_.setstate(state_);
        } catch (const std::ios_base::failure &) {
            if (!isThrownOn)
                throw;
        }
        if (isThrownOn)
            std::rethrow_exception(thrown_);
    }

private:
    int next() {
        const int c = fromBuffer(&std::streambuf::sgetc);
        if (c == traits::eof() && thrown_ == nullptr)
            state_ |= std::ios_base::eofbit;
        return c;
    }

    void skip() { fromBuffer(&std::streambuf::sbumpc); }

    // A buffer that throws ends the reading, as the end of the stream does.
    int fromBuffer(std::streambuf::int_type (std::streambuf::*operation)()) {
        if (thrown_ != nullptr)
            return traits::eof();
        try {
            return (stream_.rdbuf()->*operation)();
        } catch (...) {
            thrown_ = std::current_exception();
            state_ |= std::ios_base::badbit;
            return traits::eof();
        }
    }

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
    std::ios_base::iostate state_ = std::ios_base::goodbit; // what the reading ends with
    std::exception_ptr thrown_;
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

std::istream &string_t::readToDelim(std::istream &stream, char delim) {
    return reading(stream, *this, [delim](stringReader_t &reader) { reader.takeToDelim(delim); });
}

std::istream &string_t::readToken(std::istream &stream) {
    return reading(stream, *this, [&stream](stringReader_t &reader) {
        if ((stream.flags() & std::ios_base::skipws) != 0)
            reader.skipWhitespace();
        reader.takeWord();
        stream.width(0);
    });
}

std::istream &string_t::readLine(std::istream &stream) {
    return reading(stream, *this, [](stringReader_t &reader) {
        if (stringSettings.skipWhitespace != 0)
            reader.skipWhitespace();
        reader.takeToDelim('\n');
    });
}

std::ostream &operator<<(std::ostream &stream, const string_t &text) {
    return stream << std::string_view(text);
}

} // namespace vek
