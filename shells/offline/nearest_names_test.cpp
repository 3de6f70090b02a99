#include "nearest_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using Names = std::vector<std::string>;

// The definition itself, without a table.
size_t SlowDistance(std::string_view a, std::string_view b) {
    if (a.empty() || b.empty())
        return a.size() + b.size();
    const size_t kept = SlowDistance(a.substr(1), b.substr(1)) + (a[0] == b[0] ? 0 : 1);
    return std::min({kept, SlowDistance(a.substr(1), b) + 1, SlowDistance(a, b.substr(1)) + 1});
}

TEST(NearestNames, DistanceAgreesWithItsDefinition) {
    std::mt19937 random(1);
    const auto word = [&] {
        std::string text(random() % 6, ' ');
        std::generate(text.begin(), text.end(), [&] { return static_cast<char>('a' + random() % 3); });
        return text;
    };
    for (int i = 0; i < 3000; ++i) {
        const std::string a = word();
        const std::string b = word();
        ASSERT_EQ(EditDistance(a, b), SlowDistance(a, b)) << a << " " << b;
    }
}

TEST(NearestNames, DistanceTakesNoNoticeOfCase) { EXPECT_EQ(EditDistance("Ratio", "rATIO"), 0u); }

TEST(NearestNames, TheNearestComesFirstAndEqualsKeepTheirOrder) {
    const Names names = {"Low Cut", "Ratio", "Ration", "Radio"};
    EXPECT_EQ(NearestNames(names, "ratio"), (Names{"Ratio", "Ration", "Radio"}));
    EXPECT_EQ(NearestNames(names, "Ratix", 1), (Names{"Ratio"}));
}

TEST(NearestNames, AStartOfANameIsNear) {
    EXPECT_EQ(NearestNames({"Input Gain", "Ratio"}, "input"), (Names{"Input Gain"}));
}

TEST(NearestNames, NothingIsNearToNonsense) {
    EXPECT_TRUE(NearestNames({"Ratio", "Gain"}, "xyzzy").empty());
    EXPECT_TRUE(NearestNames({"Ratio"}, "").empty());
    EXPECT_TRUE(NearestNames({}, "Ratio").empty());
    EXPECT_TRUE(NearestNames({"Ratio"}, std::string(100000, 'R')).empty());
}

TEST(NearestNames, AsTheEndOfAComplaint) {
    EXPECT_EQ(NearestText({"Gain", "Attack"}, "Gian"), "; nearest: \"Gain\"");
    EXPECT_EQ(NearestText({"Gain", "Main"}, "Rain"), "; nearest: \"Gain\", \"Main\"");
    EXPECT_EQ(NearestText({"Gain"}, "xylophone"), "");
    EXPECT_EQ(NearestText({"Gain"}, "xylophone", "; there is one"), "; there is one");
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
