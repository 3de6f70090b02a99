#include <shells/test_plugins/gain_plugin.h>

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    return kvKorvo::PluginEntry<kvTest::KCGainPlugin>("Gain", "Korvo tests");
}
