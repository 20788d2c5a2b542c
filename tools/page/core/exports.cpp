// The calls that the page's script makes: see core.ts. Bytes go through the one exchange.
#include "tools/page/core/digest.hpp"
#include "tools/page/core/exchange.hpp"
#include "tools/page/core/logRows.hpp"
#include "tools/page/core/messageView.hpp"
#include "tools/page/core/remedies.hpp"
#include "vek/inspect/change/change.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/filter/expression.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/forms/growingLog.hpp"
#include "vek/inspect/log/unwrapping.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <memory>
#include <optional>

namespace {

using namespace vek;
using namespace vek::inspect;

page::exchange_t exchange;
std::unique_ptr<page::logRows_t> rows;
std::unique_ptr<unwrapper_t> unwrapper;
growingLog_t growing;
page::series_t series;
expression_t where;

// 1 with the result, or 0 with the reason in its place.
std::int32_t handOut(const formResult_t &read) {
    exchange.result = read.isRead() ? read.text : read.error;
    return read.isRead() ? 1 : 0;
}

// A change of a damaged message is one of the message that sealing it gives.
std::int32_t change(std::string_view text, std::string_view path, std::string_view value) {
    const tree_t tree(text);
    change_t change = changed(tree, path, value);
    sealOptions_t options;
    options.strictness = strictness_t::certain; // the rest is for the next change
    if (!change.isDone() && !tree.envelope().isWholeForHost())
        if (const formResult_t whole = seal(text, options); whole.isRead())
            change = changed(tree_t(whole.text), path, value);
    exchange.result = change.isDone() ? change.text : change.error;
    return change.isDone() ? 1 : 0;
}

std::int32_t refuse(std::string why) {
    exchange.result = std::move(why);
    return 0;
}

// A list's text, of items that end with a NUL each: "@" and the number of an element that stays as it stands, or "="
// and a value. Nothing, and why, when one can't be an element.
std::optional<std::string> listOf(const tree_t &tree, const node_t &list, std::string_view items, std::string &error) {
    std::string text = "{";
    for (std::size_t end; (end = items.find('\0')) != std::string_view::npos; items.remove_prefix(end + 1)) {
        const std::string_view item = items.substr(1, end - 1);
        if (items[0] == '@') {
            const node_t &element = tree.children(list)[static_cast<std::size_t>(readInteger(item))];
            const place_t place{element.value.start - (element.isQuoted ? 1 : 0),
                                element.value.end + (element.isQuoted && !element.isQuoteOpen ? 1 : 0)};
            text += place.in(tree.text());
        } else if (const std::optional<std::string> value = spelt(*list.field, item, part_t::element, error)) {
            text += *value;
        } else {
            return {};
        }
        text += ',';
    }
    return text + '}';
}

} // namespace

extern "C" {

char *pageInput(std::size_t size) {
    exchange.rewind();
    exchange.result.clear();
    exchange.input.resize(size);
    return exchange.input.data();
}

const char *pageResult() {
    return exchange.result.data();
}

std::size_t pageResultSize() {
    return exchange.result.size();
}

/// The view of a message as JSON.
std::int32_t pageView(std::size_t size) {
    page::appendView(exchange.result, tree_t(exchange.take(size)));
    return 1;
}

/// `isQuoted`: the value stands in quotes, with escapes, as pageQuote() gives it.
std::int32_t pageSet(std::size_t textSize, std::size_t pathSize, std::size_t valueSize, std::int32_t isQuoted) {
    const std::string_view text = exchange.take(textSize), path = exchange.take(pathSize);
    const std::string_view value = exchange.take(valueSize);
    if (isQuoted == 0)
        return change(text, path, value);
    std::size_t at = 0;
    std::string bytes;
    if (!readQuoted(value, at, bytes) || at != value.size())
        return refuse("the value stands in double quotes, with \\x and two digits for a byte that is no character");
    return change(text, path, bytes);
}

/// Puts a list's elements: see listOf().
std::int32_t pageSetList(std::size_t textSize, std::size_t pathSize, std::size_t itemsSize) {
    const std::string_view text = exchange.take(textSize), path = exchange.take(pathSize);
    const tree_t tree(text);
    const node_t *list = tree.find(path);
    if (list == nullptr || list->field == nullptr)
        return refuse(std::string("the message has no ").append(path));
    std::string error;
    const std::optional<std::string> value = listOf(tree, *list, exchange.take(itemsSize), error);
    return value ? change(text, path, *value) : refuse(std::move(error));
}

std::int32_t pageQuote(std::size_t size) {
    appendQuoted(exchange.result, exchange.take(size));
    return 1;
}

/// What is to be shown as marks: first and last character of each range, as 32-bit numbers.
std::int32_t pageUnprintable() {
    for (const characterRange_t &range : unprintableCharacters())
        exchange.result.append(reinterpret_cast<const char *>(&range), sizeof range);
    return 1;
}

std::int32_t pageSeal(std::size_t size) {
    return handOut(seal(exchange.take(size)));
}

/// What a sealed message has that the message has not, in words.
std::int32_t pageSealChanges(std::size_t size, std::size_t sealedSize) {
    const std::string_view text = exchange.take(size);
    exchange.result = changesOf(text, exchange.take(sealedSize));
    return 1;
}

/// What can be done about the findings of a message, and the message with it done to one, or to all of a kind.
std::int32_t pageRemedies(std::size_t size) {
    const tree_t tree(exchange.take(size));
    page::appendRemedies(exchange.result, tree, check(tree));
    return 1;
}

std::int32_t pageMend(std::size_t size, std::int32_t number) {
    exchange.result = page::mendedAt(tree_t(exchange.take(size)), static_cast<std::size_t>(number));
    return 1;
}

std::int32_t pageMendKind(std::size_t size, std::int32_t code) {
    exchange.result = page::mendedOf(tree_t(exchange.take(size)), static_cast<findingCode_t>(code));
    return 1;
}

/// A message in another form: 0 readable, 1 JSON, 2 flat.
std::int32_t pageForm(std::size_t size, std::int32_t form) {
    const tree_t tree(exchange.take(size));
    const std::vector<finding_t> findings = check(tree);
    if (form == 0)
        appendShow(exchange.result, tree, {.styles = {}, .findings = findings});
    else if (form == 1)
        appendJson(exchange.result, tree, {.findings = findings});
    else
        appendFlat(exchange.result, tree);
    return 1;
}

std::int32_t pageDifferences(std::size_t leftSize, std::size_t rightSize) {
    const tree_t left(exchange.take(leftSize));
    page::appendDifferences(exchange.result, left, tree_t(exchange.take(rightSize)));
    return 1;
}

/// The keys that a record of the message, by its node's number, may have and has not.
std::int32_t pageAddable(std::size_t size, std::int32_t node) {
    page::appendAddable(exchange.result, tree_t(exchange.take(size)), static_cast<std::size_t>(node));
    return 1;
}

/// What messages there are.
std::int32_t pageKinds() {
    page::appendKinds(exchange.result);
    return 1;
}

/// The names of what check() finds, one a line, in order of their bits in a row.
std::int32_t pageFindingNames() {
    for (std::size_t code = 0; code < findingCodeCount; ++code)
        exchange.result.append(findingName(static_cast<findingCode_t>(code))).append("\n");
    return 1;
}

/// Whether a text, of which this is the beginning, is made of messages in a form that a log has not.
std::int32_t pageIsForm(std::size_t size) {
    return isForm(formOf(exchange.take(size))) ? 1 : 0;
}

/// The messages of such a text, one a line; 0 with the reason when one can't be read.
std::int32_t pageReadForms(std::size_t size) {
    const std::string_view text = exchange.take(size);
    const form_t form = formOf(text);
    std::string messages;
    for (const std::string_view piece : splitForms(text, form)) {
        formResult_t read = readForm(piece, form);
        if (!read.isRead()) {
            read.offset += static_cast<std::size_t>(piece.data() - text.data());
            exchange.result = read.errorIn(text);
            return 0;
        }
        messages.append(read.text).append("\n");
    }
    exchange.result = messages;
    return 1;
}

/// How messages are encoded that were not found in a text with this beginning, and what decodes them; else nothing.
std::int32_t pageEncoding(std::size_t size) {
    exchange.result = encodingIn(exchange.take(size));
    return 1;
}

void pageLogBegin() {
    rows = std::make_unique<page::logRows_t>();
}

/// The next block of a log, and an empty one at its end: the rows of the messages that were found.
std::int32_t pageLogTake(std::size_t size) {
    if (rows == nullptr)
        return 0;
    rows->take(exchange.take(size), exchange.result);
    if (size == 0)
        rows.reset();
    return 1;
}

/// The row of a message alone.
std::int32_t pageRow(std::size_t size) {
    const std::string_view text = exchange.take(size);
    page::logRows_t alone;
    alone.take(text, exchange.result);
    alone.take({}, exchange.result);
    return 1;
}

/// What a message says in a line; `paths`, one a line, are those whose values are wanted beside.
std::int32_t pageDigest(std::size_t size, std::size_t pathsSize) {
    const tree_t tree(exchange.take(size));
    page::appendDigest(exchange.result, tree, exchange.take(pathsSize));
    return 1;
}

/// How many numbers are missing in front of each of these sequence numbers.
std::int32_t pageMissing(std::size_t size) {
    page::appendMissing(exchange.take(size), exchange.result);
    return 1;
}

/// How a log with this beginning, or of which this is all, is wrapped: a number of wrapping_t. pageUnwrapTake() then
/// gives what its blocks hold.
std::int32_t pageUnwrapBegin(std::size_t size, std::int32_t isAll) {
    const wrapping_t wrapping = wrappingOfLog(exchange.take(size), isAll != 0);
    unwrapper = std::make_unique<unwrapper_t>(wrapping);
    exchange.result = std::to_string(static_cast<int>(wrapping));
    return 1;
}

/// The next block, and an empty one at the log's end.
std::int32_t pageUnwrapTake(std::size_t size) {
    exchange.result = size > 0 ? unwrapper->take(exchange.take(size)) : unwrapper->finish();
    return 1;
}

/// The next piece of a log that goes on, and an empty one at its end: what it holds, be it wrapped; how that is, a
/// number of wrapping_t, stands in front.
std::int32_t pageGrow(std::size_t size) {
    const std::string_view log = size > 0 ? growing.take(exchange.take(size)) : growing.finish();
    exchange.result.assign(1, static_cast<char>(growing.wrapping())).append(log);
    return 1;
}

/// Chooses messages by their values; 0 when it is no condition, with the first and the last end of what is wrong in it,
/// and why, on a line each.
std::int32_t pageWhereChoose(std::size_t size) {
    const std::string_view text = exchange.take(size);
    expression_t chosen;
    if (const std::optional<expressionError_t> error = chosen.read(text))
        return refuse(
            joined({std::to_string(error->place.start), "\n", std::to_string(error->place.end), "\n", error->words}));
    where = std::move(chosen);
    return 1;
}

/// A byte for each message whose start and size in the block are given as 32-bit numbers: whether it is chosen.
std::int32_t pageWhereTake(std::size_t placesSize, std::size_t blockSize) {
    const std::string_view places = exchange.take(placesSize);
    page::appendChosen(exchange.result, where, places, exchange.take(blockSize));
    return 1;
}

std::int32_t pageSeriesChoose(std::size_t size) {
    series.choose(exchange.take(size));
    return 1;
}

std::int32_t pageSeriesTake(std::size_t placesSize, std::size_t blockSize) {
    const std::string_view places = exchange.take(placesSize);
    series.take(places, exchange.take(blockSize), exchange.result);
    return 1;
}

} // extern "C"
