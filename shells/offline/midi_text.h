// MIDI messages and what hears them as a person reads them.
#pragma once

#include <cstdint>
#include <string>

#include <korvolib/control/midi_event.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// "controller 7 at 64", "note 60 on, velocity 100", "pitch bend 8192 on channel 2"; the first channel is not said.
std::string MidiEventText(const kvMIDI::KorvoMidiEvent& event);

/// What a control is attached to, by a type of event and a number: "controller 7", "note 60", "pitch bend"; "-" for
/// nothing.
std::string MidiSourceText(int32_t eventType, int32_t controlID);

} // namespace kvKorvoV12_9_0_320::kvHost
