// Where automation meets what nobody plans for: odd numbers, odd lists, odd moments.
#include <korvolib/control/automation_manager.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>

#include <korvolib/control/automation_test_internal.h>
#include <korvolib/utilities/mem_obj.h>
#include <tests/support/allocation_count.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr int32_t kStateChunk = 'X' << 24 | 'P' << 16 | 's' << 8 | 't';
constexpr size_t kFarthest = std::numeric_limits<size_t>::max();

class AutomationEdgesTest : public testing::Test {
  protected:
    AutomationEdgesTest() {
        algorithm.AddParam(ToggleParam("Mode", 3));
        EXPECT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    }
    void Put(std::initializer_list<double> states) {
        size_t index = 0;
        for (const double state : states) {
            auto* chain = algorithm.UpdateParamState(index++, state, false);
            algorithm.ExecuteAndDisposeBuffer(chain);
        }
        algorithm.TakeCalls();
    }
    double State(size_t param) const { return algorithm.GetParamState(param); }
    KCAutomationManager& manager() { return algorithm.Manager(); }
    HostedAlgorithm algorithm{ManyParams(4)}; // and "Mode", of three states, behind them
};

// ---- Records that share a parameter

TEST_F(AutomationEdgesTest, ALeadThatIsListedTwiceMovesOnce) {
    algorithm.AddControl("A", {0, 0, 1});
    algorithm.Play(0, 400.0);
    EXPECT_EQ(State(0), 400.0);
    EXPECT_EQ(State(1), 400.0);
    algorithm.Play(0, 300.0);
    EXPECT_EQ(State(0), 300.0);
}

TEST_F(AutomationEdgesTest, AFollowerThatIsListedTwiceMovesOnce) {
    algorithm.AddControl("A", {0, 1, 1});
    Put({100.0, 200.0});
    algorithm.Play(0, 250.0);
    EXPECT_EQ(State(1), 350.0);
}

// ---- Odd indexes and numbers

TEST_F(AutomationEdgesTest, TheFarthestIndexIsOutOfRangeEverywhere) {
    algorithm.AddControl("A", {0});
    sCONTROL_AUTOMATION_INFO info;
    int64_t refCon = 5;
    KCFixedString<31> text("kept");
    double realWorld = -1.0;
    EXPECT_EQ(manager().GetAutomationControl(kFarthest), nullptr);
    EXPECT_EQ(manager().SetControllerValue(kFarthest, 1.0), nullptr);
    EXPECT_EQ(manager().GetControlAutomationInfo(kFarthest, info), -19);
    EXPECT_EQ(info.kind, 0);
    EXPECT_EQ(manager().GetAutomationRefCons(kFarthest, refCon, refCon), -19);
    EXPECT_EQ(refCon, 5);
    EXPECT_EQ(manager().TranslateController(kFarthest, 1.0, text, realWorld), -19);
    EXPECT_STREQ(text.c_str(), "kept");
    EXPECT_EQ(manager().GetAutomationControlByLeadParamID(kFarthest), nullptr);
    manager().NotifyParamValue(kFarthest, 1.0);
    manager().AttachMIDIToLearnMode(4, 7, kFarthest);
    EXPECT_EQ(manager().DeleteAutomationControl(kFarthest), -19);
    EXPECT_FALSE(manager().Touch(kFarthest) || manager().ReleaseTouch(kFarthest));
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
}

TEST_F(AutomationEdgesTest, InfiniteValuesGoToTheEnds) {
    algorithm.AddControl("A", {0, 1});
    Put({300.0, 600.0});
    algorithm.Play(0, -kInf);
    EXPECT_EQ(State(0), 0.0);
    EXPECT_EQ(State(1), 0.0);
    algorithm.Play(0, kInf);
    EXPECT_EQ(State(0), 1000.0);
    EXPECT_EQ(State(1), 1000.0);
}

TEST_F(AutomationEdgesTest, ConversionsOfInfinitiesStayOnTheScale) {
    algorithm.AddControl("A", {0});
    for (const double realWorld : {kInf, -kInf, 1e308, -1e308, 0.0}) {
        double state = -1.0;
        EXPECT_EQ(algorithm.ControlStateFromRealWorldValue(0, realWorld, state), 0);
        EXPECT_TRUE(state >= 0.0 && state <= 1000.0) << realWorld << " " << state;
    }
    for (const double state : {kInf, -kInf}) {
        double realWorld = -1.0;
        EXPECT_EQ(algorithm.ControlRealWorldValueFromState(0, state, realWorld), 0);
        EXPECT_EQ(realWorld, state > 0.0 ? 10.0 : 0.0);
    }
}

// ---- Names

TEST_F(AutomationEdgesTest, NamesAreFoundUpToTheirCapacityAndNotBeyond) {
    const std::string full(127, 'n'), longer(128, 'n');
    manager().AddNewAutomationControl(std::make_unique<KCAutomationControl>(KCFixedString<127>(full.c_str())));
    EXPECT_EQ(manager().GetControlIndexByName(full.c_str()), 0u);
    EXPECT_EQ(manager().GetControlIndexByName(longer.c_str()), kNoControl);
    EXPECT_EQ(manager().GetControlIndexByName(full.c_str() + 1), kNoControl);
    EXPECT_EQ(manager().GetControlIndexByName(""), kNoControl);
}

TEST_F(AutomationEdgesTest, TheListIsFullAt65535) {
    for (size_t i = 0; i < kMaxAutomationControls; ++i)
        ASSERT_EQ(manager().AddNewAutomationControl(std::make_unique<KCAutomationControl>()), kErr_NoErr);
    EXPECT_EQ(manager().AddNewAutomationControl(std::make_unique<KCAutomationControl>()), kErr_LimitExceeded);
    EXPECT_EQ(manager().RenameAutomationControl(65534, "last"), kErr_NoErr);
    EXPECT_EQ(manager().GetControlIndexByName("last"), 65534u);
    EXPECT_EQ(manager().GetControlIndexByName("none"), kNoControl);
    EXPECT_EQ(manager().AddNewAutomationControlForIndex(std::make_unique<KCAutomationControl>(), 65534),
              kErr_NoErr);
    EXPECT_EQ(manager().GetNumAutomationControllers(), 65535u);
}

// ---- The record

TEST_F(AutomationEdgesTest, InfoLeavesNoByteOfWhatWasThereBefore) {
    algorithm.AddControl("A", {4});
    sCONTROL_AUTOMATION_INFO first, second;
    std::memset(static_cast<void*>(&first), 0xAA, sizeof first);
    std::memset(static_cast<void*>(&second), 0x55, sizeof second);
    first.version = second.version = 11;
    EXPECT_EQ(manager().GetControlAutomationInfo(0, first), 0);
    EXPECT_EQ(manager().GetControlAutomationInfo(0, second), 0);
    EXPECT_EQ(std::memcmp(&first, &second, sizeof first), 0);
    for (const int32_t version : {10, 12, 0, -11}) {
        second.version = version;
        EXPECT_EQ(manager().GetControlAutomationInfo(0, second), -5017) << version;
    }
}

TEST_F(AutomationEdgesTest, InfoCutsUnitsAndValueTextsAtThirtyOne) {
    const std::string units(40, 'u');
    algorithm.GetParam(0)->SetUnitsString(KCFixedString<127>(units.c_str()));
    algorithm.AddControl("A", {0});
    sCONTROL_AUTOMATION_INFO info;
    ASSERT_EQ(manager().GetControlAutomationInfo(0, info), 0);
    EXPECT_LE(std::strlen(info.units), 31u);
    EXPECT_EQ(info.units[0], 'u');
    EXPECT_LE(std::strlen(info.valueString), 31u);
}

TEST_F(AutomationEdgesTest, InfoGivesTheUnquantizedStoredValueOfASteppedLead) {
    algorithm.AddControl("Mode", {4});
    algorithm.Play(0, 1.4);
    sCONTROL_AUTOMATION_INFO info;
    ASSERT_EQ(manager().GetControlAutomationInfo(0, info), 0);
    EXPECT_EQ(info.value, 1.4);
    EXPECT_EQ(State(4), 1.0);
    algorithm.Play(0, 1.6);
    EXPECT_EQ(State(4), 2.0);
}

// ---- Stored values follow every other path

TEST_F(AutomationEdgesTest, StoredValuesFollowSetupsRestoresAndInits) {
    KCAutomationControl& control = algorithm.AddControl("A", {0, 1});
    const auto stored = [&control] {
        return std::array{control.GetParamData(0)->GetValue(), control.GetParamData(1)->GetValue()};
    };
    algorithm.GetParam(0)->SetState(kPluginSetup_B, 300.0);
    algorithm.GetParam(1)->SetState(kPluginSetup_B, 400.0);
    auto* chain = algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(stored(), (std::array{300.0, 400.0}));
    chain = algorithm.CopySetup(kPluginSetup_A, kPluginSetup_B);
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(stored(), (std::array{0.0, 0.0}));
    algorithm.Play(0, 250.0);
    chain = algorithm.InitData();
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(stored(), (std::array{0.0, 0.0}));
    chain = algorithm.UpdateParamRealWorld(1, 5.0);
    algorithm.ExecuteAndDisposeBuffer(chain);
    algorithm.SetRealWorldAndUpdateAndNotifyAutomation(0, 2.5, kPluginSetup_Active);
    EXPECT_EQ(stored(), (std::array{250.0, 500.0}));
}

// Takes back what a session's chunk says of parameter 0.
class Limiting : public HostedAlgorithm {
  public:
    using HostedAlgorithm::HostedAlgorithm;

  protected:
    void LimitLoadedRealWorld(size_t index, EPluginSetup setup) override {
        if (index != 0 || GetParam(0)->GetState(setup) <= 500.0)
            return;
        GetParam(0)->UpdateState(setup, 500.0);
    }
};

TEST(AutomationEdges, StoredValuesFollowWhatALoadingPlugInLimits) {
    Limiting algorithm(ManyParams(1));
    ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    KCAutomationControl& control = algorithm.AddControl("A", {0});
    algorithm.Play(0, 800.0);
    KCStMemObj chunk;
    ASSERT_EQ(algorithm.GetChunk(kStateChunk, chunk, 0), 0);
    algorithm.Play(0, 100.0);
    ASSERT_EQ(algorithm.SetChunk(kStateChunk, chunk.GetText().data(), chunk.GetText().size()), 0);
    EXPECT_EQ(algorithm.GetParamState(0), 500.0);
    EXPECT_EQ(control.GetParamData(0)->GetValue(), 500.0);
}

// ---- MIDI

TEST_F(AutomationEdgesTest, ARebuiltIndexOnTheWayStillReachesTheOthers) {
    for (size_t i = 0; i < 3; ++i) {
        KCAutomationControl& control = algorithm.AddControl("A", {i});
        control.SetMIDIEventType(4);
        control.SetMIDIControlID(7);
    }
    algorithm.onApply = [this](size_t param) {
        if (param != 0)
            return;
        manager().GetAutomationControl(0)->SetMIDIControlID(-1);
        EXPECT_EQ(manager().WhichControlInMIDILearn(), kNoControl); // looks, and so makes the index anew
    };
    algorithm.Midi(0xB0, 7, 127);
    EXPECT_EQ(State(0), 1000.0);
    EXPECT_EQ(State(1), 1000.0);
    EXPECT_EQ(State(2), 1000.0);
}

TEST_F(AutomationEdgesTest, FollowersOfAnEventAreLinkedAgainAfterIt) {
    algorithm.GetLinkGroups()->SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName("Relative"), true, false);
    for (const size_t param : {0U, 1U})
        algorithm.GetLinkGroups()->AddMember(1, param);
    KCAutomationControl& control = algorithm.AddControl("A", {0, 1});
    control.SetMIDIEventType(4);
    control.SetMIDIControlID(7);
    algorithm.Midi(0xB0, 7, 64);
    EXPECT_EQ(State(1), 503.0);
    auto* chain = algorithm.UpdateParamRequestState(0, 603.0);
    chain = cALGORITHM::ChainBufs(chain, algorithm.LinkParams(0, true));
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(State(1), 603.0);
}

TEST_F(AutomationEdgesTest, StatesAgreeWithThePlainRuleForEveryNumber) {
    for (int numStates = 1; numStates <= 130; ++numStates) {
        HostedAlgorithm own({ToggleParam("Mode", numStates)});
        ASSERT_EQ(own.FinishCreate(), kErr_NoErr);
        own.AddControl("Mode", {0});
        own.Manager().AttachMIDIToLearnMode(4, 7, 0);
        for (int v = 0; v < 128; ++v) {
            own.Midi(0xB0, 7, static_cast<uint8_t>(v));
            // In whole numbers, halves up: (2·(N−1)·v + 127) / 254.
            ASSERT_EQ(own.GetParamState(0), (2 * (numStates - 1) * v + 127) / 254) << numStates << " " << v;
        }
    }
}

// ---- Touched controls that go

TEST_F(AutomationEdgesTest, AControlThatGoesLetsTheHostGo) {
    for (const size_t param : {0U, 1U, 2U})
        algorithm.AddControl("A", {param}, 10 + static_cast<int64_t>(param)).NotifyTouch();
    algorithm.TakeCalls();
    EXPECT_EQ(manager().DeleteAutomationControl(1), kErr_NoErr);
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("release 11 at 0"));
    EXPECT_EQ(manager().AddNewAutomationControlForIndex(std::make_unique<KCAutomationControl>(), 0), kErr_NoErr);
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("release 10 at 0"));
    manager().Release();
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("release 12 at 0"));
}

TEST(AutomationEdges, AnAlgorithmThatEndsCallsNobody) {
    int numCalls = 0;
    {
        HostedAlgorithm algorithm(ManyParams(1));
        ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
        algorithm.AddControl("A", {0}).NotifyTouch();
        algorithm.SetHostCallback(
            [](int32_t, void* refcon, intptr_t, intptr_t, intptr_t, intptr_t) -> intptr_t {
                ++*static_cast<int*>(refcon);
                return 0;
            },
            &numCalls);
    }
    EXPECT_EQ(numCalls, 0);
}

TEST_F(AutomationEdgesTest, ADisposedAlgorithmStillMovesAndCallsNobody) {
    KCAutomationControl& control = algorithm.AddControl("A", {0, 1});
    manager().AttachMIDIToLearnMode(4, 7, 0);
    control.NotifyTouch();
    algorithm.TakeCalls();
    algorithm.Dispose();
    algorithm.Play(0, 300.0);
    algorithm.Midi(0xB0, 7, 127);
    EXPECT_FALSE(control.NotifyRelease());
    EXPECT_EQ(State(1), 1000.0);
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
}

// ---- Hooks and hosts that come back or give up

TEST_F(AutomationEdgesTest, AHookThatThrowsUnderMidiLosesNoBlockAndLeavesNothingBehind) {
    algorithm.AddControl("A", {0, 1});
    manager().AttachMIDIToLearnMode(4, 7, 0);
    algorithm.onApply = [](size_t param) {
        if (param == 1)
            throw std::string("no");
    };
    EXPECT_THROW(manager().MidiProcessControlChange({0xB0, 7, 127}), std::string);
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
    EXPECT_THAT(algorithm.TakeCalls(), IsEmpty());
    algorithm.onApply = nullptr;
    algorithm.Midi(0xB0, 7, 0);
    EXPECT_EQ(State(0), 0.0);
    EXPECT_EQ(State(1), 0.0);
}

TEST_F(AutomationEdgesTest, AHookMayPlayAnotherControl) {
    algorithm.AddControl("A", {0, 1}, 10);
    algorithm.AddControl("B", {2}, 20);
    algorithm.onApply = [this](size_t param) {
        if (param == 0)
            algorithm.Play(1, 250.0);
    };
    algorithm.Play(0, 500.0);
    EXPECT_EQ(State(2), 250.0);
    EXPECT_EQ(State(1), 500.0);
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
    EXPECT_THAT(algorithm.TakeCalls(), ElementsAre("execute 2", "dispose", "execute 0,1", "dispose"));
}

TEST_F(AutomationEdgesTest, AHookMayRegisterMoreAndUnregisterAll) {
    KCAutomationControl& control = algorithm.AddControl("A", {0, 1});
    algorithm.onApply = [&](size_t param) {
        if (param == 0)
            for (size_t i = 0; i < 40; ++i)
                control.Register(&algorithm, 2, KCRegisterInfo(kRegister_Controller));
        if (param == 1)
            control.UnRegisterAll();
    };
    algorithm.Play(0, 500.0);
    EXPECT_EQ(State(1), 500.0);
    EXPECT_EQ(State(2), 0.0); // it came too late to have a distance to go
    EXPECT_FALSE(control.HasLead());
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
}

// A host that answers every call by calling back.
TEST_F(AutomationEdgesTest, AHostMayComeBackFromWithinItsCallback) {
    static int depth;
    static int numExecuted, numDisposed;
    depth = numExecuted = numDisposed = 0;
    algorithm.AddControl("A", {0});
    algorithm.AddControl("B", {1});
    manager().AttachMIDIToLearnMode(4, 7, 0);
    manager().AttachMIDIToLearnMode(4, 8, 1);
    algorithm.SetHostCallback(
        [](int32_t selector, void* refcon, intptr_t a1, intptr_t, intptr_t, intptr_t) -> intptr_t {
            auto& self = *static_cast<HostedAlgorithm*>(refcon);
            numExecuted += selector == 0;
            if (selector == 4) {
                ++numDisposed;
                auto* chain = std::bit_cast<cALGORITHM::BUFFER_HEADER*>(a1);
                KPAPI_PROCESS_MEMORY::GiveBackChain(chain);
            }
            if (++depth < 40) {
                self.Play(1, depth * 10.0);
                self.Midi(0xB0, 8, static_cast<uint8_t>(depth));
                self.Manager().Touch(0);
                self.Manager().ReleaseTouch(0);
            }
            return 0;
        },
        &algorithm);
    algorithm.Midi(0xB0, 7, 127);
    EXPECT_EQ(State(0), 1000.0);
    EXPECT_EQ(numExecuted, numDisposed);
    EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
    EXPECT_FALSE(manager().GetAutomationControl(0)->GetTouched());
}

// ---- Controls that bring others

class Bringing : public KCAutomationControl {
  public:
    explicit Bringing(KCAutomationManager& manager) : m_manager(manager) {}
    int32_t FinishCreate() override {
        for (int i = 0; i < 40; ++i)
            m_manager.AddNewAutomationControl(std::make_unique<KCAutomationControl>());
        return KCAutomationControl::FinishCreate();
    }

  private:
    KCAutomationManager& m_manager;
};

TEST_F(AutomationEdgesTest, AControlMayAddOthersWhileItIsCompleted) {
    manager().AddNewAutomationControl(std::make_unique<Bringing>(manager()));
    algorithm.AddControl("A", {0});
    EXPECT_EQ(manager().FinishCreate(), kErr_NoErr);
    EXPECT_EQ(manager().GetNumAutomationControllers(), 42u);
}

TEST_F(AutomationEdgesTest, ARecordThatNamesAnotherParameterIsForgottenByBoth) {
    KCAutomationControl& control = algorithm.AddControl("A", {0});
    control.GetParamData(0)->SetRegisteredParam(&algorithm, 1);
    EXPECT_EQ(manager().DeleteAutomationControl(0), kErr_NoErr);
    EXPECT_THAT(algorithm.GetParam(0)->GetControllers(), IsEmpty());
    EXPECT_THAT(algorithm.GetParam(1)->GetControllers(), IsEmpty());
}

TEST(AutomationEdges, ConversionsOfEveryScaleStayOnTheScale) {
    std::vector<sCONTROL_PARAM> params = {LinearParam("Lin"), LinearParam("Log"), ToggleParam("Mode", 3),
                                          ToggleParam("None", 0)};
    params[1].SetScaleLog(20.0, 20000.0, 1.0);
    params.emplace_back(KCFixedString<127>("Bare"));
    HostedAlgorithm algorithm(params);
    ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    for (size_t param = 0; param < params.size(); ++param)
        algorithm.AddControl("A", {param});
    for (size_t control = 0; control < params.size(); ++control)
        for (const double realWorld : {kInf, -kInf, 1e308, -1e308, 0.0, -5.0, 5e-324}) {
            double state = -1.0;
            EXPECT_EQ(algorithm.ControlStateFromRealWorldValue(control, realWorld, state), 0);
            EXPECT_TRUE(state >= 0.0 && state <= 1000.0) << control << ": " << realWorld << " " << state;
        }
}

TEST(AutomationEdges, LeadsOfNoStatesAreStillPlayed) {
    for (const int numStates : {0, -1, 1}) {
        HostedAlgorithm algorithm({ToggleParam("Mode", 3)});
        ASSERT_EQ(algorithm.FinishCreate(), kErr_NoErr);
        algorithm.GetParam(0)->SetNumStates(numStates);
        algorithm.AddControl("Mode", {0});
        algorithm.Manager().AttachMIDIToLearnMode(2, 60, 0);
        algorithm.Play(0, kInf);
        algorithm.Midi(0x90, 60, 100);
        sCONTROL_AUTOMATION_INFO info;
        EXPECT_EQ(algorithm.Manager().GetControlAutomationInfo(0, info), 0);
        EXPECT_TRUE(algorithm.GetParamState(0) >= 0.0 && algorithm.GetParamState(0) <= 1000.0);
        EXPECT_EQ(algorithm.NumBlocksUnderWay(), 0u);
    }
}

} // namespace
