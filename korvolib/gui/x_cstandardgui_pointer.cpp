// Pointers over a window: the mouse, its wheel, and fingers.

#include <korvolib/gui/x_cstandardgui_gesture_internal.h>

#include <cmath>

namespace kvKorvoV12_9_0_320 {

using PluginViewManager::KEEventType;

namespace {

constexpr double kRowsPerNotch = 3.0; // of a menu that scrolls

} // namespace

// ---- What the mouse and a finger share
// ---------------------------------------------------------------------------

// `gesture` is free.
bool CStandardGUI_X::Press(sGESTURE& gesture, const KCEventData& event, bool isTouch) {
    KCGUIControl* const control = FindControlAt(event.position);
    CloseMenu();
    LeaveText(control);
    SelectByPress(control, event);
    if (control == nullptr || !CanTakeInput(*control) || FindCapture(*control) != nullptr)
        return false;
    if (event.IsModifierDown(KEModifier::Secondary) && control->ShouldIgnoreMouseRightClick())
        return false;
    if (m_hover.control == control)
        EndGesture(m_hover);
    gesture.control = control;
    gesture.touchID = event.touchID;
    gesture.press = gesture.last = event.position;
    KCEventData press = event;
    press.dragStart = event.position;
    bool isHandled = false;
    Send(gesture, [&](KCGUIControl& pressed, Rect& redraw) {
        return isTouch ? pressed.TouchDown(press, redraw, isHandled) : pressed.MouseDown(press, redraw, isHandled);
    });
    if (isHandled && event.IsModifierDown(KEModifier::Secondary) &&
        control->GetControlPopupMenuHandler() != nullptr)
        OpenMenu(*control);
    const bool isTaken = isHandled || gesture.hasMoved;
    if (!isHandled)
        EndGesture(gesture);
    return isTaken;
}

bool CStandardGUI_X::Drag(sGESTURE& gesture, const KCEventData& event, bool isTouch) {
    if (!CanTakeInput(*gesture.control)) {
        EndGesture(gesture);
        return false;
    }
    const double deltaX = event.position.x - gesture.last.x;
    const double deltaY = gesture.last.y - event.position.y; // the screen's y grows downwards, ours upwards
    if (!std::isfinite(deltaX) || !std::isfinite(deltaY))
        return false;
    gesture.last = event.position;
    KCEventData drag = event;
    drag.dragStart = gesture.press;
    Send(gesture, [&](KCGUIControl& control, Rect& redraw) {
        return isTouch ? control.TouchDrag(drag, deltaX, deltaY, redraw)
                       : control.MouseDrag(drag, deltaX, deltaY, redraw);
    });
    if (gesture.control->IsDragDropping())
        Carry(gesture, drag);
    return true;
}

bool CStandardGUI_X::Lift(sGESTURE& gesture, const KCEventData& event, bool isTouch) {
    if (!CanTakeInput(*gesture.control)) {
        EndGesture(gesture);
        return false;
    }
    KCEventData up = event;
    up.dragStart = gesture.press;
    if (gesture.isCarrying)
        Drop(gesture, up);
    Send(gesture, [&](KCGUIControl& control, Rect& redraw) {
        return isTouch ? control.TouchUp(up, redraw) : control.MouseUp(up, redraw);
    });
    EndGesture(gesture);
    return true;
}

// A press selects what it meets; a control that cannot be selected leaves the selection as it is.
void CStandardGUI_X::SelectByPress(KCGUIControl* control, const KCEventData& event) {
    if (control == nullptr || (CanTakeInput(*control) && control->GetSelectableFlag(kSelectable_CanBeSelected)))
        AdjustSelectionToClick(control, event.modifiers);
}

// ---- Drag and drop
// -----------------------------------------------------------------------------------------------

void CStandardGUI_X::Carry(sGESTURE& gesture, const KCEventData& event) {
    gesture.isCarrying = true;
    AskForAll(); // the carried picture moves over everything
    KCGUIControl* target = FindControlAt(event.position);
    if (target == gesture.control || target == nullptr || !CanTakeInput(*target) ||
        !target->DragDropMove(event, gesture.control->GetCarriedState()))
        target = nullptr;
    SetDropTarget(gesture, target);
}

void CStandardGUI_X::SetDropTarget(sGESTURE& gesture, KCGUIControl* target) {
    if (gesture.dropTarget == target)
        return;
    if (gesture.dropTarget != nullptr)
        gesture.dropTarget->SetControlHighlightInfo(false);
    gesture.dropTarget = target;
    if (target != nullptr)
        target->SetControlHighlightInfo(true);
}

void CStandardGUI_X::Drop(sGESTURE& gesture, const KCEventData& event) {
    KCGUIControl* const target = gesture.dropTarget;
    SetDropTarget(gesture, nullptr);
    if (target == nullptr || !CanTakeInput(*target))
        return;
    const double carried = gesture.control->GetCarriedState();
    try {
        SendWhole(*target, [&](KCGUIControl& control, Rect& redraw) {
            return control.DragDropStop(event, carried, redraw);
        });
    } catch (...) {
        AbandonGesture(gesture);
        throw;
    }
}

// ---- Mouse
// -------------------------------------------------------------------------------------------------------

bool CStandardGUI_X::MouseDown(const KCEventData& event) {
    const sEVENT scope(*this);
    if (!scope || !event.IsFinite())
        return false;
    EndGesture(m_mouse);
    if (FindDrawnMenu()) {
        PressMenu(event.position);
        return true;
    }
    return Press(m_mouse, event, false);
}

bool CStandardGUI_X::MouseDrag(const KCEventData& event) {
    const sEVENT scope(*this);
    return scope && event.IsFinite() && m_mouse.control != nullptr && Drag(m_mouse, event, false);
}

bool CStandardGUI_X::MouseUp(const KCEventData& event) {
    const sEVENT scope(*this);
    if (!scope || m_mouse.control == nullptr)
        return false;
    if (event.type == KEEventType::MouseCancel || !event.IsFinite()) {
        EndGesture(m_mouse);
        return false;
    }
    return Lift(m_mouse, event, false);
}

void CStandardGUI_X::MouseLost() {
    const sEVENT scope(*this);
    if (scope)
        EndGesture(m_mouse);
}

bool CStandardGUI_X::MouseWheel(const KCEventData& event, double deltaX, double deltaY) {
    const sEVENT scope(*this);
    if (!scope || !event.IsFinite() || !std::isfinite(deltaX) || !std::isfinite(deltaY))
        return false;
    if (FindDrawnMenu()) {
        MarkMenu(m_menu.Scroll(-kRowsPerNotch * deltaY));
        return true;
    }
    KCGUIControl* const control = m_mouse.control != nullptr ? m_mouse.control : FindControlAt(event.position);
    if (control == nullptr || !CanTakeInput(*control))
        return false;
    return SendWhole(*control, [&](KCGUIControl& turned, Rect& redraw) {
        return turned.MouseWheel(event, deltaX, deltaY, redraw);
    });
}

// ---- Fingers
// -----------------------------------------------------------------------------------------------------

bool CStandardGUI_X::TouchDown(const KCEventData& event) {
    const sEVENT scope(*this);
    if (!scope || !event.IsFinite())
        return false;
    if (sGESTURE* const before = FindTouch(event.touchID); before != nullptr)
        EndGesture(*before);
    if (FindDrawnMenu()) {
        PressMenu(event.position);
        return true;
    }
    for (sGESTURE& touch : m_touches)
        if (touch.control == nullptr)
            return Press(touch, event, true);
    return false;
}

bool CStandardGUI_X::TouchDrag(const KCEventData& event) {
    const sEVENT scope(*this);
    sGESTURE* const touch = scope && event.IsFinite() ? FindTouch(event.touchID) : nullptr;
    return touch != nullptr && Drag(*touch, event, true);
}

bool CStandardGUI_X::TouchLongDown(const KCEventData& event) {
    const sEVENT scope(*this);
    sGESTURE* const touch = scope && event.IsFinite() ? FindTouch(event.touchID) : nullptr;
    if (touch == nullptr || !CanTakeInput(*touch->control))
        return false;
    Send(*touch, [&](KCGUIControl& control, Rect& redraw) { return control.TouchLongDown(event, redraw); });
    return true;
}

bool CStandardGUI_X::TouchPinch(const KCEventData& event) {
    const sEVENT scope(*this);
    if (!scope || !event.IsFinite())
        return false;
    sGESTURE* const touch = FindTouch(event.touchID);
    KCGUIControl* const control = touch != nullptr ? touch->control : FindControlAt(event.position);
    return control != nullptr && CanTakeInput(*control) &&
           SendWhole(*control,
                     [&](KCGUIControl& pinched, Rect& redraw) { return pinched.TouchPinchGesture(event, redraw); });
}

bool CStandardGUI_X::TouchUp(const KCEventData& event) {
    const sEVENT scope(*this);
    sGESTURE* const touch = scope ? FindTouch(event.touchID) : nullptr;
    if (touch == nullptr)
        return false;
    if (event.type == KEEventType::TouchCancel || !event.IsFinite()) {
        EndGesture(*touch);
        return false;
    }
    return Lift(*touch, event, true);
}

} // namespace kvKorvoV12_9_0_320
