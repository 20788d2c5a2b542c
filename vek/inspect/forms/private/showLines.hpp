// The lines of the readable form before they are put out: so that two messages can be compared line by line.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vek::inspect {

struct showLine_t {
    enum class kind_t : std::uint8_t { group, value, list };
    kind_t kind = kind_t::value;
    std::uint16_t depth = 1;
    const node_t *node = nullptr;
    std::string name;
    std::string path;
    std::string value;              ///< as it stands in the line; of a list empty
    std::vector<std::string> items; ///< of a list
};

/// Every line but the title, in order. Paths are only made when asked for.
std::vector<showLine_t> showLines(const tree_t &tree, bool withPaths);

/// What stands behind the "=", in one line.
std::string valueInOneLine(const showLine_t &line);

} // namespace vek::inspect
