#include <korvolib/alg/algorithm.h>
#include <korvolib/utilities/error_codes.h>

#include <limits>

#include <gtest/gtest.h>

#include <tests/support/allocation_count.h>
#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class ParamsTest : public testing::Test {
  protected:
    ParamsTest() {
        sCONTROL_PARAM gain = LinearParam("Gain", -10.0, 10.0, 0.1);
        gain.SetInitialState(500.0);
        gain.SetResetState(250.0);
        gain.SetLabelString(KCFixedString<127>("Input gain"));
        gain.SetUnitsString(KCFixedString<63>("dB"));
        sCONTROL_PARAM mode = ToggleParam("Mode", 4);
        mode.SetFlags(0x800);
        algorithm.AddParam(gain);
        algorithm.AddParam(mode);
        algorithm.FinishCreate();
    }
    std::string ValueText(size_t index) const {
        KCFixedString<127> text("stale");
        algorithm.GetParamValueString(index, text);
        return text.c_str();
    }
    ETranslateTextRetType Translate(const char* text, double& value) const {
        return algorithm.TranslateTextToRealWorld(0, KCFixedString<127>(text), value);
    }

    RecordingAlgorithm algorithm;
};

TEST_F(ParamsTest, GettersTellWhatTheRecordHolds) {
    EXPECT_EQ(algorithm.GetParamState(0), 500.0);
    EXPECT_EQ(algorithm.GetParamRealWorld(0), 0.0);
    EXPECT_EQ(algorithm.GetParamInitialState(0), 500.0);
    EXPECT_EQ(algorithm.GetParamResetState(0), 250.0);
    EXPECT_EQ(algorithm.GetParamType(0), 1);
    EXPECT_EQ(algorithm.GetParamType(1), 0);
    EXPECT_EQ(algorithm.GetParamNumStates(1), 4);
    EXPECT_EQ(algorithm.GetStateStep(1), 1.0);
    EXPECT_EQ(algorithm.GetParamFlags(1), 0x800u);
    EXPECT_TRUE(algorithm.IsParamUnused(1));
    EXPECT_EQ(algorithm.GetParamScaleType(0), "linear");
    EXPECT_EQ(algorithm.GetParamName(1), "Mode");
    KCFixedString<31> text;
    algorithm.GetParamLabelString(0, text);
    EXPECT_EQ(text, "Input gain");
    algorithm.GetParamUnitsString(0, text);
    EXPECT_EQ(text, "dB");
    algorithm.SetParamResetState(0, 1.0);
    EXPECT_EQ(algorithm.GetParamResetState(0), 1.0);
}

TEST_F(ParamsTest, UnknownIndexIsNeutral) {
    for (const size_t index : {size_t{2}, kNoParam}) {
        EXPECT_EQ(algorithm.GetParamState(index), 0.0);
        EXPECT_EQ(algorithm.GetParamRealWorld(index), 0.0);
        EXPECT_EQ(algorithm.GetParamInitialState(index), 0.0);
        EXPECT_EQ(algorithm.GetParamResetState(index), 0.0);
        EXPECT_EQ(algorithm.GetParamNumStates(index), 0);
        EXPECT_EQ(algorithm.GetStateStep(index), 0.0);
        EXPECT_EQ(algorithm.GetParamType(index), 0);
        EXPECT_EQ(algorithm.GetParamFlags(index), 0u);
        EXPECT_TRUE(algorithm.GetParamScaleType(index).empty());
        EXPECT_TRUE(algorithm.GetParamName(index).empty());
        EXPECT_FALSE(algorithm.IsParamUnused(index));
        EXPECT_EQ(algorithm.StateToRealWorld(index, 500.0), 0.0);
        EXPECT_EQ(algorithm.RealWorldToState(index, 5.0), 0.0);
        EXPECT_EQ(algorithm.OffsetToNextDifferentState(index, 1.0), 0.0);
        EXPECT_FALSE(algorithm.ValidateRealWorld(index, 1.0));
        EXPECT_FALSE(algorithm.IsParamInLinkedMode(index));
        EXPECT_EQ(algorithm.GetParam(index), nullptr);
        EXPECT_EQ(ValueText(index), "");
        algorithm.SetParamResetState(index, 1.0);
        algorithm.SetParamValueString(index, KCFixedString<127>("x"));
        algorithm.LimitLoadedRealWorld(index, kPluginSetup_A);
        KCFixedString<31> text("stale");
        algorithm.GetParamLabelString(index, text);
        EXPECT_TRUE(text.empty());
        double value = 77.0;
        EXPECT_EQ(algorithm.TranslateTextToRealWorld(index, KCFixedString<31>("1"), value), 0);
        EXPECT_EQ(value, 77.0);
    }
    EXPECT_EQ(algorithm.GetParamIDFromName("Nobody"), kNoParam);
}

TEST_F(ParamsTest, ConversionsClampTheState) {
    EXPECT_EQ(algorithm.StateToRealWorld(0, -5.0), algorithm.StateToRealWorld(0, 0.0));
    EXPECT_EQ(algorithm.StateToRealWorld(0, 1200.0), algorithm.StateToRealWorld(0, 1000.0));
    EXPECT_EQ(algorithm.RealWorldToState(0, 99.0), 1000.0);
    EXPECT_EQ(algorithm.RealWorldToState(0, -99.0), 0.0);
    EXPECT_EQ(algorithm.StateToRealWorld(0, kNaN), 0.0);
    EXPECT_EQ(algorithm.RealWorldToState(0, kNaN), 0.0);
}

TEST_F(ParamsTest, ValueTextFollowsTheValue) {
    EXPECT_EQ(ValueText(0), "0.0");
    algorithm.UpdateParamRequestRealWorld(0, 2.5);
    EXPECT_EQ(ValueText(0), "2.5");
    algorithm.SetActiveSetup(kPluginSetup_B);
    EXPECT_EQ(ValueText(0), "0.0");
}

TEST_F(ParamsTest, ValueTextSetByHandStandsUntilTheValueChanges) {
    algorithm.SetParamValueString(0, KCFixedString<127>("unity"));
    EXPECT_EQ(ValueText(0), "unity");
    algorithm.UpdateParamRequestState(0, 500.0); // no change
    EXPECT_EQ(ValueText(0), "unity");
    algorithm.UpdateParamRequestState(0, 600.0);
    EXPECT_EQ(ValueText(0), "2.0");
    algorithm.SetParamValueString(0, KCFixedString<127>("two"));
    algorithm.SetActiveSetup(kPluginSetup_B);
    EXPECT_EQ(ValueText(0), "0.0");
}

TEST_F(ParamsTest, ValueTextSetByHandGoesWhenTheSetupIsCopiedOver) {
    algorithm.UpdateParamRequestState(0, 600.0);
    algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.SetParamValueString(0, KCFixedString<127>("unity"));
    algorithm.CopySetup(kPluginSetup_A, kPluginSetup_B);
    EXPECT_EQ(ValueText(0), "2.0");
}

TEST_F(ParamsTest, TypedTextBecomesAValueOfTheScale) {
    double value = 0.0;
    EXPECT_EQ(Translate("3.14 dB", value), 1);
    EXPECT_DOUBLE_EQ(value, 3.1);
    EXPECT_EQ(Translate("99", value), 1);
    EXPECT_EQ(value, 10.0);
    EXPECT_EQ(Translate("-inf", value), 1);
    EXPECT_EQ(value, -10.0);
    EXPECT_EQ(Translate("-Inf", value), 1);
    EXPECT_EQ(value, -10.0);
}

TEST_F(ParamsTest, TextWithoutANumberLeavesTheValue) {
    double value = 7.5;
    EXPECT_EQ(Translate("loud", value), 0);
    EXPECT_EQ(Translate("", value), 0);
    EXPECT_EQ(value, 7.5);
}

TEST_F(ParamsTest, NegativeOnlyParameterTakesMinusTheMagnitude) {
    algorithm.GetParam(0)->SetFlags(0x80);
    double value = 0.0;
    EXPECT_EQ(Translate("3", value), 1);
    EXPECT_EQ(value, -3.0);
    EXPECT_EQ(Translate("-3", value), 1);
    EXPECT_EQ(value, -3.0);
}

TEST(ParamsValidation, PlugInMayRefuseAValue) {
    struct Strict : RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        ValidationResult::Type ValidateRealWorldSelf(size_t, double realWorld) const override {
            return realWorld > 5.0 ? ValidationResult::kRefused : ValidationResult::kAccepted;
        }
    } strict({LinearParam("Gain")});
    strict.FinishCreate();
    double value = 0.0;
    EXPECT_EQ(strict.TranslateTextToRealWorld(0, KCFixedString<31>("6"), value), 0);
    EXPECT_EQ(value, 6.0); // the parsed number stays
    EXPECT_EQ(strict.GetParamRealWorld(0), 0.0);
    EXPECT_FALSE(strict.ValidateRealWorld(0, 6.0));
    EXPECT_TRUE(strict.ValidateRealWorld(0, 5.0));
    EXPECT_FALSE(strict.ValidateRealWorld(0, kNaN));
}

TEST_F(ParamsTest, SteppingGoesByTheParametersKind) {
    algorithm.UpdateParamRequestState(1, 3.0);
    EXPECT_EQ(algorithm.OffsetToNextDifferentState(1, 1.0), -3.0);
    EXPECT_EQ(algorithm.OffsetToNextDifferentState(1, -1.0), -1.0);
    EXPECT_EQ(algorithm.OffsetToNextDifferentState(1, 0.0), 0.0);
    EXPECT_EQ(algorithm.OffsetToNextDifferentState(1, kNaN), 0.0);
    algorithm.GetParam(1)->SetFlags(0x1000);
    EXPECT_EQ(algorithm.OffsetToNextDifferentState(1, 1.0), 0.0);
    EXPECT_NEAR(algorithm.OffsetToNextDifferentState(0, 1.0), 5.0, 1e-9); // 0.1 dB of 20
}

TEST_F(ParamsTest, ControlIndexesAreOutOfRangeWithoutAutomation) {
    double state = 7.0;
    double realWorld = 8.0;
    EXPECT_EQ(algorithm.ControlStateFromRealWorldValue(0, 1.0, state), -19);
    EXPECT_EQ(algorithm.ControlRealWorldValueFromState(0, 1.0, realWorld), -19);
    EXPECT_EQ(algorithm.TranslateTextToControlState(0, "1", state, realWorld), -19);
    EXPECT_EQ(algorithm.TranslateTextToControlState(-1, nullptr, state, realWorld), -19);
    EXPECT_EQ(state, 7.0);
    EXPECT_EQ(realWorld, 8.0);
}

TEST_F(ParamsTest, RefreshMarksEveryParameter) {
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), 0);
    algorithm.RefreshAllParams();
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), 3);
    EXPECT_EQ(algorithm.GetParam(1)->GetRefreshMark(), 3);
}

TEST_F(ParamsTest, ScalingAllParametersReachesTheSetupThatIsNamed) {
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B})
        algorithm.GetParam(0)->SetState(setup, 1000.0);
    algorithm.ScaleAllParams(7);
    EXPECT_EQ(algorithm.GetParamRealWorld(0), 0.0);
    algorithm.ScaleAllParams(-1);
    EXPECT_EQ(algorithm.GetParamRealWorld(0), 10.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetRealWorld(kPluginSetup_B), 0.0);
    algorithm.ScaleAllParams(1);
    EXPECT_EQ(algorithm.GetParam(0)->GetRealWorld(kPluginSetup_B), 10.0);
}

TEST_F(ParamsTest, TextsAndLookUpsAllocateNothing) {
    KCFixedString<127> text;
    double value = 0.0;
    const AllocationCount count;
    algorithm.GetParamValueString(0, text);
    algorithm.TranslateTextToRealWorld(0, text, value);
    algorithm.GetParamIDFromName(text);
    algorithm.GetParamIDFromName("Mode");
    EXPECT_EQ(count.Taken(), 0u);
}

} // namespace
