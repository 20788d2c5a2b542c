// Objects and their array: counting, ordering and printing, and the array against std::vector.

#include "vek/vek_std/std_objCltn/objCltn.hpp"

#include <cstdio>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <sstream>
#include <utility>
#include <vector>

namespace {

using vek::obj_t;
using vek::objArray_t;

/// Counts its memberships.
class member_t : public obj_t {
public:
    std::int32_t removedFrom(vek::objCltn_t *) override { return --memberships; }
    void addedTo(vek::objCltn_t *) override { ++memberships; }
    std::int32_t memberships = 0;
};

TEST(obj, countsLiveInstances) {
    const auto live = [] { return std::pair(obj_t::liveCount(), objArray_t::liveCount()); };
    EXPECT_EQ(live(), std::pair(0, 0));
    {
        const obj_t one, copy(one);
        const objArray_t array, arrayCopy(array);
        EXPECT_EQ(live(), std::pair(4, 2));
    }
    EXPECT_EQ(live(), std::pair(0, 0));
}

TEST(obj, ordersByAddress) {
    const obj_t pair[2];
    EXPECT_EQ(pair[0].compare(pair[1]), -1);
    EXPECT_EQ(pair[1].compare(pair[0]), 1);
    EXPECT_TRUE(pair[0].isOrdered(pair[1]) && pair[0].isOrdered(pair[0]) && !pair[1].isOrdered(pair[0]));
    EXPECT_EQ(pair[1].hash() - pair[0].hash(), sizeof(obj_t));
}

TEST(obj, descriptorsAreRegisteredWhenAskedFor) {
    const objArray_t array;
    const vek::classDescriptor_t &asked = static_cast<const obj_t &>(array).classDescriptor();
    EXPECT_EQ(&asked, vek::lookup(nullptr, vek::codeOf("objArray_t")));
    EXPECT_EQ(&asked, &array.persistentDescriptor());
    EXPECT_STREQ(std::unique_ptr<obj_t>(asked.factory())->className(), "objArray_t");
}

TEST(obj, printsWhatTheFlagsAskFor) {
    obj_t object;
    member_t member;
    objArray_t array;
    array.add(&member);
    char address[40];
    std::snprintf(address, sizeof address, "(%p)", static_cast<void *>(&object));
    const struct {
        const obj_t *object;
        std::uint32_t flags;
        std::string text;
    } cases[] = {{nullptr, 0, "NULL"},
                 {&object, 0, "obj_t"},
                 {&object, vek::withAddress, std::string(address) + "obj_t"},
                 {&object, vek::withAddress | vek::withoutClassName, address},
                 {&member, 0, "obj_t(1)"},
                 {&member, vek::withoutClassName, "(1)"},
                 {&member, vek::withoutMembershipCount, "obj_t"},
                 {&array, 0, "objArray_t. nObjs=1. xpnd_value=32"},
                 {&array, vek::withoutArrayCounts, "objArray_t"}};
    for (const auto &one : cases) {
        std::ostringstream stream;
        obj_t::printFlags = one.flags;
        stream << one.object;
        obj_t::printFlags = 0;
        EXPECT_EQ(stream.str(), one.text);
    }
    EXPECT_EQ(member.memberships, 1); // probing left it as it was
}

TEST(objArray, holdsWhatAVectorHolds) {
    std::mt19937 random(5);
    std::vector<member_t> members(50);
    std::vector<obj_t *> expected;
    objArray_t array(7);
    for (int step = 0; step < 5000; ++step) {
        member_t &member = members[random() % members.size()];
        if (random() % 2) {
            EXPECT_EQ(array.add(&member), &member);
            expected.push_back(&member);
        } else {
            const std::size_t index = random() % (expected.size() + 2);
            const bool isThere = index < expected.size();
            EXPECT_EQ(array.removeAt(static_cast<std::uint32_t>(index)), isThere ? expected[index] : nullptr);
            if (isThere)
                expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(index));
        }
        EXPECT_EQ(array.add(nullptr), nullptr);
        ASSERT_EQ(array.count(), expected.size());
        for (std::uint32_t i = 0; i < array.count(); ++i)
            ASSERT_EQ(array.at(i), expected[i]);
        ASSERT_EQ(member.memberships, std::count(expected.begin(), expected.end(), &member));
    }
    objArray_t assigned(3);
    const objArray_t copy(array);
    (assigned = array) = *&assigned;
    for (const objArray_t *other : {&copy, &std::as_const(assigned)}) {
        EXPECT_EQ(other->expansion(), 7U);
        ASSERT_EQ(other->count(), expected.size());
        EXPECT_EQ(other->at(1), expected[1]);
    }
    EXPECT_EQ(members[0].memberships, 3 * std::count(expected.begin(), expected.end(), &members[0]));
    for (objArray_t *one : {&array, &assigned})
        one->clear();
    EXPECT_EQ(array.at(0), nullptr);
    EXPECT_EQ(members[0].memberships, std::count(expected.begin(), expected.end(), &members[0]));
    {
        const objArray_t ending(copy);
        EXPECT_EQ(objArray_t(0).expansion(), objArray_t::defaultExpansion);
    } // tells its elements
    EXPECT_EQ(members[0].memberships, std::count(expected.begin(), expected.end(), &members[0]));
}

} // namespace
