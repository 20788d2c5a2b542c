// The table of hand edits: of each damaged text what check() says, what seal() makes of it and what the library reads;
// and how many of them help. With VEK_WRITE_TABLE set to a path, the table is written there as it is now: read what
// changed in it.
#include "tests/support/messages.hpp"
#include "tests/support/promises.hpp"
#include "vek/inspect/change/mending.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/words/words.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;

constexpr std::string_view indent = "    ";

struct row_t {
    std::string name, damage, outcome; ///< the name with its mark in front
};

std::string fromTable(std::string_view line) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i)
        if (line[i] != '\\') {
            text += line[i];
        } else if (line[++i] == 'x') {
            text += static_cast<char>(std::stoi(std::string(line.substr(i + 1, 2)), nullptr, 16));
            i += 2;
        } else {
            text += '\\';
        }
    return text;
}

std::string inTable(std::string_view text) {
    std::string line;
    for (const char c : text)
        if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) >= 0x7F) {
            constexpr std::string_view digits = "0123456789ABCDEF";
            line.append("\\x").append(1, digits[static_cast<unsigned char>(c) >> 4]);
            line.append(1, digits[static_cast<unsigned char>(c) & 15U]);
        } else {
            line.append(c == '\\' ? 2 : 1, c);
        }
    return line;
}

std::string textOf(std::string_view damage) {
    const std::string text = fromTable(damage);
    const std::size_t body = text.find(" {");
    const bool isBody = body == 4 && std::all_of(text.begin(), text.begin() + 4, [](char c) { return isDigit(c); });
    return isBody ? message(std::stoi(text), text.substr(body + 1)) : text;
}

std::string outcomeOf(const std::string &text) {
    std::string lines;
    const auto say = [&lines](std::string_view what, std::string_view words) {
        lines += joined({indent, what, words, "\n"});
    };
    for (const finding_t &finding : check(tree_t(text)))
        say("check  ", joined({std::to_string(finding.place.start), " ", severityName(finding.severity), ": ",
                               inTable(finding.inWords()), " [", findingName(finding.code), "]"}));
    if (lines.empty())
        say("check  ", "nothing");
    const formResult_t whole = seal(text);
    say("seal   ", !whole.isRead()      ? joined({"refuses: ", inTable(whole.error)})
                   : whole.text == text ? "changes nothing"
                                        : joined({changesOf(text, whole.text), ": ", inTable(whole.text)}));
    const mending_t mending = mended(text);
    say("fix    ", mending.done.empty() ? joined({mending.isSound() ? "has nothing to do" : "asks"})
                                        : joined({mending.isSound() ? "" : "asks, but makes ", inTable(mending.text)}));
    const structure_t structure(text);
    say("reads  ", structure.address == nullptr ? "nothing: the call refuses it"
                                                : inTable(bodyOf(written(structure.id, structure.address))));
    return lines;
}

TEST(HandEdits, AreAsTheTableSays) {
    std::ifstream file(VEK_HAND_EDITS);
    std::ostringstream anew;
    std::vector<row_t> rows;
    std::string line, comment;
    while (std::getline(file, line)) {
        const bool isOfRow = line.starts_with(indent);
        const bool isName = line.size() > 2 && line[1] == ' ' && line[0] != '#';
        if (isOfRow && rows.back().damage.empty())
            rows.back().damage = line.substr(indent.size());
        else if (isOfRow)
            rows.back().outcome += line + "\n";
        else if (isName)
            rows.push_back({line, {}, {}});
        if (!isOfRow) {
            anew << line << "\n";
        } else if (line.substr(indent.size()) == rows.back().damage) {
            anew << line << "\n" << outcomeOf(textOf(rows.back().damage));
        }
    }
    if (const char *path = std::getenv("VEK_WRITE_TABLE"))
        std::ofstream(path) << anew.str();
    std::map<char, std::size_t> marks;
    std::size_t restored = 0, asked = 0;
    for (const row_t &row : rows) {
        ++marks[row.name[0]];
        asked += row.outcome.find("fix    asks") != std::string::npos ? 1 : 0;
        restored += row.outcome.find("fix    @@") != std::string::npos ? 1 : 0;
        EXPECT_EQ(outcomeOf(textOf(row.damage)), row.outcome) << row.name;
        EXPECT_EQ(vek::test::brokenOfText(textOf(row.damage)), "") << row.name;
    }
    EXPECT_GE(rows.size(), 150U);
    EXPECT_EQ(marks['!'], 0U);
    EXPECT_EQ(marks['-'], 0U);
    EXPECT_GE((marks['+'] + marks['=']) * 100, rows.size() * 85);
    EXPECT_GE(restored * 100, (restored + asked) * 60);
}

} // namespace
