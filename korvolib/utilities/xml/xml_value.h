// What stands between numbers and the text of XML attributes and elements: KUXMLValue on the way out, ReadXMLValue
// on the way in. Doubles are written so that they read back bit for bit, and nothing depends on the locale.
//
// Nothing allocates or throws. For any thread.
#pragma once

#include <concepts>
#include <cstdint>
#include <string_view>

#include <korvolib/export.h>
#include <korvolib/utilities/number_text.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

/// What became of a value that was asked for. Only Found changes the output.
enum class KEXMLValue : int32_t {
    Missing,   ///< There is no such attribute or element.
    Found,     ///< The output holds it.
    Malformed, ///< It is there, but its text is no such value.
};

/// One decimal number and blanks around it ("0.5", "-1e3"); neither a comma nor "inf" nor "nan".
[[nodiscard]] KORVO_API KEXMLValue ReadXMLValue(const char* text, double& value) noexcept;
/// One whole decimal number with an optional sign and blanks around it, in the range of the type.
[[nodiscard]] KORVO_API KEXMLValue ReadXMLValue(const char* text, int64_t& value) noexcept;
[[nodiscard]] KORVO_API KEXMLValue ReadXMLValue(const char* text, int32_t& value) noexcept;
[[nodiscard]] KORVO_API KEXMLValue ReadXMLValue(const char* text, uint64_t& value) noexcept;
[[nodiscard]] KORVO_API KEXMLValue ReadXMLValue(const char* text, uint32_t& value) noexcept;
/// "true", "yes", "1" or "false", "no", "0" in letters of any case, and blanks around it.
[[nodiscard]] KORVO_API KEXMLValue ReadXMLValue(const char* text, bool& value) noexcept;
/// The text as it stands, cut at the capacity.
[[nodiscard]] KORVO_API KEXMLValue ReadXMLValue(const char* text, KCFixedStringBase& value) noexcept;

/// The text of a value to be written: what SetText, SetAttribute and AddChild take. It points at the text that it
/// was made of, so it lives within one call. Null is the empty text; true and false are "true" and "false".
class KORVO_API KUXMLValue {
  public:
    KUXMLValue(const char* text) noexcept : m_text(text == nullptr ? "" : text) {}
    /// std::string and std::string_view.
    template <std::convertible_to<std::string_view> Text>
    requires(!std::convertible_to<const Text&, const char*>) KUXMLValue(const Text& text)
    noexcept : m_text(text) {}
    KUXMLValue(const KCFixedStringBase& text) noexcept : m_text(text.data(), text.size()) {}
    /// An infinity or not-a-number has no text: the value is not valid, and who is given it refuses.
    KUXMLValue(double value) noexcept;
    template <std::same_as<bool> Bool>
    KUXMLValue(Bool value) noexcept : m_text(value ? "true" : "false") {}
    template <std::integral Whole>
    requires(!std::same_as<Whole, bool> && !std::same_as<Whole, char>) KUXMLValue(Whole value)
    noexcept {
        if constexpr (std::signed_integral<Whole>)
            WriteSigned(value);
        else
            WriteUnsigned(value);
    }
    KUXMLValue(const KUXMLValue&) = delete;
    KUXMLValue& operator=(const KUXMLValue&) = delete;

    bool IsValid() const noexcept { return m_isValid; }
    std::string_view GetText() const noexcept { return m_text; }

  private:
    void WriteSigned(int64_t value) noexcept;
    void WriteUnsigned(uint64_t value) noexcept;

    char m_digits[kDecimalTextSize];
    std::string_view m_text;
    bool m_isValid = true;
};

} // namespace kvKorvoV12_9_0_320
