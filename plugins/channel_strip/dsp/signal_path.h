// The strip's stages in their order: input gain, low cut, gate, two bells, compressor, image and trims, output gain
// and bypass. Works in double precision between the host's float samples.
//
// Each stage is one target of the blocks that the parameter side sends, and every block holds all that its stage
// needs. What arrives takes effect with the next Process and is glided to sample by sample: the same input and the
// same blocks at the same frames give the same output, bit for bit, however the frames between are cut into pieces.
//
// A bypass fades within some milliseconds and then copies its input bit for bit; the stages keep listening, so that
// they know their signal when they are faded in again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <plugins/channel_strip/dsp/compressor.h>
#include <plugins/channel_strip/dsp/filter_section.h>
#include <plugins/channel_strip/dsp/gate.h>
#include <plugins/channel_strip/dsp/stereo_stage.h>
#include <shells/plugin.h>

namespace kvStrip {

/// Which stage a block is for, and what it holds.
enum KETarget : uint32_t {
    kTarget_InputGain,  // double: a factor
    kTarget_LowCut,     // LowCutSections
    kTarget_Gate,       // sGATE
    kTarget_Bell1,      // sBIQUAD
    kTarget_Bell2,      // sBIQUAD
    kTarget_Compressor, // sCOMPRESSOR
    kTarget_Stereo,     // sSTEREO
    kTarget_Output,     // sOUTPUT
    kNumTargets
};

struct sOUTPUT {
    double gain = 1.0;
    double wet = 1.0; // 0: bypassed
};

/// What the stages report of the last block.
struct sLEVELS {
    float inputPeak[kMaxChannels] = {0.0f, 0.0f}; // 1 is full scale
    float outputPeak[kMaxChannels] = {0.0f, 0.0f};
    float compressorReductionDb = 0.0f; // 0 or more
    float gateReductionDb = 0.0f;       // 0 or more
};

class KCSignalPath {
  public:
    /// [main], while nothing processes. 0 or kErr_AllocationFailed, which leaves everything as it was.
    [[nodiscard]] int32_t Prepare(const kvKorvo::sPROCESS_SETUP& setup);

    /// [audio] A block of an unknown target or the wrong size is ignored.
    void ReceiveBlock(uint32_t target, const void* payload, size_t bytes) noexcept;

    /// [audio] At most as many channels and frames as were prepared.
    void Process(const kvKorvo::sAUDIO_BLOCK& block) noexcept;

    /// [audio] Forgets the past; every stage stands where its last block says.
    void Reset() noexcept;

    const sLEVELS& GetLevels() const noexcept { return m_levels; } // [audio]

  private:
    sCHANNELS TakeInput(const kvKorvo::sAUDIO_BLOCK& block) noexcept;
    void GiveOutput(const sCHANNELS& audio, const kvKorvo::sAUDIO_BLOCK& block) noexcept;
    void ReportReductions() noexcept;
    void SetGlideRates(double sampleRateHz) noexcept;

    KCGlide m_inputGain{1.0};
    KCFilterSection m_lowCut[2];
    KCGate m_gate;
    KCFilterSection m_bells[2];
    KCCompressor m_compressor;
    KCStereoStage m_stereo;
    KCGlide m_outputGain{1.0};
    KCGlide m_wet{1.0};
    sLEVELS m_levels;
    std::vector<double> m_samples; // of both channels, one behind the other
    uint32_t m_maxFrames = 0;
};

} // namespace kvStrip
