#include <korvolib/gui/x_cstandardgui.h>

#include <limits>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include <korvolib/gui/window_test_internal.h>
#include <tests/support/allocation_count.h>

namespace {

using namespace kvWindowTest;
using testing::ElementsAre;

// The middle of the knob "Gain" of the window with every class.
constexpr double kKnobX = 40, kKnobY = 45;

TEST(WindowGesture, TouchesMovesAndReleases) {
    sWINDOW window;
    EXPECT_TRUE(window.window.MouseDown(Down(kKnobX, kKnobY)));
    EXPECT_TRUE(window.window.MouseDrag(DragTo(kKnobX, kKnobY - 20)));
    EXPECT_TRUE(window.window.MouseUp(Up(kKnobX, kKnobY - 20)));
    EXPECT_THAT(window.algorithm.log, ElementsAre("touch 0", "apply 0", "modified A", "notify 0", "release 0"));
    EXPECT_GT(window.State(kGain), window.algorithm.GetParamInitialState(kGain)); // up is more
}

TEST(WindowGesture, FollowsThePointerOutOfTheControl) {
    sWINDOW window;
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.MouseDrag(DragTo(350, 5000));
    EXPECT_EQ(window.State(kGain), 0.0);
    window.window.MouseUp(Up(350, 5000));
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_FALSE(window.window.MouseDrag(DragTo(kKnobX, kKnobY)));
    EXPECT_EQ(window.State(kGain), 0.0);
}

TEST(WindowGesture, PressOnNothingIsNone) {
    sWINDOW window;
    EXPECT_FALSE(window.window.MouseDown(Down(398, 298)));
    EXPECT_FALSE(window.window.MouseDrag(DragTo(kKnobX, kKnobY)));
    EXPECT_FALSE(window.window.MouseUp(Up(kKnobX, kKnobY)));
    EXPECT_TRUE(window.algorithm.log.empty());
}

TEST(WindowGesture, IgnoresWhatIsNotFinite) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kLargest = std::numeric_limits<double>::max();
    sWINDOW window;
    EXPECT_FALSE(window.window.MouseDown(Down(kNaN, kKnobY)));
    EXPECT_FALSE(window.window.MouseWheel(Over(kKnobX, kKnobY), kNaN, 1.0));
    window.window.MouseDown(Down(kKnobX, kKnobY));
    EXPECT_FALSE(window.window.MouseDrag(DragTo(kKnobX, kNaN)));
    window.window.MouseDrag(DragTo(kKnobX, kLargest));
    EXPECT_FALSE(window.window.MouseDrag(DragTo(kKnobX, -kLargest))); // the delta is beyond every number
    window.window.MouseUp(Up(kKnobX, kNaN));
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(window.State(kGain), 0.0);
}

TEST(WindowGesture, EndsWhenThePointerIsLost) {
    sWINDOW window;
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 20));
    window.window.MouseLost();
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_FALSE(window.window.MouseDrag(DragTo(kKnobX, kKnobY - 40)));
}

TEST(WindowGesture, EndsWithASecondPress) {
    sWINDOW window;
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.MouseUp(Up(kKnobX, kKnobY));
    EXPECT_THAT(window.algorithm.log, ElementsAre("touch 0", "release 0", "touch 0", "release 0"));
}

TEST(WindowGesture, EndsWithTheWindow) {
    sWINDOW window;
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.Close();
    EXPECT_THAT(window.algorithm.log, ElementsAre("touch 0", "release 0"));
    kvTest::RecordingAlgorithm algorithm(Params());
    algorithm.FinishCreate();
    {
        CStandardGUI_X gone;
        gone.Create(algorithm, EveryClassXML().c_str());
        gone.MouseDown(Down(kKnobX, kKnobY));
    }
    EXPECT_TRUE(IsBalanced(algorithm.log));
}

TEST(WindowGesture, EndsWhenItsControlTakesNoInputAnyMore) {
    for (const bool isHidden : {false, true}) {
        sWINDOW window;
        window.window.MouseDown(Down(kKnobX, kKnobY));
        if (isHidden)
            window.Control("Gain").Hide();
        else
            window.Control("Gain").SetDisabled();
        const double before = window.State(kGain);
        EXPECT_FALSE(window.window.MouseDrag(DragTo(kKnobX, kKnobY - 20)));
        EXPECT_TRUE(IsBalanced(window.algorithm.log));
        EXPECT_FALSE(window.window.MouseUp(Up(kKnobX, kKnobY - 20)));
        EXPECT_FALSE(window.window.MouseDown(Down(kKnobX, kKnobY)));
        EXPECT_FALSE(window.window.MouseWheel(Over(kKnobX, kKnobY), 0, 1));
        EXPECT_EQ(window.State(kGain), before);
    }
}

TEST(WindowGesture, ExecutesTheChainOfEachEventAndGivesTheBlocksBack) {
    sWINDOW window;
    window.algorithm.givesBlocks = true;
    static int executed;
    executed = 0;
    window.algorithm.SetHostCallback(
        [](int32_t selector, void*, intptr_t chain, intptr_t, intptr_t, intptr_t) -> intptr_t {
            auto* blocks = reinterpret_cast<cALGORITHM::BUFFER_HEADER*>(chain);
            if (selector == kHostSelector_Execute)
                ++executed;
            else if (selector == kHostSelector_Dispose)
                KPAPI_PROCESS_MEMORY::GiveBackChain(blocks);
            return 0;
        },
        nullptr);
    const size_t numFree = window.algorithm.GetProcessMemoryPool().GetNumFree();
    window.window.MouseDown(Down(kKnobX, kKnobY));
    for (int i = 1; i <= 5; ++i)
        window.window.MouseDrag(DragTo(kKnobX, kKnobY - 4 * i));
    EXPECT_EQ(executed, 5);
    EXPECT_EQ(window.algorithm.GetProcessMemoryPool().GetNumFree(), numFree);
    window.window.MouseUp(Up(kKnobX, kKnobY - 20));
}

// ---- History
// -----------------------------------------------------------------------------------------------------

TEST(WindowGesture, IsOneStepNamedByTheLeadParameter) {
    sWINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    std::vector<size_t> steps;
    window.window.SetStepListener([&steps](size_t index) { steps.push_back(index); });
    const size_t before = history.GetNumSteps();
    const double start = window.State(kGain);
    window.window.MouseDown(Down(kKnobX, kKnobY));
    for (int i = 1; i <= 10; ++i)
        window.window.MouseDrag(DragTo(kKnobX, kKnobY - 3 * i));
    EXPECT_EQ(history.GetNumSteps(), before);
    window.window.MouseUp(Up(kKnobX, kKnobY - 30));
    EXPECT_EQ(history.GetNumSteps(), before + 1);
    EXPECT_THAT(history.GetLastName(), testing::HasSubstr("Gain"));
    EXPECT_THAT(steps, ElementsAre(kGain));
    EXPECT_EQ(Undo::API::ExecuteUndo(history.manager), 0);
    EXPECT_EQ(window.State(kGain), start);
}

TEST(WindowGesture, ThatChangedNothingIsNoStep) {
    sWINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    int numSteps = 0;
    window.window.SetStepListener([&numSteps](size_t) { ++numSteps; });
    const size_t before = history.GetNumSteps();
    window.Drag(kKnobX, kKnobY, 0, 0);
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 20));
    window.window.MouseDrag(DragTo(kKnobX, kKnobY));
    window.window.MouseUp(Up(kKnobX, kKnobY));
    EXPECT_EQ(history.GetNumSteps(), before);
    EXPECT_EQ(numSteps, 0);
}

// What the host moved meanwhile is no change of the hand's.
TEST(WindowGesture, ClickAfterAutomationIsNoStep) {
    sWINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    auto* chain = window.algorithm.UpdateParamState(kPan, 900.0, false);
    window.algorithm.ExecuteAndDisposeBuffer(chain);
    window.Drag(kKnobX, kKnobY, 0, 0);
    EXPECT_EQ(history.GetNumSteps(), before);
}

TEST(WindowGesture, OfAParameterThatUndoDoesNotSaveIsNoStep) {
    struct Unsaved : kvTest::RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        bool IsParamSavableToUndo(size_t index) const override { return index != kGain; }
    };
    Unsaved algorithm(Params());
    algorithm.FinishCreate();
    CStandardGUI_X window;
    window.Create(algorithm, EveryClassXML().c_str());
    const sHISTORY history(algorithm);
    window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    window.MouseWheel(Over(kKnobX, kKnobY), 0, 1);
    EXPECT_EQ(history.GetNumSteps(), before);
    window.MouseWheel(Over(100, 70), 0, 1);
    EXPECT_EQ(history.GetNumSteps(), before + 1);
}

TEST(WindowGesture, StepsForAGestureThatTheClosedWindowCutShort) {
    sWINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    window.window.MouseDown(Down(kKnobX, kKnobY));
    window.window.MouseDrag(DragTo(kKnobX, kKnobY - 20));
    window.window.Close();
    EXPECT_EQ(history.GetNumSteps(), before + 1);
}

// ---- Hooks that misbehave
// ----------------------------------------------------------------------------------------

TEST(WindowGesture, EndsWithTheExceptionOfAHookWhichPasses) {
    sWINDOW window;
    const sHISTORY history(window.algorithm);
    window.window.SetHistory(history.manager);
    const size_t before = history.GetNumSteps();
    window.algorithm.givesBlocks = true;
    const size_t numFree = window.algorithm.GetProcessMemoryPool().GetNumFree();
    window.algorithm.onApply = [](size_t) { throw std::runtime_error("no"); };
    window.window.MouseDown(Down(kKnobX, kKnobY));
    EXPECT_THROW(window.window.MouseDrag(DragTo(kKnobX, kKnobY - 20)), std::runtime_error);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_EQ(window.algorithm.GetProcessMemoryPool().GetNumFree(), numFree);
    EXPECT_EQ(history.GetNumSteps(), before + 1); // the parameter had moved
    window.algorithm.onApply = nullptr;
    EXPECT_FALSE(window.window.MouseDrag(DragTo(kKnobX, kKnobY - 40)));
    EXPECT_FALSE(window.window.MouseUp(Up(kKnobX, kKnobY - 40)));
    window.Drag(kKnobX, kKnobY, 0, 10);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

// A pad moves two parameters with one event; the second one's hook throws.
TEST(WindowGesture, LeaksNoBlockOfTheParameterBefore) {
    sWINDOW window;
    window.algorithm.givesBlocks = true;
    const size_t numFree = window.algorithm.GetProcessMemoryPool().GetNumFree();
    for (const size_t thrower : {kTone, kWidth}) {
        window.algorithm.onApply = [thrower](size_t index) {
            if (index == thrower)
                throw std::runtime_error("no");
        };
        EXPECT_THROW(
            {
                window.window.MouseDown(Down(280, 90));
                window.window.MouseDrag(DragTo(320, 40));
            },
            std::runtime_error);
        EXPECT_EQ(window.algorithm.GetProcessMemoryPool().GetNumFree(), numFree) << thrower;
        EXPECT_TRUE(IsBalanced(window.algorithm.log));
    }
}

TEST(WindowGesture, EndsThoughTheReleaseHookThrows) {
    struct Thrower : kvTest::RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        bool throws = true;
        void Release(size_t index) override {
            RecordingAlgorithm::Release(index);
            if (throws)
                throw std::runtime_error("no");
        }
    };
    Thrower algorithm(Params());
    algorithm.FinishCreate();
    {
        CStandardGUI_X window;
        window.Create(algorithm, EveryClassXML().c_str());
        window.MouseDown(Down(280, 90));
        EXPECT_THROW(window.MouseUp(Up(280, 90)), std::runtime_error);
        EXPECT_TRUE(IsBalanced(algorithm.log));
        window.MouseDown(Down(280, 90));
        EXPECT_THROW(window.Close(), std::runtime_error);
        EXPECT_TRUE(IsBalanced(algorithm.log));
        EXPECT_EQ(window.GetNumControls(), 0u);
        window.Create(algorithm, EveryClassXML().c_str());
        window.MouseDown(Down(280, 90));
    } // a destructor keeps it to itself
    EXPECT_TRUE(IsBalanced(algorithm.log));
}

TEST(WindowGesture, TurnsAwayWhatAHookSends) {
    sWINDOW window;
    bool wasTaken = false;
    window.algorithm.onApply = [&](size_t) {
        wasTaken = wasTaken || window.window.MouseWheel(Over(100, 70), 0, 1) || window.window.MouseUp(Up(0, 0));
    };
    window.Drag(kKnobX, kKnobY, 0, -20);
    EXPECT_FALSE(wasTaken);
    EXPECT_GT(window.State(kGain), window.algorithm.GetParamInitialState(kGain));
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
}

TEST(WindowGesture, ClosesTheWindowBehindTheEventWhoseHookAskedForIt) {
    sWINDOW window;
    window.algorithm.onApply = [&](size_t) { window.window.Close(); };
    window.window.MouseDown(Down(kKnobX, kKnobY));
    EXPECT_TRUE(window.window.MouseDrag(DragTo(kKnobX, kKnobY - 20)));
    EXPECT_EQ(window.window.GetNumControls(), 0u);
    EXPECT_TRUE(IsBalanced(window.algorithm.log));
    EXPECT_FALSE(window.window.MouseUp(Up(kKnobX, kKnobY - 20)));
}

TEST(WindowGesture, AllocatesNothing) {
    sWINDOW window;
    CStandardGUI_X::Writer writer;
    const auto gesture = [&] {
        window.window.MouseOver(Over(kKnobX, kKnobY));
        window.window.MouseDown(Down(kKnobX, kKnobY));
        for (int i = 0; i < 20; ++i) {
            window.window.MouseDrag(DragTo(kKnobX, kKnobY - 15 * (i % 2)));
            writer.ClearStream();
            window.window.DrawDirty(writer);
        }
        window.window.MouseUp(Up(kKnobX, kKnobY));
        window.window.MouseWheel(Over(100, 70), 0, 1);
        window.window.Key(Key(PluginViewManager::kKey_Up));
        window.window.Idle(0.0);
    };
    window.window.Draw(writer);
    window.algorithm.log.reserve(1 << 12);
    gesture();
    window.algorithm.log.clear();
    const kvTest::AllocationCount count;
    gesture();
    EXPECT_EQ(count.Taken(), 0u);
}

} // namespace
