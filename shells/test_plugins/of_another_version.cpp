#include <shells/plugin.h>

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    static const kvKorvo::sPLUGIN_ENTRY entry = {kvKorvo::kPluginEntryVersion + 1,
                                                 sizeof(kvKorvo::sPLUGIN_ENTRY),
                                                 "Of tomorrow",
                                                 "Korvo tests",
                                                 nullptr,
                                                 nullptr};
    return &entry;
}
