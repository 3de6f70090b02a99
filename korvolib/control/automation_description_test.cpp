#include <korvolib/control/automation_manager.h>

#include <korvolib/control/automation_test_internal.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// An algorithm of "Gain 1" … "Gain 3", "Mode" (three states) and "Step" (three states, 10 apart).
std::vector<sCONTROL_PARAM> Params() {
    std::vector<sCONTROL_PARAM> params = {LinearParam("Gain 1"), LinearParam("Gain 2"), LinearParam("Gain 3"),
                                          ToggleParam("Mode", 3), ToggleParam("Step", 3)};
    params[4].SetStateStep(10.0);
    return params;
}

class AutomationDescriptionTest : public testing::Test {
  protected:
    int32_t Read(const std::string& content) {
        EXPECT_EQ(algorithm.SetDescription("GUIXML", ("<GUI>\n" + content + "\n</GUI>").c_str()), kErr_NoErr);
        return algorithm.FinishCreate();
    }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (size_t i = 0; algorithm.GetAutomationControl(i) != nullptr; ++i)
            names.emplace_back(algorithm.GetAutomationControl(i)->GetNamePtr());
        return names;
    }
    std::vector<std::string> Problems() const {
        std::vector<std::string> texts;
        for (size_t i = 0; i < algorithm.GetNumDescriptionProblems(); ++i) {
            const sDESCRIPTION_PROBLEM& problem = *algorithm.GetDescriptionProblem(i);
            EXPECT_STREQ(problem.Description.c_str(), "GUIXML");
            texts.push_back(std::to_string(problem.Line) + ": " + problem.Text.c_str());
        }
        return texts;
    }
    KCAutomationManager& manager() { return algorithm.Manager(); }
    HostedAlgorithm algorithm{Params()};
};

// ---- Controls
// -------------------------------------------------------------------------------------------------------

TEST_F(AutomationDescriptionTest, WithoutAControlListThereAreNoControls) {
    EXPECT_EQ(Read("<Controls/>"), kErr_NoErr);
    EXPECT_THAT(Names(), IsEmpty());
    EXPECT_TRUE(manager().IsInitialised());
}

TEST_F(AutomationDescriptionTest, ReadsAllThatAControlIs) {
    EXPECT_EQ(Read(R"(<Control_List><cCONTROLLER Name="Level" ID="5" CtrlID="6" AutomationType="2" Lead="1">
        <Flags InfoFlag="true"/>
        <ParameterList><Parameter Name="Gain 1"/>
          <Parameter Name="Gain 2"><Register Type="NotByAutomation"/></Parameter></ParameterList>
        <MIDI EventType="4" ControlID="7" Channel="3" Group="9" Low="250" High="500" Curve="2" TakeOver="PickUp"/>
        <LedMap><Led Value="0" State="4"/><Led Value="127" State="-2"/></LedMap>
        <ControlSurfaceDisplay Ring="BoostCut" Name="Lv"/></cCONTROLLER></Control_List>)"),
              kErr_NoErr);
    ASSERT_THAT(Names(), ElementsAre("Level"));
    const KCAutomationControl& control = *algorithm.GetAutomationControl(0);
    EXPECT_EQ(control.GetID(), 5);
    EXPECT_EQ(control.GetCtrlID(), 6);
    EXPECT_EQ(control.GetAutomationType(), 2);
    EXPECT_EQ(control.GetLeadParamID(), 1u);
    EXPECT_TRUE(control.GetControlFlag(kControl_InfoFlag));
    EXPECT_TRUE(control.GetControlFlag(kControl_HasLead));
    EXPECT_TRUE(control.GetParamData(0)->IsRegisteredToUpdateController());
    EXPECT_FALSE(control.GetParamData(0)->GetRegisterFlag(kRegister_Highlight));
    EXPECT_TRUE(control.GetParamData(1)->GetRegisterFlag(kRegister_NotByAutomation));
    EXPECT_EQ(control.GetMIDIEventType(), 4);
    EXPECT_EQ(control.GetMIDIControlID(), 7);
    EXPECT_EQ(control.GetMIDIChannel(), 3);
    EXPECT_EQ(control.GetMIDIGroup(), 9);
    EXPECT_EQ(control.GetMIDIMapping(), (kvMIDI::sMIDI_MAPPING{250.0, 500.0, 2.0, kvMIDI::kMidiTakeOver_PickUp}));
    EXPECT_EQ(control.GetLedValueFromMap(127), -2);
    EXPECT_EQ(control.GetControlSurfaceDisplay().ring, sCONTROL_SURFACE_DISPLAY::KERing::BoostCut);
    EXPECT_STREQ(control.GetControlSurfaceDisplay().name.c_str(), "Lv");
}

TEST_F(AutomationDescriptionTest, WhatIsWrittenReadsBackAlike) {
    ASSERT_EQ(Read(R"(<Control_List><cCONTROLLER Name="Level" ID="5" CtrlID="6" AutomationType="2" Lead="1">
        <ParameterList><Parameter Name="Gain 1"/><Parameter Name="Mode"/></ParameterList>
        <MIDI EventType="2" ControlID="60" Low="1" TakeOver="PickUp"/><LedMap><Led Value="1" State="2"/></LedMap>
        <ControlSurfaceDisplay Ring="Dot"/></cCONTROLLER></Control_List>)"),
              kErr_NoErr);
    KCXMLElement first, second;
    ASSERT_EQ(first.SetName("cCONTROLLER"), kErr_NoErr);
    ASSERT_EQ(second.SetName("cCONTROLLER"), kErr_NoErr);
    ASSERT_EQ(algorithm.GetAutomationControl(0)->WriteToXML(first), kErr_NoErr);
    KCAutomationManager::Problems problems;
    ASSERT_EQ(manager().ReadXMLControl(first, problems), kErr_NoErr);
    ASSERT_EQ(algorithm.GetAutomationControl(1)->WriteToXML(second), kErr_NoErr);
    EXPECT_TRUE(first == second);
    EXPECT_NE(first.FindChild("MIDI"), nullptr);
    EXPECT_EQ(algorithm.GetAutomationControl(1)->GetMIDIControlID(), 60);
}

TEST_F(AutomationDescriptionTest, UnknownParametersLeaveTheirControlOut) {
    EXPECT_EQ(Read(R"(<Control_List>
<cCONTROLLER Name="A"><ParameterList><Parameter Name="Gian"/></ParameterList></cCONTROLLER>
<cCONTROLLER/>
<Knob/>
<cCONTROLLER Name="B"/></Control_List>)"),
              kErr_BadDescription);
    EXPECT_THAT(Names(), ElementsAre("B"));
    EXPECT_THAT(Problems(), ElementsAre("3: no parameter is named \"Gian\"", "4: a cCONTROLLER needs a Name",
                                        "5: expected a cCONTROLLER, found \"Knob\""));
}

TEST_F(AutomationDescriptionTest, SameNamesAndUnevenStatesAreWarnedOf) {
    EXPECT_EQ(Read(R"(<Control_List><cCONTROLLER Name="A"/><cCONTROLLER Name="A"/>
<cCONTROLLER Name="Step"><ParameterList><Parameter Name="Step"/></ParameterList>
<MIDI EventType="4" ControlID="7"/></cCONTROLLER></Control_List>)"),
              kErr_NoErr);
    EXPECT_THAT(Names(), ElementsAre("A", "A", "Step"));
    ASSERT_EQ(Problems().size(), 2u);
    EXPECT_THAT(Problems()[0], HasSubstr("several controls have this name"));
    EXPECT_THAT(Problems()[1], HasSubstr("further apart: \"Step\""));
}

TEST_F(AutomationDescriptionTest, AttachmentsWithoutMeaningAreReportedAndLeftOut) {
    ASSERT_EQ(Read(R"(<Control_List>
<cCONTROLLER Name="A"><MIDI EventType="4"/></cCONTROLLER>
<cCONTROLLER Name="B"><MIDI EventType="3" ControlID="1"/></cCONTROLLER>
<cCONTROLLER Name="C"><MIDI EventType="4" ControlID="128"/></cCONTROLLER>
<cCONTROLLER Name="D"><MIDI EventType="4" ControlID="7" Low="nan" TakeOver="Slow"/></cCONTROLLER>
</Control_List>)"),
              kErr_NoErr);
    for (size_t i = 0; i < 3; ++i)
        EXPECT_FALSE(algorithm.GetAutomationControl(i)->IsAttachedToMIDI()) << i;
    EXPECT_EQ(algorithm.GetAutomationControl(3)->GetMIDIControlID(), 7);
    EXPECT_EQ(algorithm.GetAutomationControl(3)->GetMIDIMapping(), kvMIDI::sMIDI_MAPPING());
    EXPECT_EQ(Problems().size(), 6u);
}

TEST_F(AutomationDescriptionTest, ATextThatIsNoXmlIsReported) {
    algorithm.SetDescription("GUIXML", "<GUI><Control_List></GUI>");
    EXPECT_EQ(algorithm.FinishCreate(), kErr_MalformedText);
    EXPECT_EQ(Problems().size(), 1u);
    EXPECT_TRUE(manager().IsInitialised());
}

// ---- Templates
// --------------------------------------------------------------------------------------------------------

constexpr const char* kTemplate = R"(<Control_Template_List><Control_Template Name="Strip">
  <cCONTROLLER Name="Gain"><ParameterList><Parameter Array="Gain"/></ParameterList></cCONTROLLER>
  </Control_Template><Control_Template Name="Step">
  <cCONTROLLER Name="Knob"><ParameterList><Parameter Name="Gain 1"/></ParameterList></cCONTROLLER>
  </Control_Template></Control_Template_List>)";

TEST_F(AutomationDescriptionTest, BatchesRepeatATemplateThroughParameterArrays) {
    EXPECT_EQ(Read(std::string(kTemplate) + R"(<Control_Template_Batch_List>
        <Control_Template_Batch Template="Strip" Count="3"/></Control_Template_Batch_List>)"),
              kErr_NoErr);
    EXPECT_THAT(Names(), ElementsAre("Gain 1", "Gain 2", "Gain 3"));
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(algorithm.GetAutomationControl(i)->GetLeadParamID(), i);
}

TEST_F(AutomationDescriptionTest, ABatchEndsWhereTheParametersDo) {
    EXPECT_EQ(Read(std::string(kTemplate) + R"(<Control_Template_Batch_List>
        <Control_Template_Batch Template="Strip" First="1" Count="1000"/>
        <Control_Template_Batch Template="Stripe"/>
        <Control_Template_Batch Template="Step" Count="9" Stride="2"/></Control_Template_Batch_List>)"),
              kErr_BadDescription);
    EXPECT_THAT(Names(), ElementsAre("Gain 2", "Gain 3", "Knob 1", "Knob 2", "Knob 3"));
    EXPECT_EQ(algorithm.GetAutomationControl(4)->GetLeadParamID(), 4u);
    ASSERT_EQ(Problems().size(), 3u);
    EXPECT_THAT(Problems()[0], HasSubstr("the template reaches beyond the parameters with \"Gain 4\""));
    EXPECT_THAT(Problems()[1], HasSubstr("no control template is named \"Stripe\""));
}

TEST_F(AutomationDescriptionTest, SubViewsTakeTheControlsOfTheirTemplate) {
    EXPECT_EQ(Read(std::string(kTemplate) + R"(<SubViewRect_List>
        <SubViewRect Rect="0 0 10 10" Template="Strip" Element="2"/><SubViewRect Rect="0 0 1 1"/>
        <SubViewRect Template="Step" Element="1" Stride="1"/></SubViewRect_List>)"),
              kErr_NoErr);
    EXPECT_THAT(Names(), ElementsAre("Gain 3", "Knob 2"));
    EXPECT_EQ(algorithm.GetAutomationControl(0)->GetLeadParamID(), 2u);
    EXPECT_EQ(algorithm.GetAutomationControl(1)->GetLeadParamID(), 1u);
}

} // namespace
