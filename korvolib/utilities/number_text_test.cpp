#include <korvolib/utilities/number_text.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <tests/support/allocation_count.h>
#include <tests/support/german_locale.h>

namespace {

using kvKorvo::FormatDecimal;
using kvKorvo::kDecimalTextSize;
using kvKorvo::KUSafeStrcpy;
using kvKorvo::KUStod;
using kvKorvo::ParseDecimal;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Read {
    bool isFound;
    double value;
    size_t length;
    friend bool operator==(const Read&, const Read&) = default;
};

// Reads from a block that ends where the text ends, so that a sanitizer sees one character too many.
Read ReadExactly(const std::string& text) {
    const std::unique_ptr<char[]> exact(new char[text.size()]);
    std::memcpy(exact.get(), text.data(), text.size());
    Read read{false, -77.0, 99};
    read.isFound = KUStod(exact.get(), text.size(), read.value, &read.length);
    Read terminated{false, -77.0, 99};
    terminated.isFound = KUStod(text.c_str(), terminated.value, &terminated.length);
    EXPECT_EQ(read, terminated) << text;
    return read;
}

constexpr Read kNothing{false, -77.0, 99};

TEST(KUStod, ReadsTheExampleOfItsComment) {
    double value = 0;
    EXPECT_TRUE(KUStod("+0,5 dB", value));
    EXPECT_EQ(value, 0.5);
}

TEST(KUStod, ReadsWholeNumbersPointsAndExponents) {
    EXPECT_EQ(ReadExactly("3"), (Read{true, 3.0, 1}));
    EXPECT_EQ(ReadExactly("-3.25"), (Read{true, -3.25, 5}));
    EXPECT_EQ(ReadExactly("5."), (Read{true, 5.0, 2}));
    EXPECT_EQ(ReadExactly(".5"), (Read{true, 0.5, 2}));
    EXPECT_EQ(ReadExactly("1e3"), (Read{true, 1000.0, 3}));
    EXPECT_EQ(ReadExactly("1.5E+2"), (Read{true, 150.0, 6}));
    EXPECT_EQ(ReadExactly("25e-1x"), (Read{true, 2.5, 5}));
}

TEST(KUStod, SkipsBlanksBeforeTheNumberAndCountsThem) {
    EXPECT_EQ(ReadExactly(" \t\n\v\f\r 7 "), (Read{true, 7.0, 8}));
    EXPECT_EQ(ReadExactly(" +3"), (Read{true, 3.0, 3}));
}

TEST(KUStod, TakesACommaBeforeADigitAsThePoint) {
    EXPECT_EQ(ReadExactly("0,5"), (Read{true, 0.5, 3}));
    EXPECT_EQ(ReadExactly(",5"), (Read{true, 0.5, 2}));
    EXPECT_EQ(ReadExactly("-1,25e2"), (Read{true, -125.0, 7}));
    EXPECT_EQ(ReadExactly("5,"), (Read{true, 5.0, 1}));
    EXPECT_EQ(ReadExactly("3, 4"), (Read{true, 3.0, 1}));
}

TEST(KUStod, TakesOneSeparatorOnly) {
    EXPECT_EQ(ReadExactly("1,234.5"), (Read{true, 1.234, 5}));
    EXPECT_EQ(ReadExactly("1.234,5"), (Read{true, 1.234, 5}));
    EXPECT_EQ(ReadExactly("1..2"), (Read{true, 1.0, 2}));
}

TEST(KUStod, StopsBeforeWhatIsNoNumber) {
    EXPECT_EQ(ReadExactly("3 dB"), (Read{true, 3.0, 1}));
    EXPECT_EQ(ReadExactly("3e"), (Read{true, 3.0, 1}));
    EXPECT_EQ(ReadExactly("3e+"), (Read{true, 3.0, 1}));
    EXPECT_EQ(ReadExactly("3e+x"), (Read{true, 3.0, 1}));
    EXPECT_EQ(ReadExactly("0x10"), (Read{true, 0.0, 1}));
    EXPECT_EQ(ReadExactly("1k"), (Read{true, 1.0, 1}));
}

TEST(KUStod, RefusesTextWithoutANumberAndLeavesTheOutputs) {
    for (const char* text : {"",
                             " ",
                             "+",
                             "-",
                             ".",
                             ",",
                             "+.",
                             "-,",
                             ".e5",
                             "e5",
                             "inf",
                             "-inf",
                             "nan",
                             "NaN",
                             "infinity",
                             "abc",
                             "--1",
                             "+-1",
                             "+ 1",
                             "\xC2\xA0"
                             "1",
                             "x1"})
        EXPECT_EQ(ReadExactly(text), kNothing) << text;
}

TEST(KUStod, RefusesNull) {
    double value = -77.0;
    EXPECT_FALSE(KUStod(nullptr, value));
    EXPECT_FALSE(KUStod(nullptr, 5, value));
    EXPECT_EQ(value, -77.0);
}

TEST(KUStod, EndsAtACharacterOfValueZero) {
    double value = 0;
    size_t length = 0;
    EXPECT_TRUE(KUStod("12\0"
                       "34",
                       5, value, &length));
    EXPECT_EQ(value, 12.0);
    EXPECT_EQ(length, 2u);
}

TEST(KUStod, SaturatesWhatNoDoubleHolds) {
    EXPECT_EQ(ReadExactly("1e309"), (Read{true, kInfinity, 5}));
    EXPECT_EQ(ReadExactly("-1e309"), (Read{true, -kInfinity, 6}));
    EXPECT_EQ(ReadExactly("-1,5e309"), (Read{true, -kInfinity, 8}));
    EXPECT_EQ(ReadExactly("1e-400"), (Read{true, 0.0, 6}));
    EXPECT_EQ(ReadExactly("1,5e-400"), (Read{true, 0.0, 8}));
    EXPECT_EQ(ReadExactly("1e99999999999999999999999").value, kInfinity);
    EXPECT_EQ(ReadExactly("1e-99999999999999999999999").value, 0.0);
    EXPECT_EQ(ReadExactly("0e99999999999999999999999").value, 0.0);
    EXPECT_TRUE(std::signbit(ReadExactly("-0").value));
    EXPECT_TRUE(std::signbit(ReadExactly("-1e-400").value));
}

TEST(KUStod, ALongExponentAndALongFractionMayCancelOut) {
    const std::string zeros(1000, '0');
    EXPECT_EQ(ReadExactly("0." + zeros + "1e1001").value, 1.0);
    EXPECT_EQ(ReadExactly("0," + zeros + "1e1001").value, 1.0);
    EXPECT_EQ(ReadExactly("1" + zeros + "e-1000").value, 1.0);
    EXPECT_EQ(ReadExactly("1" + zeros + ",5e-1000").value, 1.0);
}

TEST(KUStod, BreaksATieWithADigitFarBehind) {
    // 1 + 2^-53 lies half way between 1 and its neighbour; ties go to even, anything more goes up.
    const std::string tie = "1,00000000000000011102230246251565404236316680908203125";
    EXPECT_EQ(ReadExactly(tie).value, 1.0);
    EXPECT_EQ(ReadExactly(tie + std::string(2000, '0')).value, 1.0);
    EXPECT_EQ(ReadExactly(tie + std::string(2000, '0') + "1").value, 1.0 + std::numeric_limits<double>::epsilon());
}

// A decimal number as people and programs write them, with a point.
std::string RandomNumberText(std::mt19937_64& random) {
    std::string text = random() % 2 != 0 ? "-" : "";
    const size_t digits = 1 + random() % 25;
    const size_t point = random() % (digits + 1);
    for (size_t i = 0; i < digits; ++i) {
        if (i == point)
            text += '.';
        text += static_cast<char>('0' + random() % 10);
    }
    if (random() % 2 != 0)
        text.append("e").append(std::to_string(static_cast<int>(random() % 700) - 350));
    return text;
}

TEST(KUStod, AgreesWithTheCLibraryOnRandomNumbers) {
    std::mt19937_64 random(11);
    for (int round = 0; round < 20000; ++round) {
        std::string text = RandomNumberText(random);
        const double expected = std::strtod(text.c_str(), nullptr);
        const Read withPoint = ReadExactly(text);
        ASSERT_EQ(withPoint, (Read{true, expected, text.size()})) << text;
        if (const size_t point = text.find('.');
            point != std::string::npos && point + 1 < text.size() && text[point + 1] != 'e') {
            text[point] = ',';
            ASSERT_EQ(ReadExactly(text), withPoint) << text;
        }
    }
}

TEST(KUStod, ReadsTheSameInAGermanHost) {
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    EXPECT_EQ(ReadExactly("0.5"), (Read{true, 0.5, 3}));
    EXPECT_EQ(ReadExactly("0,5"), (Read{true, 0.5, 3}));
}

TEST(KUStod, TakesNothingFromTheHeap) {
    const std::string longText = "1," + std::string(5000, '7') + "e10";
    const kvTest::AllocationCount count;
    double value = 0;
    EXPECT_TRUE(KUStod("3.14159265358979323846264338327950288", value));
    EXPECT_TRUE(KUStod(longText.c_str(), value));
    EXPECT_EQ(count.Taken(), 0u);
}

bool Parses(const std::string& text, double& value) { return ParseDecimal(text.data(), text.size(), value); }

TEST(ParseDecimal, TakesOneNumberWithBlanksAround) {
    double value = 0;
    EXPECT_TRUE(Parses(" -2.5e1\n", value));
    EXPECT_EQ(value, -25.0);
}

TEST(ParseDecimal, RefusesAnythingBesideAndWhatIsNotFinite) {
    for (const char* text : {"", " ", "1 2", "1x", "0,5", "1e999", "-1e999", "inf", "nan", "0x1", "1e"}) {
        double value = -77.0;
        EXPECT_FALSE(Parses(text, value)) << text;
        EXPECT_EQ(value, -77.0) << text;
    }
    double value = -77.0;
    EXPECT_FALSE(ParseDecimal(nullptr, 0, value));
}

std::string Format(double value) {
    char text[kDecimalTextSize];
    const size_t length = FormatDecimal(value, text, sizeof text);
    EXPECT_EQ(length, std::strlen(text));
    return text;
}

TEST(FormatDecimal, WritesTheShortestText) {
    EXPECT_EQ(Format(0.1), "0.1");
    EXPECT_EQ(Format(-3.0), "-3");
    EXPECT_EQ(Format(0.0), "0");
    EXPECT_EQ(Format(-0.0), "-0");
    EXPECT_EQ(Format(1e300), "1e+300");
    EXPECT_EQ(Format(1000.0000000000001), "1000.0000000000001");
}

TEST(FormatDecimal, WritesWordsForWhatIsNoNumber) {
    EXPECT_EQ(Format(kInfinity), "inf");
    EXPECT_EQ(Format(-kInfinity), "-inf");
    EXPECT_EQ(Format(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(Format(-std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(FormatDecimal, WritesAllOrNothingAtEveryCapacity) {
    const std::string expected = "-1.2345e-300";
    for (size_t capacity = 0; capacity <= expected.size() + 2; ++capacity) {
        const std::unique_ptr<char[]> exact(new char[capacity]);
        const size_t length = FormatDecimal(-1.2345e-300, exact.get(), capacity);
        const bool fits = capacity > expected.size();
        EXPECT_EQ(length, fits ? expected.size() : 0);
        if (capacity > 0) {
            EXPECT_EQ(std::string(exact.get()), fits ? expected : "");
        }
    }
    EXPECT_EQ(FormatDecimal(1.0, nullptr, 10), 0u);
}

TEST(FormatDecimal, ReadsBackBitForBit) {
    std::mt19937_64 random(5);
    for (int round = 0; round < 50000; ++round) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        const std::string text = Format(value);
        double read = 0;
        ASSERT_TRUE(Parses(text, read)) << text;
        ASSERT_EQ(std::bit_cast<uint64_t>(read), std::bit_cast<uint64_t>(value)) << text;
    }
}

TEST(FormatDecimal, ReadsBackTheEndsOfTheRange) {
    for (const double value : {std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest(),
                               std::numeric_limits<double>::min(), std::numeric_limits<double>::denorm_min()}) {
        double read = 0;
        EXPECT_TRUE(Parses(Format(value), read));
        EXPECT_EQ(read, value);
    }
}

TEST(FormatDecimal, WritesAPointInAGermanHostWithoutTheHeap) {
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    char text[kDecimalTextSize];
    std::snprintf(text, sizeof text, "%.1f", 0.5);
    ASSERT_STREQ(text, "0,5");
    const kvTest::AllocationCount count;
    FormatDecimal(0.5, text, sizeof text);
    EXPECT_EQ(count.Taken(), 0u);
    EXPECT_STREQ(text, "0.5");
}

TEST(KUSafeStrcpy, CopiesCutsAndTerminatesAtEveryCapacity) {
    const std::string source = "abcdef";
    for (size_t capacity = 1; capacity <= source.size() + 2; ++capacity) {
        const std::unique_ptr<char[]> exact(new char[capacity]);
        const size_t copied = KUSafeStrcpy(exact.get(), source.c_str(), capacity);
        EXPECT_EQ(copied, std::min(source.size(), capacity - 1));
        EXPECT_EQ(std::string(exact.get()), source.substr(0, capacity - 1));
    }
}

TEST(KUSafeStrcpy, NeedsNoTerminatorBeyondWhatFits) {
    const char source[3] = {'a', 'b', 'c'};
    char to[3];
    EXPECT_EQ(KUSafeStrcpy(to, source, 3), 2u);
    EXPECT_STREQ(to, "ab");
}

TEST(KUSafeStrcpy, ANullSourceIsTheEmptyText) {
    char to[4] = "old";
    EXPECT_EQ(KUSafeStrcpy(to, nullptr), 0u);
    EXPECT_STREQ(to, "");
}

TEST(KUSafeStrcpy, NullOrNoCapacityGetsNothing) {
    char to[4] = "old";
    EXPECT_EQ(KUSafeStrcpy(nullptr, "abc", 4), 0u);
    EXPECT_EQ(KUSafeStrcpy(to, "abc", 0), 0u);
    EXPECT_STREQ(to, "old");
}

TEST(KUSafeStrcpy, KnowsTheSizeOfAnArray) {
    char to[4];
    EXPECT_EQ(KUSafeStrcpy(to, "abcdef"), 3u);
    EXPECT_STREQ(to, "abc");
}

TEST(KUSafeStrcpy, MayOverlap) {
    char text[8] = "abcdef";
    EXPECT_EQ(KUSafeStrcpy(text + 1, text, 6), 5u);
    EXPECT_STREQ(text, "aabcde");
}

} // namespace
