// The two complete sets of parameter values that every algorithm keeps, so that a user can compare A with B.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

enum EPluginSetup : int32_t {
    kPluginSetup_Active = -1, // whichever is selected: understood by the algorithm, not by a parameter record
    kPluginSetup_A = 0,
    kPluginSetup_B = 1
};

inline constexpr size_t kNumPluginSetups = 2;

/// True for A and B only.
constexpr bool IsPluginSetup(EPluginSetup setup) noexcept {
    return static_cast<uint32_t>(setup) < kNumPluginSetups;
}

/// B for A, A for everything else.
constexpr EPluginSetup OtherPluginSetup(EPluginSetup setup) noexcept {
    return setup == kPluginSetup_A ? kPluginSetup_B : kPluginSetup_A;
}

} // namespace kvKorvoV12_9_0_320
