// string_t and subString_t: the cases with a rule of their own.

#include "tests/foundation/reports.hpp"
#include "vek/vek_std/std_sys/private/vek_spareBodies.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <iomanip>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <unordered_set>
#include <utility>
#ifdef __GLIBC__
#    include <malloc.h>
#endif

namespace {

using vek::string_t;
using vek::subString_t;

constexpr const char *null = nullptr;

std::string textOf(const subString_t &view) {
    return view.isNull() ? "null view" : string_t(view).c_str();
}

TEST(string, constructorsTakeWhatTheyAreGiven) {
    EXPECT_EQ(string_t(null).length() + string_t(null, 5).length() + string_t("", 5).length(), 0U);
    EXPECT_STREQ(string_t("abc", 2).c_str(), "ab");
    EXPECT_STREQ(string_t("abc", 10).c_str(), "abc");
    const auto unterminated = std::make_unique<char[]>(100); // nothing behind the limit is read
    std::memset(unterminated.get(), 'x', 100);
    EXPECT_EQ(string_t(unterminated.get(), 100).length(), 100U);
}

TEST(string, emptyStringsShareAConstantBody) {
    const string_t a, b(""), c("x", 0);
    string_t d = a + null;
    EXPECT_TRUE(a.c_str() == b.c_str() && a.c_str() == c.c_str());
    d.toUpper();
    EXPECT_NE(reported([&] { d[0] = 'x'; }), "");
    vek::stringRep_t::destroy(vek::stringRep_t::empty());
    EXPECT_EQ(a.capacity(), 63U);
    EXPECT_STREQ(a.c_str(), "");
}

TEST(string, constantBodyOfAnotherModuleIsLeftAlone) {
    // A program that links this class for itself has that body at another address, with the same mark.
    const vek::stringRep_t foreign = vek::stringRep_t::constantEmpty;
    const vek::stringRep_t *handle = &foreign;
    string_t theirs;
    std::memcpy(static_cast<void *>(&theirs), &handle, sizeof handle);
    string_t copy = theirs;
    EXPECT_STREQ(copy.append("ours").c_str(), "ours");
    theirs = copy;
    const void *const untouched = &vek::stringRep_t::constantEmpty;
    EXPECT_EQ(0, std::memcmp(static_cast<const void *>(&foreign), untouched, sizeof foreign));
}

TEST(string, nullComparesAsEmpty) {
    EXPECT_TRUE(string_t() == null && !(string_t("a") == null) && !(string_t() < null));
    EXPECT_TRUE(string_t("abc")(1, 0) == null && !(string_t("abc")(1, 1) == null));
    EXPECT_STREQ((null + string_t("a") + null).c_str(), "a");
    EXPECT_EQ(string_t("a").first(null), string_t::notFound);
}

TEST(string, standardTextsAreTakenWhole) {
    using namespace std::string_view_literals;
    string_t text = std::string("a\0b"sv);
    EXPECT_EQ(text, "a\0b"sv);
    EXPECT_EQ(std::string(text).size(), 3U);
    EXPECT_TRUE(text == "a" && text != "a"sv && text != string_t("a") && text > "a"sv && "a\0c"sv > text);
    text = "c"sv;
    EXPECT_EQ(text.append("d"sv) + std::string("e"), "cde");
    EXPECT_EQ(string_t(std::string_view()).append(std::string_view()), "");
    const std::set<string_t> ordered{"b", "a\0b"sv, "a", "b"};
    const std::unordered_set<string_t> hashed(ordered.begin(), ordered.end());
    EXPECT_EQ(ordered.size(), 3U);
    EXPECT_TRUE(hashed == std::unordered_set<string_t>({"a\0b"sv, "a", "b"}));
    std::ostringstream stream;
    stream << std::setw(4) << text << std::left << std::setw(4) << std::setfill('.') << text << text(0, 1);
    EXPECT_EQ(stream.str(), "  cdcd..c");
}

TEST(string, numbersStandForWhatTheyName) {
    string_t text(" ab ");
    EXPECT_EQ(textOf(text.strip(0)) + textOf(text.strip(1)) + textOf(text.strip(7)), "ab  abab");
    EXPECT_EQ(text.first(0), string_t::notFound);
    EXPECT_EQ(text.first(U'b'), 2U);
    text[1] = '\0';
    EXPECT_EQ(text.first(0), 1U);
}

TEST(string, indexStoresThePatternLength) {
    using row_t = std::tuple<const char *, std::uint32_t, std::uint32_t, std::uint32_t>;
    for (const auto &[pattern, start, position, expected] :
         {row_t{"ijk", 8, 8, 3}, {"ijk", 10, ~0U, 3}, {"", 4, 4, 0}, {null, 11, 11, 0}, {"", 12, ~0U, 0}}) {
        string_t text("abcdefghijk");
        std::size_t length = 99;
        EXPECT_EQ(static_cast<std::uint32_t>(text.index(pattern, start, length)), position);
        EXPECT_EQ(length, expected);
        EXPECT_EQ(text.subString(pattern, start).start(), static_cast<std::int32_t>(position));
    }
}

TEST(string, stripViewsWhatIsLeft) {
    const char *const cases[][4] = {{"  ab ", "ab ", "  ab", "ab"},
                                    {"   ", "null view", "null view", "null view"},
                                    {"", "null view", "null view", "null view"}};
    for (const auto &[text, leading, trailing, both] : cases) {
        string_t stripped(text);
        EXPECT_EQ(textOf(stripped.strip(string_t::leading_e)), leading);
        EXPECT_EQ(textOf(stripped.strip(string_t::trailing_e)), trailing);
        EXPECT_EQ(textOf(stripped.strip(string_t::both_e)), both);
    }
}

TEST(string, badIndexIsReportedAndGivesTheFirstCharacter) {
    const std::string report = "\nstring_t : VEK_BAD_INDEX ; called from vek_std/std_sys/vek_string,";
    string_t text("abc"), copy = text;
    subString_t view = text(1, 2);
    for (const std::int32_t i : {-1, 3}) {
        const char *refersTo = nullptr;
        EXPECT_EQ(reported([&] { refersTo = &text[i]; }), report + "743\n");
        EXPECT_EQ(refersTo, text.c_str());
        EXPECT_EQ(reported([&] { refersTo = &view[i]; }), report + "753\n");
        EXPECT_EQ(refersTo, text.c_str() + 1);
    }
    EXPECT_EQ(reported([&] { text(9, 9)[0] = 'x'; }), report + "753\n");
    EXPECT_EQ(reported([&] { EXPECT_EQ(view[1] = 'x', text[2]); }), "");
    EXPECT_EQ(reported([&] { EXPECT_EQ(text[0] + view[0], 'a' + 'b'); }), "");
    EXPECT_EQ(vek::setSkipIndexCheck(1), 0);
    EXPECT_EQ(reported([&] { EXPECT_EQ(view[-1] + text[99], 'a'); }), "");
    EXPECT_EQ(vek::setSkipIndexCheck(0), 1);
    EXPECT_STREQ(text.c_str(), "abx");
    EXPECT_STREQ(copy.c_str(), "abc");
}

TEST(string, destroyingAReferencedBodyIsReported) {
    EXPECT_EQ(reported([] { vek::stringRep_t::destroy(vek::stringRep_t::make("text", 4)); }),
              "\n : DESTRUCT_NON_ZERO_REF ; called from vek_std/std_sys/vek_string,89\n");
    const auto hook = std::exchange(vek::stringNonZeroReferenceHook, nullptr);
    EXPECT_EQ(reported([] { vek::stringRep_t::destroy(vek::stringRep_t::make(100)); }), "");
    vek::stringNonZeroReferenceHook = hook;
}

TEST(subString, nullViewChangesNothing) {
    string_t text("twelve chars");
    EXPECT_TRUE(text(-1, 0).isNull() && text(13, 0).isNull() && text(1, string_t::notFound).isNull());
    EXPECT_FALSE(text(12, 0).isNull());
    subString_t outside = text(5, 10);
    EXPECT_EQ(outside.start(), -1);
    EXPECT_EQ(outside.extent(), 0U);
    outside = "changed";
    text(5, 10) = text(0, 1);
    text(1, 0) = outside;
    outside.toUpper();
    EXPECT_STREQ(text.c_str(), "twelve chars");
    EXPECT_EQ(string_t(outside).length(), 0U);
    EXPECT_TRUE(outside == "" && !(outside == "t"));
}

TEST(subString, staysSafeWhenItsOwnerChanges) {
    string_t text("key=value;");
    subString_t view = text(4, 5);
    view = text; // its own owner
    EXPECT_STREQ(text.c_str(), "key=key=value;;");
    text = "key=v";
    EXPECT_EQ(textOf(view), "v");
    text = "ke";
    EXPECT_EQ(textOf(view), "");
    EXPECT_TRUE(view == "");
    view.toUpper();
    EXPECT_NE(reported([&] { view[0] = 'x'; }), "");
    view = "y";
    EXPECT_STREQ(text.c_str(), "key");
    text(1, 2) = null;
    EXPECT_STREQ(text.c_str(), "k");
}

TEST(subString, withCaseTheRestOfTheOwnerIsCompared) {
    string_t text("ABC");
    EXPECT_TRUE(!(text(0, 2) == "AB") && text(1, 1) == "BC");
    vek::setCaseSensitive(0);
    EXPECT_TRUE(text(0, 2) == "ab" && text(0, 2) == "abX" && text(0, 0) == "anything" && !(text(0, 3) == "ab"));
    vek::setCaseSensitive(1);
}

std::istream &readField(std::istream &stream, string_t &text) {
    return text.readToDelim(stream, ';');
}
std::istream &readToken(std::istream &stream, string_t &text) {
    return text.readToken(stream);
}
std::istream &readLine(std::istream &stream, string_t &text) {
    return text.readLine(stream);
}

TEST(stringStream, readsUntilTheStreamEnds) {
    const struct {
        const char *input;
        std::istream &(*read)(std::istream &, string_t &);
        const char *texts; // one after another, each in brackets, with a "$" when the stream has ended with it
        int skipsWhitespace;
    } cases[] = {{"a;;b c;last", readField, "[a][][b c][last$]", 1},
                 {"\xFF;\xE4;", readField, "[\xFF][\xE4]", 1},
                 {" one\t\ntwo  three", readToken, "[one][two][three$]", 1},
                 {"one \n", readToken, "[one]", 1},
                 {" \n one two \n\n\tthree\n ", readLine, "[one two ][three]", 1},
                 {" one\n\ntwo", readLine, "[ one][][two$]", 0}};
    for (const auto &one : cases) {
        SCOPED_TRACE(one.texts);
        std::istringstream stream(one.input);
        string_t text("old"), copy = text;
        std::string texts;
        vek::setSkipWhitespace(one.skipsWhitespace);
        while (one.read(stream, text))
            texts.append("[").append(text.c_str()).append(stream.eof() ? "$]" : "]");
        vek::setSkipWhitespace(1);
        EXPECT_EQ(texts, one.texts);
        EXPECT_EQ(text.length(), 0U);
        EXPECT_FALSE(one.read(stream, copy)); // a failed stream changes nothing
        EXPECT_STREQ(copy.c_str(), "old");
    }
}

TEST(stringStream, takesItsDelimiterAndNoMore) {
    std::istringstream stream("one two; x");
    string_t text;
    stream.width(2); // limits no word, and goes with it
    EXPECT_EQ(readToken(stream, text).peek(), ' ');
    EXPECT_EQ(text, "one");
    EXPECT_EQ(stream.width(), 0);
    EXPECT_EQ(readField(stream, text).peek(), ' ');
    EXPECT_STREQ(text.c_str(), " two");
    stream.unsetf(std::ios_base::skipws);
    EXPECT_FALSE(readToken(stream, text));
}

/// Has one text and throws when it is asked for more.
class throwingBuffer_t : public std::streambuf {
public:
    explicit throwingBuffer_t(std::string text) : text_(std::move(text)) {
        setg(text_.data(), text_.data(), text_.data() + text_.size());
    }

protected:
    int underflow() override { throw std::runtime_error("line lost"); }

private:
    std::string text_;
};

TEST(stringStream, aBufferThatThrowsMakesTheStreamBad) {
    for (const auto read : {readField, readToken, readLine})
        for (const std::string available : {"", "part"}) {
            throwingBuffer_t buffers[] = {throwingBuffer_t(available), throwingBuffer_t(available),
                                          throwingBuffer_t(available)};
            std::istream expected(&buffers[0]), stream(&buffers[1]), throwing(&buffers[2]);
            std::string standard;
            std::getline(expected, standard);
            string_t text("old");
            read(stream, text);
            EXPECT_EQ(text, standard);
            EXPECT_EQ(stream.rdstate(), expected.rdstate());
            throwing.exceptions(std::ios_base::badbit | std::ios_base::failbit);
            EXPECT_THROW(read(throwing, text), std::runtime_error);
            EXPECT_TRUE(throwing.bad());
        }
}

#ifdef __GLIBC__
// A host may release a structure that it made itself, in a block that has no more room than it says.
TEST(structure, spareHasRoomForItsSize) {
    for (std::size_t size = 4; size < 4400; size += 4) {
        vek::giveStructure(::operator new(size), size);
        for (const std::size_t larger : {size + 4, size + 8, size + 508}) {
            void *const block = vek::takeStructure(larger);
            EXPECT_GE(malloc_usable_size(block), larger);
            vek::giveStructure(block, larger);
        }
    }
}
#endif

} // namespace
