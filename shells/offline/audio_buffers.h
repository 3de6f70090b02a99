// Between files, which hold the samples of a frame side by side, and plug-ins, which take a buffer a channel.
#pragma once

#include <cstdint>
#include <vector>

#include <shells/plugin_runner.h>

namespace kvKorvoV12_9_0_320::kvHost {

class KCAudioBuffers {
  public:
    /// `numChannels` is 1 or 2.
    KCAudioBuffers(uint32_t numChannels, uint32_t maxFrames);

    float* GetInterleaved() { return m_interleaved.data(); }
    /// Takes the first frames of the interleaved buffer through the plug-in and puts them back.
    void Process(KCPluginRunner& runner, int64_t numFrames);

  private:
    uint32_t m_numChannels;
    size_t m_maxFrames;
    std::vector<float> m_interleaved;
    std::vector<float> m_channels; // one after the other
};

} // namespace kvKorvoV12_9_0_320::kvHost
