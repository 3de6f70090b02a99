// A description of something that is no window.
#include "window_plugin.h"

namespace {

class KCPlugin : public kvTest::KCWindowPlugin {
  public:
    KCPlugin() : KCWindowPlugin("<Window Width=\"100\" Height=\"100\"/>") {}
};

} // namespace

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    return kvKorvo::PluginEntry<KCPlugin>("Window of another name", "Korvo tests");
}
