// The strip's window as a description: a section for each stage of the signal path, from the input at the left to
// the output at the right, on a grid of 8 pixels.

#include <plugins/channel_strip/channel_strip_window.h>

namespace kvStrip {

const char* WindowXML() noexcept {
    return R"xml(<GUI Width="976" Height="560">
  <Drawables>
    <Drawable Rect="16 12 320 32" Text="Channel Strip" TextHeight="20" TextAlign="Left" Bold="true"/>
    <Drawable Rect="16 56 96 224" Color="#22252C" FrameColor="#343842" Radius="6"/>
    <Drawable Rect="24 60 80 20" Text="Input" TextHeight="12" TextAlign="Left" TextColor="#A8B0C0" Bold="true"/>
    <Drawable Rect="120 56 168 224" Color="#22252C" FrameColor="#343842" Radius="6"/>
    <Drawable Rect="128 60 96 20" Text="Low Cut" TextHeight="12" TextAlign="Left" TextColor="#A8B0C0" Bold="true"/>
    <Drawable Rect="296 56 184 224" Color="#22252C" FrameColor="#343842" Radius="6"/>
    <Drawable Rect="304 60 96 20" Text="Gate" TextHeight="12" TextAlign="Left" TextColor="#A8B0C0" Bold="true"/>
    <Drawable Rect="488 56 360 224" Color="#22252C" FrameColor="#343842" Radius="6"/>
    <Drawable Rect="496 60 96 20" Text="Compressor" TextHeight="12" TextAlign="Left" TextColor="#A8B0C0" Bold="true"/>
    <Drawable Rect="16 288 320 256" Color="#22252C" FrameColor="#343842" Radius="6"/>
    <Drawable Rect="24 292 96 20" Text="Bell 1" TextHeight="12" TextAlign="Left" TextColor="#A8B0C0" Bold="true"/>
    <Drawable Rect="344 288 320 256" Color="#22252C" FrameColor="#343842" Radius="6"/>
    <Drawable Rect="352 292 96 20" Text="Bell 2" TextHeight="12" TextAlign="Left" TextColor="#A8B0C0" Bold="true"/>
    <Drawable Rect="672 288 176 256" Color="#22252C" FrameColor="#343842" Radius="6"/>
    <Drawable Rect="680 292 96 20" Text="Stereo" TextHeight="12" TextAlign="Left" TextColor="#A8B0C0" Bold="true"/>
    <Drawable Rect="856 56 104 488" Color="#22252C" FrameColor="#343842" Radius="6"/>
    <Drawable Rect="864 60 88 20" Text="Output" TextHeight="12" TextAlign="Left" TextColor="#A8B0C0" Bold="true"/>
  </Drawables>
  <Controls>
    <Control Class="Button" Name="Bypass" Rect="856 16 104 24">
      <ParameterList>
        <Parameter Name="Bypass"/>
      </ParameterList>
    </Control>
    <Control Class="Fader" Name="Input Gain" Text="Gain" Rect="24 84 80 188">
      <ParameterList>
        <Parameter Name="Input Gain"/>
      </ParameterList>
    </Control>
    <Control Class="Button" Name="Low Cut" Text="On" Rect="232 64 48 20">
      <ParameterList>
        <Parameter Name="Low Cut"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Low Cut Frequency" Text="Frequency" Rect="156 92 96 116">
      <ParameterList>
        <Parameter Name="Low Cut Frequency"/>
      </ParameterList>
    </Control>
    <Control Class="Menu" Name="Low Cut Slope" Rect="136 220 136 44">
      <ParameterList>
        <Parameter Name="Low Cut Slope"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Gate Threshold" Text="Threshold" Rect="304 84 80 92">
      <ParameterList>
        <Parameter Name="Gate Threshold"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Gate Range" Text="Range" Rect="392 84 80 92">
      <ParameterList>
        <Parameter Name="Gate Range"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Gate Hold" Text="Hold" Rect="304 180 80 92">
      <ParameterList>
        <Parameter Name="Gate Hold"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Gate Release" Text="Release" Rect="392 180 80 92">
      <ParameterList>
        <Parameter Name="Gate Release"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Compressor Threshold" Rect="496 84 80 92">
      <ParameterList>
        <Parameter Name="Compressor Threshold"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Compressor Ratio" Rect="584 84 80 92">
      <ParameterList>
        <Parameter Name="Compressor Ratio"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Compressor Knee" Rect="672 84 80 92">
      <ParameterList>
        <Parameter Name="Compressor Knee"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Makeup Gain" Rect="760 84 80 92">
      <ParameterList>
        <Parameter Name="Makeup Gain"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Compressor Attack" Rect="496 180 80 92">
      <ParameterList>
        <Parameter Name="Compressor Attack"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Compressor Release" Rect="584 180 80 92">
      <ParameterList>
        <Parameter Name="Compressor Release"/>
      </ParameterList>
    </Control>
    <Control Class="Label" Name="Detector Label" Text="Detector" Rect="680 180 152 20"/>
    <Control Class="Button" Name="Detector Peak" Text="Peak" Rect="680 200 152 20" Group="1">
      <ParameterList>
        <Parameter Name="Compressor Detector" FixedState="0"><Register Type="SetOnPress"/></Parameter>
      </ParameterList>
    </Control>
    <Control Class="Button" Name="Detector RMS 10 ms" Text="RMS 10 ms" Rect="680 224 152 20" Group="1">
      <ParameterList>
        <Parameter Name="Compressor Detector" FixedState="1"><Register Type="SetOnPress"/></Parameter>
      </ParameterList>
    </Control>
    <Control Class="Button" Name="Detector RMS 50 ms" Text="RMS 50 ms" Rect="680 248 152 20" Group="1">
      <ParameterList>
        <Parameter Name="Compressor Detector" FixedState="2"><Register Type="SetOnPress"/></Parameter>
      </ParameterList>
    </Control>
    <Control Class="XYPad" Name="Bell 1" Rect="24 320 216 216">
      <ParameterList>
        <Parameter Name="Bell 1 Frequency" Role="X">
          <ParamDependantGraphWin Rect="8 8 200 200" MinX="0" MaxX="1" MinY="-18" MaxY="18" Color="#66B2FF" StrokeWidth="2"/>
        </Parameter>
        <Parameter Name="Bell 1 Gain" Role="Y"/>
        <Parameter Name="Bell 1 Q">
          <Register Type="Display"/>
        </Parameter>
      </ParameterList>
    </Control>
    <Control Class="Label" Name="Bell 1 Frequency Label" Text="Frequency" Rect="248 320 80 16"/>
    <Control Class="ValueText" Name="Bell 1 Frequency" Rect="248 336 80 24">
      <ParameterList>
        <Parameter Name="Bell 1 Frequency"/>
      </ParameterList>
    </Control>
    <Control Class="Label" Name="Bell 1 Gain Label" Text="Gain" Rect="248 368 80 16"/>
    <Control Class="ValueText" Name="Bell 1 Gain" Rect="248 384 80 24">
      <ParameterList>
        <Parameter Name="Bell 1 Gain"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Bell 1 Q" Rect="248 432 80 104">
      <ParameterList>
        <Parameter Name="Bell 1 Q"/>
      </ParameterList>
    </Control>
    <Control Class="XYPad" Name="Bell 2" Rect="352 320 216 216">
      <ParameterList>
        <Parameter Name="Bell 2 Frequency" Role="X">
          <ParamDependantGraphWin Rect="8 8 200 200" MinX="0" MaxX="1" MinY="-18" MaxY="18" Color="#66B2FF" StrokeWidth="2"/>
        </Parameter>
        <Parameter Name="Bell 2 Gain" Role="Y"/>
        <Parameter Name="Bell 2 Q">
          <Register Type="Display"/>
        </Parameter>
      </ParameterList>
    </Control>
    <Control Class="Label" Name="Bell 2 Frequency Label" Text="Frequency" Rect="576 320 80 16"/>
    <Control Class="ValueText" Name="Bell 2 Frequency" Rect="576 336 80 24">
      <ParameterList>
        <Parameter Name="Bell 2 Frequency"/>
      </ParameterList>
    </Control>
    <Control Class="Label" Name="Bell 2 Gain Label" Text="Gain" Rect="576 368 80 16"/>
    <Control Class="ValueText" Name="Bell 2 Gain" Rect="576 384 80 24">
      <ParameterList>
        <Parameter Name="Bell 2 Gain"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Bell 2 Q" Rect="576 432 80 104">
      <ParameterList>
        <Parameter Name="Bell 2 Q"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Rotation" Rect="712 320 96 112">
      <ParameterList>
        <Parameter Name="Rotation"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Left Trim" Text="Left" Rect="680 440 76 96">
      <ParameterList>
        <Parameter Name="Left Trim"/>
      </ParameterList>
    </Control>
    <Control Class="Knob" Name="Right Trim" Text="Right" Rect="764 440 76 96">
      <ParameterList>
        <Parameter Name="Right Trim"/>
      </ParameterList>
    </Control>
    <Control Class="Fader" Name="Output Gain" Text="Gain" Rect="868 84 80 452">
      <ParameterList>
        <Parameter Name="Output Gain"/>
      </ParameterList>
    </Control>
  </Controls>
</GUI>
)xml";
}

} // namespace kvStrip
