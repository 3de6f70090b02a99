// A plug-in of one parameter, small enough to know by heart: what comes out of it tells what has reached its audio
// side.
#pragma once

#include <korvolib/alg/control_param.h>
#include <shells/plugin_algorithm.h>

#include <atomic>

namespace kvTest {

class KCGainPlugin : public kvKorvo::KCPluginAlgorithm {
  public:
    void ReceiveBlock(uint32_t, const void* payload, size_t bytes) noexcept override {
        ++m_numReceived;
        (void)!kvKorvo::ReadBlock(payload, bytes, m_gain);
    }
    void Process(const kvKorvo::sAUDIO_BLOCK& block) noexcept override {
        m_longestBlock = block.numFrames > m_longestBlock ? block.numFrames : m_longestBlock;
        for (uint32_t channel = 0; channel < block.numChannels; ++channel)
            for (uint32_t frame = 0; frame < block.numFrames; ++frame)
                block.out[channel][frame] = block.in[channel][frame] * m_gain;
    }
    void Reset() noexcept override { ++m_numResets; }
    uint32_t GetLatencyFrames() const noexcept override { return m_latency.load(std::memory_order_relaxed); }

    float m_gain = -1.0f;
    uint32_t m_numReceived = 0;
    uint32_t m_numResets = 0;
    uint32_t m_longestBlock = 0;
    std::atomic<uint32_t> m_latency{0};

  protected:
    int32_t PrepareParameterVecSelf() override {
        kvKorvo::sCONTROL_PARAM gain(kvKorvo::KCFixedString<127>("Gain"));
        gain.SetScaleLin(0.0, 1000.0, 0.1); // the value is the state
        AddParam(gain);
        return kvKorvo::kErr_NoErr;
    }
    BUFFER_HEADER* ApplyParamSelf(size_t index) override {
        return MakeBlock(0, static_cast<float>(GetParamRealWorld(index)));
    }
};

} // namespace kvTest
