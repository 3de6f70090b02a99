// The scales: free functions that turn a state (0..1000) into a real-world value, and their inverses. A parameter
// holds two of them as plain function pointers; nothing is looked up by name once it is set up.
//
// Price and limits: no lock, no allocation, no exception, any thread that may read the parameter. States are taken
// as they come (a parameter clamps to 0..1000 before it calls). Every input has a result:
//   - a null scale gives 0, not-a-number gives 0 (the identity functions return their argument, whatever it is);
//   - a forward scale whose formula leaves the finite numbers gives 0; an inverse that would divide by 0 gives 0;
//   - empty point lists give 0; of lists of unequal length the common part counts.
#pragma once

#include <korvolib/alg/scale_info.h>
#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

/// Full travel of every parameter: states run from 0 to this.
inline constexpr double kFullTravel = 1000.0;

inline constexpr int kParamType_Discrete = 0;
inline constexpr int kParamType_Continuous = 1;

/// A scale, or its inverse. The scale is only read; it is not const because a plug-in may keep something of its own
/// in a scale that it alone uses. Called within every update: must not throw and should not allocate.
using ScaleFunction = double (*)(double x, sSCALE_INFO* scale);

/// What a plug-in supplies under a scale-type name of its own.
struct sUserScaleFunctions {
    ScaleFunction Scale = nullptr;        // state to real world
    ScaleFunction InverseScale = nullptr; // real world to state
    int Type = kParamType_Continuous;     // what a described parameter of this scale becomes
};

/// `state` limited to 0..1000. Not-a-number stays what it is.
constexpr double ClampState(double state) noexcept {
    return state < 0.0 ? 0.0 : (state > kFullTravel ? kFullTravel : state);
}

// Continuous scales. "Quantized" keeps the whole part of a value and rounds its fraction to the resolution; the
// extended-resolution variants, for a resolution above 1, round the whole value.

/// a + b·x, quantized.
KORVO_API double LinearScale(double x, sSCALE_INFO* s) noexcept;
/// a + b·x, rounded to a whole multiple of the resolution.
KORVO_API double ExtendedResLinearScale(double x, sSCALE_INFO* s) noexcept;
/// (r - a) / b; 0 when b is 0.
KORVO_API double InverseLinearScale(double r, sSCALE_INFO* s) noexcept;

/// a·b^x, quantized.
KORVO_API double LogScale(double x, sSCALE_INFO* s) noexcept;
/// a·b^x, rounded to a whole multiple of the resolution.
KORVO_API double ExtendedResLogScale(double x, sSCALE_INFO* s) noexcept;
/// ln(r / a) / ln(b); 0 when r <= 0 or b is 1.
KORVO_API double InverseLogScale(double r, sSCALE_INFO* s) noexcept;

/// Four equal quarters of travel through 20 Hz, 200 Hz, 1 kHz, 5 kHz and 20 kHz, each logarithmic in frequency;
/// quantized. Reads neither a nor b.
KORVO_API double FrqScale(double x, sSCALE_INFO* s) noexcept;
/// The state of a frequency in Hz, 0..1000; 0 for a frequency <= 0.
KORVO_API double InverseFrqScale(double frequencyHz, sSCALE_INFO* s) noexcept;

/// Straight lines from state points to real-world points, quantized. Outside the points: the end points' values.
KORVO_API double LinearRangesScale(double x, sSCALE_INFO* s) noexcept;
/// Straight lines from real-world points, upward or downward, to state points; 0 below both ends, 1000 above both.
KORVO_API double InverseLinearRangesScale(double r, sSCALE_INFO* s) noexcept;
/// The same, rounded to a whole state.
KORVO_API double InverseLinearRangesScaleWithRounding(double r, sSCALE_INFO* s) noexcept;

// Discrete scales.

/// Remainder of the whole part of x divided by the whole part of a, signed as x; 0 where that has no value.
KORVO_API double ToggleScale(double x, sSCALE_INFO* s) noexcept;
/// The argument.
KORVO_API double InverseToggleScale(double r, sSCALE_INFO* s) noexcept;

/// Real-world point number x modulo their count; the first one for a negative x.
KORVO_API double ToggleRangesScale(double x, sSCALE_INFO* s) noexcept;
/// Index of the nearest real-world point, the upper one in a tie.
KORVO_API double InverseToggleRangesScale(double r, sSCALE_INFO* s) noexcept;

/// The real-world point beside the first state point that equals x; 0 without one.
KORVO_API double ToggleMapScale(double x, sSCALE_INFO* s) noexcept;
/// The state point beside the first real-world point that equals r; 0 without one.
KORVO_API double InverseToggleMapScale(double r, sSCALE_INFO* s) noexcept;

/// The argument: for parameters whose state is their value.
KORVO_API double DummyScale(double x, sSCALE_INFO* s) noexcept;
/// The argument.
KORVO_API double InverseDummyScale(double r, sSCALE_INFO* s) noexcept;

} // namespace kvKorvoV12_9_0_320
