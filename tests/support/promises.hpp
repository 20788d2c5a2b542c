// What holds of the inspection core whatever the input: asked by the tests with seeded inputs, and by the fuzzers.
//
// Each returns what does not hold, in words; empty when all does. Free of the test framework.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vek::test {

/// Of a text, and of what a host reads of it: where its JSON can be made without a tree, it is that of its tree.
std::string brokenOfWrittenJson(std::string_view text);

/// The same, and: every pair has a path of its own by which it is found, nothing differs from itself, and what check()
/// has no error in is sealed as it is.
std::string brokenOfText(std::string_view text);

/// Of a form: it is refused, with a reason in it; or the message that is made has no error and says what the form says,
/// of JSON value by value as the library reads it. Sealing it again changes nothing.
std::string brokenOfForm(std::string_view form);

/// Of the forms of a text whose words alone count, without the text itself: as of every form, and that all that are
/// read make the same message.
std::string brokenOfWords(std::string_view text);

/// Of a change, or a removal without a value: it is refused with a reason; or the value stands at its path as the
/// library reads it, the rest is as it was, there are no new errors, and the differences lead from one to the other.
std::string brokenOfChange(std::string_view text, std::string_view path, std::optional<std::string_view> value);

/// Any change of a text, chosen by a number: of a value that is there, or that could be, to one that is apt, bent or
/// hostile; the next element of a list; a removal.
std::string brokenOfAnyChange(std::string_view text, std::size_t choice);

/// Of a text and the samples of its id: what differs is the same from either side; and where both are sound, changing
/// it bit by bit makes one of the other.
std::string brokenOfDifferences(std::string_view text);

/// Of mending a text: what is sound stays, no new error is made, what is not at fault keeps its value in the text, only
/// what has no certain remedy is left in a body, and mending again changes nothing.
std::string brokenOfMending(std::string_view text);

} // namespace vek::test
