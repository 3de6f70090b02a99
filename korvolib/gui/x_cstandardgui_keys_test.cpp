#include <korvolib/gui/x_cstandardgui.h>

#include <string>

#include <gmock/gmock.h>

#include <korvolib/gui/window_test_internal.h>

namespace {

using namespace kvWindowTest;
using namespace PluginViewManager;

constexpr double kTextX = 180, kTextY = 112; // the middle of the value text of "Tone"

TEST(WindowKeys, TabMovesTheSelectionRoundTheControlsThatKeysMove) {
    sWINDOW window;
    const size_t numStops = static_cast<size_t>(
        std::count_if(window.window.GetSelectableList().begin(), window.window.GetSelectableList().end(),
                      [](const CSelectable* each) { return each->GetSelectableFlag(kSelectable_CanBeSelected); }));
    EXPECT_GE(numStops, 5u);
    EXPECT_TRUE(window.window.Key(Key(kKey_Tab)));
    EXPECT_TRUE(window.window.IsSelected(window.Control("Gain")));
    for (size_t i = 0; i < numStops; ++i)
        EXPECT_TRUE(window.window.Key(Key(kKey_Tab)));
    EXPECT_TRUE(window.window.IsSelected(window.Control("Gain")));
    window.window.Key(Key(kKey_Tab, KEModifier::Shift));
    EXPECT_FALSE(window.window.IsSelected(window.Control("Gain")));
    EXPECT_EQ(window.window.GetNumSelectedControls(), 1u);
    EXPECT_FALSE(window.Control("Caption").GetSelectableFlag(kSelectable_CanBeSelected));
}

TEST(WindowKeys, ArrowsMoveWhatIsSelectedAsAWholeGesture) {
    sWINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    EXPECT_FALSE(window.window.Key(Key(kKey_Up))); // nothing is selected
    window.window.MouseDown(Down(40, 45));
    window.window.MouseUp(Up(40, 45));
    window.algorithm.log.clear();
    EXPECT_TRUE(window.window.Key(Key(kKey_Up)));
    EXPECT_GT(window.State(kGain), window.algorithm.GetParamInitialState(kGain));
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(Count(window.algorithm.log, "touch 0"), 1u);
    EXPECT_EQ(history.GetNumSteps(), before + 1);
}

TEST(WindowKeys, PressOnNothingSelectsNothing) {
    sWINDOW window;
    window.window.Key(Key(kKey_Tab));
    EXPECT_EQ(window.window.GetNumSelectedControls(), 1u);
    window.window.MouseDown(Down(398, 298));
    EXPECT_EQ(window.window.GetNumSelectedControls(), 0u);
}

// ---- Typed text
// --------------------------------------------------------------------------------------------------

void Click(sWINDOW& window) {
    window.window.MouseDown(Down(kTextX, kTextY));
    window.window.MouseUp(Up(kTextX, kTextY));
}

TEST(WindowText, EnterCommitsWhatWasTypedAsOneGesture) {
    sWINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    Click(window);
    EXPECT_EQ(window.window.GetTextFocus(), &window.Control("Tone Text"));
    window.algorithm.log.clear();
    EXPECT_TRUE(window.window.Text("7.5"));
    EXPECT_TRUE(window.algorithm.log.empty());
    EXPECT_TRUE(window.window.Key(Key(kKey_Enter)));
    EXPECT_EQ(window.algorithm.GetParamRealWorld(kTone), 7.5);
    EXPECT_EQ(window.window.GetTextFocus(), nullptr);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(history.GetNumSteps(), before + 1);
}

TEST(WindowText, EscapeRestores) {
    sWINDOW window;
    Click(window);
    window.window.Text("7.5");
    EXPECT_TRUE(window.window.Key(Key(kKey_Escape)));
    EXPECT_EQ(window.window.GetTextFocus(), nullptr);
    EXPECT_EQ(window.State(kTone), window.algorithm.GetParamInitialState(kTone));
}

TEST(WindowText, PressElsewhereAndTabRestoreToo) {
    sWINDOW window;
    Click(window);
    window.window.Text("7.5");
    window.window.MouseDown(Down(40, 45));
    window.window.MouseUp(Up(40, 45));
    EXPECT_EQ(window.window.GetTextFocus(), nullptr);
    Click(window);
    window.window.Text("7.5");
    window.window.Key(Key(kKey_Tab));
    EXPECT_EQ(window.window.GetTextFocus(), nullptr);
    EXPECT_EQ(window.State(kTone), window.algorithm.GetParamInitialState(kTone));
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

TEST(WindowText, CharactersMayEndALineAndAreWellFormedOrLeftOut) {
    sWINDOW window;
    Click(window);
    EXPECT_TRUE(window.window.Text("\xC3(8\xED\xA0\x80.\xF8"
                                   "25\xE2\x82\r"));
    EXPECT_FALSE(window.window.Text(nullptr));
    EXPECT_FALSE(window.window.Text(""));
    EXPECT_EQ(window.window.GetTextFocus(), nullptr);
    EXPECT_EQ(window.State(kTone), window.algorithm.GetParamInitialState(kTone)); // "(8.25" is no number
    Click(window);
    window.window.Text("\xC3"
                       "8\xED\xA0\x80.\xF8"
                       "25\xE2\x82\r");
    EXPECT_EQ(window.algorithm.GetParamRealWorld(kTone), 8.25);
}

TEST(WindowText, IsEnteredByTheControlsName) {
    sWINDOW window;
    const KCFixedString<127> name("Tone Text");
    EXPECT_TRUE(window.window.EnterText(name, KCFixedString<31>("2.5")));
    EXPECT_EQ(window.algorithm.GetParamRealWorld(kTone), 2.5);
    EXPECT_FALSE(window.window.EnterText(name, KCFixedString<31>("many")));
    EXPECT_EQ(window.algorithm.GetParamRealWorld(kTone), 2.5);
    EXPECT_FALSE(window.window.EnterText(KCFixedString<31>("Nobody"), KCFixedString<31>("1")));
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

// ---- Menus
// -------------------------------------------------------------------------------------------------------

TEST(WindowMenu, OpensWithTheRightButtonAndClosesWithAChoiceOrAPress) {
    sWINDOW window;
    const auto open = [&window] {
        EXPECT_TRUE(window.window.MouseDown(Down(180, 72, KEModifier::Secondary)));
        window.window.MouseUp(Up(180, 72));
        return window.window.GetOpenMenu();
    };
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    EXPECT_EQ(open(), &window.Control("Mode"));
    window.window.MenuChoice(KCFixedString<31>("Mode"), 3);
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    EXPECT_EQ(open(), &window.Control("Mode"));
    window.window.MouseDown(Down(398, 298));
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    open();
    window.window.Close();
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

TEST(WindowMenu, ChoiceSetsTheState) {
    sWINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    const KCFixedString<31> name("Mode");
    EXPECT_TRUE(window.window.MenuChoice(name, 2));
    EXPECT_EQ(window.algorithm.GetParamRealWorld(kMode), 2.0);
    EXPECT_FALSE(window.window.MenuChoice(name, 4));
    EXPECT_FALSE(window.window.MenuChoice(name, -1));
    EXPECT_FALSE(window.window.MenuChoice(KCFixedString<31>("Gain"), 1));
    EXPECT_EQ(window.algorithm.GetParamRealWorld(kMode), 2.0);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(history.GetNumSteps(), before + 1);
}

// ---- Between events
// ----------------------------------------------------------------------------------------------

TEST(WindowIdle, DisablesWhatTheParametersDisable) {
    sWINDOW window;
    window.algorithm.GetParam(kGain)->UpdateDisabledMode(1);
    window.window.Idle(0.0);
    EXPECT_TRUE(window.Control("Gain").IsDisabled());
    EXPECT_FALSE(window.Control("Pan").IsDisabled());
    EXPECT_EQ(window.algorithm.GetParam(kGain)->GetRefreshMark(), 0);
    window.algorithm.GetParam(kGain)->UpdateDisabledMode(0);
    window.window.Idle(0.0);
    EXPECT_FALSE(window.Control("Gain").IsDisabled());
}

TEST(WindowIdle, HidesAndShowsWithTheParameterButNotWhatTheAuthorHid) {
    sWINDOW window;
    window.Control("Pan").Hide();
    for (const size_t index : {kGain, kPan})
        window.algorithm.GetParam(index)->HideControl();
    window.window.Idle(0.0);
    EXPECT_FALSE(window.Control("Gain").IsVisible());
    for (const size_t index : {kGain, kPan})
        window.algorithm.GetParam(index)->ShowControl();
    window.window.Idle(0.0);
    EXPECT_TRUE(window.Control("Gain").IsVisible());
    EXPECT_FALSE(window.Control("Pan").IsVisible());
}

TEST(WindowIdle, EndsTheGestureOfAControlThatIsDisabled) {
    sWINDOW window;
    window.window.MouseDown(Down(40, 45));
    window.algorithm.GetParam(kGain)->UpdateDisabledMode(1);
    window.window.Idle(0.0);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_FALSE(window.window.MouseDrag(DragTo(40, 0)));
}

} // namespace
