#include <plugins/channel_strip/channel_strip.h>
#include <plugins/channel_strip/channel_strip_controls.h>
#include <plugins/channel_strip/channel_strip_window.h>

#include <korvolib/alg/meters.h>

#include <algorithm>
#include <numbers>
#include <string>

namespace kvStrip {

using kvKorvo::kFullTravel;
using kvKorvo::sPROCESS_MEMORY_SIZE;

namespace {

// The window and the host's controls are one document.
std::string GuiXML() {
    std::string xml = WindowXML();
    return xml.insert(xml.rfind("</GUI>"), ControlsXML());
}

} // namespace

KCChannelStrip::KCChannelStrip() {
    SetDescription("ParamsXML", ParamsXML());
    SetDescription("GUIXML", GuiXML().c_str());
}

int32_t KCChannelStrip::PrepareScaleFunctionsMapSelf(ScaleFunctionsMap& map) {
    AddFaderScale(map);
    return kvKorvo::kErr_NoErr;
}

int32_t KCChannelStrip::FinishCreateSelf() {
    UseWords(*this);
    for (const KEParam frequency : {kParam_Bell1Frequency, kParam_Bell2Frequency})
        if (!GetParam(frequency)->ResizeGraph(KCBellCurve::kNumPoints))
            return kvKorvo::kErr_AllocationFailed;
    (void)DesignBellStage(kParam_Bell1Frequency, kParam_Bell1Gain, kParam_Bell1Q); // for the window's first picture
    (void)DesignBellStage(kParam_Bell2Frequency, kParam_Bell2Gain, kParam_Bell2Q);
    return kvKorvo::kErr_NoErr;
}

// ---- The parameter side -----------------------------------------------------------------------------------------

KETarget KCChannelStrip::TargetOf(size_t param) noexcept {
    static constexpr KETarget kTargets[kNumParams] = {
        kTarget_Output, // bypass
        kTarget_InputGain,  kTarget_LowCut,     kTarget_LowCut,     kTarget_LowCut,     kTarget_Gate,
        kTarget_Gate,       kTarget_Gate,       kTarget_Gate,       kTarget_Bell1,      kTarget_Bell1,
        kTarget_Bell1,      kTarget_Bell2,      kTarget_Bell2,      kTarget_Bell2,      kTarget_Compressor,
        kTarget_Compressor, kTarget_Compressor, kTarget_Compressor, kTarget_Compressor, kTarget_Compressor,
        kTarget_Compressor, kTarget_Stereo,     kTarget_Stereo,     kTarget_Stereo,     kTarget_Output};
    return param < kNumParams ? kTargets[param] : kNumTargets;
}

sPROCESS_MEMORY_SIZE KCChannelStrip::GetProcessMemorySize() const {
    sPROCESS_MEMORY_SIZE size = KCPluginAlgorithm::GetProcessMemorySize();
    size.numTargets = kNumTargets;
    return size;
}

KCChannelStrip::BUFFER_HEADER* KCChannelStrip::ApplyParamSelf(size_t index) { return MakeStage(TargetOf(index)); }

// Each stage once, not once for each of its parameters.
KCChannelStrip::BUFFER_HEADER* KCChannelStrip::ApplyAlgSelf() {
    BUFFER_HEADER* chain = nullptr;
    for (uint32_t target = 0; target < kNumTargets; ++target)
        chain = ChainBufs(chain, MakeStage(static_cast<KETarget>(target)));
    return chain;
}

KCChannelStrip::BUFFER_HEADER* KCChannelStrip::MakeStage(KETarget target) {
    switch (target) {
    case kTarget_InputGain:
        return MakeBlock(target, DecibelsToGain(GetParamRealWorld(kParam_InputGain)));
    case kTarget_LowCut:
        return MakeBlock(target, DesignLowCutStage());
    case kTarget_Gate:
        return MakeBlock(target, DesignGateStage());
    case kTarget_Bell1:
        return MakeBlock(target, DesignBellStage(kParam_Bell1Frequency, kParam_Bell1Gain, kParam_Bell1Q));
    case kTarget_Bell2:
        return MakeBlock(target, DesignBellStage(kParam_Bell2Frequency, kParam_Bell2Gain, kParam_Bell2Q));
    case kTarget_Compressor:
        return MakeBlock(target, DesignCompressorStage());
    case kTarget_Stereo:
        return MakeBlock(target, DesignStereoStage());
    case kTarget_Output:
        return MakeBlock(target, DesignOutputStage());
    case kNumTargets:
        break;
    }
    return nullptr;
}

LowCutSections KCChannelStrip::DesignLowCutStage() const {
    if (GetParamRealWorld(kParam_LowCut) == 0.0)
        return {};
    return DesignLowCut(GetParamRealWorld(kParam_LowCutFrequency),
                        static_cast<int>(GetParamRealWorld(kParam_LowCutSlope)), GetSampleRate());
}

// The window shows the curve as the graph of the bell's frequency.
sBIQUAD KCChannelStrip::DesignBellStage(KEParam frequency, KEParam gain, KEParam q) {
    const sBIQUAD bell =
        DesignBell(GetParamRealWorld(frequency), GetParamRealWorld(gain), GetParamRealWorld(q), GetSampleRate());
    m_curve.Prepare(StateToRealWorld(frequency, 0.0), StateToRealWorld(frequency, kFullTravel), GetSampleRate());
    m_curve.Fill(bell, GetParamState(frequency) / kFullTravel, GetParam(frequency)->GetGraph());
    return bell;
}

sGATE KCChannelStrip::DesignGateStage() const {
    sGATE_SETTINGS settings;
    settings.thresholdDb = GetParamRealWorld(kParam_GateThreshold);
    settings.rangeDb = GetParamRealWorld(kParam_GateRange);
    settings.holdMs = GetParamRealWorld(kParam_GateHold);
    settings.releaseMs = GetParamRealWorld(kParam_GateRelease);
    sGATE gate = DesignGate(settings, GetSampleRate());
    if (settings.thresholdDb <= kGateOffDb)
        gate.thresholdPower = 0.0;
    return gate;
}

sCOMPRESSOR KCChannelStrip::DesignCompressorStage() const {
    sCOMPRESSOR_SETTINGS settings;
    settings.thresholdDb = GetParamRealWorld(kParam_CompressorThreshold);
    settings.ratio = GetParamRealWorld(kParam_CompressorRatio);
    settings.kneeDb = GetParamRealWorld(kParam_CompressorKnee);
    settings.attackMs = GetParamRealWorld(kParam_CompressorAttack);
    settings.releaseMs = GetParamRealWorld(kParam_CompressorRelease);
    settings.rmsWindowMs = GetParamRealWorld(kParam_CompressorDetector);
    settings.makeupDb = GetParamRealWorld(kParam_MakeupGain);
    return DesignCompressor(settings, GetSampleRate());
}

sSTEREO KCChannelStrip::DesignStereoStage() const {
    constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;
    return {GetParamRealWorld(kParam_Rotation) * kRadiansPerDegree,
            DecibelsToGain(GetParamRealWorld(kParam_LeftTrim)),
            DecibelsToGain(GetParamRealWorld(kParam_RightTrim))};
}

sOUTPUT KCChannelStrip::DesignOutputStage() const {
    const double faderDb = GetParamRealWorld(kParam_OutputGain);
    const bool isBypassed = GetParamRealWorld(kParam_Bypass) != 0.0;
    return {faderDb <= kFaderOffDb ? 0.0 : DecibelsToGain(faderDb), isBypassed ? 0.0 : 1.0};
}

// ---- The audio side ---------------------------------------------------------------------------------------------

int32_t KCChannelStrip::Prepare(const kvKorvo::sPROCESS_SETUP& setup) { return m_path.Prepare(setup); }

void KCChannelStrip::ReceiveBlock(uint32_t target, const void* payload, size_t bytes) noexcept {
    m_path.ReceiveBlock(target, payload, bytes);
}

void KCChannelStrip::Reset() noexcept { m_path.Reset(); }

void KCChannelStrip::Process(const kvKorvo::sAUDIO_BLOCK& block) noexcept {
    m_path.Process(block);
    const sLEVELS& levels = m_path.GetLevels();
    kvKorvo::KCMeters& meters = GetMeters();
    meters.Set(kMeter_InputLeft, levels.inputPeak[0]);
    meters.Set(kMeter_InputRight, levels.inputPeak[1]);
    meters.Set(kMeter_OutputLeft, levels.outputPeak[0]);
    meters.Set(kMeter_OutputRight, levels.outputPeak[1]);
    meters.Set(kMeter_CompressorReduction, levels.compressorReductionDb);
    meters.Set(kMeter_GateReduction, levels.gateReductionDb);
}

} // namespace kvStrip

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    return kvKorvo::PluginEntry<kvStrip::KCChannelStrip>("Channel Strip", "Korvo");
}
