// Events in orders that nobody means, and what happens to a parameter from elsewhere while a hand holds it.
#include <korvolib/gui/x_cstandardgui.h>

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/gui/window_test_internal.h>

namespace {

using namespace kvWindowTest;
using namespace PluginViewManager;

constexpr double kKnobX = 40, kKnobY = 45; // the middle of the knob of "Gain"

// ---- Moved from elsewhere during a drag

TEST(WindowOrders, DragGoesOnFromWhereAutomationPutTheParameter) {
    sWINDOW window;
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 1));
    window.algorithm.UpdateParamState(kGain, 200.0, false);
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 2));
    EXPECT_NEAR(window.State(kGain), 200.0, 2.0);
    window.window.MouseUp(Up(kKnobX, kKnobY - 2));
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

TEST(WindowOrders, DragGoesOnInTheSetupThatWasSwitchedTo) {
    sWINDOW window;
    window.algorithm.SetActiveSetup(kPluginSetup_B);
    window.algorithm.UpdateParamState(kGain, 800.0, false);
    window.algorithm.SetActiveSetup(kPluginSetup_A);
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 1));
    const double ofA = window.State(kGain);
    window.algorithm.SetActiveSetup(kPluginSetup_B);
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 2));
    EXPECT_NEAR(window.State(kGain), 800.0, 3.0);
    window.window.MouseUp(Up(kKnobX, kKnobY - 2));
    window.algorithm.SetActiveSetup(kPluginSetup_A);
    EXPECT_EQ(window.State(kGain), ofA);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

TEST(WindowOrders, HookMaySwitchTheSetupInADrag) {
    sWINDOW window;
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.algorithm.onApply = [&](size_t) {
        window.algorithm.onApply = nullptr;
        window.algorithm.SetActiveSetup(kPluginSetup_B);
    };
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 20));
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 40));
    window.window.MouseUp(Up(kKnobX, kKnobY - 40));
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(window.Control("Gain").GetParamData(0)->GetValue(), window.State(kGain));
}

TEST(WindowOrders, HookMayMoveTheParameterThatIsDragged) {
    sWINDOW window;
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.algorithm.onApply = [&](size_t index) {
        window.algorithm.onApply = nullptr;
        window.algorithm.UpdateParamState(index, 100.0, false);
    };
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 20));
    EXPECT_EQ(window.Control("Gain").GetParamData(0)->GetValue(), window.State(kGain));
    window.window.MouseUp(Up(kKnobX, kKnobY - 20));
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

TEST(WindowOrders, ShiftGoesDownAndUpWithoutAJump) {
    sWINDOW window;
    window.window.MouseDown(Down(kKnobX, kKnobY));
    double before = window.State(kGain);
    for (int i = 1; i <= 40; ++i) {
        const KUModifiers keys = i / 10 % 2 == 0 ? KUModifiers() : KUModifiers(KEModifier::Shift);
        window.window.MouseDrag(DragTo(kKnobX, kKnobY - i, keys));
        EXPECT_LE(std::fabs(window.State(kGain) - before), 2.0);
        before = window.State(kGain);
    }
    window.window.MouseUp(Up(kKnobX, kKnobY - 40));
    EXPECT_EQ(Count(window.algorithm.log, "touch 0"), 1u);
    EXPECT_EQ(Count(window.algorithm.log, "release 0"), 1u);
}

TEST(WindowOrders, NothingIsSentAtAnEndThatIsReached) {
    sWINDOW window;
    window.algorithm.givesBlocks = true;
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 5000));
    EXPECT_EQ(window.State(kGain), 1000.0);
    window.algorithm.log.clear();
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 6000));
    EXPECT_TRUE(window.algorithm.log.empty()) << window.algorithm.log.front();
    window.window.MouseUp(Up(kKnobX, kKnobY));
}

TEST(WindowOrders, WindowThatOpensAgainHidesWhatItsParametersHide) {
    sWINDOW window;
    window.algorithm.GetParam(kGain)->HideControl();
    window.window.Idle(0.0);
    EXPECT_FALSE(window.Control("Gain").IsVisible());
    window.window.Close();
    window.window.Create(window.algorithm, EveryClassXML().c_str());
    EXPECT_FALSE(window.Control("Gain").IsVisible());
    window.algorithm.GetParam(kGain)->ShowControl();
    window.window.Idle(0.0);
    EXPECT_TRUE(window.Control("Gain").IsVisible());
}

TEST(WindowOrders, TabPassesOverWhatTakesNoInput) {
    sWINDOW window;
    window.Control("Gain").Hide();
    window.Control("Pan").SetDisabled();
    window.window.Key(Key(kKey_Tab));
    EXPECT_FALSE(window.window.IsSelected(window.Control("Gain")));
    EXPECT_FALSE(window.window.IsSelected(window.Control("Pan")));
    EXPECT_TRUE(window.window.IsSelected(window.Control("Across")));
    window.window.Key(Key(kKey_Tab, KEModifier::Shift));
    window.window.Key(Key(kKey_Tab));
    EXPECT_TRUE(window.window.IsSelected(window.Control("Across")));
}

// ---- Keys and hovering
// ------------------------------------------------------------------------------------------------

TEST(WindowOrders, ArrowThatTheSelectedControlHasNoUseForMovesTheSelection) {
    sWINDOW window(WindowXML("<Control Class=\"ValueText\" Name=\"First\" Rect=\"0 0 50 20\"><ParameterList>"
                             "<Parameter Name=\"Gain\"><Register Type=\"Text\"/></Parameter></ParameterList>"
                             "</Control>" +
                             KnobXML("Second", "60 0 60 80", "Pan")));
    window.window.Key(Key(kKey_Tab));
    EXPECT_TRUE(window.window.Key(Key(kKey_Right)));
    EXPECT_TRUE(window.window.IsSelected(window.Control("Second")));
    const double before = window.State(kPan);
    EXPECT_TRUE(window.window.Key(Key(kKey_Right))); // the knob has
    EXPECT_TRUE(window.window.IsSelected(window.Control("Second")));
    EXPECT_GT(window.State(kPan), before);
    window.Control("Second").SetDisabled();
    EXPECT_TRUE(window.window.Key(Key(kKey_Up)));
    EXPECT_TRUE(window.window.IsSelected(window.Control("First")));
    EXPECT_FALSE(window.window.Key(Key(kKey_Down, KEModifier::Shift)));
    EXPECT_FALSE(window.window.Key(Key('x')));
}

TEST(WindowOrders, PointerThatRestsKeepsItsModifiers) {
    sWINDOW window(WindowXML("<Control Class=\"Fader\" Name=\"Hover\" Rect=\"0 0 40 200\"><ParameterList>"
                             "<Parameter Name=\"Gain\"><Register Type=\"SetOnHover\" Delay=\"100\"/>"
                             "</Parameter></ParameterList></Control>"));
    KCEventData event = Over(20, 30, 0.0);
    event.modifiers = KEModifier::Shift;
    window.window.MouseOver(event);
    window.window.Idle(1.0);
    EXPECT_TRUE(window.algorithm.log.empty());
    event.modifiers = {};
    window.window.MouseOver(event);
    window.window.Idle(2.0);
    EXPECT_FALSE(window.algorithm.log.empty());
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

} // namespace
