// Host values, gestures of controls and MIDI messages, as a session's file says them.
#include "session.h"

#include <gtest/gtest.h>

#include "failure.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using kvMIDI::KorvoMidiEvent;

SessionAction ActionOf(const std::string& event) {
    return ReadSession("- {at: 0, " + event + "}\n", "s.yaml").events.at(0).action;
}

KorvoMidiEvent MidiOf(const std::string& message) {
    return std::get<sSEND_MIDI>(ActionOf("midi: " + message)).event;
}

std::string ComplaintOf(const std::string& event) {
    try {
        ActionOf(event);
    } catch (const KCHostFailure& failure) {
        return failure.what();
    }
    return "no complaint";
}

TEST(SessionAutomation, SetsAControlInThreeWays) {
    const auto state = std::get<sSET_CONTROL>(ActionOf("control: Trims, state: 700"));
    EXPECT_EQ(state.controlName, "Trims");
    EXPECT_EQ(state.by, sSET_PARAM::KEBy::State);
    EXPECT_EQ(state.number, 700.0);
    const auto value = std::get<sSET_CONTROL>(ActionOf("control: Trims, value: -3.5"));
    EXPECT_EQ(value.by, sSET_PARAM::KEBy::RealWorld);
    EXPECT_EQ(value.number, -3.5);
    const auto text = std::get<sSET_CONTROL>(ActionOf("control: Trims, text: -3 dB"));
    EXPECT_EQ(text.by, sSET_PARAM::KEBy::Text);
    EXPECT_EQ(text.text, "-3 dB");
}

TEST(SessionAutomation, AControlNeedsOnePlaceToGoTo) {
    constexpr const char* kComplaint = "s.yaml:1: 'control' needs one of 'state', 'value' and 'text'";
    EXPECT_EQ(ComplaintOf("control: Trims"), kComplaint);
    EXPECT_EQ(ComplaintOf("control: Trims, state: 1, value: 1"), kComplaint);
    EXPECT_EQ(ComplaintOf("control: Trims, state: 1000.5"),
              "s.yaml:1: 'state' must be a number from 0 to 1000, not \"1000.5\"");
    EXPECT_EQ(ComplaintOf("control: Trims, state: .nan"),
              "s.yaml:1: 'state' must be a number from 0 to 1000, not \".nan\"");
}

TEST(SessionAutomation, AHostsValueIsNoGestureOfAHand) {
    EXPECT_EQ(ComplaintOf("control: Trims, state: 1, gesture: true"),
              "s.yaml:1: 'gesture' does not belong to a 'control' event, which takes at, control, state, value and "
              "text");
}

TEST(SessionAutomation, TouchesReleasesLearnsAndDetaches) {
    const auto touch = std::get<sHOLD_CONTROL>(ActionOf("touch control: Trims"));
    EXPECT_EQ(touch.controlName, "Trims");
    EXPECT_TRUE(touch.isHeld);
    EXPECT_FALSE(std::get<sHOLD_CONTROL>(ActionOf("release control: Trims")).isHeld);
    EXPECT_EQ(std::get<sLEARN_CONTROL>(ActionOf("learn: Trims")).controlName, "Trims");
    EXPECT_EQ(std::get<sDETACH_CONTROL>(ActionOf("detach: Trims")).controlName, "Trims");
}

TEST(SessionAutomation, ReadsTheBytesOfAMessage) {
    EXPECT_EQ(MidiOf("[0xB0, 7, 64]"), KorvoMidiEvent(0xB0, 7, 64));
    EXPECT_EQ(MidiOf("[176, 0x07, 0X7f]"), KorvoMidiEvent(0xB0, 7, 127));
    EXPECT_EQ(MidiOf("[0xEF, 0, 127]"), KorvoMidiEvent(0xEF, 0, 127));
    EXPECT_EQ(MidiOf("[0xC0, 5]"), KorvoMidiEvent(0xC0, 5, 0)); // a message of two bytes
    EXPECT_EQ(MidiOf("[0xDF, 5]"), KorvoMidiEvent(0xDF, 5, 0));
}

TEST(SessionAutomation, ReadsAMessageInWords) {
    EXPECT_EQ(MidiOf("{controller: 7, value: 64}"), KorvoMidiEvent(0xB0, 7, 64));
    EXPECT_EQ(MidiOf("{controller: 127, value: 127, channel: 16}"), KorvoMidiEvent(0xBF, 127, 127));
    EXPECT_EQ(MidiOf("{note: 60, velocity: 100, channel: 2}"), KorvoMidiEvent(0x91, 60, 100));
    EXPECT_EQ(MidiOf("{note off: 60}"), KorvoMidiEvent(0x80, 60, 0));
    EXPECT_EQ(MidiOf("{bend: 8192}"), KorvoMidiEvent(0xE0, 0, 64));
    EXPECT_EQ(MidiOf("{bend: 16383}"), KorvoMidiEvent(0xE0, 127, 127));
}

TEST(SessionAutomation, RefusesBytesThatAreNone) {
    for (const char* const byte : {"256", "-1", "0x100", "0x", "1.5", "x", "''", "' 1'", "+1"})
        EXPECT_TRUE(ComplaintOf(std::string("midi: [0xB0, 7, ") + byte + "]")
                        .starts_with("s.yaml:1: a byte is a whole number from 0 to 255 or 0x00 to 0xFF, not "))
            << byte;
}

TEST(SessionAutomation, RefusesBytesThatAreNoMessage) {
    EXPECT_EQ(ComplaintOf("midi: []"), "s.yaml:1: a message begins with its status, 0x80 to 0xEF");
    EXPECT_EQ(ComplaintOf("midi: [7, 64]"), "s.yaml:1: a message begins with its status, 0x80 to 0xEF");
    EXPECT_EQ(ComplaintOf("midi: [0xF8]"), "s.yaml:1: a message begins with its status, 0x80 to 0xEF");
    EXPECT_EQ(ComplaintOf("midi: [0xB0, 7]"), "s.yaml:1: a message of this status has 3 bytes, not 2");
    EXPECT_EQ(ComplaintOf("midi: [0xC0, 7, 1]"), "s.yaml:1: a message of this status has 2 bytes, not 3");
    EXPECT_EQ(ComplaintOf("midi: [0xB0, 128, 0]"), "s.yaml:1: the bytes behind the status go from 0 to 127");
    EXPECT_EQ(ComplaintOf("midi: [0xB0, 0, 128]"), "s.yaml:1: the bytes behind the status go from 0 to 127");
    EXPECT_EQ(ComplaintOf("midi: [[1], 7, 64]"),
              "s.yaml:1: 'midi' must be the bytes of a message, such as [0xB0, 7, 64], or a message in words, such "
              "as {controller: 7, value: 64}");
}

TEST(SessionAutomation, RefusesWordsThatAreNoMessage) {
    EXPECT_EQ(ComplaintOf("midi: {controller: 7}"), "s.yaml:1: the event needs 'value', a number from 0 to 127");
    EXPECT_EQ(ComplaintOf("midi: {controller: 128, value: 0}"),
              "s.yaml:1: 'controller' must be a number from 0 to 127, not \"128\"");
    EXPECT_EQ(ComplaintOf("midi: {bend: 16384}"),
              "s.yaml:1: 'bend' must be a number from 0 to 16383, not \"16384\"");
    EXPECT_EQ(ComplaintOf("midi: {bend: 0, channel: 17}"),
              "s.yaml:1: 'channel' must be a number from 1 to 16, not \"17\"");
    EXPECT_EQ(ComplaintOf("midi: {bend: 0, channel: 0}"),
              "s.yaml:1: 'channel' must be a number from 1 to 16, not \"0\"");
    EXPECT_EQ(ComplaintOf("midi: {contoller: 7, value: 0}"),
              "s.yaml:1: unknown key \"contoller\"; did you mean 'controller'?");
    EXPECT_EQ(ComplaintOf("midi: {note: 60, bend: 1}"),
              "s.yaml:1: the message does one thing, not both 'note' and 'bend'");
}

TEST(SessionAutomation, DescribesWhatIsDone) {
    EXPECT_EQ(DescribeAction(ActionOf("control: Trims, state: 700")), "control Trims to state 700");
    EXPECT_EQ(DescribeAction(ActionOf("control: Trims, value: -3.5")), "control Trims to -3.5");
    EXPECT_EQ(DescribeAction(ActionOf("control: Trims, text: -3 dB")), "control Trims to \"-3 dB\"");
    EXPECT_EQ(DescribeAction(ActionOf("touch control: Trims")), "touch control Trims");
    EXPECT_EQ(DescribeAction(ActionOf("release control: Trims")), "release control Trims");
    EXPECT_EQ(DescribeAction(ActionOf("midi: [0xB1, 7, 64]")), "MIDI controller 7 at 64 on channel 2");
    EXPECT_EQ(DescribeAction(ActionOf("learn: Trims")), "learn Trims");
    EXPECT_EQ(DescribeAction(ActionOf("detach: Trims")), "detach Trims");
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
