// The name tables of the enumerations in messages. Values are positions in the table, from 0.
#pragma once

#include "vek/text/enumField.hpp"

namespace vek {

extern const enumNames_t mediaTypeNames;
extern const enumNames_t exposurePolarityNames;
extern const enumNames_t transportNames;
extern const enumNames_t dataPathNames;

} // namespace vek
