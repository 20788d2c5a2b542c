// logLoad_t: one log on its way into the database, block by block from its start or from any place in front of what is
// needed.
//
// Its calls that write run in a transaction of the caller's. One thread at a time.
#pragma once

#include "tools/vekmsg/load/sqlite/archiveFile.hpp"
#include "tools/vekmsg/load/sqlite/loadedLog.hpp"
#include "tools/vekmsg/reading/input.hpp"
#include "tools/vekmsg/reading/timeFinder.hpp"
#include "vek/inspect/log/logScanner.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vek::tool {

/// The first blocks of an input, as many as a log is known by.
std::string readBeginning(source_t &source);

class logLoad_t final : private inspect::messageSink_t {
public:
    logLoad_t(archiveFile_t &archive, const timeFinder_t &times, std::string name)
        : archive_(archive), times_(times), name_(std::move(name)) {}

    bool hasBegun() const { return log_.has_value(); }
    const std::string &name() const { return name_; }

    /// Enters the log by its first bytes. `isNew`: it is known to be another one than before. `isRenamable`: it may be
    /// one that was loaded under another name.
    void begin(std::string_view first, bool isNew, bool isRenamable);

    /// The offset of the next byte that matters; those in front may be left out with skipTo().
    std::uint64_t needed() const;
    void skipTo(std::uint64_t offset) { at_ = offset; }
    std::uint64_t at() const { return at_; }

    /// Takes the bytes at at(). Throws when they are not those of the log that was loaded.
    void take(std::string_view block);
    /// There are no more at the moment: what stands at the end is taken as it is, and anew when the log has grown.
    void takeTail();
    /// The log ends here for good.
    void finish();

    /// Nothing more was there than is loaded, and not even that.
    bool isCutShort() const { return hasBegun() && at_ < log_->position().offset; }
    /// No message was ever found in it.
    bool isWithoutMessages() const { return last_.size == 0 && !(log_ && log_->hasTail()); }
    /// In a transaction, in front of the first call that writes, and behind the last one.
    void check() const;
    void save();

private:
    void message(const inspect::foundMessage_t &found) override;
    std::string_view verify(std::string_view block);
    void dropTail();

    archiveFile_t &archive_;
    const timeFinder_t &times_;
    std::string name_;
    std::optional<loadedLog_t> log_;
    inspect::logScanner_t scanner_;
    inspect::tree_t tree_;
    inspect::rowMaker_t rows_;
    loadedLog_t::message_t last_;
    std::string first_;    // bytes of the log
    std::string lastText_; // of the last message, or what stands in its place now
    std::uint64_t at_ = 0;
    bool isTail_ = false, isTouched_ = false;
};

} // namespace vek::tool
