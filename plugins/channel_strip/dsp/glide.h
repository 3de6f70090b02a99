// A number that walks to a new value instead of jumping there, so that a moved control does not click: the one-pole
// smoother y += k·(target − y), one step a sample. It ends exactly on its target, so that a unity gain at rest
// leaves samples bit for bit as they were.
//
// Thread: [audio]; wait-free.
#pragma once

#include <cmath>

namespace kvStrip {

/// Time constant of every glide: short enough to feel direct, long enough not to click.
inline constexpr double kGlideSeconds = 0.005;

/// Closer than this (-180 dB of a full-scale gain) a glide has arrived.
inline constexpr double kGlideArrived = 1e-9;

/// Share of the remaining way that one sample covers, for a time constant in seconds. A time of 0 arrives at once.
inline double GlideRate(double seconds, double sampleRateHz) noexcept {
    const double frames = seconds * sampleRateHz;
    return frames > 0.0 ? -std::expm1(-1.0 / frames) : 1.0;
}

class KCGlide {
  public:
    explicit KCGlide(double value) noexcept : m_value(value), m_target(value) {}

    void SetRate(double rate) noexcept { m_rate = rate; }
    void SetTarget(double target) noexcept { m_target = target; }
    void Arrive() noexcept { m_value = m_target; }
    void StandAt(double value) noexcept { m_value = value; }

    bool IsMoving() const noexcept { return m_value != m_target; }
    double GetValue() const noexcept { return m_value; }

    double Next() noexcept {
        if (m_value != m_target) {
            m_value += m_rate * (m_target - m_value);
            if (std::fabs(m_target - m_value) < kGlideArrived)
                m_value = m_target;
        }
        return m_value;
    }

  private:
    double m_value;
    double m_target;
    double m_rate = 1.0;
};

} // namespace kvStrip
