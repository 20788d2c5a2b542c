// The pages for people: their links lead somewhere, and the samples of docs/messages.md are whole and right.
#include "tools/reference/markdown.hpp"
#include "vek/inspect/check.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path root = VEK_PROJECT_FOLDER;

std::vector<fs::path> pages() {
    std::vector<fs::path> pages;
    for (const fs::path &folder : {root, root / "docs"})
        for (const fs::directory_entry &entry : fs::directory_iterator(folder))
            if (entry.path().extension() == ".md")
                pages.push_back(entry.path());
    return pages;
}

// Calls `use` with each line of a page that is not in a block of code, or with each that is.
template <class Use>
void forLines(const fs::path &page, bool isCode, Use use) {
    std::ifstream in(page);
    bool isInside = false;
    for (std::string line; std::getline(in, line);)
        if (line.starts_with("```"))
            isInside = !isInside;
        else if (isInside == isCode)
            use(line);
}

bool hasHeading(const fs::path &page, const std::string &anchor) {
    bool isFound = anchor.empty();
    forLines(page, false, [&](const std::string &line) {
        isFound |= line.starts_with('#') && vek::anchorOf(line.substr(line.find(' ') + 1)) == anchor;
    });
    return isFound;
}

TEST(Pages, LinksLeadSomewhere) {
    std::set<std::pair<fs::path, std::string>> links;
    for (const fs::path &page : pages())
        forLines(page, false, [&](const std::string &line) {
            for (std::size_t at = 0; (at = line.find("](", at)) != std::string::npos; at += 2)
                links.emplace(page, line.substr(at + 2, line.find(')', at) - at - 2));
        });
    EXPECT_GT(links.size(), 100U);
    for (const auto &[page, link] : links) {
        if (link.starts_with("https://"))
            continue;
        const std::size_t hash = std::min(link.find('#'), link.size());
        const fs::path target = hash == 0 ? page : page.parent_path() / link.substr(0, hash);
        EXPECT_TRUE(fs::exists(target) && hasHeading(target, link.substr(hash))) << page << " links to " << link;
    }
}

TEST(Pages, SamplesAreWholeAndRight) {
    std::set<std::int32_t> shown;
    forLines(root / "docs/messages.md", true, [&](const std::string &line) {
        const vek::inspect::tree_t tree(line);
        for (const vek::inspect::finding_t &finding : vek::inspect::check(tree))
            ADD_FAILURE() << line << '\n' << finding.inWords();
        shown.insert(tree.message() != nullptr ? tree.message()->id : 0);
    });
    for (const vek::inspect::messageSchema_t &message : vek::inspect::schema().messages())
        EXPECT_EQ(shown.contains(message.id), message.record != nullptr) << message.id;
}

} // namespace
