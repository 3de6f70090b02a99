// KCLabel: a text: its caption, or, for a parameter in the role "Value", that parameter's value and units. It takes
// no input.
#pragma once

#include <korvolib/gui/controls/captioned_control.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCLabel : public KCCaptionedControl {
  public:
    std::unique_ptr<KCBaseControl> Clone() const override;
    std::span<const ERegisterType> GetDefaultGestures() const override;
    void GetDrawInstructionsControlBackground(Writer& writer) const override;
};

} // namespace kvKorvoV12_9_0_320
