// archive_t: a database of messages, whichever it is: the logs it holds, and rows going into it.
//
// What comes between two commits is there as a whole or not at all; how far a log is loaded is written with it. What it
// does throws databaseError_t, and usageError_t when it is about one log. One thread at a time.
#pragma once

#include "tools/vekmsg/load/databaseError.hpp"
#include "vek/inspect/archive/rows.hpp"
#include "vek/inspect/archive/sources.hpp"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::tool {

class archive_t : public inspect::rowSink_t {
public:
    struct counts_t {
        std::int64_t messages = 0, damaged = 0;
    };

    virtual ~archive_t() = default;

    virtual const std::string &name() const = 0; ///< for people

    /// A log that is about to begin: as it will be entered, its size, and marks of its first messages.
    struct coming_t {
        inspect::archivedLog_t log;
        std::uint64_t size = 0;
        std::vector<std::int64_t> marks;
        bool isNew = false;
    };
    /// Asks what there is to ask for all of them at once. Each of them begins as without it, only faster.
    virtual void expect(std::span<const coming_t>) {}
    /// Of so many logs that are loaded one behind the other; 0: that makes nothing faster.
    virtual std::size_t expected() const { return 0; }

    /// Logs that may be this one: those that begin with the same bytes, and the latest of its name.
    virtual std::vector<inspect::archivedLog_t> find(const inspect::archivedLog_t &log) = 0;
    /// Gives a new log its number, or prepares one that was found for more of its rows. `isNew`: it is another one even
    /// when one begins the same.
    virtual void enter(inspect::archivedLog_t &log, bool isNew) = 0;
    /// One log, entered under several numbers by loaders that had begun at the same time, as far as is known without
    /// messages. Takes all of it from them, and gives the place of the one to go on with: of two at most one has rows.
    virtual std::size_t takeOver(std::span<const inspect::archivedLog_t>) { return 0; }

    /// The other log that has most of these messages, by their marks, and how many.
    struct overlap_t {
        inspect::archivedLog_t log; ///< number 0: there is none
        std::size_t count = 0;
    };
    virtual overlap_t overlap(const inspect::archivedLog_t &log, std::span<const std::int64_t> marks) = 0;
    /// Keeps marks of a log that are new, and looks for the same.
    virtual overlap_t mark(const inspect::archivedLog_t &log, std::span<const std::int64_t> marks) = 0;

    virtual void begin() = 0;
    virtual bool hasBegun() const = 0;
    /// In front of what comes of a log behind begin(): throws when another loader has gone on with it.
    virtual void check(const inspect::archivedLog_t &log) = 0;
    virtual void save(const inspect::archivedLog_t &log) = 0;
    /// `isLast`: nothing more comes for now.
    virtual void commit(bool isLast) = 0;
    /// Nothing more comes of a log that was saved.
    virtual void leave(const inspect::archivedLog_t &) {}
    /// There is so much that it should be committed.
    virtual bool isFull() const = 0;
    /// Milliseconds that a log's rows may wait for those of others.
    virtual unsigned patience() const = 0;

    /// Whether rows can be taken away again, as those of a message that was cut off.
    virtual bool canRemove() const = 0;
    /// Takes away the messages of a log from an offset on.
    virtual void removeFrom(std::uint64_t log, std::uint64_t offset) = 0;

    /// All logs that it holds.
    virtual std::vector<inspect::archivedLog_t> logs() = 0;
    /// Takes a log away, with all its rows and what is known of it, at the next commit.
    virtual void forget(const inspect::archivedLog_t &log) = 0;
    /// Takes away messages that are older than a time; how far logs are loaded stays. Gives their number.
    virtual std::int64_t removeOlder(const inspect::logTime_t &time) = 0;

    /// Messages that came, less those that were taken away; and all that are there.
    const counts_t &counts() const { return counts_; }
    virtual std::int64_t all() = 0;

protected:
    counts_t counts_;
};

std::unique_ptr<archive_t> openSqlite(const std::string &file);
/// `isPatient`: it waits for ever for a server that is away.
std::unique_ptr<archive_t> openCluster(const std::string &url, bool isPatient);

} // namespace vek::tool
