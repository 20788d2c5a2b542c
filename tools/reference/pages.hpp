// The reference pages in docs, made from the declarations that convert: the catalogue, the record classes, the layout
// tables. They throw std::runtime_error when a declaration lacks something that a page needs.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <string_view>

namespace vek {

inline constexpr std::string_view generatedNotice =
    "<!-- Made by the build from the declarations: change those, then build the target reference. -->\n";

/// docs/layouts.md: where each member of each structure lies.
void writeLayoutPage(std::ostream &out);

/// docs/messages.md: each message with what it is for, a sample and its keys, and where each key stands. `root` is the
/// project's folder, for the samples and the constants of enumerations.
void writeMessagePage(std::ostream &out, const std::filesystem::path &root);

/// docs/archive-tables.md: the tables that messages are kept in for queries.
void writeArchivePage(std::ostream &out);

/// docs/findings.md: what check() finds, each with an example and the remedy.
void writeFindingPage(std::ostream &out);

} // namespace vek
