// The JSON Schema (draft 7) of the JSON that is written and read here.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace vek::inspect {

/// A schema that others may refer to: "#/definitions/NAME".
struct schemaDefinition_t {
    std::string name;
    std::string json;
};

/// One document with a line end. `further` definitions stand beside its own; what is one of those named in `documents`
/// is valid too.
void appendJsonSchema(std::string &out, std::span<const schemaDefinition_t> further = {},
                      std::span<const std::string_view> documents = {});

} // namespace vek::inspect
