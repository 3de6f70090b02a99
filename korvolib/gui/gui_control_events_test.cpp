#include <limits>

#include <gtest/gtest.h>

#include <korvolib/gui/gui_control_test_internal.h>
#include <tests/support/allocation_count.h>

namespace kvTest {
namespace {

using namespace kvKorvo;
using namespace PluginViewManager;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

using GUIControlEvents = OneControl;

// Press -----------------------------------------------------------------------------------------------------------

TEST_F(GUIControlEvents, APressSetsAndAReleaseSetsAgain) {
    Add(0, kRegister_SetOnPress).SetFixedState(1000.0);
    Add(0, kRegister_SetOnRelease).SetFixedState(250.0);
    EXPECT_TRUE(Press());
    EXPECT_EQ(State(0), 1000.0);
    Up(KEModifier::Shift); // held only now: the button comes up all the same
    EXPECT_EQ(State(0), 250.0);
    EXPECT_EQ(Count("touch 0"), 1u);
    EXPECT_EQ(Count("release 0"), 1u);
}

TEST_F(GUIControlEvents, NextAndPreviousGoRoundTheEnds) {
    Add(1, kRegister_NextOnPress);
    Add(1, kRegister_PreviousOnPress, KEModifier::Alt);
    const double step = alg.GetStateStep(1);
    for (int k = 1; k <= 4; ++k) {
        Press();
        EXPECT_EQ(State(1), k * step);
    }
    Press();
    EXPECT_EQ(State(1), 0.0);
    Press(At(60, 120, KEModifier::Alt));
    EXPECT_EQ(State(1), 4 * step);
}

TEST_F(GUIControlEvents, PlaceSetsWhatLiesUnderThePointerUpIsMore) {
    Add(0, kRegister_Place);
    Press(At(60, 70)); // 50 of 200 pixels from the top
    EXPECT_DOUBLE_EQ(State(0), 750.0);
    control.m_direction = KEControlDirection::Horizontal;
    Press(At(35, 70)); // 25 of 100 from the left
    EXPECT_DOUBLE_EQ(State(0), 250.0);
}

TEST_F(GUIControlEvents, PlaceInAPadFollowsTheRegisteredDirectionOrTheRole) {
    control.m_direction = KEControlDirection::Both;
    Add(0, kRegister_Place).SetRole(KCFixedString<31>("X"));
    Add(2, kRegister_Place).SetRegisterFlag(kRegister_DragVertical, true);
    Press(At(35, 70));
    EXPECT_DOUBLE_EQ(State(0), 250.0);
    EXPECT_DOUBLE_EQ(State(2), 750.0);
}

TEST_F(GUIControlEvents, PrimaryAndDoubleClickRestoreTheResetStateAsAGesture) {
    alg.SetParamResetState(0, 300.0);
    Add(0, kRegister_DragVertical).SetRegisterFlag(kRegister_ResetOnDoubleClick, true);
    Add(0, kRegister_ResetOnPress, KEModifier::Primary);
    Press(At(60, 120, KEModifier::Primary));
    EXPECT_EQ(State(0), 300.0);
    Up();
    Press();
    Drag(0.0, 50.0);
    Up();
    EXPECT_EQ(State(0), 550.0);
    KCEventData twice = At(60, 120);
    twice.numClicks = 2;
    alg.TakeLog();
    Press(twice);
    EXPECT_EQ(State(0), 300.0);
    Up();
    EXPECT_EQ(Count("touch 0"), 1u);
    EXPECT_EQ(Count("release 0"), 1u);
}

TEST_F(GUIControlEvents, ADisplayOnlyControlTakesNoPress) {
    Add(0, kRegister_Display);
    EXPECT_FALSE(Press());
    EXPECT_FALSE(control.IsInGesture());
    EXPECT_TRUE(alg.log.empty());
}

TEST_F(GUIControlEvents, TheRightButtonAsksForTheMenuAndBeginsNoGesture) {
    Add(1, kRegister_DragVertical).SetRegisterFlag(kRegister_Menu, true);
    EXPECT_TRUE(Press(At(60, 120, KEModifier::Secondary)));
    EXPECT_FALSE(control.IsInGesture());
    EXPECT_TRUE(alg.log.empty());
    control.SetControlFlag(kControl_IgnoreRightClick, true);
    EXPECT_FALSE(Press(At(60, 120, KEModifier::Secondary)));
}

TEST_F(GUIControlEvents, TheMenuListsTheStatesAndAChoiceMovesThere) {
    Add(1, kRegister_Menu);
    KCControlPopupMenuHandler* const menu = control.GetControlPopupMenuHandler();
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->GetNumChoices(), 5);
    EXPECT_EQ(menu->GetCurrentChoice(), 0);
    Execute(control.DoControlPopupMenuSelf(3));
    EXPECT_EQ(menu->GetCurrentChoice(), 3);
    KCFixedString<63> text, value;
    menu->GetChoiceText(3, text);
    alg.GetParamValueString(1, value);
    EXPECT_STREQ(text.c_str(), value.c_str());
    for (const int32_t outside : {-1, 5}) {
        Execute(control.DoControlPopupMenuSelf(outside));
        menu->GetChoiceText(outside, text);
        EXPECT_TRUE(text.empty());
    }
    EXPECT_EQ(menu->GetCurrentChoice(), 3);
}

TEST_F(GUIControlEvents, TheMenuShowsNumbersWithTheirUnits) {
    Add(1, kRegister_Menu);
    alg.GetParam(1)->SetUnitsString(KCFixedString<63>("dB/oct"));
    KCFixedString<63> text;
    control.GetControlPopupMenuHandler()->GetChoiceText(3, text);
    EXPECT_STREQ(text.c_str(), "3 dB/oct");
}

TEST_F(GUIControlEvents, AContinuousParameterHasNoMenu) {
    Add(0, kRegister_Menu);
    EXPECT_EQ(control.GetControlPopupMenuHandler(), nullptr);
    Execute(control.DoControlPopupMenuSelf(0));
    EXPECT_TRUE(alg.log.empty());
}

// Wheel and keys ----------------------------------------------------------------------------------------------

TEST_F(GUIControlEvents, ANotchOfTheWheelIsTheNextDifferentState) {
    Add(1, kRegister_Wheel);
    Wheel(1.0);
    EXPECT_EQ(State(1), alg.GetStateStep(1));
    Wheel(2.0);
    EXPECT_EQ(State(1), 3 * alg.GetStateStep(1));
    Wheel(-1.0);
    EXPECT_EQ(State(1), 2 * alg.GetStateStep(1));
}

TEST_F(GUIControlEvents, PartsOfNotchesAddUpUntilTheWheelTurnsRound) {
    Add(1, kRegister_Wheel);
    for (int i = 0; i < 3; ++i)
        Wheel(0.25);
    EXPECT_EQ(State(1), 0.0);
    EXPECT_TRUE(alg.log.empty());
    Wheel(0.25);
    EXPECT_EQ(State(1), alg.GetStateStep(1));
    Wheel(0.75);
    Wheel(-0.5);
    EXPECT_EQ(State(1), alg.GetStateStep(1));
    Wheel(-0.5);
    EXPECT_EQ(State(1), 0.0);
}

TEST_F(GUIControlEvents, AnAbsurdWheelStopsAtTheEnd) {
    Add(0, kRegister_Wheel);
    Wheel(1e300);
    Wheel(kNotANumber);
    EXPECT_LE(State(0), 1000.0);
    EXPECT_GT(State(0), 0.0);
}

TEST_F(GUIControlEvents, KeysStepPageAndGoToTheEnds) {
    Add(0, kRegister_Keys);
    EXPECT_TRUE(Key(kKey_Up));
    const double one = State(0);
    EXPECT_GT(one, 0.0);
    EXPECT_TRUE(Key(kKey_Right));
    EXPECT_NEAR(State(0), 2 * one, 1e-9);
    Key(kKey_Down);
    Key(kKey_Left);
    EXPECT_NEAR(State(0), 0.0, 1e-9);
    Key(kKey_PageUp);
    EXPECT_NEAR(State(0), 10 * one, 1e-9);
    Key(kKey_End);
    EXPECT_EQ(State(0), 1000.0);
    Key(kKey_PageDown);
    EXPECT_NEAR(State(0), 1000.0 - 10 * one, 1e-9);
    Key(kKey_Home);
    EXPECT_EQ(State(0), 0.0);
}

TEST_F(GUIControlEvents, KeysOfOtherMeaningsAndModifiersAreNotTaken) {
    Add(0, kRegister_Keys);
    EXPECT_FALSE(Key('a'));
    EXPECT_FALSE(Key(kKey_Tab));
    EXPECT_FALSE(Key(kKey_Up, KEModifier::Alt));
    EXPECT_TRUE(alg.log.empty());
}

TEST_F(GUIControlEvents, TheControlsOwnKeysComeFirst) {
    Add(0, kRegister_Keys);
    control.takesKeys = true;
    EXPECT_TRUE(Key(kKey_Up));
    EXPECT_EQ(State(0), 0.0);
}

TEST_F(GUIControlEvents, ArrowsInAPadMoveWhatLiesAlongThem) {
    control.m_direction = KEControlDirection::Both;
    Add(0, kRegister_Keys).SetRegisterFlag(kRegister_DragHorizontal, true);
    Add(2, kRegister_Keys).SetRegisterFlag(kRegister_DragVertical, true);
    Key(kKey_Right);
    EXPECT_GT(State(0), 0.0);
    EXPECT_EQ(State(2), 0.0);
    Key(kKey_Left);
    Key(kKey_Up);
    EXPECT_EQ(State(0), 0.0);
    EXPECT_GT(State(2), 0.0);
}

// Text ------------------------------------------------------------------------------------------------------------

TEST_F(GUIControlEvents, AnAcceptedTextMovesTheParameter) {
    Add(0, kRegister_Text);
    bool isAccepted = false;
    EXPECT_EQ(control.WhichParamIndexCanEnterText(), 0u);
    Execute(control.EnterText(0, KCFixedString<31>("2.5"), isAccepted));
    EXPECT_TRUE(isAccepted);
    EXPECT_DOUBLE_EQ(alg.GetParamRealWorld(0), 2.5);
}

TEST_F(GUIControlEvents, ARefusedTextKeepsTheOldValueAndSaysSo) {
    Add(0, kRegister_Text);
    bool isAccepted = true;
    Execute(control.EnterText(0, KCFixedString<31>("loud"), isAccepted));
    EXPECT_FALSE(isAccepted);
    EXPECT_TRUE(alg.log.empty());
}

TEST_F(GUIControlEvents, TheTextThatStandsThereChangesNothing) {
    Add(0, kRegister_Text);
    Execute(alg.UpdateParamRequestRealWorld(0, 1.23));
    KCFixedString<63> text;
    control.GetValueWinText(0, text);
    alg.TakeLog();
    bool isAccepted = false;
    Execute(control.EnterText(0, text, isAccepted));
    EXPECT_TRUE(isAccepted);
    EXPECT_TRUE(alg.log.empty());
}

TEST_F(GUIControlEvents, TextIsRefusedWhereNoRegistrationTakesIt) {
    Add(0, kRegister_Display);
    EXPECT_FALSE(control.CanEnterText());
    EXPECT_EQ(control.WhichParamIndexCanEnterText(), kNoParam);
    for (const size_t registration : {size_t{0}, size_t{1}}) {
        bool isAccepted = true;
        Execute(control.EnterText(registration, KCFixedString<31>("1"), isAccepted));
        EXPECT_FALSE(isAccepted);
    }
}

// Hover, disabled, hidden -----------------------------------------------------------------------------------

TEST_F(GUIControlEvents, AHoverSetsThePlaceAfterItsDelayAsAWholeGesture) {
    Add(0, kRegister_SetOnHover).SetHoverDelay(300.0);
    KCEventData event = At(60, 120);
    event.type = KEEventType::MouseOver;
    event.timeSeconds = 10.0;
    Execute(control.MouseOver(event, redraw));
    event.timeSeconds = 10.25;
    Execute(control.MouseOver(event, redraw));
    EXPECT_EQ(State(0), 0.0);
    event.timeSeconds = 10.5;
    Execute(control.MouseOver(event, redraw));
    EXPECT_DOUBLE_EQ(State(0), 500.0);
    EXPECT_EQ(Count("touch 0"), 1u);
    EXPECT_EQ(Count("release 0"), 1u);
    event.type = KEEventType::MouseOut;
    Execute(control.MouseOver(event, redraw));
    EXPECT_FALSE(control.IsHovering());
    EXPECT_FALSE(control.IsHighlighted());
}

TEST_F(GUIControlEvents, ADisabledOrHiddenControlTakesNoInput) {
    Add(0, kRegister_DragVertical).SetRegisterFlag(kRegister_Wheel, true);
    control.GetParamData(0)->SetRegisterFlag(kRegister_Keys, true);
    control.GetParamData(0)->SetRegisterFlag(kRegister_Text, true);
    for (const bool isHidden : {false, true}) {
        isHidden ? control.Hide() : control.SetDisabled();
        bool isAccepted = true;
        EXPECT_FALSE(Press());
        Drag(0.0, 50.0);
        Wheel(3.0);
        EXPECT_FALSE(Key(kKey_Up));
        Execute(control.EnterText(0, KCFixedString<31>("1"), isAccepted));
        EXPECT_FALSE(isAccepted);
        control.ClearDisabled();
    }
    EXPECT_TRUE(alg.log.empty());
}

// Drag and drop -----------------------------------------------------------------------------------------------

TEST_F(GUIControlEvents, MoreThanThreePixelsOnEitherAxisCarry) {
    KCEventData event = At(10, 10);
    event.position = {13.0, 7.0};
    EXPECT_FALSE(KCGUIControl::IsDragDropDistance(event));
    event.position = {10.0, 13.5};
    EXPECT_TRUE(KCGUIControl::IsDragDropDistance(event));
    event.position = {6.5, 10.0};
    EXPECT_TRUE(KCGUIControl::IsDragDropDistance(event));
}

TEST_F(GUIControlEvents, ADragAndDropCarriesTheDragValueAndSetsTheDropValue) {
    Add(0, kRegister_DragAndDrop).GetRegisterInfo().SetDragDropValues(700.0, -1.0);
    EXPECT_TRUE(Press());
    KCEventData event = At(60, 120);
    event.position.x += 3.0;
    Execute(control.MouseDrag(event, 3.0, 0.0, redraw));
    EXPECT_FALSE(control.IsDragDropping());
    event.position.x += 1.0;
    Execute(control.MouseDrag(event, 1.0, 0.0, redraw));
    EXPECT_TRUE(control.IsDragDropping());
    EXPECT_EQ(control.GetCarriedState(), 700.0);
    EXPECT_TRUE(control.DragDropMove(event, 700.0));
    Execute(control.DragDropStop(event, 700.0, redraw));
    EXPECT_EQ(State(0), 700.0);
    event.position = {0.0, 0.0};
    EXPECT_FALSE(control.DragDropMove(event, 700.0));
    Up();
    EXPECT_FALSE(control.IsDragDropping());
}

// Memory ----------------------------------------------------------------------------------------------------------

TEST_F(GUIControlEvents, NoEventAllocatesAfterTheFirst) {
    Add(0, kRegister_DragVertical).SetRegisterFlag(kRegister_Wheel, true);
    control.GetParamData(0)->SetRegisterFlag(kRegister_Keys, true);
    control.keepsNotes = false;
    alg.log.reserve(100000);
    const auto all = [this] {
        Press();
        Drag(1.0, 7.0);
        Up();
        Wheel(1.0);
        Key(kKey_Up);
    };
    all();
    home.marked.clear();
    control.UpdateRedrawControl();
    alg.TakeLog();
    alg.log.reserve(1000);
    AllocationCount count;
    all();
    const size_t taken = count.Taken();
    // The algorithm of this test writes texts of its own: those of more than 15 characters would count, none is.
    EXPECT_EQ(taken, 0u);
}

} // namespace
} // namespace kvTest
