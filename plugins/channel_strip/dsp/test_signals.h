// Test signals and what tests measure of them.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <vector>

#include <plugins/channel_strip/dsp/channels.h>

namespace kvStrip::test {

inline constexpr double kSampleRateHz = 48000.0;

inline std::vector<double> Sine(double frequencyHz, size_t numFrames, double amplitude = 1.0) {
    std::vector<double> samples(numFrames);
    for (size_t i = 0; i < numFrames; ++i)
        samples[i] =
            amplitude * std::sin(2.0 * std::numbers::pi * frequencyHz * static_cast<double>(i) / kSampleRateHz);
    return samples;
}

inline std::vector<double> Noise(size_t numFrames, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> level(-1.0, 1.0);
    std::vector<double> samples(numFrames);
    for (double& sample : samples)
        sample = level(random);
    return samples;
}

inline double Energy(const std::vector<double>& samples, size_t first = 0) {
    double sum = 0.0;
    for (size_t i = first; i < samples.size(); ++i)
        sum += samples[i] * samples[i];
    return sum;
}

inline sCHANNELS Mono(std::vector<double>& samples) {
    sCHANNELS channels;
    channels.samples[0] = samples.data();
    channels.numChannels = 1;
    channels.numFrames = static_cast<uint32_t>(samples.size());
    return channels;
}

inline sCHANNELS Stereo(std::vector<double>& left, std::vector<double>& right) {
    sCHANNELS channels = Mono(left);
    channels.samples[1] = right.data();
    channels.numChannels = 2;
    return channels;
}

inline double Decibels(double gain) { return 20.0 * std::log10(gain); }

} // namespace kvStrip::test
