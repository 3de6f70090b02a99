// Standard MIDI files as the events that play, in seconds.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <korvolib/control/midi_event.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

struct sTIMED_MIDI_EVENT {
    double atSeconds = 0.0;       // from the beginning of the file, never below 0
    kvMIDI::KorvoMidiEvent event; // a channel message, frame offset 0

    friend bool operator==(const sTIMED_MIDI_EVENT&, const sTIMED_MIDI_EVENT&) = default;
};

/// The channel messages of all tracks in the order of their times, those of one time in the order of their tracks;
/// tempo changes are followed. Meta events and system exclusive are left out.
///
/// Reads a file of format 0 or 1, or an entry of an archive (input_file.h), of at most 16 MiB. Throws
/// KCHostFailure, with the name, for what cannot be read; midi_filter.h says what that is.
std::vector<sTIMED_MIDI_EVENT> ReadMidiFile(const std::string& path);

/// The same for the contents of a file; `name` is for failures.
std::vector<sTIMED_MIDI_EVENT> ParseMidiFile(std::string_view contents, const std::string& name);

} // namespace kvKorvoV12_9_0_320::kvHost
