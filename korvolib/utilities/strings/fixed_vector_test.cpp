#include <korvolib/utilities/strings/fixed_vector.h>

#include <memory>

#include <gtest/gtest.h>

#include <korvolib/utilities/strings/fixed_string.h>
#include <tests/support/allocation_count.h>

namespace kvKorvoV12_9_0_320 {
namespace {

using Names = KCFixedVector<KCFixedString<31>, 4>;

TEST(FixedVector, IsEmptyWhenNew) {
    const Names names;
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(names.size(), 0u);
    EXPECT_EQ(names.capacity(), 4u);
    EXPECT_EQ(names[0], "");
}

TEST(FixedVector, ConstructionFromCountAndFill) {
    const Names names(3, "x");
    EXPECT_EQ(names.size(), 3u);
    EXPECT_EQ(names[2], "x");
    EXPECT_EQ(names[3], "");
    EXPECT_EQ(Names(5, "x").size(), 4u);
    EXPECT_EQ(Names(0, "x").size(), 0u);
}

TEST(FixedVector, CopyIsIndependent) {
    Names names(2, "x");
    Names copy(names);
    copy[0] = "y";
    EXPECT_EQ(names[0], "x");
    EXPECT_FALSE(copy == names);
    names = copy;
    EXPECT_TRUE(copy == names);
}

TEST(FixedVector, AssignmentToItselfChangesNothing) {
    Names names(2, "x");
    Names& self = names;
    names = self;
    EXPECT_TRUE(names == Names(2, "x"));
    names = std::move(self);
    EXPECT_TRUE(names == Names(2, "x"));
}

TEST(FixedVector, MoveTakesTheElements) {
    KCFixedVector<std::unique_ptr<int>, 2> owners;
    owners.resize(1);
    owners[0] = std::make_unique<int>(7);
    KCFixedVector<std::unique_ptr<int>, 2> moved(std::move(owners));
    EXPECT_EQ(*moved[0], 7);
    KCFixedVector<std::unique_ptr<int>, 2> assigned;
    assigned = std::move(moved);
    EXPECT_EQ(*assigned[0], 7);
    EXPECT_EQ(assigned.size(), 1u);
}

TEST(FixedVector, IndexNeverLeavesTheArray) {
    Names names(4, "x");
    names[3] = "last";
    EXPECT_EQ(names[4], "last");
    EXPECT_EQ(names[~size_t{0}], "last");
}

TEST(FixedVector, PushBackStopsWhenFull) {
    Names names;
    for (const char* name : {"a", "b", "c", "d"})
        EXPECT_TRUE(names.push_back(name));
    EXPECT_FALSE(names.push_back("e"));
    EXPECT_EQ(names.size(), 4u);
    EXPECT_EQ(names[3], "d");
}

TEST(FixedVector, PopBackOfAnEmptyVectorDoesNothing) {
    Names names(1, "x");
    names.pop_back();
    names.pop_back();
    EXPECT_TRUE(names.empty());
}

TEST(FixedVector, AssignResizeAndClear) {
    Names names;
    names.assign(9, "x");
    EXPECT_EQ(names.size(), 4u);
    names.resize(2);
    EXPECT_EQ(names.size(), 2u);
    names.resize(9);
    EXPECT_EQ(names.size(), 4u);
    names.clear();
    EXPECT_TRUE(names.empty());
}

TEST(FixedVector, AssignTakesAnElementOfItself) {
    Names names(1, "x");
    names.assign(3, names[0]);
    EXPECT_TRUE(names == Names(3, "x"));
}

TEST(FixedVector, IteratesOverTheCount) {
    const Names names(3, "ab");
    size_t characters = 0;
    for (const auto& name : names)
        characters += name.size();
    EXPECT_EQ(characters, 6u);
    EXPECT_EQ(names.end() - names.data(), 3);
}

TEST(FixedVector, TakesNothingFromTheHeap) {
    const kvTest::AllocationCount count;
    KCFixedVector<KCFixedString<63>, 4> names(4, "x");
    KCFixedVector<KCFixedString<63>, 4> copy(names);
    copy[0] = "y";
    EXPECT_EQ(count.Taken(), 0u);
}

} // namespace
} // namespace kvKorvoV12_9_0_320
