// Objects and their array: counting, ordering, printing, and when an array takes and gives back memory.

#include "vek_std/std_objCltn/objCltn.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>
#include <vector>

namespace {

using vek::obj_t;
using vek::objArray_t;

/// Counts its memberships and remembers the collection that spoke last.
class member_t : public obj_t {
public:
    std::int32_t removedFrom(vek::objCltn_t *collection) override {
        last = collection;
        return --memberships;
    }
    void addedTo(vek::objCltn_t *collection) override {
        last = collection;
        ++memberships;
    }
    std::int32_t memberships = 0;
    vek::objCltn_t *last = nullptr;
};

std::string printedText(obj_t *object, std::uint32_t flags) {
    std::ostringstream stream;
    obj_t::printFlags = flags;
    stream << object;
    obj_t::printFlags = 0;
    return stream.str();
}

TEST(obj, countsLiveInstances) {
    const std::int32_t objects = obj_t::liveCount();
    const std::int32_t arrays = objArray_t::liveCount();
    {
        const obj_t one, copy(one);
        const objArray_t array, arrayCopy(array);
        EXPECT_EQ(obj_t::liveCount(), objects + 4);
        EXPECT_EQ(objArray_t::liveCount(), arrays + 2);
    }
    EXPECT_EQ(obj_t::liveCount(), objects);
    EXPECT_EQ(objArray_t::liveCount(), arrays);
}

TEST(obj, ordersByAddress) {
    obj_t pair[2];
    EXPECT_EQ(pair[0].compare(pair[1]), -1);
    EXPECT_EQ(pair[1].compare(pair[0]), 1);
    EXPECT_EQ(pair[0].compare(pair[0]), 0);
    EXPECT_TRUE(pair[0].isOrdered(pair[1]) && pair[0].isOrdered(pair[0]) && !pair[1].isOrdered(pair[0]));
    EXPECT_EQ(pair[1].hash() - pair[0].hash(), sizeof(obj_t));
}

TEST(obj, descriptorsAreRegisteredWhenAskedFor) {
    const objArray_t array;
    const obj_t &object = array;
    const vek::classDescriptor_t &asked = object.classDescriptor();
    EXPECT_EQ(&asked, vek::lookup(nullptr, vek::codeOf("objArray_t")));
    EXPECT_EQ(&asked, &object.persistentDescriptor());
    const std::unique_ptr<obj_t> made(vek::create(nullptr, "objArray_t"));
    EXPECT_STREQ(made->className(), "objArray_t");
    EXPECT_STREQ(obj_t().className(), "obj_t");
}

TEST(obj, printsWhatTheFlagsAskFor) {
    obj_t object;
    member_t member;
    objArray_t array;
    array.add(&member);
    std::ostringstream address;
    address << '(' << static_cast<void *>(&object) << ')';

    EXPECT_EQ(printedText(nullptr, 0), "NULL");
    EXPECT_EQ(printedText(&object, 0), "obj_t");
    EXPECT_EQ(printedText(&object, vek::withAddress), address.str() + "obj_t");
    EXPECT_EQ(printedText(&object, vek::withAddress | vek::withoutClassName), address.str());
    EXPECT_EQ(printedText(&member, 0), "obj_t(1)");
    EXPECT_EQ(printedText(&member, vek::withoutClassName), "(1)");
    EXPECT_EQ(printedText(&member, vek::withoutMembershipCount), "obj_t");
    EXPECT_EQ(member.memberships, 1); // probing left it as it was
    EXPECT_EQ(member.membershipCount(), 1);
    EXPECT_EQ(printedText(&array, 0), "objArray_t. nObjs=1. xpnd_value=32");
    EXPECT_EQ(printedText(&array, vek::withoutArrayCounts), "objArray_t");
}

TEST(objArray, holdsWhatAVectorHolds) {
    std::mt19937 random(5);
    std::vector<member_t> members(200);
    std::vector<obj_t *> expected;
    objArray_t array(7);
    for (int step = 0; step < 5000; ++step) {
        member_t &member = members[random() % members.size()];
        const auto index = static_cast<std::uint32_t>(random() % (expected.size() + 2));
        if (random() % 2) {
            const std::int32_t before = member.memberships;
            EXPECT_EQ(array.add(&member), &member);
            expected.push_back(&member);
            EXPECT_EQ(member.memberships, before + 1);
            EXPECT_EQ(member.last, &array);
        } else if (index < expected.size()) {
            EXPECT_EQ(array.removeAt(index), expected[index]);
            expected.erase(expected.begin() + index);
        } else {
            EXPECT_EQ(array.removeAt(index), nullptr);
        }
        ASSERT_EQ(array.count(), expected.size());
        for (std::uint32_t i = 0; i < array.count(); ++i)
            ASSERT_EQ(array.at(i), expected[i]);
    }
    EXPECT_EQ(array.add(nullptr), nullptr);
    EXPECT_EQ(array.count(), expected.size());
    array.clear();
    EXPECT_EQ(array.count(), 0U);
    EXPECT_EQ(array.at(0), nullptr);
    for (const member_t &member : members)
        EXPECT_EQ(member.memberships, 0);
}

TEST(objArray, copiesTakeStepAndElements) {
    member_t one, two;
    objArray_t source(3);
    source.add(&one);
    source.add(&two);
    objArray_t copy(source), assigned;
    assigned.add(&one);
    assigned = source;
    assigned = *&assigned;
    for (const objArray_t *array : {&copy, &assigned}) {
        EXPECT_EQ(array->expansion(), 3U);
        ASSERT_EQ(array->count(), 2U);
        EXPECT_EQ(array->at(1), &two);
    }
    EXPECT_EQ(one.memberships, 3);
}

} // namespace
