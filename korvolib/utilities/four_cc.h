// A four-character code such as "XPst": four bytes that read as text, compared and stored as one 32-bit integer.
// The first character sits in the most significant byte, so the codes order as their texts do.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KCFourCC {
  public:
    /// The code 0: four NUL characters.
    constexpr KCFourCC() noexcept = default;
    constexpr KCFourCC(uint32_t value) noexcept : m_value(value) {}
    /// Negative values keep their bits.
    constexpr KCFourCC(int32_t value) noexcept : m_value(static_cast<uint32_t>(value)) {}
    constexpr KCFourCC(char first, char second, char third, char fourth) noexcept
        : m_value(Byte(first) << 24 | Byte(second) << 16 | Byte(third) << 8 | Byte(fourth)) {}
    /// From a literal of exactly four characters: KCFourCC("curS").
    constexpr KCFourCC(const char (&text)[5]) noexcept : KCFourCC(text[0], text[1], text[2], text[3]) {}

    constexpr uint32_t Value() const noexcept { return m_value; }
    constexpr explicit operator uint32_t() const noexcept { return m_value; }
    constexpr explicit operator int32_t() const noexcept { return static_cast<int32_t>(m_value); }

    /// The character at `index` 0..3, counted from the first; NUL beyond.
    constexpr char operator[](size_t index) const noexcept {
        return index < 4 ? static_cast<char>(m_value >> (24 - 8 * index) & 0xFF) : '\0';
    }

    /// Order of the unsigned values, which is the order of the texts.
    friend constexpr bool operator==(const KCFourCC&, const KCFourCC&) noexcept = default;
    friend constexpr std::strong_ordering operator<=>(const KCFourCC& a, const KCFourCC& b) noexcept {
        return a.m_value <=> b.m_value;
    }

  private:
    static constexpr uint32_t Byte(char c) noexcept { return static_cast<unsigned char>(c); }

    uint32_t m_value = 0;
};

} // namespace kvKorvoV12_9_0_320

template <>
struct std::hash<kvKorvo::KCFourCC> {
    size_t operator()(const kvKorvo::KCFourCC& code) const noexcept { return std::hash<uint32_t>()(code.Value()); }
};
