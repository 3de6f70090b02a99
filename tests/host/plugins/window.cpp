// One control of each kind that tests have a use for. The fader has another name than its parameter.
#include "window_plugin.h"

namespace {

constexpr const char* kWindow = R"(<GUI Width="240" Height="120">
  <Drawables>
    <Drawable Rect="0 0 240 20" Color="#303040" Text="WINDOW" TextHeight="12"/>
  </Drawables>
  <Controls>
    <Control Class="Knob" Name="Gain" Rect="10 30 60 80">
      <ParameterList><Parameter Name="Gain"/></ParameterList>
    </Control>
    <Control Class="Fader" Name="Balance" Rect="80 30 40 80">
      <ParameterList><Parameter Name="Pan"/></ParameterList>
    </Control>
    <Control Class="Menu" Name="Mode" Rect="130 30 100 34">
      <ParameterList><Parameter Name="Mode"/></ParameterList>
    </Control>
    <Control Class="ValueText" Name="Gain as text" Rect="130 70 100 20">
      <ParameterList><Parameter Name="Gain"/></ParameterList>
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
    return kvKorvo::PluginEntry<KCPlugin>("Window", "Korvo tests");
}
