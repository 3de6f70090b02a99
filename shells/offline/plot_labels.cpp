#include "plot_labels.h"

#include <algorithm>

#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {

double LabelEnd(const sPLOT_LABEL& label) {
    constexpr double kCharacterWidth = 6.7;
    constexpr double kGap = 12.0;
    return label.x + kGap + kCharacterWidth * static_cast<double>(TextWidth(label.text));
}

// A line runs down from its label's row through all rows below. So a label goes below every earlier one that
// reaches past its line: a crowd of events becomes a stair, and the next that stands free begins at the top again.
size_t PlaceLabels(std::vector<sPLOT_LABEL>& labels) {
    std::vector<double> rowEnds; // of the label placed last in each row
    for (sPLOT_LABEL& label : labels) {
        const auto reachesPast = [&](double end) { return end > label.x; };
        const auto lowest = std::find_if(rowEnds.rbegin(), rowEnds.rend(), reachesPast);
        label.row = static_cast<size_t>(rowEnds.rend() - lowest);
        label.isShown = label.row < kMostLabelRows;
        if (!label.isShown)
            continue;
        if (label.row == rowEnds.size())
            rowEnds.push_back(0.0);
        rowEnds[label.row] = LabelEnd(label);
    }
    return rowEnds.size();
}

} // namespace kvKorvoV12_9_0_320::kvHost
