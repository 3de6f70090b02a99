#include <plugins/channel_strip/dsp/compressor.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvStrip {

namespace {

constexpr double kMsPerSecond = 1000.0;
constexpr double kSilencePower = 1e-20; // -200 dB: below it a logarithm says nothing of use
constexpr double kNoReductionDb = 1e-9; // a release that has come this far is over

} // namespace

sCOMPRESSOR DesignCompressor(const sCOMPRESSOR_SETTINGS& settings, double sampleRateHz) noexcept {
    sCOMPRESSOR result;
    result.thresholdDb = settings.thresholdDb;
    result.slope = 1.0 / std::max(settings.ratio, 1.0) - 1.0;
    result.kneeDb = std::max(settings.kneeDb, 0.0);
    result.attackRate = GlideRate(settings.attackMs / kMsPerSecond, sampleRateHz);
    result.releaseRate = GlideRate(settings.releaseMs / kMsPerSecond, sampleRateHz);
    result.powerRate = GlideRate(settings.rmsWindowMs / kMsPerSecond, sampleRateHz);
    result.makeupGain = DecibelsToGain(settings.makeupDb);
    return result;
}

double ReductionAt(const sCOMPRESSOR& compressor, double levelDb) noexcept {
    const double over = levelDb - compressor.thresholdDb;
    const double halfKnee = compressor.kneeDb / 2.0;
    if (over <= -halfKnee)
        return 0.0;
    if (over >= halfKnee)
        return -compressor.slope * over;
    const double intoKnee = over + halfKnee;
    return -compressor.slope * intoKnee * intoKnee / (2.0 * compressor.kneeDb);
}

void KCCompressor::SetTarget(const sCOMPRESSOR& target) noexcept {
    m_now = target;
    m_makeup.SetTarget(target.makeupGain);
}

void KCCompressor::Reset() noexcept {
    m_makeup.Arrive();
    m_power = 0.0;
    m_reductionDb = 0.0;
    m_greatestDb = 0.0;
}

double KCCompressor::NextReductionDb(double power) noexcept {
    m_power = (1.0 - m_now.powerRate) * m_power + m_now.powerRate * power;
    m_power = std::max(m_power, kSilencePower);
    const double wanted = m_now.slope == 0.0 ? 0.0 : ReductionAt(m_now, 10.0 * std::log10(m_power));
    const double rate = wanted > m_reductionDb ? m_now.attackRate : m_now.releaseRate;
    m_reductionDb += rate * (wanted - m_reductionDb);
    if (wanted == 0.0 && m_reductionDb < kNoReductionDb)
        m_reductionDb = 0.0;
    return m_reductionDb;
}

void KCCompressor::Process(const sCHANNELS& audio) noexcept {
    for (uint32_t frame = 0; frame < audio.numFrames; ++frame) {
        const double reductionDb = NextReductionDb(audio.LoudestPower(frame));
        m_greatestDb = std::max(m_greatestDb, reductionDb);
        const double gain = reductionDb == 0.0 ? 1.0 : DecibelsToGain(-reductionDb);
        audio.Scale(frame, gain * m_makeup.Next());
    }
}

double KCCompressor::TakeGreatestReductionDb() noexcept { return std::exchange(m_greatestDb, 0.0); }

} // namespace kvStrip
