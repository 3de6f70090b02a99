// Keys and typed text, hovering, and what parameters ask of a window between events.

#include <korvolib/gui/x_cstandardgui_gesture_internal.h>

#include <string_view>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

using PluginViewManager::KEEventType;

namespace {

PluginViewManager::KCEventData KeyEvent(uint32_t key) {
    PluginViewManager::KCEventData event;
    event.type = KEEventType::Key;
    event.key = key;
    return event;
}

// The first character of a text that is not empty, which is shortened by it; kKey_None for bytes that are none
// (overlong forms, surrogates and what lies beyond Unicode included), of which one is taken away.
uint32_t TakeCharacter(std::string_view& text) noexcept {
    const auto byte = [&text](size_t i) { return i < text.size() ? static_cast<uint8_t>(text[i]) : uint8_t{0}; };
    const uint8_t first = byte(0);
    const size_t length = first < 0x80   ? 1
                          : first < 0xC2 ? 0
                          : first < 0xE0 ? 2
                          : first < 0xF0 ? 3
                          : first < 0xF5 ? 4
                                         : 0;
    uint32_t code = length == 1 ? first : length == 0 ? 0 : first & (0x7FU >> length);
    bool isWhole = length != 0;
    for (size_t i = 1; i < length; ++i) {
        isWhole = isWhole && (byte(i) & 0xC0) == 0x80;
        code = code << 6 | (byte(i) & 0x3FU);
    }
    constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    isWhole = isWhole && code >= kLeast[length] && code < PluginViewManager::kKey_Left &&
              (code < 0xD800 || code > 0xDFFF);
    text.remove_prefix(isWhole ? length : 1);
    return isWhole ? code : static_cast<uint32_t>(PluginViewManager::kKey_None);
}

} // namespace

// ---- Keys
// --------------------------------------------------------------------------------------------------------

KCGUIControl* CStandardGUI_X::GetKeyTarget() const {
    return m_textFocus != nullptr ? m_textFocus : dynamic_cast<KCGUIControl*>(CurrMaxSelected());
}

bool CStandardGUI_X::Key(const KCEventData& event) {
    const sEVENT scope(*this);
    return scope && event.IsFinite() && SendKey(event);
}

bool CStandardGUI_X::SendKey(const KCEventData& event) {
    if (FindDrawnMenu() && SendMenuKey(event.key))
        return true;
    if (event.key == PluginViewManager::kKey_Tab) {
        LeaveText(nullptr);
        return MoveSelection(DirectionFromTabModifiers(event.modifiers)) != nullptr;
    }
    KCGUIControl* const target = GetKeyTarget();
    return target != nullptr && (SendKeyTo(*target, event) || MoveSelectionByArrow(event));
}

bool CStandardGUI_X::SendKeyTo(KCGUIControl& target, const KCEventData& event) {
    if (!CanTakeInput(target))
        return false;
    bool isHandled = false;
    bool isGestureEnd = false;
    (void)SendWhole(target, [&](KCGUIControl& control, Rect& redraw) {
        BUFFER_HEADER* const chain = control.HandleKeyEvent(event, isHandled, isGestureEnd);
        if (isHandled)
            redraw = redraw.Union(control.GetBounds());
        return chain;
    });
    return isHandled;
}

// An arrow that the selected control has no use for: on with the selection, as Tab does. Nobody types then.
bool CStandardGUI_X::MoveSelectionByArrow(const KCEventData& event) {
    using namespace PluginViewManager;
    const bool isOn = event.key == kKey_Right || event.key == kKey_Down;
    const bool isBack = event.key == kKey_Left || event.key == kKey_Up;
    if (m_textFocus != nullptr || !event.modifiers.IsEmpty() || !(isOn || isBack))
        return false;
    return MoveSelection(isOn ? 1 : -1) != nullptr;
}

// Another control is pressed, or selected: what was typed and not committed is gone.
void CStandardGUI_X::LeaveText(const KCGUIControl* next) {
    KCGUIControl* const left = m_textFocus;
    if (left == nullptr || left == next)
        return;
    (void)SendKey(KeyEvent(PluginViewManager::kKey_Escape));
    m_textFocus = nullptr;
    left->SetNeedToRedrawControlOnly();
}

bool CStandardGUI_X::Text(const char* utf8) {
    const sEVENT scope(*this);
    if (!scope || utf8 == nullptr)
        return false;
    bool isHandled = false;
    for (std::string_view text(utf8); !text.empty();)
        if (const uint32_t key = TakeCharacter(text); key != PluginViewManager::kKey_None)
            isHandled = SendKey(KeyEvent(key)) || isHandled;
    return isHandled;
}

bool CStandardGUI_X::EnterText(const KCFixedStringBase& controlName, const KCFixedStringBase& text) {
    const sEVENT scope(*this);
    KCGUIControl* const control = scope ? FindControl(controlName) : nullptr;
    const size_t registration = control == nullptr ? kNoParam : control->WhichParamIndexCanEnterText();
    if (registration == kNoParam || !CanTakeInput(*control))
        return false;
    bool isAccepted = false;
    (void)SendWhole(
        *control, [&](KCGUIControl& entered, Rect&) { return entered.EnterText(registration, text, isAccepted); });
    return isAccepted;
}

// ---- Hovering
// ----------------------------------------------------------------------------------------------------

bool CStandardGUI_X::MouseOver(const KCEventData& event) {
    const sEVENT scope(*this);
    if (!scope || !event.IsFinite() || m_mouse.control != nullptr)
        return false;
    const bool hasLeft = event.type == KEEventType::MouseOut;
    const bool isMenuOpen = FindDrawnMenu();
    if (isMenuOpen)
        MarkMenu(m_menu.Highlight(hasLeft ? KCDrawnMenu::kNoChoice : m_menu.FindChoiceAt(event.position)));
    KCGUIControl* const control = hasLeft || isMenuOpen ? nullptr : FindControlAt(event.position);
    HoverOver(control != nullptr && CanTakeInput(*control) ? control : nullptr, event);
    m_hoverPosition = event.position;
    m_hoverModifiers = event.modifiers;
    if (m_hovered == nullptr)
        return isMenuOpen;
    m_hover.control = m_hovered; // again, after a gesture that ended the stay
    Send(m_hover, [&](KCGUIControl& hovered, Rect& redraw) { return hovered.MouseOver(event, redraw); });
    return true;
}

void CStandardGUI_X::HoverOver(KCGUIControl* control, const KCEventData& event) {
    if (m_hovered == control)
        return;
    KCGUIControl* const left = std::exchange(m_hovered, control);
    EndGesture(m_hover);
    if (left != nullptr) {
        KCEventData out = event;
        out.type = KEEventType::MouseOut;
        (void)SendWhole(*left, [&](KCGUIControl& gone, Rect& redraw) { return gone.MouseOver(out, redraw); });
        left->EndHover();
    }
    if (control != nullptr)
        control->BeginHover(event.timeSeconds);
}

// A control that follows the pointer after a delay hears of a pointer that rests.
void CStandardGUI_X::SendHover(double timeSeconds) {
    if (m_hovered == nullptr || m_mouse.control != nullptr || !CanTakeInput(*m_hovered))
        return;
    bool follows = false;
    for (const KCParamRegistrationData& data : m_hovered->GetParamDataVec())
        follows = follows || data.IsRegisteredToType(kRegister_SetOnHover);
    if (!follows)
        return;
    KCEventData event;
    event.type = KEEventType::MouseOver;
    event.position = m_hoverPosition;
    event.modifiers = m_hoverModifiers;
    event.timeSeconds = timeSeconds;
    m_hover.control = m_hovered;
    Send(m_hover, [&](KCGUIControl& control, Rect& redraw) { return control.MouseOver(event, redraw); });
}

// ---- Between events
// ----------------------------------------------------------------------------------------------

void CStandardGUI_X::Idle(double timeSeconds) {
    const sEVENT scope(*this);
    if (!scope)
        return;
    const size_t count = std::min(m_algorithm->GetNumParams(), m_controlsOfParam.size());
    for (size_t index = 0; index < count; ++index)
        if (m_algorithm->GetParam(index)->GetRefreshMark() != 0)
            RefreshParam(index);
    EndStrandedGestures();
    (void)FindDrawnMenu();
    if (std::isfinite(timeSeconds))
        SendHover(timeSeconds);
}

void CStandardGUI_X::RefreshParam(size_t index) {
    m_algorithm->GetParam(index)->SetRefreshMark(0);
    for (const uint32_t number : m_controlsOfParam[index]) {
        m_controls[number].control->UpdateDisabledMode();
        m_controls[number].control->SetNeedToRedrawControl();
    }
    FollowHiddenParam(index);
}

// Shows again only what it has hidden itself.
void CStandardGUI_X::FollowHiddenParam(size_t index) {
    const bool isHidden = m_algorithm->GetParam(index)->IsHidden();
    for (const uint32_t number : m_controlsOfParam[index]) {
        sPLACE& place = m_controls[number];
        KCGUIControl& control = *place.control;
        if (control.GetLeadParamIndex() != index)
            continue;
        if (isHidden && !control.GetControlFlag(kControl_Hidden)) {
            place.isHiddenByParam = true;
            control.Hide();
        } else if (!isHidden && std::exchange(place.isHiddenByParam, false)) {
            control.Show();
        }
    }
}

} // namespace kvKorvoV12_9_0_320
