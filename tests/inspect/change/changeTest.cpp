// Single values got and set, messages sealed from what people edit, and their differences.
#include "vek/inspect/change/change.hpp"
#include "tests/support/messages.hpp"
#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/message/written.hpp"

#include <gtest/gtest.h>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;

TEST(Change, SetsEveryValueOfTheSamplesToItself) {
    for (const sample_t &sample : samples()) {
        const tree_t tree(sample.text);
        for (const leaf_t &leaf : leaves(tree)) {
            if (leaf.node->index > 3)
                continue;
            const std::optional<std::string> value = valueAt(tree, leaf.path);
            ASSERT_TRUE(value) << leaf.path;
            const change_t change = changed(tree, leaf.path, *value);
            EXPECT_EQ(change.text, sample.text) << sample.file << " " << leaf.path << ": " << change.error;
        }
    }
}

TEST(Change, KeepsEveryOtherByte) {
    struct case_t {
        std::string body, path, value, after, error;
    };
    const case_t cases[] = {
        {"{MEDIA_NAME=a;FOCUS_VALUE=1024.500000;}", "FOCUS_VALUE", "3.5", "{MEDIA_NAME=a;FOCUS_VALUE=3.500000;}", ""},
        {"{FOCUS_VALUE=1;;MEDIA_NAME=\"a\";}", "MEDIA_NAME", "x;y", "{FOCUS_VALUE=1;;MEDIA_NAME=x\2y;}", ""},
        {"{FOCUS_VALUE=1.000000;}", "MEDIA_NAME", "new", "{MEDIA_NAME=new;FOCUS_VALUE=1.000000;}", ""},
        {"{\"MEDIA_NAME\"=a;}", "MEDIA_NAME", "b", "{\"MEDIA_NAME\"=b;}", ""},
        {"", "FOCUS_VALUE", "2", "{FOCUS_VALUE=2.000000;}", ""},
        {"{MEDIA_NAME=a;}", "FOCUS_VALUE", "3,5", "", "FOCUS_VALUE: \",5\" stands behind the number 3"},
        {"{MEDIA_NAME=a;}", "FOCUS_VALEU", "3", "", "the message has no FOCUS_VALEU; did you mean FOCUS_VALUE?"},
    };
    for (const case_t &one : cases) {
        const std::string text = message(4112, one.body);
        const change_t change = changed(tree_t(text), one.path, one.value);
        EXPECT_EQ(change.error, one.error) << one.body;
        EXPECT_EQ(change.text, one.error.empty() ? message(4112, one.after) : "") << one.body;
        EXPECT_EQ(change.newLength, change.isDone() ? change.text.size() + 1 : 0);
    }
    const std::string text = message(4112, "{FOCUS_VALUE=1.000000;}");
    EXPECT_EQ(changed(tree_t(text), "@seq", "100000").text, message(4112, "{FOCUS_VALUE=1.000000;}", 7, 100000));
    EXPECT_EQ(changed(tree_t(text), "@id", "-12345678", true).text, message(-12345678, "{FOCUS_VALUE=1.000000;}"));
}

TEST(Change, RefusesWhatWouldNotBeReadAsItWasMeant) {
    const std::string focus = message(4112, "{MEDIA_NAME=a;}");
    const struct {
        std::string text, path, value, error;
    } cases[] = {
        {focus, "MEDIA_NAME", "\"x", "double quote"},
        {focus, "@seq", "", "empty"},
        {focus, "@id", "4111", "the keys of the body are those of 4112"},
        {focus, "@seq", "x", "number"},
        {focus, "@length", "40", "the length follows from the text"},
        {"@@4112 1 7 {}!!", "@seq", "1", "seal it first"},
        {focus.substr(0, focus.size() - 2), "MEDIA_NAME", "b", "the message is damaged: seal it first"},
        {message(4096, "{DEVICE_INFO={DEVICE_NAME=a;};}"), "DEVICE_INFO", "DEVICE_NAME=b;", "a group stands in braces"},
        {message(4194, "{JOB_NAME={97,0,};}"), "JOB_NAME", "\xFF", "the text is no UTF-8"},
    };
    for (const auto &one : cases) {
        const change_t change = changed(tree_t(one.text), one.path, one.value);
        EXPECT_TRUE(!change.isDone() && change.text.empty());
        EXPECT_NE(change.error.find(one.error), std::string::npos) << one.path << ": " << change.error;
    }
    const std::string info = message(4096, "{DEVICE_INFO={DEVICE_NAME=b;};}");
    EXPECT_EQ(changed(tree_t(cases[7].text), "DEVICE_INFO", "{DEVICE_NAME=b;}").text, info);
}

TEST(Seal, MakesAValidMessageOfWhatPeopleEdit) {
    const std::string good = "@@4112    62 7 41 {MEDIA_NAME=Violet;FOCUS_VALUE=3.250000;}!!";
    const std::string edits[] = {
        "\n " + good + "\n",
        "\xEF\xBB\xBF" + good + "\r\n",
        "@@4112 9 7 41 {MEDIA_NAME=Violet;FOCUS_VALUE=3.250000;}",
        std::string("@@4112 62 7 41\n  {MEDIA_NAME=Violet;\r\n   FOCUS_VALUE=3.250000;\n}!!\n"),
        std::string(
            "# mine\nfocusValue_t 4112, echo 7, sequence 41\n  MEDIA_NAME = Violet\n  FOCUS_VALUE = 3.250000\n"),
        std::string("@id = 4112\n@echo = 7\n@seq = 41\nMEDIA_NAME = Violet  # of 3\nFOCUS_VALUE = 3.250000\n"),
        std::string("{\"id\": 4112, \"echo\": 7, \"seq\": 41,\n \"focusValue_t\": {\"MEDIA_NAME\": \"Violet\", "
                    "\"FOCUS_VALUE\": 3.250000}}")};
    for (const std::string &edited : edits) {
        const formResult_t sealedText = seal(edited);
        EXPECT_EQ(sealedText.text, good) << edited << ": " << sealedText.error;
    }
    sealOptions_t options;
    options.id = 4112;
    options.echoTag = 7;
    options.sequenceNumber = 41;
    EXPECT_EQ(seal("{MEDIA_NAME=Violet;\n FOCUS_\r\n  VALUE=3.250000;}", options).text, good);
    for (const char *value : {"Violet\n  light", "\"Violet;\n  light\"", "Violet \r\n\nlight"})
        EXPECT_EQ(bodyOf(seal(std::string("{MEDIA_NAME=\n ") + value + "\n;}", options).text),
                  std::string("{MEDIA_NAME=") + value + ";}");
    for (const char *bad :
         {"", "hello", "{\"id\":4112}", "[1]", "{\"id\":4112,\"body\":{", "focusValue_t 4112\n  A = [1, 2\n"})
        EXPECT_FALSE(seal(bad).isRead()) << bad;
}

TEST(Diff, ComparesFieldByField) {
    const std::string left = message(4112, "{MEDIA_NAME=a;FOCUS_VALUE=1.000000;}");
    const std::string right = message(4112, "{FOCUS_VALUE=1.04;OTHER=2;MEDIA_NAME=a;}", 8);
    const auto words = [&](const diffOptions_t &options) {
        std::string all;
        for (const difference_t &one : differences(tree_t(left), tree_t(right), options))
            all += one.path + ":" + one.left + "|" + one.right + " ";
        return all;
    };
    EXPECT_EQ(words({}), "FOCUS_VALUE:1.000000|1.04 OTHER:|2 ");
    EXPECT_EQ(words({0.1, {"OTHER"}, true}), "@echo:7|8 ");
}

TEST(NewMessage, IsAsTheLibraryWritesDefaults) {
    for (const std::int32_t id : bodyIds())
        EXPECT_EQ(bodyOf(*newMessage(id)), writtenBody(id, defaultsOf(id).address)) << id;
    EXPECT_FALSE(newMessage(4190));
}

} // namespace
