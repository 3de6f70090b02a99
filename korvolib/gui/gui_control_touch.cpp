// Fingers: what a press, drag and release of one finger do is what the mouse does; two fingers pinch.
#include <korvolib/gui/gui_control.h>

#include <cmath>

#include <korvolib/gui/event_chain_internal.h>

namespace kvKorvoV12_9_0_320 {

namespace {

// Fingers at twice the distance move half of the travel.
double StatesOfPinch(double scale) {
    constexpr double kStatesForDoubling = 500.0;
    return scale > 0.0 && std::isfinite(scale) ? kStatesForDoubling * std::log2(scale) : 0.0;
}

} // namespace

KCGUIControl::BUFFER_HEADER* KCGUIControl::TouchDown(const KCEventData& event, Rect& redraw, bool& isHandled) {
    isHandled = false;
    if (!TakesInput(event))
        return nullptr;
    Release();
    KCEventChain chain(m_algorithm);
    chain.Append(BeginPress(event, isHandled));
    chain.Append(TouchDownSelf(event, redraw));
    AddRedraw(redraw);
    return chain.Take();
}

KCGUIControl::BUFFER_HEADER* KCGUIControl::TouchDrag(const KCEventData& event, double deltaX, double deltaY,
                                                     Rect& redraw) {
    if (!m_isInGesture || !TakesInput(event) || !std::isfinite(deltaX) || !std::isfinite(deltaY))
        return nullptr;
    KCEventChain chain(m_algorithm);
    chain.Append(DragBy(event, deltaX, deltaY));
    chain.Append(TouchDragSelf(event, deltaX, deltaY, redraw));
    m_lastTouch = event.position;
    AddRedraw(redraw);
    return chain.Take();
}

KCGUIControl::BUFFER_HEADER* KCGUIControl::TouchLongDown(const KCEventData&, Rect&) { return nullptr; }

KCGUIControl::BUFFER_HEADER* KCGUIControl::TouchPinchGesture(const KCEventData& event, Rect& redraw) {
    const double delta = StatesOfPinch(event.pinchScale);
    if (!TakesInput(event) || delta == 0.0)
        return nullptr;
    KCEventChain chain(m_algorithm);
    for (size_t i = 0; i < m_params.size(); ++i) {
        if (!m_params[i].IsRegisteredToType(kRegister_Pinch) ||
            !m_params[i].GetRegisterInfo().CompareParamModifiers(event.modifiers))
            continue;
        TouchParamOf(i);
        chain.Append(m_params[i].OffsetParamValue(delta * m_params[i].GetSensitivity(), kRegister_Pinch));
    }
    EndSingleEvent();
    AddRedraw(redraw);
    return chain.Take();
}

KCGUIControl::BUFFER_HEADER* KCGUIControl::TouchUp(const KCEventData& event, Rect& redraw) {
    if (!m_isInGesture)
        return nullptr;
    KCEventChain chain(m_algorithm);
    if (TakesInput(event)) {
        chain.Append(FireRelease());
        chain.Append(TouchUpSelf(event, redraw));
    }
    Release();
    AddRedraw(redraw);
    return chain.Take();
}

KUPoint<double> KCGUIControl::GetTouchDelta(const KCEventData& event) const {
    if (!event.IsFinite())
        return {};
    return {event.position.x - m_lastTouch.x, m_lastTouch.y - event.position.y};
}

void KCGUIControl::ResetHoldPoint() {}

KCGUIControl::BUFFER_HEADER* KCGUIControl::TouchDownSelf(const KCEventData&, Rect&) { return nullptr; }

KCGUIControl::BUFFER_HEADER* KCGUIControl::TouchDragSelf(const KCEventData&, double, double, Rect&) {
    return nullptr;
}

KCGUIControl::BUFFER_HEADER* KCGUIControl::TouchUpSelf(const KCEventData&, Rect&) { return nullptr; }

} // namespace kvKorvoV12_9_0_320
