// Bytes of a MIDI wire: whatever arrives, only whole channel messages come out, and all that is made of them stays
// in range. The first three bytes choose a mapping and a number of states, the rest is the wire.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <korvolib/control/midi_event.h>
#include <korvolib/control/midi_mapping.h>
#include <korvolib/control/midi_value.h>

using namespace kvKorvo::kvMIDI;

namespace {

void Require(bool holds) {
    if (!holds)
        std::abort();
}

bool IsOnTheScale(double value) { return value >= 0.0 && value <= 1000.0; }

void RequireWhole(const KorvoMidiEvent& event) {
    Require(event.IsChannelMessage() && event.GetChannel() >= 1 && event.GetChannel() <= 16);
    Require(event.GetEventType() >= kMidiEvent_NoteOff && event.GetEventType() <= kMidiEvent_PitchBend);
    Require(event.GetData1() < 0x80 && event.GetData2() < 0x80);
}

void RequireValuesInRange(const KorvoMidiEvent& event, const sMIDI_MAPPING& mapping, int numStates) {
    Require(IsOnTheScale(AutomationValue(event)) && IsOnTheScale(ContinuousValue(event)));
    Require(IsOnTheScale(ApplyMidiMapping(mapping, AutomationValue(event))));
    const int state = SteppedValue(event, event.GetData1(), numStates);
    Require(state >= kMidiValue_None && state < (numStates > 0 ? numStates : 0));
    const int mapped = MappedStateAtPosition(mapping, event.GetData2(), numStates);
    Require(mapped >= kMidiValue_None && mapped < (numStates > 0 ? numStates : 0));
    Require(CalculateNextState(numStates, 0, event.GetData2()) <= numStates);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    constexpr size_t kChoice = 3;
    if (size < kChoice)
        return 0;
    const int numStates = static_cast<int8_t>(bytes[0]);
    const sMIDI_MAPPING mapping{bytes[1] * 5.0 - 100.0, bytes[2] * 5.0 - 100.0, bytes[0] / 16.0,
                                kMidiTakeOver_PickUp};
    KCMidiTakeOverState takeOver;
    double control = 500.0;
    size_t numEvents = 0;
    KCMidiParser parser;
    parser.ParseAll(bytes + kChoice, size - kChoice, 0, [&](const KorvoMidiEvent& event) {
        RequireWhole(event);
        RequireValuesInRange(event, mapping, numStates);
        const double incoming = ApplyMidiMapping(mapping, AutomationValue(event));
        if (ShouldTakeOver(mapping, takeOver, control, incoming)) {
            control = incoming;
            takeOver.NoteDriven(control);
            Require(ShouldTakeOver(mapping, takeOver, control, 1000.0 - incoming)); // held
        }
        ++numEvents;
    });
    Require(numEvents <= size - kChoice);
    return 0;
}
