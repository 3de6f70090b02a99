// What a scale function knows of its parameter: coefficients, resolution and break points. A plain value; the
// coefficients stand first and together, because the scales that every update runs through need nothing else.
#pragma once

#include <vector>

#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

struct sSCALE_INFO {
    double a = 0.0;            // offset or minimum, real-world units; number of states of a toggle scale
    double b = 0.0;            // slope per state (linear), ratio per state (logarithmic)
    double c = 0.0;            // spare; the standard set-ups leave 0
    double Quantize = 0.0;     // real-world resolution; 0, negative or not-a-number: values stay as they are
    double OverQuantize = 0.0; // 1 / Quantize, kept so that rounding multiplies instead of divides
    std::vector<double> RealWorldPoints; // break points of the range and map scales, real-world units
    std::vector<double> StatePoints;  // the states that belong to them; where one list is longer, its rest is idle
    KCFixedString<127> ScaleTypeName; // as the description spells it

    /// Sets the resolution and its reciprocal together. A quantize of 0 has the reciprocal 0.
    void SetQuantize(double quantize) noexcept {
        Quantize = quantize;
        OverQuantize = quantize == 0.0 ? 0.0 : 1.0 / quantize;
    }
};

} // namespace kvKorvoV12_9_0_320
