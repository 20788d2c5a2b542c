// Fields and groups by themselves: which of them a text sets, and what they keep.
#include "vek/records/private/mediaRecords.hpp"
#include "vek/records/private/tableRecords.hpp"
#include "vek/text/valueRangePrint.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

using namespace vek;

std::string printed(const textField_t &field) {
    bodyWriter_t out(1);
    field.toText(out);
    return std::string(out.text());
}

TEST(Fields, AreSetByAParseOnlyWhenTheirKeyCame) {
    Cassette structure;
    structure.media.thick = 2.0;
    cassette_t record(pass_t::parse, structure);
    structure.numAvailablePunchSys = 2;
    record.fromText("");
    record.fromText("{}");
    EXPECT_EQ(printed(record), "");
    constexpr char text[] = "{NAME=Plate 1;W_EXPOSE_OFFSET=12.500000;INPUT_TYPE=sheet_e;RES_INT_TABLE_N=3;"
                            "IS_INSTALLED=TRUE;PUNCH_SYS_NAME={P1,P2,};}";
    record.fromText(text);
    EXPECT_EQ(printed(record), text);
    EXPECT_EQ(structure.media.thick, 0.0);

    // Of a second text too the first of duplicates counts; what it doesn't name stays.
    record.fromText("{INPUT_CONTENT=x;RES_INT_TABLE_N=;IS_INSTALLED=5;RES_INT_TABLE_N=7;INPUT_TYPE=other_e;}");
    EXPECT_EQ(record.inputContent.isSet, 1);
    EXPECT_EQ(structure.resIntTableN, 0) << "the empty value took the next key for its value";
    EXPECT_EQ(structure.isInstalled + structure.inputType, 2);
    record.name.isSet = 0;
    EXPECT_TRUE(printed(record).starts_with("{W_EXPOSE_OFFSET="));
}

TEST(Fields, EscapeWhatSeparatesWhereverItStands) {
    TableRef structure;
    for (std::size_t before = 0; before < 40; ++before)
        for (std::size_t behind = 0; behind < 20; ++behind) {
            const std::string front(before, 'x'), back(behind, 'y'), text = front + "=;,{}" + back;
            structure.name = text.c_str();
            const std::string body = printed(tableRef_t(pass_t::print, structure));
            ASSERT_EQ(body, "{NUM=0;NAME=" + front + "\1\2\3\4\5" + back + ";}");
            tableRef_t(pass_t::parse, structure).fromText(body);
            ASSERT_EQ(structure.name.c_str(), text);
        }
}

TEST(Fields, RangesReportTheirEnds) {
    valueRange_t range;
    EXPECT_EQ(range.kind, valueRange_t::continuous);
    EXPECT_EQ(range.minimum(), 0.0);
    EXPECT_EQ(range.maximum(), 0.0);
    range.setInterval(10.0, 20.0);
    EXPECT_EQ(range.values().capacity(), 512);
    EXPECT_STREQ(range.valueText(1).c_str(), "20.000000");
    const double values[] = {600.0, -5.5, 1e9};
    range.setValues(3, values);
    EXPECT_EQ(range.kind, valueRange_t::discrete);
    EXPECT_EQ(range.minimum(), -5.5);
    EXPECT_EQ(range.maximum(), 1e9);
    std::ostringstream out;
    printRange(out, range);
    EXPECT_EQ(out.str(), " ------  RANGE INFO  ------\n  range[0]= 10\n  range[1]= 20\n  range[2]= 600\n"
                         "  range[3]= -5.5\n  range[4]= 1e+09\n ----------------------------------\n");
    range.clear();
    EXPECT_EQ(range.kind, valueRange_t::discrete);
    range.setInterval(-5.0, -2.0);
    EXPECT_EQ(range.maximum(), -1.0);
}

TEST(Fields, ListsGrowInTheirSteps) {
    growableList_t<string_t, 3> list;
    for (const std::int32_t capacity : {3, 3, 3, 6, 6, 6, 12}) {
        list.add(list.isEmpty() ? string_t("first") : list[0]); // its own element, also while it grows
        EXPECT_EQ(list.capacity(), capacity);
        EXPECT_STREQ(list[list.count() - 1].c_str(), "first");
    }
    list.reserve(13);
    EXPECT_EQ(list.capacity(), 13);
    growableList_t<string_t, 3> copy = list;
    EXPECT_EQ(copy.capacity(), 7);
    copy = growableList_t<string_t, 3>(list);
    list.resize(2);
    copy = list;
    EXPECT_EQ(copy.count(), 2);
    EXPECT_EQ(copy.capacity(), 7) << "the storage is reused";
    list.resize(-1);
    EXPECT_TRUE(list.isEmpty());
    EXPECT_STREQ(list.add().c_str(), "");
}

} // namespace
