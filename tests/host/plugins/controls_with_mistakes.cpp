// A control of a parameter that there is not.
#include "window_plugin.h"

namespace {

constexpr const char* kGui = R"(<GUI>
  <Control_List>
    <cCONTROLLER Name="Gain"><ParameterList><Parameter Name="Gain"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Pan"><ParameterList><Parameter Name="Pna"/></ParameterList></cCONTROLLER>
  </Control_List>
</GUI>
)";

class KCPlugin : public kvTest::KCWindowPlugin {
  public:
    KCPlugin() : KCWindowPlugin(kGui) {}
};

} // namespace

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    return kvKorvo::PluginEntry<KCPlugin>("Controls with mistakes", "Korvo tests");
}
