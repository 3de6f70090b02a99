// Coefficients of the strip's filters, from published formulas:
//   - bells: "peakingEQ" of R. Bristow-Johnson, "Cookbook formulae for audio equalizer biquad filter coefficients";
//   - low cut: Butterworth's maximally flat cascade, each second-order part as the Cookbook's "HPF" (the bilinear
//     transform with its corner put where it was asked for), an odd order's first-order part by the same transform.
//
// Thread: [main]; pure functions. Frequencies outside the band that the sample rate can carry are moved into it;
// whatever is not a finite positive number gives the filter that changes nothing.
#pragma once

#include <array>

namespace kvStrip {

/// y[n] = b0·x[n] + b1·x[n−1] + b2·x[n−2] − a1·y[n−1] − a2·y[n−2]. As it begins it changes nothing.
struct sBIQUAD {
    double b0 = 1.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;

    bool operator==(const sBIQUAD&) const = default;
};

/// A fourth-order filter at most; unused sections change nothing.
using LowCutSections = std::array<sBIQUAD, 2>;

/// Exactly the filter that changes nothing for a gain of 0 dB.
sBIQUAD DesignBell(double frequencyHz, double gainDb, double q, double sampleRateHz) noexcept;

/// -3 dB at the frequency; `decibelsPerOctave` is 6, 12, 18 or 24, anything else changes nothing.
LowCutSections DesignLowCut(double frequencyHz, int decibelsPerOctave, double sampleRateHz) noexcept;

/// |H| at a frequency, from the transfer function on the unit circle: what a picture of the curve is drawn from.
double MagnitudeAt(const sBIQUAD& filter, double frequencyHz, double sampleRateHz) noexcept;

} // namespace kvStrip
