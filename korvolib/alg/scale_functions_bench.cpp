// Every scale that runs in an update beside its bare formula, which knows nothing of odd input. Both are called as
// a parameter calls them: through a function pointer, out of line.
#include <korvolib/alg/scale_functions.h>

#include <array>
#include <cmath>
#include <random>

#include <benchmark/benchmark.h>

#include <korvolib/alg/param_base.h>

using namespace kvKorvoV12_9_0_320;

namespace {

using States = std::array<double, 1024>;

const States& RandomStates() {
    static const States states = [] {
        States random;
        std::mt19937_64 engine(1);
        for (double& state : random)
            state = std::uniform_real_distribution<double>(0.0, 1000.0)(engine);
        return random;
    }();
    return states;
}

[[gnu::noinline]] double BareLinear(double x, sSCALE_INFO* s) {
    const double v = s->a + s->b * x;
    return std::floor(v) + std::floor((v - std::floor(v)) * s->OverQuantize + 0.5) * s->Quantize;
}

[[gnu::noinline]] double BareLog(double x, sSCALE_INFO* s) {
    const double v = s->a * std::pow(s->b, x);
    return std::floor(v) + std::floor((v - std::floor(v)) * s->OverQuantize + 0.5) * s->Quantize;
}

[[gnu::noinline]] double BareInverseLog(double r, sSCALE_INFO* s) { return std::log(r / s->a) / std::log(s->b); }

KCParam_Base LinearParam() {
    KCParam_Base param;
    param.SetScaleLin(-60.0, 12.0, 0.1);
    return param;
}

KCParam_Base LogParam() {
    KCParam_Base param;
    param.SetScaleLog(20.0, 20000.0, 0.01);
    return param;
}

void Run(benchmark::State& state, const KCParam_Base& param, ScaleFunction function) {
    benchmark::DoNotOptimize(function);
    sSCALE_INFO scale = param.GetScale();
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(function(RandomStates()[i++ % 1024], &scale));
}

void RunParam(benchmark::State& state, const KCParam_Base& param) {
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(param.StateToRealWorld(RandomStates()[i++ % 1024]));
}

BENCHMARK_CAPTURE(Run, LinearScale, LinearParam(), LinearScale)->Name("LinearScale/KorvoLib");
BENCHMARK_CAPTURE(Run, BareLinear, LinearParam(), BareLinear)->Name("LinearScale/formula");
BENCHMARK_CAPTURE(Run, LogScale, LogParam(), LogScale)->Name("LogScale/KorvoLib");
BENCHMARK_CAPTURE(Run, BareLog, LogParam(), BareLog)->Name("LogScale/formula");
BENCHMARK_CAPTURE(Run, InverseLog, LogParam(), InverseLogScale)->Name("InverseLogScale/KorvoLib");
BENCHMARK_CAPTURE(Run, BareInverseLog, LogParam(), BareInverseLog)->Name("InverseLogScale/formula");
BENCHMARK_CAPTURE(RunParam, Linear, LinearParam())->Name("StateToRealWorld/KorvoLib");
BENCHMARK_CAPTURE(Run, BareLinearOfParam, LinearParam(), BareLinear)->Name("StateToRealWorld/formula");

} // namespace
