#include "session.h"

#include <gtest/gtest.h>

#include "failure.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

sSESSION Read(const std::string& text) { return ReadSession(text, "s.yaml"); }

std::string ComplaintOf(const std::string& text) {
    try {
        Read(text);
    } catch (const KCHostFailure& failure) {
        return failure.what();
    }
    return "no complaint";
}

TEST(Session, AnEmptyFileHasNoEvents) {
    EXPECT_TRUE(Read("").events.empty());
    EXPECT_TRUE(Read("# nothing yet\n").events.empty());
    EXPECT_TRUE(Read("[]").events.empty());
}

TEST(Session, SetsAParameterInThreeWays) {
    const sSESSION session = Read("- {at: 0, set: Gain, state: 500}\n"
                                  "- {at: 0.5, set: Gain, value: -3.5}\n"
                                  "- {at: 1.5, set: Gain, text: \"-3 dB\"}\n");
    ASSERT_EQ(session.events.size(), 3u);
    const auto& state = std::get<sSET_PARAM>(session.events[0].action);
    EXPECT_EQ(state.param, "Gain");
    EXPECT_EQ(state.by, sSET_PARAM::KEBy::State);
    EXPECT_EQ(state.number, 500.0);
    const auto& value = std::get<sSET_PARAM>(session.events[1].action);
    EXPECT_EQ(value.by, sSET_PARAM::KEBy::RealWorld);
    EXPECT_EQ(value.number, -3.5);
    EXPECT_EQ(session.events[1].atSeconds, 0.5);
    const auto& text = std::get<sSET_PARAM>(session.events[2].action);
    EXPECT_EQ(text.by, sSET_PARAM::KEBy::Text);
    EXPECT_EQ(text.text, "-3 dB");
}

TEST(Session, StepsSwitchesAndCopies) {
    const sSESSION session = Read("- at: 1\n  step: Ratio\n  by: +2\n"
                                  "- {at: 2, setup: B}\n"
                                  "- {at: 2, copy setup: B to A}\n");
    const auto& step = std::get<sSTEP_PARAM>(session.events[0].action);
    EXPECT_EQ(step.param, "Ratio");
    EXPECT_EQ(step.by, 2);
    EXPECT_EQ(std::get<sSWITCH_SETUP>(session.events[1].action).setup, kPluginSetup_B);
    EXPECT_EQ(std::get<sCOPY_SETUP>(session.events[2].action).from, kPluginSetup_B);
    EXPECT_EQ(std::get<sCOPY_SETUP>(session.events[2].action).to, kPluginSetup_A);
}

TEST(Session, AMoveIsAGestureWhenItSaysSo) {
    const sSESSION session = Read("- {at: 0, set: Gain, value: 1}\n"
                                  "- {at: 0, set: Gain, value: 1, gesture: true}\n"
                                  "- {at: 0, step: Gain, by: 1, gesture: false}\n"
                                  "- {at: 0, step: Gain, by: 1, gesture: true}\n");
    EXPECT_FALSE(std::get<sSET_PARAM>(session.events[0].action).isGesture);
    EXPECT_TRUE(std::get<sSET_PARAM>(session.events[1].action).isGesture);
    EXPECT_FALSE(std::get<sSTEP_PARAM>(session.events[2].action).isGesture);
    EXPECT_TRUE(std::get<sSTEP_PARAM>(session.events[3].action).isGesture);
}

TEST(Session, EnablesAndDisablesLinkGroups) {
    const sSESSION session = Read("- {at: 0, link: 3, enabled: true}\n- {at: 0, link: -1, enabled: false}\n");
    EXPECT_EQ(std::get<sENABLE_LINK>(session.events[0].action).group, 3);
    EXPECT_TRUE(std::get<sENABLE_LINK>(session.events[0].action).isEnabled);
    EXPECT_EQ(std::get<sENABLE_LINK>(session.events[1].action).group, -1);
    EXPECT_FALSE(std::get<sENABLE_LINK>(session.events[1].action).isEnabled);
}

TEST(Session, EventsKnowTheirLines) {
    const sSESSION session = Read("# a comment\n\n- at: 1\n  setup: A\n\n- {at: 2, setup: B}\n");
    EXPECT_EQ(session.events[0].line, 3);
    EXPECT_EQ(session.events[1].line, 6);
}

TEST(Session, UndoesRedoesAndMarksAsClean) {
    using KEWhat = sUSE_HISTORY::KEWhat;
    const sSESSION session = Read("- {at: 0, do: undo}\n- {at: 0, do: redo}\n- {at: 0, do: mark clean}\n");
    EXPECT_EQ(std::get<sUSE_HISTORY>(session.events[0].action).what, KEWhat::Undo);
    EXPECT_EQ(std::get<sUSE_HISTORY>(session.events[1].action).what, KEWhat::Redo);
    EXPECT_EQ(std::get<sUSE_HISTORY>(session.events[2].action).what, KEWhat::MarkClean);
    EXPECT_EQ(DescribeAction(session.events[0].action), "undo");
    EXPECT_EQ(DescribeAction(session.events[2].action), "mark clean");
}

TEST(Session, DescribesGesturesAndLinks) {
    const sSESSION session = Read("- {at: 0, set: Gain, value: 0.5, gesture: true}\n"
                                  "- {at: 0, step: Ratio, by: 1, gesture: true}\n"
                                  "- {at: 0, link: 2, enabled: true}\n- {at: 0, link: 2, enabled: false}\n");
    const char* const expected[] = {"set Gain to 0.5, by hand", "step Ratio by +1, by hand", "enable link group 2",
                                    "disable link group 2"};
    for (size_t i = 0; i < session.events.size(); ++i)
        EXPECT_EQ(DescribeAction(session.events[i].action), expected[i]);
}

TEST(Session, DescribesWhatAnEventDoes) {
    const sSESSION session =
        Read("- {at: 0, set: Gain, state: 500}\n- {at: 0, set: Gain, value: 0.5}\n"
             "- {at: 0, set: Gain, text: -inf}\n- {at: 0, step: Ratio, by: 1}\n"
             "- {at: 0, step: Ratio, by: -1}\n- {at: 0, setup: B}\n- {at: 0, copy setup: A to B}\n");
    const char* const expected[] = {"set Gain to state 500", "set Gain to 0.5",  "set Gain to \"-inf\"",
                                    "step Ratio by +1",      "step Ratio by -1", "setup B",
                                    "copy setup A to B"};
    for (size_t i = 0; i < session.events.size(); ++i)
        EXPECT_EQ(DescribeAction(session.events[i].action), expected[i]);
}

struct sMALFORMED {
    const char* text;
    const char* complaint;
};

class MalformedSession : public testing::TestWithParam<sMALFORMED> {};

TEST_P(MalformedSession, IsRefusedWithItsLineAndWhatWasExpected) {
    EXPECT_EQ(ComplaintOf(GetParam().text), GetParam().complaint);
}

const sMALFORMED kMalformed[] = {
    {"at: 1", "s.yaml:1: a session is a list of events, each beginning with '- at:'"},
    {"hello", "s.yaml:1: a session is a list of events, each beginning with '- at:'"},
    {"- {at: 0, setup: A}\n---\n- {at: 0, setup: A}\n",
     "s.yaml:2: a session is one YAML document, and here begins another"},
    {"\n- [1, 2]", "s.yaml:2: an event is a mapping, such as {at: 1.5, set: NAME, value: 3}"},
    {"- 3", "s.yaml:1: an event is a mapping, such as {at: 1.5, set: NAME, value: 3}"},
    {"- {[a]: 1}", "s.yaml:1: a key is one word"},
    {"- at: 1\n  at: 2\n  setup: A", "s.yaml:2: the key \"at\" stands here twice"},
    {"- at: 0\n  set: Gain\n  vlaue: 3", "s.yaml:3: unknown key \"vlaue\"; did you mean 'value'?"},
    {"- {at: 0, q: 3}",
     "s.yaml:1: unknown key \"q\"; known are at, set, state, value, text, gesture, step, by, "
     "link, enabled, setup, copy setup, do, mouse, wheel, key, type, menu, touch, hover, control, "
     "touch control, release control, midi, learn and detach"},
    {"- at: 1",
     "s.yaml:1: the event says nothing to do: it needs one of 'set', 'step', 'link', 'setup', 'copy "
     "setup', 'do', 'mouse', 'wheel', 'key', 'type', 'menu', 'touch', 'hover', 'control', 'touch control', "
     "'release control', 'midi', 'learn' and 'detach'"},
    {"- {at: 0, set: Gain, value: 3, setup: A}", "s.yaml:1: the event does one thing, not both 'set' and 'setup'"},
    {"- {at: 0, set: Gain, by: 3}", "s.yaml:1: 'by' does not belong to a 'set' event, which takes at, set, state, "
                                    "value, text and gesture"},
    {"- {at: 0, setup: A, value: 3}",
     "s.yaml:1: 'value' does not belong to a 'setup' event, which takes at and setup"},
    {"- setup: A", "s.yaml:1: the event needs 'at', a number from 0 to 1000000"},
    {"- at:\n  setup: A", "s.yaml:1: 'at' must be a number from 0 to 1000000"},
    {"- {at: [0], setup: A}", "s.yaml:1: 'at' must be a number from 0 to 1000000"},
    {"- {at: soon, setup: A}", "s.yaml:1: 'at' must be a number from 0 to 1000000, not \"soon\""},
    {"- {at: -0.1, setup: A}", "s.yaml:1: 'at' must be a number from 0 to 1000000, not \"-0.1\""},
    {"- {at: 1000000.1, setup: A}", "s.yaml:1: 'at' must be a number from 0 to 1000000, not \"1000000.1\""},
    {"- {at: .nan, setup: A}", "s.yaml:1: 'at' must be a number from 0 to 1000000, not \".nan\""},
    {"- {at: nan, setup: A}", "s.yaml:1: 'at' must be a number from 0 to 1000000, not \"nan\""},
    {"- {at: 0, set: Gain}", "s.yaml:1: 'set' needs one of 'state', 'value' and 'text'"},
    {"- {at: 0, set: Gain, value: 1, state: 2}", "s.yaml:1: 'set' needs one of 'state', 'value' and 'text'"},
    {"- {at: 0, set: Gain, state: 1000.5}", "s.yaml:1: 'state' must be a number from 0 to 1000, not \"1000.5\""},
    {"- {at: 0, set: Gain, value: loud}", "s.yaml:1: 'value' must be a number, not \"loud\""},
    {"- {at: 0, set: Gain, value: inf}", "s.yaml:1: 'value' must be a number, not \"inf\""},
    {"- {at: 0, set: Gain, text: \"\"}", "s.yaml:1: 'text' must be a text of 1 to 127 bytes"},
    {"- {at: 0, set: {a: b}, value: 1}", "s.yaml:1: 'set' must be a text of 1 to 127 bytes"},
    {"- {at: 0, step: Ratio}", "s.yaml:1: the event needs 'by', a number from -1000 to 1000"},
    {"- {at: 0, step: Ratio, by: 1.5}", "s.yaml:1: 'by' must be a whole number, not 1.5"},
    {"- {at: 0, step: Ratio, by: 0}", "s.yaml:1: 'by' must not be 0: it says how many steps, and which way"},
    {"- {at: 0, step: Ratio, by: 1001}", "s.yaml:1: 'by' must be a number from -1000 to 1000, not \"1001\""},
    {"- {at: 0, set: Gain, value: 1, gesture: perhaps}",
     "s.yaml:1: 'gesture' must be true or false, not \"perhaps\""},
    {"- {at: 0, setup: A, gesture: true}",
     "s.yaml:1: 'gesture' does not belong to a 'setup' event, which takes at and setup"},
    {"- {at: 0, link: 1}", "s.yaml:1: 'link' needs 'enabled', true or false"},
    {"- {at: 0, link: 1, enabled: 1}", "s.yaml:1: 'enabled' must be true or false, not \"1\""},
    {"- {at: 0, link: Trims, enabled: true}",
     "s.yaml:1: 'link' must be a number from -2147483648 to 2147483647, not \"Trims\""},
    {"- {at: 0, link: 1.5, enabled: true}", "s.yaml:1: 'link' must be a whole number, not 1.5"},
    {"- {at: 0, do: sing}", "s.yaml:1: 'do' must be undo, redo or mark clean, not \"sing\""},
    {"- {at: 0, do: undo, by: 2}", "s.yaml:1: 'by' does not belong to a 'do' event, which takes at and do"},
    {"- {at: 0, setup: C}", "s.yaml:1: 'setup' must be A or B, not \"C\""},
    {"- {at: 0, copy setup: A to A}", "s.yaml:1: 'copy setup' must be A to B or B to A, not \"A to A\""},
    {"- {at: 2, setup: A}\n- {at: 1.5, setup: B}",
     "s.yaml:2: events must stand in the order of their times, but 1.5 follows 2 of line 1"},
    {"- {at: 0, setup: A", "s.yaml:1: not YAML: end of map flow not found"},
    {"- *nowhere", "s.yaml:1: not YAML: the referenced anchor is not defined"},
};

INSTANTIATE_TEST_SUITE_P(Each, MalformedSession, testing::ValuesIn(kMalformed));

TEST(Session, TakesTextsOfUpTo127Bytes) {
    const std::string longest(127, 'x');
    EXPECT_EQ(std::get<sSET_PARAM>(Read("- {at: 0, set: " + longest + ", value: 1}").events[0].action).param,
              longest);
    EXPECT_EQ(ComplaintOf("- {at: 0, set: x" + longest + ", value: 1}"),
              "s.yaml:1: 'set' must be a text of 1 to 127 bytes");
}

// The parser alone would find documents here for ever.
TEST(Session, WhatBeginsNoDocumentIsRefused) {
    EXPECT_EQ(ComplaintOf(", {at: [1]}\n"), "s.yaml:1: a session is one YAML document, and here begins another");
}

TEST(Session, DeepNestingIsRefused) {
    EXPECT_NE(ComplaintOf(std::string(100000, '[')).find("s.yaml:1: "), std::string::npos);
}

TEST(Session, AFileThatIsMissingIsAFailure) {
    EXPECT_THROW(ReadSessionFile("/nonexistent/s.yaml"), KCHostFailure);
    EXPECT_THROW(ReadSessionFile("/"), KCHostFailure);
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
