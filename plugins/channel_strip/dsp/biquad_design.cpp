#include <plugins/channel_strip/dsp/biquad_design.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace kvStrip {

namespace {

constexpr double kLowestHz = 1.0;
constexpr double kHighestOfSampleRate = 0.49; // at half the sample rate the formulas collapse

bool ArePositive(double a, double b, double c) {
    return a > 0.0 && b > 0.0 && c > 0.0 && std::isfinite(a) && std::isfinite(b) && std::isfinite(c);
}

// Radians per sample.
double AngularFrequency(double frequencyHz, double sampleRateHz) {
    const double highest = sampleRateHz * kHighestOfSampleRate;
    const double carried = std::clamp(frequencyHz, std::min(kLowestHz, highest), highest);
    return 2.0 * std::numbers::pi * carried / sampleRateHz;
}

sBIQUAD SecondOrderHighPass(double w0, double q) {
    const double cosine = std::cos(w0);
    const double alpha = std::sin(w0) / (2.0 * q);
    const double a0 = 1.0 + alpha;
    const double edge = (1.0 + cosine) / 2.0;
    return {edge / a0, -(1.0 + cosine) / a0, edge / a0, -2.0 * cosine / a0, (1.0 - alpha) / a0};
}

// s / (s + 1) by the bilinear transform with its corner at w0.
sBIQUAD FirstOrderHighPass(double w0) {
    const double k = std::tan(w0 / 2.0);
    const double gain = 1.0 / (1.0 + k);
    return {gain, -gain, 0.0, (k - 1.0) * gain, 0.0};
}

// Of a Butterworth filter's pole pairs, numbered from the one nearest the imaginary axis.
double ButterworthQ(int order, int pair) {
    return 1.0 / (2.0 * std::sin(std::numbers::pi * (2.0 * pair + 1.0) / (2.0 * order)));
}

} // namespace

sBIQUAD DesignBell(double frequencyHz, double gainDb, double q, double sampleRateHz) noexcept {
    if (!ArePositive(frequencyHz, q, sampleRateHz) || !std::isfinite(gainDb) || gainDb == 0.0)
        return {};
    const double w0 = AngularFrequency(frequencyHz, sampleRateHz);
    const double amplitude = std::pow(10.0, gainDb / 40.0);
    const double alpha = std::sin(w0) / (2.0 * q);
    const double a0 = 1.0 + alpha / amplitude;
    const double middle = -2.0 * std::cos(w0) / a0;
    return {(1.0 + alpha * amplitude) / a0, middle, (1.0 - alpha * amplitude) / a0, middle,
            (1.0 - alpha / amplitude) / a0};
}

LowCutSections DesignLowCut(double frequencyHz, int decibelsPerOctave, double sampleRateHz) noexcept {
    LowCutSections sections;
    if (!ArePositive(frequencyHz, sampleRateHz, 1.0))
        return sections;
    const double w0 = AngularFrequency(frequencyHz, sampleRateHz);
    switch (decibelsPerOctave) {
    case 6:
        sections[0] = FirstOrderHighPass(w0);
        break;
    case 12:
        sections[0] = SecondOrderHighPass(w0, ButterworthQ(2, 0));
        break;
    case 18:
        sections[0] = SecondOrderHighPass(w0, ButterworthQ(3, 0));
        sections[1] = FirstOrderHighPass(w0);
        break;
    case 24:
        sections[0] = SecondOrderHighPass(w0, ButterworthQ(4, 0));
        sections[1] = SecondOrderHighPass(w0, ButterworthQ(4, 1));
        break;
    default:
        break;
    }
    return sections;
}

double MagnitudeAt(const sBIQUAD& filter, double frequencyHz, double sampleRateHz) noexcept {
    const double w = 2.0 * std::numbers::pi * frequencyHz / sampleRateHz;
    const std::complex<double> z1 = std::polar(1.0, -w);
    const std::complex<double> z2 = std::polar(1.0, -2.0 * w);
    return std::abs((filter.b0 + filter.b1 * z1 + filter.b2 * z2) / (1.0 + filter.a1 * z1 + filter.a2 * z2));
}

} // namespace kvStrip
