// Goes over what the library wrote: keys in the order of their record, each value a token, nothing between pairs.
//
// Pure functions; they are wrong about any other text.
#pragma once

#include "vek/inspect/schema/schema.hpp"
#include "vek/text/tolerantTokenizer.hpp"

#include <string_view>

namespace vek::inspect {

/// What stands between the braces of a group; nothing in an empty body.
inline tolerantTokenizer_t insideWritten(std::string_view group) {
    return tolerantTokenizer_t(group.size() > 2 ? group.substr(1, group.size() - 2) : std::string_view());
}

/// Takes the values of a record's group that are there, each with its field: take(field, value).
template <class Take>
void forEachWrittenPair(const recordSchema_t &record, std::string_view group, Take take) {
    tolerantTokenizer_t tokens = insideWritten(group);
    for (const fieldSchema_t &field : record.fields)
        if (tokens.skipKey(field.key)) {
            take(field, tokens.token());
            tokens.delimiter();
        }
}

/// Takes the elements of a list, or the codes of a 16-bit text: take(value).
template <class Take>
void forEachWrittenElement(std::string_view group, Take take) {
    for (tolerantTokenizer_t tokens = insideWritten(group); !tokens.atEnd(); tokens.delimiter())
        take(tokens.token());
}

} // namespace vek::inspect
