// The shortest text that reads back as the same float; the locale plays no part. Inside the graphic stream only.
#pragma once

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>

namespace kvKorvoV12_9_0_320::kvGS {

/// Room for any float with its terminating 0.
inline constexpr size_t kFloatTextSize = 24;

/// "0.5", "-3", "1e+30", "inf", "-inf", "nan". Returns the length; `to` is terminated.
inline size_t FormatFloat(float value, char (&to)[kFloatTextSize]) noexcept {
    const float written = std::isnan(value) ? std::numeric_limits<float>::quiet_NaN() : value;
    char* const behind = std::to_chars(to, to + kFloatTextSize - 1, written).ptr;
    *behind = '\0';
    return static_cast<size_t>(behind - to);
}

} // namespace kvKorvoV12_9_0_320::kvGS
