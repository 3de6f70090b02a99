#include <korvolib/alg/key_values.h>
#include <korvolib/alg/meters.h>
#include <korvolib/utilities/error_codes.h>

#include <gtest/gtest.h>

namespace {

using namespace kvKorvo;

TEST(KeyValues, ValuesReadAsTheTypeTheyWereSetAs) {
    KCKeyValues values;
    EXPECT_EQ(values.SetText("maker", "Korvo"), 0);
    EXPECT_EQ(values.SetBool("safe", true), 0);
    EXPECT_EQ(values.SetNumber("ratio", 0.1), 0);
    EXPECT_STREQ(values.GetText("maker"), "Korvo");
    EXPECT_TRUE(values.GetBool("safe"));
    EXPECT_EQ(values.GetNumber("ratio"), 0.1);
    EXPECT_EQ(values.size(), 3u);
    EXPECT_TRUE(values.Contains("safe"));
}

TEST(KeyValues, UnknownOrUnreadableGivesTheOtherwise) {
    KCKeyValues values;
    values.SetText("word", "maybe");
    EXPECT_TRUE(values.GetBool("word", true));
    EXPECT_FALSE(values.GetBool("word"));
    EXPECT_EQ(values.GetNumber("word", 7.0), 7.0);
    EXPECT_EQ(values.GetNumber("none", 7.0), 7.0);
    EXPECT_STREQ(values.GetText("none", "x"), "x");
    EXPECT_FALSE(values.Contains("none"));
}

TEST(KeyValues, LaterValueReplacesAndNullIsEmpty) {
    KCKeyValues values;
    values.SetText("a", "1");
    values.SetText("a", nullptr);
    EXPECT_STREQ(values.GetText("a"), "");
    EXPECT_EQ(values.size(), 1u);
}

TEST(KeyValues, NameIsNeeded) {
    KCKeyValues values;
    EXPECT_EQ(values.SetText(nullptr, "1"), kErr_NullArgument);
    EXPECT_EQ(values.SetText("", "1"), kErr_NullArgument);
    EXPECT_STREQ(values.GetText(nullptr, "x"), "x");
}

TEST(Meters, KeepTheNewestLevel) {
    KCMeters meters;
    ASSERT_EQ(meters.Init(2), 0);
    meters.Set(1, -3.5f);
    meters.Set(1, -6.0f);
    meters.Set(2, 1.0f);
    EXPECT_EQ(meters.Get(1), -6.0f);
    EXPECT_EQ(meters.Get(0), 0.0f);
    EXPECT_EQ(meters.Get(2), 0.0f);
    EXPECT_EQ(meters.GetNumMeters(), 2u);
    EXPECT_EQ(meters.Init(SIZE_MAX), kErr_AllocationFailed);
    EXPECT_EQ(meters.Get(1), -6.0f);
}

} // namespace
