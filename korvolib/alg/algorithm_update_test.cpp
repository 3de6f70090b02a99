#include <korvolib/alg/algorithm.h>

#include <cmath>
#include <future>
#include <limits>
#include <random>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>

#include <tests/support/allocation_count.h>
#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// As another thread finds it.
bool IsLockFree(const cALGORITHM& algorithm) {
    bool isFree = false;
    std::thread([&] {
        isFree = algorithm.TryLockAlg();
        if (isFree)
            algorithm.UnLockAlg();
    }).join();
    return isFree;
}

// Finished, with an empty log.
class UpdateTest : public testing::Test {
  protected:
    RecordingAlgorithm& Make(const std::vector<sCONTROL_PARAM>& params) {
        m_algorithm = std::make_unique<RecordingAlgorithm>(params);
        EXPECT_EQ(m_algorithm->FinishCreate(), 0);
        m_algorithm->TakeLog();
        return *m_algorithm;
    }
    RecordingAlgorithm& MakeWithFlags(uint32_t flags) {
        sCONTROL_PARAM param = LinearParam("Gain");
        param.SetFlags(flags);
        return Make({param});
    }

  private:
    std::unique_ptr<RecordingAlgorithm> m_algorithm;
};

TEST_F(UpdateTest, StateBeyondTheTravelChangesNothing) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.TakeLog();
    for (const double state : {1000.0001, -0.1, kInf, -kInf, kNaN}) {
        EXPECT_EQ(algorithm.UpdateParamState(0, state, true), nullptr);
        EXPECT_EQ(algorithm.GetParamState(0), 500.0);
    }
    EXPECT_THAT(algorithm.log, IsEmpty());
}

TEST_F(UpdateTest, BothEndsOfTheTravelAreAccepted) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    algorithm.UpdateParamRequestState(0, 1000.0);
    EXPECT_EQ(algorithm.GetParamRealWorld(0), 10.0);
    algorithm.UpdateParamRequestState(0, 0.0);
    EXPECT_EQ(algorithm.GetParamRealWorld(0), 0.0);
}

TEST_F(UpdateTest, ChangeIsAppliedThenReportedThenNotified) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Other"), LinearParam("Gain")});
    algorithm.UpdateParamRequestState(1, 500.0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 1", "modified A", "notify 1"));
}

TEST_F(UpdateTest, HookSeesTheNewValue) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    double seen = -1.0;
    algorithm.onApply = [&](size_t index) { seen = algorithm.GetParamRealWorld(index); };
    algorithm.UpdateParamRequestState(0, 250.0);
    EXPECT_EQ(seen, 2.5);
}

TEST_F(UpdateTest, HooksBlockIsTheResult) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    algorithm.givesBlocks = true;
    auto* chain = algorithm.UpdateParamRequestState(0, 250.0);
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(*static_cast<double*>(chain->Payload()), 2.5);
    algorithm.ExecuteAndDisposeBuffer(chain);
}

TEST_F(UpdateTest, WithoutTheSwitchNobodyIsNotified) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    algorithm.UpdateParamState(0, 500.0, false);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "modified A"));
}

TEST_F(UpdateTest, SameStateDoesNothing) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.TakeLog();
    algorithm.GetParam(0)->SetRefreshMark(0);
    EXPECT_EQ(algorithm.UpdateParamRequestState(0, 500.0), nullptr);
    EXPECT_THAT(algorithm.log, IsEmpty());
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), 0);
}

TEST_F(UpdateTest, FlatStretchOnlyMarksTheDisplay) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain", 0.0, 10.0, 1.0)});
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.TakeLog();
    EXPECT_EQ(algorithm.UpdateParamRequestState(0, 510.0), nullptr);
    EXPECT_THAT(algorithm.log, IsEmpty());
    EXPECT_EQ(algorithm.GetParamState(0), 510.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), 3);
}

TEST_F(UpdateTest, DiscreteStateIsRoundedToItsStep) {
    RecordingAlgorithm& algorithm = Make({ToggleParam("Mode", 5)});
    algorithm.UpdateParamRequestState(0, 2.4);
    EXPECT_EQ(algorithm.GetParamState(0), 2.0);
    algorithm.UpdateParamRequestState(0, 2.5);
    EXPECT_EQ(algorithm.GetParamState(0), 3.0);
}

TEST_F(UpdateTest, DiscreteStateNeverLeavesTheTravelByRounding) {
    sCONTROL_PARAM param = ToggleParam("Mode", 3);
    param.SetStateStep(400.0);
    RecordingAlgorithm& algorithm = Make({param});
    algorithm.UpdateParamRequestState(0, 1000.0);
    EXPECT_EQ(algorithm.GetParamState(0), 800.0);
}

TEST_F(UpdateTest, FlagFourAlwaysRunsAndNeverModifiesThePreset) {
    RecordingAlgorithm& algorithm = MakeWithFlags(0x4);
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "notify 0", "apply 0", "notify 0"));
}

TEST_F(UpdateTest, FlagSixteenAlwaysRunsButReportsOnlyChanges) {
    RecordingAlgorithm& algorithm = MakeWithFlags(0x10);
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "modified A", "notify 0", "apply 0", "notify 0"));
}

TEST_F(UpdateTest, FlagThirtyTwoRunsTheHookWithoutModifyingThePreset) {
    RecordingAlgorithm& algorithm = MakeWithFlags(0x20);
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "notify 0"));
}

TEST_F(UpdateTest, FlagEightReportsWhatDiffersFromTheComparisonValue) {
    RecordingAlgorithm& algorithm = MakeWithFlags(0x8 | 0x10);
    algorithm.GetParam(0)->SetComparisonValue(5.0);
    algorithm.UpdateParamState(0, 500.0, false);
    algorithm.TakeLog();
    algorithm.UpdateParamState(0, 500.0, false); // equal to before and to the comparison value
    algorithm.GetParam(0)->SetComparisonValue(6.0);
    algorithm.UpdateParamState(0, 500.0, false); // equal to before, unlike the comparison value
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "apply 0", "modified A"));
}

TEST_F(UpdateTest, PendingComparisonLetsTheSameStateThrough) {
    RecordingAlgorithm& algorithm = MakeWithFlags(0x8);
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.GetParam(0)->SetComparisonPending(true);
    algorithm.GetParam(0)->SetRefreshMark(0);
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), 3);
}

TEST_F(UpdateTest, PendingComparisonCountsForNothingWithoutFlagEight) {
    RecordingAlgorithm& algorithm = MakeWithFlags(0);
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.GetParam(0)->SetComparisonPending(true);
    algorithm.GetParam(0)->SetRefreshMark(0);
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), 0);
}

TEST_F(UpdateTest, PendingUpdateLetsTheSameStateThrough) {
    RecordingAlgorithm& algorithm = MakeWithFlags(0);
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.GetParam(0)->SetUpdatePending(true);
    algorithm.GetParam(0)->SetRefreshMark(0);
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), 3);
}

TEST_F(UpdateTest, LinkedSetupsTakeTheSameState) {
    RecordingAlgorithm& algorithm = MakeWithFlags(0x40000);
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetState(kPluginSetup_B), 500.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetRealWorld(kPluginSetup_B), 5.0);
}

TEST_F(UpdateTest, OtherSetupStaysWithoutTheFlag) {
    RecordingAlgorithm& algorithm = MakeWithFlags(0);
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetState(kPluginSetup_B), 0.0);
}

TEST_F(UpdateTest, RealWorldIsStoredAsGivenAndNeverNotified) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain", 0.0, 10.0, 1.0)});
    algorithm.UpdateParamRealWorld(0, 5.25);
    EXPECT_EQ(algorithm.GetParamRealWorld(0), 5.25);
    EXPECT_EQ(algorithm.GetParamState(0), 525.0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "modified A"));
}

TEST_F(UpdateTest, RealWorldBeyondTheScaleGivesAStateBeyondTheTravel) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    algorithm.UpdateParamRealWorld(0, 12.0);
    EXPECT_DOUBLE_EQ(algorithm.GetParamState(0), 1200.0);
}

TEST_F(UpdateTest, SameRealWorldDoesNothingUnlessTheFlagsSaySo) {
    Make({LinearParam("Gain")}).UpdateParamRealWorld(0, 0.0);
    RecordingAlgorithm& algorithm = MakeWithFlags(0x10);
    algorithm.UpdateParamRealWorld(0, 0.0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0"));
}

TEST_F(UpdateTest, RequestedRealWorldIsLimitedAndNotified) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain", 0.0, 10.0, 1.0)});
    algorithm.UpdateParamRequestRealWorld(0, 12.4);
    EXPECT_EQ(algorithm.GetParamRealWorld(0), 10.0);
    EXPECT_THAT(algorithm.TakeLog(), ElementsAre("apply 0", "modified A", "notify 0"));
    algorithm.UpdateParamRequestRealWorld(0, 10.3); // limited to where it stands
    EXPECT_THAT(algorithm.log, IsEmpty());
}

TEST_F(UpdateTest, NumbersThatAreNotFiniteAreRefused) {
    RecordingAlgorithm& algorithm = MakeWithFlags(0x10);
    for (const double value : {kNaN, kInf, -kInf}) {
        EXPECT_EQ(algorithm.UpdateParamRealWorld(0, value), nullptr);
        EXPECT_EQ(algorithm.UpdateParamRequestRealWorld(0, value), nullptr);
        algorithm.SetRealWorldAndUpdateAndNotifyAutomation(0, value, kPluginSetup_A);
    }
    EXPECT_THAT(algorithm.log, IsEmpty());
    EXPECT_EQ(algorithm.GetParamRealWorld(0), 0.0);
}

TEST_F(UpdateTest, HostValueIsEchoedWithoutHookOrLock) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    std::promise<void> held, done;
    std::thread holder([&] {
        const KCAlgorithmLock lock(algorithm);
        held.set_value();
        done.get_future().wait(); // whoever took the lock now would wait for ever
    });
    held.get_future().wait();
    algorithm.SetRealWorldAndUpdateAndNotifyAutomation(0, 5.0, kPluginSetup_B);
    done.set_value();
    holder.join();
    EXPECT_THAT(algorithm.log, ElementsAre("touch 0", "notify 0", "release 0"));
    EXPECT_EQ(algorithm.GetParam(0)->GetState(kPluginSetup_B), 500.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetState(kPluginSetup_A), 0.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), 3);
}

TEST_F(UpdateTest, UnknownIndexIsNeutralEverywhere) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    for (const size_t index : {size_t{1}, kNoParam}) {
        EXPECT_EQ(algorithm.UpdateParamRequestState(index, 5.0), nullptr);
        EXPECT_EQ(algorithm.UpdateParamRealWorld(index, 5.0), nullptr);
        EXPECT_EQ(algorithm.UpdateParamRequestRealWorld(index, 5.0), nullptr);
        algorithm.SetRealWorldAndUpdateAndNotifyAutomation(index, 5.0, kPluginSetup_A);
    }
    EXPECT_THAT(algorithm.log, IsEmpty());
}

TEST_F(UpdateTest, HookMayUpdateAnotherParameter) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain"), LinearParam("Follower")});
    algorithm.onApply = [&](size_t index) {
        if (index == 0)
            algorithm.UpdateParamState(1, 100.0, false);
    };
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_EQ(algorithm.GetParamState(1), 100.0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "apply 1", "modified A", "modified A", "notify 0"));
}

TEST_F(UpdateTest, ThrowingHookGivesTheLockBack) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    algorithm.onApply = [](size_t) { throw std::runtime_error("hook"); };
    EXPECT_THROW(algorithm.UpdateParamRequestState(0, 500.0), std::runtime_error);
    EXPECT_TRUE(IsLockFree(algorithm));
}

TEST_F(UpdateTest, HooksAndListenersRunWithTheLockHeld) {
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain")});
    bool wasFree = true;
    algorithm.onApply = [&](size_t) { wasFree = IsLockFree(algorithm); };
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_FALSE(wasFree);
}

TEST_F(UpdateTest, BoundControllersHearOfEveryStoredState) {
    struct Controller : KCParamController {
        void OnParamChanged(size_t index) noexcept override { indexes.push_back(index); }
        std::vector<size_t> indexes;
    } controller;
    RecordingAlgorithm& algorithm = Make({LinearParam("Gain"), LinearParam("Trim", 0.0, 10.0, 1.0)});
    algorithm.GetParam(1)->AddController(&controller);
    algorithm.UpdateParamRequestState(1, 500.0);
    algorithm.UpdateParamRequestState(1, 510.0); // a flat stretch: the state has moved all the same
    algorithm.UpdateParamRequestRealWorld(1, 7.0);
    EXPECT_THAT(controller.indexes, ElementsAre(1, 1, 1));
}

TEST_F(UpdateTest, ParameterPathAllocatesNothing) {
    struct Quiet : RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        void NotifyParamValue(size_t) override {}
        void PresetModified(EPluginSetup) override {}
        BUFFER_HEADER* ApplyParamSelf(size_t) override { return TakeBuffer(0, sizeof(double)); }
    } quiet({LinearParam("Gain"), ToggleParam("Mode", 3)});
    quiet.FinishCreate();
    const AllocationCount count;
    for (int i = 0; i < 100; ++i) {
        auto* chain = cALGORITHM::ChainBufs(quiet.UpdateParamRequestState(0, 10.0 * (i % 50)),
                                            quiet.UpdateParamRequestRealWorld(0, 0.1 * (i % 50)));
        quiet.ExecuteAndDisposeBuffer(chain);
        chain = quiet.UpdateParamRequestState(1, i % 3);
        quiet.ExecuteAndDisposeBuffer(chain);
    }
    EXPECT_EQ(count.Taken(), 0u);
}

// What one update does, written down the slow way.
TEST_F(UpdateTest, AgreesWithThePlainRuleOverRandomUpdates) {
    std::mt19937 random(20260101);
    const uint32_t flagSets[] = {0, 0x4, 0x8, 0x10, 0x20, 0x40000, 0x8 | 0x10, 0x24};
    for (const uint32_t flags : flagSets) {
        sCONTROL_PARAM param = LinearParam("Gain", 0.0, 10.0, 1.0);
        param.SetFlags(flags);
        RecordingAlgorithm& algorithm = Make({param});
        double model[2] = {0.0, 0.0};
        for (int i = 0; i < 500; ++i) {
            const double state = std::uniform_int_distribution<int>(-5, 105)(random) * 10.0;
            const bool notify = (random() & 1) != 0;
            std::vector<std::string> expected;
            const auto scale = [](double s) { return std::floor(s * 0.01 + 0.5); };
            if (state >= 0.0 && state <= 1000.0 && (state != model[0] || (flags & 0x14) != 0)) {
                const bool changed = scale(model[0]) != scale(state);
                if (changed || (flags & 0x14) != 0) {
                    expected.push_back("apply 0");
                    const bool modified = changed || ((flags & 8) != 0 && scale(state) != 0.0);
                    if (modified && (flags & 0x24) == 0)
                        expected.push_back("modified A");
                    if (notify)
                        expected.push_back("notify 0");
                }
                model[0] = state;
                if ((flags & 0x40000) != 0)
                    model[1] = state;
            }
            algorithm.UpdateParamState(0, state, notify);
            ASSERT_EQ(algorithm.TakeLog(), expected) << "flags " << flags << " state " << state;
            ASSERT_EQ(algorithm.GetParam(0)->GetState(kPluginSetup_A), model[0]);
            ASSERT_EQ(algorithm.GetParam(0)->GetState(kPluginSetup_B), model[1]);
        }
    }
}

// An exception on the way gives the blocks back that were made so far; the next idle call sends everything.
TEST_F(UpdateTest, ThrowingListenerLosesNoBlock) {
    struct Throwing : RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        void NotifyParamValue(size_t) override { throw std::runtime_error("listener"); }
    } algorithm({LinearParam("Gain"), LinearParam("Trim")});
    algorithm.FinishCreate();
    algorithm.givesBlocks = true;
    const KCProcessMemoryPool& pool = algorithm.GetProcessMemoryPool();
    const sPARAM_VALUES values[2] = {{{9.0, 9.0}, {0.09, 0.09}}, {{9.0, 9.0}, {0.09, 0.09}}};
    EXPECT_THROW(algorithm.UpdateParamRequestState(0, 500.0), std::runtime_error);
    EXPECT_TRUE(algorithm.IsUpdateAlgRequired());
    EXPECT_THROW(algorithm.UpdateParamRequestRealWorld(0, 7.0), std::runtime_error);
    EXPECT_THROW(algorithm.UpdateParamByGesture(0, 100.0), std::runtime_error);
    EXPECT_THROW(algorithm.RestoreParams(nullptr, values, 2, kPluginSetup_A), std::runtime_error);
    EXPECT_EQ(pool.GetNumFree(), pool.GetSize().numBlocks);
}

} // namespace
