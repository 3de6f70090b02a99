#include <korvolib/control/link_groups.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/mem_obj.h>
#include <korvolib/utilities/xml/xml_element.h>

#include <cstring>
#include <random>

#include <gmock/gmock.h>

#include <tests/support/allocation_count.h>
#include <tests/support/recording_algorithm.h>
#include <tests/support/virtual_slot.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

class Listener : public KCLinkGroups::Listener {
  public:
    std::vector<size_t> moved;
    void OnLinkedParamValueModified(size_t index, double) override { moved.push_back(index); }
};

// Groups over parameters of their own, without an algorithm.
class LinkGroupsTest : public testing::Test {
  protected:
    void AddParams(size_t count) {
        for (size_t i = 0; i < count; ++i)
            params.push_back(LinearParam("Param", 0.0, 1000.0, 0.0));
    }
    void Link(int32_t group, const char* law, const std::vector<size_t>& members) {
        groups.SetGroupInfo(group, 0, 0.0, KCLinkGroups::LawName(law), true, false);
        for (const size_t member : members)
            ASSERT_TRUE(groups.AddMember(group, member));
    }
    void Put(size_t index, double state) {
        params[index].SetState(setup, state);
        params[index].UpdateRealWorldFromState(setup);
        groups.UpdateLastValues(index, -1);
    }
    // As the carrier of a gesture does.
    void Drag(size_t index, double state, bool correct = false) {
        groups.StoreLastValues(index);
        params[index].SetState(setup, state);
        params[index].UpdateRealWorldFromState(setup);
        groups.LinkParams(index, true);
        if (correct)
            groups.CorrectParamModifications(index);
    }
    void Finish() {
        groups.ConnectListener(&listener);
        groups.FinishCreate();
    }
    double State(size_t index) const { return params[index].GetState(setup); }

    std::vector<sCONTROL_PARAM> params;
    EPluginSetup setup = kPluginSetup_A;
    KCLinkGroups groups{params, setup};
    Listener listener;
};

TEST(LinkGroups, OperationsStandInTheirSlots) {
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::InitLinkGroupsInfoMap), 2);
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::InitFunctionsMapSelf), 3);
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::LinkParams), 4);
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::LinkAbsolute), 5);
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::LinkRelative), 6);
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::LinkReverse), 7);
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::LinkReverseOrRelative), 8);
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::ShouldLinkParams), 9);
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::CorrectParamModifications), 10);
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::CorrectParamModificationsSelf), 11);
    EXPECT_EQ(VirtualSlot(&KCLinkGroups::Listener::OnLinkedParamValueModified), 2);
    EXPECT_EQ(VirtualSlot(&KCLinkFuncInterface::AmIAbsolute), 2);
    EXPECT_EQ(VirtualSlot(&KCLinkFuncInterface::LinkFunc), 3);
}

TEST_F(LinkGroupsTest, TableHoldsThreeLaws) {
    EXPECT_NE(dynamic_cast<KCLinkReverseImpl*>(groups.FindLaw("Reverse")), nullptr);
    EXPECT_NE(dynamic_cast<KCLinkAbsoluteImpl*>(groups.FindLaw("Absolute")), nullptr);
    EXPECT_NE(dynamic_cast<KCLinkRelativeImpl*>(groups.FindLaw("Relative")), nullptr);
    EXPECT_EQ(groups.FindLaw("absolute"), nullptr);
    EXPECT_TRUE(groups.FindLaw("Absolute")->AmIAbsolute());
    EXPECT_FALSE(groups.FindLaw("Relative")->AmIAbsolute());
    EXPECT_FALSE(groups.FindLaw("Reverse")->AmIAbsolute());
}

TEST_F(LinkGroupsTest, LawsCanBeAddedButNotReplaced) {
    EXPECT_EQ(groups.AddFunctionInMap("Mine", std::make_unique<KCLinkRelativeImpl>(groups)), 0);
    EXPECT_NE(groups.FindLaw("Mine"), nullptr);
    KCLinkFuncInterface* const reverse = groups.FindLaw("Reverse");
    EXPECT_EQ(groups.AddFunctionInMap("Reverse", std::make_unique<KCLinkRelativeImpl>(groups)), kErr_Generic);
    EXPECT_EQ(groups.FindLaw("Reverse"), reverse);
    EXPECT_EQ(groups.AddFunctionInMap("None", nullptr), kErr_NullArgument);
}

TEST_F(LinkGroupsTest, ALawOfTheTableKnowsItsName) {
    EXPECT_STREQ(groups.GetLawName(groups.FindLaw("Reverse")).c_str(), "Reverse");
    EXPECT_TRUE(groups.GetLawName(nullptr).empty());
    KCLinkRelativeImpl outside(groups);
    EXPECT_TRUE(groups.GetLawName(&outside).empty());
}

TEST_F(LinkGroupsTest, RelativeStopsAtTheTopAndTellsHowFarItWent) {
    AddParams(2);
    Link(1, "Relative", {0, 1});
    Finish();
    Put(0, 400.0);
    Put(1, 980.0);
    Drag(0, 450.0);
    EXPECT_EQ(State(1), 1000.0);
    EXPECT_EQ(params[1].GetRealWorld(setup), 1000.0);
    EXPECT_EQ(groups.GetMinDelta(), 20.0);
    EXPECT_EQ(params[1].GetRefreshMark(), 3);
}

TEST_F(LinkGroupsTest, ReverseStopsAtTheBottom) {
    AddParams(2);
    Link(1, "Reverse", {0, 1});
    Finish();
    Put(0, 100.0);
    Put(1, 50.0);
    Drag(0, 200.0);
    EXPECT_EQ(State(1), 0.0);
    EXPECT_EQ(groups.GetMinDelta(), 50.0);
}

TEST_F(LinkGroupsTest, ToggleDestinationStaysWithinItsStates) {
    AddParams(1);
    params.push_back(ToggleParam("Mode", 2));
    Link(1, "Relative", {0, 1});
    Finish();
    Drag(0, 100.0);
    EXPECT_EQ(State(1), 1.0);
    Drag(0, 0.0);
    EXPECT_EQ(State(1), 0.0);
}

TEST_F(LinkGroupsTest, AbsoluteByStateCopiesTheState) {
    AddParams(1);
    params.push_back(LinearParam("Other", 0.0, 10.0, 0.0));
    Finish();
    Put(0, 250.0);
    groups.LinkAbsolute(0, 1);
    EXPECT_EQ(State(1), 250.0);
    EXPECT_EQ(params[1].GetRealWorld(setup), 2.5);
    EXPECT_EQ(params[1].GetRefreshMark(), 3);
}

TEST_F(LinkGroupsTest, AbsoluteLawCarriesTheValueAsItStands) {
    params.push_back(LinearParam("Fine", 0.0, 10.0, 0.0));
    params.push_back(LinearParam("Coarse", 0.0, 20.0, 1.0));
    Link(1, "Absolute", {0, 1});
    Finish();
    Drag(0, 525.0);
    EXPECT_EQ(params[1].GetRealWorld(setup), 5.25);
    EXPECT_EQ(State(1), 262.5);
}

TEST_F(LinkGroupsTest, AbsoluteLawStopsAtTheEndsOfTheDestination) {
    params.push_back(LinearParam("Wide", -100.0, 100.0, 0.0));
    params.push_back(LinearParam("Narrow", -10.0, 10.0, 0.0));
    Link(1, "Absolute", {0, 1});
    Finish();
    Drag(0, 1000.0);
    EXPECT_EQ(params[1].GetRealWorld(setup), 10.0);
    EXPECT_EQ(State(1), 1000.0);
    Drag(0, 0.0);
    EXPECT_EQ(params[1].GetRealWorld(setup), -10.0);
    EXPECT_EQ(State(1), 0.0);
}

TEST_F(LinkGroupsTest, ShouldLinkComparesTheCurrentValue) {
    AddParams(1);
    Finish();
    Put(0, 500.0);
    EXPECT_FALSE(groups.ShouldLinkParams(KCLinkGroups::kNoSource, 500.0));
    EXPECT_FALSE(groups.ShouldLinkParams(static_cast<size_t>(-1), 0.0));
    EXPECT_TRUE(groups.ShouldLinkParams(0, 500.0));
    EXPECT_FALSE(groups.ShouldLinkParams(0, 500.0000001));
    EXPECT_FALSE(groups.ShouldLinkParams(1, 0.0));
}

TEST_F(LinkGroupsTest, FirstDragLinksFully) {
    AddParams(2);
    Link(1, "Relative", {0, 1});
    params[0].SetState(setup, 300.0);
    params[1].SetState(setup, 100.0);
    Finish();
    Drag(0, 350.0);
    EXPECT_EQ(State(1), 150.0);
    EXPECT_THAT(listener.moved, ElementsAre(1));
}

TEST_F(LinkGroupsTest, NoStaleDistanceIsReplayed) {
    AddParams(2);
    Link(1, "Relative", {0, 1});
    Finish();
    Drag(0, 100.0);
    params[0].SetState(setup, 700.0); // as a host or a preset does: without the links
    Drag(0, 710.0);
    EXPECT_EQ(State(1), 110.0);
}

TEST_F(LinkGroupsTest, PassMovesEachMemberOnce) {
    AddParams(4);
    Link(2, "Reverse", {0, 1, 2});
    Link(1, "Relative", {0, 1, 3});
    Finish();
    for (size_t i = 0; i < 4; ++i)
        Put(i, 500.0);
    Drag(0, 510.0);
    EXPECT_EQ(State(1), 510.0); // by group 1, the lower number
    EXPECT_EQ(State(3), 510.0);
    EXPECT_EQ(State(2), 490.0);
    EXPECT_THAT(listener.moved, ElementsAre(1, 3, 2));
}

TEST_F(LinkGroupsTest, PassDoesNotGoOnThroughItsMembers) {
    AddParams(3);
    Link(1, "Relative", {0, 1});
    Link(2, "Relative", {1, 2});
    Finish();
    Drag(0, 10.0);
    EXPECT_EQ(State(1), 10.0);
    EXPECT_EQ(State(2), 0.0);
}

TEST_F(LinkGroupsTest, ContinuedPassLeavesItsMembersAlone) {
    AddParams(3);
    Link(1, "Relative", {0, 1});
    Link(2, "Relative", {0, 1, 2});
    Finish();
    Drag(0, 10.0);
    listener.moved.clear();
    groups.LinkParams(1, false);
    EXPECT_EQ(State(0), 10.0);
    EXPECT_EQ(State(2), 10.0);
    EXPECT_THAT(listener.moved, IsEmpty());
}

TEST_F(LinkGroupsTest, GroupActsWhenEnabledOrAlwaysActive) {
    AddParams(2);
    Link(1, "Relative", {0, 1});
    Finish();
    EXPECT_TRUE(groups.SetGroupState(1, false));
    Drag(0, 10.0);
    EXPECT_EQ(State(1), 0.0);
    EXPECT_FALSE(groups.IsParamInLinkedMode(0));
    EXPECT_TRUE(groups.SetGroupAlwaysActive(1, true));
    Drag(0, 20.0);
    EXPECT_EQ(State(1), 10.0);
    EXPECT_TRUE(groups.IsParamInLinkedMode(0));
    EXPECT_FALSE(groups.IsLinkGroupEnabled(0, 1));
    EXPECT_FALSE(groups.SetGroupState(9, true));
    EXPECT_FALSE(groups.SetGroupAlwaysActive(9, true));
}

TEST_F(LinkGroupsTest, GroupWithoutALawLinksNothing) {
    AddParams(2);
    EXPECT_EQ(groups.SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName("Sideways"), true, true), kErr_Generic);
    groups.AddMember(1, 0);
    groups.AddMember(1, 1);
    Finish();
    Drag(0, 10.0);
    EXPECT_EQ(State(1), 0.0);
    EXPECT_FALSE(groups.IsParamInLinkedMode(0));
}

TEST_F(LinkGroupsTest, LinkedModeNeedsCompany) {
    AddParams(2);
    Link(1, "Relative", {0});
    Finish();
    EXPECT_FALSE(groups.IsParamInLinkedMode(0));
    EXPECT_FALSE(groups.IsParamInLinkedMode(1));
    EXPECT_FALSE(groups.IsParamInLinkedMode(99));
}

TEST_F(LinkGroupsTest, MembershipIsKeptInTheRecords) {
    AddParams(2);
    Link(7, "Relative", {0, 1});
    Link(3, "Reverse", {1});
    groups.SetGroupInfo(5, 123, 4.5, KCLinkGroups::LawName("Absolute"), false, true);
    Finish();
    EXPECT_THAT(groups.GetParamLinkGroups(1), ElementsAre(3, 7));
    EXPECT_THAT(groups.GetParamControlledLinkGroups(0), ElementsAre(7));
    EXPECT_THAT(groups.GetParamLinkGroups(5), IsEmpty());
    EXPECT_EQ(groups.GetLinkGroupInfo().at(5).word, 123);
    EXPECT_EQ(groups.GetLinkGroupInfo().at(5).number, 4.5);
    EXPECT_TRUE(groups.IsLinkGroupEnabled(0, 7));
    EXPECT_FALSE(groups.IsLinkGroupEnabled(0, 3));
    EXPECT_FALSE(groups.IsEmpty());
    EXPECT_TRUE(groups.SanityCheck());
    EXPECT_FALSE(groups.AddMember(7, 1));
    EXPECT_FALSE(groups.AddMember(7, 2));
    EXPECT_FALSE(groups.AddMember(8, 1));
}

TEST_F(LinkGroupsTest, CorrectionHoldsTheSourceBack) {
    AddParams(3);
    Link(1, "Relative", {0, 1});
    Link(2, "Reverse", {0, 2});
    Finish();
    Put(0, 400.0);
    Put(1, 980.0);
    Put(2, 500.0);
    Drag(0, 450.0, true);
    EXPECT_EQ(State(0), 420.0);
    EXPECT_EQ(State(1), 1000.0);
    EXPECT_EQ(State(2), 480.0);
    EXPECT_THAT(listener.moved, ElementsAre(1, 2, 0, 1, 2));
    EXPECT_EQ(groups.GetLastValues(0)->state[0], 420.0);
}

TEST_F(LinkGroupsTest, CorrectionRecomputesAbsoluteMembersFromTheSource) {
    AddParams(3);
    Link(1, "Relative", {0, 1});
    Link(2, "Absolute", {0, 2});
    Finish();
    Put(0, 400.0);
    Put(1, 980.0);
    Drag(0, 450.0, true);
    EXPECT_EQ(State(2), 420.0);
}

TEST_F(LinkGroupsTest, CorrectionCanBeCancelledForThePass) {
    AddParams(2);
    Link(1, "Relative", {0, 1});
    Finish();
    Put(1, 980.0);
    Drag(0, 50.0);
    groups.CancelParamCorrection();
    groups.CorrectParamModifications(0);
    EXPECT_EQ(State(0), 50.0);
    Drag(0, 60.0, true); // the next pass is corrected again
    EXPECT_EQ(State(0), 50.0);
}

TEST_F(LinkGroupsTest, CorrectionWithoutABoundMetDoesNothing) {
    AddParams(2);
    Link(1, "Relative", {0, 1});
    Finish();
    Put(0, 0.1);
    Drag(0, 0.1 + 0.2, true);
    EXPECT_EQ(State(0), 0.1 + 0.2);
    EXPECT_THAT(listener.moved, ElementsAre(1));
    groups.CorrectParamModifications(1); // not this pass's source
    EXPECT_THAT(listener.moved, ElementsAre(1));
}

TEST_F(LinkGroupsTest, LastValuesAreKeptPerSetup) {
    AddParams(2);
    Link(1, "Relative", {0, 1});
    Finish();
    Put(0, 300.0);
    EXPECT_EQ(groups.GetLastValues(0)->state[1], 0.0);
    groups.UpdateLastValues(0, 2);
    groups.UpdateLastValues(0, -2);
    EXPECT_EQ(groups.GetLastValues(0)->state[0], 300.0);
    groups.CopyLastValuesToOtherSetup();
    EXPECT_EQ(groups.GetLastValues(0)->state[1], 300.0);
    EXPECT_EQ(groups.GetLastValues(0)->realWorld[1], 300.0);
    EXPECT_EQ(groups.GetLastValues(2), nullptr);
}

TEST_F(LinkGroupsTest, SetupsLinkIndependently) {
    AddParams(2);
    Link(1, "Relative", {0, 1});
    Finish();
    Drag(0, 100.0);
    setup = kPluginSetup_B;
    Drag(0, 30.0);
    EXPECT_EQ(params[1].GetState(kPluginSetup_A), 100.0);
    EXPECT_EQ(params[1].GetState(kPluginSetup_B), 30.0);
}

TEST_F(LinkGroupsTest, UpdatedMapTellsWhoMovedInThisPass) {
    AddParams(3);
    Link(1, "Relative", {0, 1});
    Link(2, "Relative", {1, 2});
    Finish();
    Drag(0, 10.0);
    EXPECT_THAT(groups.GetWhichParamWasUpdated(), ElementsAre(true, true, false));
    Drag(2, 10.0);
    EXPECT_THAT(groups.GetWhichParamWasUpdated(), ElementsAre(false, true, true));
    groups.ResetParamUpdatedMap();
    EXPECT_THAT(groups.GetWhichParamWasUpdated(), ElementsAre(false, false, false));
}

TEST_F(LinkGroupsTest, ResetRestoresTheResetStateAndCountsAsMoved) {
    AddParams(2);
    params[1].SetResetState(250.0);
    Link(1, "Relative", {0, 1});
    Finish();
    Put(1, 900.0);
    groups.ResetLinkedParam(1);
    EXPECT_EQ(State(1), 250.0);
    EXPECT_EQ(params[1].GetRealWorld(setup), 250.0);
    EXPECT_TRUE(params[1].IsLinkedInThisPass());
    Drag(0, 10.0); // a new pass moves it again
    EXPECT_EQ(State(1), 260.0);
    groups.ResetLinkedParam(99);
}

TEST_F(LinkGroupsTest, EqualisingTakesTheFirstMembersValue) {
    AddParams(4);
    Link(1, "Absolute", {1, 2});
    Link(2, "Relative", {0, 3});
    Finish();
    Put(1, 700.0);
    groups.EqualizeAllAbsoluteControls();
    EXPECT_EQ(State(2), 700.0);
    EXPECT_EQ(State(3), 0.0);
    EXPECT_THAT(listener.moved, ElementsAre(2));
}

TEST_F(LinkGroupsTest, UnknownIndexesAreHarmless) {
    AddParams(1);
    groups.LinkParams(KCLinkGroups::kNoSource, true);
    groups.LinkRelative(0, 5);
    groups.LinkReverse(5, 0);
    groups.LinkAbsolute(5, 5);
    groups.FindLaw("Absolute")->LinkFunc(0, 5);
    groups.CorrectParamModifications(5);
    groups.StoreLastValues(5);
    groups.ResetMinDelta(5);
    groups.UpdateLastValues(5, 0);
    groups.SetMinDelta(3.0);
    EXPECT_EQ(groups.GetMinDelta(), 3.0);
    EXPECT_TRUE(groups.IsEmpty());
    std::vector<sDESCRIPTION_PROBLEM> problems;
    groups.AdjustLinkGroupsToCurrentGuiControls({}, problems);
    EXPECT_TRUE(groups.IsEmpty());
}

TEST_F(LinkGroupsTest, ThrowingListenerEndsThePassCleanly) {
    struct Throwing : KCLinkGroups::Listener {
        void OnLinkedParamValueModified(size_t, double) override { throw 1; }
    } throwing;
    AddParams(2);
    Link(1, "Relative", {0, 1});
    groups.ConnectListener(&throwing);
    groups.FinishCreate();
    EXPECT_THROW(Drag(0, 10.0), int);
    groups.ConnectListener(&listener);
    Drag(0, 20.0);
    EXPECT_EQ(State(1), 20.0);
}

TEST_F(LinkGroupsTest, RandomGroupsNeverFeedBack) {
    std::mt19937 random(7);
    const auto pick = [&](size_t below) { return std::uniform_int_distribution<size_t>(0, below - 1)(random); };
    const char* const laws[] = {"Relative", "Reverse", "Absolute"};
    AddParams(20);
    for (int32_t group = 0; group < 15; ++group) {
        groups.SetGroupInfo(group, 0, 0.0, KCLinkGroups::LawName(laws[pick(3)]), pick(4) != 0, false);
        for (int i = 0; i < 6; ++i)
            groups.AddMember(group, pick(20));
    }
    Finish();
    for (int gesture = 0; gesture < 1000; ++gesture) {
        listener.moved.clear();
        const size_t source = pick(20);
        Drag(source, static_cast<double>(pick(1001)));
        std::ranges::sort(listener.moved);
        EXPECT_EQ(std::ranges::adjacent_find(listener.moved), listener.moved.end());
        EXPECT_EQ(std::ranges::count(listener.moved, source), 0);
        for (const sCONTROL_PARAM& param : params)
            ASSERT_TRUE(param.GetState(setup) >= 0.0 && param.GetState(setup) <= 1000.0);
    }
}

TEST_F(LinkGroupsTest, RelativeKeepsDifferencesAndReverseKeepsSums) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> inner(300.0, 700.0);
    AddParams(4);
    Link(1, "Relative", {0, 1});
    Link(2, "Reverse", {2, 3});
    Finish();
    Put(0, 400.0);
    Put(1, 500.0);
    Put(2, 450.0);
    Put(3, 550.0);
    for (int i = 0; i < 1000; ++i) {
        Drag(i % 2 == 0 ? 0 : 2, inner(random));
        EXPECT_NEAR(State(1) - State(0), 100.0, 1e-9);
        EXPECT_NEAR(State(2) + State(3), 1000.0, 1e-9);
    }
}

TEST_F(LinkGroupsTest, CorrectionKeepsDistancesAtTheBoundsToo) {
    std::mt19937 random(13);
    std::uniform_real_distribution<double> anywhere(0.0, 1000.0);
    AddParams(4);
    Link(1, "Relative", {0, 1});
    Link(2, "Reverse", {2, 3});
    Finish();
    Put(1, 150.0);
    Put(2, 200.0);
    Put(3, 300.0);
    for (int i = 0; i < 1000; ++i) {
        Drag(static_cast<size_t>(i % 4), anywhere(random), true);
        ASSERT_NEAR(State(1) - State(0), 150.0, 1e-9);
        ASSERT_NEAR(State(2) + State(3), 500.0, 1e-9);
    }
}

TEST_F(LinkGroupsTest, NothingAllocatesAfterCreation) {
    AddParams(64);
    std::vector<size_t> all(64);
    for (size_t i = 0; i < 64; ++i)
        all[i] = i;
    Link(1, "Relative", all);
    groups.FinishCreate();
    const AllocationCount count;
    for (int i = 0; i < 50; ++i)
        Drag(static_cast<size_t>(i), 20.0 * i, true);
    EXPECT_EQ(count.Taken(), 0u);
}

// ---- Descriptions ---------------------------------------------------------------------------------------------

class LinkDescriptionTest : public LinkGroupsTest {
  protected:
    LinkDescriptionTest() {
        for (const char* name : {"Left", "Right", "Other"})
            params.push_back(LinearParam(name));
    }
    std::vector<std::string> Read(const char* xml) {
        KCXMLElement element;
        EXPECT_EQ(element.Parse(xml, std::strlen(xml)), 0);
        std::vector<sDESCRIPTION_PROBLEM> problems;
        groups.ReadFromXML(element, problems);
        std::vector<std::string> texts;
        for (const sDESCRIPTION_PROBLEM& problem : problems)
            texts.push_back(std::to_string(problem.Line) + ": " + problem.Text.c_str());
        return texts;
    }
};

TEST_F(LinkDescriptionTest, GroupIsReadWhole) {
    EXPECT_THAT(Read("<LinkGroups><LinkGroup Number='4' Law='Reverse' Enabled='false' AlwaysActive='true'>"
                     "<Member Name='Right'/><Member Name='Left'/></LinkGroup></LinkGroups>"),
                IsEmpty());
    const sLINK_GROUP_INFO& info = groups.GetLinkGroupInfo().at(4);
    EXPECT_FALSE(info.isEnabled);
    EXPECT_TRUE(info.isAlwaysActive);
    EXPECT_EQ(info.law, groups.FindLaw("Reverse"));
    EXPECT_THAT(info.members, ElementsAre(0, 1));
}

TEST_F(LinkDescriptionTest, WhatHasNoMeaningIsReportedWithItsLine) {
    EXPECT_THAT(
        Read("<LinkGroups>\n"
             "<LinkGroup Number='1' Law='Sideways'><Member Name='Left'/><Member Name='Right'/></LinkGroup>\n"
             "<LinkGroup Number='2' Law='Relative'>\n<Member Name='Left'/>\n<Member Name='Left'/>\n"
             "<Member Name='Nobody'/></LinkGroup>\n"
             "<LinkGroup Law='Relative'/>\n"
             "<LinkGroup Number='1' Law='Relative' />\n"
             "<LinkGroup Number='3' Law='Relative' Enabled='perhaps'>"
             "<Member Name='Left'/><Member Name='Right'/></LinkGroup>\n"
             "<Group/></LinkGroups>"),
        ElementsAre("2: no link law is named \"Sideways\": the group links nothing",
                    "5: link group member: listed twice: \"Left\"",
                    "6: link group member: no parameter is named \"Nobody\"",
                    "3: a link group needs two members to link anything",
                    "7: a link group needs a whole number, not \"\"",
                    "8: a link group of this number is there already: \"1\"",
                    "9: a link group's flag is true or false, not \"perhaps\"",
                    "10: expected a LinkGroup, found \"Group\""));
    Finish();
    Drag(0, 10.0);
    EXPECT_EQ(State(1), 10.0); // group 3 works all the same
}

TEST_F(LinkDescriptionTest, WrittenGroupsReadBackTheSame) {
    Link(1, "Relative", {0, 1});
    Link(2, "Absolute", {1, 2});
    groups.SetGroupState(2, false);
    KCXMLElement element;
    ASSERT_EQ(element.SetName("LinkGroups"), 0);
    ASSERT_EQ(groups.WriteToXML(element), 0);
    KCLinkGroups again(params, setup);
    std::vector<sDESCRIPTION_PROBLEM> problems;
    again.ReadFromXML(element, problems);
    EXPECT_TRUE(problems.empty());
    KCXMLElement second;
    ASSERT_EQ(second.SetName("LinkGroups"), 0);
    ASSERT_EQ(again.WriteToXML(second), 0);
    EXPECT_TRUE(element == second);
}

} // namespace
