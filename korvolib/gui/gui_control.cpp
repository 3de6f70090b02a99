#include <korvolib/gui/gui_control.h>

#include <algorithm>
#include <atomic>
#include <cmath>

#include <korvolib/gui/theme.h>

namespace kvKorvoV12_9_0_320 {

namespace {

// Numbers the spreadings of redraw marks. Windows of several plug-ins may mark at once, each with its own lock.
uint64_t NextMarkPass() noexcept {
    static std::atomic<uint64_t> pass{0};
    return pass.fetch_add(1, std::memory_order_relaxed) + 1;
}

bool IsUsableRect(const KURect<double>& rect) {
    return std::isfinite(rect.left) && std::isfinite(rect.top) && std::isfinite(rect.right) &&
           std::isfinite(rect.bottom) && rect.left <= rect.right && rect.top <= rect.bottom;
}

} // namespace

KCGUIControl::KCGUIControl() : KCBaseControl(KEControlBinding::Observer) {}

KCGUIControl::KCGUIControl(const KCGUIControl& other)
    : KCBaseControl(other), CSelectable(other), CXMLable(other), KCMouseHover(other),
      KCNeedToDrawListener(other), RM::KCResContainerUser(other), m_rect(other.m_rect),
      m_rectOffset(other.m_rectOffset), m_hasColor(other.m_hasColor), m_color(other.m_color),
      m_hasColorRect(other.m_hasColorRect), m_colorRect(other.m_colorRect), m_group(other.m_group),
      m_direction(other.m_direction), m_disableMode(other.m_disableMode),
      m_dragSensitivity(other.m_dragSensitivity), m_images(other.m_images),
      m_selectionImages(other.m_selectionImages), m_additionalImages(other.m_additionalImages),
      m_className(other.m_className), m_acceptableCharacters(other.m_acceptableCharacters),
      m_isDisabled(other.m_isDisabled), m_dependentIDs(other.m_dependentIDs),
      m_drawDependentIDs(other.m_drawDependentIDs) {
    CSelectable::Reset(); // the copy stands in no list, where nothing is selected
    SetSelection(0);
    EndHover();
}

KCGUIControl::~KCGUIControl() {
    try {
        Release();
    } catch (...) { // NOLINT(bugprone-empty-catch): a destructor has nobody to tell
    }
}

int32_t KCGUIControl::FinishCreate() {
    UpdateDisabledMode();
    return FinishCreateSelf();
}

// State ---------------------------------------------------------------------------------------------------------

void KCGUIControl::SetControlFlag(EControlFlags flag, bool isOn) {
    const bool wasOn = GetControlFlag(flag);
    KCBaseControl::SetControlFlag(flag, isOn);
    if (flag == kControl_Disabled)
        UpdateDisabledMode();
    if (wasOn == isOn || (flag != kControl_Hidden && flag != kControl_DrawTopmost))
        return;
    if (flag == kControl_Hidden && isOn)
        Release();
    SetNeedToRedrawControl();
}

bool KCGUIControl::IsDisabled() const { return m_isDisabled || m_flags[kControl_Disabled]; }

void KCGUIControl::SetDisabled() { SetControlFlag(kControl_Disabled, true); }

void KCGUIControl::ClearDisabled() { SetControlFlag(kControl_Disabled, false); }

bool KCGUIControl::ShouldDisableGUIControl() const {
    return m_flags[kControl_Disabled] || IsAllRegisteredParamsDisabled();
}

void KCGUIControl::UpdateDisabledMode() {
    const bool isDisabled = ShouldDisableGUIControl();
    if (isDisabled == m_isDisabled)
        return;
    m_isDisabled = isDisabled;
    if (isDisabled)
        Release();
    SetNeedToRedrawControl();
}

bool KCGUIControl::IsVisible() const {
    return !m_flags[kControl_Hidden] && !(m_disableMode == KEDisableMode::Hide && IsDisabled());
}

void KCGUIControl::Show() { SetControlFlag(kControl_Hidden, false); }

void KCGUIControl::Hide() { SetControlFlag(kControl_Hidden, true); }

void KCGUIControl::SetControlHighlightInfo(bool isHighlighted) {
    if (m_isHighlighted == isHighlighted)
        return;
    m_isHighlighted = isHighlighted;
    SetNeedToRedrawControl();
}

void KCGUIControl::SetSelectionSelf(int32_t, int32_t) { SetNeedToRedrawControl(); }

bool KCGUIControl::CanDoSelectionSelf(int32_t selection) const {
    return selection == 0 || (IsVisible() && !IsDisabled());
}

void KCGUIControl::SetBkgColor(KUColor color) {
    m_hasColor = true;
    m_color = color;
    SetNeedToRedrawControl();
}

void KCGUIControl::SetDragSensitivity(double factor) noexcept {
    if (std::isfinite(factor))
        m_dragSensitivity = factor;
}

bool KCGUIControl::IsCyclicControl() const { return m_flags[kControl_Cyclic]; }

bool KCGUIControl::CanExecuteImmediately() const { return true; }

bool KCGUIControl::ControlHandlesMultiSelect() const { return false; }

bool KCGUIControl::ShouldDrawTopmost() const { return false; }

bool KCGUIControl::ShouldIgnoreMouseRightClick() const { return m_flags[kControl_IgnoreRightClick]; }

std::span<const ERegisterType> KCGUIControl::GetDefaultGestures() const {
    static constexpr ERegisterType kGestures[] = {kRegister_Display};
    return kGestures;
}

const KCTheme& KCGUIControl::GetTheme() const noexcept {
    return m_home != nullptr ? m_home->GetTheme() : KCTheme::Default();
}

void KCGUIControl::DebugControl(KCFixedStringBase& text) const {
    text << m_className << " \"" << m_name << "\"";
    if (IsDisabled())
        text << " disabled";
    if (!IsVisible())
        text << " hidden";
    KCBaseControl::DebugControl(text);
}

size_t KCGUIControl::FindRegistration(ERegisterType type) const {
    for (size_t i = 0; i < m_params.size(); ++i)
        if (m_params[i].IsBound() && m_params[i].IsRegisteredToType(type))
            return i;
    return kNoParam;
}

// Place -----------------------------------------------------------------------------------------------------------

KURect<double> KCGUIControl::GetRectSelf() const { return m_rect.Offset(m_rectOffset.x, m_rectOffset.y); }

KURect<double> KCGUIControl::GetBounds() const { return GetRectSelf(); }

void KCGUIControl::SetRect(const Rect& rect) {
    if (!IsUsableRect(rect))
        return;
    m_rect = rect;
    SetNeedToRedrawControl();
}

void KCGUIControl::Move(double dx, double dy) { SetRect(m_rect.Offset(dx, dy)); }

void KCGUIControl::Resize(double width, double height) {
    SetRect(Rect::FromOrigin(m_rect.GetOrigin(), {width, height}));
}

KURect<double> KCGUIControl::ToWindow(const Rect& rect) const {
    const Rect bounds = GetBounds();
    return rect.Offset(bounds.left, bounds.top);
}

KURect<double> KCGUIControl::GetImageRect(size_t registration) const {
    return registration < m_params.size() ? ToWindow(m_params[registration].GetImageRect()) : Rect();
}

KURect<double> KCGUIControl::GetValueRect(size_t registration) const {
    if (registration >= m_params.size())
        return {};
    const sTEXT_WIN& win = m_params[registration].GetValueWin();
    return win.IsShown() ? ToWindow(win.rect) : GetValueRectSelf(registration);
}

KURect<double> KCGUIControl::GetValueRectSelf(size_t) const { return {}; }

KURect<double> KCGUIControl::GetMovementRect() const { return GetBounds(); }

KURect<double> KCGUIControl::GetMouseDragRect() const { return GetBounds(); }

KURect<double> KCGUIControl::GetSelectionBitmapRect() const {
    return m_selectionImages.rect.IsEmpty() ? GetBounds() : ToWindow(m_selectionImages.rect);
}

bool KCGUIControl::IsPointInsideSelf(KUPoint<double> point) const { return GetBounds().Contains(point); }

bool KCGUIControl::DoYouIntersectSelf(const Rect& rect) const { return GetBounds().Intersects(rect); }

int16_t KCGUIControl::PixelRangeAlong(bool isHorizontal) const {
    const Rect travel = GetMovementRect();
    return std::max<int16_t>(1,
                             KUConvertCoordinate<int16_t>(isHorizontal ? travel.GetWidth() : travel.GetHeight()));
}

int16_t KCGUIControl::GetPixelRange() const {
    return PixelRangeAlong(m_direction == KEControlDirection::Horizontal);
}

KUPoint<double> KCGUIControl::CalcRelativeClickPoint(const KCEventData& event) const {
    const auto share = [](double at, double from, double length) {
        return length > 0.0 ? std::clamp((at - from) / length, 0.0, 1.0) : 0.0;
    };
    const Rect travel = GetMovementRect();
    if (!event.IsFinite())
        return {};
    return {share(event.position.x, travel.left, travel.GetWidth()),
            share(event.position.y, travel.top, travel.GetHeight())};
}

KUPoint<double> KCGUIControl::GetCursorPosOnRelease(const KCEventData& event) const { return event.position; }

KECursor KCGUIControl::ChangeCursor(const KCEventData&) const {
    if (!IsVisible() || IsDisabled())
        return KECursor::Arrow;
    bool isAcross = false, isUp = false, isPress = false;
    for (const KCParamRegistrationData& param : m_params) {
        isAcross |= param.IsRegisteredToTypes({kRegister_DragHorizontal, kRegister_Drag});
        isUp |= param.IsRegisteredToTypes({kRegister_DragVertical, kRegister_Drag});
        isPress |= param.IsRegisteredToTypes(
            {kRegister_NextOnPress, kRegister_PreviousOnPress, kRegister_SetOnPress, kRegister_SetOnRelease});
    }
    if (isAcross && isUp)
        return KECursor::Move;
    if (isAcross || isUp)
        return isUp ? KECursor::UpDown : KECursor::LeftRight;
    if (CanEnterText())
        return KECursor::Text;
    return isPress ? KECursor::Hand : KECursor::Arrow;
}

// Redraw --------------------------------------------------------------------------------------------------------

// A list through the controls themselves instead of recursion: dependents may stand in circles and in chains of any
// length.
void KCGUIControl::SetNeedToRedrawControl() noexcept {
    const uint64_t pass = NextMarkPass();
    m_markPass = pass;
    m_nextToMark = nullptr;
    KCGUIControl* last = this;
    for (KCGUIControl* control = this; control != nullptr; control = control->m_nextToMark) {
        control->SetNeedToRedrawControlOnly();
        for (KCGUIControl* dependent : control->m_dependents) {
            if (dependent->m_markPass == pass)
                continue;
            dependent->m_markPass = pass;
            dependent->m_nextToMark = nullptr;
            last->m_nextToMark = dependent;
            last = dependent;
        }
    }
}

void KCGUIControl::SetNeedToRedrawControlOnly() noexcept {
    if (m_needsRedraw)
        return;
    m_needsRedraw = true;
    if (m_home != nullptr)
        m_home->AddControlToRedraw(*this);
}

void KCGUIControl::UpdateRedrawControl() noexcept { m_needsRedraw = false; }

bool KCGUIControl::NeedToRedrawControl() const noexcept { return m_needsRedraw; }

void KCGUIControl::AddRedraw(Rect& redraw) const {
    if (NeedToRedrawControl())
        redraw = redraw.Union(GetBounds());
}

void KCGUIControl::UpdatePointer(size_t paramIndex) noexcept {
    try {
        UpdateDisabledMode();
    } catch (...) { // NOLINT(bugprone-empty-catch): a plug-in's Release; who moved the parameter has no part in it
    }
    SetNeedToRedrawControl();
    UpdatePointerSelf(paramIndex);
}

void KCGUIControl::UpdatePointerSelf(size_t) noexcept {}

// Dependents ------------------------------------------------------------------------------------------------------

void KCGUIControl::AddDependentPtr(KCGUIControl* dependent) {
    if (dependent != nullptr && dependent != this &&
        std::find(m_dependents.begin(), m_dependents.end(), dependent) == m_dependents.end())
        m_dependents.push_back(dependent);
}

void KCGUIControl::ClearDependentsList() noexcept { m_dependents.clear(); }

} // namespace kvKorvoV12_9_0_320
