#include <plugins/channel_strip/dsp/biquad_design.h>

#include <plugins/channel_strip/dsp/test_signals.h>

#include <gtest/gtest.h>

#include <complex>
#include <limits>

namespace kvStrip {
namespace {

using namespace test;

const double kNotANumber = std::numeric_limits<double>::quiet_NaN();

double LowCutDb(double frequencyHz, double cornerHz, int slope) {
    double gain = 1.0;
    for (const sBIQUAD& section : DesignLowCut(cornerHz, slope, kSampleRateHz))
        gain *= MagnitudeAt(section, frequencyHz, kSampleRateHz);
    return Decibels(gain);
}

// The analogue Butterworth response at the frequency that the bilinear transform maps there.
double ButterworthDb(double frequencyHz, double cornerHz, int order) {
    const double warped = std::tan(std::numbers::pi * frequencyHz / kSampleRateHz) /
                          std::tan(std::numbers::pi * cornerHz / kSampleRateHz);
    return -10.0 * std::log10(1.0 + std::pow(warped, -2.0 * order));
}

bool IsStable(const sBIQUAD& filter) {
    return std::fabs(filter.a2) < 1.0 && std::fabs(filter.a1) < 1.0 + filter.a2;
}

TEST(Bell, HasItsGainAtItsFrequency) {
    for (const double gainDb : {-18.0, -3.0, 0.1, 6.0, 18.0})
        EXPECT_NEAR(Decibels(MagnitudeAt(DesignBell(1000.0, gainDb, 1.3, kSampleRateHz), 1000.0, kSampleRateHz)),
                    gainDb, 1e-9);
}

TEST(Bell, LeavesBothEndsOfTheSpectrumAlone) {
    const sBIQUAD bell = DesignBell(1000.0, 12.0, 2.0, kSampleRateHz);
    EXPECT_NEAR(MagnitudeAt(bell, 0.0, kSampleRateHz), 1.0, 1e-9);
    EXPECT_NEAR(MagnitudeAt(bell, kSampleRateHz / 2.0, kSampleRateHz), 1.0, 1e-9);
}

TEST(Bell, FollowsTheAnaloguePrototypeEverywhere) {
    const double gainDb = 9.0;
    const double q = 0.7;
    const double amplitude = std::pow(10.0, gainDb / 40.0);
    const sBIQUAD bell = DesignBell(2000.0, gainDb, q, kSampleRateHz);
    for (double f = 20.0; f < 23000.0; f *= 1.17) {
        // H(s) = (s² + s·A/Q + 1) / (s² + s/(A·Q) + 1) at the frequency that the bilinear transform maps there
        const std::complex<double> s(0.0, std::tan(std::numbers::pi * f / kSampleRateHz) /
                                              std::tan(std::numbers::pi * 2000.0 / kSampleRateHz));
        const double expected = std::abs((s * s + s * amplitude / q + 1.0) / (s * s + s / (amplitude * q) + 1.0));
        EXPECT_NEAR(MagnitudeAt(bell, f, kSampleRateHz), expected, 1e-9) << f;
    }
}

TEST(Bell, OfNoGainIsExactlyTheFilterThatChangesNothing) {
    EXPECT_EQ(DesignBell(500.0, 0.0, 0.5, kSampleRateHz), sBIQUAD{});
}

TEST(Bell, OfMeaninglessNumbersChangesNothing) {
    EXPECT_EQ(DesignBell(kNotANumber, 3.0, 1.0, kSampleRateHz), sBIQUAD{});
    EXPECT_EQ(DesignBell(500.0, kNotANumber, 1.0, kSampleRateHz), sBIQUAD{});
    EXPECT_EQ(DesignBell(500.0, 3.0, 0.0, kSampleRateHz), sBIQUAD{});
    EXPECT_EQ(DesignBell(500.0, 3.0, 1.0, -1.0), sBIQUAD{});
}

TEST(Bell, IsStableAtEveryCornerOfItsRange) {
    for (const double f : {20.0, 1000.0, 20000.0, 1e6})
        for (const double gainDb : {-18.0, 18.0})
            for (const double q : {0.1, 20.0})
                for (const double sampleRateHz : {8000.0, 44100.0, 192000.0})
                    EXPECT_TRUE(IsStable(DesignBell(f, gainDb, q, sampleRateHz))) << f << ' ' << q;
}

class LowCutSlope : public testing::TestWithParam<int> {};

TEST_P(LowCutSlope, IsThreeDecibelsDownAtItsCorner) {
    EXPECT_NEAR(LowCutDb(80.0, 80.0, GetParam()), -10.0 * std::log10(2.0), 1e-6);
}

TEST_P(LowCutSlope, FallsBySoManyDecibelsAnOctave) {
    const double slope = LowCutDb(20.0, 1000.0, GetParam()) - LowCutDb(10.0, 1000.0, GetParam());
    EXPECT_NEAR(slope, GetParam() * std::log10(2.0) / 0.3, 0.02); // 6 stands for 6.02
}

TEST_P(LowCutSlope, IsAsFlatAsButterworthEverywhere) {
    for (double f = 5.0; f < 23000.0; f *= 1.21)
        EXPECT_NEAR(LowCutDb(f, 300.0, GetParam()), ButterworthDb(f, 300.0, GetParam() / 6), 1e-5) << f;
}

TEST_P(LowCutSlope, IsStableAtBothEndsOfItsRange) {
    for (const double f : {0.001, 20.0, 20000.0, 1e6})
        for (const sBIQUAD& section : DesignLowCut(f, GetParam(), 44100.0))
            EXPECT_TRUE(IsStable(section)) << f;
}

INSTANTIATE_TEST_SUITE_P(Slopes, LowCutSlope, testing::Values(6, 12, 18, 24));

TEST(LowCut, OfAnUnknownSlopeOrFrequencyChangesNothing) {
    EXPECT_EQ(DesignLowCut(100.0, 7, kSampleRateHz), LowCutSections{});
    EXPECT_EQ(DesignLowCut(100.0, 0, kSampleRateHz), LowCutSections{});
    EXPECT_EQ(DesignLowCut(kNotANumber, 12, kSampleRateHz), LowCutSections{});
    EXPECT_EQ(DesignLowCut(0.0, 12, kSampleRateHz), LowCutSections{});
}

} // namespace
} // namespace kvStrip
