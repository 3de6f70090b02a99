// The samples that the stages of the strip hand to each other: one or two channels of doubles, changed in place.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kvStrip {

inline constexpr uint32_t kMaxChannels = 2;

struct sCHANNELS {
    double* samples[kMaxChannels] = {nullptr, nullptr};
    uint32_t numChannels = 0; // 1 or 2
    uint32_t numFrames = 0;

    /// The square of the loudest channel at one frame: what the detectors of gate and compressor listen to, so that
    /// both channels get the same gain and the image stays where it is.
    double LoudestPower(uint32_t frame) const noexcept {
        const double first = samples[0][frame] * samples[0][frame];
        if (numChannels < 2)
            return first;
        const double second = samples[1][frame] * samples[1][frame];
        return first > second ? first : second;
    }

    void Scale(uint32_t frame, double gain) const noexcept {
        for (uint32_t channel = 0; channel < numChannels; ++channel)
            samples[channel][frame] *= gain;
    }
};

/// 20 dB are a factor of 10. Exactly 1 for 0 dB.
double DecibelsToGain(double decibels) noexcept;

} // namespace kvStrip
