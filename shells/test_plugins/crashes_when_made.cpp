#include <shells/test_plugins/gain_plugin.h>

#include <cstdlib>

class KCCrashingPlugin : public kvTest::KCGainPlugin {
  public:
    KCCrashingPlugin() { std::abort(); }
};

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    return kvKorvo::PluginEntry<KCCrashingPlugin>("Crashes", "Korvo tests");
}
