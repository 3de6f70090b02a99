#include <korvolib/utilities/xml/xml_value.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <tests/support/allocation_count.h>
#include <tests/support/german_locale.h>

namespace {

using kvKorvo::KCFixedString;
using kvKorvo::KEXMLValue;
using kvKorvo::KUXMLValue;
using kvKorvo::ReadXMLValue;

template <class Value>
class XMLValueOf : public testing::Test {};
using ValueTypes = testing::Types<double, int32_t, int64_t, uint32_t, uint64_t, bool>;
TYPED_TEST_SUITE(XMLValueOf, ValueTypes);

TYPED_TEST(XMLValueOf, NullIsMissingAndChangesNothing) {
    TypeParam value = 1;
    EXPECT_EQ(ReadXMLValue(nullptr, value), KEXMLValue::Missing);
    EXPECT_EQ(value, TypeParam{1});
}

TYPED_TEST(XMLValueOf, TextThatIsNoSuchValueIsMalformedAndChangesNothing) {
    for (const char* text : {"", " ", "x", "1x", "x1", "1 1", "+", "-", "+-1", "0x1", "1,0", "nan", "inf", "tru"}) {
        TypeParam value = 1;
        EXPECT_EQ(ReadXMLValue(text, value), KEXMLValue::Malformed) << text;
        EXPECT_EQ(value, TypeParam{1}) << text;
    }
}

TYPED_TEST(XMLValueOf, BlanksAroundDoNotMatter) {
    TypeParam value{};
    EXPECT_EQ(ReadXMLValue(" \t\r\n1 \t\r\n", value), KEXMLValue::Found);
    EXPECT_EQ(value, TypeParam{1});
}

TYPED_TEST(XMLValueOf, WhatIsWrittenReadsBack) {
    const KUXMLValue written(TypeParam{1});
    TypeParam value{};
    ASSERT_TRUE(written.IsValid());
    EXPECT_EQ(ReadXMLValue(std::string(written.GetText()).c_str(), value), KEXMLValue::Found);
    EXPECT_EQ(value, TypeParam{1});
}

template <class Whole>
void ExpectLimits(const char* lowest, const char* below, const char* highest, const char* above) {
    Whole value = 7;
    EXPECT_EQ(ReadXMLValue(below, value), KEXMLValue::Malformed);
    EXPECT_EQ(ReadXMLValue(above, value), KEXMLValue::Malformed);
    EXPECT_EQ(value, Whole{7});
    EXPECT_EQ(ReadXMLValue(lowest, value), KEXMLValue::Found);
    EXPECT_EQ(value, std::numeric_limits<Whole>::lowest());
    EXPECT_EQ(KUXMLValue(value).GetText(), lowest);
    EXPECT_EQ(ReadXMLValue(highest, value), KEXMLValue::Found);
    EXPECT_EQ(value, std::numeric_limits<Whole>::max());
    EXPECT_EQ(KUXMLValue(value).GetText(), highest);
}

TEST(XMLValue, WholeNumbersReachTheEndsOfTheirTypes) {
    ExpectLimits<int32_t>("-2147483648", "-2147483649", "2147483647", "2147483648");
    ExpectLimits<uint32_t>("0", "-1", "4294967295", "4294967296");
    ExpectLimits<int64_t>("-9223372036854775808", "-9223372036854775809", "9223372036854775807",
                          "9223372036854775808");
    ExpectLimits<uint64_t>("0", "-1", "18446744073709551615", "18446744073709551616");
}

TEST(XMLValue, WholeNumbersTakeAPlus) {
    int32_t value = 0;
    EXPECT_EQ(ReadXMLValue("+12", value), KEXMLValue::Found);
    EXPECT_EQ(value, 12);
    EXPECT_EQ(ReadXMLValue("1.0", value), KEXMLValue::Malformed);
}

TEST(XMLValue, DoublesReadBackBitForBit) {
    std::mt19937_64 random(17);
    for (int round = 0; round < 20000; ++round) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        double read = 0;
        const KUXMLValue written(value);
        ASSERT_EQ(ReadXMLValue(std::string(written.GetText()).c_str(), read), KEXMLValue::Found);
        ASSERT_EQ(std::bit_cast<uint64_t>(read), std::bit_cast<uint64_t>(value));
    }
}

TEST(XMLValue, ADoubleThatIsNotFiniteHasNoText) {
    for (const double value : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()})
        EXPECT_FALSE(KUXMLValue(value).IsValid());
    double value = 7;
    EXPECT_EQ(ReadXMLValue("1e999", value), KEXMLValue::Malformed);
    EXPECT_EQ(value, 7);
}

TEST(XMLValue, BooleansAreWordsInAnyCase) {
    for (const char* text : {"true", "TRUE", "yes", "Yes", "1"}) {
        bool value = false;
        EXPECT_EQ(ReadXMLValue(text, value), KEXMLValue::Found) << text;
        EXPECT_TRUE(value) << text;
    }
    for (const char* text : {"false", "False", "no", "NO", "0"}) {
        bool value = true;
        EXPECT_EQ(ReadXMLValue(text, value), KEXMLValue::Found) << text;
        EXPECT_FALSE(value) << text;
    }
    EXPECT_EQ(KUXMLValue(true).GetText(), "true");
    EXPECT_EQ(KUXMLValue(false).GetText(), "false");
}

TEST(XMLValue, FixedStringsTakeTheTextAsItStandsCutAtTheirCapacity) {
    KCFixedString<4> text;
    EXPECT_EQ(ReadXMLValue(" abcdef", text), KEXMLValue::Found);
    EXPECT_STREQ(text.c_str(), " abc");
    EXPECT_EQ(ReadXMLValue(nullptr, text), KEXMLValue::Missing);
    EXPECT_STREQ(text.c_str(), " abc");
}

TEST(XMLValue, TextsAreTakenAsTheyAreAndNullIsEmpty) {
    EXPECT_EQ(KUXMLValue("abc").GetText(), "abc");
    EXPECT_EQ(KUXMLValue(static_cast<const char*>(nullptr)).GetText(), "");
    EXPECT_EQ(KUXMLValue(KCFixedString<7>("abc")).GetText(), "abc");
    EXPECT_EQ(KUXMLValue(std::string("abc")).GetText(), "abc");
}

TEST(XMLValue, NoPointerBecomesABoolean) {
    static_assert(!std::is_convertible_v<const int*, KUXMLValue>);
    static_assert(!std::is_convertible_v<const void*, KUXMLValue>);
    static_assert(!std::is_convertible_v<void (*)(), KUXMLValue>);
}

TEST(XMLValue, IsTheSameInAGermanHostAndTakesNothingFromTheHeap) {
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    const kvTest::AllocationCount count;
    const KUXMLValue written(0.5);
    double value = 0;
    EXPECT_EQ(written.GetText(), "0.5");
    EXPECT_EQ(ReadXMLValue("0.5", value), KEXMLValue::Found);
    EXPECT_EQ(value, 0.5);
    EXPECT_EQ(ReadXMLValue("0,5", value), KEXMLValue::Malformed);
    EXPECT_EQ(count.Taken(), 0u);
}

} // namespace
