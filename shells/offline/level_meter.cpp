#include "level_meter.h"

#include <algorithm>
#include <cmath>

namespace kvKorvoV12_9_0_320::kvHost {

KCLevelMeter::KCLevelMeter(uint32_t numChannels, int64_t windowFrames)
    : m_numChannels(std::max(numChannels, 1u)), m_windowFrames(std::max<int64_t>(windowFrames, 1)) {}

void KCLevelMeter::Add(const float* interleaved, int64_t numFrames) {
    for (int64_t frame = 0; frame < numFrames; ++frame) {
        for (uint32_t channel = 0; channel < m_numChannels; ++channel, ++interleaved)
            m_sumOfSquares += static_cast<double>(*interleaved) * static_cast<double>(*interleaved);
        if (++m_framesInWindow < m_windowFrames)
            continue;
        m_levels.push_back(WindowLevel());
        m_framesInWindow = 0;
        m_sumOfSquares = 0.0;
    }
}

double KCLevelMeter::WindowLevel() const {
    const double meanSquare = m_sumOfSquares / (static_cast<double>(m_framesInWindow) * m_numChannels);
    const double level = 10.0 * std::log10(meanSquare);
    return level > kLevelFloor ? level : kLevelFloor; // not-a-number compares false: silence
}

std::vector<double> KCLevelMeter::GetLevels() const {
    std::vector<double> levels = m_levels;
    if (m_framesInWindow > 0)
        levels.push_back(WindowLevel());
    return levels;
}

} // namespace kvKorvoV12_9_0_320::kvHost
