// What the sources of the fixed strings share: sets of characters, ASCII case.
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

} // namespace kvKorvoV12_9_0_320::StringInternal
