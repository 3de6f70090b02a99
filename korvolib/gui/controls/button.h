// KCButton: a button for one parameter, lit while the parameter is on. What it is follows from its registrations:
//
//   toggle     NextOnPress, which is what it does without registrations of its own
//   radio      SetOnPress with a fixed state: lit while the parameter stands in it; the buttons of one choice share
//              a parameter
//   momentary  SetOnPress with a fixed state, and another record with SetOnRelease: lit while it is held
//
// Its caption stands on it.
#pragma once

#include <korvolib/gui/controls/captioned_control.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCButton : public KCCaptionedControl {
  public:
    std::unique_ptr<KCBaseControl> Clone() const override;
    std::span<const ERegisterType> GetDefaultGestures() const override;
    void GetDrawInstructionsControlBackground(Writer& writer) const override;

    bool IsLit() const;
};

} // namespace kvKorvoV12_9_0_320
