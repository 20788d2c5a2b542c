// clusterServer_t: a ClickHouse server behind its HTTP interface, and a database in it: statements, batches of rows,
// what the server has against them in words, and patience when it is away.
//
// Owns its connection. One thread at a time. Names become part of a statement through sqlName alone, any other text
// through sqlText.
#pragma once

#include "tools/vekmsg/load/clickhouse/httpClient.hpp"
#include "tools/vekmsg/load/clickhouse/packedRows.hpp"
#include "tools/vekmsg/load/databaseError.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::tool {

/// A name of a table, column or database, quoted.
std::string sqlName(std::string_view name);
/// Two digits a byte, as hex() of the server gives them.
std::string sqlHex(std::string_view bytes);
/// Any bytes as a constant text.
std::string sqlText(std::string_view bytes);

/// A server that had as much time as it gets, and may work later.
class stillAway_t : public databaseError_t {
public:
    using databaseError_t::databaseError_t;
};

class clusterServer_t {
public:
    /// `url` is http://HOST:PORT/DATABASE, with ?cluster=NAME when the tables are distributed over a cluster, and with
    /// &replicated=yes behind it when each shard's servers have all of its rows, and &servers=HOST:PORT,... when these
    /// are not at the same port. Throws
    /// usageError_t when it is not, and databaseError_t when nobody answers there or without such a database.
    /// `isPatient`: it never gives up a server that was there.
    clusterServer_t(const std::string &url, bool isPatient);

    const std::string &database() const { return database_; }
    const std::string &cluster() const { return cluster_; } ///< "" when one server has it all
    const std::string &name() const { return name_; }       ///< for people
    bool isPatient() const { return isPatient_; }
    bool isReplicated() const { return isReplicated_; }
    /// Whether it has what is known since version 23.
    bool isCurrent() const { return isCurrent_; }

    /// The answer to a statement. Asks again for a minute while the server is away, or for ever; then, and when it
    /// refuses, throws databaseError_t.
    std::string ask(const std::string &statement);
    /// The same, as the fields of its lines. Texts with tabs and the like in them are to be asked for with hex().
    std::vector<std::vector<std::string>> table(const std::string &statement);
    /// Sends rows of a table until they have arrived, be it more than once.
    void insert(const std::string &statement, std::string_view rows);
    /// The rows that are sent with an INSERT, as it reads them: so many, if they should arrive twice.
    static std::string sentRows(std::size_t count);
    /// Runs an INSERT that selects from rows sent with it in RowBinary, of this structure, under a name of its own.
    /// False when it is not known whether it was run, or is running still, or it was in part. Throws like ask().
    bool insert(const std::string &statement, const std::string &structure, packedRows_t &rows,
                const std::string &queryName);
    /// Each server of the cluster by itself, or this one alone. Throws databaseError_t when one does not answer.
    std::vector<std::unique_ptr<clusterServer_t>> all();
    /// Nothing was loaded: that other servers of a cluster have no tables yet is no reason to wait.
    void expectNoTables() { awaitsTables_ = false; }

    /// The names of all queries that are running on the server, or on those of the cluster.
    std::vector<std::string> running();

    /// Calls `use` with some of the texts and with the same as constants between commas, of which a statement has room
    /// for `copies`, until all had their turn.
    using use_t = std::function<void(std::span<const std::string>, const std::string &)>;
    static void inPieces(std::span<const std::string> texts, std::size_t copies, const use_t &use);

private:
    enum class outcome_t : std::uint8_t { done, tryAgain };

    clusterServer_t(const httpAddress_t &address, bool isPatient);
    void askMajority();
    outcome_t send(const httpClient_t::parameters_t &parameters, std::string_view body, std::string &answer);
    outcome_t sendRows(httpClient_t::parameters_t parameters, std::string_view packed);
    void judge(const httpClient_t::answer_t &answer);
    bool waitedForOther(std::string_view refusal);
    /// `question`: what may be wrong when it has never worked.
    void waitAfter(const std::string &why, std::string_view question = {});
    [[noreturn]] void refuse(const std::string &why) const;

    std::string name_, database_, cluster_;
    const httpAddress_t address_;
    std::string servers_; // as they are given
    httpClient_t client_;
    std::uint64_t sessions_ = 0;
    struct away_t {               // since it last worked
        std::uint64_t waited = 0; // milliseconds
        bool isTold = false;
    };
    away_t away_, insertAway_; // also when what is asked for before each attempt to insert works
    std::string earlierInsert_;
    std::uint64_t patience_;
    bool isPatient_, isReplicated_ = false, isCurrent_ = false, awaitsTables_ = true;
    httpClient_t::parameters_t always_; // in every request
};

} // namespace vek::tool
