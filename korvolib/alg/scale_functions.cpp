#include <korvolib/alg/scale_functions.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace kvKorvoV12_9_0_320 {
namespace {

bool IsFinite(double v) noexcept { return std::fabs(v) <= std::numeric_limits<double>::max(); }

double FiniteOrZero(double v) noexcept { return IsFinite(v) ? v : 0.0; }

// Below it a double converts to an integer register and back, which is cheaper than floor() with its sign of zero.
constexpr double kConverts = 2251799813685248.0; // 2^51
// Below it a resolution times a count under kConverts is finite.
constexpr double kUsualQuantize = 1e200;

double WholePart(double v) noexcept { return static_cast<double>(static_cast<int64_t>(v)); }

double QuantizedOrPlain(double quantized, double v) noexcept {
    return IsFinite(quantized) ? quantized : FiniteOrZero(v);
}

// Both roundings by their formulas: what huge values and odd resolutions get.
double QuantizeFractionSlowly(double v, const sSCALE_INFO& s) noexcept {
    if (!(s.Quantize > 0.0))
        return FiniteOrZero(v);
    const double whole = std::floor(v);
    return QuantizedOrPlain(whole + std::floor((v - whole) * s.OverQuantize + 0.5) * s.Quantize, v);
}

double QuantizeWhole(double v, const sSCALE_INFO& s) noexcept {
    if (!(s.Quantize > 0.0))
        return FiniteOrZero(v);
    return QuantizedOrPlain(std::floor(v * s.OverQuantize + 0.5) * s.Quantize, v);
}

// The same as the slow one, to the last bit, for what parameters hold.
inline double QuantizeFraction(double v, const sSCALE_INFO& s) noexcept {
    if (std::fabs(v) < kConverts && s.Quantize > 0.0 && s.Quantize < kUsualQuantize) [[likely]] {
        const double truncated = WholePart(v);
        const double whole = truncated > v ? truncated - 1.0 : truncated;
        const double steps = (v - whole) * s.OverQuantize + 0.5;
        if (steps >= 0.0 && steps < kConverts) [[likely]]
            return whole + WholePart(steps) * s.Quantize;
    }
    return QuantizeFractionSlowly(v, s);
}

// Where x stands between the points i - 1 and i of `from`, as a value of `to`.
double Interpolate(const double* from, const double* to, size_t i, double x) noexcept {
    return to[i - 1] + (to[i] - to[i - 1]) * (x - from[i - 1]) / (from[i] - from[i - 1]);
}

size_t PairCount(const sSCALE_INFO& s) noexcept { return std::min(s.RealWorldPoints.size(), s.StatePoints.size()); }

double StateToRanges(double x, const sSCALE_INFO& s) noexcept {
    const size_t count = PairCount(s);
    if (count == 0)
        return 0.0;
    const double* state = s.StatePoints.data();
    const double* realWorld = s.RealWorldPoints.data();
    const double limited = std::min(std::max(x, state[0]), state[count - 1]);
    size_t i = 0;
    while (i < count && !(state[i] >= limited))
        ++i;
    if (i == 0 || i == count) // points that do not ascend can end here
        return realWorld[0];
    return state[i] == limited ? realWorld[i] : Interpolate(state, realWorld, i, limited);
}

// The first real-world point that r does not lie beyond, in the direction in which the points run.
size_t FirstPointNotBefore(double r, const double* realWorld, size_t count) noexcept {
    const bool upward = realWorld[count - 1] > realWorld[0];
    size_t i = 0;
    while (i < count && (upward ? r > realWorld[i] : realWorld[i] > r))
        ++i;
    return i;
}

double RangesToState(double r, const sSCALE_INFO& s) noexcept {
    const size_t count = PairCount(s);
    if (count == 0 || std::isnan(r))
        return 0.0;
    const double* state = s.StatePoints.data();
    const double* realWorld = s.RealWorldPoints.data();
    if (r < std::min(realWorld[0], realWorld[count - 1]))
        return 0.0;
    if (r > std::max(realWorld[0], realWorld[count - 1]))
        return kFullTravel;
    const size_t i = FirstPointNotBefore(r, realWorld, count);
    if (i == 0 || i == count) // i == count: only a point that is not a number leads here
        return FiniteOrZero(state[0]);
    return FiniteOrZero(realWorld[i] == r ? state[i] : Interpolate(realWorld, state, i, r));
}

// A value of `to` at the place of the first value of `from` that equals x.
double MappedValue(double x, const std::vector<double>& from, const std::vector<double>& to) noexcept {
    const size_t count = std::min(from.size(), to.size());
    for (size_t i = 0; i < count; ++i)
        if (from[i] == x)
            return to[i];
    return 0.0;
}

// 25^exponent runs through the quarters: these are log25(10), log25(4) and their reciprocals' counterparts.
constexpr double kLog25Of10 = 0.715338279036696;
constexpr double kLog25Of4 = 0.4306765580733929;
constexpr double kHalfOfInverseLog25Of10 = 0.6989700043360193;
constexpr double kHalfOfInverseLog25Of4 = 1.1609640474436815;

} // namespace

double LinearScale(double x, sSCALE_INFO* s) noexcept {
    return s == nullptr ? 0.0 : QuantizeFraction(s->a + s->b * x, *s);
}

double ExtendedResLinearScale(double x, sSCALE_INFO* s) noexcept {
    return s == nullptr ? 0.0 : QuantizeWhole(s->a + s->b * x, *s);
}

double InverseLinearScale(double r, sSCALE_INFO* s) noexcept {
    if (s == nullptr || s->b == 0.0)
        return 0.0;
    const double state = (r - s->a) / s->b;
    return std::isnan(state) ? 0.0 : state;
}

double LogScale(double x, sSCALE_INFO* s) noexcept {
    return s == nullptr ? 0.0 : QuantizeFraction(s->a * std::pow(s->b, x), *s);
}

double ExtendedResLogScale(double x, sSCALE_INFO* s) noexcept {
    return s == nullptr ? 0.0 : QuantizeWhole(s->a * std::pow(s->b, x), *s);
}

double InverseLogScale(double r, sSCALE_INFO* s) noexcept {
    if (s == nullptr || !(r > 0.0))
        return 0.0;
    const double logRatio = std::log(s->b);
    const double state = logRatio == 0.0 || s->a == 0.0 ? 0.0 : std::log(r / s->a) / logRatio;
    return std::isnan(state) ? 0.0 : state;
}

double FrqScale(double x, sSCALE_INFO* s) noexcept {
    if (s == nullptr || std::isnan(x))
        return 0.0;
    const double u = (x * 0.001 - 0.25) * 2.0;
    const double lower = std::min(u, 0.0);
    const double middle = std::clamp(u, 0.0, 1.0);
    const double upper = std::max(u, 1.0) - 1.0;
    const double exponent = middle - lower * kLog25Of10 * -2.0 + upper * kLog25Of4 * 2.0;
    return QuantizeFraction(200.0 * std::pow(25.0, exponent), *s);
}

double InverseFrqScale(double frequencyHz, sSCALE_INFO*) noexcept {
    if (!(frequencyHz > 0.0))
        return 0.0;
    const double t = std::log(frequencyHz * 0.005) / std::log(25.0);
    const double lower = std::min(t, 0.0);
    const double middle = std::clamp(t, 0.0, 1.0);
    const double upper = std::max(t, 1.0) - 1.0;
    const double e = lower * kHalfOfInverseLog25Of10 + middle + upper * kHalfOfInverseLog25Of4;
    return ClampState((e * 0.5 + 0.25) * kFullTravel);
}

double LinearRangesScale(double x, sSCALE_INFO* s) noexcept {
    return s == nullptr || std::isnan(x) ? 0.0 : QuantizeFraction(StateToRanges(x, *s), *s);
}

double InverseLinearRangesScale(double r, sSCALE_INFO* s) noexcept {
    return s == nullptr ? 0.0 : RangesToState(r, *s);
}

double InverseLinearRangesScaleWithRounding(double r, sSCALE_INFO* s) noexcept {
    return std::floor(InverseLinearRangesScale(r, s) + 0.5);
}

double ToggleScale(double x, sSCALE_INFO* s) noexcept {
    constexpr double kLimit = 9223372036854775808.0; // 2^63; what converts is above -2^63, and so divides by -1
    if (s == nullptr || !(std::fabs(x) < kLimit) || !(std::fabs(s->a) < kLimit))
        return 0.0;
    const auto divisor = static_cast<int64_t>(s->a);
    return divisor == 0 ? 0.0 : static_cast<double>(static_cast<int64_t>(x) % divisor);
}

double ToggleRangesScale(double x, sSCALE_INFO* s) noexcept {
    constexpr double kLimit = 18446744073709551616.0; // 2^64
    if (s == nullptr || s->RealWorldPoints.empty())
        return 0.0;
    const bool isIndex = x >= 0.0 && x < kLimit;
    return std::isnan(x) ? 0.0
                         : s->RealWorldPoints[isIndex ? static_cast<size_t>(x) % s->RealWorldPoints.size() : 0];
}

double InverseToggleRangesScale(double r, sSCALE_INFO* s) noexcept {
    if (s == nullptr || s->RealWorldPoints.empty())
        return 0.0;
    const std::vector<double>& points = s->RealWorldPoints;
    const size_t last = points.size() - 1;
    if (r >= points[last])
        return static_cast<double>(last);
    for (size_t i = 0; i < last; ++i)
        if (points[i + 1] > r)
            return static_cast<double>((points[i + 1] - points[i]) * 0.5 > r - points[i] ? i : i + 1);
    return 0.0;
}

double ToggleMapScale(double x, sSCALE_INFO* s) noexcept {
    return s == nullptr ? 0.0 : MappedValue(x, s->StatePoints, s->RealWorldPoints);
}

double InverseToggleMapScale(double r, sSCALE_INFO* s) noexcept {
    return s == nullptr ? 0.0 : MappedValue(r, s->RealWorldPoints, s->StatePoints);
}

double InverseToggleScale(double r, sSCALE_INFO*) noexcept { return r; }
double DummyScale(double x, sSCALE_INFO*) noexcept { return x; }
double InverseDummyScale(double r, sSCALE_INFO*) noexcept { return r; }

} // namespace kvKorvoV12_9_0_320
