// Audio for tests: the channels in and out that one call of Process gets.
#pragma once

#include <shells/plugin.h>

#include <cstdint>
#include <vector>

namespace kvTest {

class KCAudioBuffers {
  public:
    /// Every input sample is `level`; the outputs hold what no plug-in writes.
    KCAudioBuffers(uint32_t numChannels, uint32_t numFrames, float level = 0.0f)
        : m_in(numChannels, std::vector<float>(numFrames, level)),
          m_out(numChannels, std::vector<float>(numFrames, kUntouched)), m_numFrames(numFrames) {}

    static constexpr float kUntouched = 77.0f;

    std::vector<float>& In(uint32_t channel) { return m_in[channel]; }
    std::vector<float>& Out(uint32_t channel) { return m_out[channel]; }

    /// Valid until the next call.
    kvKorvo::sAUDIO_BLOCK Block(uint32_t firstFrame, uint32_t numFrames) {
        m_inPointers.clear();
        m_outPointers.clear();
        for (size_t channel = 0; channel < m_in.size(); ++channel) {
            m_inPointers.push_back(m_in[channel].data() + firstFrame);
            m_outPointers.push_back(m_out[channel].data() + firstFrame);
        }
        return {m_inPointers.data(), m_outPointers.data(), static_cast<uint32_t>(m_in.size()), numFrames};
    }
    kvKorvo::sAUDIO_BLOCK Block() { return Block(0, m_numFrames); }

  private:
    std::vector<std::vector<float>> m_in;
    std::vector<std::vector<float>> m_out;
    std::vector<const float*> m_inPointers;
    std::vector<float*> m_outPointers;
    uint32_t m_numFrames;
};

} // namespace kvTest
