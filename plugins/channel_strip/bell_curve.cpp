#include <plugins/channel_strip/bell_curve.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kvStrip {

namespace {

constexpr double kLeastPower = 1.0e-30; // far below what a bell makes of either part, but not 0

// |b0 + b1·z⁻¹ + b2·z⁻²|² on the unit circle as a polynomial in s = sin²(w/2): R. Bristow-Johnson's form, which
// loses no digits at low frequencies as the one in cosines does.
double PowerOf(double b0, double b1, double b2, double s) noexcept {
    const double sum = b0 + b1 + b2;
    return sum * sum - 4.0 * s * (b0 * b1 + 4.0 * b0 * b2 + b1 * b2) + 16.0 * s * s * b0 * b2;
}

// A picture needs no more digits than a float's logarithm has, which takes half of the time.
double DecibelsOf(const sBIQUAD& filter, double s) noexcept {
    constexpr float kDecibelsOfTwice = 3.01029996F;
    const double power = PowerOf(filter.b0, filter.b1, filter.b2, s);
    const double resonance = PowerOf(1.0, filter.a1, filter.a2, s);
    const double ratio = std::max(power, kLeastPower) / std::max(resonance, kLeastPower);
    return static_cast<double>(kDecibelsOfTwice * std::log2(static_cast<float>(ratio)));
}

double PlaceOf(size_t gridPoint) noexcept {
    return static_cast<double>(gridPoint) / static_cast<double>(KCBellCurve::kNumGridPoints - 1);
}

} // namespace

double KCBellCurve::WarpAt(double place) const noexcept {
    const double frequencyHz = m_lowestHz * std::pow(m_highestHz / m_lowestHz, place);
    const double sine = std::sin(std::numbers::pi * std::min(0.5, frequencyHz / m_sampleRateHz));
    return sine * sine;
}

void KCBellCurve::Prepare(double lowestHz, double highestHz, double sampleRateHz) noexcept {
    if (lowestHz == m_lowestHz && highestHz == m_highestHz && sampleRateHz == m_sampleRateHz)
        return;
    m_lowestHz = lowestHz;
    m_highestHz = highestHz;
    m_sampleRateHz = sampleRateHz;
    for (size_t point = 0; point < kNumGridPoints; ++point)
        m_warps[point] = WarpAt(PlaceOf(point));
}

void KCBellCurve::Fill(const sBIQUAD& filter, double centre, kvKorvo::KCParamGraph& graph) const noexcept {
    graph.Clear();
    bool isTipMissing = true;
    for (size_t point = 0; point < kNumGridPoints; ++point) {
        const double place = PlaceOf(point);
        if (isTipMissing && place >= centre) {
            graph.AddPoint({centre, DecibelsOf(filter, WarpAt(centre))});
            isTipMissing = false;
        }
        graph.AddPoint({place, DecibelsOf(filter, m_warps[point])});
    }
}

} // namespace kvStrip
