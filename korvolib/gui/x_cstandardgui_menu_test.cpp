#include <korvolib/gui/x_cstandardgui.h>

#include <string>

#include <gtest/gtest.h>

#include <korvolib/gui/window_test_internal.h>
#include <tests/support/allocation_count.h>

namespace {

using namespace kvWindowTest;
using namespace PluginViewManager;
using Writer = CStandardGUI_X::Writer;

/// Its menu "Mode" of four states, opened with the right button.
struct sMENU_WINDOW : sWINDOW {
    sMENU_WINDOW() { Open(); }
    void Open() {
        window.MouseDown(Down(180, 72, KEModifier::Secondary));
        window.MouseUp(Up(180, 72));
    }
    KUPoint<double> Row(int32_t choice) const {
        const KCDrawnMenu* const menu = window.GetDrawnMenu();
        return menu == nullptr ? KUPoint<double>{-1, -1} : menu->GetRowRect(choice).GetCentre();
    }
    bool Press(KUPoint<double> point) { return window.MouseDown(Down(point.x, point.y)); }
    double Mode() const { return algorithm.GetParamRealWorld(kMode); }
};

TEST(WindowDrawnMenu, PressOnARowChoosesAsOneGestureAndOneStep) {
    sMENU_WINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    ASSERT_NE(window.window.GetDrawnMenu(), nullptr);
    window.algorithm.log.clear();
    EXPECT_TRUE(window.Press(window.Row(2)));
    EXPECT_EQ(window.Mode(), 2.0);
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(Count(window.algorithm.log, "touch 2"), 1u);
    EXPECT_EQ(history.GetNumSteps(), before + 1);
    window.window.MouseDrag(DragTo(180, 0)); // the press holds nothing
    EXPECT_EQ(window.Mode(), 2.0);
}

TEST(WindowDrawnMenu, PressElsewhereClosesItAndDoesNothingElse) {
    sMENU_WINDOW window;
    window.algorithm.log.clear();
    EXPECT_TRUE(window.Press({170, 25})); // a button
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    EXPECT_TRUE(window.algorithm.log.empty());
    EXPECT_EQ(window.Mode(), 0.0);
    EXPECT_TRUE(window.Press({170, 25}));
    EXPECT_EQ(window.Mode(), 1.0);
}

TEST(WindowDrawnMenu, RightButtonOpensItAndClosesIt) {
    sMENU_WINDOW window;
    window.Open();
    EXPECT_EQ(window.window.GetDrawnMenu(), nullptr);
    window.Open();
    EXPECT_NE(window.window.GetDrawnMenu(), nullptr);
}

TEST(WindowDrawnMenu, PressOnItsEdgeChoosesNothingAndKeepsIt) {
    sMENU_WINDOW window;
    const KURect<double> rect = window.window.GetDrawnMenu()->GetRect();
    EXPECT_TRUE(window.Press({rect.left + 10, rect.top + 1}));
    EXPECT_NE(window.window.GetDrawnMenu(), nullptr);
    EXPECT_EQ(window.Mode(), 0.0);
}

TEST(WindowDrawnMenu, FingerChoosesToo) {
    sMENU_WINDOW window;
    const KUPoint<double> row = window.Row(3);
    EXPECT_TRUE(window.window.TouchDown(Finger(KEEventType::TouchDown, 1, row.x, row.y)));
    EXPECT_EQ(window.Mode(), 3.0);
}

TEST(WindowDrawnMenu, KeysHighlightAndEnterChooses) {
    sMENU_WINDOW window;
    window.algorithm.log.clear();
    EXPECT_TRUE(window.window.Key(Key(kKey_Down)));
    EXPECT_TRUE(window.window.Key(Key(kKey_Down)));
    EXPECT_TRUE(window.window.Key(Key(kKey_Up)));
    EXPECT_TRUE(window.window.Key(Key('x')));
    EXPECT_TRUE(window.algorithm.log.empty());
    EXPECT_TRUE(window.window.Key(Key(kKey_Enter)));
    EXPECT_EQ(window.Mode(), 1.0);
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
}

TEST(WindowDrawnMenu, EscapeAndTabCloseIt) {
    sMENU_WINDOW window;
    EXPECT_TRUE(window.window.Key(Key(kKey_Escape)));
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    window.Open();
    EXPECT_TRUE(window.window.Key(Key(kKey_Tab)));
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    EXPECT_FALSE(window.window.IsSelected(window.Control("Mode")));
    EXPECT_EQ(window.Mode(), 0.0);
}

TEST(WindowDrawnMenu, PointerHighlightsARowAndNothingBehindIt) {
    sMENU_WINDOW window;
    const KUPoint<double> row = window.Row(2); // over the value text
    EXPECT_TRUE(window.window.MouseOver(Over(row.x, row.y)));
    EXPECT_EQ(window.window.GetDrawnMenu()->GetHighlighted(), 2);
    for (size_t number = 0; number < window.window.GetNumControls(); ++number)
        EXPECT_FALSE(window.window.GetControl(number)->IsHighlighted());
    EXPECT_TRUE(window.window.MouseOver(Over(1, 1)));
    EXPECT_EQ(window.window.GetDrawnMenu()->GetHighlighted(), KCDrawnMenu::kNoChoice);
}

TEST(WindowDrawnMenu, WheelTurnsNothingBehindIt) {
    sMENU_WINDOW window;
    window.algorithm.log.clear();
    EXPECT_TRUE(window.window.MouseWheel(Over(40, 45), 0, 1));
    EXPECT_TRUE(window.algorithm.log.empty());
}

TEST(WindowDrawnMenu, ClosesWhenItsControlTakesNoInputAnyMore) {
    sMENU_WINDOW window;
    window.Control("Mode").SetDisabled();
    window.window.Idle(0.0);
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    window.Control("Mode").ClearDisabled();
    window.Open();
    window.Control("Mode").Hide();
    Writer writer;
    window.window.DrawDirty(writer);
    EXPECT_EQ(window.window.GetDrawnMenu(), nullptr);
}

TEST(WindowDrawnMenu, ClosesWithAnotherSkin) {
    sMENU_WINDOW window;
    window.window.UpdateFromXML(EveryClassXML().c_str());
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
}

TEST(WindowDrawnMenu, IsTheViewsWhenTheViewSaysSo) {
    sMENU_WINDOW window;
    window.window.SetDrawsMenus(false);
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    window.Open();
    EXPECT_EQ(window.window.GetOpenMenu(), &window.Control("Mode"));
    EXPECT_EQ(window.window.GetDrawnMenu(), nullptr);
    EXPECT_TRUE(window.Press({170, 25})); // goes on to the button
    EXPECT_EQ(window.window.GetOpenMenu(), nullptr);
    EXPECT_EQ(window.Mode(), 1.0);
}

// ---- Its picture
// -------------------------------------------------------------------------------------------------

size_t NumBytes(sWINDOW& window, bool isWhole) {
    Writer writer;
    isWhole ? window.window.Draw(writer) : window.window.DrawDirty(writer);
    return writer.GetStreamMemObj().GetText().size();
}

TEST(WindowDrawnMenu, IsDrawnAloneWhenItOpensAndMoves) {
    sWINDOW closed;
    const size_t whole = NumBytes(closed, true);
    sMENU_WINDOW window;
    EXPECT_GT(NumBytes(window, true), whole);
    window.window.MouseOver(Over(1, 1));
    EXPECT_TRUE(window.window.NeedsRedraw());
    EXPECT_LT(NumBytes(window, false), whole / 2);
    EXPECT_FALSE(window.window.NeedsRedraw());
    window.window.MouseOver(Over(2, 2)); // no row, as before
    EXPECT_FALSE(window.window.NeedsRedraw());
}

TEST(WindowDrawnMenu, IsDrawnAgainWhenAHostMovesItsParameter) {
    sMENU_WINDOW open;
    sWINDOW closed;
    const auto bytesAfterMove = [](sWINDOW& window) {
        NumBytes(window, true);
        auto* chain = window.algorithm.UpdateParamState(kMode, 3.0, false);
        window.algorithm.ExecuteAndDisposeBuffer(chain);
        return NumBytes(window, false);
    };
    EXPECT_GT(bytesAfterMove(open), bytesAfterMove(closed));
}

TEST(WindowDrawnMenu, LeavesNothingBehindWhenItCloses) {
    sMENU_WINDOW window;
    NumBytes(window, true);
    window.window.CloseMenu();
    EXPECT_TRUE(window.window.NeedsRedraw());
    const size_t drawn = NumBytes(window, false);
    EXPECT_EQ(drawn, NumBytes(window, true));
}

TEST(WindowDrawnMenu, AllocatesNothingOnceItHasBeenOpen) {
    sMENU_WINDOW window;
    window.window.CloseMenu();
    Writer writer;
    const auto use = [&] {
        window.Open();
        writer.ClearStream();
        window.window.Draw(writer);
        window.window.MouseOver(Over(180, 140));
        window.window.DrawDirty(writer);
        window.window.Key(Key(kKey_Down));
        window.Press(window.Row(1));
        window.Open();
        window.window.Key(Key(kKey_Escape));
    };
    use();
    window.algorithm.log.clear();
    const kvTest::AllocationCount count;
    use();
    EXPECT_EQ(count.Taken(), 0u);
}

} // namespace
