// The message page against a second opinion: the keys that the sample messages have, and the fields that the record
// classes declare.

#include "api/catalogue.hpp"
#include "tools/reference/markdown.hpp"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace vek;
namespace fs = std::filesystem;

const fs::path root = VEK_PROJECT_FOLDER;

std::string readFile(const fs::path &file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Keys by the way to them: "ARRAY_CASSETTE", "ARRAY_CASSETTE[].VERSION.TYPE".
using keys_t = std::set<std::string>;

std::string below(const std::string &path, const std::string &key) {
    return path.empty() ? key : path + "." + key;
}

// Takes the group at the start of `text` off it.
void collectKeys(std::string_view &text, const std::string &path, keys_t &keys) {
    text.remove_prefix(1);
    std::string value = path + "[]";
    while (text.front() != '}') {
        if (text.front() == '{') {
            collectKeys(text, value, keys);
            continue;
        }
        const std::size_t end = text.find_first_of("=;,");
        value = text[end] == '=' ? below(path, std::string(text.substr(0, end))) : path + "[]";
        if (text[end] == '=')
            keys.insert(value);
        text.remove_prefix(end + 1);
    }
    text.remove_prefix(1);
}

keys_t keysOfSample(std::int32_t id) {
    keys_t keys;
    for (const fs::directory_entry &entry : fs::directory_iterator(root / "examples/messages"))
        if (entry.path().filename().string().starts_with(std::to_string(id))) {
            const std::string message = readFile(entry.path());
            std::string_view body(message);
            body.remove_prefix(message.find('{'));
            collectKeys(body, {}, keys);
        }
    return keys;
}

struct row_t {
    std::string key;     ///< with the keys of the records it is nested in
    std::string element; ///< the section of a list's elements, if they are records
};

/// The key rows of the page, by the anchors of its sections.
using sections_t = std::map<std::string, std::vector<row_t>>;

// `outer` holds the keys of the rows that this one may be nested in.
row_t readRow(const std::string &line, std::vector<std::string> &outer) {
    constexpr std::string_view flat = "| `", indent = "· ";
    const std::size_t start = line.find('`') + 1;
    outer.resize((start - flat.size()) / indent.size());
    const std::string key = line.substr(start, line.find('`', start) - start);
    outer.push_back(below(outer.empty() ? "" : outer.back(), key));
    const std::size_t link = line.find("`](#");
    return {outer.back(), link == std::string::npos ? "" : line.substr(link + 3, line.find(')', link) - link - 3)};
}

sections_t readSections() {
    sections_t sections;
    std::istringstream page(readFile(root / "docs/messages.md"));
    std::string line, section;
    std::vector<std::string> outer;
    while (std::getline(page, line))
        if (line.starts_with("##"))
            section = anchorOf(line.substr(line.find(' ') + 1));
        else if (line.starts_with("| `") || line.starts_with("| ·"))
            sections[section].push_back(readRow(line, outer));
    return sections;
}

keys_t keysOfSection(const sections_t &sections, const std::string &section, const std::string &path = {}) {
    keys_t keys;
    for (const row_t &row : sections.at(section)) {
        const std::string key = below(path, row.key);
        keys.insert(key);
        if (!row.element.empty())
            keys.merge(keysOfSection(sections, row.element, key + "[]"));
    }
    return keys;
}

/// A record class as it declares itself.
struct declared_t : recordVisitor_t {
    std::string name;
    std::size_t fields = 0; ///< those of nested records included
    std::vector<void (*)(recordVisitor_t &)> elements;

    void visit(const recordDescription_t &record) override {
        name = record.record;
        count(record.fields);
    }

private:
    void count(const textGroup_t &group) {
        for (const textField_t *field = group.firstMember(); field != nullptr; field = field->nextMember()) {
            fieldDescription_t description;
            field->describe(description);
            ++fields;
            if (description.group != nullptr)
                count(*description.group);
            if (description.visitElement != nullptr)
                elements.push_back(description.visitElement);
        }
    }
};

TEST(MessagePage, ShowsEveryKeyOfEveryMessage) {
    const sections_t sections = readSections();
    for (const catalogueRow_t &row : catalogueRows()) {
        if (row.conversion == nullptr)
            continue;
        declared_t record;
        row.conversion->visit(record);
        const std::string section = anchorOf(std::to_string(row.id) + " " + record.name);
        ASSERT_EQ(sections.count(section), 1U) << section;
        EXPECT_EQ(sections.at(section).size(), record.fields) << section;
        for (const auto visit : record.elements) {
            declared_t element;
            visit(element);
            const auto found = sections.find(anchorOf(element.name)); // if not there, it is a message too
            EXPECT_EQ(found == sections.end() ? element.fields : found->second.size(), element.fields) << element.name;
        }
        EXPECT_EQ(keysOfSection(sections, section), keysOfSample(row.id)) << section;
    }
}

// The headings of a page by their anchors, and where its links lead to.
void collectLinks(const std::string &name, std::set<std::string> &anchors, std::set<std::string> &links) {
    std::istringstream page(readFile(root / "docs" / name));
    std::string line;
    while (std::getline(page, line)) {
        if (line.starts_with("#"))
            anchors.insert(name + anchorOf(line.substr(line.find(' ') + 1)));
        for (std::size_t at = line.find("]("); at != std::string::npos; at = line.find("](", at + 1)) {
            const std::string target = line.substr(at + 2, line.find(')', at) - at - 2);
            if (target.find('#') != std::string::npos)
                links.insert(target.starts_with('#') ? name + target : target);
        }
    }
}

TEST(MessagePage, LinksLeadToHeadings) {
    std::set<std::string> anchors, links;
    collectLinks("messages.md", anchors, links);
    collectLinks("layouts.md", anchors, links);
    EXPECT_GT(links.size(), 90U);
    for (const std::string &link : links)
        EXPECT_EQ(anchors.count(link), 1U) << link;
}

} // namespace
