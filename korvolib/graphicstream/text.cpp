#include <korvolib/graphicstream/text.h>

#include <cstdint>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; // U+FFFD

bool IsPlain(uint8_t c) noexcept { return (c >= 0x20 && c < 0x7F) || c == '\t' || c == '\n' || c == '\r'; }

// What the second byte of a character may be, by its first: shorter forms, surrogates and numbers above U+10FFFF
// are not well-formed.
bool IsSecondByte(uint8_t first, uint8_t second) noexcept {
    switch (first) {
    case 0xE0:
        return second >= 0xA0 && second <= 0xBF;
    case 0xED:
        return second >= 0x80 && second <= 0x9F;
    case 0xF0:
        return second >= 0x90 && second <= 0xBF;
    case 0xF4:
        return second >= 0x80 && second <= 0x8F;
    default:
        return (second & 0xC0) == 0x80;
    }
}

size_t SequenceLength(uint8_t first) noexcept {
    if (first >= 0xC2 && first <= 0xDF)
        return 2;
    if (first >= 0xE0 && first <= 0xEF)
        return 3;
    return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

// Bytes of the character at the start of the text, or 0 if there is none to be shown.
size_t ValidLength(std::string_view text) noexcept {
    const auto at = [&](size_t index) { return static_cast<uint8_t>(text[index]); };
    if (IsPlain(at(0)))
        return 1;
    const size_t length = SequenceLength(at(0));
    if (length == 0 || length > text.size() || !IsSecondByte(at(0), at(1)))
        return 0;
    for (size_t i = 2; i < length; ++i) {
        if ((at(i) & 0xC0) != 0x80)
            return 0;
    }
    // U+0080 to U+009F are controls; U+FFFE and U+FFFF are no characters, and XML refuses them.
    if (at(0) == 0xC2 && at(1) < 0xA0)
        return 0;
    return at(0) == 0xEF && at(1) == 0xBF && at(2) >= 0xBE ? 0 : length;
}

} // namespace

int32_t GSAppendValidText(std::string_view text, KCStMemObj& out) noexcept {
    size_t start = 0; // of the run that is not yet copied
    size_t next = 0;
    while (next < text.size()) {
        const size_t length = ValidLength(text.substr(next));
        if (length != 0) {
            next += length;
            continue;
        }
        if (out.Append(text.substr(start, next - start)) != kErr_NoErr || out.Append(kReplacement) != kErr_NoErr)
            return kErr_AllocationFailed;
        start = ++next;
    }
    return out.Append(text.substr(start));
}

} // namespace kvKorvoV12_9_0_320::kvGS
