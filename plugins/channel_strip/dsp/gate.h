// A noise gate: below the threshold the signal is turned down to the range, after a hold time that keeps it from
// chattering between the peaks of a low note. It opens quickly enough to let a drum's attack through.
//
// Thread: DesignGate is [main], all else [audio] and wait-free.
#pragma once

#include <plugins/channel_strip/dsp/channels.h>

namespace kvStrip {

/// The gate opens with this time constant.
inline constexpr double kGateOpenSeconds = 0.0005;

/// What a person sets.
struct sGATE_SETTINGS {
    double thresholdDb = -80.0;
    double rangeDb = 0.0; // gain of the closed gate, 0 or less
    double holdMs = 20.0;
    double releaseMs = 100.0;
};

/// What the signal needs.
struct sGATE {
    double thresholdPower = 0.0; // a peak squared; at 0 the gate is always open
    double closedGain = 1.0;
    double holdFrames = 0.0;
    double openRate = 1.0; // per sample, as GlideRate gives it
    double closeRate = 1.0;
};

sGATE DesignGate(const sGATE_SETTINGS& settings, double sampleRateHz) noexcept;

class KCGate {
  public:
    void SetTarget(const sGATE& target) noexcept { m_now = target; }
    void Reset() noexcept;
    void Process(const sCHANNELS& audio) noexcept;

    /// Least gain since the last call: 1 for a gate that was open throughout.
    double TakeLeastGain() noexcept;

  private:
    double NextGain(double power) noexcept;

    sGATE m_now;
    double m_framesSinceLoud = 0.0;
    double m_gain = 1.0;
    double m_leastGain = 1.0;
};

} // namespace kvStrip
