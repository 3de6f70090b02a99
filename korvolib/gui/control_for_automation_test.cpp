#include <korvolib/gui/control_for_automation.h>

#include <korvolib/control/automation_manager.h>
#include <korvolib/gui/gui_test_internal.h>
#include <korvolib/gui/x_cstandardgui.h>

namespace {

using namespace kvTest;

class ControlForAutomationTest : public testing::Test {
  protected:
    ControlForAutomationTest() {
        EXPECT_EQ(algorithm.SetDescription("GUIXML", R"(<GUI><Control_List>
            <cCONTROLLER Name="Both" Lead="1"><ParameterList>
              <Parameter Name="Gain"/><Parameter Name="Mode"/></ParameterList></cCONTROLLER>
            <cCONTROLLER Name="None"/></Control_List></GUI>)"),
                  kErr_NoErr);
        EXPECT_EQ(algorithm.FinishCreate(), kErr_NoErr);
    }
    int32_t Read(const std::string& xml) {
        control = MakeControlOfClass("ControlForAutomation");
        return control->ReadFromXMLWithAlg(ElementFrom(xml), algorithm, problems);
    }
    const CControlForAutomation_X& Own() const { return dynamic_cast<const CControlForAutomation_X&>(*control); }
    RecordingAlgorithm algorithm{ThreeParams()};
    std::vector<sDESCRIPTION_PROBLEM> problems;
    std::unique_ptr<KCGUIControl> control;
};

TEST_F(ControlForAutomationTest, ShowsTheParametersOfItsControlLeadFirst) {
    ASSERT_EQ(Read("<Control Name='Meter' AutomationControl='Both' Rect='1 2 30 40'/>"), kErr_NoErr);
    ASSERT_EQ(control->GetParamDataVec().size(), 2u);
    EXPECT_EQ(control->GetParamDataVec()[0].GetRegisteredParamName(), "Mode");
    EXPECT_EQ(control->GetParamDataVec()[1].GetRegisteredParamName(), "Gain");
    EXPECT_EQ(Own().GetAutomationControl(), algorithm.GetAutomationControl(0));
    // A knob on the screen is never taken for a lead.
    EXPECT_EQ(algorithm.GetAutomationControlByLeadParamID(1), algorithm.GetAutomationControl(0));
}

TEST_F(ControlForAutomationTest, ItsOwnNameAndItsOwnParametersComeFirst) {
    ASSERT_EQ(Read("<Control Name='Both'><ParameterList><Parameter Name='Angle'/></ParameterList></Control>"),
              kErr_NoErr);
    ASSERT_EQ(control->GetParamDataVec().size(), 1u);
    EXPECT_EQ(control->GetLeadParamIndex(), 2u);
    EXPECT_EQ(Own().GetAutomationControlName(), "Both");
}

TEST_F(ControlForAutomationTest, AnUnknownControlIsReported) {
    EXPECT_EQ(Read("<Control Name='Meter'/>"), kErr_BadDescription);
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].Text, "no automation control is named \"Meter\"");
}

TEST_F(ControlForAutomationTest, AControlWithoutALeadShowsNothing) {
    ASSERT_EQ(Read("<Control Name='None'/>"), kErr_NoErr);
    EXPECT_TRUE(control->GetParamDataVec().empty());
}

TEST_F(ControlForAutomationTest, IsClonedAndWritesItselfBack) {
    ASSERT_EQ(Read("<Control Name='Meter' AutomationControl='Both'/>"), kErr_NoErr);
    const std::unique_ptr<KCBaseControl> clone = control->Clone();
    const auto& copy = dynamic_cast<const CControlForAutomation_X&>(*clone);
    EXPECT_EQ(copy.GetAutomationControl(), Own().GetAutomationControl());
    EXPECT_EQ(copy.GetParamDataVec().size(), 2u);
    KCXMLElement written;
    ASSERT_EQ(written.SetName("Control"), kErr_NoErr);
    ASSERT_EQ(control->WriteToXMLWithAlg(written, algorithm), kErr_NoErr);
    CControlForAutomation_X again;
    EXPECT_EQ(again.ReadFromXMLWithAlg(written, algorithm, problems), kErr_NoErr);
    EXPECT_EQ(again.GetAutomationControlName(), "Both");
    EXPECT_EQ(again.GetParamDataVec().size(), 2u);
}

} // namespace
