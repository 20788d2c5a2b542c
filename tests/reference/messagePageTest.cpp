// The links on the pages in docs that are made from the declarations.
#include "tools/reference/markdown.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

namespace {

TEST(Pages, LinksLeadToHeadings) {
    std::set<std::string> headings, links;
    for (const std::string page : {"messages.md", "layouts.md"}) {
        std::ifstream in(VEK_PROJECT_FOLDER "/docs/" + page);
        for (std::string line; std::getline(in, line);) {
            if (line.starts_with('#'))
                headings.insert(page + vek::anchorOf(line.substr(line.find(' ') + 1)));
            for (std::size_t at = 0; (at = line.find("](", at)) != std::string::npos; at += 2) {
                const std::string target = line.substr(at + 2, line.find(')', at) - at - 2);
                if (target.find('#') != std::string::npos)
                    links.insert(target.starts_with('#') ? page + target : target);
            }
        }
    }
    EXPECT_GT(links.size(), 40U);
    for (const std::string &link : links)
        EXPECT_TRUE(headings.contains(link)) << link;
}

} // namespace
