#include <plugins/channel_strip/channel_strip.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

namespace kvStrip {
namespace {

using kvKorvo::KCFixedString;
using kvKorvo::kErr_NoErr;

struct sSTRIP {
    sSTRIP() {
        EXPECT_EQ(strip.FinishCreate(), kErr_NoErr);
        EXPECT_EQ(strip.GetNumParams(), size_t{kNumParams});
    }

    std::string Text(double realWorld, size_t index) {
        KCFixedString<63> text;
        auto* chain = strip.UpdateParamRequestRealWorld(index, realWorld);
        strip.ExecuteAndDisposeBuffer(chain);
        strip.GetParamValueString(index, text);
        return text.c_str();
    }
    KCChannelStrip strip;
};

struct sROW {
    const char* name;
    const char* scale;
    double bottom; // real-world value at state 0
    double top;    // at the last state
    double initial;
};

// What an engineer finds in the table, in its order.
constexpr sROW kRows[kNumParams] = {
    {"Bypass", "toggle", 0.0, 1.0, 0.0},
    {"Input Gain", "linear", -24.0, 24.0, 0.0},
    {"Low Cut", "toggle", 0.0, 1.0, 0.0},
    {"Low Cut Frequency", "frequency", 20.0, 20000.0, 80.0},
    {"Low Cut Slope", "toggleRanges", 6.0, 24.0, 12.0},
    {"Gate Threshold", "linearRanges", -80.0, 0.0, -80.0},
    {"Gate Range", "linearRanges", 0.0, -80.0, -20.0},
    {"Gate Hold", "linear", 20.0, 500.0, 100.0},
    {"Gate Release", "logarithmic", 10.0, 2000.0, 100.0},
    {"Bell 1 Frequency", "logarithmic", 20.0, 20000.0, 250.0},
    {"Bell 1 Gain", "linear", -18.0, 18.0, 0.0},
    {"Bell 1 Q", "logarithmic", 0.1, 20.0, 1.0},
    {"Bell 2 Frequency", "logarithmic", 20.0, 20000.0, 3000.0},
    {"Bell 2 Gain", "linear", -18.0, 18.0, 0.0},
    {"Bell 2 Q", "logarithmic", 0.1, 20.0, 1.0},
    {"Compressor Threshold", "linearRanges", -60.0, 0.0, 0.0},
    {"Compressor Ratio", "linearRanges", 1.0, 20.0, 4.0},
    {"Compressor Knee", "linearRangesWithRounding", 0.0, 24.0, 0.0},
    {"Compressor Attack", "logarithmic", 0.1, 200.0, 10.0},
    {"Compressor Release", "logarithmic", 10.0, 2000.0, 150.0},
    {"Compressor Detector", "toggleMap", 0.0, 50.0, 0.0},
    {"Makeup Gain", "linear", 0.0, 24.0, 0.0},
    {"Rotation", "linear", -180.0, 180.0, 0.0},
    {"Left Trim", "linear", -12.0, 12.0, 0.0},
    {"Right Trim", "linear", -12.0, 12.0, 0.0},
    {"Output Gain", "fader", -120.0, 6.0, 0.0},
};

double LastState(const KCChannelStrip& strip, size_t index) {
    return strip.GetParamType(index) == kvKorvo::kParamType_Discrete
               ? (strip.GetParamNumStates(index) - 1) * strip.GetStateStep(index)
               : kvKorvo::kFullTravel;
}

TEST(StripParams, AreDescribedWithoutAProblem) {
    sSTRIP made;
    EXPECT_EQ(made.strip.GetNumParams(), size_t{kNumParams});
    for (size_t i = 0; i < made.strip.GetNumDescriptionProblems(); ++i)
        ADD_FAILURE() << made.strip.GetDescriptionProblem(i)->Text.c_str();
}

TEST(StripParams, StandInTheirOrderWithTheirScalesAndEnds) {
    sSTRIP made;
    for (size_t i = 0; i < kNumParams; ++i) {
        EXPECT_STREQ(made.strip.GetParamName(i).c_str(), kRows[i].name);
        EXPECT_STREQ(made.strip.GetParamScaleType(i).c_str(), kRows[i].scale) << kRows[i].name;
        EXPECT_NEAR(made.strip.StateToRealWorld(i, 0.0), kRows[i].bottom, 1e-9) << kRows[i].name;
        EXPECT_NEAR(made.strip.StateToRealWorld(i, LastState(made.strip, i)), kRows[i].top, 1e-9) << kRows[i].name;
        EXPECT_NEAR(made.strip.GetParamRealWorld(i), kRows[i].initial, 1e-9) << kRows[i].name;
    }
}

TEST(StripParams, RunSteadilyFromBottomToTop) {
    sSTRIP made;
    for (size_t i = 0; i < kNumParams; ++i) {
        const double direction = kRows[i].top > kRows[i].bottom ? 1.0 : -1.0;
        for (int state = 1; state <= LastState(made.strip, i); ++state)
            ASSERT_GE((made.strip.StateToRealWorld(i, state) - made.strip.StateToRealWorld(i, state - 1)) *
                          direction,
                      -1e-9)
                << kRows[i].name << " at " << state;
    }
}

TEST(StripParams, FindTheirWayBackFromEveryValue) {
    sSTRIP made;
    for (size_t i = 0; i < kNumParams; ++i) {
        for (int state = 0; state <= LastState(made.strip, i); ++state) {
            const double value = made.strip.StateToRealWorld(i, state);
            double found = value;
            made.strip.GetParam(i)->LimitRealWorld(found);
            const double resolution = std::max(made.strip.GetParam(i)->GetScale().Quantize, 0.1);
            ASSERT_NEAR(found, value, resolution + 1e-9) << kRows[i].name << " at " << state;
        }
    }
}

TEST(StripParams, TouchEveryScaleTypeOfTheLibrary) {
    for (const char* scale : {"linear", "logarithmic", "toggle", "frequency", "toggleRanges", "toggleMap",
                              "linearRanges", "linearRangesWithRounding", "fader"})
        EXPECT_TRUE(std::any_of(std::begin(kRows), std::end(kRows), [&](const sROW& row) {
            return std::strcmp(row.scale, scale) == 0;
        })) << scale;
}

TEST(StripParams, GateTimesMoveInCoarseSteps) {
    sSTRIP made;
    EXPECT_EQ(made.strip.StateToRealWorld(kParam_GateHold, 333.0), 180.0); // 179.84 to a multiple of 20
    EXPECT_EQ(std::fmod(made.strip.StateToRealWorld(kParam_GateRelease, 777.0), 5.0), 0.0);
}

TEST(StripParams, TheRotationWraps) {
    sSTRIP made;
    EXPECT_TRUE(made.strip.GetParam(kParam_Rotation)->IsContinuousParamCyclic());
    EXPECT_FALSE(made.strip.GetParam(kParam_InputGain)->IsContinuousParamCyclic());
}

TEST(StripParams, TheFaderHasMostOfItsTravelWhereItIsMoved) {
    sSTRIP made;
    EXPECT_NEAR(made.strip.StateToRealWorld(kParam_OutputGain, 500.0), -12.1, 1e-9); // 6 - 18.06
    EXPECT_EQ(made.strip.StateToRealWorld(kParam_OutputGain, 1.0), -120.0);
    EXPECT_NEAR(made.strip.RealWorldToState(kParam_OutputGain, -12.0618), 500.0, 0.001);
    EXPECT_EQ(made.strip.RealWorldToState(kParam_OutputGain, -200.0), 0.0);
}

TEST(StripParams, SpecialValuesReadAsWords) {
    sSTRIP made;
    EXPECT_EQ(made.Text(1.0, kParam_Bypass), "On");
    EXPECT_EQ(made.Text(-80.0, kParam_GateThreshold), "Off");
    EXPECT_EQ(made.Text(-33.3, kParam_GateThreshold), "-33.3");
    EXPECT_EQ(made.Text(10.0, kParam_CompressorDetector), "RMS 10 ms");
    EXPECT_EQ(made.Text(-120.0, kParam_OutputGain), "-Inf");
    EXPECT_EQ(made.Text(-6.0, kParam_OutputGain), "-6.0");
}

TEST(StripParams, WordsCanBeTyped) {
    sSTRIP made;
    const auto typed = [&](size_t index, const char* text) {
        double value = 999.0;
        EXPECT_EQ(made.strip.TranslateTextToRealWorld(index, KCFixedString<63>(text), value),
                  kvKorvo::kTranslateText_Accepted);
        return value;
    };
    EXPECT_EQ(typed(kParam_Bypass, "On"), 1.0);
    EXPECT_EQ(typed(kParam_CompressorDetector, "Peak"), 0.0);
    EXPECT_EQ(typed(kParam_CompressorDetector, "RMS 50 ms"), 50.0);
    EXPECT_EQ(typed(kParam_GateThreshold, "Off"), -80.0);
    EXPECT_EQ(typed(kParam_OutputGain, "-Inf"), -120.0);
    EXPECT_EQ(typed(kParam_LowCutFrequency, "1 kHz"), 1000.0);
}

TEST(StripLinks, TrimsKeepTheirBalanceUnderAUsersHand) {
    sSTRIP host;
    auto* chain = host.strip.UpdateParamRequestRealWorld(kParam_RightTrim, 3.0);
    const double state = host.strip.RealWorldToState(kParam_LeftTrim, -2.0);
    chain = kvKorvo::cALGORITHM::ChainBufs(chain, host.strip.UpdateParamByGesture(kParam_LeftTrim, state));
    host.strip.ExecuteAndDisposeBuffer(chain);
    EXPECT_NEAR(host.strip.GetParamRealWorld(kParam_LeftTrim), -2.0, 1e-9);
    EXPECT_NEAR(host.strip.GetParamRealWorld(kParam_RightTrim), 1.0, 1e-9);
}

TEST(StripLinks, BellGainsMirrorEachOtherOnceLinked) {
    sSTRIP host;
    const double state = host.strip.RealWorldToState(kParam_Bell1Gain, 6.0);
    auto* chain = host.strip.UpdateParamByGesture(kParam_Bell1Gain, state);
    EXPECT_NEAR(host.strip.GetParamRealWorld(kParam_Bell2Gain), 0.0, 1e-9);
    host.strip.GetLinkGroups()->SetGroupState(2, true);
    const double further = host.strip.RealWorldToState(kParam_Bell1Gain, 9.0);
    chain = kvKorvo::cALGORITHM::ChainBufs(chain, host.strip.UpdateParamByGesture(kParam_Bell1Gain, further));
    host.strip.ExecuteAndDisposeBuffer(chain);
    EXPECT_NEAR(host.strip.GetParamRealWorld(kParam_Bell2Gain), -3.0, 1e-9);
}

TEST(StripLinks, ThresholdsTakeTheSameValueOnceLinked) {
    sSTRIP host;
    host.strip.GetLinkGroups()->SetGroupState(3, true);
    const double state = host.strip.RealWorldToState(kParam_CompressorThreshold, -30.0);
    auto* chain = host.strip.UpdateParamByGesture(kParam_CompressorThreshold, state);
    host.strip.ExecuteAndDisposeBuffer(chain);
    EXPECT_NEAR(host.strip.GetParamRealWorld(kParam_GateThreshold), -30.0, 1e-9);
}

} // namespace
} // namespace kvStrip
