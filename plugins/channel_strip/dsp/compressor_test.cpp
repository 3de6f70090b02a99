#include <plugins/channel_strip/dsp/compressor.h>

#include <plugins/channel_strip/dsp/test_signals.h>

#include <gtest/gtest.h>

namespace kvStrip {
namespace {

using namespace test;

sCOMPRESSOR Design(double thresholdDb, double ratio, double kneeDb) {
    sCOMPRESSOR_SETTINGS settings;
    settings.thresholdDb = thresholdDb;
    settings.ratio = ratio;
    settings.kneeDb = kneeDb;
    return DesignCompressor(settings, kSampleRateHz);
}

// Level after the stage of a constant level: no wave, so that peak and power are plain to see.
double SettledDb(KCCompressor& compressor, double levelDb, size_t numFrames = 48000) {
    std::vector<double> samples(numFrames, DecibelsToGain(levelDb));
    compressor.Process(Mono(samples));
    return Decibels(samples.back());
}

TEST(StaticCurve, BelowTheThresholdDoesNothing) {
    EXPECT_EQ(ReductionAt(Design(-20.0, 4.0, 0.0), -20.0), 0.0);
    EXPECT_EQ(ReductionAt(Design(-20.0, 4.0, 6.0), -23.0), 0.0);
    EXPECT_EQ(ReductionAt(Design(-20.0, 4.0, 6.0), -100.0), 0.0);
}

TEST(StaticCurve, AboveTheThresholdFollowsTheRatio) {
    EXPECT_NEAR(ReductionAt(Design(-20.0, 4.0, 0.0), 0.0), 15.0, 1e-12);
    EXPECT_NEAR(ReductionAt(Design(-20.0, 2.0, 6.0), -10.0), 5.0, 1e-12);
}

TEST(StaticCurve, BendsThroughTheKneeAsPublished) {
    // y = x + (1/R − 1)(x − T + W/2)² / 2W at x = T: a quarter of half the knee's width, times the slope
    EXPECT_NEAR(ReductionAt(Design(-20.0, 4.0, 12.0), -20.0), 0.75 * 36.0 / 24.0, 1e-12);
}

TEST(StaticCurve, HasNoStepAtEitherEndOfTheKnee) {
    const sCOMPRESSOR compressor = Design(-20.0, 10.0, 12.0);
    for (const double edgeDb : {-26.0, -14.0})
        EXPECT_NEAR(ReductionAt(compressor, edgeDb - 1e-9), ReductionAt(compressor, edgeDb + 1e-9), 1e-8);
}

TEST(StaticCurve, OfRatioOneOrLessDoesNothing) {
    EXPECT_EQ(ReductionAt(Design(-20.0, 1.0, 12.0), 0.0), 0.0);
    EXPECT_EQ(ReductionAt(Design(-20.0, 0.5, 0.0), 0.0), 0.0);
}

TEST(Compressor, SettlesOnTheStaticCurve) {
    for (const double levelDb : {-40.0, -20.0, -14.0, -6.0, 0.0, 6.0}) {
        KCCompressor compressor;
        compressor.SetTarget(Design(-20.0, 4.0, 6.0));
        EXPECT_NEAR(SettledDb(compressor, levelDb), levelDb - ReductionAt(Design(-20.0, 4.0, 6.0), levelDb), 1e-6);
    }
}

TEST(Compressor, AttackReachesSixtyThreePercentAfterItsTime) {
    sCOMPRESSOR_SETTINGS settings{-20.0, 4.0, 0.0, 50.0, 100.0, 0.0, 0.0};
    KCCompressor compressor;
    compressor.SetTarget(DesignCompressor(settings, kSampleRateHz));
    EXPECT_NEAR(-SettledDb(compressor, 0.0, 2400), 15.0 * (1.0 - std::exp(-1.0)), 1e-6); // 50 ms
}

TEST(Compressor, ReleaseGivesBackSixtyThreePercentAfterItsTime) {
    sCOMPRESSOR_SETTINGS settings{-20.0, 4.0, 0.0, 1.0, 200.0, 0.0, 0.0};
    KCCompressor compressor;
    compressor.SetTarget(DesignCompressor(settings, kSampleRateHz));
    SettledDb(compressor, 0.0);
    EXPECT_NEAR(-30.0 - SettledDb(compressor, -30.0, 9600), 15.0 * std::exp(-1.0), 1e-6); // 200 ms
}

TEST(Compressor, OnRmsFollowsThePowerOfASine) {
    sCOMPRESSOR_SETTINGS settings{-30.0, 4.0, 0.0, 20.0, 200.0, 50.0, 0.0};
    KCCompressor compressor;
    compressor.SetTarget(DesignCompressor(settings, kSampleRateHz));
    std::vector<double> sine = Sine(1000.0, 96000);
    compressor.Process(Mono(sine));
    const std::vector<double> tail(sine.end() - 4800, sine.end());
    const double rmsDb = 10.0 * std::log10(Energy(tail) / 4800.0);
    // A full-scale sine has a power of -3.01 dB, 26.99 dB over the threshold: 3/4 of that go.
    EXPECT_NEAR(rmsDb, -3.0103 - 0.75 * 26.9897, 0.01);
}

TEST(Compressor, WithRatioOneChangesNoBit) {
    KCCompressor compressor;
    compressor.SetTarget(Design(-60.0, 1.0, 24.0));
    std::vector<double> noise = Noise(1000);
    compressor.Process(Mono(noise));
    EXPECT_EQ(noise, Noise(1000));
}

TEST(Compressor, TurnsBothChannelsDownByTheSame) {
    KCCompressor compressor;
    compressor.SetTarget(Design(-20.0, 8.0, 0.0));
    std::vector<double> left(9600, 1.0);
    std::vector<double> right(9600, 0.001);
    compressor.Process(Stereo(left, right));
    for (size_t i = 0; i < left.size(); ++i)
        ASSERT_DOUBLE_EQ(right[i], left[i] * 0.001);
    EXPECT_LT(left.back(), 0.2);
}

TEST(Compressor, MakesUpWhatItIsTold) {
    sCOMPRESSOR_SETTINGS settings;
    settings.makeupDb = 6.0;
    KCCompressor compressor;
    compressor.SetTarget(DesignCompressor(settings, kSampleRateHz));
    compressor.Reset();
    EXPECT_NEAR(SettledDb(compressor, -50.0, 1), -44.0, 1e-9);
}

TEST(Compressor, TellsItsGreatestReductionOnce) {
    KCCompressor compressor;
    compressor.SetTarget(Design(-20.0, 4.0, 0.0));
    SettledDb(compressor, 0.0);
    EXPECT_NEAR(compressor.TakeGreatestReductionDb(), 15.0, 1e-6);
    EXPECT_EQ(compressor.TakeGreatestReductionDb(), 0.0);
}

TEST(Compressor, InSilenceComesBackToExactlyNoReduction) {
    KCCompressor compressor;
    compressor.SetTarget(Design(-20.0, 4.0, 0.0));
    SettledDb(compressor, 0.0);
    std::vector<double> silence(480000, 0.0);
    compressor.Process(Mono(silence));
    compressor.TakeGreatestReductionDb();
    std::vector<double> quiet(10, 0.001);
    compressor.Process(Mono(quiet));
    EXPECT_EQ(quiet, std::vector<double>(10, 0.001));
    EXPECT_EQ(compressor.TakeGreatestReductionDb(), 0.0);
}

} // namespace
} // namespace kvStrip
