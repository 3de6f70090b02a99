// Whole numbers in and out, and the reading of floating-point numbers and truth values.
#include <korvolib/utilities/strings/fixed_string.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <locale.h>

#include <korvolib/utilities/strings/fixed_string_internal.h>

namespace kvKorvoV12_9_0_320 {

using StringInternal::DecimalDigits;
using StringInternal::kPowersOf10;
using StringInternal::TripleDigits;
using StringInternal::TripleText;
using StringInternal::WriteDigitsBefore;

// ---- Writing

KCFixedStringBase& KCFixedStringBase::AppendDecimal(uint64_t value) noexcept {
    const size_t digits = DecimalDigits(value);
    const size_t count = std::min(digits, Room());
    if (count == 0)
        return *this;
    if (count < digits)
        value %= kPowersOf10[count];
    m_end += count;
    WriteDigitsBefore(m_end, value, count);
    *m_end = '\0';
    return *this;
}

KCFixedStringBase& KCFixedStringBase::AppendSigned(int64_t value) noexcept {
    if (value >= 0)
        return AppendDecimal(static_cast<uint64_t>(value));
    *this << '-';
    return AppendDecimal(uint64_t{0} - static_cast<uint64_t>(value));
}

/// What the inline insertion leaves: a million and more, or little room.
KCFixedStringBase& KCFixedStringBase::AppendLargeInt(int value) noexcept {
    const auto bits = static_cast<uint32_t>(value);
    const uint32_t magnitude = value < 0 ? 0 - bits : bits;
    uint32_t top = magnitude / 1000000;
    if (top == 0 || Room() < 11)
        return AppendSigned(value);
    *m_end = '-'; // or a digit, below
    char* to = m_end + (value < 0);
    size_t digits = TripleDigits(top);
    if (top >= 1000) {
        *to++ = static_cast<char>('0' + top / 1000);
        top %= 1000;
        digits = 3;
    }
    std::memcpy(to, TripleText(top, digits), 4); // what is not a digit of it, the low ones overwrite
    to += digits;
    std::memcpy(to, TripleText(magnitude / 1000 % 1000, 3), 4);
    std::memcpy(to + 3, TripleText(magnitude % 1000, 3), 4);
    m_end = to + 6;
    return *this;
}

KCFixedStringBase& KCFixedStringBase::append_uint(uint64_t value, int base) noexcept {
    if (base == 10)
        return AppendDecimal(value);
    if (base < 2)
        return *this;
    const auto radix = static_cast<uint64_t>(base);
    char digits[64];
    char* first = std::end(digits);
    do {
        const uint64_t digit = value % radix;
        *--first = static_cast<char>(static_cast<unsigned char>(digit < 10 ? '0' + digit : 'A' + digit - 10));
        value /= radix;
    } while (value != 0);
    const auto count = std::min(static_cast<size_t>(std::end(digits) - first), Room());
    return AppendRun(std::end(digits) - count, count);
}

KCFixedStringBase& KCFixedStringBase::append_hex_binary(const unsigned char* bytes, size_t count) noexcept {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    if (bytes == nullptr)
        return *this;
    for (; count != 0 && Room() != 0; --count) {
        const unsigned byte = bytes[count - 1];
        *this << kDigits[byte >> 4] << kDigits[byte & 15];
    }
    return *this;
}

// ---- Reading

namespace {

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// The magnitude of the number that `text` begins with, at most `limit`, and its sign.
struct WholeNumber {
    uint64_t magnitude = 0;
    bool isNegative = false;
    bool isTooLarge = false;
};

WholeNumber ReadWholeNumber(const char* text, uint64_t limit, uint64_t negativeLimit) {
    WholeNumber number;
    while (IsSpace(*text))
        ++text;
    if (*text == '-' || *text == '+')
        number.isNegative = *text++ == '-';
    const uint64_t largest = number.isNegative ? negativeLimit : limit;
    for (; *text >= '0' && *text <= '9'; ++text) {
        const auto digit = static_cast<uint64_t>(*text - '0');
        number.isTooLarge = number.isTooLarge || number.magnitude > (largest - digit) / 10;
        if (!number.isTooLarge)
            number.magnitude = number.magnitude * 10 + digit;
    }
    if (number.isTooLarge)
        number.magnitude = largest;
    return number;
}

/// As strtol and its family do: an unsigned number may carry a minus and is then negated in its type, and one that
/// is too large gives the largest, whatever its sign.
template <class Integer>
Integer ReadInteger(const char* text) {
    constexpr auto kMax = static_cast<uint64_t>(std::numeric_limits<Integer>::max());
    constexpr bool kIsSigned = std::numeric_limits<Integer>::is_signed;
    const WholeNumber number = ReadWholeNumber(text, kMax, kIsSigned ? kMax + 1 : kMax);
    const bool negate = number.isNegative && (kIsSigned || !number.isTooLarge);
    return static_cast<Integer>(negate ? uint64_t{0} - number.magnitude : number.magnitude);
}

/// The "C" locale, whatever the process has set. The C library keeps this one: nothing is made, nothing is freed.
locale_t CLocale() {
    static const locale_t s_locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return s_locale;
}

} // namespace

const KCFixedStringBase& KCFixedStringBase::operator>>(int& value) const noexcept {
    value = ReadInteger<int>(Text());
    return *this;
}
const KCFixedStringBase& KCFixedStringBase::operator>>(unsigned int& value) const noexcept {
    value = ReadInteger<unsigned int>(Text());
    return *this;
}
const KCFixedStringBase& KCFixedStringBase::operator>>(long& value) const noexcept {
    value = ReadInteger<long>(Text());
    return *this;
}
const KCFixedStringBase& KCFixedStringBase::operator>>(unsigned long& value) const noexcept {
    value = ReadInteger<unsigned long>(Text());
    return *this;
}
const KCFixedStringBase& KCFixedStringBase::operator>>(long long& value) const noexcept {
    value = ReadInteger<long long>(Text());
    return *this;
}
const KCFixedStringBase& KCFixedStringBase::operator>>(unsigned long long& value) const noexcept {
    value = ReadInteger<unsigned long long>(Text());
    return *this;
}
const KCFixedStringBase& KCFixedStringBase::operator>>(float& value) const noexcept {
    value = strtof_l(Text(), nullptr, CLocale());
    return *this;
}
const KCFixedStringBase& KCFixedStringBase::operator>>(double& value) const noexcept {
    value = strtod_l(Text(), nullptr, CLocale());
    return *this;
}

const KCFixedStringBase& KCFixedStringBase::operator>>(bool& value) const noexcept {
    static constexpr struct {
        const char* text;
        bool value;
    } kTexts[] = {{"yes", true}, {"no", false}, {"true", true}, {"false", false}, {"1", true}, {"0", false}};
    for (const auto& entry : kTexts) {
        if (case_insensitive_compare(entry.text) != 0)
            continue;
        value = entry.value;
        break;
    }
    return *this;
}

} // namespace kvKorvoV12_9_0_320
