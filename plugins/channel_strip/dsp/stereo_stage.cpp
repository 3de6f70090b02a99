#include <plugins/channel_strip/dsp/stereo_stage.h>

#include <cmath>
#include <numbers>

namespace kvStrip {

void KCStereoStage::SetGlideRate(double rate) noexcept {
    m_angle.SetRate(rate);
    m_leftGain.SetRate(rate);
    m_rightGain.SetRate(rate);
}

void KCStereoStage::SetTarget(const sSTEREO& target) noexcept {
    const double way = std::remainder(target.angleRadians - m_angle.GetValue(), 2.0 * std::numbers::pi);
    // Where it stands is written as its neighbour on the circle: so it ends on the very angle that was asked for.
    m_angle.StandAt(target.angleRadians - way);
    m_angle.SetTarget(target.angleRadians);
    m_leftGain.SetTarget(target.leftGain);
    m_rightGain.SetTarget(target.rightGain);
}

void KCStereoStage::Reset() noexcept {
    m_angle.Arrive();
    SetAngle(m_angle.GetValue());
    m_leftGain.Arrive();
    m_rightGain.Arrive();
}

void KCStereoStage::SetAngle(double radians) noexcept {
    m_cosine = std::cos(radians);
    m_sine = std::sin(radians);
}

void KCStereoStage::TurnImage(const sCHANNELS& audio) noexcept {
    double* const left = audio.samples[0];
    double* const right = audio.samples[1];
    for (uint32_t frame = 0; frame < audio.numFrames; ++frame) {
        if (m_angle.IsMoving())
            SetAngle(m_angle.Next());
        const double l = left[frame];
        const double r = right[frame];
        left[frame] = (m_cosine * l - m_sine * r) * m_leftGain.Next();
        right[frame] = (m_sine * l + m_cosine * r) * m_rightGain.Next();
    }
}

void KCStereoStage::Process(const sCHANNELS& audio) noexcept {
    if (audio.numChannels == 2) {
        TurnImage(audio);
        return;
    }
    for (uint32_t frame = 0; frame < audio.numFrames; ++frame)
        audio.samples[0][frame] *= m_leftGain.Next();
}

} // namespace kvStrip
