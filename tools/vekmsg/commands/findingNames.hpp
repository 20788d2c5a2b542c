// The names of findings, as people write them on the command line.
#pragma once

#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/check/findingKinds.hpp"
#include "vek/inspect/words/nearest.hpp"

#include <string>
#include <vector>

namespace vek::tool {

/// Throws usageError_t when no finding is called so; `before` stands in front of what it says.
inline inspect::findingCode_t findingCalled(const std::string &name, const std::string &before) {
    if (const auto code = inspect::findingNamed(name))
        return *code;
    std::vector<std::string_view> names;
    std::string all = "there are";
    for (const inspect::findingKind_t &kind : inspect::findingKinds) {
        names.push_back(kind.name);
        all.append(" ").append(kind.name);
    }
    throw usageError_t(before + name + ": no finding has this name; " + inspect::didYouMean(name, names, all));
}

} // namespace vek::tool
