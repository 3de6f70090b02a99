// What laws, hooks and listeners may do to the groups while a pass runs.
#include <korvolib/control/link_groups.h>

#include <climits>
#include <functional>

#include <gmock/gmock.h>

#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;

class CallingLaw : public KCLinkFuncInterface {
  public:
    CallingLaw(KCLinkGroups& groups, std::function<void(size_t, size_t)> call)
        : KCLinkFuncInterface(groups), m_call(std::move(call)) {}
    void LinkFunc(size_t source, size_t destination) override {
        Groups().LinkRelative(source, destination);
        m_call(source, destination);
    }

  private:
    std::function<void(size_t, size_t)> m_call;
};

class ReentryTest : public testing::Test, public KCLinkGroups::Listener {
  protected:
    ReentryTest() {
        for (size_t i = 0; i < 6; ++i)
            params.push_back(LinearParam("Param", 0.0, 1000.0, 0.0));
        groups.ConnectListener(this);
        groups.FinishCreate();
    }
    void OnLinkedParamValueModified(size_t index, double) override {
        told.push_back(index);
        if (onTold)
            onTold(index);
    }
    void Calls(std::function<void(size_t, size_t)> call) {
        groups.AddFunctionInMap("Calling", std::make_unique<CallingLaw>(groups, std::move(call)));
    }
    void Link(int32_t group, const char* law, const std::vector<size_t>& members) {
        groups.SetGroupInfo(group, 0, 0.0, KCLinkGroups::LawName(law), true, false);
        for (const size_t member : members)
            groups.AddMember(group, member);
    }
    void Drag(size_t index, double state) {
        groups.StoreLastValues(index);
        params[index].UpdateState(setup, state);
        groups.LinkParams(index, true);
        groups.CorrectParamModifications(index);
    }
    double State(size_t index) const { return params[index].GetState(setup); }

    std::vector<sCONTROL_PARAM> params;
    EPluginSetup setup = kPluginSetup_A;
    KCLinkGroups groups{params, setup};
    std::vector<size_t> told;
    std::function<void(size_t)> onTold;
};

TEST_F(ReentryTest, LawThatLinksGoesOnWithItsPass) {
    Calls([&](size_t, size_t destination) { groups.LinkParams(destination, true); });
    Link(1, "Calling", {0, 1, 2});
    Drag(0, 100.0);
    EXPECT_EQ(State(0), 100.0);
    EXPECT_EQ(State(1), 100.0);
    EXPECT_THAT(told, testing::UnorderedElementsAre(1, 2));
}

TEST_F(ReentryTest, LawMayTakeTheLawOfItsGroup) {
    Calls([&](size_t, size_t) { groups.SetGroupInfo(1, 0, 0.0, nullptr, true, false); });
    Link(1, "Calling", {0, 1, 2});
    Drag(0, 100.0);
    EXPECT_EQ(State(1), 100.0);
    EXPECT_EQ(State(2), 0.0);
}

TEST_F(ReentryTest, LawMayAddMembersAndGroups) {
    Calls([&](size_t, size_t) {
        for (const size_t member : {2u, 3u, 4u, 5u})
            groups.AddMember(1, member);
        Link(2, "Relative", {0, 5});
    });
    Link(1, "Calling", {0, 1});
    Drag(0, 100.0);
    EXPECT_EQ(State(1), 100.0);
    EXPECT_EQ(State(5), 100.0);
    EXPECT_TRUE(groups.SanityCheck());
}

TEST_F(ReentryTest, ListenerMayChangeGroupsWhileTheyAreEqualised) {
    Link(1, "Absolute", {0, 1, 2});
    params[0].UpdateState(setup, 100.0);
    onTold = [&](size_t) {
        groups.AddMember(1, 3);
        groups.AddMember(1, 4);
        groups.SetGroupInfo(1, 0, 0.0, nullptr, true, false);
    };
    groups.EqualizeAllAbsoluteControls();
    EXPECT_EQ(State(1), 100.0);
    EXPECT_EQ(State(2), 0.0);
}

TEST_F(ReentryTest, GestureInsideAPassIsNoBoundForIt) {
    Link(1, "Relative", {0, 1});
    Link(2, "Relative", {2, 3});
    onTold = [&](size_t index) {
        if (index == 1 && State(2) == 0.0)
            Drag(2, 5.0);
    };
    Drag(0, 100.0);
    EXPECT_EQ(State(0), 100.0);
    EXPECT_EQ(State(1), 100.0);
    EXPECT_EQ(State(3), 5.0);
}

TEST_F(ReentryTest, OnlyMembersOfTheSourceAreBroughtBack) {
    Link(1, "Relative", {0, 1});
    Link(2, "Relative", {2, 3});
    params[1].UpdateState(setup, 980.0);
    onTold = [&](size_t index) {
        if (index == 1 && State(2) == 0.0)
            Drag(2, 5.0);
    };
    Drag(0, 100.0);
    EXPECT_EQ(State(0), 20.0);
    EXPECT_EQ(State(1), 1000.0);
    EXPECT_EQ(State(3), 5.0);
}

TEST_F(ReentryTest, PassIsNotCorrectedInTheOtherSetup) {
    Link(1, "Relative", {0, 1});
    params[1].UpdateState(setup, 980.0);
    params[0].UpdateState(kPluginSetup_B, 500.0);
    onTold = [&](size_t) { setup = kPluginSetup_B; };
    Drag(0, 100.0);
    EXPECT_EQ(params[0].GetState(kPluginSetup_B), 500.0);
    EXPECT_EQ(params[1].GetState(kPluginSetup_B), 0.0);
}

TEST_F(ReentryTest, ParametersMayComeAfterTheFirstCall) {
    params.push_back(LinearParam("Late", 0.0, 1000.0, 0.0));
    Link(1, "Relative", {0, 6});
    Drag(6, 100.0);
    EXPECT_EQ(State(0), 100.0);
}

TEST_F(ReentryTest, LastValuesAreThoseOfTheState) {
    params[0].SetState(setup, 250.0);
    groups.UpdateLastValues(0, 7);
    EXPECT_EQ(params[0].GetRealWorld(setup), 0.0);
    groups.UpdateLastValues(0, -1);
    EXPECT_EQ(params[0].GetRealWorld(setup), 250.0);
    EXPECT_EQ(groups.GetLastValues(0)->realWorld[0], 250.0);
}

TEST_F(ReentryTest, LastValuesKeepAValueThatTheScaleWouldRound) {
    params[0].SetScaleLin(0.0, 10.0, 1.0);
    params[0].SetRealWorld(setup, 2.5);
    params[0].UpdateStateFromRealWorld(setup);
    groups.UpdateLastValues(0, -1);
    EXPECT_EQ(groups.GetLastValues(0)->realWorld[0], 2.5);
}

TEST_F(ReentryTest, NumberOfStatesMayBeAnything) {
    params[1].SetScaleToggle(2);
    params[1].SetNumStates(INT_MIN);
    Link(1, "Relative", {0, 1});
    Link(2, "Absolute", {2, 1});
    Drag(0, 100.0);
    Drag(2, 100.0);
    EXPECT_EQ(State(1), 0.0);
}

class LinkedPair : public RecordingAlgorithm {
  public:
    LinkedPair() : RecordingAlgorithm({LinearParam("Left"), LinearParam("Right")}) {
        FinishCreate();
        GetLinkGroups()->SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName("Relative"), true, false);
        GetLinkGroups()->AddMember(1, 0);
        GetLinkGroups()->AddMember(1, 1);
    }
};

TEST(LinkReentry, HookThatUpdatesTheWholeAlgorithmKeepsTheDistance) {
    LinkedPair algorithm;
    algorithm.onApply = [&](size_t index) {
        if (index == 0)
            algorithm.UpdateAlg();
    };
    algorithm.UpdateParamByGesture(0, 250.0);
    EXPECT_EQ(algorithm.GetParamState(1), 250.0);
}

TEST(LinkReentry, HookThatSwitchesSetupsEndsTheGesture) {
    LinkedPair algorithm;
    algorithm.UpdateParamRequestState(0, 600.0);
    algorithm.onApply = [&](size_t) {
        algorithm.onApply = nullptr;
        algorithm.SetActiveSetup(kPluginSetup_B);
    };
    algorithm.UpdateParamByGesture(0, 700.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetState(kPluginSetup_A), 700.0);
    for (size_t index = 0; index < 2; ++index)
        EXPECT_EQ(algorithm.GetParam(index)->GetState(kPluginSetup_B), 0.0);
}

TEST(LinkReentry, ThrowingMemberLosesNoBlock) {
    LinkedPair algorithm;
    algorithm.givesBlocks = true;
    algorithm.onApply = [](size_t index) {
        if (index == 1)
            throw 1;
    };
    EXPECT_THROW(algorithm.UpdateParamByGesture(0, 250.0), int);
    const KCProcessMemoryPool& pool = algorithm.GetProcessMemoryPool();
    EXPECT_EQ(pool.GetNumFree(), pool.GetSize().numBlocks);
    algorithm.onApply = nullptr;
    algorithm.givesBlocks = false;
    algorithm.UpdateParamByGesture(0, 300.0);
    EXPECT_EQ(algorithm.GetParamState(1), 300.0);
}

} // namespace
