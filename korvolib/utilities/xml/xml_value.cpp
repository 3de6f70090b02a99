#include <korvolib/utilities/xml/xml_value.h>

#include <charconv>
#include <cmath>
#include <cstring>

namespace kvKorvoV12_9_0_320 {

namespace {

std::string_view WithoutBlanks(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsSameInAnyCase(std::string_view text, std::string_view lowerCase) {
    if (text.size() != lowerCase.size())
        return false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char character = text[i];
        const bool isCapital = character >= 'A' && character <= 'Z';
        if ((isCapital ? static_cast<char>(character - 'A' + 'a') : character) != lowerCase[i])
            return false;
    }
    return true;
}

template <std::integral Whole>
KEXMLValue ReadWhole(const char* text, Whole& value) {
    if (text == nullptr)
        return KEXMLValue::Missing;
    std::string_view digits = WithoutBlanks(text);
    // from_chars knows no plus; behind one it must not find a minus either.
    if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-')
        digits.remove_prefix(1);
    Whole read = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, read);
    if (result.ec != std::errc() || result.ptr != end)
        return KEXMLValue::Malformed;
    value = read;
    return KEXMLValue::Found;
}

} // namespace

KEXMLValue ReadXMLValue(const char* text, double& value) noexcept {
    if (text == nullptr)
        return KEXMLValue::Missing;
    return ParseDecimal(text, std::strlen(text), value) ? KEXMLValue::Found : KEXMLValue::Malformed;
}

KEXMLValue ReadXMLValue(const char* text, int64_t& value) noexcept { return ReadWhole(text, value); }
KEXMLValue ReadXMLValue(const char* text, int32_t& value) noexcept { return ReadWhole(text, value); }
KEXMLValue ReadXMLValue(const char* text, uint64_t& value) noexcept { return ReadWhole(text, value); }
KEXMLValue ReadXMLValue(const char* text, uint32_t& value) noexcept { return ReadWhole(text, value); }

KEXMLValue ReadXMLValue(const char* text, bool& value) noexcept {
    if (text == nullptr)
        return KEXMLValue::Missing;
    const std::string_view word = WithoutBlanks(text);
    const bool isTrue = word == "1" || IsSameInAnyCase(word, "true") || IsSameInAnyCase(word, "yes");
    const bool isFalse = word == "0" || IsSameInAnyCase(word, "false") || IsSameInAnyCase(word, "no");
    if (!isTrue && !isFalse)
        return KEXMLValue::Malformed;
    value = isTrue;
    return KEXMLValue::Found;
}

KEXMLValue ReadXMLValue(const char* text, KCFixedStringBase& value) noexcept {
    if (text == nullptr)
        return KEXMLValue::Missing;
    value = text;
    return KEXMLValue::Found;
}

KUXMLValue::KUXMLValue(double value) noexcept : m_isValid(std::isfinite(value)) {
    if (m_isValid)
        m_text = {m_digits, FormatDecimal(value, m_digits, sizeof m_digits)};
}

void KUXMLValue::WriteSigned(int64_t value) noexcept {
    const auto behind = std::to_chars(m_digits, m_digits + sizeof m_digits, value);
    m_text = {m_digits, static_cast<size_t>(behind.ptr - m_digits)};
}

void KUXMLValue::WriteUnsigned(uint64_t value) noexcept {
    const auto behind = std::to_chars(m_digits, m_digits + sizeof m_digits, value);
    m_text = {m_digits, static_cast<size_t>(behind.ptr - m_digits)};
}

} // namespace kvKorvoV12_9_0_320
