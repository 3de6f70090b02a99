// A window's description that is no XML.
#include "window_plugin.h"

namespace {

class KCPlugin : public kvTest::KCWindowPlugin {
  public:
    KCPlugin() : KCWindowPlugin("<GUI Width=\"100\" Height=\"100\">\n  <Controls>\n") {}
};

} // namespace

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    return kvKorvo::PluginEntry<KCPlugin>("Window that breaks off", "Korvo tests");
}
