// A feed-forward compressor after D. Giannoulis, M. Massberg, J. D. Reiss, "Digital Dynamic Range Compressor
// Design: a Tutorial and Analysis", J. Audio Eng. Soc. 60 (6), 2012: level in decibels, static curve with a
// quadratic soft knee (their equation 4), then a smooth branching detector (equation 16) on the reduction in
// decibels, whose attack and release are time constants (63 % of the way).
//
// Thread: Design… is [main], all else [audio] and wait-free.
#pragma once

#include <plugins/channel_strip/dsp/channels.h>
#include <plugins/channel_strip/dsp/glide.h>

namespace kvStrip {

/// What a person sets.
struct sCOMPRESSOR_SETTINGS {
    double thresholdDb = 0.0;
    double ratio = 1.0; // 1 or more
    double kneeDb = 0.0;
    double attackMs = 10.0;
    double releaseMs = 100.0;
    double rmsWindowMs = 0.0; // 0: the detector follows the peaks
    double makeupDb = 0.0;
};

/// What the signal needs.
struct sCOMPRESSOR {
    double thresholdDb = 0.0;
    double slope = 0.0; // 1/ratio − 1: 0 … −1
    double kneeDb = 0.0;
    double attackRate = 1.0; // per sample, as GlideRate gives it
    double releaseRate = 1.0;
    double powerRate = 1.0; // 1: peaks
    double makeupGain = 1.0;
};

sCOMPRESSOR DesignCompressor(const sCOMPRESSOR_SETTINGS& settings, double sampleRateHz) noexcept;

/// The static curve: by how many decibels (0 or more) a steady level is turned down.
double ReductionAt(const sCOMPRESSOR& compressor, double levelDb) noexcept;

class KCCompressor {
  public:
    void SetGlideRate(double rate) noexcept { m_makeup.SetRate(rate); }
    void SetTarget(const sCOMPRESSOR& target) noexcept;
    void Reset() noexcept;
    void Process(const sCHANNELS& audio) noexcept;

    /// Greatest reduction since the last call, in decibels, 0 or more.
    double TakeGreatestReductionDb() noexcept;

  private:
    double NextReductionDb(double power) noexcept;

    sCOMPRESSOR m_now;
    KCGlide m_makeup{1.0};
    double m_power = 0.0;
    double m_reductionDb = 0.0;
    double m_greatestDb = 0.0;
};

} // namespace kvStrip
