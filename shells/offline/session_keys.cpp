#include "session_keys.h"

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include <korvolib/gui/event_data.h>

#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using namespace PluginViewManager;

constexpr std::array<std::pair<const char*, KEKeyCode>, 14> kKeyNames = {{{"Up", kKey_Up},
                                                                          {"Down", kKey_Down},
                                                                          {"Left", kKey_Left},
                                                                          {"Right", kKey_Right},
                                                                          {"PageUp", kKey_PageUp},
                                                                          {"PageDown", kKey_PageDown},
                                                                          {"Home", kKey_Home},
                                                                          {"End", kKey_End},
                                                                          {"Enter", kKey_Enter},
                                                                          {"Escape", kKey_Escape},
                                                                          {"Backspace", kKey_Backspace},
                                                                          {"Delete", kKey_Delete},
                                                                          {"Tab", kKey_Tab},
                                                                          {"Space", kKey_Space}}};

// How many bytes a character takes that begins with this one; 0 where none does (UTF-8, RFC 3629).
size_t LengthOfCharacter(uint32_t first) {
    if (first < 0x80)
        return 1;
    if (first < 0xC2 || first > 0xF4)
        return 0;
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

// Keys that have a name are not written as the character of their code, and so no character below '!' is one.
bool IsCharacterKey(uint32_t character, size_t length) {
    constexpr uint32_t kSmallest[] = {0, 0x21, 0x80, 0x800, 0x10000};
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    const bool isControl = character >= 0x7F && character < 0xA0;
    return character >= kSmallest[length] && character <= 0x10FFFF && !isSurrogate && !isControl;
}

uint32_t OnlyCharacter(std::string_view text) {
    if (text.empty())
        return kKey_None;
    const auto byte = [&](size_t i) { return static_cast<uint32_t>(static_cast<unsigned char>(text[i])); };
    const size_t length = LengthOfCharacter(byte(0));
    if (length == 0 || text.size() != length)
        return kKey_None;
    uint32_t character = length == 1 ? byte(0) : byte(0) & (0xFFu >> (length + 1));
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return kKey_None;
        character = character << 6 | (byte(i) & 0x3F);
    }
    return IsCharacterKey(character, length) ? character : kKey_None;
}

} // namespace

uint32_t KeyOfName(std::string_view name) {
    for (const auto& [known, code] : kKeyNames)
        if (name == known)
            return code;
    return OnlyCharacter(name);
}

std::string KeyNames() {
    std::vector<std::string> names;
    names.reserve(kKeyNames.size());
    for (const auto& [name, code] : kKeyNames)
        names.emplace_back(name);
    return JoinedText(names, " or ");
}

} // namespace kvKorvoV12_9_0_320::kvHost
