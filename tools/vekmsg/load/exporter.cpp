// The logs one behind the other into files, or all as one stream in the order of time.
#include "tools/vekmsg/load/exporter.hpp"

#include "tools/vekmsg/load/logCursor.hpp"
#include "tools/vekmsg/load/logNames.hpp"
#include "tools/vekmsg/reading/csv.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/archive/rowJson.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <queue>
#include <set>

namespace vek::tool {

using namespace inspect;

namespace {

class exporter_t {
public:
    exporter_t(archiveReader_t &archive, const exportOptions_t &options)
        : archive_(archive), options_(options), since_(timeGiven(options.since, "--since")),
          until_(timeGiven(options.until, "--until")) {}

    int run() {
        std::vector<archivedLog_t> logs = chosen();
        if (options_.table != nullptr && options_.isCsv)
            appendCsvHeader();
        if (options_.folder.empty())
            writeMerged(std::move(logs));
        else
            for (archivedLog_t &log : logs)
                writeFile(std::move(log));
        flush(0);
        if (!hasAny_ && status_ == exitFine)
            fail(whyNothing());
        return status_;
    }

private:
    static std::optional<givenTime_t> timeGiven(const std::optional<std::string> &words, const std::string &option) {
        const std::optional<givenTime_t> time = words ? timeOfArgument(*words) : std::nullopt;
        if (words && !time)
            throw usageError_t(option + " " + *words + " is no time; write 2026-03-01 12:00, 2026-03-01 or -2h");
        return time;
    }

    std::vector<archivedLog_t> chosen() {
        std::vector<archivedLog_t> logs = archive_.logs();
        const auto keep = [&](const std::vector<std::string> &words, std::string archivedLog_t::*part,
                              const std::string &option) {
            checkNamed(option, words, logs, part, archive_.name());
            if (!words.empty())
                std::erase_if(
                    logs, [&](const archivedLog_t &log) { return std::ranges::find(words, log.*part) == words.end(); });
        };
        keep(options_.sources, &archivedLog_t::name, "--source");
        keep(options_.devices, &archivedLog_t::device, "--device");
        keep(options_.sites, &archivedLog_t::site, "--site");
        keep(options_.hosts, &archivedLog_t::host, "--host");
        std::erase_if(logs, [this](const archivedLog_t &log) { // entered, and nothing of it is loaded yet
            return options_.table == nullptr && log.isWhole && log.position.offset == 0 && log.tail.empty();
        });
        return logs;
    }

    std::string whyNothing() const {
        const bool isOfAll = options_.sources.empty() && options_.devices.empty() && options_.sites.empty() &&
                             options_.hosts.empty() && !since_ && !until_;
        if (isOfAll && options_.table == nullptr)
            return archive_.name() + " holds no message; vekmsg load --into " + options_.target + " LOG loads some";
        const std::string_view what = options_.table != nullptr ? options_.table->name : std::string_view();
        return joined({what.empty() ? "no message in " : "no row of the table ", what, what.empty() ? "" : " in ",
                       archive_.name(), isOfAll ? " yet" : " is of what was asked for"});
    }

    // As --since and --until of other commands: a message without a time is in no span.
    bool isWanted(const logCursor_t &cursor) const {
        const std::optional<logTime_t> &time = cursor.message().time;
        if (!since_ && !until_)
            return true;
        return time && !(since_ && time->isBefore(since_->as(*time))) && !(until_ && until_->as(*time).isBefore(*time));
    }

    void append(logCursor_t &cursor) {
        const bool isWantedNow = isWanted(cursor);
        if (options_.table != nullptr) {
            if (isWantedNow)
                appendRows(cursor);
            return;
        }
        unit_.clear();
        cursor.appendText(unit_);
        if (isWantedNow)
            putUnit();
    }

    void putUnit() {
        out_ += unit_;
        hasAny_ = hasAny_ || !unit_.empty();
    }

    void finish(logCursor_t &cursor) {
        unit_.clear();
        if (options_.table != nullptr)
            return;
        cursor.appendEnd(unit_);
        const archivedLog_t &log = cursor.log();
        if (!log.isWhole)
            fail(log.name + " was loaded by an older vekmsg, which kept its messages alone: they come a line each; "
                            "load it again with --replace to keep all of it");
        else if (cursor.missing() > 0)
            fail(std::to_string(cursor.missing()) + " bytes of " + log.name +
                 " are not in the archive any more: rows were deleted from it");
    }

    void fail(const std::string &words) {
        complain(words);
        status_ = exitDifferences;
    }

    void writeFile(archivedLog_t log) {
        const std::filesystem::path path = std::filesystem::path(options_.folder) / fileNameOf(log);
        std::error_code error;
        std::filesystem::create_directories(path.parent_path(), error);
        if (error)
            throw usageError_t(joined({"cannot make the folder ", path.parent_path().string(), ": ", error.message()}));
        if (identityOf(path.string()))
            throw usageError_t(path.string() + " is there already; name another folder");
        file_.open(path, std::ios::binary);
        if (!file_)
            failOnFile("write", path.string());
        logCursor_t cursor(archive_, std::move(log), options_.table, piece);
        for (; !cursor.isAtEnd(); cursor.next()) {
            append(cursor);
            flush(blockSize);
        }
        finish(cursor);
        if (!since_ && !until_)
            putUnit();
        flush(0);
        file_.close();
        if (!file_)
            failOnFile("write", path.string());
    }

    // The path of a log without what leads out of the folder; of a second log of the name, with its number.
    std::filesystem::path fileNameOf(const archivedLog_t &log) {
        std::filesystem::path path;
        for (const std::filesystem::path &part : std::filesystem::path(jsonBytes(log.name)).relative_path())
            if (part != "." && part != ".." && !part.empty())
                path /= part;
        if (path.extension() == ".gz" || path.extension() == ".zst")
            path.replace_extension();
        if (path.empty() || path == "-")
            path = "log";
        if (options_.table != nullptr)
            path += options_.isCsv ? ".csv" : ".jsonl";
        if (!names_.insert(path.string()).second)
            path += "." + std::to_string(log.number);
        names_.insert(path.string());
        return path;
    }

    // In the order of time; a message without one stays behind the one before.
    void writeMerged(std::vector<archivedLog_t> logs) {
        const std::size_t most = std::clamp<std::size_t>(piece * 8 / std::max<std::size_t>(logs.size(), 1), 20, piece);
        std::deque<logCursor_t> cursors;
        using place_t = std::pair<std::int64_t, std::size_t>;
        std::priority_queue<place_t, std::vector<place_t>, std::greater<>> next;
        const auto timeOf = [](const logCursor_t &cursor) {
            return cursor.time() ? cursor.time()->microseconds : INT64_MIN;
        };
        for (archivedLog_t &log : logs) {
            cursors.emplace_back(archive_, std::move(log), options_.table, most);
            next.emplace(timeOf(cursors.back()), cursors.size() - 1);
        }
        isMerged_ = (cursors.size() > 1 || since_ || until_) && options_.table == nullptr;
        while (!next.empty()) {
            const auto [time, number] = next.top();
            logCursor_t &cursor = cursors[number];
            next.pop();
            const std::size_t start = out_.size();
            if (!cursor.isAtEnd()) {
                append(cursor);
                joinLines(start);
                cursor.next();
                next.emplace(std::max(time, timeOf(cursor)), number);
            } else {
                finish(cursor);
                if (!since_ && !until_)
                    putUnit();
                joinLines(start);
            }
            flush(blockSize);
        }
    }

    // What follows something of another log begins with a line.
    void joinLines(std::size_t start) {
        if (!isMerged_ || start == out_.size())
            return;
        const std::string_view unit = std::string_view(out_).substr(start);
        const std::size_t lineEnd = unit.starts_with("\r\n") ? 2 : unit.starts_with('\n') ? 1 : 0;
        const bool isAtLine = start == 0 ? isAtLine_ : out_[start - 1] == '\n';
        if (isAtLine && lineEnd > 0)
            out_.erase(start, lineEnd);
        else if (!isAtLine && lineEnd == 0)
            out_.insert(start, 1, '\n');
    }

    void flush(std::size_t least) {
        if (out_.size() < std::max<std::size_t>(least, 1))
            return;
        isAtLine_ = out_.back() == '\n';
        if (file_.is_open())
            file_.write(out_.data(), static_cast<std::streamsize>(out_.size()));
        else
            writeAll(1, out_);
        out_.clear();
    }

    void appendRows(const logCursor_t &cursor) {
        const archiveReader_t::message_t &message = cursor.message();
        const archivedLog_t &log = cursor.log();
        const rowFront_t front{log.name, message.offset, message.line, message.time, log.number};
        const auto appendRow = [&](std::span<const std::uint32_t> elements, std::span<const cell_t> cells,
                                   std::span<const cell_t> listCells) {
            const row_t row{*options_.table,   front,    message.echoTag, message.sequenceNumber,
                            message.isDamaged, elements, cells,           listCells};
            if (options_.isCsv)
                appendCsvRow(row);
            else
                appendRowJson(out_, row, false);
            out_ += '\n';
            hasAny_ = true;
        };
        for (const keptRow_t &row : cursor.rows())
            appendRow(row.elements, row.cells, row.listCells);
    }

    // Of the columns in front those that every table has in both databases, with the whole time.
    static std::vector<const frontColumn_t *> csvFront() {
        std::vector<const frontColumn_t *> columns;
        for (const frontColumn_t &column : frontColumns())
            if (column.clickhouse.value != nullptr && (!column.sqlite.type.empty() || column.name == "source"))
                columns.push_back(&column);
        return columns;
    }

    void appendCsvHeader() {
        std::string line;
        for (const frontColumn_t *column : csvFront())
            line.append(line.empty() ? "" : ",").append(column->name);
        for (std::size_t i = 0; i < options_.table->depth; ++i)
            line += "," + elementColumn(i);
        for (const column_t &column : options_.table->columns)
            line += "," + column.name;
        out_ += line + "\n";
    }

    void appendCsvRow(const row_t &row) {
        std::string room;
        const char *between = "";
        for (const frontColumn_t *column : csvFront()) {
            out_ += between;
            appendCell(row, (column->sqlite.value != nullptr ? column->sqlite : column->clickhouse).value(row, room));
            between = ",";
        }
        for (const std::uint32_t element : row.elements)
            out_ += "," + std::to_string(element);
        for (const cell_t &cell : row.cells) {
            out_ += ',';
            appendCell(row, cell);
        }
    }

    void appendCell(const row_t &row, const cell_t &cell) {
        unit_.clear();
        jsonAppender_t json(unit_);
        const auto append = [&json](const cell_t &scalar) {
            if (scalar.kind == cell_t::kind_t::integer)
                json.value(scalar.integer);
            else if (scalar.kind == cell_t::kind_t::real)
                json.value(scalar.real);
            else if (scalar.kind == cell_t::kind_t::text)
                json.value(scalar.text);
        };
        if (cell.kind == cell_t::kind_t::list) {
            json.open('[');
            for (const cell_t &element : row.list(cell))
                append(element);
            json.close(']');
        } else if (cell.kind != cell_t::kind_t::text) {
            append(cell);
        }
        appendCsvCell(out_, cell.kind == cell_t::kind_t::text ? cell.text : std::string_view(unit_));
    }

    static constexpr std::size_t piece = 2000, blockSize = std::size_t{1} << 16;

    archiveReader_t &archive_;
    const exportOptions_t &options_;
    const std::optional<givenTime_t> since_, until_;
    std::string out_, unit_;
    std::ofstream file_;
    std::set<std::string> names_;
    bool isMerged_ = false, isAtLine_ = true, hasAny_ = false;
    int status_ = exitFine;
};

} // namespace

int exportFrom(archiveReader_t &archive, const exportOptions_t &options) {
    return exporter_t(archive, options).run();
}

} // namespace vek::tool
