// What a user of the strip can set: the parameters, their description, and how some of them are written in words.
#pragma once

#include <korvolib/alg/algorithm.h>

namespace kvStrip {

/// The parameters in the order of the description.
enum KEParam : size_t {
    kParam_Bypass,
    kParam_InputGain,
    kParam_LowCut,
    kParam_LowCutFrequency,
    kParam_LowCutSlope,
    kParam_GateThreshold,
    kParam_GateRange,
    kParam_GateHold,
    kParam_GateRelease,
    kParam_Bell1Frequency,
    kParam_Bell1Gain,
    kParam_Bell1Q,
    kParam_Bell2Frequency,
    kParam_Bell2Gain,
    kParam_Bell2Q,
    kParam_CompressorThreshold,
    kParam_CompressorRatio,
    kParam_CompressorKnee,
    kParam_CompressorAttack,
    kParam_CompressorRelease,
    kParam_CompressorDetector,
    kParam_MakeupGain,
    kParam_Rotation,
    kParam_LeftTrim,
    kParam_RightTrim,
    kParam_OutputGain,
    kNumParams
};

/// The output fader's lowest mark, in decibels: silence.
inline constexpr double kFaderOffDb = -120.0;

/// The gate's lowest threshold, in decibels: always open.
inline constexpr double kGateOffDb = -80.0;

/// Every parameter as XML, for cALGORITHM::SetDescription("ParamsXML", …).
const char* ParamsXML() noexcept;

/// Adds the scale "fader": the cubic taper of a mixing console's fader. State s of 0 … 1000 is a gain of
/// (s / 1000)³ below the maximum, so that most of the travel lies where a fader is moved: the middle is 18 dB below
/// the top. The description's "Minimum" is the mark at the bottom, "Maximum" the one at the top.
void AddFaderScale(kvKorvo::cALGORITHM::ScaleFunctionsMap& map);

/// Lets switches and special values show and read as words: "On", "Peak", "Off".
void UseWords(kvKorvo::cALGORITHM& algorithm) noexcept;

} // namespace kvStrip
