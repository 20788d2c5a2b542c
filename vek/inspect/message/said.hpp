// said_t: what a form says of a body, in the form's own words and order, before a message is made of it.
//
// Readers of forms tell it to a saidReader_t, value by value; bodyBuilder_t makes a body of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

struct said_t {
    enum class kind_t : std::uint8_t {
        group,
        words,   ///< of a text its characters, else what is to stand there
        wide,    ///< a 16-bit text as UTF-8
        nothing, ///< said to have no value
    };
    kind_t kind = kind_t::group;
    std::string name{};      ///< the key, of a second one "KEY#2"; empty: an element, or a value alone
    std::int32_t index = -1; ///< of an element, when the form counts them: from 0
    std::string text{};      ///< a value's
    std::size_t offset = 0;  ///< where in the form
    std::vector<said_t> members{};

    /// Whether the same is said, wherever.
    bool operator==(const said_t &other) const {
        return kind == other.kind && name == other.name && index == other.index && text == other.text &&
               members == other.members;
    }
};

class saidReader_t {
public:
    /// Deeper groups are refused by the readers of forms.
    static constexpr std::size_t deepest = 64;

    saidReader_t() { open_.push_back(&top_); }
    saidReader_t(const saidReader_t &) = delete;
    saidReader_t &operator=(const saidReader_t &) = delete;

    void begin(said_t group) { open_.push_back(&add(std::move(group))); }
    void end() { open_.pop_back(); }
    void value(said_t value) { add(std::move(value)); }

    /// Open groups.
    std::size_t depth() const { return open_.size() - 1; }

    /// All that was said; the groups must have ended.
    said_t take() { return std::move(top_); }

private:
    // A group does not move while it is open: only the innermost one grows.
    said_t &add(said_t one) { return open_.back()->members.emplace_back(std::move(one)); }

    said_t top_;
    std::vector<said_t *> open_;
};

} // namespace vek::inspect
