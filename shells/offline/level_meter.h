// The level of a sound over time: one root-mean-square value, in decibels of full scale, for each window of equal
// length.
#pragma once

#include <cstdint>
#include <vector>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

inline constexpr double kLevelFloor = -90.0; // dB; silence counts as this

class KCLevelMeter {
  public:
    /// `windowFrames` below 1 counts as 1.
    KCLevelMeter(uint32_t numChannels, int64_t windowFrames);

    void Add(const float* interleaved, int64_t numFrames);
    /// The windows so far; a last one that is not full is measured over what it holds.
    std::vector<double> GetLevels() const;
    int64_t GetWindowFrames() const { return m_windowFrames; }

  private:
    double WindowLevel() const;

    uint32_t m_numChannels;
    int64_t m_windowFrames;
    int64_t m_framesInWindow = 0;
    double m_sumOfSquares = 0.0;
    std::vector<double> m_levels;
};

} // namespace kvKorvoV12_9_0_320::kvHost
