#include "text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace kvKorvoV12_9_0_320::kvHost {

std::string NumberText(double number) {
    const double magnitude = std::abs(number);
    const bool isHandy = magnitude == 0.0 || (magnitude >= 1e-6 && magnitude < 1e15);
    char digits[40];
    const auto end = std::to_chars(digits, digits + sizeof digits, number,
                                   isHandy ? std::chars_format::fixed : std::chars_format::scientific)
                         .ptr;
    return {digits, end};
}

std::string FixedText(double number, int decimals) {
    char digits[352]; // the largest double has 309 digits before the point
    const auto end =
        std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, std::clamp(decimals, 0, 12))
            .ptr;
    return {digits, end};
}

bool ReadNumber(std::string_view text, double& number) {
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double read = 0.0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, read);
    if (result.ec != std::errc() || result.ptr != end || !std::isfinite(read))
        return false;
    number = read;
    return true;
}

std::string Quoted(std::string_view text) {
    constexpr size_t kLongest = 60;
    std::string quoted = "\"";
    for (const char c : text.substr(0, kLongest))
        quoted += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? '?' : c;
    return quoted + (text.size() > kLongest ? "…\"" : "\"");
}

std::string InApostrophes(std::string_view word) {
    std::string text;
    text.reserve(word.size() + 2);
    text += '\'';
    text += word;
    text += '\'';
    return text;
}

std::string JoinedText(const std::vector<std::string>& parts, std::string_view lastSeparator) {
    std::string joined;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i > 0)
            joined += i + 1 < parts.size() ? std::string_view(", ") : lastSeparator;
        joined += parts[i];
    }
    return joined;
}

bool HasEnding(std::string_view name, std::string_view ending) {
    const auto isSame = [](char small, char c) {
        return small == (c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c);
    };
    return name.size() >= ending.size() &&
           std::equal(ending.begin(), ending.end(), name.end() - static_cast<std::ptrdiff_t>(ending.size()),
                      isSame);
}

size_t TextWidth(std::string_view text) {
    const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    return text.size() - static_cast<size_t>(std::count_if(text.begin(), text.end(), isContinuation));
}

} // namespace kvKorvoV12_9_0_320::kvHost
