// The level of a sound before and after a plug-in over time, with the events of a session marked, as an SVG
// picture.
#pragma once

#include <string>
#include <vector>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

struct sPLOT_EVENT {
    double atSeconds = 0.0;
    std::string label; // a few words
};

struct sLEVEL_PLOT {
    std::string title;
    double windowSeconds = 0.05;     // distance between the levels
    std::vector<double> before;      // dB of full scale
    std::vector<double> after;       // dB of full scale
    std::vector<sPLOT_EVENT> events; // by time
};

/// A picture that stands alone: no script, no font file. Levels below -72 dB are drawn at the
/// bottom, levels above 48 dB at the top.
std::string LevelPlotSvg(const sLEVEL_PLOT& plot);

} // namespace kvKorvoV12_9_0_320::kvHost
