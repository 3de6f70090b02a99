#include <korvolib/utilities/strings/fixed_string_format.h>

#include <ctime>
#include <ostream>
#include <sstream>

#include <korvolib/utilities/four_cc.h>

namespace kvKorvoV12_9_0_320 {

KCFixedStringBase& operator<<(KCFixedStringBase& string, std::string_view text) noexcept {
    return string.append(text.data(), text.size());
}

KCFixedStringBase& operator<<(KCFixedStringBase& string, const std::stringstream& text) noexcept {
    return string << text.view();
}

KCFixedStringBase& operator<<(KCFixedStringBase& string, const void* address) noexcept {
    return string.append("0x").append_uint(reinterpret_cast<uintptr_t>(address), 16);
}

KCFixedStringBase& operator<<(KCFixedStringBase&& string, const void* address) noexcept {
    return string << address;
}

KCFixedStringBase& operator<<(KCFixedStringBase& string, const KCFourCC& code) noexcept {
    return string << code[0] << code[1] << code[2] << code[3];
}

std::ostream& operator<<(std::ostream& stream, const KCFixedStringBase& string) {
    return stream << std::string_view(string.data(), string.size());
}

KCFixedStringBase& PCurrentDateAndTime::operator()(KCFixedStringBase& string) const noexcept {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    char text[64]; // asctime's 26, and room for whatever a C library may write
    if (localtime_r(&now, &local) == nullptr || asctime_r(&local, text) == nullptr)
        return string;
    return string.append(text, size_t{24});
}

} // namespace kvKorvoV12_9_0_320
