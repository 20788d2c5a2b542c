// check: every departure of a message from its format, and what a host makes of it.
//
// Pure functions over a tree. Findings own their words.
#pragma once

#include "vek/inspect/check/findingKinds.hpp"
#include "vek/inspect/message/tree.hpp"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// What puts a finding right: another text for a stretch of the message. The length does not follow by itself.
struct remedy_t {
    place_t place;
    std::string text;
    bool isCertain = false; ///< any careful reader would do just that
};

struct finding_t {
    findingCode_t code{};
    severity_t severity{};
    place_t place;           ///< where the caret goes
    std::string path;        ///< of the key, as tree_t::path; empty for the envelope
    std::string message;     ///< what is wrong, without a full stop: unknown key "FOCUS_VALEU"
    std::string consequence; ///< what a host makes of it: "a host ignores it; FOCUS_VALUE will be 0.000000"
    std::string suggestion;  ///< what it should be, when that is known: "FOCUS_VALUE", "81"
    std::optional<remedy_t> remedy{};

    /// message, and behind it what a host makes of it and "did you mean X?", in one line.
    std::string inWords() const;
    /// The same without what a host makes of it: for what is not written.
    std::string inShort() const;
};

struct checkOptions_t {
    std::size_t most = SIZE_MAX;           ///< findings with words, the first ones
    std::bitset<findingCodeCount> ignored; ///< by their codes
};

struct checkResult_t {
    std::vector<finding_t> findings;
    std::size_t errors = 0, warnings = 0; ///< all there are

    std::size_t count() const { return errors + warnings; }
};

/// The first departures, in order of their places, and how many there are. Takes time in proportion to the text.
checkResult_t check(const tree_t &tree, const checkOptions_t &options);

/// All departures, in order of their places. What follows from one that is told is not told again. Where nothing is
/// found, reading the message and writing it gives the same body again, byte for byte.
std::vector<finding_t> check(const tree_t &tree);

/// What doesn't count.
enum class tolerance_t : std::uint8_t {
    nothing,
    warnings,
    whatIsBuilt, ///< what the words of a form say as well: keys that are not there, odd characters in texts
};

/// Whether check() would find anything; much faster, for what is only counted.
bool isClean(const tree_t &tree, tolerance_t tolerance = tolerance_t::nothing);

/// Whether isClean() is true of a message, told in less time than a tree takes: of nearly all that the library wrote.
/// False of others.
bool isPlainlyClean(std::string_view text);

} // namespace vek::inspect
