// The message page against a second opinion, the keys that the sample messages have; and the links between pages.
#include "support/messages.hpp"
#include "tools/reference/markdown.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <string>

namespace {

using namespace vek;
using names_t = std::set<std::string>;

/// What a page shows of a section, by the section's anchor: the keys of its rows, and all that it links to.
struct section_t {
    names_t keys, links;
};

std::map<std::string, section_t> sectionsOf(const std::string &page) {
    std::map<std::string, section_t> sections;
    std::ifstream in(VEK_PROJECT_FOLDER "/docs/" + page);
    std::string section;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("#"))
            sections[section = page + anchorOf(line.substr(line.find(' ') + 1))];
        if (const std::size_t key = line.find('`') + 1; line.starts_with("| `") || line.starts_with("| ·"))
            sections[section].keys.insert(line.substr(key, line.find('`', key) - key));
        for (std::size_t at = 0; (at = line.find("](", at)) != std::string::npos; at += 2) {
            const std::string target = line.substr(at + 2, line.find(')', at) - at - 2);
            if (target.find('#') != std::string::npos)
                sections[section].links.insert(target.starts_with('#') ? page + target : target);
        }
    }
    return sections;
}

TEST(MessagePage, ShowsEveryKeyOfEveryMessage) {
    auto sections = sectionsOf("messages.md");
    for (const test::sample_t &sample : test::samples()) {
        names_t inSample, onPage;
        for (std::size_t end = 0; (end = sample.body.find('=', end + 1)) != std::string::npos;) {
            const std::size_t start = sample.body.find_last_of("{;,", end) + 1;
            inSample.insert(sample.body.substr(start, end - start));
        }
        names_t toVisit; // the message's own section, then those of its lists' elements
        for (const auto &[anchor, section] : sections)
            if (anchor.starts_with("messages.md#" + std::to_string(sample.id)))
                toVisit.insert(anchor);
        EXPECT_EQ(toVisit.size(), 1U) << sample.id;
        for (names_t seen; !toVisit.empty();) {
            const std::string anchor = toVisit.extract(toVisit.begin()).value();
            onPage.insert(sections[anchor].keys.begin(), sections[anchor].keys.end());
            if (seen.insert(anchor).second)
                toVisit.insert(sections[anchor].links.begin(), sections[anchor].links.end());
        }
        EXPECT_EQ(onPage, inSample) << sample.id;
    }
}

TEST(MessagePage, LinksLeadToHeadings) {
    auto sections = sectionsOf("messages.md");
    sections.merge(sectionsOf("layouts.md"));
    std::size_t count = 0;
    for (const auto &[anchor, section] : sections)
        for (const std::string &link : section.links) {
            EXPECT_TRUE(sections.contains(link)) << link;
            ++count;
        }
    EXPECT_GT(count, 90U);
}

} // namespace
