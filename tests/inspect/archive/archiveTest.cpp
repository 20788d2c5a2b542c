// The tables of the archive: their names, and that rows of any text fit them.
#include "tests/support/texts.hpp"
#include "vek/inspect/archive/front.hpp"
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

// What the rows do not say again, byte for byte, stands beside them.
TEST(Archive, TheTextIsKeptUnlessTheRowsSayAllOfIt) {
    const auto isKept = [](const tree_t &tree) {
        const std::string lines = rowsOf(tree).lines;
        return lines.substr(0, lines.find('\n')).find("\"text\":") != std::string::npos;
    };
    for (const sample_t &sample : samples())
        EXPECT_FALSE(isKept(tree_t(sample.text))) << sample.file;
    for (const char *text : {
             "@@ 4112    80 7 43 {MEDIA_NAME=Northlight violet 0.3;FOCUS_VALUE=1024.500000;}!!",
             "@@4112\t   80 7 43 {MEDIA_NAME=Northlight violet 0.3;FOCUS_VALUE=1024.500000;}!!",
             "@@4112    49 7 43 {MEDIA_NAME=A;FOCUS_VALUE=1024.5;}!!",
             "@@4112    49 7 43 {MEDIA_NAME=A;FOCUS_VALUE=-0.000000;}!!",
             "@@4194    44 7 41 {JOB_NAME={72,105,};JOB_ID=1;}!!",
         })
        EXPECT_TRUE(isKept(tree_t(text))) << text;
}

} // namespace
