#include "text.h"

#include <gtest/gtest.h>

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

TEST(HostText, NumbersAreTheShortestThatReadBack) {
    EXPECT_EQ(NumberText(0.5), "0.5");
    EXPECT_EQ(NumberText(1000.0), "1000");
    EXPECT_EQ(NumberText(-0.1), "-0.1");
    EXPECT_EQ(NumberText(1e6), "1000000");
    EXPECT_EQ(NumberText(999999999999999.0), "999999999999999");
    EXPECT_EQ(NumberText(1e15), "1e+15");
    EXPECT_EQ(NumberText(-1e-7), "-1e-07");
}

TEST(HostText, FixedNumbersHaveTheirDecimals) {
    EXPECT_EQ(FixedText(2.0, 2), "2.00");
    EXPECT_EQ(FixedText(-0.25, 1), "-0.2");
    EXPECT_EQ(FixedText(1e308, 12).size(), 309u + 13u);
}

TEST(HostText, ANumberIsReadWholeOrNotAtAll) {
    double number = 7.0;
    for (const char* const text :
         {"", "abc", "1x", " 1", "1 ", "+-1", "++1", "nan", "inf", "-inf", "1e999", "0x10", "0,5"})
        EXPECT_FALSE(ReadNumber(text, number)) << text;
    EXPECT_EQ(number, 7.0);
    EXPECT_TRUE(ReadNumber("+0.5e1", number));
    EXPECT_EQ(number, 5.0);
}

TEST(HostText, QuotedTextStaysOnOneLineAndIsCut) {
    EXPECT_EQ(Quoted("a\nb"), "\"a?b\"");
    EXPECT_EQ(Quoted(std::string(60, 'x')), "\"" + std::string(60, 'x') + "\"");
    EXPECT_EQ(Quoted(std::string(61, 'x')), "\"" + std::string(60, 'x') + "…\"");
}

TEST(HostText, PartsAreJoinedAsInASentence) {
    EXPECT_EQ(JoinedText({}, " or "), "");
    EXPECT_EQ(JoinedText({"a"}, " or "), "a");
    EXPECT_EQ(JoinedText({"a", "b"}, " or "), "a or b");
    EXPECT_EQ(JoinedText({"a", "b", "c"}, " or "), "a, b or c");
}

TEST(HostText, WidthCountsCharactersNotBytes) {
    EXPECT_EQ(TextWidth("°C … dB"), 7u);
    EXPECT_EQ(TextWidth(""), 0u);
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
