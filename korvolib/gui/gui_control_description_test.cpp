#include <string>

#include <gtest/gtest.h>

#include <korvolib/gui/gui_control_test_internal.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

class GUIControlDescription : public OneControl {
  protected:
    int32_t Read(const std::string& xml) {
        problems.clear();
        return control.ReadFromXMLWithAlg(ElementFrom(xml), alg, problems);
    }
    std::string ProblemText(size_t number = 0) const {
        return number < problems.size() ? problems[number].Text.c_str() : "";
    }
    const KCParamRegistrationData& Param(size_t registration) const { return *control.GetParamData(registration); }
    KCBaseControl::Problems problems;
};

constexpr const char* kWhole = R"(<Control Class="Knob" Name="Input" Rect="1 2 30.5 40" RectOffset="3 -4"
    Color="#01020304" ColorRect="0 0 5 6" Group="3" Direction="Horizontal" DisableMode="Ignore" DragSensitivity="0.5"
    MaxSelection="4" AcceptableCharacters="0123.">
  <Flags Cyclic="true" DrawTopmost="true"/>
  <ImageList ResID="7" NumImages="3" Rect="0 0 8 9"/>
  <SelectionImageList ResID="20" NumImages="2"/>
  <AdditionalBitmapList><BitmapList ResID="30" NumImages="1"/><BitmapList ResID="31" NumImages="2"/></AdditionalBitmapList>
  <DependentsList><Dependent ID="Output"/><Dependent ID="Meter" DrawOnly="true"/></DependentsList>
  <ParameterList><Parameter Name="Gain"><Register Type="DragVertical" Modifiers="Shift"/></Parameter></ParameterList>
</Control>)";

TEST_F(GUIControlDescription, ReadsEveryItem) {
    ASSERT_EQ(Read(kWhole), kErr_NoErr) << ProblemText();
    EXPECT_TRUE(problems.empty());
    EXPECT_STREQ(control.GetClassName().c_str(), "Knob");
    EXPECT_STREQ(control.GetNamePtr(), "Input");
    EXPECT_EQ(control.GetRect(), Rect::FromOrigin({1, 2}, {30.5, 40}));
    EXPECT_EQ(control.GetBounds(), Rect::FromOrigin({4, -2}, {30.5, 40}));
    EXPECT_EQ(control.GetColor(), (KUColor{1, 2, 3, 4}));
    EXPECT_TRUE(control.HasColor());
    EXPECT_EQ(control.GetGroup(), 3);
    EXPECT_EQ(control.GetDirection(), KEControlDirection::Horizontal);
    EXPECT_EQ(control.GetDisableMode(), KEDisableMode::Ignore);
    EXPECT_EQ(control.GetDragSensitivity(), 0.5);
    EXPECT_STREQ(control.GetAcceptableCharacters().c_str(), "0123.");
    EXPECT_TRUE(control.IsCyclicControl());
    EXPECT_EQ(control.m_images, (sBITMAP_WIN{7, 3, Rect::FromOrigin({0, 0}, {8, 9})}));
    EXPECT_EQ(control.m_selectionImages.resID, 20);
    ASSERT_EQ(control.GetControlDependentsIDs().size(), 1u);
    EXPECT_STREQ(control.GetControlDependentsIDs()[0].c_str(), "Output");
    ASSERT_EQ(control.GetControlDrawDependentsIDs().size(), 1u);
    EXPECT_STREQ(control.GetControlDrawDependentsIDs()[0].c_str(), "Meter");
    control.MaxSelect();
    EXPECT_EQ(control.GetSelection(), 4);
}

TEST_F(GUIControlDescription, WritesWhatItReads) {
    ASSERT_EQ(Read(kWhole), kErr_NoErr);
    KCXMLElement written, again;
    ASSERT_EQ(written.SetName("Control"), 0);
    ASSERT_EQ(control.WriteToXMLWithAlg(written, alg), kErr_NoErr);
    TestControl second;
    EXPECT_EQ(second.ReadFromXMLWithAlg(written, alg, problems), kErr_NoErr);
    EXPECT_TRUE(problems.empty());
    ASSERT_EQ(again.SetName("Control"), 0);
    ASSERT_EQ(second.WriteToXML(again), kErr_NoErr);
    EXPECT_TRUE(written == again);
    EXPECT_EQ(second.GetRect(), control.GetRect());
    EXPECT_EQ(second.GetParamDataVec().size(), 1u);
    EXPECT_TRUE(second.GetParamData(0)->GetRegisterInfo() == Param(0).GetRegisterInfo());
}

TEST_F(GUIControlDescription, HostileValuesAreReportedAndLeftOut) {
    const std::vector<const char*> bad = {
        "Rect='1 2 3'",           "Rect='1 2 3 4 5'",   "Rect='a b c d'",
        "Rect='1 2 -3 4'",        "Rect='1 2 1e300 4'", "Rect='nan 0 1 1'",
        "Rect='inf 0 1 1'",       "RectOffset='1'",     "RectOffset='1 2 3'",
        "RectOffset='0 2000000'", "Color='red'",        "Color='#12345'",
        "ColorRect='0 0 1 -1'",   "Group='1.5'",        "Group='99999999999'",
        "Direction='Up'",         "DisableMode='dim'",  "DragSensitivity='1e9'",
        "DragSensitivity='nan'",  "MaxSelection='-1'",  "MaxSelection='99999999'"};
    for (const char* attribute : bad) {
        TestControl fresh;
        problems.clear();
        const std::string xml = std::string("\n<Control ") + attribute + "/>";
        EXPECT_EQ(fresh.ReadFromXMLWithAlg(ElementFrom(xml), alg, problems), kErr_NoErr) << attribute;
        ASSERT_EQ(problems.size(), 1u) << attribute;
        EXPECT_EQ(problems[0].Line, 2) << attribute;
        EXPECT_EQ(fresh.GetRect(), Rect());
        EXPECT_EQ(fresh.GetDragSensitivity(), 1.0);
        EXPECT_FALSE(fresh.HasColor());
    }
}

TEST_F(GUIControlDescription, ADependentWithoutAnIDIsReported) {
    EXPECT_EQ(Read("<Control><DependentsList><Dependent/><Dependent ID='B'/></DependentsList></Control>"), 0);
    EXPECT_EQ(problems.size(), 1u);
    EXPECT_EQ(control.GetControlDependentsIDs().size(), 1u);
}

TEST_F(GUIControlDescription, AnUnknownParameterIsTheOnlyThingThatLeavesTheControlOut) {
    EXPECT_EQ(Read("<Control Rect='0 0 1 1'>\n<ParameterList>\n<Parameter Name='Gian'/></ParameterList></Control>"),
              kErr_BadDescription);
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(ProblemText(), "no parameter is named \"Gian\"");
    EXPECT_EQ(problems[0].Line, 3);
}

TEST_F(GUIControlDescription, UnknownAttributesAreIgnored) {
    EXPECT_EQ(Read("<Control Colour='#FF0000' Rect='0 0 1 1'/>"), kErr_NoErr);
    EXPECT_EQ(control.GetRect(), Rect::FromOrigin({0, 0}, {1, 1}));
}

TEST_F(GUIControlDescription, AParameterWithoutGesturesGetsThoseOfItsClass) {
    ASSERT_EQ(Read("<Control><ParameterList><Parameter Name='Gain' Sensitivity='2'><Drag Value='700'/>"
                   "<ValueWin Rect='0 0 9 9'/></Parameter></ParameterList></Control>"),
              kErr_NoErr);
    ASSERT_EQ(control.GetParamDataVec().size(), 3u);
    for (const ERegisterType type :
         {kRegister_DragVertical, kRegister_Wheel, kRegister_Keys, kRegister_ResetOnDoubleClick})
        EXPECT_TRUE(Param(0).IsRegisteredToType(type)) << type;
    EXPECT_FALSE(Param(0).IsRegisteredToType(kRegister_Highlight));
    EXPECT_TRUE(Param(0).GetRegisterInfo().GetModifiers().IsEmpty());
    double drag = 0.0, drop = 0.0;
    Param(0).GetRegisterInfo().GetDragDropValues(drag, drop);
    EXPECT_EQ(drag, 700.0);
    EXPECT_TRUE(Param(0).GetValueWin().IsShown());
}

TEST_F(GUIControlDescription, TheFineDragAndTheResetStandBehindIt) {
    ASSERT_EQ(Read("<Control><ParameterList><Parameter Name='Gain' Sensitivity='2'><ValueWin Rect='0 0 9 9'/>"
                   "</Parameter><Parameter Name='Mode'/></ParameterList></Control>"),
              kErr_NoErr);
    ASSERT_EQ(control.GetParamDataVec().size(), 6u);
    EXPECT_TRUE(Param(1).GetRegisterInfo().CompareParamModifiers(KEModifier::Shift));
    EXPECT_TRUE(Param(1).IsRegisteredToType(kRegister_DragVertical));
    EXPECT_FALSE(Param(1).IsRegisteredToType(kRegister_Wheel));
    EXPECT_DOUBLE_EQ(Param(1).GetSensitivity(), 0.2);
    EXPECT_FALSE(Param(1).GetValueWin().IsShown());
    EXPECT_TRUE(Param(2).GetRegisterInfo().CompareParamModifiers(KEModifier::Primary));
    EXPECT_TRUE(Param(2).IsRegisteredToType(kRegister_ResetOnPress));
    EXPECT_EQ(Param(3).GetParamIndex(), 1u);
    EXPECT_EQ(control.GetLeadParamIndex(), 0u);
}

TEST_F(GUIControlDescription, GesturesWithoutADragStayAsTheyAre) {
    control.gestures = {kRegister_NextOnPress};
    ASSERT_EQ(Read("<Control><ParameterList><Parameter Name='Mode'/></ParameterList></Control>"), kErr_NoErr);
    ASSERT_EQ(control.GetParamDataVec().size(), 1u);
    EXPECT_TRUE(Param(0).IsRegisteredToType(kRegister_NextOnPress));
    EXPECT_FALSE(Param(0).IsRegisteredToType(kRegister_ResetOnDoubleClick));
}

TEST_F(GUIControlDescription, RegistersOfItsOwnReplaceThoseOfTheClass) {
    for (const char* name : {"Register", "RegisterType"}) {
        ASSERT_EQ(Read(std::string("<Control><ParameterList><Parameter Name='Gain'><") + name +
                       " Type='Wheel'/></Parameter></ParameterList></Control>"),
                  kErr_NoErr);
        ASSERT_EQ(control.GetParamDataVec().size(), 1u);
        EXPECT_TRUE(Param(0).IsRegisteredToType(kRegister_Wheel));
        EXPECT_FALSE(Param(0).IsRegisteredToType(kRegister_DragVertical));
    }
}

TEST_F(GUIControlDescription, ADescribedControlDragsFinelyWithShift) {
    ASSERT_EQ(Read("<Control Rect='0 0 100 200'><ParameterList><Parameter Name='Gain'/></ParameterList></Control>"),
              kErr_NoErr);
    ASSERT_TRUE(Press(At(50, 50)));
    Drag(0.0, 100.0);
    EXPECT_DOUBLE_EQ(State(0), 500.0);
    Drag(0.0, 100.0, KEModifier::Shift);
    EXPECT_DOUBLE_EQ(State(0), 550.0);
    Up();
}

TEST_F(GUIControlDescription, AnotherSkinMovesWindowsAndKeepsRegistrations) {
    ASSERT_EQ(Read("<Control Rect='0 0 100 200'><ParameterList><Parameter Name='Gain'/><Parameter Name='Mode'/>"
                   "</ParameterList></Control>"),
              kErr_NoErr);
    Execute(alg.UpdateParamState(0, 400.0, false));
    control.UpdateRedrawControl();
    const KCXMLElement skin =
        ElementFrom("<Control Rect='5 5 50 50'><ParameterList><Parameter Name='Mode'><LabelWin Rect='1 1 9 9'/>"
                    "</Parameter></ParameterList></Control>");
    problems.clear();
    ASSERT_EQ(control.UpdateFromXMLWithAlg(skin, alg, problems), kErr_NoErr);
    EXPECT_EQ(control.GetRect(), Rect::FromOrigin({5, 5}, {50, 50}));
    EXPECT_EQ(control.GetParamDataVec().size(), 6u);
    EXPECT_TRUE(Param(3).GetLabelWin().IsShown());
    EXPECT_EQ(Param(0).GetValue(), 400.0);
    EXPECT_TRUE(control.NeedToRedrawControl());
}

TEST_F(GUIControlDescription, AnotherSkinMayNameTheParametersInAnotherOrder) {
    Read(R"(<Control><ParameterList><Parameter Name="Gain"/><Parameter Name="Mode"/><Parameter Name="Gain"/>
        </ParameterList></Control>)");
    control.UpdateFromXMLWithAlg(ElementFrom(R"(<Control><ParameterList>
        <Parameter Name="Mode"><ValueWin Rect="1 0 9 9"/></Parameter>
        <Parameter Name="Gain"><ValueWin Rect="2 0 9 9"/></Parameter>
        <Parameter Name="Gain"><ValueWin Rect="3 0 9 9"/></Parameter></ParameterList></Control>)"),
                                 alg, problems);
    ASSERT_EQ(control.GetParamDataVec().size(), 9u); // each with its fine drag and its reset
    for (const auto& [registration, left] : {std::pair{0u, 2.0}, {3u, 1.0}, {6u, 3.0}})
        EXPECT_EQ(control.GetParamData(registration)->GetValueWin().rect.left, left) << registration;
    EXPECT_FALSE(control.GetParamData(1)->GetValueWin().IsShown());
}

TEST_F(GUIControlDescription, WithoutAnAlgorithmTheLookAloneIsReadAndWritten) {
    TestControl alone;
    EXPECT_EQ(alone.ReadFromXML(ElementFrom("<Control Rect='1 2 3 4'/>")), kErr_NoErr);
    EXPECT_EQ(alone.ReadFromXML(ElementFrom("<Control Rect='1 2 3'/>")), kErr_BadDescription);
    KCXMLElement written;
    ASSERT_EQ(written.SetName("Control"), 0);
    EXPECT_EQ(alone.WriteToXML(written), kErr_NoErr);
    EXPECT_STREQ(written.GetAttribute("Rect"), "1 2 3 4");
}

} // namespace
} // namespace kvTest
