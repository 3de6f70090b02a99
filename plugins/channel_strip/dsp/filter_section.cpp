#include <plugins/channel_strip/dsp/filter_section.h>

#include <plugins/channel_strip/dsp/glide.h>

#include <algorithm>
#include <cmath>

namespace kvStrip {

void KCFilterSection::Reset() noexcept {
    m_filter = m_target;
    for (sSTATE& state : m_states)
        state = {};
}

void KCFilterSection::Glide() noexcept {
    double* const now[] = {&m_filter.b0, &m_filter.b1, &m_filter.b2, &m_filter.a1, &m_filter.a2};
    const double goal[] = {m_target.b0, m_target.b1, m_target.b2, m_target.a1, m_target.a2};
    double farthest = 0.0;
    for (int i = 0; i < 5; ++i) {
        *now[i] += m_rate * (goal[i] - *now[i]);
        farthest = std::max(farthest, std::fabs(goal[i] - *now[i]));
    }
    if (farthest < kGlideArrived)
        m_filter = m_target;
}

void KCFilterSection::Process(const sCHANNELS& audio) noexcept {
    uint32_t frame = 0;
    for (; frame < audio.numFrames && m_filter != m_target; ++frame) {
        Glide();
        for (uint32_t channel = 0; channel < audio.numChannels; ++channel)
            audio.samples[channel][frame] = Tick(m_filter, m_states[channel], audio.samples[channel][frame]);
    }
    for (uint32_t channel = 0; channel < audio.numChannels; ++channel) {
        double* const samples = audio.samples[channel];
        sSTATE state = m_states[channel];
        for (uint32_t i = frame; i < audio.numFrames; ++i)
            samples[i] = Tick(m_filter, state, samples[i]);
        m_states[channel] = state;
    }
}

} // namespace kvStrip
