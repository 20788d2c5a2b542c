// The table of one record's keys on the message page, and what the tables of the page refer to.
#pragma once

#include "vek/text/textField.hpp"

#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vek {

struct enumeration_t {
    std::string_view title;
    const char *const *names;
    std::int32_t nameCount;
};

/// What tables link to. Lists are in the order of the first reference.
struct references_t {
    /// The anchors of records and structures that have a section of their own.
    std::map<std::string, std::string, std::less<>> anchors;
    /// Element records that no section shows yet; the caller shows them.
    std::vector<void (*)(recordVisitor_t &)> elements;
    std::vector<enumeration_t> enumerations;
};

/// A row a key, nested records included. Throws std::runtime_error when a member is in no layout table.
void writeKeyTable(std::ostream &out, const recordDescription_t &record, references_t &references);

} // namespace vek
