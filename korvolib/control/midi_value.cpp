#include <korvolib/control/midi_value.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvKorvoV12_9_0_320::kvMIDI {
namespace {

constexpr int kSevenBits = 0x7F;
constexpr int kPedalIsDown = 64;

bool IsPedal(int controller) noexcept {
    constexpr int kDamper = 64, kSoft = 67, kHold2 = 69;
    return (controller >= kDamper && controller <= kSoft) || controller == kHold2;
}

// The whole-number part where an int holds it, otherwise the nearest int. Not for not-a-number.
int Truncated(float value) noexcept {
    constexpr float kPastInt = 2147483648.0f;
    if (value >= kPastInt)
        return std::numeric_limits<int>::max();
    return value < -kPastInt ? std::numeric_limits<int>::min() : static_cast<int>(value);
}

} // namespace

double PitchBendValue(uint8_t data1, uint8_t data2) noexcept {
    return ((data2 << 7) + data1) * kAutomationPerBendStep;
}

double SevenBitValue(uint8_t data2) noexcept { return data2 * kAutomationPerDataStep; }

double AutomationValue(const KorvoMidiEvent& event) noexcept {
    return event.GetEventType() == kMidiEvent_PitchBend ? PitchBendValue(event.GetData1(), event.GetData2())
                                                        : SevenBitValue(event.GetData2());
}

int ControllerNumber(const KorvoMidiEvent& event) noexcept {
    return event.GetEventType() == kMidiEvent_PitchBend ? 0 : event.GetData1() & kSevenBits;
}

bool IsSwitchMessage(const KorvoMidiEvent& event) noexcept {
    const int type = event.GetEventType();
    return type == kMidiEvent_NoteOn || (type == kMidiEvent_ControlChange && IsPedal(ControllerNumber(event)));
}

bool IsSwitchPressed(const KorvoMidiEvent& event) noexcept {
    const int value = event.GetData2() & kSevenBits;
    return IsSwitchMessage(event) && value >= (event.GetEventType() == kMidiEvent_NoteOn ? 1 : kPedalIsDown);
}

int NextState(double currentState, int numStates) noexcept {
    if (numStates < 1 || std::isnan(currentState))
        return kMidiValue_None;
    const double next = std::clamp(currentState, 0.0, double{std::numeric_limits<int>::max()} - 1.0) + 1.0;
    return static_cast<int>(next) % numStates;
}

int StateAtPosition(uint8_t data2, int numStates) noexcept {
    if (numStates < 1)
        return kMidiValue_None;
    return static_cast<int>(std::round((numStates - 1.0) * (data2 & kSevenBits) / 127.0)); // halves go up
}

int SteppedValue(const KorvoMidiEvent& event, double currentState, int numStates) noexcept {
    if (!IsSwitchMessage(event))
        return StateAtPosition(event.GetData2(), numStates);
    return IsSwitchPressed(event) ? NextState(currentState, numStates) : kMidiValue_None;
}

int ContinuousValue(const KorvoMidiEvent& event) noexcept { return static_cast<int>(AutomationValue(event)); }

int CalculateNextState(int numStates, int /*ignored*/, int value) noexcept {
    if (numStates == 0)
        return 0;
    const float step = 128.0f / static_cast<float>(numStates);
    return std::min(Truncated(static_cast<float>(value) / step), numStates);
}

} // namespace kvKorvoV12_9_0_320::kvMIDI
