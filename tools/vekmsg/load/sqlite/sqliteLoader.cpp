// vekmsg load into an SQLite database: the logs one behind the other, or all at once when they are followed.
#include "tools/vekmsg/load/loadSummary.hpp"
#include "tools/vekmsg/load/loaders.hpp"
#include "tools/vekmsg/load/logLoad.hpp"
#include "tools/vekmsg/problem.hpp"
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
        } catch (const databaseError_t &) {
            throw;
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

    struct followed_t {
        followed_t(archiveFile_t &archive, const timeFinder_t &times, const std::string &path, std::string name)
            : file(path), log(std::make_unique<logLoad_t>(archive, times, std::move(name))) {}
        followedFile_t file;
        std::unique_ptr<logLoad_t> log;
        bool isRotated = false, isEnded = false;
    };

    // Takes what has come to a followed log; false when nothing had.
    bool takeNews(followed_t &one) {
        using enum followedFile_t::state_t;
        std::string_view block;
        const followedFile_t::state_t state = one.file.next(block);
        if (state == bytes) {
            begin(*one.log);
            if (!one.log->hasBegun())
                one.log->begin(block, one.isRotated, isRenamable() && !one.isRotated);
            takeBlock(*one.log, block);
        } else if (state != still && one.log->hasBegun()) {
            begin(*one.log);
            one.log->finish();
        }
        if (state == rotated) {
            commit();
            one.log = std::make_unique<logLoad_t>(archive_, times_, sourceName(one.file.name()));
            one.isRotated = true;
            gatherLogs();
        }
        one.isEnded = state == ended;
        return state != still;
    }

    void follow() {
        for (const std::string &name : options_.reading.files)
            followed_.push_back(std::make_unique<followed_t>(archive_, times_, name, sourceName(name)));
        constexpr unsigned pause = 20, stillRounds = 1000 / pause;
        for (unsigned still = 0; !followed_.empty();) {
            gatherLogs();
            bool isBusy = false;
            for (const auto &one : followed_)
                isBusy |= step(*one, still == stillRounds);
            commit();
            std::erase_if(followed_, [](const auto &one) { return one->isEnded; });
            still = isBusy ? 0 : still + 1;
            if (!isBusy)
                sleepMilliseconds(pause);
        }
        logs_.clear();
    }

    void gatherLogs() {
        logs_.clear();
        for (const auto &one : followed_)
            logs_.push_back(one->log.get());
    }

    // `isStill`: a message that was cut off will not go on soon.
    bool step(followed_t &one, bool isStill) {
        try {
            const bool isBusy = takeNews(one);
            if (isStill && one.log->isCutShort() && !isBusy)
                failOnCutShort(one.file.name());
            if (isStill && one.log->hasBegun() && !isBusy) {
                begin(*one.log);
                one.log->takeTail();
            }
            return isBusy;
        } catch (const databaseError_t &) {
            throw;
        } catch (const usageError_t &error) {
            complainAbout(error.what(), exitUsage);
            one.isEnded = true;
        }
        return false;
    }

    const loadOptions_t &options_;
    timeFinder_t times_;
    archiveFile_t archive_;
    std::optional<transaction_t> transaction_;
    std::vector<std::unique_ptr<followed_t>> followed_;
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
