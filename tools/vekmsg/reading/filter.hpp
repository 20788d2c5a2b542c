// filter_t: which messages a command looks at: --id, --where, --since and --until.
//
// Never changes once made; may be used from several threads.
#pragma once

#include "tools/vekmsg/reading/readingOptions.hpp"
#include "tools/vekmsg/reading/task.hpp"
#include "tools/vekmsg/reading/timeFinder.hpp"
#include "vek/inspect/filter/expression.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vek::tool {

/// The ids that words of a user mean, who gave them to an option. Throws usageError_t with a suggestion.
std::vector<std::int32_t> idsNamed(const std::vector<std::string> &words, const std::string &option = {});

class filter_t {
public:
    /// Throws usageError_t when the options make no sense.
    explicit filter_t(const readingOptions_t &options);

    bool passes(const item_t &item) const;
    /// Whether there is anything to filter by.
    bool isActive() const { return !ids_.empty() || !conditions_.empty() || since_ || until_; }
    const timeFinder_t &times() const { return times_; }
    /// How many characters a message may have, its NUL included.
    std::size_t longest() const { return longest_; }

private:
    bool isInTime(const logTime_t &time) const;

    std::vector<std::int32_t> ids_;
    std::vector<inspect::expression_t> conditions_; // all must hold
    timeFinder_t times_;
    std::optional<givenTime_t> since_, until_;
    std::size_t longest_;
};

} // namespace vek::tool
