// Single values got and set, messages sealed from what people edit, and their differences.
#include "vek/inspect/change/change.hpp"
#include "tests/support/messages.hpp"
#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/change/mending.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/words.hpp"

#include <gtest/gtest.h>

#include <algorithm>

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

// Damages of one pair that have one meaning: the pair's text becomes another. Those that can't be done to it leave it.
std::string damaged(std::size_t kind, const tree_t &tree, const node_t &node) {
    std::string key(tree.key(node)), value(tree.value(node)), end(tree.text().substr(node.value.end, 1));
    const bool isReal = node.valueKind() == fieldKind_t::float64, isNumeric = isNumber(node.valueKind());
    switch (kind) {
    case 0:
        return key + "==" + value + end;
    case 1:
        return key + "=" + value + (node.isBody ? end : ";;");
    case 2:
        return ";" + key + "=" + value + end;
    case 3:
        return "\r\n> " + key + "=" + value + end;
    case 4:
        return key + " \xC2\xA0=" + value + end;
    case 5:
        std::transform(key.begin(), key.end(), key.begin(), [](char c) { return asciiToLower(c); });
        return key + "=" + value + end;
    case 6:
        std::swap(key[key.size() - 1], key[key.size() - 2]);
        return key + "=" + value + end;
    case 7:
        if (isReal && value.find('.') != std::string::npos)
            value[value.find('.')] = ',';
        return key + "=" + value + end;
    case 8:
        return key + (isNumeric ? " : " : "=") + value + end;
    case 9:
        return key + "=" + (isNumeric && value[0] == '-' ? "\xE2\x88\x92" + value.substr(1) : value) + end;
    case 10:
        return key + "=" + (isNumeric ? "\"" + value + "\"" : value) + end;
    default:
        return "\"" + key + "\"=" + value + end;
    }
}
constexpr std::size_t damages = 12;

TEST(Mending, RestoresWhatIsCertainAndNothingElse) {
    std::size_t restored = 0, asked = 0;
    const auto tryOne = [&](const std::string &text, const std::string &good, const std::string &what, bool isSure) {
        const mending_t mending = mended(text);
        ++(mending.text == good ? restored : asked);
        if (isSure || mending.isSound()) {
            EXPECT_EQ(mending.text, good) << what << ": " << text;
        }
    };
    for (const sample_t &sample : samples()) {
        const std::string &good = sample.text;
        const tree_t tree(good);
        if (isClean(tree) && !good.empty()) {
            const std::size_t length = tree.envelope().length.place.start;
            for (const std::string &text :
                 {good.substr(1), good.substr(2), "@" + good, good.substr(0, good.size() - 1), good + "!",
                  good.substr(0, good.size() - 2), good.substr(0, good.size() - 2) + "}",
                  "\xEF\xBB\xBF" + good + "\r\n", "> " + good, "'" + good + "'",
                  std::string(good).replace(length, 1, "x"), std::string(good).insert(length, "1"),
                  std::string(good).erase(7, tree.envelope().length.place.end - 7)})
                tryOne(text, good, sample.file, true);
        }
        std::size_t count = 0;
        for (const node_t &node : tree.nodes())
            for (std::size_t kind = 0; kind < damages && node.hasKey && node.isCanonical && count < 200; ++kind) {
                const std::string pair = damaged(kind, tree, node);
                const std::string body = joined({good.substr(0, node.whole.start), pair, good.substr(node.whole.end)});
                const bool isOnly = kind == 8 && tree.nodes()[node.parent].childCount == 1; // no "=" is left
                const bool isSure = kind != 6 && !isOnly && isClean(tree);
                tryOne(
                    message(sample.id, body.substr(tree.body().value.start, body.size() - tree.body().value.start - 2)),
                    message(sample.id, sample.body), std::to_string(kind), isSure);
                ++count;
            }
    }
    EXPECT_GT(restored, asked * 50) << restored << " " << asked;
    const std::string good = message(4112, "{FOCUS_VALUE=1.000000;}"); // two steps, of 1,000 and the text each
    const std::string bad = std::string(good).erase(0, 1).replace(good.find("VALUE"), 4, "VALEU");
    for (std::size_t budget = 0; budget < 5000; budget += 200)
        EXPECT_EQ(mended(bad, budget).text, budget < 2 * (1000 + good.size()) ? bad : good) << budget;
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
    for (const char *said : {"", "\"NUM_OF_MESSAGES\": \"\", "}) // a count that is left empty follows its list, too
        EXPECT_EQ(bodyOf(seal(joined({R"({"id": 4161, "deviceStatus_t": {)", said, R"("MSGS": ["a"]}})"})).text),
                  "{NUM_OF_MESSAGES=1;MSGS={a,};}");
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
