#include <plugins/channel_strip/dsp/signal_path.h>

#include <korvolib/utilities/error_codes.h>

#include <algorithm>
#include <cmath>
#include <new>

namespace kvStrip {

namespace {

float Decibels(double gain) {
    constexpr double kQuietest = 1e-10; // -200 dB
    return static_cast<float>(20.0 * std::log10(std::max(gain, kQuietest)));
}

// At either end bit for bit the one or the other.
float Mix(float dry, double processed, double wet) {
    if (wet == 0.0)
        return dry;
    return static_cast<float>(wet == 1.0 ? processed : dry + wet * (processed - dry));
}

} // namespace

int32_t KCSignalPath::Prepare(const kvKorvo::sPROCESS_SETUP& setup) {
    try {
        m_samples.resize(size_t{kMaxChannels} * setup.maxBlockFrames);
    } catch (const std::bad_alloc&) {
        return kvKorvo::kErr_AllocationFailed;
    }
    m_maxFrames = setup.maxBlockFrames;
    SetGlideRates(setup.sampleRateHz);
    return kvKorvo::kErr_NoErr;
}

void KCSignalPath::SetGlideRates(double sampleRateHz) noexcept {
    const double rate = GlideRate(kGlideSeconds, sampleRateHz);
    for (KCGlide* glide : {&m_inputGain, &m_outputGain, &m_wet})
        glide->SetRate(rate);
    for (KCFilterSection* section : {&m_lowCut[0], &m_lowCut[1], &m_bells[0], &m_bells[1]})
        section->SetGlideRate(rate);
    m_compressor.SetGlideRate(rate);
    m_stereo.SetGlideRate(rate);
}

void KCSignalPath::ReceiveBlock(uint32_t target, const void* payload, size_t bytes) noexcept {
    const auto receive = [&](auto contents, auto&& use) {
        if (kvKorvo::ReadBlock(payload, bytes, contents))
            use(contents);
    };
    switch (target) {
    case kTarget_InputGain:
        receive(1.0, [&](double gain) { m_inputGain.SetTarget(gain); });
        break;
    case kTarget_LowCut:
        receive(LowCutSections{}, [&](const LowCutSections& sections) {
            m_lowCut[0].SetTarget(sections[0]);
            m_lowCut[1].SetTarget(sections[1]);
        });
        break;
    case kTarget_Gate:
        receive(sGATE{}, [&](const sGATE& gate) { m_gate.SetTarget(gate); });
        break;
    case kTarget_Bell1:
        receive(sBIQUAD{}, [&](const sBIQUAD& bell) { m_bells[0].SetTarget(bell); });
        break;
    case kTarget_Bell2:
        receive(sBIQUAD{}, [&](const sBIQUAD& bell) { m_bells[1].SetTarget(bell); });
        break;
    case kTarget_Compressor:
        receive(sCOMPRESSOR{}, [&](const sCOMPRESSOR& compressor) { m_compressor.SetTarget(compressor); });
        break;
    case kTarget_Stereo:
        receive(sSTEREO{}, [&](const sSTEREO& stereo) { m_stereo.SetTarget(stereo); });
        break;
    case kTarget_Output:
        receive(sOUTPUT{}, [&](const sOUTPUT& output) {
            m_outputGain.SetTarget(output.gain);
            m_wet.SetTarget(output.wet);
        });
        break;
    default:
        break;
    }
}

void KCSignalPath::Reset() noexcept {
    for (KCGlide* glide : {&m_inputGain, &m_outputGain, &m_wet})
        glide->Arrive();
    for (KCFilterSection* section : {&m_lowCut[0], &m_lowCut[1], &m_bells[0], &m_bells[1]})
        section->Reset();
    m_gate.Reset();
    m_compressor.Reset();
    m_stereo.Reset();
    m_levels = {};
}

void KCSignalPath::Process(const kvKorvo::sAUDIO_BLOCK& block) noexcept {
    if (block.numChannels == 0 || block.numChannels > kMaxChannels || block.numFrames > m_maxFrames)
        return;
    const sCHANNELS audio = TakeInput(block);
    m_lowCut[0].Process(audio);
    m_lowCut[1].Process(audio);
    m_gate.Process(audio);
    m_bells[0].Process(audio);
    m_bells[1].Process(audio);
    m_compressor.Process(audio);
    m_stereo.Process(audio);
    GiveOutput(audio, block);
    ReportReductions();
}

sCHANNELS KCSignalPath::TakeInput(const kvKorvo::sAUDIO_BLOCK& block) noexcept {
    sCHANNELS audio;
    audio.numChannels = block.numChannels;
    audio.numFrames = block.numFrames;
    for (uint32_t channel = 0; channel < block.numChannels; ++channel) {
        audio.samples[channel] = m_samples.data() + size_t{channel} * m_maxFrames;
        float peak = 0.0f;
        for (uint32_t frame = 0; frame < block.numFrames; ++frame) {
            audio.samples[channel][frame] = block.in[channel][frame];
            peak = std::max(peak, std::fabs(block.in[channel][frame]));
        }
        m_levels.inputPeak[channel] = peak;
    }
    for (uint32_t frame = 0; frame < block.numFrames; ++frame)
        audio.Scale(frame, m_inputGain.Next());
    return audio;
}

void KCSignalPath::GiveOutput(const sCHANNELS& audio, const kvKorvo::sAUDIO_BLOCK& block) noexcept {
    float peaks[kMaxChannels] = {0.0f, 0.0f};
    for (uint32_t frame = 0; frame < block.numFrames; ++frame) {
        const double gain = m_outputGain.Next();
        const double wet = m_wet.Next();
        for (uint32_t channel = 0; channel < block.numChannels; ++channel) {
            const float dry = block.in[channel][frame]; // read before it is written: both may be one buffer
            const float out = Mix(dry, audio.samples[channel][frame] * gain, wet);
            peaks[channel] = std::max(peaks[channel], std::fabs(out));
            block.out[channel][frame] = out;
        }
    }
    std::copy(std::begin(peaks), std::end(peaks), std::begin(m_levels.outputPeak));
}

void KCSignalPath::ReportReductions() noexcept {
    m_levels.compressorReductionDb = static_cast<float>(m_compressor.TakeGreatestReductionDb());
    m_levels.gateReductionDb = -Decibels(m_gate.TakeLeastGain());
}

} // namespace kvStrip
