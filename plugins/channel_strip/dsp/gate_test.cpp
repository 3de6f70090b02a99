#include <plugins/channel_strip/dsp/gate.h>

#include <plugins/channel_strip/dsp/test_signals.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace kvStrip {
namespace {

using namespace test;

constexpr sGATE_SETTINGS kSettings{-40.0, -20.0, 50.0, 100.0};

std::vector<double> Gated(KCGate& gate, double level, size_t numFrames) {
    std::vector<double> samples(numFrames, level);
    gate.Process(Mono(samples));
    return samples;
}

KCGate MakeGate(const sGATE_SETTINGS& settings = kSettings) {
    KCGate gate;
    gate.SetTarget(DesignGate(settings, kSampleRateHz));
    return gate;
}

TEST(Gate, LetsThroughBitForBitWhatReachesTheThreshold) {
    KCGate gate = MakeGate();
    const double atThreshold = DecibelsToGain(-40.0);
    EXPECT_EQ(Gated(gate, atThreshold, 48000), std::vector<double>(48000, atThreshold));
}

TEST(Gate, TurnsDownToItsRangeWhatStaysBelow) {
    KCGate gate = MakeGate();
    const double quiet = DecibelsToGain(-41.0);
    EXPECT_NEAR(Decibels(Gated(gate, quiet, 200000).back()), -61.0, 1e-6);
}

TEST(Gate, StaysOpenForItsHoldTime) {
    KCGate gate = MakeGate();
    Gated(gate, 1.0, 100);
    const std::vector<double> tail = Gated(gate, 0.001, 2401); // 50 ms are 2400 frames
    EXPECT_EQ(tail[2399], 0.001);
    EXPECT_LT(tail[2400], 0.001);
}

TEST(Gate, DoesNotChatterOnALowNote) {
    KCGate gate = MakeGate({-20.0, -60.0, 20.0, 10.0});
    std::vector<double> note = Sine(30.0, 48000, 0.5); // its peaks are 16.7 ms apart
    gate.Process(Mono(note));
    EXPECT_EQ(note, Sine(30.0, 48000, 0.5));
}

TEST(Gate, ClosesWithItsReleaseTime) {
    KCGate gate = MakeGate();
    Gated(gate, 1.0, 100);
    const double last = Gated(gate, 0.001, 2400 + 4800).back() / 0.001; // 100 ms after the hold
    EXPECT_NEAR(last, 0.1 + 0.9 * std::exp(-1.0), 1e-6);
}

TEST(Gate, OpensWithinTwoMilliseconds) {
    KCGate gate = MakeGate();
    Gated(gate, 0.0001, 200000);
    EXPECT_GT(Gated(gate, 1.0, 96).back(), 0.98);
}

TEST(Gate, OfNoRangeDoesNothing) {
    KCGate gate = MakeGate({0.0, 0.0, 0.0, 1.0});
    EXPECT_EQ(Gated(gate, 0.001, 1000), std::vector<double>(1000, 0.001));
}

TEST(Gate, TellsItsLeastGainOnce) {
    KCGate gate = MakeGate();
    Gated(gate, 0.0001, 400000);
    EXPECT_NEAR(gate.TakeLeastGain(), 0.1, 1e-9);
    EXPECT_EQ(gate.TakeLeastGain(), 1.0);
}

TEST(Gate, IsOpenAfterReset) {
    KCGate gate = MakeGate();
    Gated(gate, 0.0001, 400000);
    gate.Reset();
    EXPECT_EQ(Gated(gate, 0.001, 1).back(), 0.001);
}

} // namespace
} // namespace kvStrip
