// A regular expression of an expression_t.
#pragma once

#include "vek/inspect/filter/expression.hpp"

#include <regex>

namespace vek::inspect {

struct expression_t::regex_t {
    /// Null when the text is no regular expression.
    static std::shared_ptr<const regex_t> of(const std::string &text);

    bool isIn(const std::string &value) const { return std::regex_search(value, compiled, how); }

    std::regex compiled;
    std::regex_constants::match_flag_type how;
};

} // namespace vek::inspect
