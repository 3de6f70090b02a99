// A parameter's value as text and a typed text as its value. Formatting and reading agree: what a parameter without
// a display function shows reads back to a value that shows the same.
//
// No heap, no locale, no exception but a display function's own. They only read the record: any thread that may.
#pragma once

#include <korvolib/export.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KCParam_Base;

/// What a typed text turned out to be.
enum class KEValueText {
    NoNumber,      // nothing that leads the text is a number, and no display function knows it
    BottomOfScale, // "-Inf" or "-inf": the value at state 0
    Number         // not yet validated, not yet limited; perhaps infinite
};

/// Decimals that show every multiple of the resolution: 0.25 needs 2, 1 and 5 none, at most 12. A resolution that
/// is no decimal fraction gets three digits more than its own size, at least 6. -1 for 0, negative and
/// not-a-number: as many as a value needs, at most 6.
KORVO_API int DecimalsOfResolution(double quantize) noexcept;

/// `value` with the decimals of the resolution; from 1e15 on the shortest text that reads back to it. Zero has no
/// sign. Not-a-number and infinities write "nan", "inf" and "-inf".
KORVO_API void FormatRealWorld(double value, double quantize, KCFixedStringBase& out) noexcept;

/// The text of a value of this parameter: its display function's, or the above.
KORVO_API void FormatValueText(const KCParam_Base& param, double realWorld, KCFixedStringBase& out);

/// Reads a typed text. "-Inf" and "-inf" are the bottom of the scale. A text that the display function's inverse
/// knows is what that says; any other is a number in plain or exponent notation, with a point or a comma before its
/// decimals, after white space and an optional sign, and what follows it is ignored, but for a k (thousand) or
/// M (million) at the end, before the parameter's units or before "Hz": "1k" and "1 kHz" are 1000, while a k that
/// the units themselves begin with counts as units. Flag kParamFlag_NegativeTextOnly makes the number minus its
/// magnitude. NoNumber leaves `value` as it was.
KORVO_API KEValueText ParseValueText(const KCParam_Base& param, const KCFixedStringBase& text, double& value);

/// KCParam_Base::LimitRealWorld for a value read from text: of the values that the scale produces around it, the
/// nearest. A state found by the inverse can lie a rounding error below the step to the very value that was typed,
/// and a map scale knows its points only to their last digit.
KORVO_API void LimitTypedRealWorld(const KCParam_Base& param, double& realWorld);

} // namespace kvKorvoV12_9_0_320
