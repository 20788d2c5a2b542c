// database_t and statement_t: an SQLite database and its prepared statements, owned and with errors in words.
//
// Everything throws databaseError_t, after which a transaction can't go on. A statement must not outlive its database.
// One thread at a time.
#pragma once

#include "tools/vekmsg/load/databaseError.hpp"
#include "vek/inspect/archive/rows.hpp"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace vek::tool {

class database_t {
public:
    /// Opens a file, which is made when there is none and it may be written.
    explicit database_t(const std::string &file, bool isReadOnly = false);

    const std::string &file() const { return file_; }
    /// Throws when what was read may be mixed with what another program has written.
    void confirm() const;
    void run(const std::string &sql);
    /// Rows that the last statement wrote.
    int changes() const;
    /// The one number that a statement gives.
    std::int64_t number(const std::string &sql);

    /// Says what went wrong last, and what to do about it.
    [[noreturn]] void fail() const;

private:
    friend class statement_t;
    friend class transaction_t;
    struct closer_t {
        void operator()(sqlite3 *handle) const;
    };

    /// A file that nobody writes at the moment.
    struct rest_t {
        std::filesystem::file_time_type time;
        std::uintmax_t size = 0;
        bool operator==(const rest_t &) const = default;
    };
    static std::optional<rest_t> atRest(const std::string &file);
    void open(const std::string &name, int flags);
    bool isReadable();
    [[noreturn]] void failOnRights() const;

    std::string file_;
    std::optional<rest_t> rest_; // of one that is read alone
    std::unique_ptr<sqlite3, closer_t> handle_;
};

class statement_t {
public:
    statement_t(database_t &database, const std::string &sql);

    /// Parameters are counted from 1. Texts must stay as they are until run() or the end of the rows.
    void bind(int parameter, std::int64_t value);
    void bind(int parameter, double value);
    void bind(int parameter, std::string_view text);
    void bindBytes(int parameter, std::string_view bytes);
    /// A number, a text, or nothing.
    void bind(int parameter, const inspect::cell_t &cell);

    /// Runs a statement that gives no rows; it may be bound and run again.
    void run();
    /// Goes to the next row; false when there is none.
    bool next();
    /// Before it is bound and its rows are asked for again.
    void reset();
    bool isNull(int column) const;
    std::int64_t integer(int column) const;
    double real(int column) const;
    std::string text(int column) const;

private:
    struct closer_t {
        void operator()(sqlite3_stmt *handle) const;
    };
    void check(int result) const;

    database_t *database_;
    std::unique_ptr<sqlite3_stmt, closer_t> handle_;
};

/// A transaction that may write. Unless commit() is reached, nothing of it stays.
class transaction_t {
public:
    explicit transaction_t(database_t &database) : database_(database) { database_.run("BEGIN IMMEDIATE"); }
    transaction_t(const transaction_t &) = delete;
    transaction_t &operator=(const transaction_t &) = delete;
    ~transaction_t();

    void commit();

private:
    database_t &database_;
    bool isOpen_ = true;
};

} // namespace vek::tool
