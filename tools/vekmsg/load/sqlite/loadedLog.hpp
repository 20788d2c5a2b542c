// loadedLog_t: a log in the table of sources, and how far it is loaded.
//
// A log is known again by its first bytes, under its name or, when another log has that now, under a new one. How far
// it is loaded is written in the transaction that writes its rows, so both are always true together.
#pragma once

#include "tools/vekmsg/load/sqlite/archiveFile.hpp"
#include "vek/inspect/log/logScanner.hpp"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace vek::tool {

class loadedLog_t {
public:
    /// Bytes that tell one log from another.
    static constexpr std::size_t firstBytes = 4096;

    struct message_t {
        std::uint64_t offset = 0, size = 0, hash = 0;
    };

    /// The first bytes of the file that has a name now; asked when a log seems to have a new one.
    using beginning_t = std::function<std::string(const std::string &name)>;

    /// Finds the log that begins so, or enters it. Runs in a transaction of the caller's.
    loadedLog_t(database_t &database, std::string_view name, std::string_view first, bool isNew,
                const beginning_t &beginningOf);

    std::int64_t number() const { return number_; }
    /// As it is called in the table, which is its older name when it was renamed.
    const std::string &name() const { return name_; }
    /// Where to go on.
    const inspect::logPosition_t &position() const { return position_; }
    /// The message that was loaded last: it must still be where it was. Of size 0 when there is none.
    const message_t &last() const { return last_; }
    /// There are rows of messages behind the position, made of what stood at the log's end.
    bool hasTail() const { return hasTail_; }
    /// Entered now, beside others of this name that begin otherwise.
    bool isBesideOthers() const { return isBesideOthers_; }

    void setHasTail(bool hasTail) { hasTail_ = hasTail; }
    /// More of its beginning is known.
    void setFirst(std::string_view first) { first_ = first.substr(0, firstBytes); }
    /// Throws when another process loads the same log.
    void checkIsOwn(database_t &database) const;
    void save(database_t &database, const inspect::logPosition_t &position, const message_t &last);

private:
    bool find(database_t &database, std::string_view first, const beginning_t &beginningOf);
    void read(const statement_t &row);

    std::int64_t number_ = 0;
    std::string name_;
    std::string first_;
    inspect::logPosition_t position_;
    message_t last_;
    bool hasTail_ = false, isBesideOthers_ = false;
};

/// 64-bit FNV-1a.
std::uint64_t hashOf(std::string_view bytes);

} // namespace vek::tool
