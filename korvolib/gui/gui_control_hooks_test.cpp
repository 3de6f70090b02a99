// Hooks of a plug-in that throw, or that change the control that is at work.
#include <functional>
#include <stdexcept>

#include <gtest/gtest.h>

#include <korvolib/gui/gui_control_test_internal.h>

namespace kvTest {
namespace {

using namespace kvKorvo;
using namespace PluginViewManager;

// Its own Release throws after it has been noted.
class ThrowingRelease : public RecordingAlgorithm {
  public:
    using RecordingAlgorithm::RecordingAlgorithm;
    void Release(size_t index) override {
        RecordingAlgorithm::Release(index);
        if (doesThrow)
            throw std::runtime_error("release");
    }
    bool doesThrow = true;
};

class GUIControlHooks : public ::testing::Test {
  protected:
    GUIControlHooks() : alg(ThreeParams()) { alg.FinishCreate(); }

    void PressOn(TestControl& control) {
        control.SetRect(KURect<double>::FromOrigin({0, 0}, {100, 100}));
        for (const size_t param : {0u, 1u, 2u})
            control.Register(&alg, param, KCRegisterInfo(kRegister_DragVertical));
        KCEventData event;
        event.position = event.dragStart = {50, 50};
        KURect<double> redraw;
        bool isHandled = false;
        control.MouseDown(event, redraw, isHandled);
        alg.TakeLog();
    }
    ThrowingRelease alg;
    const std::vector<std::string> allReleased = {"release 0", "release 1", "release 2"};
};

TEST_F(GUIControlHooks, AReleaseThatThrowsLetsTheOthersGoAndPasses) {
    TestControl control;
    PressOn(control);
    EXPECT_THROW(control.Release(), std::runtime_error);
    EXPECT_EQ(alg.TakeLog(), allReleased);
    EXPECT_NO_THROW(control.Release());
}

TEST_F(GUIControlHooks, AReleaseThatThrowsEndsWithTheControl) {
    {
        TestControl control;
        PressOn(control);
    }
    EXPECT_EQ(alg.TakeLog(), allReleased);
}

TEST_F(GUIControlHooks, AParameterThatDisablesItsControlMayThrowAtTheRelease) {
    TestControl control;
    PressOn(control);
    for (const size_t param : {0u, 1u, 2u})
        alg.GetParam(param)->UpdateDisabledMode(1);
    alg.UpdateParamState(0, 700.0, false);
    EXPECT_TRUE(control.IsDisabled());
    EXPECT_TRUE(control.NeedToRedrawControl());
    EXPECT_EQ(std::count(alg.log.begin(), alg.log.end(), "release 2"), 1);
}

TEST_F(GUIControlHooks, UnregisteringGoesOnBehindAReleaseThatThrows) {
    TestControl control;
    PressOn(control);
    EXPECT_THROW(control.UnRegisterAll(), std::runtime_error);
    EXPECT_TRUE(control.GetParamDataVec().empty());
    EXPECT_EQ(alg.TakeLog(), allReleased);
    EXPECT_TRUE(alg.GetParam(0)->GetObservers().empty());
}

TEST_F(GUIControlHooks, TheFirstRegistrationsHookMayDisableTheControl) {
    alg.doesThrow = false;
    TestControl control;
    PressOn(control);
    alg.onApply = [&](size_t) { control.SetDisabled(); };
    KCEventData event;
    event.position = {50, 30};
    event.dragStart = {50, 50};
    KURect<double> redraw;
    control.MouseDrag(event, 0.0, 100.0, redraw);
    EXPECT_FALSE(control.IsInGesture());
    EXPECT_EQ(alg.GetParamState(2), alg.GetParamInitialState(2));
    control.MouseUp(event, redraw);
    for (const size_t param : {0u, 1u, 2u})
        EXPECT_TRUE(control.GetParamData(param)->ShouldSendTouch());
}

TEST_F(GUIControlHooks, AReleaseOfTheHandDoesNotWaitForTheHostsReleases) {
    alg.doesThrow = false;
    TestControl control;
    PressOn(control);
    alg.onApply = [&](size_t) { control.Release(); };
    KCEventData event;
    event.position = {50, 30};
    KURect<double> redraw;
    control.MouseDrag(event, 0.0, 100.0, redraw);
    for (const size_t param : {0u, 1u, 2u})
        EXPECT_TRUE(control.GetParamData(param)->ShouldSendTouch());
}

} // namespace
} // namespace kvTest
