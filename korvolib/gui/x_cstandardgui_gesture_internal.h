// How the events of a window reach its controls.
#pragma once

#include <korvolib/gui/x_cstandardgui_internal.h>

namespace kvKorvoV12_9_0_320 {

/// Hands an event to the gesture's control: handler(control, redraw) returns the chain. An exception of a hook ends
/// the gesture and passes.
template <class Handler>
void CStandardGUI_X::Send(sGESTURE& gesture, Handler handler) {
    KCGUIControl& control = *gesture.control;
    if (!gesture.hasMoved)
        RememberStates(control);
    const auto noteMovement = [&] { gesture.hasMoved = gesture.hasMoved || HaveStatesChanged(control); };
    try {
        Rect redraw;
        Execute(gesture, handler(control, redraw));
        if (!redraw.IsEmpty())
            control.SetNeedToRedrawControlOnly();
    } catch (...) {
        noteMovement();
        AbandonGesture(gesture);
        throw;
    }
    noteMovement();
}

/// The same as a gesture by itself, or as a part of the gesture that holds the control. True when it moved a
/// parameter.
template <class Handler>
bool CStandardGUI_X::SendWhole(KCGUIControl& control, Handler handler) {
    if (sGESTURE* const capture = FindCapture(control); capture != nullptr) {
        Send(*capture, handler);
        return capture->hasMoved;
    }
    if (m_hover.control == &control)
        EndGesture(m_hover);
    sGESTURE whole;
    whole.control = &control;
    Send(whole, handler);
    const bool hasMoved = whole.hasMoved;
    EndGesture(whole);
    return hasMoved;
}

/// A disabled control takes no input, a hidden one is not there.
inline bool CanTakeInput(const KCGUIControl& control) { return control.IsVisible() && !control.IsDisabled(); }

} // namespace kvKorvoV12_9_0_320
