// explain(): a finding by an example, for the documentation and for who asks what it means.
//
// Pure functions. Explanations own their words.
#pragma once

#include "vek/inspect/check/findingKinds.hpp"

#include <string>
#include <string_view>

namespace vek::inspect {

struct explanation_t {
    /// A message that has the finding. Control characters stand in it as pictures (U+2400 and on), and of what is too
    /// long to be shown there is the beginning.
    std::string example;
    std::string words;  ///< what check() says of it
    std::string remedy; ///< how to write it right: sentences in Markdown
    bool isMended;      ///< mended() puts it right, unasked
};

/// Throws std::logic_error when check() does not find it in the example of the table.
explanation_t explain(const findingKind_t &kind);

/// Markdown without its marks: of a link its words, of code the code.
std::string plainWords(std::string_view markdown);

} // namespace vek::inspect
