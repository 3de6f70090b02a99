// The parameters of the strip as a description, in the order of KEParam. They touch every kind of scale the library
// has: straight and logarithmic, with coarse steps (gate hold and release), frequency, break points that run upward
// and downward, switches, lists of values, and a fader with a taper of its own. The trims keep their balance under
// a user's hand; bell gains and thresholds can be linked too, each by another law.

#include <plugins/channel_strip/channel_strip_params.h>

namespace kvStrip {

const char* ParamsXML() noexcept {
    return R"xml(<Params>
  <Param Name="Bypass">
    <Label>Bypass</Label>
    <NumStates>2</NumStates>
    <ScaleType Type="toggle"/>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Input Gain">
    <Label>Input</Label>
    <Units>dB</Units>
    <Minimum>-24</Minimum>
    <Maximum>24</Maximum>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linear"/>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Low Cut">
    <Label>Low Cut</Label>
    <NumStates>2</NumStates>
    <ScaleType Type="toggle"/>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Low Cut Frequency">
    <Label>Low Cut</Label>
    <Units>Hz</Units>
    <Resolution>1</Resolution>
    <ScaleType Type="frequency"/>
    <Default Type="RealWorld">80</Default>
  </Param>
  <Param Name="Low Cut Slope">
    <Label>Slope</Label>
    <Units>dB/oct</Units>
    <ScaleType Type="toggleRanges">
      <RealWorld>6</RealWorld>
      <RealWorld>12</RealWorld>
      <RealWorld>18</RealWorld>
      <RealWorld>24</RealWorld>
    </ScaleType>
    <Default Type="RealWorld">12</Default>
  </Param>
  <Param Name="Gate Threshold">
    <Label>Gate</Label>
    <Units>dB</Units>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linearRanges">
      <State>0</State><RealWorld>-80</RealWorld>
      <State>250</State><RealWorld>-60</RealWorld>
      <State>750</State><RealWorld>-20</RealWorld>
      <State>1000</State><RealWorld>0</RealWorld>
    </ScaleType>
    <Default Type="RealWorld">-80</Default>
  </Param>
  <Param Name="Gate Range">
    <Label>Range</Label>
    <Units>dB</Units>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linearRanges">
      <State>0</State><RealWorld>0</RealWorld>
      <State>500</State><RealWorld>-20</RealWorld>
      <State>1000</State><RealWorld>-80</RealWorld>
    </ScaleType>
    <Default Type="RealWorld">-20</Default>
  </Param>
  <Param Name="Gate Hold">
    <Label>Hold</Label>
    <Units>ms</Units>
    <Minimum>20</Minimum>
    <Maximum>500</Maximum>
    <Resolution>20</Resolution>
    <ScaleType Type="linear"/>
    <Default Type="RealWorld">100</Default>
  </Param>
  <Param Name="Gate Release">
    <Label>Release</Label>
    <Units>ms</Units>
    <Minimum>10</Minimum>
    <Maximum>2000</Maximum>
    <Resolution>5</Resolution>
    <ScaleType Type="logarithmic"/>
    <Default Type="RealWorldExact">100</Default>
  </Param>
  <Param Name="Bell 1 Frequency">
    <Label>Bell 1</Label>
    <Units>Hz</Units>
    <Minimum>20</Minimum>
    <Maximum>20000</Maximum>
    <Resolution>1</Resolution>
    <ScaleType Type="logarithmic"/>
    <Default Type="RealWorldExact">250</Default>
  </Param>
  <Param Name="Bell 1 Gain">
    <Label>Gain</Label>
    <Units>dB</Units>
    <Minimum>-18</Minimum>
    <Maximum>18</Maximum>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linear"/>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Bell 1 Q">
    <Label>Q</Label>
    <Minimum>0.1</Minimum>
    <Maximum>20</Maximum>
    <Resolution>0.01</Resolution>
    <ScaleType Type="logarithmic"/>
    <Default Type="RealWorldExact">1</Default>
  </Param>
  <Param Name="Bell 2 Frequency">
    <Label>Bell 2</Label>
    <Units>Hz</Units>
    <Minimum>20</Minimum>
    <Maximum>20000</Maximum>
    <Resolution>1</Resolution>
    <ScaleType Type="logarithmic"/>
    <Default Type="RealWorldExact">3000</Default>
  </Param>
  <Param Name="Bell 2 Gain">
    <Label>Gain</Label>
    <Units>dB</Units>
    <Minimum>-18</Minimum>
    <Maximum>18</Maximum>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linear"/>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Bell 2 Q">
    <Label>Q</Label>
    <Minimum>0.1</Minimum>
    <Maximum>20</Maximum>
    <Resolution>0.01</Resolution>
    <ScaleType Type="logarithmic"/>
    <Default Type="RealWorldExact">1</Default>
  </Param>
  <Param Name="Compressor Threshold">
    <Label>Threshold</Label>
    <Units>dB</Units>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linearRanges">
      <State>0</State><RealWorld>-60</RealWorld>
      <State>200</State><RealWorld>-40</RealWorld>
      <State>600</State><RealWorld>-20</RealWorld>
      <State>1000</State><RealWorld>0</RealWorld>
    </ScaleType>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Compressor Ratio">
    <Label>Ratio</Label>
    <Units>:1</Units>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linearRanges">
      <State>0</State><RealWorld>1</RealWorld>
      <State>400</State><RealWorld>2</RealWorld>
      <State>700</State><RealWorld>4</RealWorld>
      <State>900</State><RealWorld>10</RealWorld>
      <State>1000</State><RealWorld>20</RealWorld>
    </ScaleType>
    <Default Type="RealWorld">4</Default>
  </Param>
  <Param Name="Compressor Knee">
    <Label>Knee</Label>
    <Units>dB</Units>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linearRangesWithRounding">
      <State>0</State><RealWorld>0</RealWorld>
      <State>500</State><RealWorld>6</RealWorld>
      <State>1000</State><RealWorld>24</RealWorld>
    </ScaleType>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Compressor Attack">
    <Label>Attack</Label>
    <Units>ms</Units>
    <Minimum>0.1</Minimum>
    <Maximum>200</Maximum>
    <Resolution>0.01</Resolution>
    <ScaleType Type="logarithmic"/>
    <Default Type="RealWorldExact">10</Default>
  </Param>
  <Param Name="Compressor Release">
    <Label>Release</Label>
    <Units>ms</Units>
    <Minimum>10</Minimum>
    <Maximum>2000</Maximum>
    <Resolution>1</Resolution>
    <ScaleType Type="logarithmic"/>
    <Default Type="RealWorldExact">150</Default>
  </Param>
  <Param Name="Compressor Detector">
    <Label>Detector</Label>
    <Units>ms</Units>
    <ScaleType Type="toggleMap">
      <State>0</State><RealWorld>0</RealWorld>
      <State>1</State><RealWorld>10</RealWorld>
      <State>2</State><RealWorld>50</RealWorld>
    </ScaleType>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Makeup Gain">
    <Label>Makeup</Label>
    <Units>dB</Units>
    <Minimum>0</Minimum>
    <Maximum>24</Maximum>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linear"/>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Rotation">
    <Label>Rotation</Label>
    <Units>°</Units>
    <Flags>ContinuousWraps</Flags>
    <Minimum>-180</Minimum>
    <Maximum>180</Maximum>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linear"/>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Left Trim">
    <Label>Left</Label>
    <Units>dB</Units>
    <Minimum>-12</Minimum>
    <Maximum>12</Maximum>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linear"/>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Right Trim">
    <Label>Right</Label>
    <Units>dB</Units>
    <Minimum>-12</Minimum>
    <Maximum>12</Maximum>
    <Resolution>0.1</Resolution>
    <ScaleType Type="linear"/>
    <Default Type="RealWorld">0</Default>
  </Param>
  <Param Name="Output Gain">
    <Label>Output</Label>
    <Units>dB</Units>
    <Minimum>-120</Minimum>
    <Maximum>6</Maximum>
    <Resolution>0.1</Resolution>
    <ScaleType Type="fader"/>
    <Default Type="RealWorld">0</Default>
  </Param>
  <LinkGroups>
    <LinkGroup Number="1" Law="Relative">
      <Member Name="Left Trim"/>
      <Member Name="Right Trim"/>
    </LinkGroup>
    <LinkGroup Number="2" Law="Reverse" Enabled="false">
      <Member Name="Bell 1 Gain"/>
      <Member Name="Bell 2 Gain"/>
    </LinkGroup>
    <LinkGroup Number="3" Law="Absolute" Enabled="false">
      <Member Name="Gate Threshold"/>
      <Member Name="Compressor Threshold"/>
    </LinkGroup>
  </LinkGroups>
</Params>
)xml";
}

} // namespace kvStrip
