#include <korvolib/presets/preset_info.h>
#include <korvolib/presets/preset_values.h>

#include <gmock/gmock.h>

#include <korvolib/utilities/error_codes.h>
#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;
using Preset::CPresetInfo;

TEST(PresetInfo, HoldsNameAndParameters) {
    CPresetInfo preset;
    preset.SetName(KCFixedString<127>("Warm"));
    EXPECT_EQ(preset.AddParam({KCFixedString<127>("Gain"), {1.0, 2.0}, {3.0, 4.0}}), 0);
    EXPECT_EQ(preset.GetName(), "Warm");
    ASSERT_EQ(preset.GetNumParams(), 1u);
    EXPECT_EQ(preset.GetParam(0)->realWorld[1], 4.0);
    EXPECT_EQ(preset.GetParam(1), nullptr);
    const CPresetInfo copy = preset;
    EXPECT_TRUE(copy == preset);
    preset.Clear();
    EXPECT_FALSE(copy == preset);
    EXPECT_TRUE(preset == CPresetInfo());
}

TEST(PresetInfo, DiffersByAnyOfItsNumbers) {
    const Preset::sPRESET_PARAM param = {KCFixedString<127>("Gain"), {1.0, 2.0}, {3.0, 4.0}};
    for (int which = 0; which < 4; ++which) {
        Preset::sPRESET_PARAM other = param;
        (which < 2 ? other.state[which] : other.realWorld[which - 2]) = 9.0;
        EXPECT_FALSE(other == param) << which;
    }
    EXPECT_FALSE((Preset::sPRESET_PARAM{KCFixedString<127>("Tilt"), {1.0, 2.0}, {3.0, 4.0}}) == param);
}

TEST(PresetValues, CaptureTakesEveryParameterOfBothSetups) {
    RecordingAlgorithm algorithm({LinearParam("Gain"), LinearParam("Tilt")});
    algorithm.FinishCreate();
    algorithm.UpdateParamRequestState(1, 250.0);
    algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.UpdateParamRequestState(1, 750.0);
    CPresetInfo preset;
    EXPECT_EQ(Preset::CapturePreset(CPublicAlg(&algorithm), KCFixedString<127>("Warm"), preset), 0);
    EXPECT_EQ(preset.GetName(), "Warm");
    ASSERT_EQ(preset.GetNumParams(), 2u);
    const Preset::sPRESET_PARAM expected = {KCFixedString<127>("Tilt"), {250.0, 750.0}, {2.5, 7.5}};
    EXPECT_TRUE(*preset.GetParam(1) == expected);
    EXPECT_EQ(Preset::CapturePreset(CPublicAlg(), KCFixedString<127>("None"), preset), kErr_NullArgument);
    EXPECT_TRUE(preset == CPresetInfo());
}

TEST(PresetValues, LaterOfTwoEntriesOfOneNameHolds) {
    RecordingAlgorithm algorithm({LinearParam("Gain")});
    algorithm.FinishCreate();
    CPresetInfo preset;
    EXPECT_EQ(preset.AddParam({KCFixedString<127>("Gain"), {100.0, 100.0}, {1.0, 1.0}}), 0);
    EXPECT_EQ(preset.AddParam({KCFixedString<127>("Gain"), {200.0, 200.0}, {2.0, 2.0}}), 0);
    sALGORITHM_STATE state;
    ASSERT_EQ(CPublicAlg(&algorithm).CaptureState(state), 0);
    Preset::LayPresetOver(state, CPublicAlg(&algorithm), preset);
    EXPECT_EQ(state.values.data()[0].state[0], 200.0);
}

} // namespace
