// logLoad_t: one log on its way into the database, block by block from its start or from any place in front of what is
// needed.
//
// Its calls that write run in a transaction of the caller's. One thread at a time.
#pragma once

#include "tools/vekmsg/load/archive.hpp"
#include "tools/vekmsg/load/loaders.hpp"
#include "tools/vekmsg/reading/input.hpp"
#include "tools/vekmsg/reading/timeFinder.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/archive/marks.hpp"
#include "vek/inspect/log/logScanner.hpp"

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace vek::tool {

/// The first blocks of an input, as many as a log is known by.
std::string readBeginning(source_t &source);

/// So little is there of a log, or of one that begins the same, that nobody knows whether the two are one.
class tooShort_t : public usageError_t {
    using usageError_t::usageError_t;
};

class logLoad_t final : private inspect::messageSink_t {
public:
    logLoad_t(archive_t &archive, const timeFinder_t &times, const loadOptions_t &options, const std::string &file);

    bool hasBegun() const { return hasBegun_; }

    /// What it will begin as with these first bytes.
    archive_t::coming_t coming(std::string_view first, std::uint64_t size, bool isNew);
    /// Enters the log by its first bytes: as the one in the archive that begins so, whatever its file is called now.
    /// `isNew`: it is known to be another one than before. Throws tooShort_t when that can't be told yet.
    void begin(std::string_view first, bool isNew);

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

    /// Takes away what the log was loaded as before, when it was to be replaced.
    void forgetReplaced();

    /// Nothing more was there than is loaded, and not even that.
    bool isCutShort() const { return hasBegun_ && at_ < log_.position.offset; }
    /// No message was ever found in it.
    bool isWithoutMessages() const { return log_.last.size == 0 && !log_.hasTail && !hasCutOff_; }
    /// Behind archive_t::begin(), and in front of archive_t::commit().
    void check();
    void save();
    /// Nothing more comes of it.
    void leave();

private:
    void message(const inspect::foundMessage_t &found) override;
    void between(std::string_view words) override;
    void putFront(std::uint64_t offset, std::string_view text);
    void saveFront(std::uint64_t offset);
    void takeHead(std::string_view first);
    bool find(const std::string &name);
    void beginAnew(const std::string &name);
    void refuseTwice(const std::string &name);
    bool isCalled(const inspect::archivedLog_t &known, const std::string &name) const;
    bool isSame(const inspect::archivedLog_t &known, bool isNamedSo) const;
    bool isOfOtherOrigin(const inspect::archivedLog_t &known) const;
    bool isInDoubt(const inspect::archivedLog_t &known) const;
    void refuseDoubtful() const;
    void refuseExtract(std::string_view first);
    void saveMarks();
    std::string_view verify(std::string_view block);
    void dropTail();

    archive_t &archive_;
    const timeFinder_t &times_;
    const loadOptions_t &options_;
    const std::string file_; // for people
    const bool isNamed_;     // by the user: a log of another name is another one
    inspect::archivedLog_t log_;
    std::vector<inspect::archivedLog_t> replaced_;
    std::set<std::uint64_t> numbers_; // it was found under
    std::string doubtful_;            // the name of a log that may be this one
    inspect::logScanner_t scanner_;
    inspect::tree_t tree_;
    inspect::rowMaker_t rows_;
    inspect::markMaker_t marks_;
    std::string room_;
    std::string front_;                      // what came behind the last message
    std::uint64_t frontStart_ = 0;           // where in the log
    std::optional<inspect::logTime_t> time_; // of the last message
    std::string lastText_;                   // of the last message, or what stands in its place now
    std::uint64_t at_ = 0;
    bool hasBegun_ = false, isTail_ = false, isTouched_ = false;
    bool isOverlapTold_ = false;
    bool hasCutOff_ = false; // a message at the end waits for its rest
};

} // namespace vek::tool
