#include <korvolib/alg/algorithm.h>
#include <korvolib/control/link_groups.h>

#include <gmock/gmock.h>

#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

class LinkedAlgorithm : public RecordingAlgorithm {
  public:
    using RecordingAlgorithm::RecordingAlgorithm;
    const char* law = "Relative";

  protected:
    int32_t FinishCreateSelf() override {
        GetLinkGroups()->SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName(law), true, false);
        for (size_t index = 0; index < GetNumParams(); ++index)
            GetLinkGroups()->AddMember(1, index);
        return 0;
    }
};

class LinkedAlgorithmTest : public testing::Test {
  protected:
    LinkedAlgorithmTest() {
        algorithm.FinishCreate();
        algorithm.TakeLog();
    }
    LinkedAlgorithm algorithm{{LinearParam("Left"), LinearParam("Right")}};
};

TEST_F(LinkedAlgorithmTest, GestureMovesTheMembersAndReturnsOneChain) {
    algorithm.givesBlocks = true;
    auto* chain = algorithm.UpdateParamByGesture(0, 250.0);
    EXPECT_THAT(algorithm.log,
                ElementsAre("apply 0", "modified A", "notify 0", "apply 1", "modified A", "notify 1"));
    ASSERT_NE(chain, nullptr);
    ASSERT_NE(chain->next, nullptr);
    EXPECT_EQ(chain->next->target, 1u);
    EXPECT_EQ(chain->next->next, nullptr);
    EXPECT_EQ(algorithm.GetParamState(1), 250.0);
    EXPECT_EQ(algorithm.GetParam(1)->GetRefreshMark(), 3);
    algorithm.ExecuteAndDisposeBuffer(chain);
}

TEST_F(LinkedAlgorithmTest, PlainUpdateAndRestoreLinkNothing) {
    algorithm.UpdateParamRequestState(0, 250.0);
    EXPECT_EQ(algorithm.GetParamState(1), 0.0);
    sPARAM_VALUES values[1];
    values[0].state[0] = 700.0;
    values[0].realWorld[0] = 7.0;
    algorithm.RestoreParams(nullptr, values, 1, kPluginSetup_A);
    EXPECT_EQ(algorithm.GetParamState(1), 0.0);
}

TEST_F(LinkedAlgorithmTest, GestureAfterOtherChangesLinksItsOwnDistanceOnly) {
    algorithm.UpdateParamByGesture(0, 100.0);
    algorithm.UpdateParamRequestState(0, 600.0); // host
    algorithm.UpdateParamByGesture(0, 610.0);
    EXPECT_EQ(algorithm.GetParamState(1), 110.0);
    sPARAM_VALUES values[2];
    algorithm.RestoreParams(nullptr, values, 2, kPluginSetup_A); // undo, chunk
    algorithm.UpdateParamByGesture(1, 40.0);
    EXPECT_EQ(algorithm.GetParamState(0), 40.0);
    algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.UpdateParamByGesture(0, 5.0);
    EXPECT_EQ(algorithm.GetParamState(1), 5.0);
}

TEST_F(LinkedAlgorithmTest, MembersAreNotNotifiedWhenSwitchedOff) {
    EXPECT_TRUE(algorithm.GetLinkGroups()->GetNotifyOnLinkedParams());
    algorithm.GetLinkGroups()->SetNotifyOnLinkedParams(false);
    algorithm.UpdateParamByGesture(0, 250.0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "modified A", "notify 0", "apply 1", "modified A"));
}

TEST_F(LinkedAlgorithmTest, GestureThatMovesNothingLinksNothing) {
    algorithm.UpdateParamByGesture(0, 0.0);
    EXPECT_THAT(algorithm.log, IsEmpty());
}

TEST_F(LinkedAlgorithmTest, GestureIsHeldBackByAMemberAtItsBound) {
    algorithm.UpdateParamRequestState(1, 980.0);
    algorithm.TakeLog();
    algorithm.UpdateParamByGesture(0, 50.0);
    EXPECT_EQ(algorithm.GetParamState(0), 20.0);
    EXPECT_EQ(algorithm.GetParamState(1), 1000.0);
}

TEST_F(LinkedAlgorithmTest, MemberOfBothSetupsIsMirrored) {
    algorithm.GetParam(1)->SetFlags(0x40000);
    algorithm.UpdateParamByGesture(0, 250.0);
    EXPECT_EQ(algorithm.GetParam(1)->GetState(kPluginSetup_B), 250.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetState(kPluginSetup_B), 0.0);
}

TEST_F(LinkedAlgorithmTest, EqualisingOutsideAGestureIsExecutedAtOnce) {
    LinkedAlgorithm absolute({LinearParam("Left"), LinearParam("Right")});
    absolute.law = "Absolute";
    absolute.givesBlocks = true;
    absolute.FinishCreate();
    absolute.UpdateParamRealWorld(0, 5.0);
    const size_t free = absolute.GetProcessMemoryPool().GetNumFree();
    absolute.GetLinkGroups()->EqualizeAllAbsoluteControls();
    EXPECT_EQ(absolute.GetParamRealWorld(1), 5.0);
    EXPECT_EQ(absolute.GetProcessMemoryPool().GetNumFree(), free);
}

TEST_F(LinkedAlgorithmTest, LinkedDiscreteParameterDoesNotWrap) {
    LinkedAlgorithm linked({ToggleParam("Left", 4), ToggleParam("Right", 4)});
    linked.FinishCreate();
    linked.UpdateParamRequestState(0, 3.0);
    EXPECT_EQ(linked.OffsetToNextDifferentState(0, 1.0), 0.0);
    linked.GetLinkGroups()->SetGroupState(1, false);
    EXPECT_EQ(linked.OffsetToNextDifferentState(0, 1.0), -3.0);
}

TEST(AlgorithmLinks, PlugInSuppliesItsOwnClassAndLaws) {
    struct Groups : KCLinkGroups {
        using KCLinkGroups::KCLinkGroups;
    };
    struct Own : RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        std::unique_ptr<KCLinkGroups> InstantiateSpecificLinkGroupSelf() override {
            return std::make_unique<Groups>(*this);
        }
        void AddSpecificLinkFuncs(KCLinkGroups& groups) override {
            groups.AddFunctionInMap("Twice", std::make_unique<KCLinkRelativeImpl>(groups));
        }
    } own({LinearParam("Left"), LinearParam("Right")});
    own.FinishCreate();
    EXPECT_NE(dynamic_cast<Groups*>(own.GetLinkGroups()), nullptr);
    EXPECT_NE(own.GetLinkGroups()->FindLaw("Twice"), nullptr);
    EXPECT_EQ(own.GetLinkGroups()->GetParams().data(), own.GetParam(0));
}

} // namespace
