#include "audio_buffers.h"

namespace kvKorvoV12_9_0_320::kvHost {

KCAudioBuffers::KCAudioBuffers(uint32_t numChannels, uint32_t maxFrames)
    : m_numChannels(numChannels), m_maxFrames(maxFrames), m_interleaved(numChannels * m_maxFrames),
      m_channels(numChannels * m_maxFrames) {}

void KCAudioBuffers::Process(KCPluginRunner& runner, int64_t numFrames) {
    const auto frames = static_cast<size_t>(numFrames);
    float* const channels[2] = {m_channels.data(), m_channels.data() + (m_numChannels - 1) * m_maxFrames};
    for (size_t channel = 0; channel < m_numChannels; ++channel)
        for (size_t frame = 0; frame < frames; ++frame)
            channels[channel][frame] = m_interleaved[frame * m_numChannels + channel];
    runner.Process({channels, channels, m_numChannels, static_cast<uint32_t>(frames)});
    for (size_t channel = 0; channel < m_numChannels; ++channel)
        for (size_t frame = 0; frame < frames; ++frame)
            m_interleaved[frame * m_numChannels + channel] = channels[channel][frame];
}

} // namespace kvKorvoV12_9_0_320::kvHost
