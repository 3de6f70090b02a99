#include <limits>

#include <gtest/gtest.h>

#include <korvolib/gui/gui_control_test_internal.h>

namespace kvTest {
namespace {

using namespace kvKorvo;
using namespace PluginViewManager;

class GUIControlTouch : public OneControl {
  protected:
    bool FingerDown(double x, double y) {
        bool isHandled = false;
        Execute(control.TouchDown(At(x, y), redraw, isHandled));
        return isHandled;
    }
    void Pinch(double scale) {
        KCEventData event = At(60, 120);
        event.pinchScale = scale;
        Execute(control.TouchPinchGesture(event, redraw));
    }
};

TEST_F(GUIControlTouch, AFingerMovesAsTheMouseDoes) {
    Add(0, kRegister_DragVertical);
    EXPECT_TRUE(FingerDown(60, 120));
    Execute(control.TouchDrag(At(60, 100), 0.0, 20.0, redraw));
    EXPECT_DOUBLE_EQ(State(0), 100.0);
    Execute(control.TouchUp(At(60, 100), redraw));
    EXPECT_EQ(Count("touch 0"), 1u);
    EXPECT_EQ(Count("release 0"), 1u);
    EXPECT_EQ(control.hooks, (std::vector<std::string>{"finger down", "finger drag", "finger up"}));
}

TEST_F(GUIControlTouch, TheDeltaCountsFromTheLastEventAndUpwards) {
    Add(0, kRegister_DragVertical);
    FingerDown(60, 120);
    EXPECT_EQ(control.GetTouchDelta(At(65, 100)), (KUPoint<double>{5.0, 20.0}));
    Execute(control.TouchDrag(At(65, 100), 5.0, 20.0, redraw));
    EXPECT_EQ(control.GetTouchDelta(At(65, 103)), (KUPoint<double>{0.0, -3.0}));
}

TEST_F(GUIControlTouch, AFingerThatComesAgainBeginsAnew) {
    Add(1, kRegister_DragVertical);
    FingerDown(60, 120);
    Execute(control.TouchDrag(At(60, 25), 0.0, 95.0, redraw));
    FingerDown(60, 120); // the lift was lost
    Execute(control.TouchDrag(At(60, 119), 0.0, 1.0, redraw));
    EXPECT_EQ(State(1), 0.0);
    Execute(control.TouchUp(At(60, 119), redraw));
    EXPECT_EQ(Count("touch 1"), 2u);
    EXPECT_EQ(Count("release 1"), 2u);
}

TEST_F(GUIControlTouch, ALongPressDoesNothing) {
    Add(0, kRegister_DragVertical);
    FingerDown(60, 120);
    alg.TakeLog();
    EXPECT_EQ(control.TouchLongDown(At(60, 120), redraw), nullptr);
    EXPECT_TRUE(alg.log.empty());
}

TEST_F(GUIControlTouch, TwiceTheDistanceOfTwoFingersIsHalfOfTheTravel) {
    Add(0, kRegister_Pinch);
    Pinch(2.0);
    EXPECT_DOUBLE_EQ(State(0), 500.0);
    Pinch(0.5);
    EXPECT_DOUBLE_EQ(State(0), 0.0);
    EXPECT_EQ(Count("touch 0"), 2u);
    EXPECT_EQ(Count("release 0"), 2u);
}

TEST_F(GUIControlTouch, AnImpossiblePinchMovesNothing) {
    Add(0, kRegister_Pinch);
    for (const double scale :
         {0.0, -2.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1.0})
        Pinch(scale);
    EXPECT_TRUE(alg.log.empty());
}

TEST_F(GUIControlTouch, AFingerThatLeavesADisabledControlIsReleasedOnce) {
    Add(0, kRegister_DragVertical);
    FingerDown(60, 120);
    control.SetDisabled();
    Execute(control.TouchUp(At(60, 120), redraw));
    EXPECT_EQ(Count("release 0"), 1u);
    EXPECT_FALSE(FingerDown(60, 120));
}

} // namespace
} // namespace kvTest
