// From a MIDI event to the value that it gives a control: the arithmetic alone, without a control.
//
// A continuous parameter takes a value on the automation scale (0 to 1000), a stepped one the number of a state. In
// both cases the whole-number part is what is set. Pure functions: any thread, nothing is allocated, no input is
// refused.
#pragma once

#include <korvolib/control/midi_event.h>
#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvMIDI {

/// What a driven control is given when the event is not for it: it stays as it is.
inline constexpr int kMidiValue_None = -1;

/// Full travel of the automation scale over the largest seven-bit number, 127.
inline constexpr double kAutomationPerDataStep = 7.874015748031496;
/// Full travel over 16385, so that the largest bend, 16383, stays just below it: 999.877937….
inline constexpr double kAutomationPerBendStep = 0.061031431187061336;

/// Position of a pitch bend on the automation scale: data 2 is the high half.
KORVO_API double PitchBendValue(uint8_t data1, uint8_t data2) noexcept;
/// Velocity or controller value on the automation scale: 0 to 127 becomes 0 to 1000.
KORVO_API double SevenBitValue(uint8_t data2) noexcept;
/// The event on the automation scale: a pitch bend by its 14 bits, any other by data 2.
KORVO_API double AutomationValue(const KorvoMidiEvent& event) noexcept;

/// The controller that a control is attached to: data 1 in 7 bits; 0 for a pitch bend, which has no number.
KORVO_API int ControllerNumber(const KorvoMidiEvent& event) noexcept;

/// Whether the event is of a key or a pedal, which press and release: a note on, or one of the switch controllers
/// 64 (damper), 65 (portamento), 66 (sostenuto), 67 (soft) and 69 (hold 2). 68 (legato) is none.
KORVO_API bool IsSwitchMessage(const KorvoMidiEvent& event) noexcept;
/// Of a switch message: pressed by any velocity but 0, or by a pedal at 64 or more. False for all others.
KORVO_API bool IsSwitchPressed(const KorvoMidiEvent& event) noexcept;

/// The state after the present one; the first after the last. States below 0 count as 0. kMidiValue_None for a
/// state that is not a number, and where there are no states (`numStates` below 1).
KORVO_API int NextState(double currentState, int numStates) noexcept;
/// The state at this place among `numStates` spread over 0 to 127, to the nearest. kMidiValue_None where there are
/// none. Only seven bits of data 2 count.
KORVO_API int StateAtPosition(uint8_t data2, int numStates) noexcept;

/// What a stepped parameter in `currentState` is set to: a press moves it on, a release leaves it
/// (kMidiValue_None), any other event names a place.
KORVO_API int SteppedValue(const KorvoMidiEvent& event, double currentState, int numStates) noexcept;
/// What a continuous parameter is set to: the whole-number part of AutomationValue.
KORVO_API int ContinuousValue(const KorvoMidiEvent& event) noexcept;

/// Spreads a controller value of 0 to 127 over states: the whole-number part of value / (128 / numStates), in
/// single precision, and never more than `numStates`. 0 for no states. The second argument is not looked at.
KORVO_API int CalculateNextState(int numStates, int ignored, int value) noexcept;

} // namespace kvKorvoV12_9_0_320::kvMIDI
