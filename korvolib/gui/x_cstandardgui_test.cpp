#include <korvolib/gui/x_cstandardgui.h>

#include <string>

#include <gmock/gmock.h>

#include <korvolib/gui/window_test_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace {

using namespace kvWindowTest;
using testing::HasSubstr;

std::string Problems(const CStandardGUI_X& window) {
    std::string text;
    for (const sDESCRIPTION_PROBLEM& problem : window.GetProblems())
        text.append(std::to_string(problem.Line)).append(": ").append(problem.Text.c_str()).append("\n");
    return text;
}

TEST(Window, HasEveryControlOfItsDescription) {
    const sWINDOW window;
    EXPECT_EQ(window.result, 0) << Problems(window.window);
    EXPECT_EQ(window.window.GetNumControls(), 9u);
    EXPECT_EQ(window.window.GetSize(), (KUSize<double>{400, 300}));
}

TEST(Window, IsCreatedFromTheDescriptionOfItsAlgorithm) {
    kvTest::RecordingAlgorithm algorithm(Params());
    CStandardGUI_X window;
    EXPECT_EQ(window.Create(algorithm), kErr_NullArgument);
    algorithm.SetDescription("GUIXML", EveryClassXML().c_str());
    algorithm.FinishCreate();
    EXPECT_EQ(window.Create(algorithm), 0);
    EXPECT_EQ(window.GetNumControls(), 9u);
}

TEST(Window, StandsOnceUntilItIsClosed) {
    sWINDOW window;
    EXPECT_EQ(window.window.Create(window.algorithm, EveryClassXML().c_str()), kErr_Generic);
    EXPECT_EQ(window.window.GetNumControls(), 9u);
    window.window.Close();
    EXPECT_EQ(window.window.GetNumControls(), 0u);
    EXPECT_EQ(window.window.Create(window.algorithm, EveryClassXML().c_str()), 0);
}

TEST(Window, LeavesOutAnUnknownClassAndSaysWhere) {
    sWINDOW window(WindowXML(KnobXML("A", "0 0 50 50", "Gain") + ControlXML("Knbo", "B", "50 0 50 50", "Pan") +
                             KnobXML("C", "100 0 50 50", "Pan")));
    EXPECT_EQ(window.result, kErr_BadDescription);
    EXPECT_EQ(window.window.GetNumControls(), 2u);
    EXPECT_THAT(Problems(window.window), HasSubstr("5: the window knows no class \"Knbo\""));
    window.Drag(125, 25, 0, -30);
    EXPECT_GT(window.State(kPan), window.algorithm.GetParamInitialState(kPan));
}

TEST(Window, LeavesOutAControlOfAnUnknownParameter) {
    const sWINDOW window(WindowXML(KnobXML("A", "0 0 50 50", "Gian") + KnobXML("B", "50 0 50 50", "Gain")));
    EXPECT_EQ(window.result, kErr_BadDescription);
    EXPECT_EQ(window.window.GetNumControls(), 1u);
    EXPECT_THAT(Problems(window.window), HasSubstr("4: no parameter is named \"Gian\""));
}

TEST(Window, ReportsTwoControlsOfOneNameAndFindsTheFirst) {
    sWINDOW window(WindowXML(KnobXML("A", "0 0 50 50", "Gain") + KnobXML("A", "50 0 50 50", "Pan")));
    EXPECT_EQ(window.result, kErr_BadDescription);
    EXPECT_THAT(Problems(window.window), HasSubstr("5: another control is named \"A\" too"));
    EXPECT_EQ(window.window.GetNumControls(), 2u);
    EXPECT_EQ(&window.Control("A"), window.window.GetControl(0));
}

TEST(Window, GivesControlsTheirDependents) {
    sWINDOW window(WindowXML("<Control Class=\"Knob\" Name=\"A\" Rect=\"0 0 50 50\"><DependentsList>"
                             "<Dependent ID=\"B\"/><Dependent ID=\"Nobody\"/><Dependent ID=\"A\"/></DependentsList>"
                             "</Control>" +
                             KnobXML("B", "50 0 50 50", "Gain")));
    EXPECT_THAT(window.Control("A").GetControlDependentsVector(), testing::ElementsAre(&window.Control("B")));
    EXPECT_THAT(Problems(window.window), HasSubstr("4: no control is named \"Nobody\""));
}

TEST(Window, RefusesWhatIsNoDescription) {
    for (const char* xml : {"", "<GUI>", "no text", "<Window Width=\"10\" Height=\"10\"/>"}) {
        const sWINDOW window{std::string(xml)};
        EXPECT_NE(window.result, 0) << xml;
        EXPECT_EQ(window.window.GetAlgorithm(), nullptr) << xml;
        EXPECT_FALSE(window.window.GetProblems().empty()) << xml;
    }
}

TEST(Window, WithoutAProperSizeGetsAnOrdinaryOne) {
    for (const char* size : {"", "Width=\"0\" Height=\"10\"", "Width=\"1e300\" Height=\"10\"",
                             "Width=\"10\" Height=\"nan\"", "Width=\"10\" Height=\"16385\""}) {
        const sWINDOW window(std::string("<GUI ").append(size).append("/>"));
        EXPECT_EQ(window.result, kErr_BadDescription) << size;
        EXPECT_EQ(window.window.GetSize(), (KUSize<double>{640, 400})) << size;
    }
    const sWINDOW largest("<GUI Width=\"16384\" Height=\"16384\"/>");
    EXPECT_EQ(largest.result, 0);
    EXPECT_EQ(largest.window.GetSize(), (KUSize<double>{16384, 16384}));
}

TEST(Window, TakesAsManyControlsAsItHasRoomFor) {
    std::string controls;
    for (size_t i = 0; i <= CStandardGUI_X::kMaxControls; ++i)
        controls += KnobXML(std::string("K").append(std::to_string(i)).c_str(), "0 0 50 50", "Gain");
    const sWINDOW window(WindowXML(controls));
    EXPECT_EQ(window.window.GetNumControls(), CStandardGUI_X::kMaxControls);
    EXPECT_THAT(Problems(window.window), HasSubstr("no room for more controls"));
}

TEST(Window, FindsControlsByNameNumberPlaceAndParameter) {
    sWINDOW window;
    KCGUIControl& knob = window.Control("Gain");
    EXPECT_EQ(window.window.GetControl(0), &knob);
    EXPECT_EQ(window.window.GetControl(9), nullptr);
    EXPECT_EQ(window.window.FindControlAt({40, 40}), &knob);
    EXPECT_EQ(window.window.FindControlAt({399, 299}), nullptr);
    EXPECT_EQ(window.window.FindControlOfParam(kGain), &knob);
    EXPECT_EQ(window.window.FindControlOfParam(kWidth), nullptr);
    EXPECT_EQ(window.window.FindControlOfParam(kNoParam), nullptr);
    EXPECT_EQ(window.window.FindControl(KCFixedString<255>(std::string(200, 'x').c_str())), nullptr);
}

TEST(Window, TheTopmostControlIsHit) {
    sWINDOW window(WindowXML(KnobXML("A", "0 0 50 50", "Gain") + KnobXML("B", "20 0 50 50", "Pan")));
    EXPECT_EQ(window.window.FindControlAt({30, 20}), &window.Control("B"));
    window.Control("B").Hide();
    EXPECT_EQ(window.window.FindControlAt({30, 20}), &window.Control("A"));
}

TEST(Window, WritesADescriptionThatBuildsItAgain) {
    sWINDOW window;
    KCXMLElement written;
    ASSERT_EQ(window.window.WriteToXML(written), 0);
    KCStMemObj text;
    ASSERT_EQ(written.Write(text), 0);
    sWINDOW again{std::string(text.GetText())};
    EXPECT_EQ(again.result, 0) << Problems(again.window) << text.GetText();
    KCXMLElement writtenAgain;
    ASSERT_EQ(again.window.WriteToXML(writtenAgain), 0);
    EXPECT_TRUE(written == writtenAgain);
    EXPECT_EQ(again.window.GetNumControls(), 9u);
}

TEST(Window, ChangesItsSkinByTheControlsNames) {
    sWINDOW window;
    KCGUIControl& knob = window.Control("Gain");
    const std::string skin = "<GUI Width=\"500\" Height=\"200\"><Theme accent=\"#FF0000\"/><Controls>" +
                             KnobXML("Gain", "300 100 90 90", "Gain") + "</Controls></GUI>";
    EXPECT_EQ(window.window.UpdateFromXML(skin.c_str()), 0) << Problems(window.window);
    EXPECT_EQ(window.window.GetSize(), (KUSize<double>{500, 200}));
    EXPECT_EQ(window.window.GetTheme().accent, (KUColor{255, 0, 0, 255}));
    EXPECT_EQ(&window.Control("Gain"), &knob);
    EXPECT_EQ(window.window.FindControlAt({340, 140}), &knob);
    EXPECT_EQ(window.window.GetNumControls(), 9u);
    EXPECT_EQ(window.window.UpdateFromXML(nullptr), kErr_NullArgument);
}

TEST(Window, ClosesTwiceAndAnswersAfterwards) {
    sWINDOW window;
    window.window.Close();
    window.window.Close();
    EXPECT_FALSE(window.window.MouseDown(Down(40, 40)));
    EXPECT_FALSE(window.window.Key(Key(PluginViewManager::kKey_Tab)));
    window.window.Idle(1.0);
    CStandardGUI_X::Writer writer;
    EXPECT_EQ(window.window.Draw(writer), kErr_Generic);
    EXPECT_EQ(window.window.DrawDirty(writer), kErr_Generic);
    KCXMLElement element;
    EXPECT_EQ(window.window.WriteToXML(element), kErr_Generic);
    EXPECT_TRUE(writer.GetStreamMemObj().IsEmpty());
}

TEST(Window, AddsItsParametersToTheLinkGroupsThatItNames) {
    kvTest::RecordingAlgorithm algorithm(Params());
    algorithm.FinishCreate();
    algorithm.GetLinkGroups()->SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName("Absolute"), true, false);
    CStandardGUI_X window;
    const auto linked = [](const char* name, const char* rect, const char* param) {
        return std::string("<Control Class=\"Knob\" Name=\"") + name + "\" Rect=\"" + rect +
               "\"><ParameterList><Parameter Name=\"" + param + "\" LinkGroups=\"1\"/></ParameterList></Control>";
    };
    ASSERT_EQ(
        window.Create(algorithm,
                      WindowXML(linked("A", "0 0 50 50", "Tone") + linked("B", "50 0 50 50", "Width")).c_str()),
        0);
    window.MouseDown(Down(25, 25));
    window.MouseDrag(DragTo(25, 5));
    window.MouseUp(Up(25, 5));
    EXPECT_GT(algorithm.GetParamState(kTone), algorithm.GetParamInitialState(kTone));
    EXPECT_NEAR(algorithm.GetParamState(kTone), algorithm.GetParamState(kWidth), 1.0);
}

TEST(WindowDescription, DrawableWithAMistakeStaysAndItsMistakeIsNamed) {
    const sWINDOW window(WindowXML("", "\n<Drawable Rect='0 0 20 20' Color='red'/>\n<Drawable Text='nowhere'/>"));
    EXPECT_EQ(window.result, kErr_BadDescription);
    const std::vector<sDESCRIPTION_PROBLEM>& problems = window.window.GetProblems();
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_EQ(problems[0].Line, 3);
    EXPECT_EQ(problems[0].Text, "Color is a colour (#RRGGBB or #RRGGBBAA), not \"red\"");
    EXPECT_EQ(problems[1].Line, 4);
    EXPECT_EQ(problems[1].Text, "a Drawable needs a Rect");
    KCXMLElement written;
    window.window.WriteToXML(written);
    EXPECT_NE(written.FindChild("Drawables")->FindChild("Drawable"), nullptr);
}

TEST(WindowDescription, ControlWithoutAPlaceIsReportedAndKept) {
    sWINDOW window(WindowXML("<Control Class='Knob' Name='Lost'><ParameterList><Parameter Name='Gain'/>"
                             "</ParameterList></Control>"));
    ASSERT_EQ(window.window.GetProblems().size(), 1u);
    EXPECT_EQ(window.window.GetProblems()[0].Text, "without a Rect nobody will see the control \"Lost\"");
    EXPECT_EQ(window.window.GetNumControls(), 1u);
}

} // namespace
