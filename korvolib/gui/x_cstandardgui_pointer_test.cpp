#include <korvolib/gui/x_cstandardgui.h>

#include <string>

#include <gmock/gmock.h>

#include <korvolib/gui/window_test_internal.h>

namespace {

using namespace kvWindowTest;
using testing::ElementsAre;

constexpr double kKnobX = 40, kKnobY = 45;    // the middle of the knob "Gain"
constexpr double kFaderX = 100, kFaderY = 70; // and of the fader "Pan"

// ---- Wheel
// -------------------------------------------------------------------------------------------------------

TEST(WindowWheel, NotchIsAWholeGesture) {
    sWINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    EXPECT_TRUE(window.window.MouseWheel(Over(kKnobX, kKnobY), 0, 1));
    EXPECT_THAT(window.algorithm.log, ElementsAre("touch 0", "apply 0", "modified A", "notify 0", "release 0"));
    EXPECT_EQ(history.GetNumSteps(), before + 1);
    EXPECT_FALSE(window.window.MouseWheel(Over(398, 298), 0, 1));
}

TEST(WindowWheel, DuringADragBelongsToIt) {
    sWINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.MouseWheel(Over(kFaderX, kFaderY), 0, 1);
    EXPECT_EQ(history.GetNumSteps(), before);
    window.window.MouseUp(Up(kKnobX, kKnobY));
    EXPECT_EQ(history.GetNumSteps(), before + 1);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(Count(window.algorithm.log, "touch 0"), 1u);
    EXPECT_EQ(Count(window.algorithm.log, "touch 1"), 0u);
}

// ---- Fingers
// -----------------------------------------------------------------------------------------------------

TEST(WindowTouch, EachFingerHoldsItsControl) {
    sWINDOW window;
    const double pan = window.State(kPan);
    EXPECT_TRUE(window.window.TouchDown(Finger(KEEventType::TouchDown, 7, kKnobX, kKnobY)));
    EXPECT_TRUE(window.window.TouchDown(Finger(KEEventType::TouchDown, 9, kFaderX, kFaderY)));
    EXPECT_TRUE(window.window.TouchDrag(Finger(KEEventType::TouchDrag, 7, kKnobX, kKnobY - 20)));
    EXPECT_TRUE(window.window.TouchDrag(Finger(KEEventType::TouchDrag, 9, kFaderX, kFaderY - 20)));
    EXPECT_GT(window.State(kGain), 0.0);
    EXPECT_GT(window.State(kPan), pan);
    EXPECT_TRUE(window.window.TouchUp(Finger(KEEventType::TouchUp, 7, kKnobX, kKnobY - 20)));
    EXPECT_FALSE(window.window.TouchDrag(Finger(KEEventType::TouchDrag, 7, kKnobX, kKnobY)));
    EXPECT_TRUE(window.window.TouchUp(Finger(KEEventType::TouchUp, 9, kFaderX, kFaderY - 20)));
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

TEST(WindowTouch, ControlIsHeldByOnePointer) {
    sWINDOW window;
    window.window.TouchDown(Finger(KEEventType::TouchDown, 1, kKnobX, kKnobY));
    EXPECT_FALSE(window.window.TouchDown(Finger(KEEventType::TouchDown, 2, kKnobX, kKnobY)));
    EXPECT_FALSE(window.window.MouseDown(Down(kKnobX, kKnobY)));
    window.window.TouchUp(Finger(KEEventType::TouchUp, 1, kKnobX, kKnobY));
    EXPECT_THAT(window.algorithm.log, ElementsAre("touch 0", "release 0"));
}

TEST(WindowTouch, ThatIsCancelledEndsAsItStands) {
    sWINDOW window;
    window.window.TouchDown(Finger(KEEventType::TouchDown, 1, kKnobX, kKnobY));
    EXPECT_FALSE(window.window.TouchUp(Finger(KEEventType::TouchCancel, 1, kKnobX, kKnobY)));
    EXPECT_THAT(window.algorithm.log, ElementsAre("touch 0", "release 0"));
}

TEST(WindowTouch, MoreFingersThanAHandHasAreIgnored) {
    std::string controls;
    for (size_t i = 0; i <= CStandardGUI_X::kMaxFingers; ++i)
        controls += KnobXML("K", std::to_string(30 * i).append(" 0 30 30").c_str(), "Gain");
    sWINDOW window(WindowXML(controls));
    for (size_t i = 0; i <= CStandardGUI_X::kMaxFingers; ++i)
        EXPECT_EQ(window.window.TouchDown(Finger(KEEventType::TouchDown, static_cast<int64_t>(i),
                                                 30.0 * static_cast<double>(i) + 15, 15)),
                  i < CStandardGUI_X::kMaxFingers);
    window.window.Close();
}

TEST(WindowTouch, PinchIsAWholeGestureAndPartOfOneThatHolds) {
    sWINDOW window;
    KCEventData pinch = Finger(KEEventType::TouchPinch, 3, kKnobX, kKnobY);
    pinch.pinchScale = 1.2;
    EXPECT_TRUE(window.window.TouchPinch(pinch));
    EXPECT_EQ(Count(window.algorithm.log, "touch 0"), 1u);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    window.window.TouchDown(Finger(KEEventType::TouchDown, 3, kKnobX, kKnobY));
    EXPECT_TRUE(window.window.TouchPinch(pinch));
    EXPECT_TRUE(window.window.TouchLongDown(Finger(KEEventType::TouchLongDown, 3, kKnobX, kKnobY)));
    window.window.TouchUp(Finger(KEEventType::TouchUp, 3, kKnobX, kKnobY));
    EXPECT_EQ(Count(window.algorithm.log, "touch 0"), 2u);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_FALSE(window.window.TouchLongDown(Finger(KEEventType::TouchLongDown, 3, kKnobX, kKnobY)));
}

// ---- Hovering
// ----------------------------------------------------------------------------------------------------

TEST(WindowHover, EntersAndLeavesControls) {
    sWINDOW window;
    EXPECT_TRUE(window.window.MouseOver(Over(kKnobX, kKnobY, 1.0)));
    EXPECT_TRUE(window.Control("Gain").IsHovering());
    EXPECT_TRUE(window.Control("Gain").IsHighlighted());
    EXPECT_TRUE(window.window.MouseOver(Over(kFaderX, kFaderY, 2.0)));
    EXPECT_FALSE(window.Control("Gain").IsHovering());
    EXPECT_FALSE(window.Control("Gain").IsHighlighted());
    EXPECT_TRUE(window.Control("Pan").IsHovering());
    EXPECT_FALSE(window.window.MouseOver(At(KEEventType::MouseOut, kFaderX, kFaderY)));
    EXPECT_FALSE(window.Control("Pan").IsHovering());
    EXPECT_TRUE(window.algorithm.log.empty());
}

std::string HoverXML(const char* delay) {
    return WindowXML(std::string("<Control Class=\"Fader\" Name=\"A\" Rect=\"0 0 40 100\"><ParameterList>"
                                 "<Parameter Name=\"Gain\"><Register Type=\"SetOnHover\" Delay=\"") +
                     delay + "\"/></Parameter></ParameterList></Control>");
}

TEST(WindowHover, SetsTheParameterAfterTheDelayThoughThePointerRests) {
    sWINDOW window(HoverXML("300"));
    window.window.MouseOver(Over(20, 50, 10.0));
    window.window.Idle(10.29);
    EXPECT_TRUE(window.algorithm.log.empty());
    window.window.Idle(10.31);
    EXPECT_GT(window.State(kGain), 200.0);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(Count(window.algorithm.log, "apply 0"), 1u);
    window.window.Idle(10.5);
    EXPECT_EQ(Count(window.algorithm.log, "apply 0"), 1u);
}

TEST(WindowHover, StayIsOneStep) {
    sWINDOW window(HoverXML("0"));
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    for (int i = 1; i < 10; ++i)
        window.window.MouseOver(Over(20, 100 - 7 * i, i));
    EXPECT_EQ(history.GetNumSteps(), before);
    window.window.MouseOver(Over(200, 200, 20.0));
    EXPECT_EQ(history.GetNumSteps(), before + 1);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

// ---- Drag and drop
// -----------------------------------------------------------------------------------------------

std::string CarryXML() {
    const auto carrier = [](const char* name, const char* rect, const char* param) {
        return std::string("<Control Class=\"Label\" Name=\"") + name + "\" Rect=\"" + rect +
               "\"><ParameterList><Parameter Name=\"" + param +
               "\"><Register Type=\"DragAndDrop\"/></Parameter></ParameterList></Control>";
    };
    return WindowXML(carrier("From", "0 0 50 50", "Tone") + carrier("To", "100 0 50 50", "Width") +
                     KnobXML("Other", "200 0 50 50", "Gain"));
}

TEST(WindowDragAndDrop, CarriesAStateToAnotherControl) {
    sWINDOW window(CarryXML());
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    auto* chain = window.algorithm.UpdateParamState(kTone, 800.0, false);
    window.algorithm.ExecuteAndDisposeBuffer(chain);
    window.algorithm.log.clear();
    EXPECT_TRUE(window.window.MouseDown(Down(25, 25)));
    window.window.MouseDrag(DragTo(120, 25));
    EXPECT_TRUE(window.Control("To").IsHighlighted());
    window.window.MouseUp(Up(120, 25));
    EXPECT_FALSE(window.Control("To").IsHighlighted());
    EXPECT_NEAR(window.State(kWidth), 800.0, 1.0);
    EXPECT_EQ(window.State(kTone), 800.0);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(history.GetNumSteps(), before + 1);
}

TEST(WindowDragAndDrop, CountsFromTheFourthPixel) {
    sWINDOW window(CarryXML());
    window.window.MouseDown(Down(49, 25));
    window.window.MouseDrag(DragTo(52, 25));
    EXPECT_FALSE(window.Control("From").IsDragDropping());
    window.window.MouseDrag(DragTo(52.5, 25));
    EXPECT_TRUE(window.Control("From").IsDragDropping());
    window.window.MouseUp(Up(220, 25)); // the knob takes nothing
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(Count(window.algorithm.log, "apply 0"), 0u);
}

TEST(WindowDragAndDrop, LostPointerDropsNothing) {
    sWINDOW window(CarryXML());
    window.window.MouseDown(Down(25, 25));
    window.window.MouseDrag(DragTo(120, 25));
    window.window.MouseLost();
    EXPECT_FALSE(window.Control("To").IsHighlighted());
    EXPECT_EQ(Count(window.algorithm.log, "apply 4"), 0u);
}

} // namespace
