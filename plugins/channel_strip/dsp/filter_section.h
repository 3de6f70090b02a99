// One second-order section for one or two channels: transposed direct form II with states in double precision.
//
// New coefficients are glided to, sample by sample. Stable on the whole way: the pairs (a1, a2) of stable filters
// form a triangle, and every step of a glide lies on the straight line between two of them.
//
// Thread: [audio]; wait-free.
#pragma once

#include <plugins/channel_strip/dsp/biquad_design.h>
#include <plugins/channel_strip/dsp/channels.h>

namespace kvStrip {

class KCFilterSection {
  public:
    void SetGlideRate(double rate) noexcept { m_rate = rate; }
    void SetTarget(const sBIQUAD& target) noexcept { m_target = target; }

    /// Forgets the past and stands at its target.
    void Reset() noexcept;
    void Process(const sCHANNELS& audio) noexcept;

  private:
    struct sSTATE {
        double s1 = 0.0;
        double s2 = 0.0;
    };
    static double Tick(const sBIQUAD& filter, sSTATE& state, double x) noexcept {
        const double y = filter.b0 * x + state.s1;
        state.s1 = filter.b1 * x - filter.a1 * y + state.s2;
        state.s2 = filter.b2 * x - filter.a2 * y;
        return y;
    }
    void Glide() noexcept;

    sBIQUAD m_filter;
    sBIQUAD m_target;
    double m_rate = 1.0;
    sSTATE m_states[kMaxChannels];
};

} // namespace kvStrip
