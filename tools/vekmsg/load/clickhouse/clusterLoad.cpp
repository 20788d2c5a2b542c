// vekmsg load into a ClickHouse server: reads the logs as every command does.
#include "tools/vekmsg/load/clickhouse/clusterStore.hpp"
#include "tools/vekmsg/load/loadSummary.hpp"
#include "tools/vekmsg/load/loaders.hpp"
#include "tools/vekmsg/reading/reader.hpp"

#include <optional>

namespace vek::tool {

namespace {

class clusterTask_t final : public task_t {
public:
    clusterTask_t(const loadOptions_t &options, clusterStore_t &store)
        : options_(options), times_(options.reading.timeExpression), store_(store) {}

    void take(const item_t &item) override {
        if (isUnfinished(item))
            return;
        log_t &log = logs_[std::string(item.file)];
        const std::string name = options_.source.source.empty() ? std::string(item.file) : options_.source.source;
        inspect::rowFront_t front{name, item.offset, item.line, times_.in(item.lineHead)};
        if (log.source.empty() || item.offset <= log.last) { // another log has the name from here on
            firstRow_t first(store_, name);
            rows_.make(item.tree(), front, first);
            log.source = first.source;
            if (log.source != name)
                complain(name + " is another log than the one that was loaded under this name; it is loaded as " +
                         log.source);
        }
        log.last = item.offset;
        front.source = log.source;
        rows_.make(item.tree(), front, store_);
        store_.endMessage();
        if (store_.hasUnsent() && !unsentSince_)
            unsentSince_ = milliseconds();
    }

    /// When a followed log stands still, what came is sent, though not more than once a second.
    void pause() override {
        if (!unsentSince_ || milliseconds() - *unsentSince_ < 1000)
            return;
        store_.commit();
        unsentSince_.reset();
    }

private:
    struct log_t {
        std::string source;
        std::uint64_t last = 0; // offset
    };
    // Finds the source by the first row that is made of a message, which is that of `messages`.
    struct firstRow_t final : inspect::rowSink_t {
        firstRow_t(clusterStore_t &store, const std::string &log) : store_(store), log_(log) {}
        void row(const inspect::row_t &row) override {
            if (source.empty())
                source = store_.sourceOf(log_, row);
        }
        std::string source;

    private:
        clusterStore_t &store_;
        const std::string &log_;
    };

    // The rest of a message may be written at this moment; rows that are there are never taken back.
    static bool isUnfinished(const item_t &item) {
        if (!item.mayGrow || item.text.ends_with("!!"))
            return false;
        complain(item.place() + ": the log ends within a message, which is loaded when it goes on");
        return true;
    }

    const loadOptions_t &options_;
    const timeFinder_t times_;
    clusterStore_t &store_;
    inspect::rowMaker_t rows_;
    std::unordered_map<std::string, log_t> logs_; // by file
    std::optional<std::uint64_t> unsentSince_;
};

} // namespace

int loadIntoCluster(const loadOptions_t &options) {
    const std::uint64_t begun = milliseconds();
    clusterStore_t store(options.target);
    store.expect(options.source.source.empty() ? options.reading.files : std::vector{options.source.source});
    clusterTask_t task(options, store);
    reader_t reader(options.reading, task);
    reader.run();
    store.commit();
    const int status = reader.statusWithMessages();
    if (!options.isQuiet) {
        sayLoaded(store.messages(), store.damaged(), milliseconds() - begun);
        sayHolds(store.name(), store.all());
    }
    return status;
}

} // namespace vek::tool
