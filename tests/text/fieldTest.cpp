// Fields and groups over a structure of their own, and fields that keep their values.
#include "records/jobs.hpp"
#include "records/record.hpp"
#include "text/listFields.hpp"
#include "text/rangeFields.hpp"
#include "text/scalarFields.hpp"
#include "text/valueRangePrint.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

namespace {

using namespace vek;

struct Example {
    string_t name;
    double exposeOffset;
    std::int32_t inputType;
    std::int32_t tables;
    std::uint8_t isInstalled;
    growableList_t<string_t> punchSystems;
    double version;
};

constexpr std::array transportTable{"roller_e", "sheet_e"};
constinit const enumNames_t transports{transportTable};

class example_t : public record_t<Example> {
public:
    using record_t::record_t;

    stringField_t name{*this, "NAME", structure.name};
    doubleField_t exposeOffset{*this, "W_EXPOSE_OFFSET", structure.exposeOffset};
    enumField_t inputType{*this, "INPUT_TYPE", structure.inputType, transports};
    longField_t tables{*this, "RES_INT_TABLE_N", structure.tables};
    boolField_t isInstalled{*this, "IS_INSTALLED", structure.isInstalled};
    listField_t<stringField_t> punchSystems{*this, "PUNCH_SYS_NAME", structure.punchSystems};
    doubleField_t version{*this, "VERSION", structure.version};
};

std::string printed(const textField_t &field) {
    bodyWriter_t out(1);
    field.toText(out);
    return std::string(out.text());
}

constexpr char exampleText[] = "{NAME=Plate 1;W_EXPOSE_OFFSET=12.500000;INPUT_TYPE=sheet_e;RES_INT_TABLE_N=3;"
                               "IS_INSTALLED=TRUE;PUNCH_SYS_NAME={P1,P2,};}";

TEST(Fields, PrintTheExampleByteForByte) {
    Example structure{"Plate 1", 12.5, 1, 3, 1, {}, 2.0};
    structure.punchSystems.add("P1");
    structure.punchSystems.add("P2");
    example_t record(pass_t::print, structure);
    record.version.isSet = 0;
    EXPECT_EQ(printed(record), exampleText);
}

TEST(Fields, AreSetByAParseOnlyWhenTheirKeyCame) {
    Example structure{"old", 1.0, 1, 1, 1, {}, 2.0};
    structure.punchSystems.add("old");
    example_t record(pass_t::parse, structure);
    record.fromText("");
    record.fromText("{}");
    EXPECT_EQ(printed(record), "");
    record.fromText(exampleText);
    EXPECT_EQ(printed(record), exampleText);
    EXPECT_EQ(structure.version, 0.0);

    // Of a second text too the first of duplicates counts; what it doesn't name stays.
    record.fromText("{VERSION=x;RES_INT_TABLE_N=;IS_INSTALLED=5;RES_INT_TABLE_N=7;INPUT_TYPE=other_e;}");
    EXPECT_EQ(record.version.isSet, 1);
    EXPECT_EQ(structure.tables, 0) << "the empty value took the next key for its value";
    EXPECT_EQ(structure.isInstalled + structure.inputType, 2);
}

TEST(Fields, EscapeWhatSeparatesWhereverItStands) {
    for (std::size_t before = 0; before < 40; ++before)
        for (std::size_t behind = 0; behind < 20; ++behind) {
            Example structure{};
            std::string text = std::string(before, 'x') + "=;,{}" + std::string(behind, 'y');
            structure.name = text.c_str();
            example_t record(pass_t::print, structure);
            std::string escaped = text;
            for (std::size_t i = 0; i < 5; ++i)
                escaped[before + i] = static_cast<char>(i + 1);
            const std::string body = printed(record);
            ASSERT_EQ(body.substr(0, 7 + text.size()), "{NAME=" + escaped + ';');
            example_t(pass_t::parse, structure).fromText(body);
            ASSERT_EQ(structure.name.c_str(), text);
        }
}

TEST(Fields, WideStringsKeepTheirCharacters) {
    jobPort_t record;
    record.jobName = u"Hi!";
    // Characters beyond those there before are dropped, yet counted.
    record.fromText("{JOB_NAME={65,66,67,68,65533,};}");
    EXPECT_EQ(record.jobName.count(), 5);
    EXPECT_EQ(printed(record), "{JOB_NAME={65,66,67,68,};}");
    record.fromText("{JOB_NAME={JOB_NAME1=-3;JOB_NAME2=0;};}");
    EXPECT_EQ(record.jobName.count(), 2);
    record.fromText("{JOB_NAME={};}");
    EXPECT_EQ(record.jobName.text(), u"A\xFFFD");
    EXPECT_EQ(record.jobName.text().data()[2], u'\0');

    jobSepList_t list;
    list.sepList.add(u"C").isSet = 0;
    list.sepList.add(u"") = u"M";
    EXPECT_EQ(printed(list), "{SEP_LIST={{67,0,},{77,0,},};}") << "a group's own flag has no say in its print pass";
    list.fromText("{SEP_LIST={SEP_LIST1={SEP_LIST10=75;};SEP_LIST2={1,};};}");
    EXPECT_EQ(list.sepList.count(), 2);
    EXPECT_EQ(list.sepList.at(1).text(), u"K");
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
