// Renders a sound file through a plug-in while a session and a MIDI file move its parameters.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

struct sRENDER_OPTIONS {
    std::string plugin;
    std::string in;
    std::string out;
    std::string session;            // empty: no events
    std::string table;              // where the table of parameters and events goes; empty: nowhere
    std::vector<std::string> plots; // where the picture of the levels goes, each in the form that its ending says
    std::string film;               // the folder of the window's pictures; empty: no film
    std::string midi;               // a MIDI file to play meanwhile; empty: none
    std::string learn;              // the control that learns the file's first controller; empty: none
    std::string callbacks;          // where the plug-in's callbacks go as text; empty: nowhere
    uint32_t blockFrames = 512;
    uint16_t undoLevel = 100; // how many gestures of the session can be undone
};

inline constexpr uint32_t kLargestBlock = 65536;

/// The output is as long as the input: what the plug-in delays is moved back, by its latency at the start. The same
/// inputs give the same bytes in every run. Throws KCHostFailure, and then no output file is touched.
void Render(const sRENDER_OPTIONS& options);

} // namespace kvKorvoV12_9_0_320::kvHost
