// How many decimal digits a whole number has, and writing them two at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::StringInternal {

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

/// The same of 32 bits, by one addition: the upper half of an entry is a number of digits. Where a power of ten
/// lies among the numbers of so many bits, that is the larger number of digits, less as much as the power: the sum
/// reaches it from the power on.
inline size_t DecimalDigits(uint32_t value) noexcept {
    static constexpr std::array<uint64_t, 32> kSteps = [] {
        std::array<uint64_t, 32> steps{};
        uint64_t digits = 1;
        for (size_t bit = 0; bit < steps.size(); ++bit) {
            const uint64_t largest = (uint64_t{2} << bit) - 1;
            const bool isMixed = digits < 10 && largest >= kPowersOf10[digits];
            steps[bit] = isMixed ? ((digits + 1) << 32) - kPowersOf10[digits] : digits << 32;
            digits += isMixed;
        }
        return steps;
    }();
    const auto bit = static_cast<size_t>(31 - __builtin_clz(value | 1));
    return static_cast<size_t>((value + kSteps[bit]) >> 32);
}

/// Writes `value`, which has at most `count` digits, with leading zeros so that it ends before `end`.
template <class Unsigned>
void WriteDigitsBefore(char* end, Unsigned value, size_t count) noexcept {
    for (; count >= 2; count -= 2) {
        end -= 2;
        std::memcpy(end, &kDigitPairs[2 * (value % 100)], 2);
        value /= 100;
    }
    if (count == 1)
        end[-1] = static_cast<char>('0' + value);
}

} // namespace kvKorvoV12_9_0_320::StringInternal
