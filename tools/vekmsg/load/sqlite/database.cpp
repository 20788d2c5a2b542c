// All that is said to SQLite. Each of its errors becomes a sentence that says what to do.
#include "tools/vekmsg/load/sqlite/database.hpp"
#include "vek/inspect/words/words.hpp"

#include <new>
#include <sqlite3.h>

namespace vek::tool {

void database_t::closer_t::operator()(sqlite3 *handle) const {
    sqlite3_close_v2(handle);
}

void statement_t::closer_t::operator()(sqlite3_stmt *handle) const {
    sqlite3_finalize(handle);
}

database_t::database_t(const std::string &file, bool isReadOnly) : file_(file) {
    // Locks and counts that one thread has no use for are a tenth of its time.
    static const bool isAlone = sqlite3_config(SQLITE_CONFIG_SINGLETHREAD) == SQLITE_OK &&
                                sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0) == SQLITE_OK;
    static_cast<void>(isAlone);
    if (std::error_code ignored; std::filesystem::is_directory(file, ignored))
        throw databaseError_t(inspect::joined({file, " is a folder; name a file in it, as ", file, "/archive.sqlite"}));
    open(file, isReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (!isReadOnly || isReadable())
        return;
    rest_ = atRest(file);
    if (!rest_)
        return;
    std::string name = "file:";
    for (const char character : file)
        if (character == '%' || character == '?' || character == '#')
            name += character == '%' ? "%25" : character == '?' ? "%3f" : "%23";
        else
            name += character;
    open(name + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

void database_t::open(const std::string &name, int flags) {
    sqlite3 *handle = nullptr;
    const int result =
        sqlite3_open_v2(name.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr); // one thread uses it
    handle_.reset(handle);
    if (result != SQLITE_OK)
        fail();
    constexpr int patience = 60'000; // milliseconds, for another that writes
    sqlite3_busy_timeout(handle, patience);
    // A name in double quotes is never taken for a text.
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
}

// Even to read, SQLite makes files beside one in WAL mode. Where it may not, that one alone is read.
bool database_t::isReadable() {
    const int result = sqlite3_exec(handle_.get(), "PRAGMA schema_version", nullptr, nullptr, nullptr);
    return (result & 0xFF) != SQLITE_CANTOPEN && (result & 0xFF) != SQLITE_READONLY;
}

// What is written goes into the file beside it, and from there into it before that one goes.
std::optional<database_t::rest_t> database_t::atRest(const std::string &file) {
    std::error_code ofLog, ofFile, ofSize;
    const std::uintmax_t waiting = std::filesystem::file_size(file + "-wal", ofLog);
    const rest_t rest{std::filesystem::last_write_time(file, ofFile), std::filesystem::file_size(file, ofSize)};
    return (ofLog || waiting == 0) && !ofFile && !ofSize ? std::optional(rest) : std::nullopt;
}

void database_t::confirm() const {
    if (rest_ && rest_ != atRest(file_))
        throw databaseError_t(file_ + " is written by another program meanwhile; read it again");
}

void database_t::failOnRights() const {
    throw databaseError_t(
        inspect::joined({file_, " or its folder may not be read and written, as this takes; copy it, with ", file_,
                         "-wal where there is one, to where it may be"}));
}

void database_t::fail() const {
    confirm();
    const int code = handle_ != nullptr ? sqlite3_errcode(handle_.get()) : SQLITE_NOMEM;
    switch (code & 0xFF) {
    case SQLITE_NOTADB:
        throw databaseError_t(file_ + " is no SQLite database; name a new file, or one that vekmsg load made");
    case SQLITE_CANTOPEN:
        if (std::error_code ignored; std::filesystem::exists(file_, ignored))
            failOnRights();
        throw databaseError_t(
            inspect::joined({"cannot open or make ", file_, "; is there such a folder, and may you write in it?",
                             file_.find(':') == file_.npos ? "" : " (A server's address begins with http://)"}));
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        throw databaseError_t(file_ + " is being written by another program; try again when it has ended");
    case SQLITE_READONLY:
    case SQLITE_PERM:
        failOnRights();
    case SQLITE_FULL:
    case SQLITE_IOERR:
        throw databaseError_t("cannot write " + file_ + ": " + sqlite3_errmsg(handle_.get()) +
                              "; is there room, and may a file be so large (ulimit -f)? What was loaded is in it, and "
                              "the next run goes on");
    case SQLITE_CORRUPT:
        throw databaseError_t(file_ + " is damaged; load the logs into a new file");
    case SQLITE_NOMEM:
        throw std::bad_alloc();
    default:
        throw databaseError_t(file_ + ": " + sqlite3_errmsg(handle_.get()));
    }
}

void database_t::run(const std::string &sql) {
    if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        fail();
}

int database_t::changes() const {
    return sqlite3_changes(handle_.get());
}

std::int64_t database_t::number(const std::string &sql) {
    statement_t statement(*this, sql);
    return statement.next() ? statement.integer(0) : 0;
}

statement_t::statement_t(database_t &database, const std::string &sql) : database_(&database) {
    sqlite3_stmt *handle = nullptr;
    check(sqlite3_prepare_v3(database.handle_.get(), sql.data(), static_cast<int>(sql.size()),
                             SQLITE_PREPARE_PERSISTENT, &handle, nullptr));
    handle_.reset(handle);
}

void statement_t::check(int result) const {
    if (result != SQLITE_OK)
        database_->fail();
}

void statement_t::bind(int parameter, std::int64_t value) {
    check(sqlite3_bind_int64(handle_.get(), parameter, value));
}

void statement_t::bind(int parameter, double value) {
    check(sqlite3_bind_double(handle_.get(), parameter, value));
}

// An empty view may have no address, which SQLite would take for NULL.
void statement_t::bind(int parameter, std::string_view text) {
    check(sqlite3_bind_text64(handle_.get(), parameter, text.empty() ? "" : text.data(), text.size(), SQLITE_STATIC,
                              SQLITE_UTF8));
}

void statement_t::bindBytes(int parameter, std::string_view bytes) {
    check(
        sqlite3_bind_blob64(handle_.get(), parameter, bytes.empty() ? "" : bytes.data(), bytes.size(), SQLITE_STATIC));
}

void statement_t::bind(int parameter, const inspect::cell_t &cell) {
    if (cell.kind == inspect::cell_t::kind_t::integer)
        bind(parameter, cell.integer);
    else if (cell.kind == inspect::cell_t::kind_t::real)
        bind(parameter, cell.real);
    else if (cell.kind == inspect::cell_t::kind_t::text)
        bind(parameter, cell.text);
    else
        check(sqlite3_bind_null(handle_.get(), parameter));
}

void statement_t::run() {
    const int result = sqlite3_step(handle_.get());
    if (result != SQLITE_DONE && result != SQLITE_ROW)
        database_->fail();
    reset();
}

void statement_t::reset() {
    check(sqlite3_reset(handle_.get()));
}

bool statement_t::next() {
    const int result = sqlite3_step(handle_.get());
    if (result != SQLITE_DONE && result != SQLITE_ROW)
        database_->fail();
    return result == SQLITE_ROW;
}

bool statement_t::isNull(int column) const {
    return sqlite3_column_type(handle_.get(), column) == SQLITE_NULL;
}

double statement_t::real(int column) const {
    return sqlite3_column_double(handle_.get(), column);
}

std::int64_t statement_t::integer(int column) const {
    return sqlite3_column_int64(handle_.get(), column);
}

std::string statement_t::text(int column) const {
    const void *bytes = sqlite3_column_blob(handle_.get(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column));
    return bytes != nullptr ? std::string(static_cast<const char *>(bytes), size) : std::string();
}

transaction_t::~transaction_t() {
    if (isOpen_)
        sqlite3_exec(database_.handle_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void transaction_t::commit() {
    database_.run("COMMIT");
    isOpen_ = false;
}

} // namespace vek::tool
