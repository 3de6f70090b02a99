// The content of a Windows shortcut (.lnk), as [MS-SHLLINK] "Shell Link (.LNK) Binary File Format" publishes it.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace kvKorvoV12_9_0_320::FM {

/// UTF-8, with '/' between the components; empty where the shortcut has none.
struct sWinShortcut {
    std::string relativePath;
    std::string fullPath;
};

/// The size of the header, which every shortcut has.
constexpr size_t kWinShortcutHeaderSize = 76;

bool HasWinShortcutHeader(std::span<const uint8_t> bytes) noexcept;
/// False for what is no shortcut or is cut short. May run out of memory, which throws.
bool ParseWinShortcut(std::span<const uint8_t> bytes, sWinShortcut& out);

} // namespace kvKorvoV12_9_0_320::FM
