// KCFader: a fader for one parameter, upright or lying: a track with the part up to the value lit, and a cap. An
// upright one has its label above and its value below, a lying one both above the track.
//
// Without registrations of its own it answers to drags along its direction, the wheel, keys, a double click (reset)
// and a typed text. A registration for "Place" makes a press on the track move the cap there.
#pragma once

#include <korvolib/gui/controls/captioned_control.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCFader : public KCCaptionedControl {
  public:
    std::unique_ptr<KCBaseControl> Clone() const override;
    std::span<const ERegisterType> GetDefaultGestures() const override;
    Rect GetMovementRect() const override; // where the middle of the cap travels
    void GetDrawInstructionsControlBackground(Writer& writer) const override;

  private:
    bool IsLying() const noexcept { return GetDirection() == KEControlDirection::Horizontal; }
};

} // namespace kvKorvoV12_9_0_320
