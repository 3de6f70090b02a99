// Decimal digits three at a time, for the insertion of whole numbers that callers compile in.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::StringInternal {

/// "000" to "999", each with a NUL behind it.
inline constexpr std::array<char, 4000> kDigitTriples = [] {
    std::array<char, 4000> triples{};
    for (size_t i = 0; i < 1000; ++i) {
        triples[4 * i] = static_cast<char>('0' + i / 100);
        triples[4 * i + 1] = static_cast<char>('0' + i / 10 % 10);
        triples[4 * i + 2] = static_cast<char>('0' + i % 10);
    }
    return triples;
}();

/// The digits of a number below 1000, with a NUL behind them.
inline const char* TripleText(uint32_t triple, size_t digits) noexcept {
    return &kDigitTriples[4 * size_t{triple}] + 3 - digits;
}
inline size_t TripleDigits(uint32_t triple) noexcept { return size_t{1} + (triple >= 10) + (triple >= 100); }

} // namespace kvKorvoV12_9_0_320::StringInternal
