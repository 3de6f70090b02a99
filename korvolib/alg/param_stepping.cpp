#include <korvolib/alg/param_stepping.h>

#include <algorithm>
#include <cmath>

namespace kvKorvoV12_9_0_320::ParamStepping {
namespace {

constexpr double kSmallestContinuousStep = 0.001;
constexpr double kSameValue = 1e-10; // values closer than this look the same

bool IsUsable(double step) noexcept { return step > 0.0 && std::isfinite(step); }

// Whole states from the start of travel, toward zero, as an integer that one more step cannot overflow.
int IndexOf(double state, double step) noexcept {
    constexpr double kLimit = 1 << 30;
    const double index = state / step;
    return std::isnan(index) ? 0 : static_cast<int>(std::clamp(index, -kLimit, kLimit));
}

double Upward(const KCParam_Base& param, double state, double step, double value) {
    double s = std::ceil(ParamStepping::NextState(&param, state, step) / step) * step;
    s = std::min(s, kFullTravel);
    while (s < kFullTravel && std::fabs(param.StateToRealWorld(s) - value) < kSameValue)
        s += step;
    return s;
}

double Downward(const KCParam_Base& param, double state, double step, double value) {
    double s = std::floor(ParamStepping::NextState(&param, state, -step) / step) * step;
    s = std::max(s, 0.0);
    while (s > 0.0 && std::fabs(param.StateToRealWorld(s) - value) < kSameValue)
        s -= step;
    return s;
}

} // namespace

double NextState(const KCParam_Base* param, double state, double offset) noexcept {
    if (param == nullptr || !param->HasFlag(kParamFlag_ContinuousWraps))
        return state;
    const double next = state + offset;
    if (next > kFullTravel)
        return next - kFullTravel;
    return next < 0.0 ? next + kFullTravel : next;
}

double OffsetDiscrete(const KCParam_Base& param, EPluginSetup setup, double direction, bool isLinked) noexcept {
    const double step = param.GetStateStep();
    const int count = param.GetNumStates();
    if (!IsUsable(step) || !(direction > 0.0 || direction < 0.0) || count <= 0)
        return 0.0;
    const int current = IndexOf(param.GetState(setup), step);
    int next = direction > 0.0 ? current + 1 : current - 1;
    if (!param.HasFlag(kParamFlag_DiscreteDoesNotWrap) && !isLinked)
        next = next < 0 ? next + count : next % count;
    else if (next < 0 || next >= count)
        next = current;
    return static_cast<double>(next - current) * step;
}

double OffsetContinuous(const KCParam_Base& param, EPluginSetup setup, double direction) {
    const double state = param.GetState(setup);
    if (!IsUsable(param.GetStateStep()) || !(direction > 0.0 || direction < 0.0) || std::isnan(state))
        return 0.0;
    const double step = std::max(param.GetStateStep(), kSmallestContinuousStep);
    const double from = ClampState(state); // far outside, adding a step would change nothing, again and again
    const double value = param.GetRealWorld(setup);
    const double s = direction > 0.0 ? Upward(param, from, step, value) : Downward(param, from, step, value);
    return param.RealWorldToState(param.StateToRealWorld(s)) - state;
}

double Offset(const KCParam_Base& param, EPluginSetup setup, double direction, bool isLinked) {
    return param.IsDiscrete() ? OffsetDiscrete(param, setup, direction, isLinked)
                              : OffsetContinuous(param, setup, direction);
}

} // namespace kvKorvoV12_9_0_320::ParamStepping
