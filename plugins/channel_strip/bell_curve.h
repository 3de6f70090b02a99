// KCBellCurve: the response of a bell as points to be drawn: along the travel of its frequency, 0 … 1, in decibels.
//
// Filling it costs a few flops and one logarithm a point, some microseconds: it is done with every change of the
// bell, since nobody tells when a window opens. Nothing allocates but the graph's own capacity. Thread: [main].
#pragma once

#include <plugins/channel_strip/dsp/biquad_design.h>

#include <korvolib/alg/param_parts.h>

#include <array>

namespace kvStrip {

class KCBellCurve {
  public:
    static constexpr size_t kNumGridPoints = 81;
    /// What a graph has to hold: the grid, and the tip of the bell.
    static constexpr size_t kNumPoints = kNumGridPoints + 1;

    /// The band from end to end of the travel, which is logarithmic. Nothing is done again for the same numbers.
    void Prepare(double lowestHz, double highestHz, double sampleRateHz) noexcept;
    /// Replaces the points. `centre` is the place of the bell on the travel: a narrow one would fall through the
    /// grid.
    void Fill(const sBIQUAD& filter, double centre, kvKorvo::KCParamGraph& graph) const noexcept;

  private:
    double WarpAt(double place) const noexcept;

    double m_lowestHz = 0.0;
    double m_highestHz = 0.0;
    double m_sampleRateHz = 0.0;
    std::array<double, kNumGridPoints> m_warps{}; // sin²(w/2) of the grid's frequencies
};

} // namespace kvStrip
