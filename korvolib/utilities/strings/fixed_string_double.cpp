// Floating-point numbers as printf writes them, without printf: its decimal point follows the process locale.
#include <korvolib/utilities/strings/fixed_string.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <iterator>

#include <korvolib/utilities/strings/fixed_string_internal.h>

namespace kvKorvoV12_9_0_320 {

using StringInternal::DecimalDigits;
using StringInternal::kPowersOf10;
using StringInternal::WriteDigitsBefore;

namespace {

__extension__ using Wide = unsigned __int128;

constexpr size_t kLongestText = 31;
constexpr int kFractionBits = 52;
constexpr int kExponentBias = 1023 + kFractionBits;
/// 2^53 · 10^19 and the carry stay below 2^128, and 10^19 below 2^64.
constexpr int kMostQuickDecimals = 19;
/// No finite double has more decimals than these; from here on "%.*f" adds zeros behind the 31st character.
constexpr int kAllDecimals = 1074;

/// |value| as a whole number and `decimals` digits behind the point, rounded as the decimal digits of the exact
/// value round, ties to even.
struct Decimal {
    uint64_t whole;
    uint64_t fraction; // below 10^decimals
};

/// mantissa · 2^−shift, exact: the product with 10^decimals fits into 128 bits, and what the shift drops decides.
Decimal RoundToDecimals(uint64_t mantissa, int shift, int decimals) {
    const uint64_t unit = kPowersOf10[static_cast<size_t>(decimals)];
    Decimal result{shift < 64 ? mantissa >> shift : 0, 0};
    const uint64_t below = shift < 64 ? mantissa & ((uint64_t{1} << shift) - 1) : mantissa;
    const Wide scaled = Wide{below} * unit;
    if (shift > 127)
        return result; // scaled < 2^117: less than half of the last digit
    const Wide half = Wide{1} << (shift - 1);
    const Wide rest = scaled & (half + (half - 1));
    result.fraction = static_cast<uint64_t>(scaled >> shift);
    const uint64_t lastDigit = decimals == 0 ? result.whole : result.fraction;
    result.fraction += rest > half || (rest == half && (lastDigit & 1) != 0);
    if (result.fraction == unit) {
        result.fraction = 0;
        ++result.whole;
    }
    return result;
}

char* WriteDecimal(char* to, Decimal number, int decimals) {
    const size_t digits = DecimalDigits(number.whole);
    to += digits;
    WriteDigitsBefore(to, number.whole, digits);
    if (decimals == 0)
        return to;
    *to++ = '.';
    to += decimals;
    WriteDigitsBefore(to, number.fraction, static_cast<size_t>(decimals));
    return to;
}

/// Null when the number is none of the everyday ones: below 2^63, at most 19 decimals.
char* WriteQuickly(char* to, double value, int decimals) {
    const auto bits = std::bit_cast<uint64_t>(value);
    const auto exponent = static_cast<int>(bits >> kFractionBits & 0x7FF);
    if (exponent >= kExponentBias + 63 - kFractionBits || decimals > kMostQuickDecimals)
        return nullptr;
    const uint64_t fraction = bits & ((uint64_t{1} << kFractionBits) - 1);
    const uint64_t mantissa = exponent == 0 ? fraction : fraction | uint64_t{1} << kFractionBits;
    const int shift = kExponentBias - std::max(exponent, 1);
    if (bits >> 63 != 0)
        *to++ = '-';
    const Decimal number = shift > 0 ? RoundToDecimals(mantissa, shift, decimals) : Decimal{mantissa << -shift, 0};
    return WriteDecimal(to, number, decimals);
}

} // namespace

KCFixedStringBase& KCFixedStringBase::append_double_with_precision(double value, int precision) noexcept {
    char quick[64]; // sign, 19 digits, point, 19 digits
    const int decimals = precision < 0 ? 6 : std::min(precision, kAllDecimals);
    if (precision != -1) {
        if (const char* end = WriteQuickly(quick, value, decimals))
            return AppendRun(quick, std::min({static_cast<size_t>(end - quick), kLongestText, Room()}));
    }
    char exact[1 + 309 + 1 + kAllDecimals];
    const auto result = precision == -1
                            ? std::to_chars(exact, std::end(exact), value, std::chars_format::general, 20)
                            : std::to_chars(exact, std::end(exact), value, std::chars_format::fixed, decimals);
    return AppendRun(exact, std::min({static_cast<size_t>(result.ptr - exact), kLongestText, Room()}));
}

} // namespace kvKorvoV12_9_0_320
