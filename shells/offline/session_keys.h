// Keys as a session writes them: by name, or as the character that they stand for.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// The code of PluginViewManager::KEKeyCode or the code point; 0 for what is no key.
uint32_t KeyOfName(std::string_view name);

/// "Up, Down, … or Space".
std::string KeyNames();

} // namespace kvKorvoV12_9_0_320::kvHost
