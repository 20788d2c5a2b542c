// A message as a JSON line, with where it stood: what json and last put out.
#pragma once

#include "vek/inspect/check/check.hpp"
#include "vek/inspect/log/logTime.hpp"
#include "vek/inspect/message/tree.hpp"
#include "vek/inspect/message/written.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vek::tool {

/// Where a message stood, as item_t has it.
struct messagePlace_t {
    std::string_view file;
    std::uint64_t line, offset;
    std::string_view before;
    std::optional<inspect::logTime_t> time;
};

/// Appends the object and a line end.
void appendMessageJson(std::string &out, const messagePlace_t &place, const inspect::tree_t &tree,
                       std::span<const inspect::finding_t> findings);
/// The same bytes of a message as plainlyClean() gives it.
void appendMessageJson(std::string &out, const messagePlace_t &place, const inspect::writtenMessage_t &message);

} // namespace vek::tool
