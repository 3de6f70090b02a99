// Numbers in and out, formatting values.
#include <korvolib/utilities/strings/fixed_string_format.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <limits>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <korvolib/utilities/strings/fixed_string_test_internal.h>
#include <tests/support/german_locale.h>

namespace kvKorvoV12_9_0_320 {
namespace {

using kvTest::BlockString;
using kvTest::Checked;
using String = KCFixedString<31>;

/// The first 31 characters that the C library's printf writes.
std::string Printed(double value, int precision) {
    char text[1500]; // sign, 309 digits, point, 1100 decimals
    if (precision == -1)
        std::snprintf(text, sizeof text, "%.20g", value);
    else
        std::snprintf(text, sizeof text, "%.*f", precision, value);
    return std::string(text).substr(0, 31);
}

std::string Written(double value, int precision) {
    KCFixedString<63> string;
    string.append_double_with_precision(value, precision);
    return Checked(string);
}

template <class Number>
Number Read(const char* text) {
    Number number = 77;
    String(text) >> number;
    return number;
}

// ---- Whole numbers out

TEST(FixedStringNumbers, AppendUintThatDoesNotFitLeavesItsLowestDigits) {
    EXPECT_EQ(Checked(KCFixedString<3>().append_uint(123456, 10)), "456");
    EXPECT_EQ(Checked(KCFixedString<5>("ab").append_uint(123056, 10)), "ab056");
    EXPECT_EQ(Checked(KCFixedString<3>().append_uint(0xABCDEF, 16)), "DEF");
    EXPECT_EQ(Checked(KCFixedString<2>("ab").append_uint(1, 10)), "ab");
}

TEST(FixedStringNumbers, AppendUintInEveryBase) {
    EXPECT_EQ(Checked(String().append_uint(0, 10)), "0");
    EXPECT_EQ(Checked(String().append_uint(0, 16)), "0");
    EXPECT_EQ(Checked(String().append_uint(10, 2)), "1010");
    EXPECT_EQ(Checked(String().append_uint(255, 16)), "FF");
    EXPECT_EQ(Checked(String().append_uint(35, 36)), "Z");
    EXPECT_EQ(Checked(String().append_uint(36, 37)), "[");
    EXPECT_EQ(Checked(String().append_uint(5, INT_MAX)), "5");
    EXPECT_EQ(Checked(String().append_uint(201, 202)), std::string(1, '\0'));
    EXPECT_EQ(Checked(KCFixedString<64>().append_uint(UINT64_MAX, 2)), std::string(64, '1'));
    EXPECT_EQ(Checked(String().append_uint(UINT64_MAX, 10)), "18446744073709551615");
}

TEST(FixedStringNumbers, AppendUintWithABaseBelowTwoAppendsNothing) {
    for (const int base : {1, 0, -1, -10, INT_MIN})
        EXPECT_EQ(Checked(String("x").append_uint(5, base)), "x") << base;
}

TEST(FixedStringNumbers, MinusTakesTheLastCharacterOfRoom) {
    KCFixedString<1> string;
    string << -5;
    EXPECT_EQ(Checked(string), "-");
    EXPECT_EQ(Checked(KCFixedString<3>() << -123456), "-56");
    EXPECT_EQ(Checked(KCFixedString<2>("ab") << -5), "ab");
}

TEST(FixedStringNumbers, InsertionOfEveryWholeType) {
    KCFixedString<255> string;
    string << short{-7} << ' ' << 8 << ' ' << 9u << ' ' << -10l << ' ' << 11ul << ' ' << -12ll << ' ' << 13ull;
    EXPECT_EQ(Checked(string), "-7 8 9 -10 11 -12 13");
    string.clear() << SHRT_MIN << ' ' << INT_MIN << ' ' << UINT_MAX << ' ' << LLONG_MIN << ' ' << ULLONG_MAX;
    EXPECT_EQ(Checked(string), "-32768 -2147483648 4294967295 -9223372036854775808 18446744073709551615");
}

TEST(FixedStringNumbers, SmallWholeTypesReadAsNumbers) {
    String string;
    string << static_cast<signed char>(-65) << ' ' << static_cast<unsigned char>(200) << ' '
           << static_cast<unsigned short>(65535) << ' ' << char8_t{97};
    EXPECT_EQ(Checked(string), "-65 200 65535 97");
}

TEST(FixedStringNumbers, EveryLengthOfNumberAgreesWithPrintf) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const uint64_t value = random() >> (random() % 64);
        ASSERT_EQ(Checked(String() << value), std::to_string(value));
        ASSERT_EQ(Checked(String() << static_cast<int64_t>(value)), std::to_string(static_cast<int64_t>(value)));
    }
    for (uint64_t power = 1, i = 0; i < 20; ++i, power *= 10) {
        ASSERT_EQ(Checked(String() << power), std::to_string(power));
        ASSERT_EQ(Checked(String() << power - 1), std::to_string(power - 1));
    }
}

TEST(FixedStringNumbers, IntsAgreeWithPrintfWhateverTheRoom) {
    std::mt19937 random(5);
    for (int i = 0; i < 200000; ++i) {
        const int value = static_cast<int>(random()) >> (random() % 32);
        const std::string magnitude = std::to_string(std::abs(static_cast<int64_t>(value)));
        BlockString string(random() % 14);
        const size_t capacity = string.capacity();
        string.append("zzzzzzzzzzzzzz").clear() << value;
        const std::string sign(capacity != 0 && value < 0 ? 1 : 0, '-');
        const size_t kept = std::min(magnitude.size(), capacity - sign.size());
        const std::string expected = sign + magnitude.substr(magnitude.size() - kept);
        ASSERT_EQ(Checked(string), expected) << value;
        for (size_t behind = expected.size() + 1; behind < capacity; ++behind)
            ASSERT_EQ(string[behind], 'z') << value;
    }
    for (const int value : {0, 9, 10, 99, 100, 999, 1000, 999999, 1000000, 999999999, 1000000000, INT_MAX, INT_MIN})
        EXPECT_EQ(Checked(String() << value), std::to_string(value));
}

TEST(FixedStringNumbers, NumbersAtEveryCapacityStayInsideTheirBlock) {
    const std::string digits = std::to_string(UINT64_MAX);
    for (size_t capacity = 0; capacity <= 21; ++capacity) {
        BlockString string(capacity);
        string << UINT64_MAX;
        const size_t kept = std::min(capacity, digits.size());
        ASSERT_EQ(Checked(string), digits.substr(digits.size() - kept));
        ASSERT_EQ(Checked(string.clear() << 12345.678), std::string("12345.6780000000").substr(0, capacity));
    }
}

// ---- Floating-point numbers out

TEST(FixedStringNumbers, DoubleHasTenDecimalsAndFloatFive) {
    EXPECT_EQ(Checked(String() << 0.5), "0.5000000000");
    EXPECT_EQ(Checked(String() << 0.5f), "0.50000");
    EXPECT_EQ(Checked(String() << 0.1f), "0.10000");
    EXPECT_EQ(Checked(String() << -1.0), "-1.0000000000");
}

TEST(FixedStringNumbers, DoubleIsCutToThirtyOneCharacters) {
    EXPECT_EQ(Written(1e300, 10), Printed(1e300, 10));
    EXPECT_EQ(Written(1e300, 10).size(), 31u);
    EXPECT_EQ(Written(0.1, 40), "0.10000000000000000555111512312");
    EXPECT_EQ(Written(-0.1, 40).size(), 31u);
    EXPECT_EQ(Written(1.0, INT_MAX), "1.00000000000000000000000000000");
}

TEST(FixedStringNumbers, DoubleInGeneralFormatHasTwentyDigits) {
    for (const double value : {0.0, -0.0, 1.0, 0.1, 123456789.0, 1e21, 1e-5, -1e-4, 1.7976931348623157e308, 5e-324})
        EXPECT_EQ(Written(value, -1), Printed(value, -1));
}

TEST(FixedStringNumbers, NegativePrecisionCountsAsSix) {
    EXPECT_EQ(Written(0.5, -2), "0.500000");
    EXPECT_EQ(Written(0.5, INT_MIN), "0.500000");
}

TEST(FixedStringNumbers, NotANumberAndInfinitiesReadAsInPrintf) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double value : {infinity, -infinity, nan, std::copysign(nan, -1.0)})
        for (const int precision : {-1, 0, 10, 30})
            EXPECT_EQ(Written(value, precision), Printed(value, precision));
}

TEST(FixedStringNumbers, TiesRoundToEven) {
    for (const double value :
         {0.5, 1.5, 2.5, -0.5, 0.25, 0.75, 0.125, 0.375, 9.5, 99.5, 0.0, -0.0, 4503599627370495.5})
        for (int precision = 0; precision <= 3; ++precision)
            EXPECT_EQ(Written(value, precision), Printed(value, precision)) << value;
}

TEST(FixedStringNumbers, TheCarryReachesTheWholePart) {
    for (const double value :
         {0.9999, 9.9999, 999999.99999, 0.99999999999, 9007199254740991.0, 18446744073709549568.0})
        for (int precision = 0; precision <= 19; ++precision)
            EXPECT_EQ(Written(value, precision), Printed(value, precision)) << value;
}

TEST(FixedStringNumbers, PowersOfTwoAgreeWithPrintfAtEveryPrecision) {
    for (int exponent = -1080; exponent <= 1023; ++exponent) {
        for (const double mantissa : {1.0, 1.5, std::nextafter(2.0, 0.0)}) {
            for (const int precision : {0, 1, 5, 10, 18, 19, 20, 31, 400, 1074, 1100}) {
                const double value = std::ldexp(mantissa, exponent);
                ASSERT_EQ(Written(value, precision), Printed(value, precision)) << exponent << ' ' << precision;
            }
        }
    }
}

TEST(FixedStringNumbers, AMillionDoublesAgreeWithPrintfToTheLastDigit) {
    std::mt19937_64 random(2);
    for (int i = 0; i < 1000000; ++i) {
        double value = std::bit_cast<double>(random());
        if (i % 4 != 0) // an everyday size
            value =
                std::ldexp(static_cast<double>(static_cast<int64_t>(random())), -static_cast<int>(random() % 100));
        const int precision = i % 2 == 0 ? 10 : static_cast<int>(random() % 24) - 1;
        ASSERT_EQ(Written(value, precision), Printed(value, precision)) << std::hexfloat << value;
    }
}

TEST(FixedStringNumbers, DecimalFractionsAgreeWithPrintf) {
    for (int i = -20000; i <= 20000; ++i) {
        for (const int precision : {0, 1, 2, 3, 10}) {
            ASSERT_EQ(Written(i / 1000.0, precision), Printed(i / 1000.0, precision));
            ASSERT_EQ(Written(i / 1024.0, precision), Printed(i / 1024.0, precision));
        }
    }
}

// ---- Numbers in

TEST(FixedStringNumbers, ExtractionReadsTheNumberAtTheStart) {
    EXPECT_EQ(Read<int>("42"), 42);
    EXPECT_EQ(Read<int>(" \t\n\v\f\r-42 dB"), -42);
    EXPECT_EQ(Read<int>("+42"), 42);
    EXPECT_EQ(Read<int>("0x10"), 0);
    EXPECT_EQ(Read<int>("010"), 10);
    EXPECT_EQ(Read<unsigned>("7"), 7u);
    EXPECT_EQ(Read<long>("-7"), -7);
    EXPECT_EQ(Read<unsigned long>("7"), 7u);
    EXPECT_EQ(Read<long long>("-7"), -7);
    EXPECT_EQ(Read<unsigned long long>("7"), 7u);
    EXPECT_EQ(Read<double>("2.5e1 dB"), 25.0);
    EXPECT_EQ(Read<float>(" +0.5"), 0.5f);
}

TEST(FixedStringNumbers, ExtractionOfUnparsableTextGivesZero) {
    for (const char* text : {"", "abc", "-", "+", "- 1", "+-1", " ", "."}) {
        EXPECT_EQ(Read<int>(text), 0) << text;
        EXPECT_EQ(Read<unsigned long long>(text), 0u) << text;
        EXPECT_EQ(Read<double>(text), 0.0) << text;
        EXPECT_EQ(Read<float>(text), 0.0f) << text;
    }
}

TEST(FixedStringNumbers, ExtractionSaturates) {
    EXPECT_EQ(Read<int>("2147483647"), INT_MAX);
    EXPECT_EQ(Read<int>("2147483648"), INT_MAX);
    EXPECT_EQ(Read<int>("-2147483648"), INT_MIN);
    EXPECT_EQ(Read<int>("-2147483649"), INT_MIN);
    EXPECT_EQ(Read<int>("99999999999999999999999999"), INT_MAX);
    EXPECT_EQ(Read<unsigned>("4294967295"), UINT_MAX);
    EXPECT_EQ(Read<unsigned>("4294967296"), UINT_MAX);
    EXPECT_EQ(Read<long>("9223372036854775808"), LONG_MAX);
    EXPECT_EQ(Read<long long>("-9223372036854775808"), LLONG_MIN);
    EXPECT_EQ(Read<long long>("-9223372036854775809"), LLONG_MIN);
    EXPECT_EQ(Read<unsigned long long>("18446744073709551615"), ULLONG_MAX);
    EXPECT_EQ(Read<unsigned long long>("18446744073709551616"), ULLONG_MAX);
    EXPECT_EQ(Read<double>("1e999"), HUGE_VAL);
    EXPECT_EQ(Read<float>("-1e99"), -HUGE_VALF);
}

TEST(FixedStringNumbers, ExtractionOfANegativeUnsignedNegatesInItsType) {
    EXPECT_EQ(Read<unsigned>("-5"), 4294967291u);
    EXPECT_EQ(Read<unsigned long long>("-1"), ULLONG_MAX);
    EXPECT_EQ(Read<unsigned>("-4294967296"), UINT_MAX);
}

TEST(FixedStringNumbers, ExtractionOfWholeNumbersAgreesWithTheCLibrary) {
    std::mt19937_64 random(3);
    static constexpr char kChars[] = "0123456789012345678901234567890123456789 -+x";
    for (int i = 0; i < 100000; ++i) {
        std::string text;
        for (auto left = random() % 24; left != 0; --left)
            text += kChars[random() % (sizeof kChars - 1)];
        ASSERT_EQ(Read<long long>(text.c_str()), std::strtoll(text.c_str(), nullptr, 10)) << text;
        ASSERT_EQ(Read<unsigned long long>(text.c_str()), std::strtoull(text.c_str(), nullptr, 10)) << text;
    }
}

TEST(FixedStringNumbers, ExtractionOfDoublesKnowsWhatStrtodKnows) {
    EXPECT_EQ(Read<double>("0x1p4"), 16.0);
    EXPECT_EQ(Read<double>("-inf"), -HUGE_VAL);
    EXPECT_TRUE(std::isnan(Read<double>("nan")));
    EXPECT_EQ(Read<double>(" .5"), 0.5);
    EXPECT_EQ(Read<double>("0,5"), 0.0);
}

TEST(FixedStringNumbers, ExtractionReturnsTheString) {
    const String string("12.5");
    int whole = 0;
    double exact = 0;
    EXPECT_EQ(&(string >> whole >> exact), &string);
    EXPECT_EQ(whole, 12);
    EXPECT_EQ(exact, 12.5);
}

TEST(FixedStringNumbers, ExtractionOfATruth) {
    for (const char* text : {"YES", "yes", "True", "true", "1"}) {
        bool value = false;
        String(text) >> value;
        EXPECT_TRUE(value) << text;
    }
    for (const char* text : {"NO", "no", "False", "false", "0"}) {
        bool value = true;
        String(text) >> value;
        EXPECT_FALSE(value) << text;
    }
}

TEST(FixedStringNumbers, ExtractionOfNoTruthLeavesTheTarget) {
    for (const char* text : {"maybe", "", "yes ", "2", "on"}) {
        for (const bool before : {true, false}) {
            bool value = before;
            String(text) >> value;
            EXPECT_EQ(value, before) << text;
        }
    }
}

TEST(FixedStringNumbers, NothingFollowsTheLocaleOfTheProcess) {
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    EXPECT_EQ(Checked(String() << 1234.5 << ' ' << 0.5f), "1234.5000000000 0.50000");
    EXPECT_EQ(Written(0.1, -1), "0.10000000000000000555");
    EXPECT_EQ(Written(0.5, 25), "0.5000000000000000000000000");
    EXPECT_EQ(Written(1e20, 2), "100000000000000000000.00");
    EXPECT_EQ(Read<double>("0.5"), 0.5);
    EXPECT_EQ(Read<double>("0,5"), 0.0);
    EXPECT_EQ(Read<float>("0.5"), 0.5f);
    EXPECT_EQ(String("\xC4").case_insensitive_compare("\xE4"), 0xC4 - 0xE4);
    EXPECT_EQ(String("\xC4").find_case_insensitive("\xE4"), KCFixedStringBase::npos);
}

TEST(FixedStringNumbers, DateAndTimeStayEnglishInAGermanHost) {
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    String string;
    string << PCurrentDateAndTime();
    const std::string day = Checked(string).substr(0, 3);
    EXPECT_THAT((std::vector<std::string>{"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"}),
                testing::Contains(day));
}

// ---- Formatting values

TEST(FixedStringNumbers, DoubleWithPrecision) {
    String string;
    string << PDoubleWithPrecision(0.126, 2) << ' ' << PDoubleWithPrecision(3.0, 0) << ' '
           << PDoubleWithPrecision(0.5, -1);
    EXPECT_EQ(Checked(string), "0.13 3 0.5");
    EXPECT_EQ(&PDoubleWithPrecision(1.0, 1)(string.clear()), &string);
    EXPECT_EQ(Checked(string), "1.0");
}

TEST(FixedStringNumbers, CurrentDateAndTimeReadsAsCtime) {
    const auto ctimeNow = [] {
        const std::time_t now = std::time(nullptr);
        return std::string(std::ctime(&now), 24);
    };
    std::string before;
    std::string after;
    String string;
    do { // the second may change in between
        before = ctimeNow();
        string.clear() << PCurrentDateAndTime();
        after = ctimeNow();
    } while (before != after);
    EXPECT_EQ(Checked(string), before);
    EXPECT_EQ(Checked(PCurrentDateAndTime()(string.clear() << "at ")).substr(0, 3), "at ");
}

TEST(FixedStringNumbers, CurrentDateAndTimeIsCut) {
    KCFixedString<3> string;
    string << PCurrentDateAndTime();
    EXPECT_EQ(string.size(), 3u);
}

} // namespace
} // namespace kvKorvoV12_9_0_320
