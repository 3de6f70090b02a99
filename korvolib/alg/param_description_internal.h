// Names that reading and writing a description share.
#pragma once

#include <cstring>
#include <iterator>

#include <korvolib/alg/scale_functions.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::ParamDescription {

inline constexpr const char* kParams = "Params";
inline constexpr const char* kParam = "Param";
inline constexpr const char* kLinkGroups = "LinkGroups";
inline constexpr const char* kName = "Name";
inline constexpr const char* kLabel = "Label";
inline constexpr const char* kUnits = "Units";
inline constexpr const char* kFlags = "Flags";
inline constexpr const char* kMinimum = "Minimum";
inline constexpr const char* kMaximum = "Maximum";
inline constexpr const char* kVar = "Var";
inline constexpr const char* kResolution = "Resolution";
inline constexpr const char* kScaleType = "ScaleType";
inline constexpr const char* kType = "Type";
inline constexpr const char* kRealWorld = "RealWorld";
inline constexpr const char* kRealWorldExact = "RealWorldExact";
inline constexpr const char* kState = "State";
inline constexpr const char* kDefault = "Default";
inline constexpr const char* kReset = "Reset";
inline constexpr const char* kStateStep = "StateStep";
inline constexpr const char* kNumStates = "NumStates";

inline constexpr const char* kParamChildren[] = {kLabel,   kUnits, kFlags,      kMinimum,
                                                 kMaximum, kVar,   kResolution, kScaleType,
                                                 kDefault, kReset, kStateStep,  kNumStates};

inline constexpr const char* kTypeLinear = "linear";
inline constexpr const char* kTypeLogarithmic = "logarithmic";
inline constexpr const char* kTypeToggle = "toggle";
inline constexpr const char* kTypeNone = "none"; // a parameter without a scale

inline constexpr const char* kTypeState = "state";
inline constexpr const char* kTypeStateExact =
    "stateExact"; // as it stands, be it the state of its own value or not

enum class Points { None, RealWorldOnly, Pairs };

struct NamedScale {
    const char* Name;
    ScaleFunction Scale;
    ScaleFunction Inverse;
    int Type;
    Points WhichPoints;
};

inline constexpr NamedScale kNamedScales[] = {
    {"linearRanges", LinearRangesScale, InverseLinearRangesScale, kParamType_Continuous, Points::Pairs},
    {"linearRangesWithRounding", LinearRangesScale, InverseLinearRangesScaleWithRounding, kParamType_Continuous,
     Points::Pairs},
    {"toggleRanges", ToggleRangesScale, InverseToggleRangesScale, kParamType_Discrete, Points::RealWorldOnly},
    {"toggleMap", ToggleMapScale, InverseToggleMapScale, kParamType_Discrete, Points::Pairs},
    {"frequency", FrqScale, InverseFrqScale, kParamType_Continuous, Points::None},
    {"dummy", DummyScale, InverseDummyScale, kParamType_Continuous, Points::None},
};

/// The library's scale of that name, or null.
inline const NamedScale* FindNamedScale(const char* name) noexcept {
    for (const NamedScale& scale : kNamedScales)
        if (std::strcmp(scale.Name, name) == 0)
            return &scale;
    return nullptr;
}

} // namespace kvKorvoV12_9_0_320::ParamDescription
