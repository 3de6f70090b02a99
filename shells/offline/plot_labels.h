// Where the labels of a plot's events go: to the right of their lines, in as many rows as it takes for none to
// cover another label or the line of another event.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

inline constexpr size_t kMostLabelRows = 14;

struct sPLOT_LABEL {
    double x = 0.0; // of the event's line, in pixels
    std::string text;
    size_t row = 0;      // from the top; the line runs from here down
    bool isShown = true; // false: no row had room for it
};

/// Gives the labels, which come by ascending x, their rows; the number of rows in use.
size_t PlaceLabels(std::vector<sPLOT_LABEL>& labels);

/// Where a label ends, in pixels: an estimate that is rather too wide.
double LabelEnd(const sPLOT_LABEL& label);

} // namespace kvKorvoV12_9_0_320::kvHost
