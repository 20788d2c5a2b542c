// string_t and subString_t: the cases with a rule of their own.

#include "reports.hpp"
#include "vek_std/std_sys/vek_stringStream.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

namespace {

using vek::string_t;
using vek::subString_t;

std::string textOf(const subString_t &view) {
    return view.isNull() ? "null view" : string_t(view).c_str();
}

TEST(string, constructorsTakeWhatTheyAreGiven) {
    EXPECT_EQ(string_t().capacity(), 63U);
    EXPECT_STREQ(string_t().c_str(), "");
    EXPECT_STREQ(string_t(3, 'x').c_str(), "xxx");
    const char *null = nullptr;
    EXPECT_EQ(string_t(null).length() + string_t(null, 5).length() + string_t("", 5).length(), 0U);
    EXPECT_STREQ(string_t("abc", 2).c_str(), "ab");
    EXPECT_STREQ(string_t("abc", 10).c_str(), "abc");
    // Nothing behind the limit is read, so no terminator is needed there.
    const auto unterminated = std::make_unique<char[]>(100);
    std::memset(unterminated.get(), 'x', 100);
    EXPECT_EQ(string_t(unterminated.get(), 100).length(), 100U);
}

TEST(string, emptyStringsShareAConstantBody) {
    const string_t a, b(""), c("x", 0);
    string_t d = a;
    EXPECT_EQ(a.c_str(), b.c_str());
    EXPECT_EQ(a.c_str(), c.c_str());
    EXPECT_EQ(d.append("").c_str(), a.c_str());
    d.toUpper();
    EXPECT_NE(reported([&] { d[0] = 'x'; }), ""); // writes into a body of its own
    EXPECT_EQ(a.length(), 0U);
    EXPECT_STREQ(a.c_str(), "");
    vek::stringRep_t::destroy(vek::stringRep_t::empty());
    EXPECT_EQ(string_t().c_str(), a.c_str());
}

TEST(string, bodyOfAnotherModuleIsLeftAlone) {
    // The constant body of a program that links this class for itself: the same mark at another address.
    const vek::stringRep_t foreign = vek::stringRep_t::constantEmpty;
    const vek::stringRep_t *handle = &foreign;
    string_t theirs;
    std::memcpy(static_cast<void *>(&theirs), &handle, sizeof handle);
    string_t copy = theirs;
    EXPECT_STREQ(copy.append("ours").c_str(), "ours");
    theirs = copy;
    EXPECT_EQ(0, std::memcmp(&foreign, &vek::stringRep_t::constantEmpty, sizeof foreign));
}

TEST(string, appendingGrowsInStepsOf64) {
    string_t text;
    EXPECT_EQ(text.append(nullptr, 63).capacity(), 63U);
    EXPECT_EQ(text.append("x").capacity(), 127U);
    EXPECT_EQ(text.append(nullptr, 64).capacity(), 191U);
    EXPECT_EQ(text.append(nullptr).length(), 128U);
}

TEST(string, replacingMostOfATextShrinksIt) {
    string_t text = string_t("head") + string_t(200, 'x') + "tail";
    EXPECT_EQ(text.capacity(), 255U);
    EXPECT_STREQ(text.replace(4, 200, "-", 1).c_str(), "head-tail");
    EXPECT_EQ(text.capacity(), 63U);
    EXPECT_STREQ(text.replace(4, 1, nullptr, 3).c_str(), "head   tail");
    EXPECT_STREQ(text.replace(99, 99, "!", 1).replace(0, 4, "", 0).c_str(), "   tail!");
}

TEST(string, changingACopyLeavesTheSource) {
    const string_t source("source");
    string_t copy = source;
    EXPECT_EQ(copy.c_str(), source.c_str());
    EXPECT_NE(source.deepCopy().c_str(), source.c_str());
    copy.prepend("re");
    EXPECT_STREQ(source.c_str(), "source");
    const string_t &self = copy;
    copy = self;
    EXPECT_STREQ(copy.c_str(), "resource");
}

TEST(string, nullIsTheEmptyText) {
    const char *null = nullptr;
    EXPECT_TRUE(string_t() == null);
    EXPECT_FALSE(string_t("a") == null);
    EXPECT_FALSE(string_t() < null);
    EXPECT_STREQ((string_t("a") + null).c_str(), "a");
    EXPECT_STREQ((null + string_t("a")).c_str(), "a");
    EXPECT_EQ((null + string_t()).c_str(), string_t().c_str());
    EXPECT_EQ(string_t("a").first(null), string_t::notFound);
    EXPECT_TRUE(string_t("abc")(1, 0) == null);
    EXPECT_FALSE(string_t("abc")(1, 1) == null);
}

TEST(string, bytesCompareUnsigned) {
    EXPECT_EQ(string_t("\xE4").compareTo("z"), 1);
    EXPECT_EQ(string_t("ab").compareTo("abc"), -1);
    vek::setCaseSensitive(0);
    EXPECT_EQ(string_t("\xE4").compareTo("z"), 1);
    EXPECT_EQ(string_t("aB").compareTo("Ab"), 0);
    vek::setCaseSensitive(1);
}

TEST(string, indexStoresThePatternLength) {
    std::size_t length = 99;
    EXPECT_EQ(string_t("abcdef").index("", 4, length), 4U);
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(string_t("abcdef").index(nullptr, 6, length), 6U);
    EXPECT_EQ(string_t("abcdef").index("", 7, length), string_t::notFound);
    EXPECT_EQ(string_t("abcdefghijk").index("ijk", 10, length), string_t::notFound);
    EXPECT_EQ(length, 3U);
    EXPECT_EQ(string_t("abcdefghijk").index("ijk", string_t::notFound, length), string_t::notFound);
    string_t text("key=value");
    EXPECT_EQ(textOf(text.subString("value")), "value");
    EXPECT_EQ(textOf(text.subString("value", 5)), "null view");
}

TEST(string, caseOfLettersOnly) {
    struct {
        const char *text, *lower, *upper;
        bool isLower, isUpper;
    } const cases[] = {{"", "", "", true, true},
                       {"1-\xE4", "1-\xE4", "1-\xE4", true, true},
                       {"aZ", "az", "AZ", false, false},
                       {"az@[`{", "az@[`{", "AZ@[`{", true, false},
                       {"AZ", "az", "AZ", false, true}};
    for (const auto &one : cases) {
        const string_t text(one.text);
        EXPECT_STREQ(toLower(text).c_str(), one.lower);
        EXPECT_STREQ(toUpper(text).c_str(), one.upper);
        EXPECT_EQ(isLower(text), one.isLower) << one.text;
        EXPECT_EQ(isUpper(text), one.isUpper) << one.text;
        EXPECT_STREQ(text.c_str(), one.text);
    }
}

TEST(string, stripViewsWhatIsLeft) {
    struct {
        const char *text, *leading, *trailing, *both;
    } const cases[] = {{"  ab ", "ab ", "  ab", "ab"},
                       {"a b", "a b", "a b", "a b"},
                       {"   ", "null view", "null view", "null view"},
                       {"", "null view", "null view", "null view"}};
    for (const auto &one : cases) {
        string_t text(one.text);
        EXPECT_EQ(textOf(text.strip(string_t::leading_e, ' ')), one.leading);
        EXPECT_EQ(textOf(text.strip(string_t::trailing_e, ' ')), one.trailing);
        EXPECT_EQ(textOf(text.strip(string_t::both_e, ' ')), one.both);
    }
}

TEST(string, badIndexIsReportedAndGivesTheFirstCharacter) {
    constexpr char report[] = "\nstring_t : VEK_BAD_INDEX ; called from vek_std/std_sys/vek_string,";
    string_t text("abc");
    subString_t view = text(1, 2);
    for (const std::int32_t i : {-1, 3}) {
        EXPECT_EQ(reported([&] { EXPECT_EQ(&text[i], text.c_str()); }), std::string(report) + "743\n");
        EXPECT_EQ(reported([&] { EXPECT_EQ(&view[i], text.c_str() + 1); }), std::string(report) + "753\n");
    }
    EXPECT_EQ(reported([&] { text(9, 9)[0]; }), std::string(report) + "753\n");
    EXPECT_EQ(reported([&] { EXPECT_EQ(text[2] = 'x', view[1]); }), "");

    EXPECT_EQ(vek::setSkipIndexCheck(1), 0);
    EXPECT_EQ(reported([&] { EXPECT_EQ(view[-1], 'a'); }), "");
    EXPECT_EQ(vek::setSkipIndexCheck(0), 1);

    string_t copy = text;
    copy[0] = 'X';
    EXPECT_STREQ(text.c_str(), "abx");
}

TEST(string, destroyingAReferencedBodyIsReported) {
    EXPECT_EQ(reported([] { vek::stringRep_t::destroy(vek::stringRep_t::make("text", 4)); }),
              "\n : DESTRUCT_NON_ZERO_REF ; called from vek_std/std_sys/vek_string,89\n");
    const auto hook = std::exchange(vek::stringNonZeroReferenceHook, nullptr);
    EXPECT_EQ(reported([] { vek::stringRep_t::destroy(vek::stringRep_t::make(100)); }), "");
    vek::stringNonZeroReferenceHook = hook;
}

TEST(subString, viewsOnlyWhatIsThere) {
    string_t text("twelve chars");
    subString_t outside = text(5, 10);
    EXPECT_EQ(outside.start(), -1);
    EXPECT_EQ(outside.extent(), 0U);
    EXPECT_TRUE(text(-1, 0).isNull() && text(13, 0).isNull() && text(1, string_t::notFound).isNull());
    EXPECT_FALSE(text(12, 0).isNull());
    outside = "changed";
    outside.toUpper();
    EXPECT_STREQ(text.c_str(), "twelve chars");
    EXPECT_EQ(string_t(outside).length(), 0U);
    EXPECT_TRUE(outside == "" && !(outside == "t"));
}

TEST(subString, changesOnlyTheViewedCharacters) {
    string_t text("key=value;");
    const string_t before = text;
    subString_t view = text(4, 5);
    view.toUpper();
    EXPECT_STREQ(text.c_str(), "key=VALUE;");
    view = string_t("longer value");
    EXPECT_STREQ(text.c_str(), "key=longer value;");
    EXPECT_EQ(view.extent(), 12U);
    view = text;
    EXPECT_STREQ(text.c_str(), "key=key=longer value;;");
    view = static_cast<const char *>(nullptr);
    EXPECT_STREQ(text.c_str(), "key=;");
    EXPECT_STREQ(before.c_str(), "key=value;");
}

TEST(subString, isSafeWhenItsOwnerGotShorter) {
    string_t text("a long text");
    subString_t view = text(7, 4);
    text = "long one";
    EXPECT_EQ(textOf(view), "e");
    text = "short";
    EXPECT_EQ(textOf(view), "");
    EXPECT_TRUE(view == "");
    view.toUpper();
    EXPECT_NE(reported([&] { EXPECT_EQ(view[0], '\0'); }), "");
    view = "er";
    EXPECT_STREQ(text.c_str(), "shorter");
}

TEST(subString, withCaseTheRestOfTheOwnerIsCompared) {
    string_t text("ABC");
    EXPECT_FALSE(text(0, 2) == "AB");
    EXPECT_TRUE(text(1, 1) == "BC");
    vek::setCaseSensitive(0);
    EXPECT_TRUE(text(0, 2) == "ab");
    EXPECT_TRUE(text(0, 2) == "abX"); // the limit ends the comparison
    EXPECT_TRUE(text(0, 0) == "anything");
    EXPECT_FALSE(text(0, 3) == "ab");
    vek::setCaseSensitive(1);
}

struct readingCase_t {
    const char *name, *input;
    std::istream &(*read)(std::istream &, string_t &);
    const char *texts; // one after another, each in brackets
};

std::istream &readField(std::istream &stream, string_t &text) {
    return readToDelim(stream, text, ';');
}
std::istream &readRawLine(std::istream &stream, string_t &text) {
    vek::setSkipWhitespace(0);
    readLine(stream, text);
    vek::setSkipWhitespace(1);
    return stream;
}

TEST(stringStream, readsUntilTheStreamEnds) {
    const readingCase_t cases[] = {{"field", "a;;b c;last", readField, "[a][][b c][last]"},
                                   {"field with end", "a;", readField, "[a]"},
                                   {"word", " one\t\ntwo  three", vek::readToken, "[one][two][three]"},
                                   {"word with end", "one \n", vek::readToken, "[one]"},
                                   {"line", " \n one two \n\n\tthree\n ", vek::readLine, "[one two ][three]"},
                                   {"raw line", " one\n\ntwo", readRawLine, "[ one][][two]"},
                                   {"bytes", "\xFF;\xE4", readField, "[\xFF][\xE4]"}};
    for (const readingCase_t &one : cases) {
        std::istringstream stream(one.input);
        string_t text("old");
        std::string texts;
        while (one.read(stream, text))
            texts += std::string("[") + text.c_str() + "]";
        EXPECT_EQ(texts, one.texts) << one.name;
        EXPECT_EQ(text.length(), 0U) << one.name;
        text = "kept";
        EXPECT_FALSE(one.read(stream, text)); // a failed stream changes nothing
        EXPECT_STREQ(text.c_str(), "kept") << one.name;
    }
}

TEST(stringStream, takesItsDelimiterAndNoMore) {
    std::istringstream stream("one two;x");
    string_t text, shared = text;
    EXPECT_STREQ(readToken(stream, text) ? text.c_str() : "", "one");
    EXPECT_EQ(stream.peek(), ' ');
    readToDelim(stream, text, ';');
    EXPECT_STREQ(text.c_str(), " two");
    EXPECT_EQ(stream.peek(), 'x');
    EXPECT_EQ(shared.length(), 0U);
    stream.unsetf(std::ios_base::skipws);
    stream.str(" x");
    EXPECT_FALSE(readToken(stream, text));
}

} // namespace
