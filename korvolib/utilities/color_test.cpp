#include <korvolib/utilities/color.h>

#include <cstring>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>

namespace {

using kvKorvo::KUColor;

TEST(Color, StartsBlackAndOpaque) { EXPECT_EQ(KUColor(), (KUColor{0, 0, 0, 255})); }

TEST(Color, FormatsWithoutAlphaWhenOpaque) {
    EXPECT_STREQ((KUColor{0x01, 0xAB, 0xF0, 255}.Format().c_str()), "#01ABF0");
    EXPECT_STREQ((KUColor{0x01, 0xAB, 0xF0, 0x0C}.Format().c_str()), "#01ABF00C");
}

TEST(Color, ParsesBothLengthsAndBothCases) {
    KUColor color;
    ASSERT_EQ(KUColor::Parse("#01abF0", color), kvKorvo::kErr_NoErr);
    EXPECT_EQ(color, (KUColor{0x01, 0xAB, 0xF0, 255}));
    ASSERT_EQ(KUColor::Parse("#01ABf07f", color), kvKorvo::kErr_NoErr);
    EXPECT_EQ(color, (KUColor{0x01, 0xAB, 0xF0, 0x7F}));
}

TEST(Color, RefusesAnythingElseAndLeavesTheOutput) {
    const char* const refused[] = {"",         "#",         "01ABF0",  "#01ABF",  "#01ABF00", "#01ABF00C1",
                                   " #01ABF0", "#01ABF0 ",  "#01ABG0", "#01AB/0", "#01AB:0",  "#01AB@0",
                                   "#01AB`0",  "#01ABF00G", "#-1ABF0", "#0x1234"};
    for (const char* text : refused) {
        KUColor color{1, 2, 3, 4};
        EXPECT_EQ(KUColor::Parse(text, color), kvKorvo::kErr_MalformedText) << text;
        EXPECT_EQ(color, (KUColor{1, 2, 3, 4})) << text;
    }
}

TEST(Color, RefusesNull) {
    KUColor color{1, 2, 3, 4};
    EXPECT_EQ(KUColor::Parse(nullptr, color), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(color, (KUColor{1, 2, 3, 4}));
}

TEST(Color, ReadsBackEveryChannelValue) {
    for (int value = 0; value < 256; ++value) {
        const auto channel = static_cast<uint8_t>(value);
        const KUColor color{channel, static_cast<uint8_t>(255 - value), 7, channel};
        KUColor read;
        ASSERT_EQ(KUColor::Parse(color.Format().c_str(), read), kvKorvo::kErr_NoErr);
        ASSERT_EQ(read, color);
    }
}

TEST(Color, WithAlphaChangesNothingElse) {
    constexpr KUColor color{1, 2, 3, 4};
    static_assert(color.WithAlpha(9) == KUColor{1, 2, 3, 9});
    EXPECT_EQ(color.WithAlpha(0), (KUColor{1, 2, 3, 0}));
}

TEST(Color, OpacityRoundsToTheNearestStepAndIsLimited) {
    const KUColor color{1, 2, 3, 4};
    EXPECT_EQ(color.WithOpacity(0.5).alpha, 128);
    EXPECT_EQ(color.WithOpacity(0.0).alpha, 0);
    EXPECT_EQ(color.WithOpacity(-1e300).alpha, 0);
    EXPECT_EQ(color.WithOpacity(1.0).alpha, 255);
    EXPECT_EQ(color.WithOpacity(std::numeric_limits<double>::infinity()).alpha, 255);
    EXPECT_EQ(color.WithOpacity(std::numeric_limits<double>::quiet_NaN()).alpha, 0);
}

TEST(Color, OpacityOfEveryAlphaLeadsBackToIt) {
    for (int value = 0; value < 256; ++value) {
        const KUColor color = KUColor().WithAlpha(static_cast<uint8_t>(value));
        ASSERT_EQ(KUColor().WithOpacity(color.GetOpacity()), color);
    }
}

} // namespace
