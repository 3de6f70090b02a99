// The menu of a control, over its window: what opens and closes it, and what a hand does to it.

#include <korvolib/gui/x_cstandardgui_gesture_internal.h>

namespace kvKorvoV12_9_0_320 {

using namespace PluginViewManager;

// ---- Open and closed --------------------------------------------------------------------------------------------

void CStandardGUI_X::OpenMenu(KCGUIControl& control) {
    m_openMenu = &control;
    if (!m_drawsMenus)
        return;
    const Rect value = control.GetValueRect(0);
    m_menu.Open(*control.GetControlPopupMenuHandler(), m_theme, value.IsEmpty() ? control.GetBounds() : value,
                m_size);
    MarkMenu();
}

void CStandardGUI_X::CloseMenu() noexcept {
    if (IsMenuDrawn())
        AskForAll(); // what it stood on may be anything
    m_openMenu = nullptr;
}

void CStandardGUI_X::SetDrawsMenus(bool drawsMenus) noexcept {
    CloseMenu();
    m_drawsMenus = drawsMenus;
}

void CStandardGUI_X::MarkMenu(bool hasChanged) noexcept {
    if (!hasChanged)
        return;
    m_isMenuMarked = true;
    m_needsRedraw.store(true, std::memory_order_relaxed);
}

// A control that takes no input any more, or has other choices than those that were laid out, has no menu.
bool CStandardGUI_X::FindDrawnMenu() {
    if (!IsMenuDrawn())
        return false;
    const KCControlPopupMenuHandler* const choices =
        CanTakeInput(*m_openMenu) ? m_openMenu->GetControlPopupMenuHandler() : nullptr;
    if (choices == nullptr || choices->GetNumChoices() != m_menu.GetNumChoices())
        CloseMenu();
    return m_openMenu != nullptr;
}

// ---- Choices ----------------------------------------------------------------------------------------------------

bool CStandardGUI_X::MenuChoice(const KCFixedStringBase& controlName, int32_t choice) {
    const sEVENT scope(*this);
    KCGUIControl* const control = scope ? FindControl(controlName) : nullptr;
    return control != nullptr && CanTakeInput(*control) && Choose(*control, choice);
}

bool CStandardGUI_X::Choose(KCGUIControl& control, int32_t choice) {
    CloseMenu();
    KCControlPopupMenuHandler* const menu = control.GetControlPopupMenuHandler();
    if (menu == nullptr || choice < 0 || choice >= menu->GetNumChoices())
        return false;
    (void)SendWhole(control, [&](KCGUIControl& chosen, Rect&) { return chosen.DoControlPopupMenuSelf(choice); });
    return true;
}

void CStandardGUI_X::PressMenu(KUPoint<double> point) {
    if (const int32_t choice = m_menu.FindChoiceAt(point); choice != KCDrawnMenu::kNoChoice)
        (void)Choose(*m_openMenu, choice);
    else if (m_menu.GetRect().Contains(point))
        MarkMenu(m_menu.PressArrow(point));
    else
        CloseMenu();
}

// False for Tab, which closes the menu and goes on to the next control. Other keys stop here: none moves a control
// behind an open menu.
bool CStandardGUI_X::SendMenuKey(uint32_t key) {
    switch (key) {
    case kKey_Escape:
        CloseMenu();
        return true;
    case kKey_Tab:
        CloseMenu();
        return false;
    case kKey_Enter:
    case kKey_Space:
        if (const int32_t choice = m_menu.GetHighlighted(); choice != KCDrawnMenu::kNoChoice)
            (void)Choose(*m_openMenu, choice);
        else
            CloseMenu();
        return true;
    default:
        MarkMenu(m_menu.MoveHighlight(key, m_openMenu->GetControlPopupMenuHandler()->GetCurrentChoice()));
        return true;
    }
}

} // namespace kvKorvoV12_9_0_320
