// KCValueText: the value of one parameter as a text that can be typed over. A click or Enter begins; what is typed
// first replaces the old text. Backspace takes the last character away, Enter commits, Escape restores, and so does
// losing the text focus. Committing an untouched text changes nothing. A text that the parameter refuses changes
// nothing either, and stands there in the theme's warning colour until the next event.
//
// Only characters of the description's "AcceptableCharacters" are taken, where it names any. The wheel and the
// arrow keys move the value.
#pragma once

#include <korvolib/gui/gui_control.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCValueText : public KCGUIControl {
  public:
    std::unique_ptr<KCBaseControl> Clone() const override;
    std::span<const ERegisterType> GetDefaultGestures() const override;
    Rect GetValueRectSelf(size_t registration) const override;
    KECursor ChangeCursor(const KCEventData& event) const override;
    BUFFER_HEADER* MouseDownSelf(const KCEventData& event, Rect& redraw, bool& isHandled) override;
    BUFFER_HEADER* MouseUpSelf(const KCEventData& event, Rect& redraw) override;
    BUFFER_HEADER* MouseOverSelf(const KCEventData& event, Rect& redraw) override;
    BUFFER_HEADER* MouseWheelSelf(const KCEventData& event, double deltaX, double deltaY, Rect& redraw) override;
    BUFFER_HEADER* TouchUpSelf(const KCEventData& event, Rect& redraw) override;
    BUFFER_HEADER* KeySelf(const KCEventData& event, bool& isHandled) override;
    void GetDrawInstructionsControlBackground(Writer& writer) const override;

    /// Between a click and Enter or Escape, while it has the window's text focus.
    bool IsEditing() const noexcept;
    bool IsRefused() const noexcept { return m_isRefused; }
    /// What has been typed, or was refused.
    const KCFixedString<127>& GetTypedText() const noexcept { return m_typed; }

  private:
    void BeginEditing();
    void EndEditing() noexcept;
    void ForgetRefusal() noexcept;
    void TakeCharacter(uint32_t codePoint);
    void TakeBackspace();
    BUFFER_HEADER* Commit();

    KCFixedString<127> m_typed;
    bool m_isEditing = false;
    bool m_isUntouched = true;
    bool m_isRefused = false;
};

} // namespace kvKorvoV12_9_0_320
