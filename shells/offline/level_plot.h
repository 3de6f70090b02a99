// The level of a sound before and after a plug-in over time, with the events of a session marked: recorded as a
// graphic stream, which any engine can show.
#pragma once

#include <string>
#include <vector>

#include <korvolib/graphicstream/binary_writer.h>

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

/// Records the picture as one stream of `writer`, with all its data in place. Levels below -72 dB are drawn at the
/// bottom, levels above 48 dB at the top. What fails is told by the writer (GetError).
void RecordLevelPlot(const sLEVEL_PLOT& plot, kvGS::KCGraphicStreamBinaryWriter& writer);

} // namespace kvKorvoV12_9_0_320::kvHost
