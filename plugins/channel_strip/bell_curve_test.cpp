#include <plugins/channel_strip/bell_curve.h>
#include <plugins/channel_strip/channel_strip.h>

#include <tests/support/allocation_count.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace kvStrip {
namespace {

constexpr double kRate = 48000.0;
constexpr double kLowest = 20.0, kHighest = 20000.0;

double FrequencyAt(double place) { return kLowest * std::pow(kHighest / kLowest, place); }

TEST(BellCurve, HasTheFiltersMagnitudeAtEveryPoint) {
    std::mt19937 random(20263);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    KCBellCurve curve;
    curve.Prepare(kLowest, kHighest, kRate);
    kvKorvo::KCParamGraph graph;
    ASSERT_TRUE(graph.Resize(KCBellCurve::kNumPoints));
    for (int round = 0; round < 500; ++round) {
        const double centre = unit(random);
        const sBIQUAD bell =
            DesignBell(FrequencyAt(centre), 36.0 * unit(random) - 18.0, 0.1 * std::pow(200.0, unit(random)), kRate);
        curve.Fill(bell, centre, graph);
        ASSERT_EQ(graph.GetPoints().size(), KCBellCurve::kNumPoints);
        for (const auto& point : graph.GetPoints())
            EXPECT_NEAR(point.y, 20.0 * std::log10(MagnitudeAt(bell, FrequencyAt(point.x), kRate)), 1e-4);
    }
}

TEST(BellCurve, GoesFromLeftToRightThroughTheTip) {
    KCBellCurve curve;
    curve.Prepare(kLowest, kHighest, kRate);
    kvKorvo::KCParamGraph graph;
    ASSERT_TRUE(graph.Resize(KCBellCurve::kNumPoints));
    for (const double centre : {0.0, 0.501, 1.0}) {
        curve.Fill(DesignBell(FrequencyAt(centre), 18.0, 20.0, kRate), centre, graph);
        const auto& points = graph.GetPoints();
        EXPECT_TRUE(std::is_sorted(points.begin(), points.end(),
                                   [](const auto& left, const auto& right) { return left.x < right.x; }));
        const auto highest = std::max_element(points.begin(), points.end(),
                                              [](const auto& left, const auto& right) { return left.y < right.y; });
        EXPECT_NEAR(highest->x, centre, 1e-12);
        EXPECT_NEAR(highest->y, 18.0, 1e-4);
    }
}

TEST(BellCurve, EndsAtTheHighestFrequencyThatTheSampleRateCarries) {
    KCBellCurve curve;
    curve.Prepare(kLowest, kHighest, 22050.0);
    kvKorvo::KCParamGraph graph;
    ASSERT_TRUE(graph.Resize(KCBellCurve::kNumPoints));
    curve.Fill(DesignBell(5000.0, -12.0, 0.5, 22050.0), 0.8, graph);
    for (const auto& point : graph.GetPoints())
        EXPECT_TRUE(std::isfinite(point.y));
    EXPECT_NEAR(graph.GetPoints().back().y, 0.0, 1e-6);
}

TEST(BellCurve, OfTheStripFollowsGainFrequencyAndQWithoutMemory) {
    KCChannelStrip strip;
    ASSERT_EQ(strip.FinishCreate(), kvKorvo::kErr_NoErr);
    const auto highest = [&strip] {
        double y = -1000.0;
        for (const auto& point : strip.GetParam(kParam_Bell2Frequency)->GetGraph().GetPoints())
            y = std::max(y, point.y);
        return y;
    };
    EXPECT_EQ(highest(), 0.0);
    const kvTest::AllocationCount count;
    KCChannelStrip::BUFFER_HEADER* chain = strip.UpdateParamRequestState(kParam_Bell2Gain, 750.0);
    strip.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(count.Taken(), 0u);
    EXPECT_NEAR(highest(), 9.0, 0.001);
}

} // namespace
} // namespace kvStrip
