#include "midi_text.h"

#include <gtest/gtest.h>

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

TEST(MidiText, SaysWhatAMessageIs) {
    EXPECT_EQ(MidiEventText({0x80, 60, 0}), "note 60 off");
    EXPECT_EQ(MidiEventText({0x90, 60, 100}), "note 60 on, velocity 100");
    EXPECT_EQ(MidiEventText({0xA0, 60, 5}), "pressure of key 60 at 5");
    EXPECT_EQ(MidiEventText({0xB0, 7, 64}), "controller 7 at 64");
    EXPECT_EQ(MidiEventText({0xC0, 5, 0}), "program 5");
    EXPECT_EQ(MidiEventText({0xD0, 9, 0}), "pressure 9");
    EXPECT_EQ(MidiEventText({0xE0, 1, 64}), "pitch bend 8193");
    EXPECT_EQ(MidiEventText({0xF8, 0, 0}), "no channel message");
    EXPECT_EQ(MidiEventText({}), "no channel message");
}

TEST(MidiText, NamesEveryChannelButTheFirst) {
    EXPECT_EQ(MidiEventText({0xB1, 7, 64}), "controller 7 at 64 on channel 2");
    EXPECT_EQ(MidiEventText({0xEF, 0, 0}), "pitch bend 0 on channel 16");
}

TEST(MidiText, LooksAtSevenBitsOfHostileData) {
    EXPECT_EQ(MidiEventText({0xB0, 0x87, 0xFF}), "controller 7 at 127");
    EXPECT_EQ(MidiEventText({0xE0, 0xFF, 0xFF}), "pitch bend 16383");
}

TEST(MidiText, SaysWhatAControlHears) {
    EXPECT_EQ(MidiSourceText(kvMIDI::kMidiEvent_ControlChange, 7), "controller 7");
    EXPECT_EQ(MidiSourceText(kvMIDI::kMidiEvent_NoteOn, 60), "note 60");
    EXPECT_EQ(MidiSourceText(kvMIDI::kMidiEvent_PitchBend, 0), "pitch bend");
    EXPECT_EQ(MidiSourceText(kvMIDI::kMidiEvent_ControlChange, -1), "-");
    EXPECT_EQ(MidiSourceText(-1, 7), "-");
    EXPECT_EQ(MidiSourceText(kvMIDI::kMidiEvent_NoteOff, 7), "-"); // heard by nobody
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
