// Makes the schema from the catalogue: each record class shows itself, with a structure that has its defaults.
#pragma once

#include "vek/inspect/schema/schema.hpp"
#include "vek/records/private/layouts/layouts.hpp"
#include "vek/text/textField.hpp"

#include <map>

namespace vek::inspect {

/// The enumerations in messages, with their constants in C.
std::vector<enumeration_t> allEnumerations();

class schemaBuilder_t {
public:
    explicit schemaBuilder_t(schema_t &schema) : schema_(schema) {}

    void build();

private:
    using visit_t = void (*)(recordVisitor_t &);

    const recordSchema_t *recordOf(visit_t visit);
    void addFields(recordSchema_t &record, const textGroup_t &group, const recordDescription_t &top);
    void addField(recordSchema_t &record, const textField_t &field, const recordDescription_t &top);
    const recordSchema_t *nestedRecord(const nestedRecord_t &field, const recordDescription_t &top);

    schema_t &schema_;
    std::map<visit_t, const recordSchema_t *> records_; // three messages share a record, lists share elements
};

} // namespace vek::inspect
