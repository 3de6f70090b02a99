#include <korvolib/control/automation_manager.h>

#include <cmath>
#include <limits>

#include <korvolib/control/automation_test_internal.h>
#include <tests/support/allocation_count.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

using ControlPtr = KCAutomationManager::ControlPtr;

ControlPtr Named(const char* name) { return std::make_unique<KCAutomationControl>(KCFixedString<127>(name)); }

// Tells when it ends.
class CountedControl : public KCAutomationControl {
  public:
    explicit CountedControl(int& numDestroyed) : m_numDestroyed(numDestroyed) {}
    ~CountedControl() override { ++m_numDestroyed; }

  private:
    int& m_numDestroyed;
};

class AutomationManagerTest : public testing::Test {
  protected:
    AutomationManagerTest() { EXPECT_EQ(algorithm.FinishCreate(), kErr_NoErr); }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (size_t i = 0; i < manager().GetNumAutomationControllers(); ++i)
            names.emplace_back(manager().GetAutomationControl(i)->GetNamePtr());
        return names;
    }
    KCAutomationManager& manager() const { return *algorithm.GetAutomationManager(); }
    int numDestroyed = 0; // outlives the controls
    HostedAlgorithm algorithm{ManyParams(4)};
};

// ---- The list
// -------------------------------------------------------------------------------------------------------

TEST_F(AutomationManagerTest, AddingBeyondTheEndPadsWithDummies) {
    manager().AddNewAutomationControl(Named("A"));
    manager().AddNewAutomationControl(Named("B"));
    EXPECT_EQ(manager().AddNewAutomationControlForIndex(Named("F"), 5), kErr_NoErr);
    EXPECT_THAT(Names(), ElementsAre("A", "B", "Dummy", "Dummy", "Dummy", "F"));
}

TEST_F(AutomationManagerTest, AddingAtAnOccupiedIndexDestroysTheOldControlOnce) {
    manager().AddNewAutomationControl(std::make_unique<CountedControl>(numDestroyed));
    EXPECT_EQ(manager().AddNewAutomationControlForIndex(Named("New"), 0), kErr_NoErr);
    EXPECT_EQ(numDestroyed, 1);
    EXPECT_THAT(Names(), ElementsAre("New"));
}

TEST_F(AutomationManagerTest, ReplacingAControlByItselfDoesNothing) {
    manager().AddNewAutomationControl(std::make_unique<CountedControl>(numDestroyed));
    manager().AddNewAutomationControl(Named("B"));
    EXPECT_EQ(manager().AddNewAutomationControlForIndex(ControlPtr(manager().GetAutomationControl(0)), 0),
              kErr_NoErr);
    EXPECT_EQ(manager().AddNewAutomationControlForIndex(ControlPtr(manager().GetAutomationControl(0)), 1),
              kErr_Generic);
    EXPECT_EQ(numDestroyed, 0);
    EXPECT_THAT(Names(), ElementsAre("", "B"));
}

TEST_F(AutomationManagerTest, RefusesWhatCannotStandInTheList) {
    EXPECT_EQ(manager().AddNewAutomationControl(nullptr), kErr_NullArgument);
    EXPECT_EQ(manager().AddNewAutomationControlForIndex(std::make_unique<CountedControl>(numDestroyed),
                                                        std::numeric_limits<size_t>::max()),
              kErr_LimitExceeded);
    EXPECT_EQ(manager().AddNewAutomationControlForIndex(std::make_unique<CountedControl>(numDestroyed), 65535),
              kErr_LimitExceeded);
    EXPECT_EQ(numDestroyed, 2);
    EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(AutomationManagerTest, DeletingMovesTheOthersUp) {
    for (const char* name : {"A", "B", "C"})
        manager().AddNewAutomationControl(Named(name));
    EXPECT_EQ(manager().DeleteAutomationControl(1), kErr_NoErr);
    EXPECT_THAT(Names(), ElementsAre("A", "C"));
    EXPECT_EQ(manager().DeleteAutomationControl(2), kErr_ControlIndexOutOfRange);
    EXPECT_EQ(manager().RenameAutomationControl(1, "D"), kErr_NoErr);
    EXPECT_EQ(manager().RenameAutomationControl(2, "E"), kErr_ControlIndexOutOfRange);
    EXPECT_EQ(manager().RenameAutomationControl(1, nullptr), kErr_NullArgument);
    EXPECT_THAT(Names(), ElementsAre("A", "D"));
    EXPECT_EQ(manager().MoveControl(0, 1), 0);
    EXPECT_EQ(manager().SanityCheck(), 0);
    EXPECT_THAT(Names(), ElementsAre("A", "D"));
}

TEST_F(AutomationManagerTest, ReleaseDestroysAllControls) {
    manager().AddNewAutomationControl(std::make_unique<CountedControl>(numDestroyed));
    algorithm.AddControl("A", {0});
    manager().Release();
    EXPECT_EQ(numDestroyed, 1);
    EXPECT_EQ(manager().GetNumAutomationControllers(), 0u);
    EXPECT_THAT(algorithm.GetParam(0)->GetControllers(), IsEmpty());
    algorithm.Midi(0xB0, 7, 1);
}

TEST_F(AutomationManagerTest, NamesAreFoundByteForByteAndTheFirstOfThem) {
    for (const char* name : {"a", "A", "A"})
        manager().AddNewAutomationControl(Named(name));
    EXPECT_EQ(manager().GetAutomationControlByName("A"), manager().GetAutomationControl(1));
    EXPECT_EQ(manager().GetControlIndexByName("a"), 0u);
    EXPECT_EQ(manager().GetAutomationControlByName("b"), nullptr);
    EXPECT_EQ(manager().GetAutomationControlByName(nullptr), nullptr);
    EXPECT_EQ(manager().GetControlIndexByName(nullptr), kNoControl);
    EXPECT_EQ(algorithm.GetAutomationControlByName("A"), manager().GetAutomationControl(1));
    EXPECT_EQ(manager().GetControlIndex(manager().GetAutomationControl(2)), 2u);
    EXPECT_EQ(manager().GetControlIndex(nullptr), kNoControl);
}

TEST_F(AutomationManagerTest, NamesAreCutToTheLengthAskedFor) {
    manager().AddNewAutomationControl(Named("Level"));
    KCFixedString<31> name("before");
    manager().GetControlNameOfLength(0, name, 3);
    EXPECT_STREQ(name.c_str(), "Lev");
    manager().GetControlNameOfLength(1, name, 3);
    EXPECT_TRUE(name.empty());
}

TEST_F(AutomationManagerTest, AnEmptyListAnswersEverything) {
    sCONTROL_AUTOMATION_INFO info;
    KCFixedString<31> text;
    int64_t refCon = 0;
    double number = 0.0;
    EXPECT_EQ(algorithm.GetAutomationControl(0), nullptr);
    EXPECT_EQ(manager().SetControllerValue(0, 1.0), nullptr);
    EXPECT_EQ(manager().GetControlAutomationInfo(0, info), -19);
    EXPECT_EQ(manager().SetAutomationRefCons(0, 1, 1), -19);
    EXPECT_EQ(manager().GetAutomationRefCons(0, refCon, refCon), -19);
    EXPECT_EQ(manager().GetAutomationRefCon1(0) + manager().GetAutomationRefCon2(0), 0);
    EXPECT_EQ(manager().TranslateController(0, 1.0, text, number), -19);
    EXPECT_FALSE(manager().Touch(0) || manager().ReleaseTouch(0));
    EXPECT_EQ(manager().DetachControlFromMIDI(0), -19);
    EXPECT_EQ(manager().ControlLedStateFromMap(0, 0), -1);
    EXPECT_EQ(manager().SyncronizeMidiGroup(0), 0u);
    manager().AttachMIDIToLearnMode(4, 7, 0);
    manager().NotifyParamValue(0, 1.0);
    EXPECT_EQ(manager().WhichControlInMIDILearn(), kNoControl);
}

TEST(AutomationManager, WithoutAnAlgorithmNothingHappens) {
    KCAutomationManager manager;
    EXPECT_EQ(manager.Init(nullptr), 0);
    EXPECT_FALSE(manager.IsInitialised());
    manager.AddNewAutomationControl(Named("A"));
    EXPECT_EQ(manager.GetAutomationControlByLeadParamID(0), nullptr);
    EXPECT_EQ(manager.MidiProcessControlChange({0xB0, 7, 1}), 0);
    EXPECT_EQ(manager.AddControlsForParams(), kErr_NullArgument);
    EXPECT_EQ(manager.FinishCreate(), kErr_NoErr);
    cALGORITHM::BUFFER_HEADER* chain = nullptr;
    manager.ExecuteAndDisposeBuffer(chain);
}

TEST_F(AutomationManagerTest, ASecondInitDoesNothing) {
    HostedAlgorithm other;
    EXPECT_TRUE(manager().IsInitialised());
    EXPECT_EQ(manager().Init(&other), 0);
    EXPECT_EQ(manager().GetAlgorithm(), &algorithm);
}

// ---- Leads
// ------------------------------------------------------------------------------------------------------------

TEST_F(AutomationManagerTest, TwoLeadsOfOneParameterAreNoLead) {
    KCAutomationControl& first = algorithm.AddControl("A", {0, 1});
    EXPECT_EQ(manager().GetAutomationControlByLeadParamID(0), &first);
    EXPECT_EQ(manager().GetAutomationControlByLeadParamID(1), nullptr); // it follows
    algorithm.AddControl("B", {0});
    EXPECT_EQ(manager().GetAutomationControlByLeadParamID(0), nullptr);
    EXPECT_EQ(manager().GetAutomationControlByLeadParamID(99), nullptr);
}

TEST_F(AutomationManagerTest, HighlightsAndWhatAutomationLeavesAloneAreNoLeads) {
    KCAutomationControl& first = algorithm.AddControl("A", {0});
    KCAutomationControl& second = algorithm.AddControl("B", {0});
    second.GetParamData(0)->SetRegisterFlag(kRegister_Highlight, true);
    EXPECT_EQ(algorithm.GetAutomationControlByLeadParamID(0), &first);
    second.GetParamData(0)->SetRegisterFlag(kRegister_Highlight, false);
    second.GetParamData(0)->SetRegisterFlag(kRegister_NotByAutomation, true);
    EXPECT_EQ(algorithm.GetAutomationControlByLeadParamID(0), &first);
    first.GetParamData(0)->SetRegisterFlag(kRegister_NotByAutomation, true);
    EXPECT_EQ(algorithm.GetAutomationControlByLeadParamID(0), nullptr);
}

TEST_F(AutomationManagerTest, GesturesReachTheControlThatTheParameterLeads) {
    algorithm.AddControl("A", {0, 1}, 10);
    algorithm.AddControl("B", {2}, 20);
    algorithm.Touch(2);
    algorithm.UpdateParamRequestState(2, 125.0);
    algorithm.Touch(2);
    algorithm.Release(2);
    algorithm.Touch(1); // follows, and leads nothing
    algorithm.NotifyParamValue(3);
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("touch 20 at 0", "value 20 125", "release 20 at 0"));
}

TEST_F(AutomationManagerTest, TheValueSentIsThatOfTheActiveSetup) {
    algorithm.AddControl("A", {0});
    algorithm.GetParam(0)->SetState(kPluginSetup_B, 300.0);
    auto* chain = algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.ExecuteAndDisposeBuffer(chain);
    algorithm.TakeCalls();
    algorithm.NotifyParamValue(0);
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("value 7 300"));
}

TEST_F(AutomationManagerTest, ATouchIsLostWhenSomebodyElseReleased) {
    EXPECT_FALSE(algorithm.IsTouchLost(0)); // there is nobody to touch
    KCAutomationControl& control = algorithm.AddControl("A", {0});
    EXPECT_TRUE(algorithm.IsTouchLost(0));
    algorithm.Touch(0);
    EXPECT_FALSE(algorithm.IsTouchLost(0));
    algorithm.Release(0);
    EXPECT_TRUE(algorithm.IsTouchLost(0));
    control.SetAutomationRefCons(0, 0);
    EXPECT_FALSE(algorithm.IsTouchLost(0));
}

TEST_F(AutomationManagerTest, AGestureAllocatesNothing) {
    algorithm.AddControl("A", {0});
    algorithm.calls.reserve(10);
    const AllocationCount count;
    EXPECT_NE(manager().GetAutomationControlByLeadParamID(0), nullptr);
    EXPECT_EQ(count.Taken(), 0u);
}

// ---- Conversions by control
// -------------------------------------------------------------------------------------------

TEST_F(AutomationManagerTest, ConversionsGoThroughTheLead) {
    algorithm.AddControl("A", {1});
    double state = -1.0, realWorld = -1.0;
    EXPECT_EQ(algorithm.ControlStateFromRealWorldValue(0, 2.5, state), 0);
    EXPECT_EQ(state, 250.0);
    EXPECT_EQ(algorithm.ControlStateFromRealWorldValue(0, 11.0, state), 0);
    EXPECT_EQ(state, 1000.0);
    EXPECT_EQ(algorithm.ControlRealWorldValueFromState(0, -5.0, realWorld), 0);
    EXPECT_EQ(realWorld, 0.0);
    EXPECT_EQ(algorithm.ControlRealWorldValueFromState(0, 2000.0, realWorld), 0);
    EXPECT_EQ(realWorld, 10.0);
}

TEST_F(AutomationManagerTest, ConversionsPastTheEndGiveMinusNineteenAndNoOutput) {
    algorithm.AddControl("A", {1});
    double state = -1.0, realWorld = -1.0;
    EXPECT_EQ(algorithm.ControlStateFromRealWorldValue(1, 2.5, state), -19);
    EXPECT_EQ(algorithm.ControlRealWorldValueFromState(1, 250.0, realWorld), -19);
    EXPECT_EQ(algorithm.TranslateTextToControlState(1, "2.5", state, realWorld), -19);
    EXPECT_EQ(algorithm.TranslateTextToControlState(-1, "2.5", state, realWorld), -19);
    EXPECT_EQ(state, -1.0);
    EXPECT_EQ(realWorld, -1.0);
}

TEST_F(AutomationManagerTest, ConversionsOfAControlWithoutALeadChangeNothing) {
    manager().AddNewAutomationControl(Named("None"));
    double state = -1.0, realWorld = -1.0;
    EXPECT_EQ(algorithm.ControlStateFromRealWorldValue(0, 2.5, state), 0);
    EXPECT_EQ(algorithm.ControlRealWorldValueFromState(0, 250.0, realWorld), 0);
    EXPECT_EQ(algorithm.TranslateTextToControlState(0, "2.5", state, realWorld), 0);
    EXPECT_EQ(state, -1.0);
    EXPECT_EQ(realWorld, -1.0);
}

TEST_F(AutomationManagerTest, ConversionsIgnoreNotANumber) {
    algorithm.AddControl("A", {1});
    double out = -1.0;
    EXPECT_EQ(algorithm.ControlStateFromRealWorldValue(0, std::nan(""), out), -1);
    EXPECT_EQ(algorithm.ControlRealWorldValueFromState(0, std::nan(""), out), -1);
    EXPECT_EQ(out, -1.0);
}

TEST_F(AutomationManagerTest, TypedTextsBecomeStates) {
    algorithm.AddControl("A", {1});
    double state = -1.0, realWorld = -1.0;
    EXPECT_EQ(algorithm.TranslateTextToControlState(0, "2,5 dB", state, realWorld), 1);
    EXPECT_EQ(realWorld, 2.5);
    EXPECT_EQ(state, 250.0);
    EXPECT_EQ(algorithm.TranslateTextToControlState(0, "loud", state, realWorld), 0);
    EXPECT_EQ(algorithm.TranslateTextToControlState(0, nullptr, state, realWorld), 0);
    EXPECT_EQ(state, 250.0);
}

// ---- Life
// ---------------------------------------------------------------------------------------------------------------

TEST_F(AutomationManagerTest, EveryParameterCanHaveAControlOfItsName) {
    KCAutomationControl& own = algorithm.AddControl("Own", {2});
    EXPECT_EQ(manager().AddControlsForParams(), kErr_NoErr);
    EXPECT_THAT(Names(), ElementsAre("Own", "P0", "P1", "P3"));
    EXPECT_EQ(algorithm.GetAutomationControlByLeadParamID(2), &own);
    EXPECT_TRUE(manager().GetAutomationControl(3)->GetControlFlag(kControl_HasLead));
    EXPECT_EQ(manager().AddControlsForParams(), kErr_NoErr);
    EXPECT_EQ(Names().size(), 4u);
}

class OwnControls : public HostedAlgorithm {
  public:
    using HostedAlgorithm::HostedAlgorithm;

  protected:
    void CreateSpecificAutomationControls() override { AddControl("Own", {0}); }
};

TEST(AutomationManager, APlugInAddsItsControlsBehindThoseOfTheDescription) {
    OwnControls algorithm(ManyParams(1));
    algorithm.SetDescription("GUIXML", "<GUI><Control_List><cCONTROLLER Name='Read'/></Control_List></GUI>");
    EXPECT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    EXPECT_STREQ(algorithm.GetAutomationControl(0)->GetNamePtr(), "Read");
    EXPECT_STREQ(algorithm.GetAutomationControl(1)->GetNamePtr(), "Own");
}

TEST(AutomationManager, AnAlgorithmThatWasNeverCompletedHasNone) {
    HostedAlgorithm algorithm(ManyParams(1));
    EXPECT_EQ(algorithm.GetAutomationManager(), nullptr);
    EXPECT_EQ(algorithm.GetAutomationControl(0), nullptr);
    EXPECT_EQ(algorithm.GetAutomationControlByName("P0"), nullptr);
    EXPECT_EQ(algorithm.GetAutomationControlByLeadParamID(0), nullptr);
    EXPECT_FALSE(algorithm.IsTouchLost(0));
    algorithm.Touch(0);
    algorithm.NotifyParamValue(0);
    algorithm.Release(0);
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
}

} // namespace
