// The pages for people: their links lead somewhere, what they name is there, their samples are whole and right, and
// they quote the examples as they are.
#include "tools/reference/markdown.hpp"
#include "vek/inspect/check/check.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
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

std::string contentOf(const fs::path &file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
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

// The folders of the README's map, by their names in front, and how far these are indented.
std::set<std::string> mappedFolders() {
    std::set<std::string> folders;
    std::vector<std::string> above;
    bool isMap = false;
    forLines(root / "README.md", true, [&](const std::string &line) {
        isMap |= line.starts_with("vek/ ");
        if (!isMap)
            return;
        const std::size_t depth = line.find_first_not_of(' ') / 2;
        above.resize(std::min(above.size(), depth));
        const std::string parent = above.empty() ? "" : above.back();
        std::istringstream words(line);
        for (std::string word; words >> word && word.ends_with('/');) {
            folders.insert(parent + word);
            above.resize(depth);
            above.push_back(parent + word);
        }
    });
    return folders;
}

TEST(Pages, MapShowsTheFoldersThatThereAre) {
    std::set<std::string> folders;
    for (const char *above : {"", "vek/", "vek/inspect/", "tools/"})
        for (const fs::directory_entry &entry : fs::directory_iterator(root / above)) {
            const std::string name = entry.path().filename().string();
            if (entry.is_directory() && !name.starts_with('.') && !name.starts_with("build") && name != "private")
                folders.insert(above + name + '/');
        }
    EXPECT_EQ(mappedFolders(), folders);
}

// The words that stand behind `mark`.
std::vector<std::string> wordsBehind(const std::string &text, const std::string &mark) {
    std::vector<std::string> words;
    for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos;) {
        at += mark.size();
        words.push_back(text.substr(at, text.find_first_of(" `\n;)", at) - at));
    }
    return words;
}

TEST(Pages, NameScriptsAndPresetsThatThereAre) {
    const std::string presets = contentOf(root / "CMakePresets.json");
    std::size_t names = 0;
    for (const fs::path &page : pages()) {
        const std::string text = contentOf(page);
        for (const std::string &name : wordsBehind(text, "scripts/"))
            EXPECT_TRUE(fs::exists(root / "scripts" / name)) << page << ": " << name;
        for (const std::string &name : wordsBehind(text, "--preset "))
            EXPECT_NE(presets.find('"' + name + '"'), std::string::npos) << page << ": " << name;
        names += wordsBehind(text, "scripts/").size() + wordsBehind(text, "--preset ").size();
    }
    EXPECT_GT(names, 20U);
}

TEST(Pages, SamplesAreWholeAndRight) {
    std::set<std::int32_t> shown;
    for (const char *page : {"docs/messages.md", "README.md"})
        forLines(root / page, true, [&](const std::string &line) {
            if (!line.starts_with("@@"))
                return;
            const vek::inspect::tree_t tree(line);
            for (const vek::inspect::finding_t &finding : vek::inspect::check(tree))
                ADD_FAILURE() << line << '\n' << finding.inWords();
            shown.insert(tree.message() != nullptr ? tree.message()->id : 0);
        });
    for (const vek::inspect::messageSchema_t &message : vek::inspect::schema().messages())
        EXPECT_EQ(shown.contains(message.id), message.record != nullptr) << message.id;
}

// A block of code below the name of a file, "<!-- examples/host.cpp -->", is a part of that file.
TEST(Pages, QuoteTheExamples) {
    std::size_t quotes = 0;
    for (const fs::path &page : pages()) {
        const std::string text = contentOf(page), start = "<!-- examples/", code = ".cpp -->\n```cpp\n";
        for (std::size_t at = 0; (at = text.find(start, at)) != std::string::npos;) {
            const std::size_t name = at + start.size(), end = text.find(code, name);
            at = name;
            if (end > text.find('\n', name))
                continue;
            const std::size_t quote = end + code.size();
            const fs::path file = root / "examples" / (text.substr(name, end - name) + ".cpp");
            EXPECT_NE(contentOf(file).find(text.substr(quote, text.find("```", quote) - quote)), std::string::npos)
                << page << " does not quote " << file << " as it is";
            ++quotes;
        }
    }
    EXPECT_EQ(quotes, 1U);
}

} // namespace
