#include <korvolib/control/automation_control.h>

#include <cmath>
#include <cstring>
#include <limits>

#include <korvolib/control/automation_test_internal.h>
#include <tests/support/allocation_count.h>
#include <tests/support/virtual_slot.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

// Control 0 "Level": P0 leads, P1 and P2 follow. P3 is of three states.
class AutomationControlTest : public testing::Test {
  protected:
    AutomationControlTest() {
        algorithm.AddParam(ToggleParam("Mode", 3));
        EXPECT_EQ(algorithm.FinishCreate(), kErr_NoErr);
        control = &algorithm.AddControl("Level", {0, 1, 2});
    }
    void Put(std::initializer_list<double> states) {
        size_t index = 0;
        for (const double state : states) {
            auto* chain = algorithm.UpdateParamState(index++, state, false);
            algorithm.ExecuteAndDisposeBuffer(chain);
        }
        algorithm.TakeCalls();
    }
    std::vector<double> States() const {
        return {algorithm.GetParamState(0), algorithm.GetParamState(1), algorithm.GetParamState(2)};
    }
    HostedAlgorithm algorithm{ManyParams(3)};
    KCAutomationControl* control = nullptr;
};

TEST(AutomationControl, VirtualOperationsStandInTheirOrder) {
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::Clone), 2);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::WriteToXMLWithAlg), 3);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::ReadFromXMLWithAlg), 4);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::ReadFromXMLFlags), 5);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::ReadFromXMLParameterList), 6);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::ReadFromXMLParameterList_Attributes), 7);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::ReadFromXMLParameterList_Registration), 8);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::FinishCreate), 9);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::SetNeedToResetParams), 10);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::GetControlFlag), 11);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::SetControlFlag), 12);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::GetLeadParamID), 15);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::DebugControl), 17);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::WriteToXML), 22);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::TranslateController), 23);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::GetControlAutomationInfo), 24);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::SetControllerValue), 25);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::SetControllerValueSelf), 26);
    EXPECT_EQ(VirtualSlot(&KCAutomationControl::ReinterpretMidiValue), 27);
}

TEST(AutomationControl, ANewOneIsNeitherConnectedNorAttached) {
    const KCAutomationControl control;
    EXPECT_EQ(control.GetAutomationRefCon1(), 0);
    EXPECT_EQ(control.GetAutomationRefCon2(), 0);
    EXPECT_FALSE(control.GetTouched());
    EXPECT_FALSE(control.GetMIDILearnMode());
    EXPECT_EQ(control.GetMIDIEventType(), -1);
    EXPECT_EQ(control.GetMIDIControlID(), -1);
    EXPECT_EQ(control.GetMIDIChannel(), 0);
    EXPECT_EQ(control.GetMIDIGroup(), -1);
    EXPECT_EQ(control.GetAutomationType(), 0);
    EXPECT_TRUE(control.GetLedMap().empty());
    EXPECT_EQ(control.GetLeadParamID(), kNoParam);
}

// ---- Values
// -------------------------------------------------------------------------------------------------------

TEST_F(AutomationControlTest, AValueBeyondTheTravelMovesFollowersByTheWholeDistance) {
    Put({900.0, 600.0, 100.0});
    algorithm.Play(0, 1200.0);
    EXPECT_THAT(States(), ElementsAre(1000.0, 900.0, 400.0));
}

TEST_F(AutomationControlTest, AFollowerAtItsBoundStaysWhileTheLeadGoesOn) {
    Put({100.0, 950.0, 0.0});
    algorithm.Play(0, 200.0);
    EXPECT_THAT(States(), ElementsAre(200.0, 1000.0, 100.0));
    algorithm.Play(0, 300.0);
    EXPECT_THAT(States(), ElementsAre(300.0, 1000.0, 200.0));
    algorithm.Play(0, -50.0);
    EXPECT_THAT(States(), ElementsAre(0.0, 650.0, 0.0));
}

TEST_F(AutomationControlTest, AllBlocksOfAValueAreOneChainInOrderAndNothingIsEchoed) {
    algorithm.Play(0, 500.0);
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("execute 0,1,2", "dispose"));
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
    algorithm.Play(0, 500.0);
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
}

TEST_F(AutomationControlTest, WithoutAHostTheBlocksJustGoBack) {
    algorithm.SetHostCallback(nullptr, nullptr);
    algorithm.Play(0, 500.0);
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
}

TEST_F(AutomationControlTest, NotANumberChangesNothing) {
    Put({100.0, 200.0, 300.0});
    EXPECT_EQ(control->SetControllerValue(kNotANumber), nullptr);
    EXPECT_EQ(control->SetControllerValueSelf(kNotANumber), nullptr);
    EXPECT_THAT(States(), ElementsAre(100.0, 200.0, 300.0));
    algorithm.Play(0, std::numeric_limits<double>::infinity());
    EXPECT_THAT(States(), ElementsAre(1000.0, 1000.0, 1000.0));
}

TEST_F(AutomationControlTest, WithoutALeadNothingMoves) {
    control->SetLeadPosition(3);
    EXPECT_EQ(control->SetControllerValue(500.0), nullptr);
    EXPECT_THAT(States(), ElementsAre(0.0, 0.0, 0.0));
    EXPECT_FALSE(control->GetControlFlag(kControl_HasLead));
    KCAutomationControl without;
    EXPECT_EQ(without.SetControllerValue(500.0), nullptr);
    EXPECT_EQ(without.SetControllerValueSelf(500.0), nullptr);
}

TEST_F(AutomationControlTest, ALeadFurtherBackIsMovedFirst) {
    control->SetLeadPosition(2);
    Put({100.0, 200.0, 300.0});
    algorithm.Play(0, 400.0);
    EXPECT_THAT(States(), ElementsAre(200.0, 300.0, 400.0));
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("execute 2,0,1", "dispose"));
}

TEST_F(AutomationControlTest, AutomationLeavesAloneWhatSaysSoAndWhatAnswersToOtherModifiers) {
    control->GetParamData(1)->SetRegisterFlag(kRegister_NotByAutomation, true);
    control->GetParamData(2)->SetRegisterModifier(KEModifier::Shift, true);
    algorithm.Play(0, 500.0);
    EXPECT_THAT(States(), ElementsAre(500.0, 0.0, 0.0));
    control->GetParamData(0)->SetRegisterModifier(KEModifier::Shift, true);
    algorithm.Play(0, 600.0);
    EXPECT_THAT(States(), ElementsAre(600.0, 0.0, 100.0));
}

TEST_F(AutomationControlTest, StoredValuesAreUnquantizedAndFollowOtherPaths) {
    KCAutomationControl& stepped = algorithm.AddControl("Mode", {3});
    algorithm.Play(1, 1.4);
    EXPECT_EQ(algorithm.GetParamState(3), 1.0);
    EXPECT_EQ(stepped.GetParamData(0)->GetValue(), 1.4);
    auto* chain = algorithm.UpdateParamRequestState(3, 2.0);
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(stepped.GetParamData(0)->GetValue(), 2.0);
}

TEST_F(AutomationControlTest, PlayingAValueAllocatesNothing) {
    algorithm.Play(0, 10.0);
    algorithm.SetHostCallback(nullptr, nullptr); // its log grows, and so does that of the hooks
    algorithm.log.reserve(1000);
    const AllocationCount count;
    algorithm.Play(0, 20.0);
    EXPECT_EQ(count.Taken(), 0u);
}

TEST_F(AutomationControlTest, AHookThatThrowsLosesNoBlock) {
    algorithm.onApply = [](size_t index) {
        if (index == 1)
            throw std::string("no");
    };
    EXPECT_THROW(control->SetControllerValue(500.0), std::string);
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
    EXPECT_TRUE(algorithm.IsUpdateAlgRequired());
}

TEST_F(AutomationControlTest, TranslateControllerShowsAValueWithoutMoving) {
    KCFixedString<31> text;
    double realWorld = -1.0;
    EXPECT_EQ(control->TranslateController(250.0, text, realWorld), kErr_NoErr);
    EXPECT_EQ(realWorld, 2.5);
    EXPECT_STREQ(text.c_str(), "2.50");
    EXPECT_EQ(control->TranslateController(5000.0, text, realWorld), kErr_NoErr);
    EXPECT_EQ(realWorld, 10.0);
    EXPECT_EQ(control->TranslateController(kNotANumber, text, realWorld), kErr_Generic);
    EXPECT_EQ(realWorld, 10.0);
    EXPECT_EQ(KCAutomationControl().TranslateController(250.0, text, realWorld), kErr_Generic);
    EXPECT_EQ(algorithm.GetParamState(0), 0.0);
}

// ---- Gestures
// -----------------------------------------------------------------------------------------------------

TEST_F(AutomationControlTest, ASecondTouchAndAReleaseWithoutTouchSendNothing) {
    EXPECT_FALSE(control->NotifyRelease());
    EXPECT_TRUE(control->NotifyTouch());
    EXPECT_FALSE(control->NotifyTouch());
    EXPECT_TRUE(control->GetTouched());
    EXPECT_TRUE(control->NotifyRelease());
    EXPECT_FALSE(control->NotifyRelease());
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("touch 7 at 0", "release 7 at 0"));
}

TEST_F(AutomationControlTest, AValueIsToldWithoutATouch) {
    control->NotifySetControlValue(123.5);
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("value 7 123.5"));
}

TEST_F(AutomationControlTest, AControlThatIsNotConnectedTellsNothing) {
    control->SetAutomationRefCons(0, 7);
    EXPECT_FALSE(control->NotifyTouch());
    control->NotifySetControlValue(1.0);
    EXPECT_FALSE(control->GetTouched());
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
}

TEST_F(AutomationControlTest, WithoutAHostCallbackThereIsNobodyToTell) {
    EXPECT_TRUE(control->NotifyTouch());
    algorithm.SetHostCallback(nullptr, nullptr);
    EXPECT_FALSE(control->NotifyRelease());
    EXPECT_TRUE(control->GetTouched());
    control->NotifySetControlValue(1.0);
    KCAutomationControl stranger;
    stranger.SetAutomationRefCons(1, 1);
    EXPECT_FALSE(stranger.NotifyTouch());
}

// ---- The record
// -----------------------------------------------------------------------------------------------------

TEST_F(AutomationControlTest, InfoOfAnotherVersionIsLeftAsItIs) {
    sCONTROL_AUTOMATION_INFO info;
    std::memset(static_cast<void*>(&info), 0x55, sizeof info);
    info.version = 10;
    const sCONTROL_AUTOMATION_INFO before = info;
    EXPECT_EQ(control->GetControlAutomationInfo(info), -5017);
    EXPECT_EQ(std::memcmp(&info, &before, sizeof info), 0);
    EXPECT_TRUE(KCAutomationControl::IsControlAutomationInfoVersionSupported(11));
    EXPECT_FALSE(KCAutomationControl::IsControlAutomationInfoVersionSupported(12));
}

TEST_F(AutomationControlTest, InfoTellsAllOfTheLead) {
    algorithm.GetParam(0)->SetUnitsString(KCFixedString<7>("dB"));
    control->SetAutomationRefCons(11, -12);
    control->SetAutomationType(3);
    control->SetControlFlag(kControl_InfoFlag, true);
    control->GetParamData(0)->SetSpecificData(99);
    Put({250.0});
    sCONTROL_AUTOMATION_INFO info;
    info.unused4 = 5;
    info.unused176 = 9;
    ASSERT_EQ(control->GetControlAutomationInfo(info), 0);
    EXPECT_EQ(info.version, 11);
    EXPECT_EQ(info.kind, 1001);
    EXPECT_EQ(info.numStates, 0);
    EXPECT_EQ(info.automationType, 3);
    EXPECT_EQ(info.refCon1, 11);
    EXPECT_EQ(info.refCon2, -12);
    EXPECT_STREQ(info.shortName, "Level");
    EXPECT_STREQ(info.longName, "Level");
    EXPECT_STREQ(info.units, "dB");
    EXPECT_STREQ(info.valueString, "2.50");
    EXPECT_TRUE(info.hasLead);
    EXPECT_FALSE(info.reserved137);
    EXPECT_TRUE(info.infoFlag);
    EXPECT_EQ(info.key, 99);
    EXPECT_EQ(info.value, 250.0);
    EXPECT_EQ(info.realWorld, 2.5);
    EXPECT_EQ(info.leadParamIndex, 0u);
    EXPECT_EQ(info.unused4 + info.unused176, 0);
}

TEST_F(AutomationControlTest, InfoOfASteppedLeadTellsItsStates) {
    sCONTROL_AUTOMATION_INFO info;
    ASSERT_EQ(algorithm.AddControl("Mode", {3}).GetControlAutomationInfo(info), 0);
    EXPECT_EQ(info.numStates, 3);
    EXPECT_EQ(info.leadParamIndex, 3u);
}

TEST_F(AutomationControlTest, InfoCutsALongNameAtThirtyOneAndOneHundredAndTwentySeven) {
    const std::string longName(127, 'n');
    control->SetName(KCFixedString<127>(longName.c_str()));
    sCONTROL_AUTOMATION_INFO info;
    ASSERT_EQ(control->GetControlAutomationInfo(info), 0);
    EXPECT_EQ(std::strlen(info.shortName), 31u);
    EXPECT_EQ(std::strlen(info.longName), 127u);
}

TEST_F(AutomationControlTest, InfoWithoutALeadHasNeitherValueNorKey) {
    control->SetLeadPosition(3);
    sCONTROL_AUTOMATION_INFO info;
    info.value = 5.0;
    info.key = 5;
    EXPECT_EQ(control->GetControlAutomationInfo(info), 0);
    EXPECT_FALSE(info.hasLead);
    EXPECT_EQ(info.value, 0.0);
    EXPECT_EQ(info.key, 0);
    EXPECT_EQ(KCAutomationControl().GetControlAutomationInfo(info), 0);
}

TEST_F(AutomationControlTest, InfoOfALeadBeyondTheParametersIsRefused) {
    KCAutomationControl other;
    KCParamRegistrationData beyond(&algorithm, 0, KCRegisterInfo(kRegister_Controller));
    beyond.SetParamArrayName(KCFixedString<127>("Band")); // bound when its element is known
    beyond.SetRegisteredParam(&algorithm, 99);
    ASSERT_EQ(other.AddParamArrayRegData(beyond), kErr_NoErr);
    sCONTROL_AUTOMATION_INFO info;
    EXPECT_EQ(other.GetControlAutomationInfo(info), -1);
    EXPECT_EQ(info.kind, 1001);
    EXPECT_EQ(other.SetControllerValue(500.0), nullptr);
}

// ---- MIDI settings
// ----------------------------------------------------------------------------------------------------

TEST(AutomationControl, MidiSettingsOutOfRangeBecomeMinusOne) {
    KCAutomationControl control;
    for (const auto& [given, kept] : {std::pair{17, -1}, {-1, -1}, {16, 16}, {0, 0}, {1 << 30, -1}}) {
        control.SetMIDIChannel(given);
        EXPECT_EQ(control.GetMIDIChannel(), kept) << given;
    }
    for (const auto& [given, kept] : {std::pair{127, 127}, {128, -1}, {-5, -1}, {0, 0}}) {
        control.SetMIDIControlID(given);
        control.SetMIDIEventType(given);
        EXPECT_EQ(control.GetMIDIControlID(), kept) << given;
        EXPECT_EQ(control.GetMIDIEventType(), kept) << given;
    }
}

TEST(AutomationControl, LedStateOfAnAbsentKeyIsMinusOne) {
    KCAutomationControl control;
    control.SetLedValueInMap(3, 5);
    EXPECT_EQ(control.GetLedValueFromMap(3), 5);
    EXPECT_EQ(control.GetLedValueFromMap(2), -1);
    EXPECT_EQ(control.GetLedValueFromMap(4), -1);
}

TEST_F(AutomationControlTest, ACloneIsBoundAndAttachedAlikeButNotConnected) {
    control->SetMIDIEventType(4);
    control->SetMIDIControlID(7);
    control->SetLedValueInMap(1, 2);
    EXPECT_TRUE(control->NotifyTouch());
    const auto clone = control->Clone();
    auto& copy = dynamic_cast<KCAutomationControl&>(*clone);
    EXPECT_EQ(copy.GetParamDataVec().size(), 3u);
    EXPECT_EQ(copy.GetMIDIControlID(), 7);
    EXPECT_EQ(copy.GetLedValueFromMap(1), 2);
    EXPECT_FALSE(copy.IsConnected());
    EXPECT_FALSE(copy.GetTouched());
    EXPECT_EQ(algorithm.GetParam(0)->GetControllers().size(), 2u);
}

TEST_F(AutomationControlTest, WhatCanBeAttached) {
    EXPECT_TRUE(control->CanAttachToMIDI());
    EXPECT_TRUE(control->CanAttachToRTMIDI());
    control->SetControlFlag(kControl_NotAutomatable, true);
    EXPECT_FALSE(control->CanAttachToRTMIDI());
    control->SetLeadPosition(9);
    EXPECT_FALSE(control->CanAttachToMIDI());
    EXPECT_FALSE(KCAutomationControl().CanAttachToRTMIDI());
}

} // namespace
