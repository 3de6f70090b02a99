// KCXYPad: two parameters under one hand: the role "X" moves to the right, "Y" upwards. A field with a grid, a
// cross hair and a dot; the values stand in the corner that is farthest from it.
//
// A parameter without registrations of its own answers to drags along its axis and to a double click (reset); Y
// also to the wheel. The arrow keys move along their axes. A registration for "Place" makes a press put the dot
// under the pointer.
#pragma once

#include <korvolib/gui/gui_control.h>

namespace kvKorvoV12_9_0_320 {

class KCShapes;

class KORVO_API KCXYPad : public KCGUIControl {
  public:
    KCXYPad() {
        m_direction = KEControlDirection::Both;
        SetSelectableFlag(kSelectable_CanBeSelected, true); // its arrow keys are no registration's
    }

    std::unique_ptr<KCBaseControl> Clone() const override;
    std::span<const ERegisterType> GetDefaultGestures() const override;
    int32_t ReadFromXMLParameterList_Registration(const KCXMLElement& element, cALGORITHM& algorithm,
                                                  Problems& problems) override;
    Rect GetMovementRect() const override; // where the middle of the dot travels
    BUFFER_HEADER* KeySelf(const KCEventData& event, bool& isHandled) override;
    void GetDrawInstructionsControlBackground(Writer& writer) const override;
    void GetDrawInstructionsParamsData(Writer& writer) const override;

  private:
    KUPoint<double> GetDot() const;
    void DrawValues(KCShapes& shapes) const;
    size_t FindRole(const char* role) const noexcept; // the first registration of it, or kNoParam
};

} // namespace kvKorvoV12_9_0_320
