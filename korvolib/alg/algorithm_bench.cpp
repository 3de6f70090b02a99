#include <korvolib/alg/algorithm.h>

#include <mutex>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>

#include <benchmark/benchmark.h>

#include <tests/support/bench_algorithm.h>
#include <tests/support/second_thread.h>

namespace {

using namespace kvKorvo;

// Somebody hears of its changes, as in every host.
class BenchAlgorithm : public kvTest::BenchAlgorithm {
  public:
    explicit BenchAlgorithm(size_t numParams) : kvTest::BenchAlgorithm(numParams) {
        Broadcaster()->insert(&listener);
    }
    struct Listener : KCAlgorithmListener {
        uint64_t modified = 0;
        void PresetModified(EPluginSetup) override { ++modified; }
    } listener;
};

const kvTest::SecondThread g_secondThread;

// ---- One update against its floor: the lock, four virtual calls and one linear scale --------------------------

struct Virtual {
    virtual ~Virtual() = default;
    virtual double Call(double x) = 0;
};
struct VirtualImpl final : Virtual {
    double sum = 0.0;
    double Call(double x) override { return sum += x; }
};

void UpdateOne_KorvoLib(benchmark::State& state) {
    BenchAlgorithm algorithm(16);
    double value = 0.0;
    for (auto _ : state) {
        value = value == 250.0 ? 750.0 : 250.0;
        benchmark::DoNotOptimize(algorithm.UpdateParamRequestState(3, value));
    }
}
BENCHMARK(UpdateOne_KorvoLib)->Name("UpdateOne/KorvoLib");

void UpdateOne_Floor(benchmark::State& state) {
    std::recursive_mutex mutex;
    VirtualImpl impl[4];
    Virtual* calls[4] = {&impl[0], &impl[1], &impl[2], &impl[3]};
    sSCALE_INFO scale;
    scale.a = -60.0;
    scale.b = 0.072;
    scale.Quantize = 0.01;
    scale.OverQuantize = 100.0;
    ScaleFunction function = LinearScale;
    benchmark::DoNotOptimize(calls);
    benchmark::DoNotOptimize(function);
    double value = 0.0;
    for (auto _ : state) {
        value = value == 250.0 ? 750.0 : 250.0;
        const std::lock_guard lock(mutex);
        double result = function(value, &scale);
        for (Virtual* call : calls)
            result = call->Call(result);
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(UpdateOne_Floor)->Name("UpdateOne/Floor");

// ---- The same parameter among many -----------------------------------------------------------------------------

void UpdateAmong(benchmark::State& state, size_t numParams) {
    BenchAlgorithm algorithm(numParams);
    double value = 0.0;
    for (auto _ : state) {
        value = value == 250.0 ? 750.0 : 250.0;
        benchmark::DoNotOptimize(algorithm.UpdateParamRequestState(numParams / 2, value));
    }
}
BENCHMARK_CAPTURE(UpdateAmong, TenThousand, 10000)->Name("UpdateAmong/TenThousand");
BENCHMARK_CAPTURE(UpdateAmong, Ten, 10)->Name("UpdateAmong/Ten");

void UpdateInRandomOrder(benchmark::State& state, size_t numParams) {
    BenchAlgorithm algorithm(numParams);
    std::mt19937 random(1);
    std::vector<size_t> order(1 << 16);
    for (size_t& index : order)
        index = random() % numParams;
    size_t i = 0;
    for (auto _ : state) {
        const size_t round = i++;
        benchmark::DoNotOptimize(
            algorithm.UpdateParamRequestState(order[round & 0xFFFF], static_cast<double>(round * 13 % 1000)));
    }
}
BENCHMARK_CAPTURE(UpdateInRandomOrder, TenThousand, 10000)->Name("UpdateInRandomOrder/TenThousand");
BENCHMARK_CAPTURE(UpdateInRandomOrder, Ten, 10)->Name("UpdateInRandomOrder/Ten");

// ---- Look-up by name --------------------------------------------------------------------------------------------

std::vector<KCFixedString<127>> NamesInRandomOrder(const cALGORITHM& algorithm) {
    std::mt19937 random(2);
    std::vector<KCFixedString<127>> names;
    for (int i = 0; i < 1000; ++i)
        names.push_back(algorithm.GetParamName(random() % 1000));
    return names;
}

void FindByName_KorvoLib(benchmark::State& state) {
    BenchAlgorithm algorithm(1000);
    const std::vector<KCFixedString<127>> names = NamesInRandomOrder(algorithm);
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(algorithm.GetParamIDFromName(names[i++ % names.size()]));
}
BENCHMARK(FindByName_KorvoLib)->Name("FindByName/KorvoLib");

void FindByName_UnorderedMap(benchmark::State& state) {
    BenchAlgorithm algorithm(1000);
    const std::vector<KCFixedString<127>> names = NamesInRandomOrder(algorithm);
    std::unordered_map<std::string_view, size_t> map;
    for (size_t index = 0; index < 1000; ++index)
        map.emplace(algorithm.GetParamName(index).c_str(), index);
    size_t i = 0;
    for (auto _ : state) {
        const KCFixedString<127>& name = names[i++ % names.size()];
        benchmark::DoNotOptimize(map.find(std::string_view(name.c_str(), name.size())));
    }
}
BENCHMARK(FindByName_UnorderedMap)->Name("FindByName/unordered_map");

} // namespace
