#include <korvolib/graphicstream/checksum.h>

#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

namespace {

void Korvo(benchmark::State& state, size_t size) {
    const std::string bytes(size, 'x');
    for (auto _ : state) {
        const char* data = bytes.data();
        benchmark::DoNotOptimize(data);
        benchmark::DoNotOptimize(kvKorvo::kvGS::MurmurHash64A(data, size, 0));
    }
}

void Standard(benchmark::State& state, size_t size) {
    const std::string bytes(size, 'x');
    for (auto _ : state) {
        const char* data = bytes.data();
        benchmark::DoNotOptimize(data);
        benchmark::DoNotOptimize(std::hash<std::string_view>()({data, size}));
    }
}

BENCHMARK_CAPTURE(Korvo, 16, 16)->Name("StreamHash16/KorvoLib");
BENCHMARK_CAPTURE(Standard, 16, 16)->Name("StreamHash16/libstdc++");
BENCHMARK_CAPTURE(Korvo, 64, 64)->Name("StreamHash64/KorvoLib");
BENCHMARK_CAPTURE(Standard, 64, 64)->Name("StreamHash64/libstdc++");
BENCHMARK_CAPTURE(Korvo, 4096, 4096)->Name("StreamHash4K/KorvoLib");
BENCHMARK_CAPTURE(Standard, 4096, 4096)->Name("StreamHash4K/libstdc++");
BENCHMARK_CAPTURE(Korvo, 1M, 1 << 20)->Name("StreamHash1M/KorvoLib");
BENCHMARK_CAPTURE(Standard, 1M, 1 << 20)->Name("StreamHash1M/libstdc++");

} // namespace
