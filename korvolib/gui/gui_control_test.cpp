// State, place, redraw marks and dependents of a control.
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include <korvolib/gui/gui_control_test_internal.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

class GUIControl : public OneControl {
  protected:
    // Settles the marks; how many there were.
    size_t Settle() {
        const size_t numMarked = home.marked.size();
        for (KCGUIControl* marked : home.marked)
            marked->UpdateRedrawControl();
        home.marked.clear();
        return numMarked;
    }
};

TEST_F(GUIControl, IsMarkedOnceUntilItHasBeenDrawn) {
    control.SetNeedToRedrawControl();
    control.SetNeedToRedrawControl();
    control.OnNeedToDraw();
    EXPECT_EQ(home.marked, std::vector<KCGUIControl*>{&control});
    EXPECT_TRUE(control.NeedToRedrawControl());
    Settle();
    EXPECT_FALSE(control.NeedToRedrawControl());
    control.SetNeedToRedrawControlOnly();
    EXPECT_EQ(Settle(), 1u);
}

TEST_F(GUIControl, MarksItsDependentsAlsoInACircle) {
    TestControl second, third;
    for (TestControl* other : {&second, &third}) {
        other->SetHome(&home);
        other->UpdateRedrawControl();
    }
    control.AddDependentPtr(&second);
    control.AddDependentPtr(&second);
    control.AddDependentPtr(&control);
    control.AddDependentPtr(nullptr);
    EXPECT_EQ(control.GetControlDependentsVector().size(), 1u);
    second.AddDependentPtr(&third);
    third.AddDependentPtr(&control);
    control.SetNeedToRedrawControl();
    EXPECT_EQ(Settle(), 3u);
    second.SetNeedToRedrawControlOnly();
    EXPECT_EQ(Settle(), 1u);
    control.ClearDependentsList();
    control.SetNeedToRedrawControl();
    EXPECT_EQ(Settle(), 1u);
}

TEST_F(GUIControl, DependentsAreReachedThroughControlsThatAreMarkedAlready) {
    TestControl second, third;
    third.UpdateRedrawControl();
    control.SetNeedToRedrawControlOnly();
    second.SetNeedToRedrawControlOnly();
    control.AddDependentPtr(&second);
    second.AddDependentPtr(&third);
    control.SetNeedToRedrawControl();
    EXPECT_TRUE(third.NeedToRedrawControl());
}

TEST_F(GUIControl, AChainOfManyDependentsIsNoStackOfCalls) {
    std::vector<std::unique_ptr<TestControl>> chain;
    for (int i = 0; i < 2000; ++i) {
        chain.push_back(std::make_unique<TestControl>());
        chain.back()->UpdateRedrawControl();
        if (i > 0)
            chain[static_cast<size_t>(i) - 1]->AddDependentPtr(chain.back().get());
    }
    chain.front()->SetNeedToRedrawControl();
    EXPECT_TRUE(chain.back()->NeedToRedrawControl());
}

TEST_F(GUIControl, AParameterThatMovesMarksItWhoeverMovedIt) {
    Add(0, kRegister_Display);
    Settle();
    Execute(alg.UpdateParamState(0, 400.0, false));
    EXPECT_EQ(home.marked, std::vector<KCGUIControl*>{&control});
    EXPECT_EQ(control.numPointerUpdates, 1);
    EXPECT_EQ(control.GetParamData(0)->GetValue(), 400.0);
}

TEST_F(GUIControl, TheRectangleToRedrawGrowsByAControlThatChanged) {
    Add(0, kRegister_DragVertical);
    Settle();
    Press();
    EXPECT_TRUE(redraw.IsEmpty());
    Drag(0.0, 10.0);
    EXPECT_EQ(redraw, control.GetBounds());
}

TEST_F(GUIControl, IsDisabledByItsAuthorOrByAllOfItsParameters) {
    Add(0, kRegister_DragVertical);
    Add(1, kRegister_DragVertical);
    EXPECT_FALSE(control.IsDisabled());
    alg.GetParam(0)->UpdateDisabledMode(1);
    control.UpdateDisabledMode();
    EXPECT_FALSE(control.IsDisabled());
    alg.GetParam(1)->UpdateDisabledMode(2);
    control.UpdateDisabledMode();
    EXPECT_TRUE(control.IsDisabled());
    control.SetDisabled();
    alg.GetParam(0)->UpdateDisabledMode(0);
    control.UpdateDisabledMode();
    EXPECT_TRUE(control.IsDisabled());
    control.ClearDisabled();
    EXPECT_FALSE(control.IsDisabled());
    EXPECT_FALSE(control.GetControlFlag(kControl_Disabled));
}

TEST_F(GUIControl, WhatChangesItsLookMarksIt) {
    const std::vector<std::function<void()>> changes = {[this] { control.SetDisabled(); },
                                                        [this] { control.ClearDisabled(); },
                                                        [this] { control.Hide(); },
                                                        [this] { control.Show(); },
                                                        [this] { control.SetControlHighlightInfo(true); },
                                                        [this] {
                                                            control.SetBkgColor({1, 2, 3});
                                                        },
                                                        [this] { control.SetSelection(1); },
                                                        [this] { control.Move(1.0, 0.0); },
                                                        [this] { control.Resize(10.0, 10.0); }};
    Settle();
    for (size_t i = 0; i < changes.size(); ++i) {
        changes[i]();
        EXPECT_EQ(Settle(), 1u) << "change " << i;
    }
    control.SetControlHighlightInfo(true);
    control.Show();
    EXPECT_EQ(Settle(), 0u);
}

TEST_F(GUIControl, AHiddenOneIsNotHitNorOneThatHidesWhileDisabled) {
    EXPECT_TRUE(control.IsPointInside({10, 20}));
    EXPECT_FALSE(control.IsPointInside({110, 20}));
    control.Hide();
    EXPECT_FALSE(control.IsPointInside({10, 20}));
    control.Show();
    control.m_disableMode = KEDisableMode::Hide;
    EXPECT_TRUE(control.IsPointInside({10, 20}));
    control.SetDisabled();
    EXPECT_FALSE(control.IsPointInside({10, 20}));
    EXPECT_FALSE(control.IsVisible());
}

TEST_F(GUIControl, StandsAtItsRectangleMovedByItsOffset) {
    control.SetRectOffset({5, -5});
    EXPECT_EQ(control.GetBounds(), Rect::FromOrigin({15, 15}, {100, 200}));
    control.Move(1, 1);
    control.Resize(30, 40);
    EXPECT_EQ(control.GetRect(), Rect::FromOrigin({11, 21}, {30, 40}));
    EXPECT_TRUE(control.DoYouIntersect(Rect::FromOrigin({0, 0}, {17, 17})));
    EXPECT_FALSE(control.DoYouIntersect(Rect::FromOrigin({0, 0}, {16, 16})));
}

TEST_F(GUIControl, PlacesThatAreNoneLeaveItWhereItIs) {
    const Rect before = control.GetRect();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    control.Move(nan, 0.0);
    control.Resize(-1.0, 5.0);
    control.Resize(std::numeric_limits<double>::infinity(), 5.0);
    control.SetDragSensitivity(nan);
    EXPECT_EQ(control.GetRect(), before);
    EXPECT_EQ(control.GetDragSensitivity(), 1.0);
}

TEST_F(GUIControl, ThePixelRangeFollowsItsDirectionAndIsAtLeastOne) {
    EXPECT_EQ(control.GetPixelRange(), 200);
    control.m_direction = KEControlDirection::Horizontal;
    EXPECT_EQ(control.GetPixelRange(), 100);
    control.Resize(0.0, 0.0);
    EXPECT_EQ(control.GetPixelRange(), 1);
    control.Resize(1e6, 1e6);
    EXPECT_EQ(control.GetPixelRange(), 32767);
}

TEST_F(GUIControl, AClickIsAShareOfTheMovementRectangle) {
    EXPECT_EQ(control.CalcRelativeClickPoint(At(35, 170)), (KUPoint<double>{0.25, 0.75}));
    EXPECT_EQ(control.CalcRelativeClickPoint(At(-50, 1000)), (KUPoint<double>{0.0, 1.0}));
    control.Resize(0.0, 0.0);
    EXPECT_EQ(control.CalcRelativeClickPoint(At(35, 170)), (KUPoint<double>{0.0, 0.0}));
}

TEST_F(GUIControl, RectanglesOfRegistrationsStandInTheWindow) {
    sTEXT_WIN value;
    value.rect = Rect::FromOrigin({1, 2}, {3, 4});
    Add(0, kRegister_Display).SetValueWin(value);
    EXPECT_EQ(control.GetValueRect(0), Rect::FromOrigin({11, 22}, {3, 4}));
    EXPECT_TRUE(control.GetValueRect(1).IsEmpty());
    EXPECT_TRUE(control.GetImageRect(1).IsEmpty());
}

TEST_F(GUIControl, ThePointerShowsWhatAPressWouldDo) {
    const KCEventData event = At(60, 120);
    EXPECT_EQ(control.ChangeCursor(event), KECursor::Arrow);
    Add(0, kRegister_NextOnPress);
    EXPECT_EQ(control.ChangeCursor(event), KECursor::Hand);
    Add(0, kRegister_Text);
    EXPECT_EQ(control.ChangeCursor(event), KECursor::Text);
    Add(0, kRegister_DragVertical);
    EXPECT_EQ(control.ChangeCursor(event), KECursor::UpDown);
    Add(1, kRegister_DragHorizontal);
    EXPECT_EQ(control.ChangeCursor(event), KECursor::Move);
    control.SetDisabled();
    EXPECT_EQ(control.ChangeCursor(event), KECursor::Arrow);
}

TEST_F(GUIControl, QueriesOfTheBaseAreFalse) {
    EXPECT_FALSE(control.ControlHandlesMultiSelect());
    EXPECT_FALSE(control.ShouldDrawTopmost());
    EXPECT_FALSE(control.ShouldAcceptMouseWheelEvent(At(0, 0)));
}

TEST_F(GUIControl, ACopyFollowsTheSameParametersAndStandsInNoListOrGesture) {
    Add(0, kRegister_DragVertical);
    Press();
    control.SetNext(&control);
    control.SetSelection(1);
    TestControl copy(control);
    EXPECT_EQ(copy.GetSelection(), 0);
    EXPECT_EQ(control.GetSelection(), 1);
    EXPECT_EQ(copy.GetNext(), nullptr);
    EXPECT_EQ(copy.GetHome(), nullptr);
    EXPECT_EQ(copy.GetRect(), control.GetRect());
    Execute(alg.UpdateParamState(0, 400.0, false));
    EXPECT_EQ(copy.GetParamData(0)->GetValue(), 400.0);
    Up();
    EXPECT_EQ(Count("release 0"), 1u);
}

TEST_F(GUIControl, TellsPeopleItsNameAndState) {
    control.SetName(KCFixedString<127>("Input"));
    control.SetDisabled();
    KCFixedString<255> text;
    control.DebugControl(text);
    EXPECT_NE(std::string(text.c_str()).find("\"Input\" disabled"), std::string::npos);
}

} // namespace
} // namespace kvTest
