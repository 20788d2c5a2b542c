// The tables of the archive: their names, and that rows of any text fit them.
#include "tests/support/texts.hpp"
#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/archive/lineFront.hpp"
#include "vek/inspect/archive/messageOfRows.hpp"
#include "vek/inspect/archive/rowJson.hpp"
#include "vek/inspect/archive/rows.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;

bool isName(std::string_view name) {
    return !name.empty() && name.front() >= 'a' && name.front() <= 'z' &&
           name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") == std::string_view::npos;
}

TEST(Archive, NamesAreLowerCaseAndMeanOneThing) {
    std::set<std::string> tables{"sources"};
    for (const table_t &table : archiveTables().all()) {
        for (const sqliteTable_t &one : sqliteTablesOf(table))
            EXPECT_TRUE(isName(one.name) && tables.insert(one.name).second) << one.name;
        std::set<std::string> columns{"element", "element_2"};
        for (const frontColumn_t &column : frontColumns())
            EXPECT_TRUE(isName(column.name) && columns.emplace(column.name).second) << column.name;
        for (const column_t &column : table.columns)
            EXPECT_TRUE(isName(column.name) && columns.insert(column.name).second) << table.name << "." << column.name;
    }
}

// Takes rows and looks whether they fit their tables.
class rowCheck_t final : public rowSink_t {
public:
    void row(const row_t &row) override {
        tables.push_back(row.table.name);
        isDamaged |= row.isDamaged;
        EXPECT_EQ(row.cells.size(), row.table.columns.size());
        EXPECT_EQ(row.elements.size(), row.table.depth);
        for (std::size_t i = 0; i < row.cells.size(); ++i)
            checkCell(row, row.table.columns[i], row.cells[i]);
        std::string line;
        appendRowJson(line, row, true);
        const nlohmann::json json = nlohmann::json::parse(line, nullptr, false);
        EXPECT_TRUE(json.is_object() && json["table"] == row.table.name && json["source"] == "a \"log\"") << line;
        lines += line + "\n";
    }

    std::vector<std::string> tables;
    std::string lines;
    std::size_t values = 0;
    bool isDamaged = false;

private:
    void checkCell(const row_t &row, const column_t &column, const cell_t &cell) {
        if (cell.kind == cell_t::kind_t::null) {
            EXPECT_FALSE(column.isAlwaysThere) << column.name;
            return;
        }
        EXPECT_EQ(cell.kind == cell_t::kind_t::list, column.isList);
        if (!column.isList)
            return checkScalar(column, cell);
        for (const cell_t &element : row.list(cell))
            checkScalar(column, element);
    }
    void checkScalar(const column_t &column, const cell_t &cell) {
        using enum columnType_t;
        const bool isReal = column.type == real64 || column.type == real32;
        const auto wanted = column.type == text ? cell_t::kind_t::text
                            : isReal            ? cell_t::kind_t::real
                                                : cell_t::kind_t::integer;
        EXPECT_EQ(cell.kind, wanted) << column.name;
        values += column.field != nullptr ? 1 : 0;
    }
};

rowCheck_t rowsOf(const tree_t &tree) {
    static rowMaker_t maker; // as a loader does, with its memory kept
    rowCheck_t rows;
    maker.make(tree, {"a \"log\"", 7, 1, std::nullopt}, rows);
    return rows;
}

TEST(Archive, RowsOfAnyTextFitTheirTables) {
    forEachText(rounds(600), [](const std::string &text) {
        if (testing::Test::HasFailure())
            return;
        const tree_t tree(text);
        const rowCheck_t rows = rowsOf(tree);
        const std::vector<finding_t> findings = check(tree);
        const auto isError = [](const finding_t &finding) { return finding.severity == severity_t::error; };
        EXPECT_EQ(rows.tables.front(), "messages") << text;
        EXPECT_EQ(std::count(rows.tables.begin(), rows.tables.end(), "messages"), 1);
        EXPECT_EQ(static_cast<std::size_t>(std::count(rows.tables.begin(), rows.tables.end(), "problems")),
                  findings.size());
        EXPECT_EQ(rows.isDamaged, std::any_of(findings.begin(), findings.end(), isError)) << text;
    });
}

TEST(Archive, RowsOfAnUndamagedMessageHaveAllItsValues) {
    for (const sample_t &sample : samples()) {
        const tree_t tree(sample.text);
        const auto isValue = [](const node_t &node) {
            return node.field != nullptr && !node.isCode && (!node.isBody || node.field->kind == fieldKind_t::text16) &&
                   !(node.field->isList() && !node.isElement);
        };
        EXPECT_EQ(rowsOf(tree).values,
                  static_cast<std::size_t>(std::count_if(tree.nodes().begin(), tree.nodes().end(), isValue)))
            << sample.file;
    }
}

// Keeps rows as an archive does.
class keeper_t final : public rowSink_t {
public:
    void row(const row_t &row) override {
        keptRow_t &kept = rows[&row.table].emplace_back();
        kept.elements.assign(row.elements.begin(), row.elements.end());
        for (const cell_t &cell : row.cells)
            kept.cells.push_back(own(cell));
        for (const cell_t &cell : row.listCells)
            kept.listCells.push_back(own(cell));
    }
    std::map<const table_t *, std::vector<keptRow_t>> rows;

private:
    cell_t own(cell_t cell) {
        if (cell.kind == cell_t::kind_t::text)
            cell.text = texts_.emplace_back(cell.text);
        return cell;
    }
    std::deque<std::string> texts_;
};

TEST(Archive, WhatHasNoTextComesBackFromItsRows) {
    std::size_t texts = 0;
    std::size_t fromRows = 0;
    rowMaker_t maker;
    forEachText(rounds(3000), [&](const std::string &text) {
        ++texts;
        const tree_t tree(text);
        keeper_t kept;
        maker.make(tree, {"log", 0, 1, std::nullopt}, kept);
        const cell_t &itself = kept.rows[&archiveTables().messages()].front().cells[3];
        fromRows += itself.kind == cell_t::kind_t::null ? 1 : 0;
        const envelopeParts_t &envelope = tree.envelope();
        EXPECT_EQ(
            itself.kind != cell_t::kind_t::null
                ? std::string(itself.text)
                : messageOfRows({envelope.id.value, envelope.echoTag.value, envelope.sequenceNumber.value},
                                [&](const table_t &table) { return std::span<const keptRow_t>(kept.rows[&table]); }),
            tree.text());
    });
    EXPECT_GE(fromRows, texts / 25);
    for (const sample_t &sample : samples()) { // which columns hold all of
        keeper_t kept;
        maker.make(tree_t(sample.text), {"log", 0, 1, std::nullopt}, kept);
        EXPECT_EQ(kept.rows[&archiveTables().messages()].front().cells[3].kind, cell_t::kind_t::null) << sample.file;
    }
}

// What the rows do not say again, byte for byte, stands beside them.
TEST(Archive, TheTextIsKeptUnlessTheRowsSayAllOfIt) {
    const auto isKept = [](const tree_t &tree) {
        const std::string lines = rowsOf(tree).lines;
        return lines.substr(0, lines.find('\n')).find("\"text\":") != std::string::npos;
    };
    for (const char *text : {
             "@@ 4112    80 7 43 {MEDIA_NAME=Northlight violet 0.3;FOCUS_VALUE=1024.500000;}!!",
             "@@4112\t   80 7 43 {MEDIA_NAME=Northlight violet 0.3;FOCUS_VALUE=1024.500000;}!!",
             "@@4112    49 7 43 {MEDIA_NAME=A;FOCUS_VALUE=1024.5;}!!",
             "@@4112    49 7 43 {MEDIA_NAME=A;FOCUS_VALUE=-0.000000;}!!",
             "@@4194    44 7 41 {JOB_NAME={72,105,};JOB_ID=1;}!!",
         })
        EXPECT_TRUE(isKept(tree_t(text))) << text;
}

TEST(Archive, AFrontComesBackFromItsPatternAndTime) {
    const logTime_t time{1'772'352'892'060'500};
    for (const char *front :
         {"", "\n", "\n2026-03-01T08:14:52.060 > ", "\r\n[2026-03-01 10:14:52,0605+02:00] ", "2026-03-01 08:14:52",
          "\n2026-03-01 08:14:52.0605000 a\x11;", "\n2026-03-01 08:14:53.060 ", "\x11T.30;", "\n2026-13-01 08:14:52 "})
        for (const std::optional<logTime_t> &one : {std::optional(time), std::optional<logTime_t>()}) {
            std::string again;
            appendFront(again, patternOf(front, one), one);
            EXPECT_EQ(again, front);
        }
    EXPECT_EQ(patternOf("\n2026-03-01T08:14:52.060 > ", time), "\n\x11T.30; > ");
}

} // namespace
