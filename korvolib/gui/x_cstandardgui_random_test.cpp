// Whatever hands, fingers, hosts and authors do to a window in whatever order: gestures balance, parameters stay in
// range, and the history leads back to the start.
#include <korvolib/gui/x_cstandardgui.h>

#include <limits>
#include <random>
#include <string>

#include <gmock/gmock.h>

#include <korvolib/gui/window_test_internal.h>
#include <tests/support/allocation_count.h>

namespace {

using namespace kvWindowTest;
using namespace PluginViewManager;

class Hands {
  public:
    Hands(sWINDOW& window, uint32_t seed, bool movesControls = true)
        : m_window(window), m_random(seed), m_movesControls(movesControls) {}

    void Restart(uint32_t seed) { m_random.seed(seed); }

    void DoSomething() {
        CStandardGUI_X& window = m_window.window;
        switch (UpTo(15)) {
        case 0:
            window.MouseDown(Event(KEEventType::MouseDown));
            break;
        case 1:
        case 2:
        case 3:
            window.MouseDrag(Event(KEEventType::MouseDrag));
            break;
        case 4:
            window.MouseUp(Event(UpTo(4) == 0 ? KEEventType::MouseCancel : KEEventType::MouseUp));
            break;
        case 5:
            window.MouseWheel(Event(KEEventType::MouseWheel), Delta(), Delta());
            break;
        case 6:
            window.MouseOver(Event(UpTo(4) == 0 ? KEEventType::MouseOut : KEEventType::MouseOver));
            break;
        case 7:
            window.TouchDown(Event(KEEventType::TouchDown));
            break;
        case 8:
            window.TouchDrag(Event(KEEventType::TouchDrag));
            break;
        case 9:
            window.TouchUp(Event(UpTo(4) == 0 ? KEEventType::TouchCancel : KEEventType::TouchUp));
            break;
        case 10:
            UpTo(2) == 0 ? window.TouchPinch(Event(KEEventType::TouchPinch))
                         : window.TouchLongDown(Event(KEEventType::TouchLongDown));
            break;
        case 11:
            window.Key(Event(KEEventType::Key));
            break;
        case 12:
            Type();
            break;
        default:
            Change();
        }
    }

  private:
    uint32_t UpTo(uint32_t count) { return static_cast<uint32_t>(m_random() % count); }
    double Delta() { return UpTo(20) == 0 ? Odd() : static_cast<double>(UpTo(7)) - 3.0; }
    double Odd() {
        constexpr double kOdd[] = {
            1e300,  -1e300, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(),
            1e-300, -0.0};
        return kOdd[UpTo(std::size(kOdd))];
    }
    double Coordinate(uint32_t side) { return UpTo(200) == 0 ? Odd() : UpTo(side + 20) - 10.0 + UpTo(4) * 0.25; }

    KCEventData Event(KEEventType type) {
        constexpr uint32_t kKeys[] = {kKey_Tab,   kKey_Enter, kKey_Escape, kKey_Backspace, kKey_Left, kKey_Right,
                                      kKey_Up,    kKey_Down,  kKey_PageUp, kKey_PageDown,  kKey_Home, kKey_End,
                                      kKey_Space, '5',        0x110FFF};
        KCEventData event;
        event.type = type;
        event.position = {Coordinate(400), Coordinate(300)};
        event.dragStart = {Coordinate(400), Coordinate(300)};
        if (UpTo(3) == 0)
            event.modifiers.Set(static_cast<KEModifier>(UpTo(4)), true);
        event.numClicks = UpTo(4) == 0 ? 2 : 1;
        event.key = kKeys[UpTo(std::size(kKeys))];
        event.touchID = UpTo(12);
        event.pinchScale = UpTo(10) == 0 ? Odd() : 0.5 + 0.1 * UpTo(11);
        event.timeSeconds = m_seconds += 0.1;
        return event;
    }

    void Type() {
        constexpr const char* kTexts[] = {"1.5", "-3\r", "x\xFF", "\x1B", "100", "\t", "\r"};
        m_window.window.Text(kTexts[UpTo(std::size(kTexts))]);
        KCFixedString<31> name(UpTo(2) == 0 ? "Tone Text" : "Mode");
        if (UpTo(3) == 0)
            m_window.window.EnterText(name, KCFixedString<31>(kTexts[UpTo(std::size(kTexts))]));
        if (UpTo(3) == 0)
            m_window.window.MenuChoice(name, static_cast<int32_t>(UpTo(6)) - 1);
    }

    void Change() {
        KCGUIControl& control = *m_window.window.GetControl(UpTo(9));
        sCONTROL_PARAM& param = *m_window.algorithm.GetParam(UpTo(5));
        switch (UpTo(9)) {
        case 0:
            UpTo(3) == 0 ? control.Hide() : control.Show();
            break;
        case 1:
            UpTo(3) == 0 ? control.SetDisabled() : control.ClearDisabled();
            break;
        case 2:
            param.UpdateDisabledMode(UpTo(3) == 0);
            break;
        case 3:
            UpTo(3) == 0 ? param.HideControl() : param.ShowControl();
            break;
        case 4:
            m_window.window.MouseLost();
            break;
        case 5:
            if (m_movesControls)
                control.Move(UpTo(3) - 1.0, UpTo(3) - 1.0);
            break;
        default:
            m_window.window.Idle(m_seconds);
            m_writer.ClearStream();
            UpTo(4) == 0 ? m_window.window.Draw(m_writer) : m_window.window.DrawDirty(m_writer);
        }
    }

    sWINDOW& m_window;
    std::mt19937 m_random;
    bool m_movesControls; // which finds overlaps anew
    double m_seconds = 0.0;
    CStandardGUI_X::Writer m_writer;
};

void ExpectInRange(const cALGORITHM& algorithm) {
    for (size_t index = 0; index < algorithm.GetNumParams(); ++index) {
        ASSERT_GE(algorithm.GetParamState(index), 0.0) << index;
        ASSERT_LE(algorithm.GetParamState(index), 1000.0) << index;
        ASSERT_TRUE(std::isfinite(algorithm.GetParamRealWorld(index))) << index;
    }
}

TEST(WindowRandom, GesturesBalanceParametersStayInRangeAndUndoLeadsBack) {
    for (uint32_t seed = 1; seed <= 40; ++seed) {
        sWINDOW window;
        const sHISTORY history(window.algorithm);
        (void)Undo::API::SetUndoLevel(history.manager, 5000);
        window.window.SetHistory(history.manager);
        std::vector<double> start;
        for (size_t index = 0; index < window.algorithm.GetNumParams(); ++index)
            start.push_back(window.State(index));
        Hands hands(window, seed);
        for (int i = 0; i < 500; ++i) {
            hands.DoSomething();
            ExpectInRange(window.algorithm);
        }
        window.window.Close();
        EXPECT_TRUE(IsBalanced(window.algorithm.log)) << seed;
        while (Undo::API::CanUndo(history.manager))
            ASSERT_EQ(Undo::API::ExecuteUndo(history.manager), 0);
        for (size_t index = 0; index < start.size(); ++index)
            EXPECT_EQ(window.State(index), start[index]) << "parameter " << index << ", seed " << seed;
    }
}

// Without a history, whose steps are memory.
TEST(WindowRandom, EventsAllocateNothingOnceTheWindowIsWarm) {
    sWINDOW window;
    Hands hands(window, 11, false);
    for (int i = 0; i < 3000; ++i)
        hands.DoSomething();
    window.algorithm.log.clear();
    hands.Restart(11);
    const kvTest::AllocationCount count;
    for (int i = 0; i < 3000; ++i)
        hands.DoSomething();
    EXPECT_EQ(count.Taken(), 0u);
}

} // namespace
