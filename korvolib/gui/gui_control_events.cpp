// The pointer, the wheel, keys and text. What a press, a drag and a release of the pointer do is shared with
// fingers (gui_control_touch.cpp).
#include <korvolib/gui/gui_control.h>

#include <algorithm>
#include <cmath>

#include <korvolib/gui/event_chain_internal.h>

namespace kvKorvoV12_9_0_320 {

namespace {

using BUFFER_HEADER = cALGORITHM::BUFFER_HEADER;
using namespace PluginViewManager; // event data and keys

bool IsDragged(const KCParamRegistrationData& param) {
    return param.IsRegisteredToTypes({kRegister_DragVertical, kRegister_DragHorizontal, kRegister_Drag});
}

// Whether a press moves the parameter, now or with its release.
bool IsMovedByPress(const KCParamRegistrationData& param, const KCEventData& event) {
    return param.IsRegisteredToTypes({kRegister_NextOnPress, kRegister_PreviousOnPress, kRegister_SetOnPress,
                                      kRegister_SetOnRelease, kRegister_Place, kRegister_ResetOnPress}) ||
           (event.IsDoubleClick() && param.IsRegisteredToType(kRegister_ResetOnDoubleClick));
}

bool Matches(const KCParamRegistrationData& param, KUModifiers modifiers) {
    return param.IsBound() && param.GetRegisterInfo().CompareParamModifiers(modifiers);
}

// Whole notches; the part that is left waits for the next event, unless the wheel has turned round.
double TakeNotches(double& rest, double delta) {
    const double sum = rest * delta < 0.0 ? delta : rest + delta;
    const double whole = std::trunc(sum);
    rest = sum - whole;
    return whole;
}

} // namespace

bool KCGUIControl::TakesInput(const KCEventData& event) const {
    return event.IsFinite() && IsVisible() && !IsDisabled();
}

// Touch and release -----------------------------------------------------------------------------------------------

// The first registration of a parameter holds it for all of them: automation hears of one touch.
void KCGUIControl::TouchParamOf(size_t registration) {
    if (registration >= m_params.size() || !m_params[registration].IsBound())
        return;
    const size_t paramIndex = m_params[registration].GetParamIndex();
    const auto holder =
        std::find_if(m_params.begin(), m_params.end(), [paramIndex](const KCParamRegistrationData& param) {
            return param.IsBound() && param.GetParamIndex() == paramIndex;
        });
    if (holder->ShouldSendTouch())
        holder->Touch();
}

void KCGUIControl::EndSingleEvent() {
    if (!m_isInGesture)
        FinishDragParams();
}

void KCGUIControl::Release() {
    m_isInGesture = false;
    m_isDragPress = false;
    m_isDragDropping = false;
    FinishDragParams();
}

BUFFER_HEADER* KCGUIControl::SetStateOf(size_t registration, double state) {
    if (registration >= m_params.size())
        return nullptr;
    TouchParamOf(registration);
    KCEventChain chain(m_algorithm);
    chain.Append(m_params[registration].SetParamValue(state));
    EndSingleEvent();
    return chain.Take();
}

// Places ----------------------------------------------------------------------------------------------------------

bool KCGUIControl::IsHorizontal(const KCParamRegistrationData& param) const {
    if (m_direction != KEControlDirection::Both)
        return m_direction == KEControlDirection::Horizontal;
    const bool isAcross = param.IsRegisteredToType(kRegister_DragHorizontal);
    const bool isUp = param.IsRegisteredToType(kRegister_DragVertical);
    return isAcross != isUp ? isAcross : param.GetRole().compare("X") == 0;
}

double KCGUIControl::GetStateAtPoint(const KCParamRegistrationData& param, const KCEventData& event) const {
    const KUPoint<double> place = CalcRelativeClickPoint(event);
    return (IsHorizontal(param) ? place.x : 1.0 - place.y) * param.GetLastState();
}

// Press -----------------------------------------------------------------------------------------------------------

BUFFER_HEADER* KCGUIControl::MouseDown(const KCEventData& event, Rect& redraw, bool& isHandled) {
    isHandled = false;
    if (!TakesInput(event))
        return nullptr;
    Release(); // of a press whose release was lost; residues go with it
    if (event.IsModifierDown(KEModifier::Secondary)) {
        isHandled = !ShouldIgnoreMouseRightClick() && GetControlPopupMenuHandler() != nullptr;
        if (isHandled || ShouldIgnoreMouseRightClick())
            return nullptr; // the view shows the menu
    }
    KCEventChain chain(m_algorithm);
    chain.Append(BeginPress(event, isHandled));
    chain.Append(MouseDownSelf(event, redraw, isHandled));
    m_isInGesture = isHandled && TakesInput(event);
    if (!m_isInGesture)
        Release();
    AddRedraw(redraw);
    return chain.Take();
}

BUFFER_HEADER* KCGUIControl::BeginPress(const KCEventData& event, bool& isHandled) {
    m_pressModifiers = m_gestureModifiers = event.modifiers;
    m_lastTouch = event.position;
    m_isDragPress = GetMouseDragRect().Contains(event.position);
    for (size_t i = 0; i < m_params.size(); ++i) {
        const bool isMatch = Matches(m_params[i], event.modifiers);
        const bool isDragged = m_isDragPress && m_params[i].IsBound() && IsDragged(m_params[i]);
        const bool isPressed = isMatch && IsMovedByPress(m_params[i], event);
        isHandled |= isDragged || isPressed || (isMatch && m_params[i].IsRegisteredToType(kRegister_DragAndDrop));
        if (isMatch && (isDragged || isPressed))
            TouchParamOf(i);
    }
    m_isInGesture = isHandled;
    KCEventChain chain(m_algorithm);
    for (size_t i = 0; m_isInGesture && i < m_params.size(); ++i) // a hook may end it
        if (Matches(m_params[i], event.modifiers))
            chain.Append(FirePress(i, event));
    return chain.Take();
}

BUFFER_HEADER* KCGUIControl::FirePress(size_t registration, const KCEventData& event) {
    KCParamRegistrationData& param = m_params[registration];
    if (param.IsRegisteredToType(kRegister_ResetOnPress) ||
        (event.IsDoubleClick() && param.IsRegisteredToType(kRegister_ResetOnDoubleClick)))
        return param.ResetParam();
    if (param.IsRegisteredToType(kRegister_SetOnPress))
        return param.SetParamValue(param.GetFixedState());
    if (param.IsRegisteredToType(kRegister_Place))
        return param.SetParamValue(GetStateAtPoint(param, event));
    if (param.IsRegisteredToType(kRegister_NextOnPress))
        return param.OffsetParamValueToNextDifferentValue(1.0, kRegister_NextOnPress);
    if (param.IsRegisteredToType(kRegister_PreviousOnPress))
        return param.OffsetParamValueToNextDifferentValue(-1.0, kRegister_PreviousOnPress);
    return nullptr;
}

// Drag ------------------------------------------------------------------------------------------------------------

double KCGUIControl::ConvertMouseDeltaFromPixelsToState(double deltaPixels, double& residue, uint64_t registration,
                                                        int16_t pixelRange) const {
    constexpr double kPixelsPerState = 96.0;
    constexpr double kFineLimit = 2.0; // pixels, up to which the movement counts in state steps
    if (registration >= m_params.size())
        return 0.0;
    const KCParamRegistrationData& param = m_params[registration];
    const double delta = param.UpdateMouseDeltaStep(deltaPixels);
    if (!std::isfinite(delta))
        return 0.0;
    if (param.IsActiveControllerParameterDiscrete()) {
        const double sum = delta + (std::isfinite(residue) ? residue : 0.0);
        const double states = std::trunc(sum / kPixelsPerState);
        residue = sum - kPixelsPerState * states;
        if (!(std::fabs(residue) < kPixelsPerState)) // beyond the precision of the sum there is no rest to keep
            residue = 0.0;
        return states * param.GetActiveControllerParameterStateStep();
    }
    if (std::fabs(delta) > kFineLimit)
        return delta * kFullTravel / (pixelRange == 0 ? 1 : pixelRange);
    return delta * param.GetActiveControllerParameterStateStep();
}

bool KCGUIControl::IsDragDropDistance(const KCEventData& event) noexcept {
    constexpr double kPixels = 3.0;
    const KUSize<double> distance = event.GetMouseDistanceFromDragStart();
    return distance.width > kPixels || distance.height > kPixels;
}

BUFFER_HEADER* KCGUIControl::MouseDrag(const KCEventData& event, double deltaX, double deltaY, Rect& redraw) {
    if (!m_isInGesture || !TakesInput(event) || !std::isfinite(deltaX) || !std::isfinite(deltaY))
        return nullptr;
    KCEventChain chain(m_algorithm);
    chain.Append(DragBy(event, deltaX, deltaY));
    chain.Append(MouseDragSelf(event, deltaX, deltaY, redraw));
    AddRedraw(redraw);
    return chain.Take();
}

BUFFER_HEADER* KCGUIControl::DragBy(const KCEventData& event, double deltaX, double deltaY) {
    const double acrossPixels = deltaX * m_dragSensitivity;
    const double upPixels = deltaY * m_dragSensitivity;
    const KUModifiers keys = event.GetAllKeyModifiers();
    AdoptModifiers(keys);
    KCEventChain chain(m_algorithm);
    for (size_t i = 0; m_isInGesture && m_isDragPress && i < m_params.size(); ++i) // a hook may end it
        if (Matches(m_params[i], keys) && IsDragged(m_params[i]))
            chain.Append(DragRegistration(i, keys, acrossPixels, upPixels));
    if (m_isInGesture && !m_isDragDropping && IsDragDropDistance(event))
        m_isDragDropping = DragDropStart(event, m_carriedState);
    return chain.Take();
}

// Registrations that begin to match start from where the parameter stands, and no rest of an earlier movement
// reaches them: the value never jumps.
void KCGUIControl::AdoptModifiers(KUModifiers modifiers) {
    if (modifiers == m_gestureModifiers)
        return;
    m_gestureModifiers = modifiers;
    for (KCParamRegistrationData& param : m_params) {
        param.ClearDragResidues();
        if (Matches(param, modifiers))
            param.FollowParam();
    }
}

BUFFER_HEADER* KCGUIControl::DragRegistration(size_t registration, KUModifiers keys, double deltaX, double deltaY) {
    KCRegisterInfo& info = m_params[registration].GetRegisterInfo();
    const KUModifiers before = info.GetModifiers();
    info.SetModifiers(keys);
    TouchParamOf(registration);
    KCEventChain chain(m_algorithm);
    chain.Append(DragAlong(registration, deltaX, true));
    chain.Append(DragAlong(registration, deltaY, false));
    info.SetModifiers(before);
    return chain.Take();
}

BUFFER_HEADER* KCGUIControl::DragAlong(size_t registration, double deltaPixels, bool isHorizontal) {
    KCParamRegistrationData& param = m_params[registration];
    const ERegisterType own = isHorizontal ? kRegister_DragHorizontal : kRegister_DragVertical;
    const ERegisterType type = param.IsRegisteredToType(own) ? own : kRegister_Drag;
    if (deltaPixels == 0.0 || !param.IsRegisteredToType(type))
        return nullptr;
    const int16_t range = m_direction == KEControlDirection::Both ? PixelRangeAlong(isHorizontal) : GetPixelRange();
    // A finer registration covers its share of the way that the same movement covers without it: the pixels cannot
    // be scaled, since few of them count otherwise than many. States come in whole ones, so there they are.
    const bool isDiscrete = param.IsActiveControllerParameterDiscrete();
    const double factor = param.GetSensitivity();
    const double states =
        ConvertMouseDeltaFromPixelsToState(isDiscrete ? deltaPixels * factor : deltaPixels,
                                           param.GetDragResidue(isHorizontal ? 0 : 1), registration, range);
    return states == 0.0 ? nullptr : param.OffsetParamValue(isDiscrete ? states : states * factor, type);
}

// Release ---------------------------------------------------------------------------------------------------------

BUFFER_HEADER* KCGUIControl::MouseUp(const KCEventData& event, Rect& redraw) {
    if (!m_isInGesture)
        return nullptr;
    KCEventChain chain(m_algorithm);
    if (TakesInput(event)) {
        chain.Append(FireRelease());
        chain.Append(MouseUpSelf(event, redraw));
    }
    Release();
    AddRedraw(redraw);
    return chain.Take();
}

// With the keys of the press: a button that was pressed comes up again, whatever is held when it does.
BUFFER_HEADER* KCGUIControl::FireRelease() {
    KCEventChain chain(m_algorithm);
    for (size_t i = 0; i < m_params.size(); ++i) {
        if (!Matches(m_params[i], m_pressModifiers) || !m_params[i].IsRegisteredToType(kRegister_SetOnRelease))
            continue;
        TouchParamOf(i);
        chain.Append(m_params[i].SetParamValue(m_params[i].GetFixedState()));
    }
    return chain.Take();
}

// Hover -----------------------------------------------------------------------------------------------------------

BUFFER_HEADER* KCGUIControl::MouseOver(const KCEventData& event, Rect& redraw) {
    const bool isOver = TakesInput(event) && event.type != PluginViewManager::KEEventType::MouseOut;
    SetControlHighlightInfo(isOver);
    KCEventChain chain(m_algorithm);
    if (isOver)
        chain.Append(Hover(event));
    else
        EndHover();
    if (event.IsFinite())
        chain.Append(MouseOverSelf(event, redraw));
    AddRedraw(redraw);
    return chain.Take();
}

BUFFER_HEADER* KCGUIControl::Hover(const KCEventData& event) {
    constexpr double kMsPerSecond = 1000.0;
    BeginHover(event.timeSeconds);
    const double hoverMs = GetHoverSeconds(event.timeSeconds) * kMsPerSecond;
    KCEventChain chain(m_algorithm);
    for (size_t i = 0; !m_isInGesture && i < m_params.size(); ++i) {
        const KCParamRegistrationData& param = m_params[i];
        if (!Matches(param, event.modifiers) || !param.IsRegisteredToType(kRegister_SetOnHover) ||
            hoverMs < param.GetHoverDelay())
            continue;
        const double state = GetStateAtPoint(param, event);
        if (param.DoesNewStateChangeRealWorld(state))
            chain.Append(SetStateOf(i, state));
    }
    return chain.Take();
}

// Wheel and keys ----------------------------------------------------------------------------------------------

BUFFER_HEADER* KCGUIControl::MouseWheel(const KCEventData& event, double deltaX, double deltaY, Rect& redraw) {
    if (!TakesInput(event) || !std::isfinite(deltaX) || !std::isfinite(deltaY))
        return nullptr;
    const double across = TakeNotches(m_wheelRest[0], deltaX);
    const double up = TakeNotches(m_wheelRest[1], deltaY);
    const double either = up != 0.0 ? up : across;
    KCEventChain chain(m_algorithm);
    for (size_t i = 0; i < m_params.size(); ++i) {
        if (!Matches(m_params[i], event.modifiers) || !m_params[i].IsRegisteredToType(kRegister_Wheel))
            continue;
        const double ofItsAxis = IsHorizontal(m_params[i]) ? across : up;
        const double steps = m_direction == KEControlDirection::Both ? ofItsAxis : either;
        chain.Append(StepRegistration(i, steps, kRegister_Wheel));
    }
    EndSingleEvent();
    chain.Append(MouseWheelSelf(event, deltaX, deltaY, redraw));
    AddRedraw(redraw);
    return chain.Take();
}

BUFFER_HEADER* KCGUIControl::StepRegistration(size_t registration, double steps, ERegisterType type) {
    constexpr double kMostSteps = 100.0; // of one event; no hand asks for more
    if (steps == 0.0)
        return nullptr;
    TouchParamOf(registration);
    const double direction = steps > 0.0 ? 1.0 : -1.0;
    KCEventChain chain(m_algorithm);
    bool hasChanged = true;
    for (double left = std::min(std::fabs(steps), kMostSteps); left >= 1.0 && hasChanged; left -= 1.0) {
        hasChanged = false;
        chain.Append(m_params[registration].OffsetParamValueToNextDifferentValue(direction, type, &hasChanged));
    }
    return chain.Take();
}

BUFFER_HEADER* KCGUIControl::HandleKeyEvent(const KCEventData& event, bool& isHandled, bool& isGestureEnd) {
    isHandled = false;
    isGestureEnd = false;
    if (!TakesInput(event))
        return nullptr;
    KCEventChain chain(m_algorithm);
    chain.Append(KeySelf(event, isHandled));
    if (!isHandled)
        chain.Append(KeyAll(event, isHandled));
    isGestureEnd = isHandled;
    return chain.Take();
}

BUFFER_HEADER* KCGUIControl::KeyAll(const KCEventData& event, bool& isHandled) {
    KCEventChain chain(m_algorithm);
    for (size_t i = 0; i < m_params.size(); ++i)
        if (Matches(m_params[i], event.modifiers) && m_params[i].IsRegisteredToType(kRegister_Keys))
            chain.Append(KeyRegistration(i, event.key, isHandled));
    EndSingleEvent();
    return chain.Take();
}

// In a control of both directions each pair of arrows moves what lies along it; elsewhere any arrow will do.
BUFFER_HEADER* KCGUIControl::KeyRegistration(size_t registration, uint32_t key, bool& isHandled) {
    constexpr double kPage = 10.0;
    const bool isAcross = key == kKey_Left || key == kKey_Right;
    const bool isEnd = key == kKey_Home || key == kKey_End;
    double steps = 0.0;
    if (key == kKey_Up || key == kKey_Right)
        steps = 1.0;
    else if (key == kKey_Down || key == kKey_Left)
        steps = -1.0;
    else if (key == kKey_PageUp || key == kKey_PageDown)
        steps = key == kKey_PageUp ? kPage : -kPage;
    if (!isEnd && (steps == 0.0 ||
                   (m_direction == KEControlDirection::Both && isAcross != IsHorizontal(m_params[registration]))))
        return nullptr;
    isHandled = true;
    if (!isEnd)
        return StepRegistration(registration, steps, kRegister_Keys);
    TouchParamOf(registration);
    return m_params[registration].SetParamValue(key == kKey_Home ? 0.0 : m_params[registration].GetLastState());
}

// Text and menus ---------------------------------------------------------------------------------------------

size_t KCGUIControl::WhichParamIndexCanEnterText() const { return FindRegistration(kRegister_Text); }

bool KCGUIControl::CanEnterText() const { return WhichParamIndexCanEnterText() != kNoParam; }

void KCGUIControl::GetValueWinText(size_t registration, KCFixedStringBase& text) const {
    text.clear();
    if (registration < m_params.size())
        m_params[registration].UpdateValue(text);
}

bool KCGUIControl::IsAcceptable(const KCFixedStringBase& text) const {
    return m_acceptableCharacters.empty() ||
           text.find_first_not_of(m_acceptableCharacters.c_str()) == KCFixedStringBase::npos;
}

BUFFER_HEADER* KCGUIControl::EnterText(size_t registration, const KCFixedStringBase& text, bool& isAccepted) {
    isAccepted = false;
    if (registration >= m_params.size() || !IsVisible() || IsDisabled() ||
        !m_params[registration].IsRegisteredToType(kRegister_Text))
        return nullptr;
    KCFixedString<255> present;
    GetValueWinText(registration, present);
    double state = 0.0;
    KCEventChain chain(m_algorithm);
    if (present.compare(text) == 0) { // left as it was, though its decimals may not say the whole value
        isAccepted = true;
    } else if (IsAcceptable(text) && m_params[registration].TranslateValue(text, state)) {
        isAccepted = true;
        chain.Append(SetStateOf(registration, state));
    }
    chain.Append(EnterTextSelf(registration, text, isAccepted));
    return chain.Take();
}

KCControlPopupMenuHandler* KCGUIControl::GetControlPopupMenuHandler() {
    const size_t registration = FindRegistration(kRegister_Menu);
    if (registration == kNoParam)
        return nullptr;
    m_menu.SetParam(m_params[registration].GetAlgorithm(), m_params[registration].GetParamIndex());
    return m_menu.GetNumChoices() > 0 ? &m_menu : nullptr;
}

BUFFER_HEADER* KCGUIControl::DoControlPopupMenuSelf(int32_t choice) {
    KCControlPopupMenuHandler* const menu = GetControlPopupMenuHandler();
    if (menu == nullptr || choice < 0 || choice >= menu->GetNumChoices() || !IsVisible() || IsDisabled())
        return nullptr;
    const size_t registration = FindRegistration(kRegister_Menu);
    if (registration == kNoParam)
        return nullptr;
    return SetStateOf(registration, choice * m_params[registration].GetActiveControllerParameterStateStep());
}

// Drag and drop ---------------------------------------------------------------------------------------------------

bool KCGUIControl::DragDropStart(const KCEventData& event, double& carriedState) {
    for (const KCParamRegistrationData& param : m_params) {
        if (!Matches(param, event.modifiers) || !param.IsRegisteredToType(kRegister_DragAndDrop))
            continue;
        double dragState = 0.0, dropState = 0.0;
        param.GetRegisterInfo().GetDragDropValues(dragState, dropState);
        carriedState = dragState < 0.0 ? param.GetValue() : dragState;
        return true;
    }
    return false;
}

bool KCGUIControl::DragDropMove(const KCEventData& event, double) const {
    return TakesInput(event) && FindRegistration(kRegister_DragAndDrop) != kNoParam &&
           IsPointInsideSelf(event.position);
}

BUFFER_HEADER* KCGUIControl::DragDropStop(const KCEventData& event, double carriedState, Rect& redraw) {
    if (!DragDropMove(event, carriedState))
        return nullptr;
    const size_t registration = FindRegistration(kRegister_DragAndDrop);
    double dragState = 0.0, dropState = 0.0;
    m_params[registration].GetRegisterInfo().GetDragDropValues(dragState, dropState);
    BUFFER_HEADER* const chain = SetStateOf(registration, dropState < 0.0 ? carriedState : dropState);
    AddRedraw(redraw);
    return chain;
}

} // namespace kvKorvoV12_9_0_320
