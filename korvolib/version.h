// The library's version and the namespace that carries it.
//
// Everything lives in kvKorvoV12_9_0_320, which stays as it is for the whole of SOVERSION 12, so that two
// generations of the library can be loaded into one host without sharing a symbol. Write kvKorvo:: in code.
#pragma once

#include <cstdint>

namespace kvKorvoV12_9_0_320 {

inline constexpr int32_t kVersionMajor = 12;
inline constexpr int32_t kVersionMinor = 9;
inline constexpr int32_t kVersionPatch = 0;

} // namespace kvKorvoV12_9_0_320

namespace kvKorvo = kvKorvoV12_9_0_320;
