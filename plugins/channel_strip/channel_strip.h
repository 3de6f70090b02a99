// A stereo channel strip: input gain, low cut, gate, two bells, compressor, image and trims, output fader, bypass.
//
// What belongs where: the parameters are described in channel_strip_params.cpp, the signal runs through dsp/. This
// class joins them: when a parameter moves, it designs the stage the parameter belongs to and sends it over as one
// block.
#pragma once

#include <plugins/channel_strip/bell_curve.h>
#include <plugins/channel_strip/channel_strip_params.h>
#include <plugins/channel_strip/dsp/signal_path.h>
#include <shells/plugin_algorithm.h>

namespace kvStrip {

/// What the display can ask GetMeters() for; levels are peaks of the last block with full scale at 1, reductions
/// the greatest of the last block in decibels, 0 or more.
enum KEMeter : size_t {
    kMeter_InputLeft,
    kMeter_InputRight,
    kMeter_OutputLeft,
    kMeter_OutputRight,
    kMeter_CompressorReduction,
    kMeter_GateReduction,
    kNumMeters
};

class KCChannelStrip : public kvKorvo::KCPluginAlgorithm {
  public:
    KCChannelStrip();

    [[nodiscard]] int32_t Prepare(const kvKorvo::sPROCESS_SETUP& setup) override;
    void ReceiveBlock(uint32_t target, const void* payload, size_t bytes) noexcept override;
    void Process(const kvKorvo::sAUDIO_BLOCK& block) noexcept override;
    void Reset() noexcept override;

    /// The stage that a parameter belongs to; kNumTargets for an unknown one.
    static KETarget TargetOf(size_t param) noexcept;

  protected:
    int32_t PrepareScaleFunctionsMapSelf(ScaleFunctionsMap& map) override;
    int32_t FinishCreateSelf() override;
    size_t GetNumMetersSelf() const override { return kNumMeters; }
    kvKorvo::sPROCESS_MEMORY_SIZE GetProcessMemorySize() const override;
    BUFFER_HEADER* ApplyParamSelf(size_t index) override;
    BUFFER_HEADER* ApplyAlgSelf() override;

  private:
    BUFFER_HEADER* MakeStage(KETarget target);
    LowCutSections DesignLowCutStage() const;
    sBIQUAD DesignBellStage(KEParam frequency, KEParam gain, KEParam q);
    sGATE DesignGateStage() const;
    sCOMPRESSOR DesignCompressorStage() const;
    sSTEREO DesignStereoStage() const;
    sOUTPUT DesignOutputStage() const;

    KCSignalPath m_path;
    KCBellCurve m_curve;
};

} // namespace kvStrip
