#include <plugins/channel_strip/dsp/stereo_stage.h>

#include <plugins/channel_strip/dsp/test_signals.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace kvStrip {
namespace {

using namespace test;

constexpr double kDegree = std::numbers::pi / 180.0;

KCStereoStage MakeStage(const sSTEREO& target) {
    KCStereoStage stage;
    stage.SetGlideRate(GlideRate(kGlideSeconds, kSampleRateHz));
    stage.SetTarget(target);
    stage.Reset();
    return stage;
}

TEST(StereoStage, AtRestChangesNoBit) {
    KCStereoStage stage = MakeStage({});
    std::vector<double> left = Noise(500, 1);
    std::vector<double> right = Noise(500, 2);
    stage.Process(Stereo(left, right));
    EXPECT_EQ(left, Noise(500, 1));
    EXPECT_EQ(right, Noise(500, 2));
}

TEST(StereoStage, RotationKeepsTheEnergy) {
    for (const double degrees : {-180.0, -90.0, -33.3, 12.5, 45.0, 120.0}) {
        KCStereoStage stage = MakeStage({degrees * kDegree, 1.0, 1.0});
        std::vector<double> left = Noise(500, 1);
        std::vector<double> right = Noise(500, 2);
        const double before = Energy(left) + Energy(right);
        stage.Process(Stereo(left, right));
        EXPECT_NEAR(Energy(left) + Energy(right), before, 1e-9) << degrees;
    }
}

TEST(StereoStage, KeepsTheEnergyOfEveryFrameWhileItTurns) {
    KCStereoStage stage = MakeStage({});
    stage.SetTarget({170.0 * kDegree, 1.0, 1.0});
    std::vector<double> left(4000, 0.6);
    std::vector<double> right(4000, 0.8);
    stage.Process(Stereo(left, right));
    for (size_t i = 0; i < left.size(); ++i)
        ASSERT_NEAR(left[i] * left[i] + right[i] * right[i], 1.0, 1e-12) << i;
}

TEST(StereoStage, AQuarterTurnPutsLeftOnTheRight) {
    KCStereoStage stage = MakeStage({90.0 * kDegree, 1.0, 1.0});
    std::vector<double> left = Noise(100, 1);
    std::vector<double> right(100, 0.0);
    stage.Process(Stereo(left, right));
    for (size_t i = 0; i < left.size(); ++i) {
        EXPECT_NEAR(left[i], 0.0, 1e-15);
        EXPECT_NEAR(right[i], Noise(100, 1)[i], 1e-15);
    }
}

TEST(StereoStage, GoesTheShorterWayRoundTheCircle) {
    KCStereoStage stage = MakeStage({170.0 * kDegree, 1.0, 1.0});
    stage.SetTarget({-170.0 * kDegree, 1.0, 1.0}); // 20 degrees through the back, not 340 through the front
    std::vector<double> left(4000, 1.0);
    std::vector<double> right(4000, 0.0);
    stage.Process(Stereo(left, right));
    for (const double sample : left)
        ASSERT_LT(sample, -0.98);
}

TEST(StereoStage, AfterAWholeTurnIsExactlyWhereItBegan) {
    KCStereoStage stage = MakeStage({});
    std::vector<double> left;
    std::vector<double> right;
    for (const double degrees : {120.0, -120.0, 0.0}) {
        stage.SetTarget({degrees * kDegree, 1.0, 1.0});
        left = Noise(48000, 1);
        right = Noise(48000, 2);
        stage.Process(Stereo(left, right));
    }
    EXPECT_EQ(left.back(), Noise(48000, 1).back());
    EXPECT_EQ(right.back(), Noise(48000, 2).back());
}

TEST(StereoStage, TrimsEachSide) {
    KCStereoStage stage = MakeStage({0.0, 0.5, 2.0});
    std::vector<double> left(10, 1.0);
    std::vector<double> right(10, 1.0);
    stage.Process(Stereo(left, right));
    EXPECT_EQ(left, std::vector<double>(10, 0.5));
    EXPECT_EQ(right, std::vector<double>(10, 2.0));
}

TEST(StereoStage, GivesMonoTheLeftTrimAlone) {
    KCStereoStage stage = MakeStage({90.0 * kDegree, 0.5, 2.0});
    std::vector<double> samples(10, 1.0);
    stage.Process(Mono(samples));
    EXPECT_EQ(samples, std::vector<double>(10, 0.5));
}

} // namespace
} // namespace kvStrip
