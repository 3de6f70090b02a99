// The part of a standard MIDI file that plays: channel messages and tempo. The library that is given the rest of
// the work ends the program over a track that stops without its end mark, loses what follows a text of more than
// 127 bytes, knows no division by film frames, and takes time that grows with tempo changes times events where
// these are in different tracks. So every byte is looked at here first, and it is handed a file that is plain to
// read.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// More channel messages and tempo changes are refused: an hour of them at 277 a second.
inline constexpr size_t kMostMidiEvents = 1000000;
/// The last event may stand this many pulses from the beginning: what one delta time of the format can say.
inline constexpr size_t kLongestMidiPulses = 0x0FFFFFFF;

/// A format 0 file with the channel messages and tempo changes of all tracks of `bytes` in the order of their
/// times, those of one time in the order of their tracks, with status bytes throughout. Meta events and system
/// exclusive are left out, unknown chunks and what follows an end of track are passed over; a track may lack its
/// end mark, and a running status may go on after what is left out. Film frames become a tempo.
///
/// Throws KCHostFailure, with `name`, for what is no MIDI file, breaks off or has bytes that mean nothing, for
/// format 2 (its tracks are pieces of their own), and past the limits. Source: Standard MIDI Files 1.0 (RP-001).
std::string PlayableMidi(std::string_view bytes, const std::string& name);

} // namespace kvKorvoV12_9_0_320::kvHost
