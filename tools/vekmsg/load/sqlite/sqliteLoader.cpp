// vekmsg load into an SQLite database: the logs one behind the other, or all at once when they are followed.
#include "tools/vekmsg/load/loadSummary.hpp"
#include "tools/vekmsg/load/loaders.hpp"
#include "tools/vekmsg/load/sqlite/logLoad.hpp"
#include "tools/vekmsg/reading/following.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "tools/vekmsg/terminal/progress.hpp"

#include <algorithm>
#include <cstdio>

namespace vek::tool {

namespace {

class sqliteLoader_t {
public:
    explicit sqliteLoader_t(const loadOptions_t &options)
        : options_(options), times_(options.reading.timeExpression), archive_(options.target) {}

    int run() {
        const std::uint64_t begun = milliseconds();
        if (options_.reading.follows)
            follow();
        else
            for (const std::string &name : options_.reading.files)
                loadAll(name);
        progress_.clear();
        if (!options_.isQuiet) {
            sayLoaded(archive_.counts().messages, archive_.counts().damaged, milliseconds() - begun);
            sayHolds(options_.target, archive_.database().number("SELECT count(*) FROM messages"));
        }
        return status_;
    }

private:
    // Few enough that others soon see them, and enough that their cost is spread.
    static constexpr std::int64_t messagesAtOnce = 5'000;

    std::string sourceName(const std::string &file) const {
        return options_.source.source.empty() ? file : options_.source.source;
    }
    bool isRenamable() const { return options_.source.source.empty(); }

    void begin(logLoad_t &log) {
        if (!transaction_) {
            transaction_.emplace(archive_.database());
            atBegin_ = archive_.counts().messages;
        }
        log.check();
    }

    void commit() {
        if (!transaction_)
            return;
        for (logLoad_t *log : logs_)
            log->save();
        transaction_->commit();
        transaction_.reset();
    }

    void takeBlock(logLoad_t &log, std::string_view block) {
        begin(log);
        if (!log.hasBegun())
            log.begin(block, false, isRenamable());
        log.take(block);
        if (archive_.counts().messages - atBegin_ >= messagesAtOnce)
            commit();
    }

    void complainAbout(const std::string &words, exitCode_t status) {
        progress_.clear();
        complain(words);
        status_ = std::max(status_, status);
    }

    [[noreturn]] static void failOnCutShort(const std::string &file) {
        throw usageError_t(file +
                           " is shorter than what was loaded of it, and nothing changes; when it is another log, "
                           "load it with --source NAME");
    }

    void loadAll(const std::string &file) {
        logLoad_t log(archive_, times_, sourceName(file));
        logs_ = {&log};
        try {
            const std::unique_ptr<source_t> source = openSource(file);
            progress_.start(file, source->size());
            while (readBlock(*source, log))
                progress_.update(source->taken());
            if (log.isCutShort())
                failOnCutShort(file);
            if (log.hasBegun()) {
                begin(log);
                log.takeTail();
            }
            if (log.at() > 0 && log.isWithoutMessages())
                complainAbout("no message in " + file + "; a message begins with @@ and its number", exitDifferences);
        } catch (const usageError_t &error) {
            complainAbout(error.what(), exitUsage);
        }
        commit();
        logs_.clear();
    }

    bool readBlock(source_t &source, logLoad_t &log) {
        if (log.hasBegun() && log.needed() > log.at() && source.skip(log.needed() - log.at()))
            log.skipTo(log.needed());
        std::string beginning;
        if (!log.hasBegun())
            beginning = readBeginning(source);
        const std::string_view block = log.hasBegun() ? source.next() : std::string_view(beginning);
        if (!block.empty())
            takeBlock(log, block);
        return !block.empty();
    }

    // A followed log. What stands at its end is loaded when it stands still.
    class followed_t final : public followedLog_t {
    public:
        followed_t(const std::string &file, sqliteLoader_t &loader) : followedLog_t(file), loader_(loader) {
            restart();
        }
        ~followed_t() override { std::erase(loader_.logs_, log_.get()); }

    private:
        void take(std::string_view block) override {
            loader_.begin(*log_);
            if (!log_->hasBegun())
                log_->begin(block, isRotated_, loader_.isRenamable() && !isRotated_);
            loader_.takeBlock(*log_, block);
        }
        void end(bool isRotated) override {
            if (log_->hasBegun()) {
                loader_.begin(*log_);
                log_->finish();
            }
            if (!isRotated)
                return;
            loader_.commit();
            isRotated_ = true;
            restart();
        }
        void standStill() override {
            if (log_->isCutShort())
                failOnCutShort(name());
            if (log_->hasBegun()) {
                loader_.begin(*log_);
                log_->takeTail();
            }
        }
        void fail(const usageError_t &error) override { loader_.complainAbout(error.what(), exitUsage); }

        void restart() {
            std::erase(loader_.logs_, log_.get());
            log_ = std::make_unique<logLoad_t>(loader_.archive_, loader_.times_, loader_.sourceName(name()));
            loader_.logs_.push_back(log_.get());
        }

        sqliteLoader_t &loader_;
        std::unique_ptr<logLoad_t> log_;
        bool isRotated_ = false;
    };

    void follow() {
        std::vector<std::unique_ptr<followedLog_t>> logs;
        for (const std::string &name : options_.reading.files)
            logs.push_back(std::make_unique<followed_t>(name, *this));
        tool::follow(std::move(logs), [this](bool) {
            commit();
            return true;
        });
    }

    const loadOptions_t &options_;
    timeFinder_t times_;
    archiveFile_t archive_;
    std::optional<transaction_t> transaction_;
    std::vector<logLoad_t *> logs_; // that may have to be saved
    progress_t progress_;
    std::int64_t atBegin_ = 0;
    exitCode_t status_ = exitFine;
};

} // namespace

int loadIntoSqlite(const loadOptions_t &options) {
    return sqliteLoader_t(options).run();
}

} // namespace vek::tool
