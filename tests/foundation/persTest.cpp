// Codes of names, groups of classes, and what is printed about them.

#include "tests/foundation/reports.hpp"
#include "vek/vek_std/std_objCltn/obj.hpp"

#include <gtest/gtest.h>

#ifdef __GLIBC__
#    include <stdio_ext.h>
#endif

#include <memory>
#include <string>

namespace {

using vek::classGroup_t;
using vek::codeOf;
using vek::lookup;

/// A descriptor with a name of its own.
struct class_t : vek::classDescriptor_t {
    explicit class_t(const char *text, std::uint32_t second = 0) : characters(text) {
        name = characters.data();
        secondCode = second;
    }
    std::string registerIn(classGroup_t &into, std::uint32_t flags = 0) {
        return reported([&] { vek::registerClass(*this, flags, &into); });
    }
    std::string characters;
};

TEST(persistenceCode, ofNamesAndBack) {
    const struct {
        const char *name;
        std::uint32_t code;
        const char *back;
    } cases[] = {{"", 0, "_"},
                 {"a", 1, "a"},
                 {"z", 26, "z"},
                 {"A", 27, "A"},
                 {"Z", 52, "Z"},
                 {"0", 53, "_0"},
                 {"9", 62, "_9"},
                 {"ab", 65, "ab"},
                 {"a0", 116, "a0"},
                 {"a_\x80\xFF", 63U * 63 * 63, "a___"},
                 {"b______", 492952834, "ErAVj"},
                 {"obj_t", ((15U * 63 + 2) * 63 + 10) * 63 * 63 + 20, "obj_t"}};
    for (const auto &one : cases) {
        EXPECT_EQ(codeOf(one.name), one.code) << one.name;
        EXPECT_STREQ(vek::nameOf(one.code), one.back) << one.name;
    }
    EXPECT_EQ(codeOf(nullptr), 0U);
}

TEST(persistence, classesEnterEnclosingGroupsToo) {
    classGroup_t outer{"outer"}, inner{"inner", &outer};
    class_t first(" \t first\n"), other("other", codeOf("second")), late("late");
    EXPECT_EQ(first.registerIn(inner, vek::defaultOfGroup) + other.registerIn(outer), "");
    EXPECT_EQ(first.registerIn(inner, vek::defaultOfGroup), "");
    EXPECT_STREQ(first.name, "first");
    EXPECT_EQ(first.secondCode, codeOf("first"));
    EXPECT_EQ(inner.count, 1);
    EXPECT_EQ(outer.count, 2);
    EXPECT_EQ(lookup(&outer, codeOf("first")), &first);
    EXPECT_EQ(lookup(&outer, codeOf("second")), &other);
    EXPECT_EQ(lookup(&outer, codeOf("third")), nullptr);
    EXPECT_EQ(lookup(&inner, codeOf("third")), &first);
    EXPECT_EQ(vek::create(&outer, "first"), nullptr); // it makes none
    first.factory = vek::makeInstance<vek::obj_t>;
    EXPECT_NE(std::unique_ptr<vek::obj_t>(vek::create(&outer, "first")), nullptr);
    EXPECT_NE(std::unique_ptr<vek::obj_t>(vek::create(&outer, codeOf("first"))), nullptr);
    EXPECT_EQ(vek::create(&outer, 0), nullptr); // a code
    const std::string clash = late.registerIn(inner, vek::defaultOfGroup);
    EXPECT_EQ(clash.rfind("DEFAULT"), clash.find("DEFAULT")); // reported for the inner group alone
}

TEST(persistence, clashesArePrintedAndTheLaterClassLoses) {
    const std::string duplicate = "\n\avek_persERROR:DUPLICATE ";
    const std::string persistence = "\npersistence of second code ignored";
    const std::string defaultness = "\n'defaultness' of second code ignored";
    classGroup_t group{"group"};
    class_t a("a"), clash("_a"), b("b", 3), c("c"), d("d", 3), nameless("");
    nameless.name = nullptr;
    EXPECT_EQ(a.registerIn(group, vek::defaultOfGroup), "");
    EXPECT_EQ(clash.registerIn(group), duplicate + "CODE=0x1\n_a clash with a" + persistence);
    EXPECT_EQ(b.registerIn(group, vek::defaultOfGroup), duplicate + "DEFAULT CODE=0x2\nb clash with a" + defaultness);
    EXPECT_EQ(c.registerIn(group), ""); // a code may be another's second code, but not the other way
    EXPECT_EQ(d.registerIn(group), duplicate + "CODE=0x3\nd clash with b" + persistence + duplicate +
                                       "CODE=0x3\nd clash with c" + persistence);
    EXPECT_EQ(nameless.registerIn(group, vek::defaultOfGroup),
              duplicate + "DEFAULT CODE=0\n clash with a" + defaultness);
    EXPECT_EQ(lookup(&group, 1), &a);
    EXPECT_EQ(group.defaultDescriptor, &a);
    EXPECT_EQ(b.secondCode, 3U);
    EXPECT_EQ(d.secondCode, 4U);
}

TEST(persistence, aGroupWithoutClassesIsReported) {
    class_t fallback("fallback");
    classGroup_t group{.name = "group", .defaultDescriptor = &fallback};
    EXPECT_EQ(reported([&] { EXPECT_EQ(lookup(&group, 1), &fallback); }),
              "\n : EMPTY_GROUP ; called from vek_std/std_sys/vek_pers,164\n");
}

TEST(persistence, groupDump) {
    classGroup_t outer{nullptr}, middle{"middle", &outer}, group{"group", &middle};
    EXPECT_EQ(printed([&] { vek::printGroup(&group, vek::templateGroup_e); }),
              "\nTEMPLATE Group of group , which enclosed into middle, which enclosed into UNKNOWN GROUP is EMPTY.");
    EXPECT_EQ(printed([] { vek::printGroup(nullptr, vek::macroGroup_e); }),
              "\nMACRO Group of UNKNOWN GROUP  is EMPTY.");
    EXPECT_EQ(printed([] { vek::printGroup(nullptr, 7); }), "\n Group of UNKNOWN GROUP  is EMPTY.");
#ifdef __GLIBC__
    static_cast<void>(printed([] {
        vek::printGroup(nullptr);
        EXPECT_EQ(__fpending(stdout), 0U); // flushed, as other groups are
    }));
#endif
    class_t a("a"), b("b", 0x100), c("c");
    EXPECT_EQ(b.registerIn(outer) + a.registerIn(outer, vek::defaultOfGroup) + c.registerIn(outer), "");
    c.name = nullptr;
    EXPECT_EQ(printed([&] { vek::printGroup(&outer); }),
              "\n Group of UNKNOWN GROUP \n   0 :[0x1 (a)]\n   1 : 0x2 {0x100} (b) \n   2 : 0x3 (NULL) ");
}

} // namespace
