// KCKnob: a turning knob for one parameter: a value arc of 270 degrees, which begins in the middle for parameters
// that go both ways, a pointer, the label above and the value below.
//
// Without registrations of its own it answers to drags, the wheel, keys, two fingers, a double click (reset) and a
// typed text. A horizontal direction turns with sideways drags, both with either.
#pragma once

#include <korvolib/gui/controls/captioned_control.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCKnob : public KCCaptionedControl {
  public:
    std::unique_ptr<KCBaseControl> Clone() const override;
    std::span<const ERegisterType> GetDefaultGestures() const override;
    Rect GetMovementRect() const override; // the square around the dial
    void GetDrawInstructionsControlBackground(Writer& writer) const override;
};

} // namespace kvKorvoV12_9_0_320
