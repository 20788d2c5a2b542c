// filter_t: which messages a command looks at: --id, --where, --since and --until.
//
// Never changes once made; may be used from several threads.
#pragma once

#include "tools/vekmsg/reading/readingOptions.hpp"
#include "tools/vekmsg/reading/task.hpp"
#include "tools/vekmsg/reading/timeFinder.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vek::tool {

/// The ids that words of a user mean. Throws usageError_t with a suggestion.
std::vector<std::int32_t> idsNamed(const std::vector<std::string> &words);

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
    enum class comparison_t : std::uint8_t { equal, different, less, greater, contains };
    struct condition_t {
        std::string path;
        comparison_t comparison;
        std::string value;
    };
    static condition_t conditionOf(const std::string &words);
    static bool holds(const condition_t &condition, const inspect::tree_t &tree);

    std::vector<std::int32_t> ids_;
    std::vector<condition_t> conditions_;
    std::optional<logTime_t> since_, until_;
    timeFinder_t times_;
    std::size_t longest_;
};

} // namespace vek::tool
