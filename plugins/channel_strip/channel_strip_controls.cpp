// The strip's automation controls: one for every parameter in the order of KEParam, so that a host's lane is the
// knob's name, and behind them two that move a pair of parameters by the same distance. A host stores its
// automation by the place in this list: new controls go to the end.
//
// The leads of the two pairs are left to their own controls ("NotByAutomation" beside the lead): a hand at a trim
// is reported as that trim, and not as both.
//
// MIDI, where keyboards have their usual numbers: volume 7, pan 10 (an eighth of a turn either way), the sustain
// pedal 64 for bypass, resonance 71, release 72, attack 73 and brightness 74; the bend wheel bends bell 2, middle C
// switches the low cut.

#include <plugins/channel_strip/channel_strip_controls.h>

namespace kvStrip {

const char* ControlsXML() noexcept {
    return R"xml(  <Control_List>
    <cCONTROLLER Name="Bypass" ID="1"><ParameterList><Parameter Name="Bypass"/></ParameterList>
      <MIDI EventType="4" ControlID="64"/></cCONTROLLER>
    <cCONTROLLER Name="Input Gain" ID="2"><ParameterList><Parameter Name="Input Gain"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Low Cut" ID="3"><ParameterList><Parameter Name="Low Cut"/></ParameterList>
      <MIDI EventType="2" ControlID="60"/></cCONTROLLER>
    <cCONTROLLER Name="Low Cut Frequency" ID="4"><ParameterList><Parameter Name="Low Cut Frequency"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Low Cut Slope" ID="5"><ParameterList><Parameter Name="Low Cut Slope"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Gate Threshold" ID="6"><ParameterList><Parameter Name="Gate Threshold"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Gate Range" ID="7"><ParameterList><Parameter Name="Gate Range"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Gate Hold" ID="8"><ParameterList><Parameter Name="Gate Hold"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Gate Release" ID="9"><ParameterList><Parameter Name="Gate Release"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Bell 1 Frequency" ID="10"><ParameterList><Parameter Name="Bell 1 Frequency"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Bell 1 Gain" ID="11"><ParameterList><Parameter Name="Bell 1 Gain"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Bell 1 Q" ID="12"><ParameterList><Parameter Name="Bell 1 Q"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Bell 2 Frequency" ID="13"><ParameterList><Parameter Name="Bell 2 Frequency"/></ParameterList>
      <MIDI EventType="4" ControlID="74"/></cCONTROLLER>
    <cCONTROLLER Name="Bell 2 Gain" ID="14"><ParameterList><Parameter Name="Bell 2 Gain"/></ParameterList>
      <MIDI EventType="7" ControlID="0"/></cCONTROLLER>
    <cCONTROLLER Name="Bell 2 Q" ID="15"><ParameterList><Parameter Name="Bell 2 Q"/></ParameterList>
      <MIDI EventType="4" ControlID="71"/></cCONTROLLER>
    <cCONTROLLER Name="Compressor Threshold" ID="16"><ParameterList><Parameter Name="Compressor Threshold"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Compressor Ratio" ID="17"><ParameterList><Parameter Name="Compressor Ratio"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Compressor Knee" ID="18"><ParameterList><Parameter Name="Compressor Knee"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Compressor Attack" ID="19"><ParameterList><Parameter Name="Compressor Attack"/></ParameterList>
      <MIDI EventType="4" ControlID="73"/></cCONTROLLER>
    <cCONTROLLER Name="Compressor Release" ID="20"><ParameterList><Parameter Name="Compressor Release"/></ParameterList>
      <MIDI EventType="4" ControlID="72"/></cCONTROLLER>
    <cCONTROLLER Name="Compressor Detector" ID="21"><ParameterList><Parameter Name="Compressor Detector"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Makeup Gain" ID="22"><ParameterList><Parameter Name="Makeup Gain"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Rotation" ID="23"><ParameterList><Parameter Name="Rotation"/></ParameterList>
      <MIDI EventType="4" ControlID="10" Low="375" High="625"/></cCONTROLLER>
    <cCONTROLLER Name="Left Trim" ID="24"><ParameterList><Parameter Name="Left Trim"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Right Trim" ID="25"><ParameterList><Parameter Name="Right Trim"/></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Output Gain" ID="26"><ParameterList><Parameter Name="Output Gain"/></ParameterList>
      <MIDI EventType="4" ControlID="7"/></cCONTROLLER>
    <cCONTROLLER Name="Trims" ID="27"><ParameterList>
      <Parameter Name="Left Trim"><Register Type="NotByAutomation"/></Parameter><Parameter Name="Right Trim"/>
    </ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Bell Gains" ID="28"><ParameterList>
      <Parameter Name="Bell 1 Gain"><Register Type="NotByAutomation"/></Parameter><Parameter Name="Bell 2 Gain"/>
    </ParameterList></cCONTROLLER>
  </Control_List>
)xml";
}

} // namespace kvStrip
