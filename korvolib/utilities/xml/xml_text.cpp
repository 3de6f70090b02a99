#include <korvolib/utilities/xml/xml_text_internal.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kvKorvoV12_9_0_320 {

namespace {

bool IsLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool IsNameStart(char character) { return IsLetter(character) || character == '_'; }

bool IsNameCharacter(char character) {
    return IsNameStart(character) || (character >= '0' && character <= '9') || character == '-' ||
           character == '.' || character == ':';
}

// The length of a UTF-8 sequence by its first byte; 0 for a byte that cannot be first.
size_t SequenceLength(uint8_t first) {
    if (first < 0x80)
        return 1;
    if (first < 0xC2)
        return 0;
    if (first < 0xE0)
        return 2;
    if (first < 0xF0)
        return 3;
    return first < 0xF5 ? 4 : 0;
}

bool IsAllowed(uint32_t code) {
    if (code < 0x20)
        return code == '\t' || code == '\n' || code == '\r';
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    return !isSurrogate && code != 0xFFFE && code != 0xFFFF && code <= 0x10FFFF;
}

// The length of the allowed character at the front of a text that is not empty; 0 if none stands there.
size_t AllowedLength(std::string_view text) {
    constexpr uint32_t kSmallestOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<uint8_t>(text[0]);
    const size_t length = SequenceLength(first);
    if (length == 0 || length > text.size())
        return 0;
    uint32_t code = length == 1 ? first : first & (0x7Fu >> length);
    for (size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<uint8_t>(text[i]);
        if ((byte & 0xC0) != 0x80)
            return 0;
        code = code << 6 | (byte & 0x3Fu);
    }
    return code >= kSmallestOfLength[length] && IsAllowed(code) ? length : 0;
}

} // namespace

bool IsXMLBlank(std::string_view text) noexcept {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

bool IsXMLName(std::string_view name) noexcept {
    return !name.empty() && IsNameStart(name[0]) && std::ranges::all_of(name, IsNameCharacter);
}

bool IsXMLText(std::string_view text) noexcept {
    while (!text.empty()) {
        const size_t length = AllowedLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

KCFixedString<127> XMLTextOf(const KCFixedStringBase& text) noexcept {
    KCFixedString<127> writable;
    for (std::string_view rest(text.c_str()); !rest.empty();) {
        const size_t length = AllowedLength(rest);
        writable.append(rest.data(), length);
        rest.remove_prefix(std::max<size_t>(length, 1));
    }
    return writable;
}

} // namespace kvKorvoV12_9_0_320
