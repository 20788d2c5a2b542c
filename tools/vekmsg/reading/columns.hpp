// Columns: what a table or a group of figures shows of messages: the values at a path, or something of the place where
// a message was found.
//
// Pure functions.
#pragma once

#include "tools/vekmsg/reading/task.hpp"
#include "tools/vekmsg/reading/timeFinder.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vek::tool {

bool isPlaceColumn(std::string_view column);

/// Whether a message may have a value at a path, told without its tree: the path's first key is of its record, or
/// stands in its text.
bool mayHavePath(const item_t &item, std::string_view path);

/// The value of a path or of a place; nothing when a message has none.
std::optional<std::string> columnOf(const item_t &item, const timeFinder_t &times, std::string_view column);

/// Takes the values of a column, of which a path has several with [*], any element.
void forEachOfColumn(const item_t &item, const timeFinder_t &times, std::string_view column,
                     const std::function<void(std::string_view value)> &take);

/// Throws usageError_t when a file was given to a command where its path should stand.
void checkIsNoFile(const std::string &command, const std::string &path);

/// Throws usageError_t when no message can have this column; `option` stands in front of what it says.
void checkColumn(const std::string &option, const std::string &column);

} // namespace vek::tool
