#include <korvolib/gui/selectable.h>

#include <algorithm>
#include <unordered_set>

namespace kvKorvoV12_9_0_320 {

namespace {

bool CanBeSelected(const CSelectable& selectable) {
    return selectable.GetSelectableFlag(kSelectable_CanBeSelected);
}

// As it is, when it is selected already: a click does not change which of its parts is.
bool Select(CSelectable& selectable) {
    if (selectable.GetSelection() > 0)
        return true;
    int32_t lowest = 0, highest = 0;
    selectable.GetMinMax(lowest, highest);
    return selectable.SetSelection(std::max(1, lowest));
}

} // namespace

CSelectableHome::~CSelectableHome() = default;

void CSelectableHome::BuildSelectableListSelf(std::vector<CSelectable*>&) {}

void CSelectableHome::BuildSelectableList() {
    std::vector<CSelectable*> given;
    BuildSelectableListSelf(given);
    m_list.clear();
    std::unordered_set<const CSelectable*> known;
    for (CSelectable* selectable : given)
        if (selectable != nullptr && known.insert(selectable).second)
            m_list.push_back(selectable);
    for (CSelectable* selectable : m_list)
        selectable->Reset();
    for (size_t i = 1; i < m_list.size(); ++i) {
        m_list[i - 1]->SetNext(m_list[i]);
        m_list[i]->SetPrevious(m_list[i - 1]);
    }
}

void CSelectableHome::ResetSelectedList() {
    for (CSelectable* selectable : m_list)
        selectable->SetSelection(0);
}

bool CSelectableHome::GoHome() {
    CSelectable* home = nullptr;
    for (CSelectable* selectable : m_list) {
        if (!selectable->IsStop())
            continue;
        const bool isFirst = selectable->GetSelectableFlag(kSelectable_First);
        if (home == nullptr || isFirst)
            home = selectable;
        if (isFirst)
            break;
    }
    AdjustSelectionToClick(home, KUModifiers());
    return home != nullptr && IsSelected(*home);
}

bool CSelectableHome::IsSelected(const CSelectable& selectable) const noexcept {
    return IsThisYours(&selectable) && selectable.GetSelection() > 0;
}

bool CSelectableHome::IsThisYours(const CSelectable* selectable) const noexcept {
    return std::find(m_list.begin(), m_list.end(), selectable) != m_list.end();
}

CSelectable* CSelectableHome::CurrMaxSelected() const {
    return m_list.empty() ? nullptr : m_list.front()->FindNextHighestSelectable();
}

size_t CSelectableHome::GetNumSelectedControls() const noexcept {
    return static_cast<size_t>(std::count_if(m_list.begin(), m_list.end(), [](const CSelectable* selectable) {
        return selectable->GetSelection() > 0;
    }));
}

void CSelectableHome::GetListMinMax(int32_t& minimum, int32_t& maximum) const noexcept {
    minimum = maximum = 0;
    for (const CSelectable* selectable : m_list) {
        if (selectable->GetSelection() <= 0)
            continue;
        minimum = maximum == 0 ? selectable->GetMinSelection() : std::min(minimum, selectable->GetMinSelection());
        maximum = std::max(maximum, selectable->GetMaxSelection());
    }
}

void CSelectableHome::AdjustSelectionToClick(CSelectable* clicked, KUModifiers modifiers) {
    if (clicked != nullptr && !IsThisYours(clicked))
        return;
    CSelectable* const chosen = clicked != nullptr && CanBeSelected(*clicked) ? clicked : nullptr;
    const bool isAlone = chosen == nullptr || chosen->IsStrictSelectSelf();
    if (!isAlone && modifiers.Has(KEModifier::Primary)) {
        if (chosen->GetSelection() > 0)
            chosen->SetSelection(0);
        else
            Select(*chosen);
        return;
    }
    const bool keeps = !isAlone && modifiers.Has(KEModifier::Shift);
    for (CSelectable* selectable : m_list)
        if (selectable != chosen && !(keeps && selectable->SholdKeepSelectedOnShift()))
            selectable->SetSelection(0);
    if (chosen != nullptr)
        Select(*chosen);
}

void CSelectableHome::AdjustSelectionToSelectableFlags() {
    for (CSelectable* selectable : m_list)
        if (!CanBeSelected(*selectable))
            selectable->SetSelection(0);
}

int32_t CSelectableHome::DirectionFromTabModifiers(KUModifiers modifiers) noexcept {
    return modifiers.Has(KEModifier::Shift) ? -1 : 1;
}

CSelectable* CSelectableHome::MoveSelection(int32_t direction) {
    if (m_list.empty() || direction == 0)
        return nullptr;
    CSelectable* next = nullptr;
    if (CSelectable* const current = CurrMaxSelected())
        next = current->DoTab(direction);
    else if (direction > 0)
        return GoHome() ? CurrMaxSelected() : nullptr;
    else
        next = m_list.back()->IsStop() ? m_list.back() : m_list.back()->DoTab(-1);
    if (next != nullptr)
        AdjustSelectionToClick(next, KUModifiers());
    return next;
}

} // namespace kvKorvoV12_9_0_320
