#include <korvolib/alg/algorithm.h>

#include <benchmark/benchmark.h>

#include <tests/support/bench_algorithm.h>
#include <tests/support/second_thread.h>

namespace {

using namespace kvKorvo;

const kvTest::SecondThread g_secondThread;

// `numParams` parameters; the first `numLinked` are one relative group.
class LinkedAlgorithm : public kvTest::BenchAlgorithm {
  public:
    LinkedAlgorithm(size_t numParams, size_t numLinked, int32_t numOtherGroups = 0)
        : kvTest::BenchAlgorithm(numParams, 500.0) {
        KCLinkGroups& groups = *GetLinkGroups();
        groups.SetGroupInfo(0, 0, 0.0, KCLinkGroups::LawName("Relative"), true, false);
        for (size_t i = 0; i < numLinked; ++i)
            groups.AddMember(0, i);
        for (int32_t group = 1; group <= numOtherGroups; ++group)
            groups.SetGroupInfo(group, 0, 0.0, KCLinkGroups::LawName("Relative"), true, false);
    }
};

void Update(benchmark::State& state, LinkedAlgorithm& algorithm, size_t index) {
    double value = 500.0;
    for (auto _ : state) {
        value = value == 500.0 ? 510.0 : 500.0;
        benchmark::DoNotOptimize(algorithm.UpdateParamRequestState(index, value));
    }
}

void LinkPass64_KorvoLib(benchmark::State& state) {
    LinkedAlgorithm algorithm(64, 64);
    double value = 500.0;
    for (auto _ : state) {
        value = value == 500.0 ? 510.0 : 500.0;
        benchmark::DoNotOptimize(algorithm.UpdateParamByGesture(0, value));
    }
}
BENCHMARK(LinkPass64_KorvoLib)->Name("LinkPass64/KorvoLib");

// The same 64 parameters, each updated by itself.
void LinkPass64_Updates(benchmark::State& state) {
    LinkedAlgorithm algorithm(64, 0);
    double value = 500.0;
    for (auto _ : state) {
        value = value == 500.0 ? 510.0 : 500.0;
        for (size_t index = 0; index < 64; ++index)
            benchmark::DoNotOptimize(algorithm.UpdateParamRequestState(index, value));
    }
}
BENCHMARK(LinkPass64_Updates)->Name("LinkPass64/64 updates");

void LinkUnlinked(benchmark::State& state, size_t numParams, int32_t numGroups) {
    LinkedAlgorithm algorithm(numParams, 2, numGroups);
    for (auto _ : state)
        benchmark::DoNotOptimize(algorithm.LinkParams(5, true));
}
BENCHMARK_CAPTURE(LinkUnlinked, KorvoLib, 10, 1)->Name("LinkUnlinked/KorvoLib");
BENCHMARK_CAPTURE(LinkUnlinked, few, 10, 1)->Name("LinkUnlinkedAmongMany/few");
BENCHMARK_CAPTURE(LinkUnlinked, KorvoLib, 10000, 5000)->Name("LinkUnlinkedAmongMany/KorvoLib");

void LinkUnlinked_Update(benchmark::State& state) {
    LinkedAlgorithm algorithm(10, 2);
    Update(state, algorithm, 5);
}
BENCHMARK(LinkUnlinked_Update)->Name("LinkUnlinked/update");

} // namespace
