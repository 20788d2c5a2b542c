// The calls that the page's script makes: see core.js. Bytes go through the one exchange.
#include "tools/page/core/exchange.hpp"
#include "tools/page/core/logRows.hpp"
#include "tools/page/core/messageView.hpp"
#include "vek/inspect/change/change.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/forms/forms.hpp"

#include <memory>

namespace {

using namespace vek;
using namespace vek::inspect;

page::exchange_t exchange;
std::unique_ptr<page::logRows_t> rows;
page::series_t series;

// 1 with the result, or 0 with the reason in its place.
std::int32_t handOut(const formResult_t &read) {
    exchange.result = read.isRead() ? read.text : read.error;
    return read.isRead() ? 1 : 0;
}

// A change of a damaged message is one of the message that sealing it gives.
change_t changedOrSealed(std::string_view text, std::string_view path, std::string_view value) {
    const tree_t tree(text);
    change_t change = changed(tree, path, value);
    if (change.isDone() || tree.envelope().isWholeForHost())
        return change;
    sealOptions_t options;
    options.strictness = strictness_t::certain; // the rest is for the next change
    const formResult_t whole = seal(text, options);
    return whole.isRead() ? changed(tree_t(whole.text), path, value) : change;
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

std::int32_t pageSet(std::size_t textSize, std::size_t pathSize, std::size_t valueSize) {
    const std::string_view text = exchange.take(textSize), path = exchange.take(pathSize);
    const change_t change = changedOrSealed(text, path, exchange.take(valueSize));
    exchange.result = change.isDone() ? change.text : change.error;
    return change.isDone() ? 1 : 0;
}

std::int32_t pageSeal(std::size_t size) {
    return handOut(seal(exchange.take(size)));
}

/// A message in another form: 0 readable, 1 JSON, 2 flat.
std::int32_t pageForm(std::size_t size, std::int32_t form) {
    const tree_t tree(exchange.take(size));
    const std::vector<finding_t> findings = check(tree);
    if (form == 0)
        appendShow(exchange.result, tree);
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

std::int32_t pageCatalogue() {
    appendCatalogueJson(exchange.result);
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
