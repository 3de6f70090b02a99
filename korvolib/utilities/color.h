// KUColor: a colour of four 8-bit channels, as drawing commands and themes carry it, and its text "#RRGGBB" or
// "#RRGGBBAA". A plain value for any thread; nothing here takes memory or looks at the locale.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

/// The text of a colour, with its terminating 0.
struct KUColorText {
    char text[10] = {};
    const char* c_str() const noexcept { return text; }
};

struct KORVO_API KUColor {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    uint8_t alpha = 255; ///< 0 is invisible, 255 covers.

    constexpr KUColor WithAlpha(uint8_t newAlpha) const noexcept { return {red, green, blue, newAlpha}; }
    /// Opacity 0..1 rounded to the nearest of the 256 steps; outside it is limited, not-a-number is 0.
    KUColor WithOpacity(double opacity) const noexcept;
    /// 0..1.
    constexpr double GetOpacity() const noexcept { return alpha / 255.0; }

    /// "#RRGGBB", with "AA" behind when the alpha is not 255; capital digits. Parse reads it back.
    KUColorText Format() const noexcept;
    /// Reads "#RRGGBB" (alpha 255) or "#RRGGBBAA", digits of either case, nothing before or behind.
    /// kErr_NullArgument, kErr_MalformedText: the output stays as it was.
    [[nodiscard]] static int32_t Parse(const char* text, KUColor& color) noexcept;

    friend constexpr bool operator==(const KUColor&, const KUColor&) noexcept = default;
};

} // namespace kvKorvoV12_9_0_320
