// Codes of names, groups of classes, and what is printed about them.

#include "reports.hpp"
#include "vek_std/std_objCltn/obj.hpp"
#include "vek_std/std_sys/vek_pers.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using vek::classDescriptor_t;
using vek::classGroup_t;

/// A descriptor with a name of its own.
struct class_t {
    explicit class_t(const char *text, std::uint32_t secondCode = 0) : name(text) {
        descriptor.name = name.data();
        descriptor.secondCode = secondCode;
    }
    std::string name;
    classDescriptor_t descriptor{};
};

std::string registering(class_t &registered, classGroup_t &group, std::uint32_t flags = 0) {
    return reported([&] { vek::registerClass(registered.descriptor, flags, &group); });
}

TEST(persistenceCode, ofNamesAndBack) {
    struct {
        const char *name;
        std::uint32_t code;
        const char *back;
    } const cases[] = {{"", 0, "_"},
                       {"_", 0, "_"},
                       {"a", 1, "a"},
                       {"z", 26, "z"},
                       {"A", 27, "A"},
                       {"Z", 52, "Z"},
                       {"0", 53, "_0"},
                       {"9", 62, "_9"},
                       {"ab", 65, "ab"},
                       {"a0", 116, "a0"},
                       {"a_\x80\xFF", 63U * 63 * 63, "a___"},
                       {"obj_t", ((15U * 63 + 2) * 63 + 10) * 63 * 63 + 20, "obj_t"}};
    for (const auto &one : cases) {
        EXPECT_EQ(vek::codeOf(one.name), one.code) << one.name;
        EXPECT_STREQ(vek::nameOf(one.code), one.back) << one.name;
    }
    EXPECT_EQ(vek::codeOf(nullptr), 0U);
    EXPECT_EQ(vek::codeOf("objArray_t"), [] { // wraps at 32 bits
        std::uint64_t code = 0;
        for (const int digit : {15, 2, 10, 27, 18, 18, 1, 25, 0, 20})
            code = (code * 63 + static_cast<std::uint64_t>(digit)) & 0xFFFFFFFFU;
        return code;
    }());
    EXPECT_EQ(vek::codeOf(vek::nameOf(0xFFFFFFFFU)), 0xFFFFFFFFU);
}

TEST(persistence, classesEnterEnclosingGroupsToo) {
    classGroup_t outer{"outer"}, inner{"inner", &outer};
    class_t one(" \t first\n"), two("other", vek::codeOf("second"));
    EXPECT_EQ(registering(one, inner, vek::defaultOfGroup) + registering(two, outer), "");
    EXPECT_STREQ(one.descriptor.name, "first");
    EXPECT_EQ(one.descriptor.code, vek::codeOf("first"));
    EXPECT_EQ(one.descriptor.secondCode, one.descriptor.code);
    EXPECT_EQ(inner.count, 1);
    EXPECT_EQ(outer.count, 2);
    EXPECT_EQ(inner.defaultDescriptor, &one.descriptor);
    EXPECT_EQ(outer.defaultDescriptor, nullptr);

    EXPECT_EQ(vek::lookup(&outer, vek::codeOf("first")), &one.descriptor);
    EXPECT_EQ(vek::lookup(&outer, vek::codeOf("second")), &two.descriptor);
    EXPECT_EQ(vek::lookup(&outer, vek::codeOf("third")), nullptr);
    EXPECT_EQ(vek::lookup(&inner, vek::codeOf("third")), &one.descriptor);
    EXPECT_EQ(registering(one, inner, vek::defaultOfGroup), "");
    EXPECT_EQ(inner.count, 1);
}

TEST(persistence, clashesArePrintedAndTheLaterClassLoses) {
    classGroup_t group{"group"};
    class_t a("a"), clash("_a"), second("b", vek::codeOf("c")), third("c");
    EXPECT_EQ(registering(a, group, vek::defaultOfGroup), "");
    EXPECT_EQ(registering(clash, group), "\n\avek_persERROR:DUPLICATE CODE=0x1\n_a clash with a\n"
                                         "persistence of second code ignored");
    EXPECT_EQ(vek::lookup(&group, 1), &a.descriptor);
    EXPECT_EQ(registering(second, group, vek::defaultOfGroup),
              "\n\avek_persERROR:DUPLICATE DEFAULT CODE=0x2\nb clash with a\n'defaultness' of second code ignored");
    EXPECT_EQ(group.defaultDescriptor, &a.descriptor);
    EXPECT_EQ(second.descriptor.secondCode, 3U);

    // A class's code may be another's second code; a second code may be neither.
    EXPECT_EQ(registering(third, group), "");
    class_t fourth("d", 3);
    EXPECT_EQ(registering(fourth, group), "\n\avek_persERROR:DUPLICATE CODE=0x3\nd clash with b\n"
                                          "persistence of second code ignored"
                                          "\n\avek_persERROR:DUPLICATE CODE=0x3\nd clash with c\n"
                                          "persistence of second code ignored");
    EXPECT_EQ(fourth.descriptor.secondCode, 4U);
    class_t nameless("a");
    nameless.descriptor.name = nullptr;
    EXPECT_EQ(registering(nameless, group, vek::defaultOfGroup),
              "\n\avek_persERROR:DUPLICATE DEFAULT CODE=0\n clash with a\n'defaultness' of second code ignored");
}

TEST(persistence, aGroupWithoutClassesIsReported) {
    classGroup_t group{"group"};
    class_t fallback("fallback");
    group.defaultDescriptor = &fallback.descriptor;
    EXPECT_EQ(reported([&] { EXPECT_EQ(vek::lookup(&group, 1), &fallback.descriptor); }),
              "\n : EMPTY_GROUP ; called from vek_std/std_sys/vek_pers,164\n");
}

TEST(persistence, instancesComeFromTheFactory) {
    classGroup_t group{"group"};
    class_t made("made"), abstract("abstract");
    made.descriptor.factory = vek::makeInstance<vek::obj_t>;
    registering(made, group);
    registering(abstract, group);
    EXPECT_NE(std::unique_ptr<vek::obj_t>(vek::create(&group, "made")), nullptr);
    EXPECT_NE(std::unique_ptr<vek::obj_t>(vek::create(&group, vek::codeOf("made"))), nullptr);
    EXPECT_EQ(vek::create(&group, "abstract"), nullptr);
    EXPECT_EQ(vek::create(&group, "unknown"), nullptr);
    EXPECT_EQ(vek::lookup(nullptr, vek::codeOf("obj_t")), &vek::obj_t::descriptor());
}

TEST(persistence, groupDump) {
    classGroup_t outer{nullptr}, middle{"middle", &outer}, group{"group", &middle};
    EXPECT_EQ(printed([&] { vek::printGroup(&group, vek::templateGroup_e); }),
              "\nTEMPLATE Group of group , which enclosed into middle, which enclosed into UNKNOWN GROUP is EMPTY.");
    EXPECT_EQ(printed([] { vek::printGroup(nullptr, vek::macroGroup_e); }),
              "\nMACRO Group of UNKNOWN GROUP  is EMPTY.");
    class_t a("a"), b("b", 0x100), nameless("");
    registering(b, outer);
    registering(a, outer, vek::defaultOfGroup);
    EXPECT_EQ(printed([&] { vek::printGroup(&outer); }),
              "\n Group of UNKNOWN GROUP \n   0 :[0x1 (a)]\n   1 : 0x2 {0x100} (b) ");
    b.descriptor.name = nullptr;
    EXPECT_EQ(printed([&] { vek::printGroup(&outer); }),
              "\n Group of UNKNOWN GROUP \n   0 :[0x1 (a)]\n   1 : 0x2 {0x100} (NULL) ");
}

} // namespace
