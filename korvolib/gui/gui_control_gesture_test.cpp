#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvolib/gui/gui_control_test_internal.h>

namespace kvTest {
namespace {

using namespace kvKorvo;
using namespace PluginViewManager;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

using GUIControlGesture = OneControl;

// Gestures --------------------------------------------------------------------------------------------------------

TEST_F(GUIControlGesture, AGestureTouchesEachParameterOnceAndReleasesItOnce) {
    Add(0, kRegister_DragVertical);
    Add(0, kRegister_DragHorizontal);
    Add(1, kRegister_DragVertical);
    Add(2, kRegister_Display);
    Press();
    Drag(5.0, 5.0);
    Drag(5.0, 5.0);
    EXPECT_EQ(Count("touch 0"), 1u);
    EXPECT_EQ(Count("touch 1"), 1u);
    EXPECT_EQ(Count("release 0"), 0u);
    Up();
    EXPECT_EQ(Count("release 0"), 1u);
    EXPECT_EQ(Count("release 1"), 1u);
    EXPECT_EQ(Count("touch 2"), 0u);
    EXPECT_FALSE(control.IsInGesture());
}

TEST_F(GUIControlGesture, ADragTouchesWhatAModifierBringsInLater) {
    Add(0, kRegister_DragVertical);
    Add(2, kRegister_DragVertical, KEModifier::Shift);
    Press();
    EXPECT_EQ(Count("touch 2"), 0u);
    Drag(0.0, 5.0, KEModifier::Shift);
    EXPECT_EQ(Count("touch 2"), 1u);
    Up();
    EXPECT_EQ(Count("release 2"), 1u);
}

TEST_F(GUIControlGesture, TwoPressesAndTwoReleasesStayBalanced) {
    Add(0, kRegister_DragVertical);
    Press();
    Press();
    EXPECT_EQ(Count("touch 0"), 2u);
    EXPECT_EQ(Count("release 0"), 1u);
    Up();
    Up();
    EXPECT_EQ(Count("release 0"), 2u);
}

TEST_F(GUIControlGesture, WhatEndsAGestureFromOutsideReleases) {
    Add(0, kRegister_DragVertical);
    const std::vector<std::function<void()>> ends = {[this] { control.Hide(); }, [this] { control.SetDisabled(); },
                                                     [this] { control.Release(); },
                                                     [this] { control.UnRegister(0); }};
    size_t numGestures = 0;
    for (const auto& end : ends) {
        control.Show();
        control.ClearDisabled();
        Press();
        ++numGestures;
        end();
        EXPECT_EQ(Count("touch 0"), numGestures);
        EXPECT_EQ(Count("release 0"), numGestures);
        Up();
        EXPECT_EQ(Count("release 0"), numGestures);
    }
}

TEST_F(GUIControlGesture, ADestroyedControlReleasesWhatItHeld) {
    {
        TestControl shortLived;
        shortLived.SetRect(Rect::FromOrigin({0, 0}, {50, 50}));
        shortLived.Register(&alg, 0, KCRegisterInfo(kRegister_DragVertical));
        bool isHandled = false;
        Execute(shortLived.MouseDown(At(5, 5), redraw, isHandled));
        EXPECT_TRUE(isHandled);
        TestControl copy(shortLived);
        EXPECT_FALSE(copy.IsInGesture());
    }
    EXPECT_EQ(Count("touch 0"), 1u);
    EXPECT_EQ(Count("release 0"), 1u);
}

TEST_F(GUIControlGesture, AParameterThatDisablesItsControlDuringADragEndsTheGesture) {
    Add(0, kRegister_DragVertical);
    alg.onApply = [this](size_t) {
        alg.GetParam(0)->UpdateDisabledMode(1);
        control.UpdateDisabledMode();
    };
    Press();
    Drag(0.0, 20.0);
    EXPECT_TRUE(control.IsDisabled());
    EXPECT_FALSE(control.IsInGesture());
    EXPECT_EQ(Count("touch 0"), Count("release 0"));
}

TEST_F(GUIControlGesture, WheelKeyTextAndMenuAreWholeGestures) {
    Add(1, kRegister_Wheel);
    control.GetParamData(0)->SetRegisterFlag(kRegister_Keys, true);
    control.GetParamData(0)->SetRegisterFlag(kRegister_Text, true);
    control.GetParamData(0)->SetRegisterFlag(kRegister_Menu, true);
    bool isAccepted = false;
    const std::vector<std::function<void()>> events = {
        [this] { Wheel(1.0); }, [this] { Key(kKey_Up); },
        [&] { Execute(control.EnterText(0, KCFixedString<31>("0"), isAccepted)); },
        [this] { Execute(control.DoControlPopupMenuSelf(3)); }};
    for (const auto& event : events) {
        alg.TakeLog();
        event();
        ASSERT_FALSE(alg.log.empty());
        EXPECT_EQ(alg.log.front(), "touch 1");
        EXPECT_EQ(alg.log.back(), "release 1");
        EXPECT_EQ(Count("touch 1"), 1u);
        EXPECT_EQ(Count("release 1"), 1u);
    }
}

TEST_F(GUIControlGesture, AWheelDuringADragLeavesTheDragsTouch) {
    Add(0, kRegister_DragVertical).SetRegisterFlag(kRegister_Wheel, true);
    Press();
    Wheel(1.0);
    EXPECT_EQ(Count("release 0"), 0u);
    Up();
    EXPECT_EQ(Count("touch 0"), 1u);
    EXPECT_EQ(Count("release 0"), 1u);
}

// Anything in any order -----------------------------------------------------------------------------------------

class RandomEvents : public OneControl, public ::testing::WithParamInterface<uint32_t> {
  protected:
    uint32_t Below(uint32_t count) { return static_cast<uint32_t>(random() % count); }
    KCEventData AnyEvent() {
        KCEventData event = At(Below(130), Below(240));
        event.type = Below(8) == 0 ? KEEventType::MouseOut : KEEventType::MouseOver;
        event.numClicks = 1 + static_cast<int32_t>(Below(2));
        event.timeSeconds = m_time += Below(3);
        event.pinchScale = 0.5 + 0.25 * Below(5);
        event.key = Below(2) == 0 ? kKey_Left + Below(8) : Below(128);
        for (uint32_t modifier = 0; modifier < kNumModifiers; ++modifier)
            event.modifiers.Set(static_cast<KEModifier>(modifier), Below(5) == 0);
        if (Below(50) == 0)
            event.position.x = kNotANumber;
        return event;
    }
    void Pointer(const KCEventData& event) {
        bool isHandled = false;
        const double dx = Below(60) - 30.0, dy = Below(60) - 30.0;
        switch (Below(8)) {
        case 0:
            return Execute(control.MouseDown(event, redraw, isHandled));
        case 1:
            return Execute(control.MouseUp(event, redraw));
        case 2:
            return Execute(control.TouchDown(event, redraw, isHandled));
        case 3:
            return Execute(control.TouchUp(event, redraw));
        case 4:
            return Execute(control.TouchDrag(event, dx, dy, redraw));
        case 5:
            return Execute(control.MouseOver(event, redraw));
        default:
            return Execute(control.MouseDrag(event, dx, dy, redraw));
        }
    }
    void Other(const KCEventData& event) {
        bool first = false, second = false;
        switch (Below(6)) {
        case 0:
            return Execute(control.MouseWheel(event, Below(3) - 1.0, Below(5) / 2.0 - 1.0, redraw));
        case 1:
            return Execute(control.TouchPinchGesture(event, redraw));
        case 2:
            return Execute(control.HandleKeyEvent(event, first, second));
        case 3:
            return Execute(control.EnterText(Below(8), KCFixedString<31>(Below(2) == 0 ? "3" : "x"), first));
        case 4:
            return Execute(control.DoControlPopupMenuSelf(static_cast<int32_t>(Below(7)) - 1));
        default:
            return Execute(control.DragDropStop(event, Below(1200) - 100.0, redraw));
        }
    }
    void Change() {
        switch (Below(5)) {
        case 0:
            return control.SetControlFlag(kControl_Hidden, Below(2) == 0);
        case 1:
            return control.SetControlFlag(kControl_Disabled, Below(2) == 0);
        case 2:
            return control.Release();
        case 3:
            return static_cast<void>(control.UnRegister(Below(12)));
        default:
            return Register();
        }
    }
    void Register() {
        const auto type = static_cast<ERegisterType>(Below(kRegister_Controller));
        KUModifiers modifiers;
        if (Below(3) == 0)
            modifiers.Set(static_cast<KEModifier>(Below(kNumModifiers)), true);
        (void)control.Register(&alg, Below(3), KCRegisterInfo(type, modifiers));
    }
    double m_time = 0.0;
    std::mt19937 random{GetParam()};
};

TEST_P(RandomEvents, GesturesStayBalancedAndParametersInRange) {
    for (int i = 0; i < 12; ++i)
        Register();
    for (int i = 0; i < 3000; ++i) {
        const uint32_t kind = Below(20);
        const KCEventData event = AnyEvent();
        kind == 0 ? Change() : kind < 14 ? Pointer(event) : Other(event);
        for (size_t param = 0; param < 3; ++param)
            ASSERT_TRUE(State(param) >= 0.0 && State(param) <= 1000.0) << "event " << i;
    }
    control.Release();
    for (const char* param : {" 0", " 1", " 2"}) {
        EXPECT_EQ(Count(std::string("touch") + param), Count(std::string("release") + param));
        EXPECT_GT(Count(std::string("touch") + param), 0u);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEvents, ::testing::Range(1u, 9u));

} // namespace
} // namespace kvTest
