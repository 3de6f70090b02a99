// Numbers and short text without the C library's locale: a host that runs in German gets the same digits.
//
// Free functions for any thread. Nothing here allocates, throws or reads a global.
#pragma once

#include <cstddef>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

/// Reads the decimal number at the start of the text. True if there was one; then `value` is the nearest double and
/// `length`, if given, the characters it took, blanks before it included. Otherwise false, both as they were.
///
///   [blanks] [+ or -] digits [(. or ,) [digits]] [(e or E) [+ or -] digits]
///
/// Blanks are space and \t \n \v \f \r. The digits may be on one side of the point only ("5.", ".5"). A comma is a
/// decimal comma only before a digit, so "0,5" is 0.5, and "3, 4" is 3; one of the two stands once: "1,234.5" reads
/// as 1.234 and stops at the point. An exponent without digits is not part of the number ("3e" is 3, as "3 dB" is).
/// No hexadecimal ("0x10" is 0), no words ("inf", "nan"). Too large reads as an infinity, too small as 0, both with
/// their sign. Null is no number.
///
///   double value = 0;
///   KUStod("+0,5 dB", value);  // true, 0.5
[[nodiscard]] KORVO_API bool KUStod(const char* text, double& value, size_t* length = nullptr) noexcept;
/// The same for text of a known size; characters of value 0 end the number like any other foreign character.
[[nodiscard]] KORVO_API bool KUStod(const char* text, size_t size, double& value,
                                    size_t* length = nullptr) noexcept;

/// For files of ours: true if the whole text, but for blanks around it, is one finite number with a decimal point
/// (a comma is refused). Otherwise false, and the value stays as it was.
[[nodiscard]] KORVO_API bool ParseDecimal(const char* text, size_t size, double& value) noexcept;

/// Room for any text of FormatDecimal with its terminating 0.
inline constexpr size_t kDecimalTextSize = 32;

/// Writes the shortest decimal text that reads back as exactly this double, terminated, with a point where one is
/// needed ("0.1", "-3", "1e+300"); "inf", "-inf" and "nan" for what is no number. Returns its length; 0 and an
/// empty text if it does not fit. (Ryu, Ulf Adams, PLDI 2018, as the standard library has it.)
KORVO_API size_t FormatDecimal(double value, char* to, size_t capacity) noexcept;

/// Copies text into a buffer of `capacity` characters and always terminates it; what does not fit is cut. Returns
/// the number of characters copied, without the 0. A null source is the empty text; a null buffer or a capacity of
/// 0 gets nothing. The two may overlap.
KORVO_API size_t KUSafeStrcpy(char* to, const char* from, size_t capacity) noexcept;

template <size_t Capacity>
size_t KUSafeStrcpy(char (&to)[Capacity], const char* from) noexcept {
    return KUSafeStrcpy(to, from, Capacity);
}

} // namespace kvKorvoV12_9_0_320
