#include <korvolib/utilities/color.h>

#include <cmath>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

namespace {

constexpr size_t kOpaqueLength = 7; // "#RRGGBB"
constexpr size_t kFullLength = 9;   // "#RRGGBBAA"
constexpr int kNoDigit = -1;

// The digit's value; letters by hand, since isxdigit asks the locale.
int HexDigit(char character) noexcept {
    if (character >= '0' && character <= '9')
        return character - '0';
    if (character >= 'A' && character <= 'F')
        return character - 'A' + 10;
    if (character >= 'a' && character <= 'f')
        return character - 'a' + 10;
    return kNoDigit;
}

// Up to one more than the longest that can be read.
size_t ShortLength(const char* text) noexcept {
    size_t length = 0;
    while (length <= kFullLength && text[length] != '\0')
        ++length;
    return length;
}

bool ReadChannel(const char* digits, uint8_t& channel) noexcept {
    const int high = HexDigit(digits[0]);
    const int low = HexDigit(digits[1]);
    if (high == kNoDigit || low == kNoDigit)
        return false;
    channel = static_cast<uint8_t>(high * 16 + low);
    return true;
}

void WriteChannel(char* digits, uint8_t channel) noexcept {
    constexpr char kDigits[] = "0123456789ABCDEF";
    digits[0] = kDigits[channel / 16];
    digits[1] = kDigits[channel % 16];
}

} // namespace

KUColor KUColor::WithOpacity(double opacity) const noexcept {
    if (!(opacity > 0.0))
        return WithAlpha(0);
    return WithAlpha(static_cast<uint8_t>(std::lround(std::fmin(opacity, 1.0) * 255.0)));
}

KUColorText KUColor::Format() const noexcept {
    KUColorText result;
    result.text[0] = '#';
    WriteChannel(result.text + 1, red);
    WriteChannel(result.text + 3, green);
    WriteChannel(result.text + 5, blue);
    if (alpha != 255)
        WriteChannel(result.text + kOpaqueLength, alpha);
    return result;
}

int32_t KUColor::Parse(const char* text, KUColor& color) noexcept {
    if (text == nullptr)
        return kErr_NullArgument;
    const size_t length = ShortLength(text);
    if (text[0] != '#' || (length != kOpaqueLength && length != kFullLength))
        return kErr_MalformedText;
    KUColor read;
    const bool isRead = ReadChannel(text + 1, read.red) && ReadChannel(text + 3, read.green) &&
                        ReadChannel(text + 5, read.blue) &&
                        (length == kOpaqueLength || ReadChannel(text + kOpaqueLength, read.alpha));
    if (!isRead)
        return kErr_MalformedText;
    color = read;
    return kErr_NoErr;
}

} // namespace kvKorvoV12_9_0_320
