#include <plugins/channel_strip/dsp/gate.h>

#include <plugins/channel_strip/dsp/glide.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvStrip {

namespace {
constexpr double kMsPerSecond = 1000.0;
} // namespace

sGATE DesignGate(const sGATE_SETTINGS& settings, double sampleRateHz) noexcept {
    sGATE result;
    const double threshold = DecibelsToGain(settings.thresholdDb);
    result.thresholdPower = threshold * threshold;
    result.closedGain = DecibelsToGain(std::min(settings.rangeDb, 0.0));
    result.holdFrames = std::max(settings.holdMs, 0.0) / kMsPerSecond * sampleRateHz;
    result.openRate = GlideRate(kGateOpenSeconds, sampleRateHz);
    result.closeRate = GlideRate(settings.releaseMs / kMsPerSecond, sampleRateHz);
    return result;
}

void KCGate::Reset() noexcept {
    m_framesSinceLoud = 0.0;
    m_gain = 1.0;
    m_leastGain = 1.0;
}

double KCGate::NextGain(double power) noexcept {
    if (power >= m_now.thresholdPower)
        m_framesSinceLoud = 0.0;
    else
        m_framesSinceLoud += 1.0;
    const double wanted = m_framesSinceLoud <= m_now.holdFrames ? 1.0 : m_now.closedGain;
    m_gain += (wanted > m_gain ? m_now.openRate : m_now.closeRate) * (wanted - m_gain);
    if (std::fabs(wanted - m_gain) < kGlideArrived)
        m_gain = wanted;
    return m_gain;
}

void KCGate::Process(const sCHANNELS& audio) noexcept {
    for (uint32_t frame = 0; frame < audio.numFrames; ++frame) {
        const double gain = NextGain(audio.LoudestPower(frame));
        m_leastGain = std::min(m_leastGain, gain);
        audio.Scale(frame, gain);
    }
}

double KCGate::TakeLeastGain() noexcept { return std::exchange(m_leastGain, 1.0); }

} // namespace kvStrip
