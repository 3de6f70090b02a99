#include <shells/plugin.h>

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    static const kvKorvo::sPLUGIN_ENTRY entry = {kvKorvo::kPluginEntryVersion,
                                                 sizeof(kvKorvo::sPLUGIN_ENTRY),
                                                 "None",
                                                 "Korvo tests",
                                                 []() noexcept -> kvKorvo::KCPlugin* { return nullptr; },
                                                 [](kvKorvo::KCPlugin*) noexcept {}};
    return &entry;
}
