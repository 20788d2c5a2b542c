// Whatever stands in a log: its messages go into a database, each with a row, and with its text just when something is
// wrong with it, a host would write it otherwise, or its columns can't hold it; taken away again, nothing of them
// stays. The same rows as JSON say what goes into the columns.
#include "fuzz/fuzzInput.hpp"
#include "tools/vekmsg/load/sqlite/archiveFile.hpp"
#include "vek/inspect/archive/rowJson.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/log/logScanner.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/message/written.hpp"

#include <nlohmann/json.hpp>

#include <cmath>

using namespace vek;
using namespace vek::inspect;

namespace {

// What no column holds: the sign of a zero, and 16-bit codes that are no text.
bool isBeyondColumns(const tree_t &tree) {
    return std::any_of(tree.nodes().begin(), tree.nodes().end(), [&](const node_t &node) {
        const bool isCodes = targetOf(tree, node).kind == bodyTarget_t::kind_t::codes;
        return isCodes ? !wideText(tree, node) : !isText(node) && tree.value(node) == "-0.000000";
    });
}

bool isSame(const cell_t &cell, const nlohmann::json &json) {
    if (cell.kind == cell_t::kind_t::integer)
        return json == cell.integer;
    if (cell.kind == cell_t::kind_t::real && !std::isfinite(cell.real))
        return json == (cell.real < 0 ? "-inf" : "inf");
    return cell.kind == cell_t::kind_t::real ? json.is_number() && json.get<double>() == cell.real
                                             : json.is_string() && jsonBytes(json.get<std::string>()) == cell.text;
}

// What JSON makes of a row, compared with its cells.
class jsonRows_t final : public rowSink_t {
public:
    void row(const row_t &row) override {
        line_.clear();
        appendRowJson(line_, row, true);
        const nlohmann::json json = nlohmann::json::parse(line_);
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            const cell_t &cell = row.cells[i];
            const auto member = json.find(row.table.columns[i].name);
            const bool isList = cell.kind == cell_t::kind_t::list;
            const bool isSaid = isList ? cell.count > 0 : cell.kind != cell_t::kind_t::null;
            if (isSaid != (member != json.end()) || (isSaid && !isList && !isSame(cell, *member)) ||
                (isSaid && isList &&
                 !std::equal(member->begin(), member->end(), row.list(cell).begin(), row.list(cell).end(),
                             [](const auto &one, const cell_t &other) { return isSame(other, one); })))
                test::expectSame(line_, "the value of the row", row.table.columns[i].name);
        }
    }

private:
    std::string line_;
};

// Keeps its memory and its statements from log to log.
class loading_t : public messageSink_t {
public:
    void message(const foundMessage_t &found) override {
        tree_.read(found.text);
        const rowFront_t front{"log", found.offset, found.line, timeIn(found.lineHead), 1};
        if (test::choiceBy(std::string(found.text)) % 16 == 0)
            rows_.make(tree_, front, jsonRows_);
        rows_.make(tree_, front, archive_);
        ++messages_;
        needed_ += !check(tree_).empty() || asRead(tree_) != tree_.text() || isBeyondColumns(tree_);
    }

    void load(const std::string &log, bool isRemoved) {
        const tool::transaction_t transaction(archive_.database()); // never committed
        messages_ = needed_ = 0;
        logScanner_t scanner;
        scanner.feed(log, *this);
        scanner.finish(*this);
        archive_.flush();
        expectRows(log, messages_, needed_);
        if (isRemoved) {
            archive_.removeFrom(1, 0);
            expectRows(log, 0, 0);
        }
    }

private:
    void expectRows(const std::string &log, std::int64_t messages, std::int64_t needed) {
        count_.next();
        if (count_.integer(0) != messages || count_.integer(1) != needed)
            test::expectSame(log, "rows: " + std::to_string(messages) + ", with a text: " + std::to_string(needed),
                             std::to_string(count_.integer(0)) + ", " + std::to_string(count_.integer(1)));
        count_.next(); // to its end
    }

    tool::archiveFile_t archive_{":memory:"};
    tool::statement_t count_{archive_.database(), "SELECT count(*), count(text) FROM messages"};
    tree_t tree_;
    jsonRows_t jsonRows_;
    rowMaker_t rows_;
    std::int64_t messages_ = 0, needed_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static loading_t loading;
    const std::string log = test::textOf(data, size);
    loading.load(log, test::choiceBy(log) % 128 == 0); // as it goes through a hundred tables
    return 0;
}
