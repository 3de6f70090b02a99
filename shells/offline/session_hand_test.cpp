// What a hand does at a window, as a session writes it.
#include "session.h"

#include <gtest/gtest.h>

#include "failure.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using namespace PluginViewManager;
using Point = KUPoint<double>;

// What a drag or a release needs before it stands in the same line.
SessionAction ActionOf(const std::string& event) {
    std::string before;
    if (event.starts_with("mouse: {drag") || event.starts_with("mouse: {release") ||
        event.starts_with("mouse: release") || event.starts_with("mouse: lost"))
        before = "{at: 0, mouse: {press: Gain}}, ";
    else if (event.starts_with("touch:") && event.find("down") == std::string::npos)
        before = "{at: 0, touch: {down: Gain}}, {at: 0, touch: {down: Gain, finger: 3}}, "
                 "{at: 0, touch: {down: Gain, finger: 10}}, ";
    return ReadSession("[" + before + "{at: 0, " + event + "}]", "s.yaml").events.back().action;
}

template <class Action>
Action Only(const std::string& event) {
    return std::get<Action>(ActionOf(event));
}

KUModifiers ShiftAndAlt() {
    KUModifiers both(KEModifier::Shift);
    both.Set(KEModifier::Alt, true);
    return both;
}

TEST(SessionHand, PressesAControlInItsMiddle) {
    const auto mouse = Only<sUSE_MOUSE>("mouse: {press: Input Gain}");
    EXPECT_EQ(mouse.what, sUSE_MOUSE::KEWhat::Press);
    EXPECT_EQ(mouse.place.control, "Input Gain");
    EXPECT_EQ(mouse.place.at, (Point{0.5, 0.5}));
    EXPECT_EQ(mouse.numClicks, 1);
    EXPECT_EQ(mouse.modifiers, std::nullopt);
}

TEST(SessionHand, PressesAPointOfTheWindow) {
    const auto mouse = Only<sUSE_MOUSE>("mouse: {press: [120, 40.5], clicks: 2}");
    EXPECT_EQ(mouse.place.control, "");
    EXPECT_EQ(mouse.place.at, (Point{120, 40.5}));
    EXPECT_EQ(mouse.numClicks, 2);
}

TEST(SessionHand, PressesAPlaceOnAControl) {
    EXPECT_EQ(Only<sUSE_MOUSE>("mouse: {press: EQ, place: [0, 1]}").place.at, (Point{0, 1}));
}

TEST(SessionHand, HoldsModifiers) {
    EXPECT_EQ(Only<sUSE_MOUSE>("mouse: {press: Gain, with: Shift}").modifiers, KUModifiers(KEModifier::Shift));
    EXPECT_EQ(Only<sUSE_MOUSE>("mouse: {press: Gain, with: [Shift, Alt]}").modifiers, ShiftAndAlt());
    EXPECT_EQ(Only<sUSE_MOUSE>("mouse: {drag: [0, 1], with: []}").modifiers, KUModifiers());
    EXPECT_EQ(Only<sTURN_WHEEL>("wheel: {over: Gain, by: 1, with: Primary}").modifiers,
              KUModifiers(KEModifier::Primary));
    EXPECT_EQ(Only<sPRESS_KEY>("key: {press: Up, with: Secondary}").modifiers, KUModifiers(KEModifier::Secondary));
    EXPECT_EQ(Only<sHOVER>("hover: {over: Gain, with: Alt}").modifiers, KUModifiers(KEModifier::Alt));
}

TEST(SessionHand, DragsByPixels) {
    const auto mouse = Only<sUSE_MOUSE>("mouse: {drag: [3, -40]}");
    EXPECT_EQ(mouse.what, sUSE_MOUSE::KEWhat::Drag);
    EXPECT_EQ(mouse.by, (Point{3, -40}));
}

TEST(SessionHand, AWordIsAGestureOfItsOwn) {
    EXPECT_EQ(Only<sUSE_MOUSE>("mouse: release").what, sUSE_MOUSE::KEWhat::Release);
    EXPECT_EQ(Only<sUSE_MOUSE>("mouse: lost").what, sUSE_MOUSE::KEWhat::Lost);
    EXPECT_EQ(Only<sUSE_MOUSE>("mouse: {release: , with: Alt}").modifiers, KUModifiers(KEModifier::Alt));
    EXPECT_EQ(Only<sTOUCH>("touch: up").what, sTOUCH::KEWhat::Up);
    EXPECT_EQ(Only<sTOUCH>("touch: long").what, sTOUCH::KEWhat::Long);
}

TEST(SessionHand, ClicksOnceAndTwice) {
    EXPECT_EQ(Only<sUSE_MOUSE>("mouse: {click: Gain}").what, sUSE_MOUSE::KEWhat::Click);
    EXPECT_EQ(Only<sUSE_MOUSE>("mouse: {double click: Gain}").what, sUSE_MOUSE::KEWhat::DoubleClick);
    EXPECT_EQ(Only<sUSE_MOUSE>("mouse: {double click: Gain}").place.control, "Gain");
}

TEST(SessionHand, TurnsTheWheel) {
    EXPECT_EQ(Only<sTURN_WHEEL>("wheel: {over: Gain, by: -2}").by, (Point{0, -2}));
    EXPECT_EQ(Only<sTURN_WHEEL>("wheel: {over: [1, 2], by: [1, 0.5]}").by, (Point{1, 0.5}));
    EXPECT_EQ(Only<sTURN_WHEEL>("wheel: {over: [1, 2], by: 1}").place.at, (Point{1, 2}));
}

TEST(SessionHand, KnowsKeysByNameAndByCharacter) {
    EXPECT_EQ(Only<sPRESS_KEY>("key: Up").key, kKey_Up);
    EXPECT_EQ(Only<sPRESS_KEY>("key: PageDown").key, kKey_PageDown);
    EXPECT_EQ(Only<sPRESS_KEY>("key: Space").key, kKey_Space);
    EXPECT_EQ(Only<sPRESS_KEY>("key: a").key, uint32_t{'a'});
    EXPECT_EQ(Only<sPRESS_KEY>("key: 7").key, uint32_t{'7'});
    EXPECT_EQ(Only<sPRESS_KEY>("key: \"!\"").key, 0x21u);
    EXPECT_EQ(Only<sPRESS_KEY>("key: ä").key, 0xE4u);
    EXPECT_EQ(Only<sPRESS_KEY>("key: €").key, 0x20ACu);
    EXPECT_EQ(Only<sPRESS_KEY>("key: 𝄞").key, 0x1D11Eu);
}

TEST(SessionHand, TypesAndChooses) {
    EXPECT_EQ(Only<sTYPE_TEXT>("type: -3 dB").text, "-3 dB");
    EXPECT_EQ(Only<sTYPE_TEXT>("type: -3 dB").control, "");
    EXPECT_EQ(Only<sTYPE_TEXT>("type: {text: 1k, into: Low Cut}").text, "1k");
    EXPECT_EQ(Only<sTYPE_TEXT>("type: {text: 1k, into: Low Cut}").control, "Low Cut");
    const auto number = Only<sCHOOSE_FROM_MENU>("menu: {of: Detector, choose: 1}");
    EXPECT_EQ(number.control, "Detector");
    EXPECT_EQ(number.choice, 1);
    const auto text = Only<sCHOOSE_FROM_MENU>("menu: {of: Detector, text: RMS}");
    EXPECT_EQ(text.choice, std::nullopt);
    EXPECT_EQ(text.text, "RMS");
}

TEST(SessionHand, TouchesWithSeveralFingers) {
    const auto down = Only<sTOUCH>("touch: {down: EQ, place: [0.2, 0.4], finger: 2}");
    EXPECT_EQ(down.what, sTOUCH::KEWhat::Down);
    EXPECT_EQ(down.place.at, (Point{0.2, 0.4}));
    EXPECT_EQ(down.finger, 2);
    EXPECT_EQ(Only<sTOUCH>("touch: {drag: [1, 2]}").finger, 1);
    EXPECT_EQ(Only<sTOUCH>("touch: {drag: [1, 2]}").by, (Point{1, 2}));
    EXPECT_EQ(Only<sTOUCH>("touch: {pinch: 1.5, finger: 10}").scale, 1.5);
    EXPECT_EQ(Only<sTOUCH>("touch: {up: , finger: 3}").finger, 3);
}

TEST(SessionHand, HoversOverAControlOrAPoint) {
    EXPECT_EQ(Only<sHOVER>("hover: Gain").place.control, "Gain");
    EXPECT_EQ(Only<sHOVER>("hover: [1, 2]").place.at, (Point{1, 2}));
    EXPECT_EQ(Only<sHOVER>("hover: {over: Gain, place: [1, 0]}").place.at, (Point{1, 0}));
}

struct sDESCRIBED {
    const char* event;
    const char* text;
};

class SessionHandText : public testing::TestWithParam<sDESCRIBED> {};

TEST_P(SessionHandText, SaysWhatTheHandDoes) {
    EXPECT_EQ(DescribeAction(ActionOf(GetParam().event)), GetParam().text);
}

const sDESCRIBED kDescribed[] = {
    {"mouse: {press: Input Gain, with: [Shift, Alt]}", "press Input Gain with Shift and Alt"},
    {"mouse: {press: [1, 2.5], clicks: 2}", "press, click 2, at 1, 2.5"},
    {"mouse: {press: EQ, place: [0.5, 0.25]}", "press EQ at 0.5, 0.25"},
    {"mouse: {drag: [0, -40]}", "drag by 0, -40"},
    {"mouse: release", "release"},
    {"mouse: lost", "lose the pointer"},
    {"mouse: {click: Gain}", "click Gain"},
    {"mouse: {double click: Gain}", "double click Gain"},
    {"wheel: {over: Gain, by: 2}", "wheel by +2 over Gain"},
    {"wheel: {over: [1, 2], by: [1, -2]}", "wheel by 1, -2 at 1, 2"},
    {"key: {press: Up, with: Shift}", "key Up with Shift"},
    {"type: 1k", "type \"1k\""},
    {"type: {text: 1k, into: Low Cut}", "type \"1k\" into Low Cut"},
    {"menu: {of: Mode, choose: 2}", "choose 2 from the menu of Mode"},
    {"menu: {of: Mode, text: RMS}", "choose \"RMS\" from the menu of Mode"},
    {"touch: {down: Gain, finger: 2}", "finger 2 down on Gain"},
    {"touch: {drag: [0, 5]}", "finger 1 drags by 0, 5"},
    {"touch: long", "finger 1 stays"},
    {"touch: {pinch: 0.5}", "finger 1 pinches by 0.5"},
    {"touch: up", "finger 1 up"},
    {"hover: Gain", "hover over Gain"},
    {"hover: [1, 2]", "hover at 1, 2"},
};

INSTANTIATE_TEST_SUITE_P(Each, SessionHandText, testing::ValuesIn(kDescribed));

struct sREFUSED {
    const char* event;
    const char* complaint;
};

class MalformedSessionHand : public testing::TestWithParam<sREFUSED> {};

TEST_P(MalformedSessionHand, IsRefusedWithItsLineAndWhatWasExpected) {
    try {
        ActionOf(GetParam().event);
        FAIL() << "no complaint";
    } catch (const KCHostFailure& failure) {
        EXPECT_EQ(failure.what(), std::string("s.yaml:1: ") + GetParam().complaint);
    }
}

constexpr const char* kKeysExpected =
    "'key' must be one character or Up, Down, Left, Right, PageUp, PageDown, Home, "
    "End, Enter, Escape, Backspace, Delete, Tab or Space, not \"Upp\"";

const sREFUSED kRefused[] = {
    {"mouse: ", "'mouse' must be release, lost, or a mapping such as {press: NAME}"},
    {"mouse: [press]", "'mouse' must be release, lost, or a mapping such as {press: NAME}"},
    {"mouse: relase", "unknown key \"relase\"; did you mean 'release'?"},
    {"mouse: {press: Gain, drag: [0, 1]}", "'mouse' does one thing, not both 'press' and 'drag'"},
    {"mouse: {with: Shift}", "'mouse' says nothing to do: it needs one of 'press', 'drag', 'release', 'click', "
                             "'double click' and 'lost'"},
    {"mouse: press", "'press' must be a text of 1 to 127 bytes"},
    {"mouse: {press: Gain, press: Gain}", "the key \"press\" stands here twice"},
    {"mouse: {press: [1, 2], place: [0, 0]}", "'place' is a place on a control, and 'press' names a point"},
    {"mouse: {press: Gain, place: [-0.1, 0]}",
     "'place' counts from the control's top left corner, [0, 0], to the other, [1, 1]"},
    {"mouse: {press: Gain, place: [0, 1.1]}", "'place' must be two numbers from -1 to 1, such as [0.5, 1]"},
    {"mouse: {press: [1, 2, 3]}", "'press' must be two numbers from -100000 to 100000, such as [0, -40]"},
    {"mouse: {press: [1, .nan]}", "'press' must be two numbers from -100000 to 100000, such as [0, -40]"},
    {"mouse: {drag: 40}", "'drag' must be two numbers from -100000 to 100000, such as [0, -40]"},
    {"mouse: {drag: [0, 100001]}", "'drag' must be two numbers from -100000 to 100000, such as [0, -40]"},
    {"mouse: {drag: [0, 1], clicks: 2}", "'clicks' does not belong to a 'drag' event, which takes drag and with"},
    {"mouse: {press: Gain, clicks: 4}", "'clicks' must be a number from 1 to 3, not \"4\""},
    {"mouse: {press: Gain, with: Shfit}",
     "'with' must be a list of Primary, Secondary, Shift and Alt, not \"Shfit\""},
    {"mouse: {press: Gain, with: [[Shift]]}", "'with' must be a list of Primary, Secondary, Shift and Alt"},
    {"mouse: {release: Gain}", "'release' takes nothing"},
    {"mouse: {lost: 1}", "'lost' takes nothing"},
    {"mouse: release, set: Gain", "the event does one thing, not both 'set' and 'mouse'"},
    {"wheel: 2", "'wheel' must be a mapping such as {over: NAME, by: 2}"},
    {"wheel: {by: 2}", "'wheel' says nothing to do: it needs 'over'"},
    {"wheel: {over: Gain}", "the event needs 'by', a number from -1000 to 1000"},
    {"wheel: {over: Gain, by: [1]}", "'by' must be two numbers from -1000 to 1000, such as [0, -40]"},
    {"key: Upp", kKeysExpected},
    {"key: \"\\x07\"", "'key' must be one character or Up, Down, Left, Right, PageUp, PageDown, Home, End, Enter, "
                       "Escape, Backspace, Delete, Tab or Space, not \"?\""},
    {"key: [Up]", "'key' must be a text of 1 to 127 bytes"},
    {"type: \"\"", "'type' must be a text of 1 to 127 bytes"},
    {"type: {text: 1k}", "the event needs 'into', a text of 1 to 127 bytes"},
    {"type: {into: Gain}", "'type' says nothing to do: it needs 'text'"},
    {"menu: Detector", "'menu' must be a mapping such as {of: NAME, text: RMS}"},
    {"menu: {of: Detector}", "'menu' needs one of 'choose', a number from 0, and 'text', what it means"},
    {"menu: {of: Detector, choose: 1, text: RMS}",
     "'menu' needs one of 'choose', a number from 0, and 'text', what it means"},
    {"menu: {of: Detector, choose: -1}", "'choose' must be a number from 0 to 1000000, not \"-1\""},
    {"touch: {down: Gain, finger: 0}", "'finger' must be a number from 1 to 10, not \"0\""},
    {"touch: {finger: 2}", "'touch' says nothing to do: it needs one of 'down', 'drag', 'pinch', 'long' and 'up'"},
    {"touch: {pinch: 0}", "'pinch' must be a number from 0.01 to 100, not \"0\""},
    {"touch: {up: 2}", "'up' takes nothing"},
    {"hover: ", "'hover' must be a text of 1 to 127 bytes"},
};

INSTANTIATE_TEST_SUITE_P(Each, MalformedSessionHand, testing::ValuesIn(kRefused));

TEST(SessionHand, ComplaintsNameTheInnerLine) {
    try {
        ReadSession("- at: 0\n  mouse:\n    press: Gain\n    wiht: Shift\n", "s.yaml");
        FAIL() << "no complaint";
    } catch (const KCHostFailure& failure) {
        EXPECT_STREQ(failure.what(), "s.yaml:4: unknown key \"wiht\"; did you mean 'with'?");
    }
}

std::string ComplaintOf(const std::string& text) {
    try {
        ReadSession(text, "s.yaml");
    } catch (const KCHostFailure& failure) {
        return failure.what();
    }
    return "no complaint";
}

TEST(SessionHand, CannotLetGoOfWhatItDoesNotHold) {
    EXPECT_EQ(ComplaintOf("- {at: 0, mouse: {drag: [0, 1]}}"),
              "s.yaml:1: the mouse button is not down: 'press' must stand before this");
    EXPECT_EQ(ComplaintOf("- {at: 0, mouse: {press: Gain}}\n- {at: 0, mouse: release}\n- {at: 0, mouse: release}"),
              "s.yaml:3: the mouse button is not down: 'press' must stand before this");
    EXPECT_EQ(ComplaintOf("- {at: 0, touch: {down: Gain}}\n- {at: 0, touch: {up: , finger: 2}}"),
              "s.yaml:2: finger 2 is not down: 'down' must stand before this");
}

TEST(SessionHand, CannotPressTwice) {
    const std::string press = "- {at: 0, mouse: {press: Gain}}\n";
    for (const char* const second : {"mouse: {press: Gain}", "mouse: {click: Gain}", "hover: Gain"})
        EXPECT_EQ(ComplaintOf(press + "- {at: 0, " + second + "}"),
                  "s.yaml:2: the mouse button is down since line 1");
    EXPECT_EQ(ComplaintOf("- {at: 0, touch: {down: A}}\n- {at: 0, touch: {down: B}}"),
              "s.yaml:2: finger 1 is down since line 1");
}

TEST(SessionHand, MayPressAgainWhenThePointerWasLost) {
    const std::string press = "- {at: 0, mouse: {press: Gain}}\n";
    EXPECT_EQ(ComplaintOf(press + "- {at: 0, mouse: lost}\n" + press), "no complaint");
    EXPECT_EQ(ComplaintOf(press + "- {at: 0, mouse: {drag: [1, 1]}}\n- {at: 0, mouse: release}\n" + press),
              "no complaint");
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
