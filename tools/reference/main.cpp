// Writes the reference pages, or checks that those in docs are up to date.
//   vekReference write|check PROJECT-FOLDER

#include "tools/reference/pages.hpp"

#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

namespace fs = std::filesystem;

// Whether the file has this text; says where it first differs.
bool isUpToDate(const fs::path &file, const std::string &expected) {
    std::ifstream in(file);
    std::istringstream wanted(expected);
    std::string line, wantedLine;
    for (int number = 1;; ++number) {
        const bool more = static_cast<bool>(std::getline(in, line));
        const bool moreWanted = static_cast<bool>(std::getline(wanted, wantedLine));
        if (more == moreWanted && (!more || line == wantedLine)) {
            if (!more)
                return true;
            continue;
        }
        std::cerr << file.string() << ":" << number
                  << ": out of date; build the target reference\n  is:        " << (more ? line : "(end)")
                  << "\n  should be: " << (moreWanted ? wantedLine : "(end)") << "\n";
        return false;
    }
}

bool serve(bool writes, const fs::path &file, const std::string &page) {
    if (!writes)
        return isUpToDate(file, page);
    std::ofstream out(file, std::ios::binary);
    out << page;
    return static_cast<bool>(out.flush());
}

} // namespace

int main(int count, char **arguments) {
    const std::string command = count == 3 ? arguments[1] : "";
    if (command != "write" && command != "check") {
        std::cerr << "usage: vekReference write|check PROJECT-FOLDER\n";
        return 2;
    }
    try {
        const fs::path root = arguments[2];
        std::ostringstream layouts, messages;
        vek::writeLayoutPage(layouts);
        vek::writeMessagePage(messages, root);
        const bool writes = command == "write";
        const bool served = serve(writes, root / "docs/layouts.md", layouts.str());
        return serve(writes, root / "docs/messages.md", messages.str()) && served ? 0 : 1;
    } catch (const std::exception &error) {
        std::cerr << "vekReference: " << error.what() << "\n";
        return 1;
    }
}
