// What a host finds when it asks the strip what can be automated.

#include <plugins/channel_strip/channel_strip.h>

#include <korvolib/control/automation_manager.h>
#include <korvolib/utilities/error_codes.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <tuple>
#include <utility>

namespace kvStrip {
namespace {

using namespace kvKorvo;

struct sSTRIP {
    sSTRIP() { EXPECT_EQ(strip.FinishCreate(), kErr_NoErr); }
    const KCAutomationManager& Manager() const { return *strip.GetAutomationManager(); }

    KCChannelStrip strip;
};

TEST(StripControls, AreReadWithoutAProblem) {
    const sSTRIP rig;
    EXPECT_EQ(rig.strip.GetDescriptionProblem(0), nullptr);
    EXPECT_EQ(rig.Manager().GetNumAutomationControllers(), kNumParams + 2);
}

// A host stores its automation by these places.
TEST(StripControls, BeginWithOneForEveryParameterInOrder) {
    const sSTRIP rig;
    for (size_t index = 0; index < kNumParams; ++index) {
        const KCAutomationControl& control = *rig.Manager().GetAutomationControl(index);
        EXPECT_EQ(control.GetName(), rig.strip.GetParamName(index));
        EXPECT_EQ(control.GetLeadParamIndex(), index);
        EXPECT_EQ(control.GetParamDataVec().size(), 1u);
    }
}

TEST(StripControls, ReportEveryParameterAsItsOwnControl) {
    const sSTRIP rig;
    for (size_t index = 0; index < kNumParams; ++index)
        EXPECT_EQ(rig.strip.GetAutomationControlByLeadParamID(index), rig.Manager().GetAutomationControl(index))
            << rig.strip.GetParamName(index).c_str();
}

TEST(StripControls, MovePairsByTheSameDistance) {
    sSTRIP rig;
    for (const auto& [name, lead, follower] : {std::tuple{"Trims", kParam_LeftTrim, kParam_RightTrim},
                                               {"Bell Gains", kParam_Bell1Gain, kParam_Bell2Gain}}) {
        const KCAlgorithmLock lock(rig.strip);
        auto* chain = rig.strip.UpdateParamState(follower, 700.0, false);
        rig.strip.ExecuteAndDisposeBuffer(chain);
        chain = rig.strip.GetAutomationControlByName(name)->SetControllerValue(400.0); // from the middle
        rig.strip.ExecuteAndDisposeBuffer(chain);
        EXPECT_NEAR(rig.strip.GetParamState(lead), 400.0, 1e-9) << name;
        EXPECT_NEAR(rig.strip.GetParamState(follower), 600.0, 1e-9) << name;
    }
}

TEST(StripControls, HearWhereKeyboardsHaveTheirUsualNumbers) {
    const sSTRIP rig;
    const std::map<std::string, std::pair<int, int>> expected = {
        {"Output Gain", {4, 7}},       {"Rotation", {4, 10}},           {"Bypass", {4, 64}},
        {"Bell 2 Q", {4, 71}},         {"Compressor Release", {4, 72}}, {"Compressor Attack", {4, 73}},
        {"Bell 2 Frequency", {4, 74}}, {"Bell 2 Gain", {7, 0}},         {"Low Cut", {2, 60}}};
    std::map<std::string, std::pair<int, int>> found;
    for (const sMIDI_ATTACHMENT& attachment : rig.Manager().GetMIDIAttachments())
        found[rig.Manager().GetAutomationControl(attachment.control)->GetNamePtr()] = {attachment.eventType,
                                                                                       attachment.controlID};
    EXPECT_EQ(found, expected);
}

TEST(StripControls, AKeyboardsPanTurnsTheImageByAnEighth) {
    sSTRIP rig;
    rig.strip.GetAutomationManager()->MidiProcessControlChange({0xB0, 10, 127});
    EXPECT_NEAR(rig.strip.GetParamRealWorld(kParam_Rotation), 45.0, 0.1);
    rig.strip.GetAutomationManager()->MidiProcessControlChange({0xB0, 10, 0});
    EXPECT_NEAR(rig.strip.GetParamRealWorld(kParam_Rotation), -45.0, 0.1);
}

} // namespace
} // namespace kvStrip
