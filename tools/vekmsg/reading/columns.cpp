#include "tools/vekmsg/reading/columns.hpp"

#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/api/envelope.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/characterBlock.hpp"

#include <algorithm>
#include <bit>

namespace vek::tool {

namespace {

constexpr std::string_view placeNames[] = {"time", "file", "line", "offset", "before",
                                           "id",   "name", "echo", "seq",    "length"};

// The key at the end of a path, without an element's number.
std::string_view lastKey(std::string_view path) {
    path.remove_prefix(path.rfind('.') + 1);
    return path.substr(0, path.find('['));
}

// As text.find() tells it, but looking at its last character too before all are compared: keys share their letters.
bool hasKey(std::string_view text, std::string_view key) {
    if (text.size() < key.size() || key.empty())
        return key.empty();
    const char *at = text.data();
#ifdef __SSE2__
    const char *const end = at + (text.size() - key.size() + 1); // of the places where it may begin
    for (; end - at >= characterBlock_t::size; at += characterBlock_t::size) {
        const characterBlock_t first(at), last(at + key.size() - 1);
        for (unsigned found = first.equal(key.front()) & last.equal(key.back()); found != 0; found &= found - 1)
            if (std::string_view(at + std::countr_zero(found), key.size()) == key)
                return true;
    }
#endif
    return text.find(key, static_cast<std::size_t>(at - text.data())) != text.npos;
}

} // namespace

bool isPlaceColumn(std::string_view column) {
    return std::ranges::find(placeNames, column) != std::end(placeNames);
}

bool mayHavePath(const item_t &item, std::string_view path) {
    const std::string_view key = path.substr(0, path.find_first_of(".[#"));
    const envelopeHead_t &head = item.head;
    if (!head.hasStartMarker || item.whole.size() != item.text.size() ||
        !std::ranges::all_of(key, &inspect::isWordCharacter))
        return true;
    const inspect::messageSchema_t *message = inspect::schema().find(head.id.value);
    return (message != nullptr && message->record != nullptr && message->record->find(key) != nullptr) ||
           hasKey(item.text, key);
}

std::optional<std::string> columnOf(const item_t &item, const timeFinder_t &times, std::string_view column) {
    if (!isPlaceColumn(column))
        return inspect::valueAt(item.tree(), column);
    if (column == "time") {
        const std::optional<logTime_t> time = times.in(item.lineHead);
        return time ? std::optional(time->inWords()) : std::nullopt;
    }
    if (column == "file")
        return std::string(item.file);
    if (column == "line")
        return std::to_string(item.line);
    if (column == "offset")
        return std::to_string(item.offset);
    if (column == "before")
        return std::string(item.before);
    if (column == "name")
        return item.tree().record() != nullptr ? std::string(item.tree().record()->name) : std::string();
    return inspect::valueAt(item.tree(), "@" + std::string(column));
}

void forEachOfColumn(const item_t &item, const timeFinder_t &times, std::string_view column,
                     const std::function<void(std::string_view value)> &take) {
    constexpr std::string_view any = "[*]";
    const std::size_t place = column.find(any);
    if (place == std::string_view::npos) {
        if (const std::optional<std::string> value = columnOf(item, times, column))
            take(*value);
        return;
    }
    const inspect::tree_t &tree = item.tree();
    const std::string_view list = column.substr(0, place), rest = column.substr(place + any.size());
    if (const inspect::node_t *node = tree.find(list); node != nullptr)
        for (const inspect::node_t &element : tree.children(*node))
            if (element.index >= 0)
                forEachOfColumn(item, times, inspect::joined({list, "[", std::to_string(element.index), "]", rest}),
                                take);
}

void checkIsNoFile(const std::string &command, const std::string &path) {
    const std::vector<std::string_view> keys = inspect::schema().keys();
    if (identityOf(path) && !path.starts_with('@') && std::ranges::find(keys, lastKey(path)) == keys.end())
        throw usageError_t(inspect::joined(
            {path, " is a file; which value? vekmsg ", command, " FOCUS_VALUE ", path, " takes that one"}));
}

void checkColumn(const std::string &option, const std::string &column) {
    const std::vector<std::string_view> keys = inspect::schema().keys();
    const std::string_view key = lastKey(column);
    const inspect::envelopeParts_t anyEnvelope;
    const bool isOfHeader = column.starts_with('@') && inspect::headerNumberAt(anyEnvelope, column) != nullptr;
    if (isPlaceColumn(column) || isOfHeader || std::ranges::find(keys, key) != keys.end())
        return;
    std::vector<std::string_view> candidates = keys;
    if (column.starts_with('@'))
        candidates = {"@id", "@echo", "@seq", "@length"};
    candidates.insert(candidates.end(), std::begin(placeNames), std::end(placeNames));
    throw usageError_t(
        inspect::joined({option, " ", column, ": no message has this key; ",
                         inspect::didYouMean(key, candidates, "vekmsg describe shows the keys of a message")}));
}

} // namespace vek::tool
