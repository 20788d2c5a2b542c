// The table of one record's keys on the message page, and what the tables of the page refer to.
#pragma once

#include "vek/inspect/schema/schema.hpp"

#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vek {

/// What tables link to. Lists are in the order of the first reference.
struct references_t {
    /// The anchors of records and structures that have a section of their own.
    std::map<std::string, std::string, std::less<>> anchors;
    /// Element records that no section shows yet; the caller shows them.
    std::vector<const inspect::recordSchema_t *> elements;
    /// A field of each enumeration.
    std::vector<const inspect::fieldSchema_t *> enumerations;
    /// Of each key, what it may be, and links to the sections that have it so.
    std::map<std::string_view, std::map<std::string, std::vector<std::string>>> keys;
};

/// A row a key, nested records included. `section` is the heading above. Throws std::runtime_error when a member is in
/// no layout table.
void writeKeyTable(std::ostream &out, const inspect::recordSchema_t &record, std::string_view section,
                   references_t &references);

/// A row a meaning of each key, with links to where it has it.
void writeKeyIndex(std::ostream &out, const references_t &references);

} // namespace vek
