#include <korvolib/utilities/four_cc.h>

#include <unordered_set>

#include <gtest/gtest.h>

namespace kvKorvoV12_9_0_320 {
namespace {

static_assert(sizeof(KCFourCC) == 4);
static_assert(KCFourCC("XPst") == KCFourCC('X', 'P', 's', 't'));

TEST(FourCC, FirstCharacterIsTheMostSignificantByte) {
    EXPECT_EQ(KCFourCC("XPst").Value(), 0x58507374u);
    EXPECT_EQ(static_cast<uint32_t>(KCFourCC('c', 'u', 'r', 'S')), 0x63757253u);
    EXPECT_EQ(KCFourCC("pref")[0], 'p');
    EXPECT_EQ(KCFourCC("pref")[3], 'f');
    EXPECT_EQ(KCFourCC("pref")[4], '\0');
}

TEST(FourCC, IntegersKeepTheirBits) {
    EXPECT_EQ(KCFourCC(int32_t{-1}).Value(), 0xFFFFFFFFu);
    EXPECT_EQ(static_cast<int32_t>(KCFourCC(0xFFFFFFFEu)), -2);
    EXPECT_EQ(KCFourCC().Value(), 0u);
    EXPECT_EQ(KCFourCC('\xFF', '\0', '\0', '\x80').Value(), 0xFF000080u);
}

TEST(FourCC, ComparesAsItsText) {
    EXPECT_TRUE(KCFourCC("abcd") < KCFourCC("abce"));
    EXPECT_TRUE(KCFourCC("\xFF   ") > KCFourCC("abcd"));
    EXPECT_TRUE(KCFourCC("abcd") == "abcd");
    EXPECT_TRUE(KCFourCC("abcd") != 0x61626365);
}

TEST(FourCC, ServesAsAHashKey) {
    const std::unordered_set<KCFourCC> codes{"XPst", "curS"};
    EXPECT_EQ(codes.count("curS"), 1u);
    EXPECT_EQ(codes.count("pref"), 0u);
}

} // namespace
} // namespace kvKorvoV12_9_0_320
