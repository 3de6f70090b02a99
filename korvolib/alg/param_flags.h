// The bits of a parameter's 32-bit flag word that have a fixed meaning, and their names in a description.
// All other bits belong to the plug-in: they are stored and reported, never read.
#pragma once

#include <cstdint>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

inline constexpr uint32_t kParamFlag_AlwaysUpdateSilently =
    0x4;                                                       // run every update, never report the preset modified
inline constexpr uint32_t kParamFlag_CompareForModified = 0x8; // modified also when unlike the comparison value
inline constexpr uint32_t kParamFlag_AlwaysUpdate = 0x10;      // run every update, changed or not
inline constexpr uint32_t kParamFlag_NeverModifiesPreset = 0x20; // never report the preset modified
inline constexpr uint32_t kParamFlag_NegativeTextOnly = 0x80;    // a typed number counts as minus its magnitude
inline constexpr uint32_t kParamFlag_Unused = 0x800;
inline constexpr uint32_t kParamFlag_DiscreteDoesNotWrap = 0x1000; // wrapping is opt-out for discrete parameters …
inline constexpr uint32_t kParamFlag_ContinuousWraps = 0x2000;     // … and opt-in for continuous ones
inline constexpr uint32_t kParamFlag_Lab = 0x4000;
inline constexpr uint32_t kParamFlag_BothSetups = 0x40000; // a state change is written to setup A and setup B

struct sPARAM_FLAG_NAME {
    uint32_t Mask;
    const char* Name; // as a description spells it
};

inline constexpr sPARAM_FLAG_NAME kParamFlagNames[] = {
    {kParamFlag_AlwaysUpdateSilently, "AlwaysUpdateSilently"},
    {kParamFlag_CompareForModified, "CompareForModified"},
    {kParamFlag_AlwaysUpdate, "AlwaysUpdate"},
    {kParamFlag_NeverModifiesPreset, "NeverModifiesPreset"},
    {kParamFlag_NegativeTextOnly, "NegativeTextOnly"},
    {kParamFlag_Unused, "Unused"},
    {kParamFlag_DiscreteDoesNotWrap, "DiscreteDoesNotWrap"},
    {kParamFlag_ContinuousWraps, "ContinuousWraps"},
    {kParamFlag_Lab, "Lab"},
    {kParamFlag_BothSetups, "BothSetups"},
};

} // namespace kvKorvoV12_9_0_320
