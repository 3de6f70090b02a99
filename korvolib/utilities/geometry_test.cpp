#include <korvolib/utilities/geometry.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace {

using kvKorvo::KUConvertCoordinate;
using kvKorvo::KUPoint;
using kvKorvo::KURect;
using kvKorvo::KUSize;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr short kShortMin = std::numeric_limits<short>::min();
constexpr short kShortMax = std::numeric_limits<short>::max();

template <class T>
class RectOf : public testing::Test {};
using CoordinateTypes = testing::Types<double, float, int, short>;
TYPED_TEST_SUITE(RectOf, CoordinateTypes);

TYPED_TEST(RectOf, StartsAllZeroAndEmpty) {
    const KURect<TypeParam> rect;
    EXPECT_EQ(rect, KURect<TypeParam>::FromEdges(0, 0, 0, 0));
    EXPECT_TRUE(rect.IsEmpty());
}

TYPED_TEST(RectOf, FromEdgesPutsEachEdgeWhereItsNameSays) {
    const auto rect = KURect<TypeParam>::FromEdges(1, 2, 11, 22);
    EXPECT_EQ(rect.left, 1);
    EXPECT_EQ(rect.top, 2);
    EXPECT_EQ(rect.right, 11);
    EXPECT_EQ(rect.bottom, 22);
    EXPECT_EQ(rect.GetWidth(), 10);
    EXPECT_EQ(rect.GetHeight(), 20);
}

TYPED_TEST(RectOf, FromOriginAddsTheSize) {
    const auto rect = KURect<TypeParam>::FromOrigin({1, 2}, {10, 20});
    EXPECT_EQ(rect, KURect<TypeParam>::FromEdges(1, 2, 11, 22));
    EXPECT_EQ(rect.GetOrigin(), (KUPoint<TypeParam>{1, 2}));
}

TYPED_TEST(RectOf, ContainsItsLeftAndTopEdgesButNotTheOthers) {
    const auto rect = KURect<TypeParam>::FromEdges(1, 2, 11, 22);
    EXPECT_TRUE(rect.Contains(KUPoint<TypeParam>{1, 2}));
    EXPECT_TRUE(rect.Contains(KUPoint<TypeParam>{10, 21}));
    EXPECT_FALSE(rect.Contains(KUPoint<TypeParam>{0, 2}));
    EXPECT_FALSE(rect.Contains(KUPoint<TypeParam>{1, 1}));
    EXPECT_FALSE(rect.Contains(KUPoint<TypeParam>{11, 2}));
    EXPECT_FALSE(rect.Contains(KUPoint<TypeParam>{1, 22}));
}

TYPED_TEST(RectOf, ContainsItselfAndWhatIsInsideButNothingEmpty) {
    const auto rect = KURect<TypeParam>::FromEdges(0, 0, 10, 10);
    EXPECT_TRUE(rect.Contains(rect));
    EXPECT_TRUE(rect.Contains(KURect<TypeParam>::FromEdges(1, 1, 9, 9)));
    EXPECT_FALSE(rect.Contains(KURect<TypeParam>::FromEdges(1, 1, 11, 9)));
    EXPECT_FALSE(rect.Contains(KURect<TypeParam>::FromEdges(5, 5, 5, 5)));
    EXPECT_FALSE(KURect<TypeParam>().Contains(rect));
}

TYPED_TEST(RectOf, TouchingRectanglesDoNotIntersect) {
    const auto rect = KURect<TypeParam>::FromEdges(0, 0, 10, 10);
    const auto beside = KURect<TypeParam>::FromEdges(10, 0, 20, 10);
    EXPECT_FALSE(rect.Intersects(beside));
    EXPECT_EQ(rect.Intersection(beside), KURect<TypeParam>());
    EXPECT_TRUE(rect.Intersects(KURect<TypeParam>::FromEdges(9, 9, 20, 20)));
}

TYPED_TEST(RectOf, IntersectionIsWhatBothCover) {
    const auto left = KURect<TypeParam>::FromEdges(0, 0, 10, 10);
    const auto right = KURect<TypeParam>::FromEdges(5, 3, 20, 7);
    EXPECT_EQ(left.Intersection(right), KURect<TypeParam>::FromEdges(5, 3, 10, 7));
    EXPECT_EQ(right.Intersection(left), left.Intersection(right));
}

TYPED_TEST(RectOf, UnionIsAroundBothAndIgnoresEmptyOnes) {
    const auto left = KURect<TypeParam>::FromEdges(0, 0, 10, 10);
    const auto right = KURect<TypeParam>::FromEdges(15, 3, 20, 17);
    const auto empty = KURect<TypeParam>::FromEdges(50, 50, 50, 60);
    EXPECT_EQ(left.Union(right), KURect<TypeParam>::FromEdges(0, 0, 20, 17));
    EXPECT_EQ(left.Union(empty), left);
    EXPECT_EQ(empty.Union(left), left);
    EXPECT_EQ(empty.Union(empty), KURect<TypeParam>());
}

TYPED_TEST(RectOf, OffsetMovesEveryEdge) {
    const auto rect = KURect<TypeParam>::FromEdges(0, 0, 10, 20);
    EXPECT_EQ(rect.Offset(3, -4), KURect<TypeParam>::FromEdges(3, -4, 13, 16));
}

TYPED_TEST(RectOf, InsetMovesEdgesInwardsAndOutwards) {
    const auto rect = KURect<TypeParam>::FromEdges(0, 0, 10, 20);
    EXPECT_EQ(rect.Inset(1, 2), KURect<TypeParam>::FromEdges(1, 2, 9, 18));
    EXPECT_EQ(rect.Inset(-1, -2), KURect<TypeParam>::FromEdges(-1, -2, 11, 22));
}

TYPED_TEST(RectOf, InsetBeyondTheMiddleStopsThere) {
    const auto rect = KURect<TypeParam>::FromEdges(0, 0, 10, 20);
    EXPECT_EQ(rect.Inset(5, 10), KURect<TypeParam>::FromEdges(5, 10, 5, 10));
    EXPECT_EQ(rect.Inset(6, 11), KURect<TypeParam>::FromEdges(5, 10, 5, 10));
}

TYPED_TEST(RectOf, NormalisedExchangesCrossedEdges) {
    const auto crossed = KURect<TypeParam>::FromEdges(10, 20, 1, 2);
    EXPECT_TRUE(crossed.IsEmpty());
    EXPECT_EQ(crossed.GetWidth(), -9);
    EXPECT_EQ(crossed.Normalised(), KURect<TypeParam>::FromEdges(1, 2, 10, 20));
    EXPECT_EQ(crossed.Normalised().Normalised(), crossed.Normalised());
}

TEST(Rect, IsNotMadeOfFourNumbersInARow) {
    static_assert(!std::is_aggregate_v<KURect<double>>);
    static_assert(!std::is_constructible_v<KURect<double>, double, double, double, double>);
}

TEST(Rect, KeepsItsEdgesInMemoryTopFirst) {
    const auto rect = KURect<int>::FromEdges(1, 2, 3, 4);
    static_assert(sizeof rect == 4 * sizeof(int));
    const int expected[4] = {2, 1, 4, 3};
    EXPECT_EQ(std::memcmp(&rect, expected, sizeof expected), 0);
}

TEST(Rect, ANotANumberEdgeMakesItEmpty) {
    for (int edge = 0; edge < 4; ++edge) {
        double edges[4] = {0, 0, 10, 10};
        edges[edge] = kNaN;
        const auto rect = KURect<double>::FromEdges(edges[0], edges[1], edges[2], edges[3]);
        EXPECT_TRUE(rect.IsEmpty());
        EXPECT_FALSE(rect.Contains({5, 5}));
        EXPECT_FALSE(rect.Intersects(KURect<double>::FromEdges(0, 0, 10, 10)));
        EXPECT_FALSE(rect == rect);
    }
}

TEST(Rect, AnInfiniteOneContainsEveryPoint) {
    const auto rect = KURect<double>::FromEdges(-kInfinity, -kInfinity, kInfinity, kInfinity);
    EXPECT_TRUE(rect.Contains({1e300, -1e300}));
    EXPECT_FALSE(rect.Contains({kNaN, 0}));
    EXPECT_EQ(rect.GetWidth(), kInfinity);
}

TEST(Rect, ShortEdgesSaturateInsteadOfOverflowing) {
    const auto rect = KURect<short>::FromEdges(kShortMin, kShortMin, kShortMax, kShortMax);
    EXPECT_EQ(rect.GetWidth(), 65535);
    EXPECT_EQ(rect.Offset(1, -1), KURect<short>::FromEdges(kShortMin + 1, kShortMin, kShortMax, kShortMax - 1));
    EXPECT_EQ(rect.Inset(-1, kShortMin), rect);
    EXPECT_EQ(KURect<short>::FromOrigin({kShortMax, 0}, {1, 1}).right, kShortMax);
}

TEST(Rect, IntEdgesSaturateInsteadOfOverflowing) {
    constexpr int kMin = std::numeric_limits<int>::min();
    constexpr int kMax = std::numeric_limits<int>::max();
    const auto rect = KURect<int>::FromEdges(kMin, kMin, kMax, kMax);
    EXPECT_EQ(rect.GetHeight(), 4294967295);
    EXPECT_EQ(rect.Offset(kMax, kMin), KURect<int>::FromEdges(-1, kMin, kMax, -1));
    EXPECT_EQ(rect.Inset(kMin, kMin), rect);
}

TEST(Rect, CentreIsTheMiddleEvenOfHugeRectangles) {
    EXPECT_EQ(KURect<double>::FromEdges(0, 0, 3, 5).GetCentre(), (KUPoint<double>{1.5, 2.5}));
    EXPECT_EQ(KURect<double>::FromEdges(1e308, 0, 1.5e308, 0).GetCentre().x, 1.25e308);
    EXPECT_EQ(KURect<short>::FromEdges(kShortMin, -3, kShortMax, 0).GetCentre(), (KUPoint<short>{-1, -2}));
}

TEST(Rect, ConversionRoundsToTheNearestAndSaturates) {
    const auto rect = KURect<double>::FromEdges(0.5, -0.5, 1e9, -kInfinity).ConvertTo<short>();
    EXPECT_EQ(rect, KURect<short>::FromEdges(1, -1, kShortMax, kShortMin));
}

TEST(ConvertCoordinate, MapsEveryKindOfNumberToADefinedOne) {
    EXPECT_EQ(KUConvertCoordinate<short>(kNaN), 0);
    EXPECT_EQ(KUConvertCoordinate<int>(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(KUConvertCoordinate<short>(32767.4), kShortMax);
    EXPECT_EQ(KUConvertCoordinate<short>(32767.5), kShortMax);
    EXPECT_EQ(KUConvertCoordinate<int>(2147483647.0f), std::numeric_limits<int>::max());
    EXPECT_EQ(KUConvertCoordinate<short>(40000), kShortMax);
    EXPECT_EQ(KUConvertCoordinate<float>(1e300), std::numeric_limits<float>::infinity());
    EXPECT_EQ(KUConvertCoordinate<float>(-1e300), -std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(KUConvertCoordinate<float>(kNaN)));
}

TEST(Size, IsEmptyWhenASideIsNotAboveZero) {
    EXPECT_TRUE(KUSize<double>().IsEmpty());
    EXPECT_TRUE((KUSize<double>{1, kNaN}.IsEmpty()));
    EXPECT_TRUE((KUSize<short>{-1, 1}.IsEmpty()));
    EXPECT_FALSE((KUSize<double>{1, 1}.IsEmpty()));
    EXPECT_EQ((KUSize<double>{1.5, 2.4}.ConvertTo<int>()), (KUSize<int>{2, 2}));
}

TEST(Rect, SetOperationsAgreeWithCountingCells) {
    std::mt19937 random(3);
    auto edge = [&] { return static_cast<short>(random() % 9); };
    for (int round = 0; round < 3000; ++round) {
        const auto a = KURect<short>::FromEdges(edge(), edge(), edge(), edge());
        const auto b = KURect<short>::FromEdges(edge(), edge(), edge(), edge());
        bool anyShared = false;
        for (short x = 0; x < 9; ++x)
            for (short y = 0; y < 9; ++y) {
                const KUPoint<short> cell{x, y};
                const bool inA = a.Contains(cell);
                const bool inB = b.Contains(cell);
                anyShared |= inA && inB;
                ASSERT_EQ(a.Intersection(b).Contains(cell), inA && inB);
                ASSERT_TRUE(!(inA || inB) || a.Union(b).Contains(cell));
            }
        ASSERT_EQ(a.Intersects(b), anyShared);
    }
}

} // namespace
