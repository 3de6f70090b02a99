// KCLevelPlot: shows and takes no input. A parameter with a graph window is shown as its graph over a grid; any
// other as a bar of its value, upright or lying, as a meter is, with ten marks along it.
#pragma once

#include <korvolib/gui/controls/captioned_control.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCLevelPlot : public KCCaptionedControl {
  public:
    std::unique_ptr<KCBaseControl> Clone() const override;
    std::span<const ERegisterType> GetDefaultGestures() const override;
    void GetDrawInstructionsControlBackground(Writer& writer) const override;
};

} // namespace kvKorvoV12_9_0_320
