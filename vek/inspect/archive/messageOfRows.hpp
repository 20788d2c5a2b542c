// The text of a message from its rows, which say all of it: the way back from rows.hpp.
#pragma once

#include "vek/inspect/archive/rows.hpp"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace vek::inspect {

/// A row as an archive holds it. Its texts are views of what the archive was read into.
struct keptRow_t {
    std::uint64_t offset = 0; ///< of its message in the log
    std::vector<std::uint32_t> elements{};
    std::vector<cell_t> cells{}, listCells{};
};

/// The rows of a message in a table, in the order of their elements.
using rowsOfMessage_t = std::function<std::span<const keptRow_t>(const table_t &table)>;

struct messageNumbers_t {
    std::int32_t id = 0, echoTag = 0, sequenceNumber = 0;
};

/// The message that rowMaker_t made these rows of, when it made no text of it. Throws std::bad_alloc.
std::string messageOfRows(const messageNumbers_t &numbers, const rowsOfMessage_t &rowsOf);

} // namespace vek::inspect
