#include <korvolib/alg/algorithm.h>
#include <korvolib/utilities/error_codes.h>

#include <limits>

#include <gmock/gmock.h>

#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

class SetupsTest : public testing::Test {
  protected:
    SetupsTest() {
        algorithm.FinishCreate();
        algorithm.TakeLog();
    }
    double State(size_t index, EPluginSetup setup) const { return algorithm.GetParam(index)->GetState(setup); }

    RecordingAlgorithm algorithm{{LinearParam("Gain"), LinearParam("Trim"), ToggleParam("Mode", 3)}};
};

TEST_F(SetupsTest, UpdatesReachTheActiveSetupOnly) {
    algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_EQ(State(0, kPluginSetup_A), 0.0);
    EXPECT_EQ(State(0, kPluginSetup_B), 500.0);
    EXPECT_EQ(algorithm.GetParamState(0), 500.0);
}

TEST_F(SetupsTest, SwitchAppliesOnlyWhatDiffers) {
    algorithm.UpdateParamRequestState(1, 500.0);
    algorithm.TakeLog();
    algorithm.SetActiveSetup(kPluginSetup_B);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 1", "active B", "notify 1"));
    EXPECT_EQ(algorithm.GetParamRealWorld(1), 0.0);
}

TEST_F(SetupsTest, SwitchToTheActiveOrAnUnknownSetupDoesNothing) {
    EXPECT_EQ(algorithm.SetActiveSetup(kPluginSetup_A), nullptr);
    EXPECT_EQ(algorithm.SetActiveSetup(static_cast<EPluginSetup>(2)), nullptr);
    EXPECT_EQ(algorithm.SetActiveSetup(kPluginSetup_Active), nullptr);
    EXPECT_THAT(algorithm.log, IsEmpty());
    EXPECT_EQ(algorithm.GetActiveSetup(), kPluginSetup_A);
}

TEST_F(SetupsTest, SwitchReturnsOneChain) {
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.UpdateParamRequestState(1, 500.0);
    algorithm.givesBlocks = true;
    auto* chain = algorithm.SetActiveSetup(kPluginSetup_B);
    ASSERT_NE(chain, nullptr);
    ASSERT_NE(chain->next, nullptr);
    EXPECT_EQ(chain->target, 0u);
    EXPECT_EQ(chain->next->target, 1u);
    EXPECT_EQ(chain->next->next, nullptr);
    algorithm.ExecuteAndDisposeBuffer(chain);
}

TEST_F(SetupsTest, CopyIntoTheActiveSetupIsHeard) {
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.GetParam(0)->SetSetupWord(kPluginSetup_A, 77);
    algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.TakeLog();
    algorithm.CopySetup(kPluginSetup_A, kPluginSetup_B);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "modified B", "notify 0"));
    EXPECT_EQ(State(0, kPluginSetup_B), 500.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetSetupWord(kPluginSetup_B), 77);
}

TEST_F(SetupsTest, CopyIntoTheOtherSetupOnlyModifiesIt) {
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.TakeLog();
    EXPECT_EQ(algorithm.CopySetup(kPluginSetup_A, kPluginSetup_B), nullptr);
    EXPECT_THAT(algorithm.TakeLog(), ElementsAre("modified B"));
    EXPECT_EQ(State(0, kPluginSetup_B), 500.0);
    algorithm.CopySetup(kPluginSetup_A, kPluginSetup_B); // nothing left to copy
    algorithm.CopySetup(kPluginSetup_A, kPluginSetup_A);
    algorithm.CopySetup(static_cast<EPluginSetup>(5), kPluginSetup_A);
    EXPECT_THAT(algorithm.log, IsEmpty());
}

TEST_F(SetupsTest, RestoreBringsBothSetupsAndTheActiveOne) {
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.UpdateParamRequestState(1, 250.0);
    sPARAM_VALUES saved[3];
    ASSERT_EQ(algorithm.CaptureParams(0, saved, 3), 3u);
    algorithm.SetActiveSetup(kPluginSetup_A);
    algorithm.UpdateParamRequestState(0, 100.0);
    algorithm.UpdateParamRequestState(2, 2.0);
    algorithm.TakeLog();

    algorithm.RestoreParams(nullptr, saved, 3, kPluginSetup_B);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "apply 1", "apply 2", "active B", "modified B", "notify 0",
                                           "notify 1", "notify 2"));
    sPARAM_VALUES now[3];
    algorithm.CaptureParams(0, now, 3);
    EXPECT_TRUE(std::equal(now, now + 3, saved));
    EXPECT_EQ(algorithm.GetActiveSetup(), kPluginSetup_B);
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), 3);
}

TEST_F(SetupsTest, RestoreThatSwitchesTellsControllersOnceTheOtherSetupCanBeRead) {
    struct Knob : KCParamController {
        const cALGORITHM* algorithm = nullptr;
        std::vector<double> shown;
        void OnParamChanged(size_t index) noexcept override { shown.push_back(algorithm->GetParamState(index)); }
    } knob;
    knob.algorithm = &algorithm;
    sPARAM_VALUES values;
    values.state[1] = 300.0;
    values.realWorld[1] = 3.0;
    algorithm.GetParam(0)->AddController(&knob);
    algorithm.RestoreParams(nullptr, &values, 1, kPluginSetup_B);
    EXPECT_THAT(knob.shown, ElementsAre(300.0));
    algorithm.RestoreParams(nullptr, nullptr, 0, kPluginSetup_A);
    EXPECT_THAT(knob.shown, ElementsAre(300.0, 0.0));
}

TEST_F(SetupsTest, RestoreOfWhatStandsIsSilent) {
    sPARAM_VALUES saved[3];
    algorithm.CaptureParams(0, saved, 3);
    EXPECT_EQ(algorithm.RestoreParams(nullptr, saved, 3, kPluginSetup_A), nullptr);
    EXPECT_THAT(algorithm.log, IsEmpty());
}

TEST_F(SetupsTest, RestoreTakesAnyChoiceOfParameters) {
    const size_t indexes[] = {2, 0, 99, kNoParam};
    sPARAM_VALUES values[4];
    values[0].state[0] = values[0].realWorld[0] = 1.0;
    values[1].state[0] = 300.0;
    values[1].realWorld[0] = 3.0;
    algorithm.RestoreParams(indexes, values, 4, kPluginSetup_A);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "apply 2", "modified A", "notify 0", "notify 2"));
    EXPECT_EQ(algorithm.GetParamState(0), 300.0);
    EXPECT_EQ(algorithm.GetParamState(2), 1.0);
}

TEST_F(SetupsTest, RestoreLeavesOutWhatIsNotFinite) {
    sPARAM_VALUES values[2];
    values[0].realWorld[1] = std::numeric_limits<double>::quiet_NaN();
    values[0].state[0] = 700.0;
    values[1].state[0] = 100.0;
    values[1].realWorld[0] = 1.0;
    algorithm.RestoreParams(nullptr, values, 2, kPluginSetup_A);
    EXPECT_EQ(algorithm.GetParamState(0), 0.0);
    EXPECT_EQ(algorithm.GetParamState(1), 100.0);
}

TEST_F(SetupsTest, RestoreWithoutValuesOrPastTheEndIsHarmless) {
    sPARAM_VALUES values[9];
    EXPECT_EQ(algorithm.RestoreParams(nullptr, nullptr, 5, kPluginSetup_A), nullptr);
    EXPECT_EQ(algorithm.RestoreParams(nullptr, values, 9, kPluginSetup_A), nullptr);
    EXPECT_EQ(algorithm.CaptureParams(0, nullptr, 3), 0u);
    EXPECT_EQ(algorithm.CaptureParams(3, values, 3), 0u);
    EXPECT_EQ(algorithm.CaptureParams(1, values, 9), 2u);
}

TEST_F(SetupsTest, RestoreOfSilentParametersDoesNotModifyThePreset) {
    algorithm.GetParam(0)->SetFlags(0x20);
    sPARAM_VALUES values[1];
    values[0].state[0] = 100.0;
    values[0].realWorld[0] = 1.0;
    algorithm.RestoreParams(nullptr, values, 1, kPluginSetup_A);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "notify 0"));
}

TEST_F(SetupsTest, HookThatRestoresPaysEachDebtOnce) {
    sPARAM_VALUES values[3];
    for (sPARAM_VALUES& value : values)
        value = {{100.0, 0.0}, {1.0, 0.0}};
    bool isNested = false;
    algorithm.onApply = [&](size_t) {
        if (!std::exchange(isNested, true))
            algorithm.RestoreParams(nullptr, values, 3, kPluginSetup_A);
    };
    algorithm.RestoreParams(nullptr, values, 3, kPluginSetup_A);
    EXPECT_EQ(std::ranges::count(algorithm.log, "apply 0"), 1);
    EXPECT_EQ(std::ranges::count(algorithm.log, "apply 1"), 1);
    EXPECT_EQ(std::ranges::count(algorithm.log, "notify 2"), 1);
}

TEST_F(SetupsTest, SetupsHaveTexts) {
    KCFixedString<15> text;
    cALGORITHM::SetupToSetupString(kPluginSetup_A, text);
    EXPECT_STREQ(text.c_str(), "SETUP_A");
    cALGORITHM::SetupToSetupString(kPluginSetup_B, text);
    EXPECT_STREQ(text.c_str(), "SETUP_B");
    cALGORITHM::SetupToSetupString(static_cast<EPluginSetup>(2), text);
    EXPECT_TRUE(text.empty());
}

TEST_F(SetupsTest, TextsNameSetups) {
    EPluginSetup setup = kPluginSetup_A;
    EXPECT_EQ(cALGORITHM::SetupStringToSetup(KCFixedString<15>("SETUP_B"), setup), 0);
    EXPECT_EQ(setup, kPluginSetup_B);
    EXPECT_EQ(cALGORITHM::SetupStringToSetup(KCFixedString<15>("setup_a"), setup), kErr_Generic);
    EXPECT_EQ(setup, kPluginSetup_B);
    EXPECT_EQ(cALGORITHM::SetupStringToSetup(KCFixedString<15>("SETUP_A"), setup), 0);
    EXPECT_EQ(setup, kPluginSetup_A);
}

TEST_F(SetupsTest, TitleIsToldWhenItChanges) {
    algorithm.SetSetupTitle(kPluginSetup_B, KCFixedString<127>("Warm"));
    algorithm.SetSetupTitle(kPluginSetup_B, KCFixedString<127>("Warm"));
    EXPECT_THAT(algorithm.log, ElementsAre("title B"));
    EXPECT_STREQ(algorithm.GetSetupTitle(kPluginSetup_B).c_str(), "Warm");
    EXPECT_TRUE(algorithm.GetSetupTitle(static_cast<EPluginSetup>(9)).empty());
}

TEST_F(SetupsTest, ActiveStandsForTheActiveSetup) {
    algorithm.SetSetupTitle(kPluginSetup_Active, KCFixedString<127>("Warm"));
    EXPECT_STREQ(algorithm.GetSetupTitle(kPluginSetup_A).c_str(), "Warm");
    EXPECT_STREQ(algorithm.GetSetupTitle(kPluginSetup_Active).c_str(), "Warm");
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.CopySetup(kPluginSetup_Active, kPluginSetup_B);
    EXPECT_EQ(State(0, kPluginSetup_B), 500.0);
    algorithm.TakeLog();
    EXPECT_EQ(algorithm.CopySetup(kPluginSetup_Active, kPluginSetup_A), nullptr);
    EXPECT_THAT(algorithm.log, IsEmpty());
}

TEST_F(SetupsTest, HostValueReachesTheActiveSetupByItsNumber) {
    algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.SetRealWorldAndUpdateAndNotifyAutomation(0, 5.0, kPluginSetup_Active);
    EXPECT_EQ(State(0, kPluginSetup_B), 500.0);
    EXPECT_EQ(State(0, kPluginSetup_A), 0.0);
}

TEST(Setups, SwitchCopyAndRestoreNeedNoFinishedAlgorithm) {
    RecordingAlgorithm algorithm({LinearParam("Gain"), LinearParam("Trim")});
    algorithm.UpdateParamRequestState(1, 500.0);
    algorithm.TakeLog();
    algorithm.SetActiveSetup(kPluginSetup_B);
    EXPECT_THAT(algorithm.TakeLog(), testing::Contains("apply 1"));
    algorithm.CopySetup(kPluginSetup_A, kPluginSetup_B);
    EXPECT_EQ(algorithm.GetParamState(1), 500.0);
    sPARAM_VALUES values[2];
    algorithm.RestoreParams(nullptr, values, 2, kPluginSetup_A);
    EXPECT_EQ(algorithm.GetParamState(1), 0.0);
    algorithm.UpdateParamByGesture(0, 100.0);
    algorithm.OnLinkedParamValueModified(1, 5.0);
    EXPECT_EQ(algorithm.GetParamState(0), 100.0);
}

TEST_F(SetupsTest, RestoreThatSwitchesShowsEveryParameterAnew) {
    algorithm.SetParamValueString(1, KCFixedString<127>("unity"));
    sPARAM_VALUES values[1];
    algorithm.RestoreParams(nullptr, values, 1, kPluginSetup_B);
    KCFixedString<127> text;
    algorithm.GetParamValueString(1, text);
    EXPECT_STREQ(text.c_str(), "0.00");
    EXPECT_EQ(algorithm.GetParam(1)->GetRefreshMark(), 3);
}

TEST_F(SetupsTest, RestoreWithAnExhaustedPoolIsMadeGoodByTheNextIdleCall) {
    algorithm.givesBlocks = true;
    std::vector<KPAPI_PROCESS_MEMORY::BUFFER_HEADER*> taken;
    while (algorithm.GetProcessMemoryPool().GetNumFree() > 1)
        taken.push_back(algorithm.TakeBuffer(0, 8));
    const sPARAM_VALUES values[2] = {{{100.0, 0.0}, {1.0, 0.0}}, {{100.0, 0.0}, {1.0, 0.0}}};
    auto* chain = algorithm.RestoreParams(nullptr, values, 2, kPluginSetup_A);
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->next, nullptr);
    EXPECT_EQ(algorithm.GetParamState(1), 100.0);
    EXPECT_TRUE(algorithm.IsUpdateAlgRequired());
    algorithm.ExecuteAndDisposeBuffer(chain);
    for (auto* block : taken)
        KPAPI_PROCESS_MEMORY::GiveBackChain(block);
    algorithm.TakeLog();
    algorithm.DoIdle();
    EXPECT_THAT(algorithm.log, ElementsAre("apply all"));
}

} // namespace
