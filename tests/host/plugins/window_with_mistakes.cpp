// A window of which only the knob can be made.
#include "window_plugin.h"

namespace {

constexpr const char* kWindow = R"(<GUI Width="100" Height="100">
  <Controls>
    <Control Class="Knob" Name="Gain" Rect="10 10 60 80">
      <ParameterList><Parameter Name="Gain"/></ParameterList>
    </Control>
    <Control Class="Knbo" Name="Pan" Rect="70 10 20 20">
      <ParameterList><Parameter Name="Pan"/></ParameterList>
    </Control>
    <Control Class="Knob" Name="Mode" Rect="70 40 20 20">
      <ParameterList><Parameter Name="Moed"/></ParameterList>
    </Control>
  </Controls>
</GUI>
)";

class KCPlugin : public kvTest::KCWindowPlugin {
  public:
    KCPlugin() : KCWindowPlugin(kWindow) {}
};

} // namespace

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() {
    return kvKorvo::PluginEntry<KCPlugin>("Window with mistakes", "Korvo tests");
}
