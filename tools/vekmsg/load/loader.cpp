// The loader: the logs one behind the other, or all at once when they are followed.
#include "tools/vekmsg/load/loadSummary.hpp"
#include "tools/vekmsg/load/logLoad.hpp"
#include "tools/vekmsg/load/logNames.hpp"
#include "tools/vekmsg/load/namePattern.hpp"
#include "tools/vekmsg/load/soundSource.hpp"
#include "tools/vekmsg/reading/following.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "tools/vekmsg/terminal/progress.hpp"

#include <algorithm>
#include <utility>

namespace vek::tool {

using inspect::archivedLog_t;

namespace {

// A log without a zone has the time of this place.
std::optional<logTime_t> oldestKept(const std::string &keep) {
    if (keep.empty())
        return std::nullopt;
    const std::optional<givenTime_t> time = timeOfArgument("-" + keep);
    if (!time)
        throw usageError_t("--keep " + keep + ": how long? write 90d, 12h, or 30m");
    return time->local.isBefore(time->zoned) ? time->local : time->zoned;
}

class loader_t {
    class followed_t;

public:
    loader_t(archive_t &archive, const loadOptions_t &options)
        : options_(options), times_(options.reading.timeExpression, options.reading.zone), archive_(archive) {}

    int run() {
        const std::uint64_t begun = committed_ = milliseconds();
        forget();
        if (options_.reading.follows)
            follow();
        else
            loadFiles();
        commit(true);
        removeOld();
        progress_.clear();
        if (!options_.isQuiet) {
            if (!options_.reading.files.empty())
                sayLoaded(archive_.counts().messages, archive_.counts().damaged, milliseconds() - begun);
            sayHolds(archive_.name(), archive_.all());
        }
        return status_;
    }

private:
    void forget() {
        if (options_.forgotten.empty())
            return;
        const std::vector<archivedLog_t> logs = archive_.logs();
        checkNamed("--forget", options_.forgotten, logs, &archivedLog_t::name, archive_.name());
        for (const archivedLog_t &log : logs)
            if (std::ranges::find(options_.forgotten, log.name) != options_.forgotten.end())
                inTransaction([&] { archive_.forget(log); });
        if (!options_.isQuiet)
            for (const std::string &name : options_.forgotten)
                sayForgotten(name);
    }

    void removeOld() {
        removed_ = milliseconds();
        const std::optional<logTime_t> time = oldestKept(options_.keep);
        std::int64_t count = 0;
        if (time)
            inTransaction([&] { count = archive_.removeOlder(*time); });
        if (count > 0 && !options_.isQuiet)
            sayRemoved(count, time->inWords());
    }

    template <class Do>
    void inTransaction(Do change) {
        archive_.begin();
        change();
        archive_.commit(true);
    }

    void begin(logLoad_t &log) {
        if (!archive_.hasBegun())
            archive_.begin();
        log.check();
    }

    void commit(bool isLast) {
        committed_ = milliseconds();
        if (!archive_.hasBegun())
            return;
        for (logLoad_t *log : logs_)
            log->save();
        archive_.commit(isLast);
    }

    void takeBlock(logLoad_t &log, std::string_view block) {
        begin(log);
        if (!log.hasBegun())
            log.begin(block, false);
        log.take(block);
        if (archive_.isFull() && !options_.isReplacing)
            commit(false);
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

    void loadFiles() {
        const std::vector<std::string> &names = options_.reading.files;
        const std::size_t together = options_.isReplacing ? 0 : archive_.expected();
        for (std::size_t at = 0; at < names.size(); ++at) {
            if (together != 0 && at % together == 0)
                expect({names.data() + at, std::min(together, names.size() - at)});
            loadAll(names[at]);
        }
    }

    // Files that are the log itself, as most are; the others are asked about when they come.
    void expect(std::span<const std::string> names) {
        std::vector<archive_t::coming_t> coming;
        for (const std::string &name : names)
            try {
                const std::optional<fileIdentity_t> file = identityOf(name);
                if (names.size() < 2 || name == "-" || !file || !file->isRegular)
                    continue;
                const std::unique_ptr<source_t> source = openSource(name);
                if (const std::string first = readBeginning(*source);
                    source->isPlain() && !source->isPacked() && !first.empty())
                    coming.push_back(logLoad_t(archive_, times_, options_, name).coming(first, file->size, false));
            } catch (const usageError_t &) {
                continue; // which is told when it is loaded
            }
        archive_.expect(coming);
    }

    void loadAll(const std::string &file) {
        logLoad_t log(archive_, times_, options_, file);
        logs_ = {&log};
        try {
            const std::unique_ptr<source_t> source = openSound(file);
            progress_.start(file, source->size());
            while (readBlock(*source, log))
                progress_.update(source->taken());
            if (log.isCutShort())
                failOnCutShort(file);
            if (log.hasBegun()) {
                begin(log);
                if (archive_.canRemove() || (source->isPlain() && source->size() > 0))
                    log.takeTail();
                else
                    log.finish(); // which can't grow
                log.forgetReplaced();
            }
            if (log.at() > 0 && log.isWithoutMessages())
                complainAbout("no message in " + file + "; a message begins with @@ and its number", exitDifferences);
        } catch (const usageError_t &error) {
            complainAbout(error.what(), exitUsage);
        }
        if (archive_.hasBegun())
            log.save();
        if (archive_.isFull() || milliseconds() - committed_ >= archive_.patience())
            commit(true);
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
        followed_t(const std::string &file, loader_t &loader) : followedLog_t(file), loader_(loader) { restart(); }
        ~followed_t() override {
            std::erase(loader_.logs_, log_.get());
            std::erase(loader_.coming_, this);
        }

        archive_t::coming_t coming() {
            const std::optional<fileIdentity_t> file = identityOf(name());
            return log_->coming(first_, file ? file->size : 0, isRotated_);
        }
        void begin() {
            loader_.begin(*log_);
            try {
                log_->begin(first_, isRotated_);
            } catch (const tooShort_t &error) {
                return await(error);
            }
            loader_.takeBlock(*log_, first_);
            beginning_.clear();
        }

    private:
        // Logs that begin in one round do so together; their blocks stay where they are until the next one.
        void take(std::string_view block) override {
            if (log_->hasBegun())
                return loader_.takeBlock(*log_, block);
            first_ = beginning_.empty() ? block : beginning_ += block;
            loader_.coming_.push_back(this);
        }
        void end(bool isRotated) override {
            if (log_->hasBegun()) {
                loader_.begin(*log_);
                log_->finish();
            }
            if (!isRotated)
                return;
            log_->leave();
            isRotated_ = true;
            beginning_.clear();
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

        // It may grow until it can be told from others.
        void await(const tooShort_t &error) {
            if (first_.size() >= archivedLog_t::firstBytes)
                throw error;
            if (beginning_.empty()) {
                fail(error);
                beginning_ = first_;
            }
            restart();
        }

        void restart() {
            std::erase(loader_.logs_, log_.get());
            log_ = std::make_unique<logLoad_t>(loader_.archive_, loader_.times_, loader_.options_, name());
            loader_.logs_.push_back(log_.get());
        }

        loader_t &loader_;
        std::unique_ptr<logLoad_t> log_;
        std::string_view first_;
        std::string beginning_; // while it is too short to be known
        bool isRotated_ = false;
    };

    void beginComing() {
        const std::vector<followed_t *> logs = std::exchange(coming_, {});
        std::vector<archive_t::coming_t> coming;
        coming.reserve(logs.size());
        for (followed_t *log : logs)
            if (archive_.expected() != 0)
                coming.push_back(log->coming());
        archive_.expect(coming);
        for (followed_t *log : logs)
            log->attempt([log] { log->begin(); });
    }

    void follow() {
        std::vector<std::unique_ptr<followedLog_t>> logs;
        for (const std::string &name : options_.reading.files)
            logs.push_back(std::make_unique<followed_t>(name, *this));
        tool::follow(std::move(logs), [this](bool) {
            if (!coming_.empty())
                beginComing();
            if (milliseconds() - committed_ >= archive_.patience())
                commit(false);
            constexpr std::uint64_t hour = 3'600'000;
            if (!options_.keep.empty() && milliseconds() - removed_ >= hour) {
                commit(true);
                removeOld();
            }
            return true;
        });
    }

    const loadOptions_t &options_;
    timeFinder_t times_;
    archive_t &archive_;
    std::vector<logLoad_t *> logs_;    // that may have to be saved
    std::vector<followed_t *> coming_; // that begin after this round
    std::uint64_t committed_ = 0, removed_ = milliseconds();
    progress_t progress_;
    exitCode_t status_ = exitFine;
};

} // namespace

void checkArguments(const loadOptions_t &options, bool isThere) {
    static_cast<void>(oldestKept(options.keep));
    static_cast<void>(timeFinder_t(options.reading.timeExpression, options.reading.zone));
    checkPattern(options.pattern);
    if (options.isReplacing && options.reading.follows)
        throw usageError_t("--replace loads a log to its end and --follow goes on: first the one, then the other");
    if (!isThere && !options.forgotten.empty())
        throw usageError_t("--forget " + options.forgotten.front() + ": there is no " + options.target +
                           " that it could be in");
    if (!isThere && options.reading.files.empty())
        throw usageError_t("--keep " + options.keep + ": there is no " + options.target +
                           " to take messages from; name the logs to load");
    if (!isThere && !options.reading.follows &&
        std::ranges::none_of(options.reading.files,
                             [](const std::string &name) { return name == "-" || identityOf(name); }))
        failOnFile("read", options.reading.files.front());
}

int loadInto(archive_t &archive, const loadOptions_t &options) {
    return loader_t(archive, options).run();
}

} // namespace vek::tool
