// What the sources of the fixed strings share: sets of characters, ASCII case, decimal digits.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <korvolib/utilities/strings/decimal_digits.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::StringInternal {

/// The characters of a text, asked one at a time. NUL is never among them.
class CharSet {
  public:
    explicit CharSet(const char* text) noexcept {
        for (; text != nullptr && *text != '\0'; ++text)
            Word(*text) |= Bit(*text);
    }
    bool Has(char c) const noexcept { return (m_words[static_cast<unsigned char>(c) / 64] & Bit(c)) != 0; }

  private:
    static uint64_t Bit(char c) noexcept { return uint64_t{1} << (static_cast<unsigned char>(c) % 64); }
    uint64_t& Word(char c) noexcept { return m_words[static_cast<unsigned char>(c) / 64]; }

    std::array<uint64_t, 4> m_words{};
};

/// The C library's tolower of the "C" locale.
inline int Lower(char c) noexcept {
    const int byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte;
}

inline constexpr std::array<uint64_t, 20> kPowersOf10 = [] {
    std::array<uint64_t, 20> powers{};
    uint64_t power = 1;
    for (uint64_t& entry : powers) {
        entry = power;
        power *= 10;
    }
    return powers;
}();

/// "00" to "99" side by side.
inline constexpr std::array<char, 200> kDigitPairs = [] {
    std::array<char, 200> pairs{};
    for (size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

/// Decimal digits of `value`: 1 to 20. 1233/4096 is a little more than log10(2).
inline size_t DecimalDigits(uint64_t value) noexcept {
    const auto bits = static_cast<size_t>(64 - __builtin_clzll(value | 1));
    const size_t guess = bits * 1233 >> 12;
    return guess + (guess < kPowersOf10.size() && (value | 1) >= kPowersOf10[guess]);
}

/// Writes `value`, which has at most `count` digits, with leading zeros so that it ends before `end`.
inline void WriteDigitsBefore(char* end, uint64_t value, size_t count) noexcept {
    for (; count >= 2; count -= 2) {
        end -= 2;
        std::memcpy(end, &kDigitPairs[2 * (value % 100)], 2);
        value /= 100;
    }
    if (count == 1)
        end[-1] = static_cast<char>('0' + value);
}

} // namespace kvKorvoV12_9_0_320::StringInternal
