// Whatever stands in a log: its messages go into a database, each with a row, and with its text when something is wrong
// with it; taken away again, nothing of them stays.
#include "fuzz/fuzzInput.hpp"
#include "tools/vekmsg/load/archiveFile.hpp"
#include "vek/inspect/logScanner.hpp"

using namespace vek;
using namespace vek::inspect;

namespace {

class loading_t : public messageSink_t {
public:
    loading_t(tool::archiveFile_t &archive) : archive_(archive) {}

    void message(const foundMessage_t &found) override {
        tree_.read(found.text);
        archive_.setSource(1);
        rows_.make(tree_, {"log", found.offset, found.line, timeIn(found.lineHead)}, archive_);
        ++messages;
        damaged += isClean(tree_) ? 0 : 1;
    }

    std::int64_t messages = 0, damaged = 0;

private:
    tool::archiveFile_t &archive_;
    tree_t tree_;
    rowMaker_t rows_;
};

void expectNumber(const std::string &log, tool::database_t &database, const std::string &what, std::int64_t expected) {
    test::expectSame(log, what + " is " + std::to_string(expected),
                     what + " is " + std::to_string(database.number("SELECT " + what + " FROM messages")));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static tool::archiveFile_t archive(":memory:");
    const std::string log = test::textOf(data, size);
    tool::database_t &database = archive.database();
    const tool::transaction_t transaction(database); // never committed
    loading_t loading(archive);
    logScanner_t scanner;
    scanner.feed(log, loading);
    scanner.finish(loading);
    expectNumber(log, database, "count(*)", loading.messages);
    expectNumber(log, database, "count(text)", loading.damaged);
    if (size % 16 == 0) {
        archive.removeFrom(1, 0);
        expectNumber(log, database, "count(*)", 0);
    }
    return 0;
}
