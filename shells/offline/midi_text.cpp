#include "midi_text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using kvMIDI::KorvoMidiEvent;

std::string With(const char* word, int number) { return std::string(word) + " " + std::to_string(number); }

std::string MessageText(const KorvoMidiEvent& event) {
    const int data1 = event.GetData1() & 0x7F, data2 = event.GetData2() & 0x7F;
    switch (event.GetEventType()) {
    case kvMIDI::kMidiEvent_NoteOff:
        return With("note", data1) + " off";
    case kvMIDI::kMidiEvent_NoteOn:
        return With("note", data1) + " on, " + With("velocity", data2);
    case kvMIDI::kMidiEvent_KeyPressure:
        return With("pressure of key", data1) + With(" at", data2);
    case kvMIDI::kMidiEvent_ControlChange:
        return With("controller", data1) + With(" at", data2);
    case kvMIDI::kMidiEvent_ProgramChange:
        return With("program", data1);
    case kvMIDI::kMidiEvent_ChannelPressure:
        return With("pressure", data1);
    case kvMIDI::kMidiEvent_PitchBend:
        return With("pitch bend", data2 << 7 | data1);
    default:
        return "no channel message";
    }
}

} // namespace

std::string MidiEventText(const KorvoMidiEvent& event) {
    const std::string text = MessageText(event);
    return event.GetChannel() > 1 ? text + With(" on channel", event.GetChannel()) : text;
}

std::string MidiSourceText(int32_t eventType, int32_t controlID) {
    if (controlID < 0)
        return "-";
    switch (eventType) {
    case kvMIDI::kMidiEvent_NoteOn:
        return With("note", controlID);
    case kvMIDI::kMidiEvent_ControlChange:
        return With("controller", controlID);
    case kvMIDI::kMidiEvent_PitchBend:
        return "pitch bend";
    default:
        return "-";
    }
}

} // namespace kvKorvoV12_9_0_320::kvHost
