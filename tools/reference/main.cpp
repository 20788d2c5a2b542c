// Writes the reference pages, layouts.md, messages.md, archive-tables.md and findings.md, into a folder.
//   vekReference PROJECT-FOLDER FOLDER
#include "tools/reference/pages.hpp"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>

int main(int count, char **arguments) {
    if (count != 3) {
        std::cerr << "usage: vekReference PROJECT-FOLDER FOLDER\n";
        return 2;
    }
    try {
        const std::filesystem::path root = arguments[1], folder = arguments[2];
        std::ofstream layouts(folder / "layouts.md", std::ios::binary);
        vek::writeLayoutPage(layouts);
        std::ofstream messages(folder / "messages.md", std::ios::binary);
        vek::writeMessagePage(messages, root);
        std::ofstream tables(folder / "archive-tables.md", std::ios::binary);
        vek::writeArchivePage(tables);
        std::ofstream findings(folder / "findings.md", std::ios::binary);
        vek::writeFindingPage(findings);
        if (layouts.flush() && messages.flush() && tables.flush() && findings.flush())
            return 0;
        std::cerr << "vekReference: can't write into " << folder << "\n";
    } catch (const std::exception &error) {
        std::cerr << "vekReference: " << error.what() << "\n";
    }
    return 1;
}
