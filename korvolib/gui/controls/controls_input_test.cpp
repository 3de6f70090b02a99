// What each control answers to without registrations of its own, and what is special with it.

#include <korvolib/gui/controls/button.h>
#include <korvolib/gui/controls/controls_test_internal.h>
#include <korvolib/gui/controls/value_text.h>

namespace kvTest {
namespace {

using namespace PluginViewManager;

constexpr char kGain[] = R"(<Parameter Name="Gain"/>)";
constexpr char kMode[] = R"(<Parameter Name="Mode"/>)";

// Knob, fader
// ------------------------------------------------------------------------------------------------------

TEST(Knob, AnswersToUprightDragsTheWheelAndADoubleClick) {
    ControlsAlgorithm algorithm;
    const auto knob = MakeControl(algorithm, "Knob", R"(Rect="0 0 80 96")", kGain);
    Drag(algorithm, *knob, 50.0, 2.0);
    EXPECT_EQ(algorithm.GetParamState(0), 502.0);
    KURect<double> redraw;
    Execute(algorithm, knob->MouseWheel(At(40.0, 40.0), 0.0, 1.0, redraw));
    EXPECT_GT(algorithm.GetParamState(0), 502.0);
    KCEventData second = At(40.0, 40.0);
    second.numClicks = 2;
    Press(algorithm, *knob, second);
    Lift(algorithm, *knob, second);
    EXPECT_EQ(algorithm.GetParamState(0), algorithm.GetParamResetState(0));
}

TEST(Knob, TurnsWithSidewaysDragsWhereItsDirectionSaysSo) {
    ControlsAlgorithm algorithm;
    const auto lying = MakeControl(algorithm, "Knob", R"(Rect="0 0 80 96" Direction="Horizontal")", kGain);
    Drag(algorithm, *lying, 2.0, 50.0);
    EXPECT_EQ(algorithm.GetParamState(0), 502.0);
    const auto both = MakeControl(algorithm, "Knob", R"(Rect="0 0 80 96" Direction="Both")", kGain);
    Drag(algorithm, *both, 2.0, 1.0);
    EXPECT_EQ(algorithm.GetParamState(0), 505.0);
}

TEST(Fader, MovesAlongItsDirection) {
    ControlsAlgorithm algorithm;
    const auto upright = MakeControl(algorithm, "Fader", R"(Rect="0 0 40 200")", kGain);
    Drag(algorithm, *upright, 50.0, 2.0);
    EXPECT_EQ(algorithm.GetParamState(0), 502.0);
    const auto lying = MakeControl(algorithm, "Fader", R"(Rect="0 0 200 40" Direction="Horizontal")", kGain);
    Drag(algorithm, *lying, -2.0, 50.0);
    EXPECT_EQ(algorithm.GetParamState(0), 500.0);
}

TEST(Fader, APressOnTheTrackPlacesTheCapWhereADescriptionAsksForIt) {
    ControlsAlgorithm algorithm;
    const auto fader = MakeControl(algorithm, "Fader", R"(Rect="0 0 40 200")",
                                   R"(<Parameter Name="Gain"><Register Type="Place"/></Parameter>)");
    const KURect<double> travel = fader->GetMovementRect();
    Click(algorithm, *fader, 20.0, travel.top);
    EXPECT_DOUBLE_EQ(algorithm.GetParamState(0), 1000.0);
    Click(algorithm, *fader, 20.0, travel.top + travel.GetHeight() * 0.75);
    EXPECT_NEAR(algorithm.GetParamState(0), 250.0, 1e-9);
}

// Button
// -----------------------------------------------------------------------------------------------------------

TEST(Button, TogglesAndIsLitWhileTheParameterIsOn) {
    ControlsAlgorithm algorithm;
    const auto button = MakeControl<KCButton>(algorithm, "Button", R"(Rect="0 0 80 24")", kMode);
    EXPECT_FALSE(button->IsLit());
    EXPECT_TRUE(Click(algorithm, *button, 10.0, 10.0));
    EXPECT_EQ(algorithm.GetParamState(2), 1.0);
    EXPECT_TRUE(button->IsLit());
    for (int click = 0; click < 3; ++click)
        Click(algorithm, *button, 10.0, 10.0);
    EXPECT_FALSE(button->IsLit());
}

TEST(Button, OfARadioChoiceIsLitInItsOwnStateOnly) {
    ControlsAlgorithm algorithm;
    const auto radio = [&](const char* state) {
        return MakeControl<KCButton>(algorithm, "Button", R"(Rect="0 0 80 24" Group="1")",
                                     std::string(R"(<Parameter Name="Mode" FixedState=")") + state +
                                         R"("><Register Type="SetOnPress"/></Parameter>)");
    };
    const auto first = radio("0");
    const auto third = radio("2");
    EXPECT_TRUE(first->IsLit());
    Click(algorithm, *third, 10.0, 10.0);
    EXPECT_EQ(algorithm.GetParamState(2), 2.0);
    EXPECT_TRUE(third->IsLit());
    EXPECT_FALSE(first->IsLit());
    Click(algorithm, *third, 10.0, 10.0);
    EXPECT_TRUE(third->IsLit());
}

TEST(Button, OfAMomentActsWhileItIsHeld) {
    ControlsAlgorithm algorithm;
    const auto button = MakeControl<KCButton>(
        algorithm, "Button", R"(Rect="0 0 80 24")",
        R"(<Parameter Name="Gain" FixedState="1000"><Register Type="SetOnPress"/></Parameter>)"
        R"(<Parameter Name="Gain" FixedState="500"><Register Type="SetOnRelease"/></Parameter>)");
    Press(algorithm, *button, At(10.0, 10.0));
    EXPECT_EQ(algorithm.GetParamState(0), 1000.0);
    EXPECT_TRUE(button->IsLit());
    Lift(algorithm, *button, At(10.0, 10.0));
    EXPECT_EQ(algorithm.GetParamState(0), 500.0);
    EXPECT_FALSE(button->IsLit());
}

// Menu
// -------------------------------------------------------------------------------------------------------------

TEST(Menu, StepsOnAndBackRoundTheEnds) {
    ControlsAlgorithm algorithm;
    const auto menu = MakeControl(algorithm, "Menu", R"(Rect="0 0 120 24")", kMode);
    EXPECT_TRUE(Click(algorithm, *menu, 115.0, 12.0));
    EXPECT_EQ(algorithm.GetParamState(2), 1.0);
    Click(algorithm, *menu, 60.0, 12.0);
    EXPECT_EQ(algorithm.GetParamState(2), 2.0);
    for (const double expected : {1.0, 0.0, 3.0}) {
        Click(algorithm, *menu, 5.0, 12.0);
        EXPECT_EQ(algorithm.GetParamState(2), expected);
    }
}

TEST(Menu, AStepIsOneGesture) {
    ControlsAlgorithm algorithm;
    const auto menu = MakeControl(algorithm, "Menu", R"(Rect="0 0 120 24")", kMode);
    algorithm.TakeLog();
    Click(algorithm, *menu, 115.0, 12.0);
    const std::vector<std::string> log = algorithm.TakeLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), "touch 2"), 1);
    EXPECT_EQ(std::count(log.begin(), log.end(), "release 2"), 1);
}

TEST(Menu, AFingerStepsToo) {
    ControlsAlgorithm algorithm;
    const auto menu = MakeControl(algorithm, "Menu", R"(Rect="0 0 120 24")", kMode);
    KURect<double> redraw;
    bool isHandled = false;
    algorithm.TakeLog();
    Execute(algorithm, menu->TouchDown(At(115.0, 12.0), redraw, isHandled));
    Execute(algorithm, menu->TouchUp(At(115.0, 12.0), redraw));
    EXPECT_EQ(algorithm.GetParamState(2), 1.0);
    const std::vector<std::string> log = algorithm.TakeLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), "touch 2"), std::count(log.begin(), log.end(), "release 2"));
}

TEST(Menu, OffersAllStatesToTheViewAndTakesAChoice) {
    ControlsAlgorithm algorithm;
    const auto menu = MakeControl(algorithm, "Menu", R"(Rect="0 0 120 24")", kMode);
    ASSERT_NE(menu->GetControlPopupMenuHandler(), nullptr);
    EXPECT_EQ(menu->GetControlPopupMenuHandler()->GetNumChoices(), 4);
    Execute(algorithm, menu->DoControlPopupMenuSelf(3));
    EXPECT_EQ(algorithm.GetParamState(2), 3.0);
}

TEST(Menu, WhenDisabledStaysWhereItIs) {
    ControlsAlgorithm algorithm;
    const auto menu = MakeControl(algorithm, "Menu", R"(Rect="0 0 120 24")", kMode);
    menu->SetDisabled();
    EXPECT_FALSE(Click(algorithm, *menu, 115.0, 12.0));
    EXPECT_EQ(algorithm.GetParamState(2), 0.0);
}

// XY pad
// -----------------------------------------------------------------------------------------------------------

constexpr char kPad[] = R"(<Parameter Name="Gain" Role="X"/><Parameter Name="Level" Role="Y"/>)";

TEST(XYPad, EachParameterFollowsItsAxis) {
    ControlsAlgorithm algorithm;
    algorithm.SetState(1, 500.0);
    const auto pad = MakeControl(algorithm, "XYPad", R"(Rect="0 0 200 200")", kPad);
    Drag(algorithm, *pad, 2.0, -1.0);
    EXPECT_EQ(algorithm.GetParamState(0), 502.0);
    EXPECT_EQ(algorithm.GetParamState(1), 499.0);
}

TEST(XYPad, MovesFinelyWithShiftAlongBothAxes) {
    ControlsAlgorithm algorithm;
    algorithm.SetState(1, 500.0);
    const auto pad = MakeControl(algorithm, "XYPad", R"(Rect="0 0 200 200")", kPad);
    Drag(algorithm, *pad, 2.0, -1.0, KEModifier::Shift);
    EXPECT_NEAR(algorithm.GetParamState(0), 500.2, 1e-9);
    EXPECT_NEAR(algorithm.GetParamState(1), 499.9, 1e-9);
}

TEST(XYPad, ArrowKeysMoveAlongTheirAxes) {
    ControlsAlgorithm algorithm;
    algorithm.SetState(1, 500.0);
    const auto pad = MakeControl(algorithm, "XYPad", R"(Rect="0 0 200 200")", kPad);
    EXPECT_TRUE(PressKey(algorithm, *pad, kKey_Right));
    EXPECT_GT(algorithm.GetParamState(0), 500.0);
    EXPECT_EQ(algorithm.GetParamState(1), 500.0);
    const double x = algorithm.GetParamState(0);
    EXPECT_TRUE(PressKey(algorithm, *pad, kKey_Down));
    EXPECT_LT(algorithm.GetParamState(1), 500.0);
    EXPECT_EQ(algorithm.GetParamState(0), x);
    EXPECT_FALSE(PressKey(algorithm, *pad, 'a'));
}

TEST(XYPad, APressPlacesBothWhereADescriptionAsksForIt) {
    ControlsAlgorithm algorithm;
    const auto pad = MakeControl(algorithm, "XYPad", R"(Rect="0 0 200 200")",
                                 R"(<Parameter Name="Gain" Role="X"><Register Type="Place"/></Parameter>)"
                                 R"(<Parameter Name="Level" Role="Y"><Register Type="Place"/></Parameter>)");
    const KURect<double> travel = pad->GetMovementRect();
    Click(algorithm, *pad, travel.left, travel.top);
    EXPECT_EQ(algorithm.GetParamState(0), 0.0);
    EXPECT_EQ(algorithm.GetParamState(1), 1000.0);
}

// What takes no input
// ------------------------------------------------------------------------------------------------

TEST(Label, AndLevelPlotTakeNoInput) {
    ControlsAlgorithm algorithm;
    for (const char* className : {"Label", "LevelPlot"}) {
        const auto control = MakeControl(algorithm, className, R"(Rect="0 0 80 80")", kGain);
        EXPECT_FALSE(Click(algorithm, *control, 10.0, 10.0));
        EXPECT_FALSE(PressKey(algorithm, *control, kKey_Up));
        EXPECT_EQ(algorithm.GetParamState(0), 500.0);
    }
}

} // namespace
} // namespace kvTest
