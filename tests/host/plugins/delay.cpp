// Gives back what it gets, later by 100 frames, and says so.
#include <korvolib/alg/control_param.h>
#include <shells/plugin_algorithm.h>

#include <array>
#include <cstddef>

namespace {

class KCDelay : public kvKorvo::KCPluginAlgorithm {
  public:
    void ReceiveBlock(uint32_t, const void*, size_t) noexcept override {}

    void Process(const kvKorvo::sAUDIO_BLOCK& block) noexcept override {
        for (uint32_t frame = 0; frame < block.numFrames; ++frame, m_at = (m_at + 1) % kFrames)
            for (uint32_t channel = 0; channel < block.numChannels; ++channel) {
                const float in = block.in[channel][frame];
                block.out[channel][frame] = m_past[channel][m_at];
                m_past[channel][m_at] = in;
            }
    }

    uint32_t GetLatencyFrames() const noexcept override { return kFrames; }

  protected:
    BUFFER_HEADER* ApplyParamSelf(size_t) override { return nullptr; }

  private:
    static constexpr uint32_t kFrames = 100;
    std::array<std::array<float, kFrames>, 2> m_past = {};
    size_t m_at = 0;
};

} // namespace

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    return kvKorvo::PluginEntry<KCDelay>("Delay", "Korvo tests");
}
