// Fields and groups by themselves: which of them a text sets, and what they keep.
#include "vek/records/enumerations.hpp"
#include "vek/records/media.hpp"
#include "vek/records/private/record.hpp"
#include "vek/text/enumField.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/scalarFields.hpp"
#include "vek/text/valueRangePrint.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace vek;

std::string printed(const textField_t &field) {
    bodyBuffer_t buffer(1);
    const bodyWriter_t out = field.toText(bodyWriter_t(buffer));
    return std::string(out.text());
}

// Fields of every kind that matters here, over a cassette.
struct plates_t : record_t<Cassette> {
    using record_t::record_t;

    stringField_t name{*this, "NAME", structure.name};
    doubleField_t offset{*this, "OFFSET", structure.exposeOffset.width};
    enumField_t inputType{*this, "INPUT_TYPE", structure.inputType, transportNames};
    doubleField_t inputContent{*this, "INPUT_CONTENT", structure.inputContent};
    longField_t table{*this, "TABLE", structure.resIntTableN};
    boolField_t isInstalled{*this, "IS_INSTALLED", structure.isInstalled};
    listField_t<stringField_t> punches{*this, "PUNCHES", structure.punchSysName, structure.numAvailablePunchSys};
    doubleField_t thick{*this, "THICK", structure.media.thick};
};

TEST(Fields, AreSetByAParseOnlyWhenTheirKeyCame) {
    Cassette structure;
    structure.media.thick = 2.0;
    plates_t record(pass_t::parse, structure);
    structure.numAvailablePunchSys = 2;
    record.fromText("");
    record.fromText("{}");
    EXPECT_EQ(printed(record), "");
    constexpr char text[] =
        "{NAME=Plate 1;OFFSET=12.500000;INPUT_TYPE=sheet_e;TABLE=3;IS_INSTALLED=TRUE;PUNCHES={P1,P2,};}";
    record.fromText(text);
    EXPECT_EQ(printed(record), text);
    EXPECT_EQ(structure.media.thick, 0.0);

    // Of a second text too the first of duplicates counts; what it doesn't name stays.
    record.fromText("{INPUT_CONTENT=x;TABLE=;IS_INSTALLED=5;TABLE=7;INPUT_TYPE=other_e;}");
    EXPECT_EQ(record.inputContent.isSet, 1);
    EXPECT_EQ(structure.resIntTableN, 0) << "the empty value took the next key for its value";
    EXPECT_EQ(structure.isInstalled + structure.inputType, 2);
    record.name.isSet = 0;
    EXPECT_TRUE(printed(record).starts_with("{OFFSET="));
}

TEST(Fields, EscapeWhatSeparatesWhereverItStands) {
    Cassette structure;
    for (std::size_t before = 0; before < 40; ++before)
        for (std::size_t behind = 0; behind < 20; ++behind) {
            const std::string front(before, 'x'), back(behind, 'y'), text = front + "=;,{}" + back;
            structure.name = text.c_str();
            const std::string body = printed(plates_t(pass_t::print, structure));
            ASSERT_TRUE(body.starts_with("{NAME=" + front + "\1\2\3\4\5" + back + ";OFFSET="));
            plates_t(pass_t::parse, structure).fromText(body);
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
    std::vector<double> expected(range.begin(), range.end());
    for (int i = 0; i < 8; ++i) { // its own values, also while it grows
        range.setValues(range.count() - i, range.begin() + i);
        const std::vector<double> own(expected.begin() + i, expected.end());
        expected.insert(expected.end(), own.begin(), own.end());
        EXPECT_TRUE(std::equal(range.begin(), range.end(), expected.begin(), expected.end())) << i;
    }
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
