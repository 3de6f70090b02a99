#include <gtest/gtest.h>

#include <cmath>

#include <korvolib/control/link_groups.h>
#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/graph_extractor.h>
#include <korvolib/graphicstream/struct_writers.h>
#include <korvolib/gui/gui_test_internal.h>
#include <tests/support/allocation_count.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

const KCRegisterInfo kDragged(kRegister_DragVertical);

class BaseControlTest : public testing::Test {
  protected:
    BaseControlTest() : algorithm(Params()) {
        algorithm.FinishCreate();
        algorithm.TakeLog();
    }
    // Three of their own, then an array of two.
    static std::vector<sCONTROL_PARAM> Params() {
        std::vector<sCONTROL_PARAM> params = ThreeParams();
        params.push_back(LinearParam("Band 1"));
        params.push_back(LinearParam("Band 2"));
        return params;
    }
    size_t NumObservers(size_t index) { return algorithm.GetParam(index)->GetObservers().size(); }
    static KCParamRegistrationData OfArray(const char* name) {
        KCParamRegistrationData record;
        record.SetParamArrayName(KCFixedString<127>(name));
        return record;
    }

    RecordingAlgorithm algorithm;
    PlainControl control;
};

// Name and flags --------------------------------------------------------------------------------------------------

TEST_F(BaseControlTest, NameIsCutToALength) {
    control.SetName(KCFixedString<31>("Input Gain"));
    EXPECT_STREQ(control.GetNamePtr(), "Input Gain");
    KCFixedString<31> out("old");
    control.GetControlNameOfLength(out, 5);
    EXPECT_EQ(out, "Input");
    control.GetControlNameOfLength(out, SIZE_MAX);
    EXPECT_EQ(out, "Input Gain");
    control.GetControlNameOfLength(out, 0);
    EXPECT_TRUE(out.empty());
    KCFixedString<3> narrow;
    control.GetControlNameOfLength(narrow, 5);
    EXPECT_EQ(narrow, "Inp");
}

TEST_F(BaseControlTest, FlagsAreOneEach) {
    for (int32_t i = 0; i < kNumControlFlags; ++i) {
        PlainControl fresh;
        fresh.SetControlFlag(static_cast<EControlFlags>(i), true);
        for (int32_t other = 0; other < kNumControlFlags; ++other)
            EXPECT_EQ(fresh.GetControlFlag(static_cast<EControlFlags>(other)), other == i);
    }
}

TEST_F(BaseControlTest, FlagThatDoesNotExistIsNeverSet) {
    for (const int32_t number : {-1, int32_t{kNumControlFlags}, INT32_MAX, INT32_MIN}) {
        control.SetControlFlag(static_cast<EControlFlags>(number), true);
        EXPECT_FALSE(control.GetControlFlag(static_cast<EControlFlags>(number)));
        EXPECT_STREQ(ControlFlagName(static_cast<EControlFlags>(number)), "");
    }
}

TEST_F(BaseControlTest, NeedToResetIsAFlag) {
    control.SetNeedToResetParams(true);
    EXPECT_TRUE(control.NeedToResetParam());
    EXPECT_TRUE(control.GetControlFlag(kControl_NeedToResetParams));
}

TEST_F(BaseControlTest, WhatDoesNothingHereSucceeds) {
    EXPECT_EQ(control.FinishCreate(), kErr_NoErr);
    EXPECT_EQ(control.FinishCreateSelf(), kErr_NoErr);
    control.UpdateDisabledMode();
    control.OnLRBChange();
}

// Registrations ---------------------------------------------------------------------------------------------------

TEST_F(BaseControlTest, FirstRegistrationLeads) {
    EXPECT_EQ(control.GetLeadParamIndex(), kNoParam);
    EXPECT_FALSE(control.GetControlFlag(kControl_HasLead));
    EXPECT_EQ(control.Register(&algorithm, 2, kDragged), kErr_NoErr);
    EXPECT_EQ(control.Register(&algorithm, 0, kDragged), kErr_NoErr);
    EXPECT_EQ(control.GetLeadParamIndex(), 2u);
    EXPECT_EQ(control.GetLeadParamID(), 2u);
    EXPECT_TRUE(control.GetControlFlag(kControl_HasLead));
    EXPECT_EQ(control.GetAlgorithm(), &algorithm);
    EXPECT_EQ(control.GetParamData(1)->GetParamIndex(), 0u);
    EXPECT_EQ(control.GetParamData(2), nullptr);
}

TEST_F(BaseControlTest, RegisteringWhatIsNotThereChangesNothing) {
    EXPECT_EQ(control.Register(nullptr, 0, kDragged), kErr_NullArgument);
    EXPECT_EQ(control.Register(&algorithm, 5, kDragged), kErr_Generic);
    EXPECT_EQ(control.Register(&algorithm, kNoParam, kDragged), kErr_Generic);
    EXPECT_EQ(control.Register(KCParamRegistrationData()), kErr_NullArgument);
    EXPECT_TRUE(control.GetParamDataVec().empty());
    RecordingAlgorithm other(ThreeParams());
    EXPECT_EQ(control.Register(&algorithm, 0, kDragged), kErr_NoErr);
    EXPECT_EQ(control.Register(&other, 0, kDragged), kErr_Generic);
    EXPECT_EQ(other.GetParam(0)->GetObservers().size(), 0u);
    EXPECT_EQ(control.GetParamDataVec().size(), 1u);
}

TEST_F(BaseControlTest, ObservesAParameterOnce) {
    control.Register(&algorithm, 0, kDragged);
    control.Register(&algorithm, 0, KCRegisterInfo(kRegister_Wheel));
    EXPECT_EQ(NumObservers(0), 1u);
    EXPECT_TRUE(algorithm.GetParam(0)->GetControllers().empty());
    control.UnRegister(0);
    EXPECT_EQ(NumObservers(0), 1u);
    control.UnRegister(0);
    EXPECT_EQ(NumObservers(0), 0u);
    EXPECT_EQ(control.UnRegister(0), kErr_Generic);
}

TEST_F(BaseControlTest, AutomationControlStandsAmongTheControllers) {
    PlainControl automation(KEControlBinding::Controller);
    automation.Register(&algorithm, 0, KCRegisterInfo(kRegister_Controller));
    EXPECT_EQ(NumObservers(0), 0u);
    ASSERT_EQ(algorithm.GetParam(0)->GetControllers().size(), 1u);
    const auto* binding = static_cast<KCControlBinding*>(algorithm.GetParam(0)->GetControllers()[0]);
    EXPECT_EQ(&binding->GetControl(), &automation);
    EXPECT_EQ(binding->GetKind(), KEControlBinding::Controller);
    automation.UnRegisterAll();
    EXPECT_TRUE(algorithm.GetParam(0)->GetControllers().empty());
}

TEST_F(BaseControlTest, IsForgottenWhenItGoes) {
    {
        PlainControl brief;
        brief.Register(&algorithm, 0, kDragged);
        brief.Register(&algorithm, 1, kDragged);
        EXPECT_EQ(NumObservers(0) + NumObservers(1), 2u);
    }
    EXPECT_EQ(NumObservers(0) + NumObservers(1), 0u);
    algorithm.UpdateParamState(0, 500.0, false);
}

TEST_F(BaseControlTest, CopyIsBoundForItself) {
    control.SetName(KCFixedString<31>("Knob"));
    control.SetControlFlag(kControl_Cyclic, true);
    control.Register(&algorithm, 0, kDragged);
    control.GetParamData(0)->Touch();
    {
        const std::unique_ptr<KCBaseControl> copy = control.Clone();
        EXPECT_EQ(NumObservers(0), 2u);
        EXPECT_STREQ(copy->GetNamePtr(), "Knob");
        EXPECT_TRUE(copy->GetControlFlag(kControl_Cyclic));
        algorithm.UpdateParamState(0, 500.0, false);
        EXPECT_EQ(copy->GetParamData(0)->GetValue(), 500.0);
        EXPECT_TRUE(copy->GetParamData(0)->ShouldSendTouch()); // the original holds
    }
    EXPECT_EQ(NumObservers(0), 1u);
    control.GetParamData(0)->Release();
    EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"touch 0", "apply 0", "modified A", "release 0"}));
}

TEST_F(BaseControlTest, UnregisteringReleases) {
    for (int round = 0; round < 3; ++round) {
        control.Register(&algorithm, 0, kDragged);
        control.Register(&algorithm, 1, kDragged);
        control.GetParamData(0)->Touch();
        if (round == 0)
            control.UnRegister(0);
        else if (round == 1)
            control.UnRegisterParam(0);
        else
            control.UnRegisterAll();
        EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"touch 0", "release 0"})) << round;
        control.UnRegisterAll();
    }
}

TEST_F(BaseControlTest, ErasingARecordKeepsTheHoldsOfOthers) {
    control.Register(&algorithm, 0, kDragged);
    control.Register(&algorithm, 1, kDragged);
    control.GetParamData(1)->Touch();
    control.UnRegister(0);
    EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"touch 1"}));
    EXPECT_FALSE(control.GetParamData(0)->ShouldSendTouch());
}

TEST_F(BaseControlTest, UnregistersAllOfAParameter) {
    for (const size_t index : {0u, 1u, 0u})
        control.Register(&algorithm, index, kDragged);
    EXPECT_EQ(control.UnRegisterParam(0), kErr_NoErr);
    EXPECT_EQ(control.GetParamDataVec().size(), 1u);
    EXPECT_EQ(control.UnRegisterParam(0), kErr_Generic);
    EXPECT_EQ(control.GetLeadParamIndex(), 1u);
}

TEST_F(BaseControlTest, LeadStaysWithItsRecord) {
    for (const size_t index : {0u, 1u, 2u})
        control.Register(&algorithm, index, kDragged);
    control.SetLeadPosition(2);
    control.UnRegister(0);
    EXPECT_EQ(control.GetLeadParamIndex(), 2u);
    control.UnRegister(1); // the lead itself
    EXPECT_EQ(control.GetLeadParamIndex(), kNoParam);
    EXPECT_FALSE(control.GetControlFlag(kControl_HasLead));
}

TEST_F(BaseControlTest, ChangesTheInfoOfTheFirstOfAParameter) {
    control.Register(&algorithm, 0, kDragged);
    control.Register(&algorithm, 0, kDragged);
    EXPECT_EQ(control.ChgRegister(0, KCRegisterInfo(kRegister_Wheel)), kErr_NoErr);
    EXPECT_EQ(control.GetParamData(0)->GetRegisterInfo(), KCRegisterInfo(kRegister_Wheel));
    EXPECT_EQ(control.GetParamData(1)->GetRegisterInfo(), kDragged);
    EXPECT_EQ(control.ChgRegister(1, KCRegisterInfo()), kErr_Generic);
}

// Arrays and offsets
// ------------------------------------------------------------------------------------------------

TEST_F(BaseControlTest, ArrayRecordIsBoundToAnElement) {
    control.Register(&algorithm, 0, kDragged);
    EXPECT_EQ(control.RegisterFromParamArrayRegData(0), kErr_Generic); // there is no array
    EXPECT_EQ(control.AddParamArrayRegData(OfArray("Band")), kErr_NoErr);
    EXPECT_EQ(control.RegisterFromParamArrayRegData(1), kErr_NoErr);
    EXPECT_EQ(control.GetParamData(1)->GetParamIndex(), 4u);
    EXPECT_EQ(control.GetParamData(0)->GetParamIndex(), 0u);
    EXPECT_EQ(NumObservers(4), 1u);
    EXPECT_EQ(control.RegisterFromParamArrayRegData(0), kErr_NoErr);
    EXPECT_EQ(control.GetParamData(1)->GetParamIndex(), 3u);
    EXPECT_EQ(NumObservers(4), 0u);
}

TEST_F(BaseControlTest, ElementThatIsNotThereChangesNothing) {
    EXPECT_EQ(control.AddParamArrayRegData(KCParamRegistrationData()), kErr_Generic);
    EXPECT_EQ(control.AddParamArrayRegData(OfArray("Band")), kErr_NoErr);
    EXPECT_EQ(control.RegisterFromParamArrayRegData(0), kErr_NullArgument); // no algorithm yet
    control.Register(&algorithm, 0, kDragged);
    EXPECT_EQ(control.RegisterFromParamArrayRegData(1), kErr_NoErr);
    EXPECT_EQ(control.RegisterFromParamArrayRegData(2), kErr_Generic);
    EXPECT_EQ(control.RegisterFromParamArrayRegData(SIZE_MAX), kErr_Generic);
    EXPECT_EQ(control.GetParamData(0)->GetParamIndex(), 4u);
    EXPECT_EQ(NumObservers(4), 1u);
}

TEST_F(BaseControlTest, OffsetMovesAllOrNone) {
    control.Register(&algorithm, 1, kDragged);
    control.Register(&algorithm, 2, kDragged);
    EXPECT_EQ(control.OffsetParamIter(2), kErr_NoErr);
    EXPECT_EQ(control.GetParamData(0)->GetParamIndex(), 3u);
    EXPECT_EQ(NumObservers(3) + NumObservers(4), 2u);
    EXPECT_EQ(NumObservers(1) + NumObservers(2), 0u);
    for (const ptrdiff_t offset : {ptrdiff_t{1}, ptrdiff_t{-4}, PTRDIFF_MAX, PTRDIFF_MIN})
        EXPECT_EQ(control.OffsetParamIter(offset), kErr_Generic);
    EXPECT_EQ(control.GetParamData(1)->GetParamIndex(), 4u);
    EXPECT_EQ(control.OffsetParamIter(-3), kErr_NoErr);
    EXPECT_EQ(control.GetParamData(0)->GetParamIndex(), 0u);
}

// Following -------------------------------------------------------------------------------------------------------

TEST_F(BaseControlTest, FollowsWhoeverMovesTheParameter) {
    control.Register(&algorithm, 0, kDragged);
    algorithm.UpdateParamState(0, 300.0, false);
    EXPECT_EQ(control.GetParamData(0)->GetValue(), 300.0);
    EXPECT_EQ(control.lastHeard, 0u);
    EXPECT_EQ(control.numHeard, 1u);
    algorithm.UpdateParamState(1, 3.0, false); // not its own
    EXPECT_EQ(control.numHeard, 1u);
}

TEST_F(BaseControlTest, KeepsTheUnquantizedValueOfItsOwnMove) {
    control.Register(&algorithm, 1, kDragged);
    control.Register(&algorithm, 1, KCRegisterInfo(kRegister_Wheel));
    control.GetParamData(0)->OffsetParamValue(1.75, kRegister_DragVertical);
    EXPECT_EQ(control.GetParamData(0)->GetValue(), 1.75);
    EXPECT_EQ(control.GetParamData(1)->GetValue(), 2.0); // the other follows the parameter
}

TEST_F(BaseControlTest, FollowsRestoredValues) {
    control.Register(&algorithm, 0, kDragged);
    sPARAM_VALUES values;
    values.state[0] = 250.0;
    values.realWorld[0] = 2.5;
    algorithm.RestoreParams(nullptr, &values, 1, kPluginSetup_A);
    EXPECT_EQ(control.GetParamData(0)->GetValue(), 250.0);
    algorithm.SetActiveSetup(kPluginSetup_B);
    EXPECT_EQ(control.GetParamData(0)->GetValue(), 0.0);
}

TEST_F(BaseControlTest, HearingTakesNothingFromTheHeap) {
    control.Register(&algorithm, 0, kDragged);
    algorithm.UpdateParamState(0, 1.0, false);
    algorithm.log.clear();
    const AllocationCount count;
    algorithm.UpdateParamState(0, 2.0, false);
    EXPECT_EQ(count.Taken(), 0u);
}

// Links -----------------------------------------------------------------------------------------------------------

TEST_F(BaseControlTest, FollowsALinkThatHeldTheParameterBack) {
    KCLinkGroups& groups = *algorithm.GetLinkGroups();
    groups.SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName("Relative"), true, false);
    groups.AddMember(1, 0);
    groups.AddMember(1, 3);
    algorithm.UpdateParamState(3, 900.0, false);
    groups.InitLastValuesMap();
    control.Register(&algorithm, 0, kDragged);
    control.Register(&algorithm, 3, kDragged);
    control.GetParamData(0)->OffsetParamValue(400.0, kRegister_DragVertical);
    EXPECT_EQ(algorithm.GetParamState(0), 100.0); // the other could go no further
    EXPECT_EQ(control.GetParamData(0)->GetValue(), 100.0);
    EXPECT_EQ(control.GetParamData(1)->GetValue(), 1000.0);
}

TEST_F(BaseControlTest, NamedLinkGroupsTakeTheParametersIn) {
    KCLinkGroups& groups = *algorithm.GetLinkGroups();
    groups.SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName("Absolute"), true, false);
    groups.AddMember(1, 0);
    control.Register(&algorithm, 0, kDragged);
    control.Register(&algorithm, 2, kDragged);
    control.GetParamData(0)->AddParamLinkGroup(1); // is in it
    control.GetParamData(1)->AddParamLinkGroup(1);
    control.GetParamData(1)->AddParamLinkGroup(9);
    control.GetParamData(0)->AddParamLinkGroup(9);
    std::vector<sNAMED_LINK_GROUP> named;
    control.AppendNamedLinkGroups(named);
    EXPECT_EQ(named.size(), 4u);
    std::vector<sDESCRIPTION_PROBLEM> problems;
    groups.AdjustLinkGroupsToCurrentGuiControls(named, problems);
    EXPECT_TRUE(control.GetParamData(1)->IsLinkGroupEnabled(1));
    EXPECT_FALSE(groups.GetLinkGroupInfo().contains(9));
    ASSERT_EQ(problems.size(), 1u); // once
    EXPECT_EQ(problems[0].Text, "no link group has the number 9");
    control.GetParamData(0)->SetParamValue(400.0);
    EXPECT_EQ(algorithm.GetParamState(2), 400.0);
}

// Questions -------------------------------------------------------------------------------------------------------

class SomeNotSaved : public RecordingAlgorithm {
  public:
    using RecordingAlgorithm::RecordingAlgorithm;
    bool IsParamSavableToUndo(size_t index) const override { return index != 1; }
};

TEST(BaseControlQuestions, SavableToUndoNeedsAllRegisteredParameters) {
    SomeNotSaved algorithm(ThreeParams());
    PlainControl control;
    EXPECT_FALSE(control.AreRegisteredParamsSavableToUndo());
    control.Register(&algorithm, 0, kDragged);
    EXPECT_TRUE(control.AreRegisteredParamsSavableToUndo());
    control.Register(&algorithm, 1, kDragged);
    EXPECT_FALSE(control.AreRegisteredParamsSavableToUndo());
}

TEST_F(BaseControlTest, IsDisabledWithAllItsParameters) {
    EXPECT_FALSE(control.IsAllRegisteredParamsDisabled());
    control.Register(&algorithm, 0, kDragged);
    control.Register(&algorithm, 1, kDragged);
    algorithm.GetParam(0)->UpdateDisabledMode(1);
    EXPECT_FALSE(control.IsAllRegisteredParamsDisabled());
    algorithm.GetParam(1)->UpdateDisabledMode(2);
    EXPECT_TRUE(control.IsAllRegisteredParamsDisabled());
}

TEST_F(BaseControlTest, IsAutomatableWithALeadUnlessItSaysNo) {
    EXPECT_FALSE(control.IsAutomatable());
    control.Register(&algorithm, 0, kDragged);
    EXPECT_TRUE(control.IsAutomatable());
    control.SetControlFlag(kControl_NotAutomatable, true);
    EXPECT_FALSE(control.IsAutomatable());
}

TEST_F(BaseControlTest, DebugControlOnlyCallsTheNext) {
    struct Silent : PlainControl {
        void DebugControlSelf(KCFixedStringBase& text) const override { text << "self"; }
    };
    KCFixedString<255> text;
    Silent().DebugControl(text);
    EXPECT_EQ(text, "self");
    text.clear();
    control.SetName(KCFixedString<31>("Knob"));
    control.Register(&algorithm, 0, kDragged);
    control.DebugControl(text);
    EXPECT_EQ(text, "Knob\n\"Gain\" DragVertical at 0.000\n");
}

// Graphs ----------------------------------------------------------------------------------------------------------

class BaseControlGraphTest : public BaseControlTest {
  protected:
    BaseControlGraphTest() {
        control.Register(&algorithm, 0, kDragged);
        algorithm.GetParam(0)->ResizeGraph(8);
    }
    std::vector<kvGS::KCGSGraph> Extracted() {
        kvGS::KCGraphicStreamBinaryWriter writer;
        {
            const kvGS::KCStGSStreamStructWriter stream(writer, kvGS::SGSStream());
            result = control.GetGraphDataAsGraphicStream(writer, KURect<double>::FromEdges(0.0, 0.0, 100.0, 50.0));
        }
        EXPECT_EQ(writer.GetGSArrays().GetNumVerticesTotal(), 0u);
        kvGS::KCGSGraphExtractor extractor;
        EXPECT_EQ(extractor.ExecStream(writer.GetStreamMemObj().GetData(), writer.GetStreamMemObj().GetSize()), 0);
        return extractor.GetGraphs();
    }
    int32_t result = 0;
};

TEST_F(BaseControlGraphTest, IsALineOfTheLeadParametersPoints) {
    KCParamGraph& graph = algorithm.GetParam(0)->GetGraph();
    for (const KUPoint<double> point : {KUPoint<double>{0.0, 0.0}, {0.5, 1.0}, {1.0, 0.5}})
        graph.AddPoint(point);
    sGRAPH_WIN look;
    look.hasColor = true;
    look.color = {1, 2, 3, 4};
    look.strokeWidth = 2.5;
    control.GetParamData(0)->SetGraphWin(look);
    const auto graphs = Extracted();
    EXPECT_EQ(result, kErr_NoErr);
    ASSERT_EQ(graphs.size(), 1u);
    EXPECT_EQ(graphs[0].points, (std::vector<KUPoint<float>>{{0.0f, 50.0f}, {50.0f, 0.0f}, {100.0f, 25.0f}}));
    EXPECT_EQ(graphs[0].color, (kvGS::SGSRGBAColor{1, 2, 3, 4}));
    EXPECT_EQ(graphs[0].strokeWidth, 2.5f);
    EXPECT_TRUE(graphs[0].name.empty());
}

TEST_F(BaseControlGraphTest, OnePointIsNoLine) {
    algorithm.GetParam(0)->GetGraph().AddPoint({0.5, 0.5});
    EXPECT_TRUE(Extracted().empty());
    EXPECT_EQ(result, kErr_NoErr);
    control.UnRegisterAll();
    EXPECT_TRUE(Extracted().empty());
    EXPECT_EQ(result, kErr_Generic);
}

} // namespace
} // namespace kvTest
