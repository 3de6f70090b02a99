// A value as text and back, beside the C library's way of doing the plain part of it.
#include <korvolib/alg/param_text.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>

#include <benchmark/benchmark.h>

#include <korvolib/alg/param_base.h>

using namespace kvKorvoV12_9_0_320;

namespace {

constexpr size_t kCount = 1024;

KCParam_Base Gain() {
    KCParam_Base param;
    param.SetScaleLin(-60.0, 12.0, 0.1);
    param.SetUnitsString(KCFixedString<7>("dB"));
    return param;
}

std::array<double, kCount> Values() {
    std::array<double, kCount> values{};
    std::mt19937_64 engine(1);
    for (double& value : values)
        value = Gain().StateToRealWorld(std::uniform_real_distribution<double>(0.0, 1000.0)(engine));
    return values;
}

std::array<KCFixedString<31>, kCount> Texts() {
    std::array<KCFixedString<31>, kCount> texts;
    const auto values = Values();
    for (size_t i = 0; i < kCount; ++i) {
        FormatRealWorld(values[i], 0.1, texts[i]);
        texts[i] << " dB";
    }
    return texts;
}

void ValueToText_KorvoLib(benchmark::State& state) {
    const KCParam_Base param = Gain();
    const auto values = Values();
    KCFixedString<127> text;
    size_t i = 0;
    for (auto _ : state) {
        FormatValueText(param, values[i++ % kCount], text);
        benchmark::DoNotOptimize(text.c_str());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(ValueToText_KorvoLib)->Name("ValueToText/KorvoLib");

void ValueToText_Snprintf(benchmark::State& state) {
    const auto values = Values();
    char text[128];
    size_t i = 0;
    for (auto _ : state) {
        std::snprintf(text, sizeof text, "%.1f", values[i++ % kCount]);
        benchmark::DoNotOptimize(text);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(ValueToText_Snprintf)->Name("ValueToText/snprintf");

void TextToValue_KorvoLib(benchmark::State& state) {
    const KCParam_Base param = Gain();
    const auto texts = Texts();
    double value = 0.0;
    size_t i = 0;
    for (auto _ : state) {
        ParseValueText(param, texts[i++ % kCount], value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(TextToValue_KorvoLib)->Name("TextToValue/KorvoLib");

void TextToValue_Strtod(benchmark::State& state) {
    const auto texts = Texts();
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(std::strtod(texts[i++ % kCount].c_str(), nullptr));
}
BENCHMARK(TextToValue_Strtod)->Name("TextToValue/strtod");

} // namespace
