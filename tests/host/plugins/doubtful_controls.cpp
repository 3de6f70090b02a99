// Controls that can be used, and are not what was meant.
#include "window_plugin.h"

namespace {

constexpr const char* kGui = R"(<GUI>
  <Control_List>
    <cCONTROLLER Name="Gain"><ParameterList><Parameter Name="Gain"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Gain"><ParameterList><Parameter Name="Pan"/></ParameterList></cCONTROLLER>
  </Control_List>
</GUI>
)";

class KCPlugin : public kvTest::KCWindowPlugin {
  public:
    KCPlugin() : KCWindowPlugin(kGui) {}
};

} // namespace

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    return kvKorvo::PluginEntry<KCPlugin>("Doubtful controls", "Korvo tests");
}
