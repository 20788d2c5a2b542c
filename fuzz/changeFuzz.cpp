// A message, whatever it is, and a change of it: refused, or done and nothing else moved; mended; its paths and what
// differs from itself and from the sample of its id; and the C functions with bytes of any kind, bent JSON, and rooms
// that are too small. One of these is tried at a time.
#include "fuzz/fuzzInput.hpp"
#include "tests/support/promises.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/vekInspect.h"

#include <iterator>
#include <memory>

using namespace vek::test;

namespace {

using call_t = std::int32_t (*)(const char *text, std::size_t size, char *buffer, std::size_t room);

// The result in a room of just this size, as the sanitizer sees it.
std::string called(call_t call, const std::string &text, std::size_t room, std::int32_t &size) {
    const std::unique_ptr<char[]> buffer(new char[room]); // NOLINT: its end is what is watched
    size = call(text.data(), text.size(), buffer.get(), room);
    return room > 0 ? std::string(buffer.get()) : std::string();
}

void tryCall(call_t call, const std::string &text) {
    std::int32_t size = 0, again = 0;
    const std::string whole = called(call, text, 1U << 20U, size);
    if (size < 0 && whole.empty())
        expectSame(text, "-1 with a reason", "-1 without one");
    for (const std::size_t room : {std::size_t{0}, std::size_t{1}, whole.size(), whole.size() + 1})
        if (const std::string part = called(call, text, room, again); again != size || !whole.starts_with(part))
            expectSame(text, whole, part);
}

// The JSON of a message with something of it that is otherwise, or gone.
std::string bentJson(const std::string &text, std::size_t choice) {
    static constexpr std::string_view pieces[] = {
        "",   "null",  "[",    "]",    "{",       "}",  ",",    ":",   "\"",           "\\", "\\u0000", "\\ud800",
        "-0", "1e999", "true", "\xff", "\"id\":", "\n", "9e18", "0x1", "\xEF\xBE\x80", "//", "NaN",     "[[[[["};
    std::string json;
    vek::inspect::appendJson(json, vek::inspect::tree_t(text));
    for (; choice > 0; choice /= std::size_t{997} * 64) {
        const std::size_t at = choice % (json.size() + 1), count = choice / 7 % 4;
        json.replace(at, std::min(count * count * count, json.size() - at), pieces[choice / 31 % std::size(pieces)]);
    }
    return json;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text = textOf(data, size);
    const std::size_t choice = choiceBy(text);
    switch (choice % 8) {
    case 0:
        expectSame(text, "", choice / 8 % 2 == 0 ? brokenOfText(text) : brokenOfDifferences(text));
        break;
    case 1:
        tryCall(&vekInspectToJson, text);
        break;
    case 2:
        tryCall(&vekInspectFromJson, choice / 8 % 8 == 0 ? text : bentJson(text, choice / 64));
        break;
    case 3:
    case 4:
        expectSame(text, "", brokenOfMending(text));
        break;
    default:
        expectSame(text, "", brokenOfAnyChange(text, choice / 8));
    }
    return 0;
}
