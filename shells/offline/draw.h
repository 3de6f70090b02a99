// Draws a plug-in's window, as a session has left it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

struct sDRAW_OPTIONS {
    std::string plugin;
    std::vector<std::string> outs; // pictures, each in the form that its ending says
    std::string session;           // empty: the window as it opens
    double scale = 1.0;            // of .png and .svg
};

inline constexpr double kSmallestScale = 0.1;
inline constexpr double kLargestScale = 8.0;

/// The session is played in the order of its times, without a sound. What had to be left out of the window goes to
/// standard error, a line each. Throws KCHostFailure, and then no output file is touched.
void Draw(const sDRAW_OPTIONS& options);

} // namespace kvKorvoV12_9_0_320::kvHost
