#include <korvolib/control/automation_manager.h>

#include <cmath>

#include <korvolib/control/automation_test_internal.h>
#include <tests/support/allocation_count.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr uint8_t kNoteOff = 0x80, kNoteOn = 0x90, kController = 0xB0, kProgram = 0xC0, kBend = 0xE0;

// Controls 0 … 2 of the continuous P0 … P2, control 3 of "Mode", which has three states (parameter 3).
class AutomationMidiTest : public testing::Test {
  protected:
    AutomationMidiTest() {
        algorithm.AddParam(ToggleParam("Mode", 3));
        EXPECT_EQ(algorithm.FinishCreate(), kErr_NoErr);
        for (size_t i = 0; i < 4; ++i)
            controls.push_back(&algorithm.AddControl("C", {i}, static_cast<int>(i)));
    }
    void Attach(size_t control, int type, int id) {
        controls[control]->SetMIDIEventType(type);
        controls[control]->SetMIDIControlID(id);
    }
    double State(size_t param) const { return algorithm.GetParamState(param); }
    void Put(size_t param, double state) {
        auto* chain = algorithm.UpdateParamState(param, state, false);
        algorithm.ExecuteAndDisposeBuffer(chain);
        algorithm.TakeCalls();
    }
    KCAutomationManager& manager() { return algorithm.Manager(); }
    HostedAlgorithm algorithm{ManyParams(3)};
    std::vector<KCAutomationControl*> controls;
};

// ---- Values
// -----------------------------------------------------------------------------------------------------------

TEST_F(AutomationMidiTest, AControlChangeMovesExecutesThenTellsOneGesture) {
    Attach(1, 4, 7);
    algorithm.Midi(kController, 7, 127);
    EXPECT_EQ(State(1), 1000.0);
    EXPECT_THAT(algorithm.TakeCalls(),
                ElementsAre("execute 1", "dispose", "touch 1 at 0", "value 1 1000", "release 1 at 0"));
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
}

TEST_F(AutomationMidiTest, ContinuousValuesAreTruncatedToWholeNumbers) {
    Attach(0, 4, 7);
    Attach(1, 7, 0);
    algorithm.Midi(kController, 7, 64);
    EXPECT_EQ(State(0), 503.0); // 503.937…
    algorithm.Midi(kBend, 0x7F, 0x7F);
    EXPECT_EQ(State(1), 999.0); // 999.877…
    algorithm.Midi(kBend, 0, 0);
    EXPECT_EQ(State(1), 0.0);
}

TEST_F(AutomationMidiTest, OtherEventTypesChangeNothing) {
    for (int type = 0; type < 16; ++type) {
        Attach(0, type, 7);
        for (const uint8_t status :
             {kNoteOff, uint8_t{0xA0}, kProgram, uint8_t{0xD0}, uint8_t{0xF8}, uint8_t{0x00}})
            algorithm.Midi(status, 7, 127);
    }
    EXPECT_EQ(State(0), 0.0);
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
}

TEST_F(AutomationMidiTest, EveryAttachedControlIsDrivenInListOrderFromTheEventsOwnValue) {
    for (const size_t control : std::initializer_list<size_t>{2, 3, 0})
        Attach(control, 4, 7);
    algorithm.Midi(kController, 7, 127);
    EXPECT_EQ(State(0), 1000.0);
    EXPECT_EQ(State(1), 0.0);
    EXPECT_EQ(State(2), 1000.0);
    EXPECT_EQ(State(3), 2.0);
    std::vector<std::string> executed;
    for (const std::string& call : algorithm.TakeCalls())
        if (call.starts_with("execute"))
            executed.push_back(call);
    EXPECT_THAT(executed, ElementsAre("execute 0", "execute 2", "execute 3"));
}

TEST_F(AutomationMidiTest, AllChannelsAreHeard) {
    Attach(0, 4, 7);
    controls[0]->SetMIDIChannel(3);
    algorithm.Midi(0xB9, 7, 127);
    EXPECT_EQ(State(0), 1000.0);
}

TEST_F(AutomationMidiTest, APedalIsPressedFromSixtyFourOn) {
    for (const uint8_t pedal : std::initializer_list<uint8_t>{64, 65, 66, 67, 69}) {
        Attach(3, 4, pedal);
        Put(3, 0.0);
        algorithm.Midi(kController, pedal, 63);
        EXPECT_EQ(State(3), 0.0) << int{pedal};
        algorithm.Midi(kController, pedal, 64);
        EXPECT_EQ(State(3), 1.0) << int{pedal};
    }
    Attach(3, 4, 68); // no switch: it names a place
    algorithm.Midi(kController, 68, 127);
    EXPECT_EQ(State(3), 2.0);
}

TEST_F(AutomationMidiTest, APressedSwitchGoesFromTheLastStateToTheFirst) {
    Attach(3, 2, 60);
    Put(3, 2.0);
    algorithm.Midi(kNoteOn, 60, 1);
    EXPECT_EQ(State(3), 0.0);
    algorithm.TakeCalls();
    algorithm.Midi(kNoteOn, 60, 0);
    algorithm.Midi(kNoteOff, 60, 100);
    EXPECT_EQ(State(3), 0.0);
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
}

TEST_F(AutomationMidiTest, APlaceIsRoundedToTheNearestState) {
    Attach(3, 4, 7);
    for (int value = 0; value < 128; ++value) {
        algorithm.Midi(kController, 7, static_cast<uint8_t>(value));
        EXPECT_EQ(State(3), std::floor(2.0 * value / 127.0 + 0.5)) << value;
    }
}

TEST_F(AutomationMidiTest, ANoteMovesAContinuousParameterByItsVelocity) {
    Attach(0, 2, 60);
    algorithm.Midi(kNoteOn, 60, 127);
    EXPECT_EQ(State(0), 1000.0);
}

TEST_F(AutomationMidiTest, AControlWithoutALeadIsNeverDriven) {
    Attach(0, 4, 7);
    controls[0]->SetLeadPosition(5);
    algorithm.Midi(kController, 7, 127);
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
    manager().AddNewAutomationControl(std::make_unique<KCAutomationControl>());
    manager().AttachMIDIToLearnMode(4, 8, 4);
    algorithm.Midi(kController, 8, 127);
}

TEST_F(AutomationMidiTest, ParametersWithoutStatesStay) {
    algorithm.GetParam(3)->SetNumStates(0);
    Attach(3, 4, 7);
    algorithm.Midi(kController, 7, 127);
    EXPECT_EQ(State(3), 0.0);
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
}

TEST_F(AutomationMidiTest, WhileTheUserHoldsTheControlItsGestureEnds) {
    Attach(0, 4, 7);
    algorithm.Touch(0);
    algorithm.TakeCalls();
    algorithm.Midi(kController, 7, 127);
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("execute 0", "dispose", "value 0 1000", "release 0 at 0"));
    EXPECT_TRUE(algorithm.IsTouchLost(0));
}

class Reinterpreting : public KCAutomationControl {
  public:
    double given = -1.0;
    double result = 0.0;
    bool ReinterpretMidiValue(int32_t, double& value) override {
        given = value;
        value = result;
        return true;
    }
};

TEST_F(AutomationMidiTest, AControlMayMakeItsOwnValueOfAnEvent) {
    auto own = std::make_unique<Reinterpreting>();
    Reinterpreting& control = *own;
    control.Register(&algorithm, 2, KCRegisterInfo(kRegister_Controller));
    manager().AddNewAutomationControl(std::move(own));
    manager().AttachMIDIToLearnMode(4, 7, 4);
    control.result = 123.9;
    algorithm.Midi(kController, 7, 127);
    EXPECT_EQ(control.given, 127 * 7.874015748031496);
    EXPECT_EQ(State(2), 123.0);
    for (const double skipped : {-1.0, -1.9, std::nan("")}) {
        control.result = skipped;
        algorithm.Midi(kController, 7, 1);
        EXPECT_EQ(State(2), 123.0);
    }
    control.result = 1e300;
    algorithm.Midi(kController, 7, 1);
    EXPECT_EQ(State(2), 1000.0);
}

// ---- Links
// --------------------------------------------------------------------------------------------------------------

TEST_F(AutomationMidiTest, LinksMoveWithTheLeadAsWithAHand) {
    algorithm.GetLinkGroups()->SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName("Relative"), true, false);
    for (const size_t param : std::initializer_list<size_t>{0, 1})
        algorithm.GetLinkGroups()->AddMember(1, param);
    Attach(0, 4, 7);
    Put(1, 100.0);
    algorithm.Midi(kController, 7, 64);
    EXPECT_EQ(State(0), 503.0);
    EXPECT_EQ(State(1), 603.0);
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("execute 0", "dispose", "value 1 603", "execute 1", "dispose",
                                                   "touch 0 at 0", "value 0 503", "release 0 at 0"));
    algorithm.Midi(kController, 7, 127); // the member meets its end and holds the lead back
    EXPECT_EQ(State(1), 1000.0);
    EXPECT_EQ(State(0), 900.0);
    algorithm.Play(0, 100.0); // the host's values link nothing
    EXPECT_EQ(State(1), 1000.0);
}

TEST_F(AutomationMidiTest, AFollowerIsNotMovedAgainByALink) {
    algorithm.GetLinkGroups()->SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName("Relative"), true, false);
    for (const size_t param : std::initializer_list<size_t>{0, 1, 2})
        algorithm.GetLinkGroups()->AddMember(1, param);
    controls[0]->Register(&algorithm, 1, KCRegisterInfo(kRegister_Controller));
    Attach(0, 4, 7);
    algorithm.Midi(kController, 7, 64);
    EXPECT_EQ(State(0), 503.0);
    EXPECT_EQ(State(1), 503.0);
    EXPECT_EQ(State(2), 503.0);
    algorithm.UpdateParamByGesture(0, 504.0); // a hand has no followers
    EXPECT_EQ(State(1), 504.0);
}

// ---- Learning
// -----------------------------------------------------------------------------------------------------------

TEST_F(AutomationMidiTest, TheFirstLearningControlTakesTheEvent) {
    controls[2]->SetMIDILearnMode(true);
    controls[1]->SetMIDILearnMode(true);
    controls[1]->SetMIDIChannel(5);
    EXPECT_EQ(manager().WhichControlInMIDILearn(), 1u);
    algorithm.Midi(kController, 21, 100);
    EXPECT_EQ(controls[1]->GetMIDIControlID(), 21);
    EXPECT_EQ(controls[1]->GetMIDIEventType(), 4);
    EXPECT_EQ(controls[1]->GetMIDIChannel(), 0);
    EXPECT_FALSE(controls[1]->GetMIDILearnMode());
    EXPECT_EQ(State(1), 0.0); // consumed
    EXPECT_EQ(manager().WhichControlInMIDILearn(), 2u);
    algorithm.Midi(kBend, 1, 2);
    EXPECT_EQ(controls[2]->GetMIDIControlID(), 0);
    EXPECT_EQ(controls[2]->GetMIDIEventType(), 7);
    algorithm.Midi(kController, 21, 127);
    EXPECT_EQ(State(1), 1000.0);
}

TEST_F(AutomationMidiTest, Controller120IsNotLearntButDrives) {
    Attach(0, 4, 120);
    controls[1]->SetMIDILearnMode(true);
    algorithm.Midi(kController, 120, 127);
    EXPECT_EQ(State(0), 1000.0);
    EXPECT_TRUE(controls[1]->GetMIDILearnMode());
    EXPECT_EQ(controls[1]->GetMIDIControlID(), -1);
    algorithm.Midi(kController, 119, 127);
    EXPECT_EQ(controls[1]->GetMIDIControlID(), 119);
}

TEST_F(AutomationMidiTest, NotesAreLearntBySteppedLeadsOnly) {
    controls[0]->SetMIDILearnMode(true);
    Attach(1, 2, 60);
    algorithm.Midi(kNoteOn, 60, 100); // dropped: nobody is driven
    EXPECT_TRUE(controls[0]->GetMIDILearnMode());
    EXPECT_EQ(State(1), 0.0);
    controls[0]->SetMIDILearnMode(false);
    controls[3]->SetMIDILearnMode(true);
    algorithm.Midi(kNoteOn, 60, 100);
    EXPECT_EQ(controls[3]->GetMIDIControlID(), 60);
    EXPECT_EQ(State(3), 0.0);
}

TEST_F(AutomationMidiTest, AnAttachedControlInLearnModeDropsEvents) {
    Attach(0, 4, 7);
    controls[0]->SetMIDILearnMode(true);
    algorithm.Midi(kController, 7, 127);
    EXPECT_EQ(State(0), 0.0);
    EXPECT_TRUE(controls[0]->GetMIDILearnMode());
}

TEST_F(AutomationMidiTest, OtherEventsDoNotMeetTheLearningControl) {
    controls[0]->SetMIDILearnMode(true);
    algorithm.Midi(kProgram, 7, 0);
    EXPECT_EQ(controls[0]->GetMIDIControlID(), -1);
}

TEST_F(AutomationMidiTest, AttachToLearnModeLeavesAttachedControlsAlone) {
    controls[0]->SetMIDILearnMode(true);
    manager().AttachMIDIToLearnMode(4, 20, 0);
    EXPECT_EQ(controls[0]->GetMIDIControlID(), 20);
    EXPECT_FALSE(controls[0]->GetMIDILearnMode());
    manager().AttachMIDIToLearnMode(4, 21, 0);
    EXPECT_EQ(controls[0]->GetMIDIControlID(), 20);
    manager().AttachMIDIToLearnMode(2, 60, 1); // continuous
    EXPECT_EQ(controls[1]->GetMIDIControlID(), -1);
    manager().AttachMIDIToLearnMode(2, 60, 3);
    EXPECT_EQ(controls[3]->GetMIDIControlID(), 60);
    controls[1]->SetLeadPosition(9); // no lead is no stepped lead
    manager().AttachMIDIToLearnMode(2, 60, 1);
    EXPECT_EQ(controls[1]->GetMIDIControlID(), -1);
    manager().AttachMIDIToLearnMode(4, 20, 99);
}

// ---- Attachments
// ----------------------------------------------------------------------------------------------------------

TEST_F(AutomationMidiTest, ClearTakesEveryControlIdAndDetachTakesAll) {
    for (size_t i = 0; i < 3; ++i)
        Attach(i, 4, 7);
    controls[0]->SetMIDIMapping({100.0, 200.0, 2.0, kvMIDI::kMidiTakeOver_PickUp});
    EXPECT_EQ(manager().GetMIDIAttachments().size(), 3u);
    EXPECT_EQ(manager().DetachControlFromMIDI(0), kErr_NoErr);
    EXPECT_EQ(controls[0]->GetMIDIMapping(), kvMIDI::sMIDI_MAPPING());
    EXPECT_EQ(controls[0]->GetMIDIEventType(), -1);
    ASSERT_EQ(manager().GetMIDIAttachments().size(), 2u);
    EXPECT_EQ(manager().GetMIDIAttachments()[0], (sMIDI_ATTACHMENT{1, 4, 7, 0, {}}));
    manager().ClearMidiControlsAttachment();
    EXPECT_EQ(controls[1]->GetMIDIEventType(), 4);
    EXPECT_THAT(manager().GetMIDIAttachments(), IsEmpty());
    algorithm.Midi(kController, 7, 127);
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
}

TEST_F(AutomationMidiTest, AnEventsControlsAreListedAsFarAsThereIsRoom) {
    for (const size_t control : std::initializer_list<size_t>{3, 1, 2})
        Attach(control, 4, 7);
    size_t found[2] = {9, 9};
    EXPECT_EQ(manager().GetMIDIEventControls(4, 7, found), 3u);
    EXPECT_THAT(found, ElementsAre(1u, 2u));
    EXPECT_EQ(manager().GetMIDIEventControls(4, 8, found), 0u);
    EXPECT_EQ(manager().GetMIDIEventControls(-1, -1, found), 0u);
    EXPECT_EQ(manager().GetMIDIEventControls(4, 128, {}), 0u);
    EXPECT_EQ(manager().FirstMIDIEventControl({kController, 7, 0}), 1u);
    EXPECT_EQ(manager().NextMIDIEventControl(3), kNoControl);
    EXPECT_EQ(manager().NextMIDIEventControl(99), kNoControl);
}

TEST_F(AutomationMidiTest, TheIndexFollowsEveryChangeOfTheList) {
    Attach(0, 4, 7);
    Attach(1, 4, 7);
    algorithm.Midi(kController, 7, 64);
    manager().DeleteAutomationControl(0);
    algorithm.Midi(kController, 7, 127);
    EXPECT_EQ(State(0), 503.0);
    EXPECT_EQ(State(1), 1000.0);
    auto replacement = std::make_unique<KCAutomationControl>();
    replacement->Register(&algorithm, 2, KCRegisterInfo(kRegister_Controller));
    replacement->SetMIDIEventType(4);
    replacement->SetMIDIControlID(7);
    manager().AddNewAutomationControlForIndex(std::move(replacement), 0);
    algorithm.Midi(kController, 7, 0);
    EXPECT_EQ(State(1), 1000.0);
    algorithm.Midi(kController, 7, 127);
    EXPECT_EQ(State(2), 1000.0);
}

TEST_F(AutomationMidiTest, AHookMayChangeAttachmentsOnTheWay) {
    for (size_t i = 0; i < 3; ++i)
        Attach(i, 4, 7);
    algorithm.onApply = [this](size_t param) {
        if (param == 0)
            controls[0]->SetMIDIControlID(-1);
        if (param == 1)
            controls[2]->SetMIDIControlID(9);
    };
    algorithm.Midi(kController, 7, 127);
    EXPECT_EQ(State(0), 1000.0);
    EXPECT_EQ(State(1), 1000.0);
    EXPECT_EQ(State(2), 0.0);
}

TEST_F(AutomationMidiTest, AGroupTakesOverWhatOneOfItHears) {
    for (const size_t control : std::initializer_list<size_t>{0, 2})
        controls[control]->SetMIDIGroup(5);
    Attach(0, 4, 7);
    controls[0]->SetMIDIMapping({100.0, 200.0, 1.0, kvMIDI::kMidiTakeOver_Jump});
    EXPECT_EQ(manager().SyncronizeMidiGroup(1), 0u);
    EXPECT_EQ(manager().SyncronizeMidiGroup(0), 1u);
    algorithm.Midi(kController, 7, 127);
    EXPECT_EQ(State(0), 200.0);
    EXPECT_EQ(State(1), 0.0);
    EXPECT_EQ(State(2), 200.0);
}

TEST_F(AutomationMidiTest, LedStatesComeFromTheControlsMap) {
    controls[1]->SetLedValueInMap(127, 3);
    EXPECT_EQ(manager().ControlLedStateFromMap(1, 127), 3);
    EXPECT_EQ(manager().ControlLedStateFromMap(1, 126), -1);
    EXPECT_EQ(manager().ControlLedStateFromMap(9, 127), -1);
}

// ---- Beyond: range, curve, take-over
// ----------------------------------------------------------------------------------------

TEST_F(AutomationMidiTest, ARangeLimitsAndTurnsTheController) {
    Attach(0, 4, 7);
    Attach(3, 4, 7);
    for (const size_t control : std::initializer_list<size_t>{0, 3})
        controls[control]->SetMIDIMapping({1000.0, 500.0, 1.0, kvMIDI::kMidiTakeOver_Jump});
    algorithm.Midi(kController, 7, 0);
    EXPECT_EQ(State(0), 1000.0);
    EXPECT_EQ(State(3), 2.0);
    algorithm.Midi(kController, 7, 127);
    EXPECT_EQ(State(0), 500.0);
    EXPECT_EQ(State(3), 1.0);
}

TEST_F(AutomationMidiTest, APickUpWaitsUntilTheControllerPassesTheValue) {
    Attach(0, 4, 7);
    controls[0]->SetMIDIMapping({0.0, 1000.0, 1.0, kvMIDI::kMidiTakeOver_PickUp});
    Put(0, 500.0);
    algorithm.Midi(kController, 7, 20);
    EXPECT_EQ(State(0), 500.0);
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
    algorithm.Midi(kController, 7, 100); // passed it
    EXPECT_EQ(State(0), 787.0);
    algorithm.Midi(kController, 7, 10); // and keeps it
    EXPECT_EQ(State(0), 78.0);
    Put(0, 500.0); // somebody else takes it away
    algorithm.Midi(kController, 7, 12);
    EXPECT_EQ(State(0), 500.0);
}

TEST_F(AutomationMidiTest, APickUpOfStatesComparesPlaces) {
    Attach(3, 4, 7);
    controls[3]->SetMIDIMapping({0.0, 1000.0, 1.0, kvMIDI::kMidiTakeOver_PickUp});
    Put(3, 2.0);
    algorithm.Midi(kController, 7, 0);
    EXPECT_EQ(State(3), 2.0);
    algorithm.Midi(kController, 7, 127);
    algorithm.Midi(kController, 7, 0);
    EXPECT_EQ(State(3), 0.0);
}

// ---- Size
// ---------------------------------------------------------------------------------------------------------------------

TEST(AutomationMidi, TenThousandControlsAndAThousandEventsAllocateNothing) {
    constexpr size_t kControls = 10000;
    HostedAlgorithm algorithm(ManyParams(100));
    ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    for (size_t i = 0; i < kControls; ++i)
        algorithm.AddControl("C", {i % 100}).SetAutomationRefCons(0, 0);
    KCAutomationManager& manager = algorithm.Manager();
    for (size_t i = 0; i < 128; ++i)
        manager.AttachMIDIToLearnMode(4, static_cast<int32_t>(i), i * 78);
    algorithm.SetHostCallback(nullptr, nullptr);
    algorithm.log.reserve(100000);
    const AllocationCount count;
    for (size_t i = 0; i < 1000; ++i)
        manager.MidiProcessControlChange(
            {kController, static_cast<uint8_t>(i % 128), static_cast<uint8_t>(i % 127)});
    EXPECT_EQ(count.Taken(), 0u);
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
}

} // namespace
