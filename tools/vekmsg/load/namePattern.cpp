#include "tools/vekmsg/load/namePattern.hpp"

#include "tools/vekmsg/terminal/problem.hpp"

#include <algorithm>
#include <utility>

namespace vek::tool {

namespace {

constexpr std::pair<std::string_view, std::string inspect::archivedLog_t::*> parts[] = {
    {"{device}", &inspect::archivedLog_t::device},
    {"{site}", &inspect::archivedLog_t::site},
    {"{host}", &inspect::archivedLog_t::host},
    {"*", nullptr},
};

const auto *partAt(std::string_view pattern) {
    return std::find_if(std::begin(parts), std::end(parts),
                        [&](const auto &part) { return pattern.starts_with(part.first); });
}

// Each part as short as what stands behind it lets it be, and never empty.
bool takeApart(std::string_view pattern, std::string_view name, inspect::archivedLog_t &log) {
    const auto *const part = partAt(pattern);
    if (part == std::end(parts))
        return pattern.empty() || name.empty()
                   ? pattern.empty() && name.empty()
                   : pattern.front() == name.front() && takeApart(pattern.substr(1), name.substr(1), log);
    for (std::size_t size = 1; size <= std::min(name.find('/'), name.size()); ++size)
        if (takeApart(pattern.substr(part->first.size()), name.substr(size), log)) {
            if (part->second != nullptr)
                log.*part->second = name.substr(0, size);
            return true;
        }
    return false;
}

} // namespace

void checkPattern(const std::string &pattern) {
    if (!pattern.empty() && std::none_of(std::begin(parts), std::end(parts) - 1, [&](const auto &part) {
            return pattern.find(part.first) != std::string::npos;
        }))
        throw usageError_t("--pattern " + pattern + " has neither {device} nor {site} nor {host} in it");
    for (std::size_t at = pattern.find('{'); at != std::string::npos; at = pattern.find('{', at + 1))
        if (partAt(std::string_view(pattern).substr(at)) == std::end(parts))
            throw usageError_t("--pattern " + pattern + ": in braces there may stand {device}, {site} and {host}");
}

void nameBy(const std::string &pattern, const std::string &name, inspect::archivedLog_t &log) {
    if (pattern.empty())
        return;
    for (std::size_t start = 0; start != std::string::npos; start = name.find('/', start + 1))
        if (takeApart(pattern, std::string_view(name).substr(start + (start > 0 || name.starts_with('/') ? 1 : 0)),
                      log))
            return;
    throw usageError_t(name + " does not end as --pattern says, " + pattern);
}

} // namespace vek::tool
