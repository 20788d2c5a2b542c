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

TEST(Change, IsNotDoneInADamagedMessage) {
    const std::string focus = message(4112, "{MEDIA_NAME=a;}");
    for (const std::string &text : {std::string("@@4112 1 7 {}!!"), focus.substr(0, focus.size() - 2)}) {
        const change_t change = changed(tree_t(text), "MEDIA_NAME", "b");
        EXPECT_TRUE(change.text.empty() && change.error.find("seal it first") != std::string::npos) << change.error;
    }
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

TEST(NewMessage, IsAsTheLibraryWritesDefaults) {
    for (const std::int32_t id : bodyIds())
        EXPECT_EQ(bodyOf(*newMessage(id)), writtenBody(id, defaultsOf(id).address)) << id;
    EXPECT_FALSE(newMessage(4190));
}

} // namespace
