// KCMenu: a choice among the states of one parameter: a field with the value's text between two arrows. A press on
// the left arrow takes the state before, one anywhere else the next; the right button offers all states in a menu
// of the view's (GetControlPopupMenuHandler). The label stands above.
#pragma once

#include <korvolib/gui/controls/captioned_control.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCMenu : public KCCaptionedControl {
  public:
    std::unique_ptr<KCBaseControl> Clone() const override;
    std::span<const ERegisterType> GetDefaultGestures() const override;
    KECursor ChangeCursor(const KCEventData& event) const override;
    BUFFER_HEADER* MouseDownSelf(const KCEventData& event, Rect& redraw, bool& isHandled) override;
    BUFFER_HEADER* TouchDownSelf(const KCEventData& event, Rect& redraw) override;
    Rect GetValueRectSelf(size_t registration) const override; // the field
    void GetDrawInstructionsControlBackground(Writer& writer) const override;

  private:
    BUFFER_HEADER* Step(const KCEventData& event, bool& isHandled);
};

} // namespace kvKorvoV12_9_0_320
