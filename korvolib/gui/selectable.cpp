#include <korvolib/gui/selectable.h>

#include <algorithm>

namespace kvKorvoV12_9_0_320 {

CSelectable::~CSelectable() = default;

void CSelectable::Reset() { KCNeighborable<CSelectable*>::Reset(); }

void CSelectable::SetModeSelf(int32_t) {}

bool CSelectable::CanDoModeSelf(int32_t) const { return true; }

bool CSelectable::IsStrictSelectSelf() const { return false; }

void CSelectable::SetSelectionSelf(int32_t, int32_t) {}

bool CSelectable::CanDoSelectionSelf(int32_t) const { return true; }

bool CSelectable::CanSwapSelectionsSelf() const { return true; }

CSelectable* CSelectable::FindNextHighestSelectable() {
    CSelectable* highest = nullptr;
    for (CSelectable* at = this; at != nullptr; at = at->GetNext() == this ? nullptr : at->GetNext())
        if (at->m_maxSelection > (highest == nullptr ? 0 : highest->m_maxSelection))
            highest = at;
    return highest;
}

bool CSelectable::CanDoSelection(int32_t selection) const {
    return selection >= 0 && selection <= m_highest && CanDoSelectionSelf(selection);
}

bool CSelectable::SetSelection(int32_t selection) {
    if (!CanDoSelection(selection))
        return false;
    if (selection == m_minSelection && selection == m_maxSelection)
        return true;
    m_minSelection = m_maxSelection = selection;
    SetSelectionSelf(m_minSelection, m_maxSelection);
    return true;
}

void CSelectable::GetMinMax(int32_t& minimum, int32_t& maximum) const noexcept {
    minimum = m_lowest;
    maximum = m_highest;
}

void CSelectable::SetMinMax(int32_t minimum, int32_t maximum) {
    m_lowest = std::max(0, std::min(minimum, maximum));
    m_highest = std::max(0, std::max(minimum, maximum));
    const auto limited = [this](int32_t selection) {
        return selection == 0 ? 0 : std::clamp(selection, m_lowest, m_highest);
    };
    const int32_t low = limited(m_minSelection), high = limited(m_maxSelection);
    if (low == m_minSelection && high == m_maxSelection)
        return;
    m_minSelection = low;
    m_maxSelection = high;
    SetSelectionSelf(low, high);
}

bool CSelectable::CanSwapSelections(const CSelectable& other) const {
    return CanSwapSelectionsSelf() && other.CanSwapSelectionsSelf() && CanDoSelection(other.m_minSelection) &&
           CanDoSelection(other.m_maxSelection) && other.CanDoSelection(m_minSelection) &&
           other.CanDoSelection(m_maxSelection);
}

bool CSelectable::SwapSelections(CSelectable& other) {
    if (!CanSwapSelections(other))
        return false;
    if (this == &other)
        return true;
    std::swap(m_minSelection, other.m_minSelection);
    std::swap(m_maxSelection, other.m_maxSelection);
    SetSelectionSelf(m_minSelection, m_maxSelection);
    other.SetSelectionSelf(other.m_minSelection, other.m_maxSelection);
    return true;
}

bool CSelectable::SetMode(int32_t mode) {
    if (!CanDoMode(mode))
        return false;
    m_mode = mode;
    SetModeSelf(mode);
    return true;
}

bool CSelectable::GetSelectableFlag(ESelectableFlags flag) const noexcept {
    return flag >= 0 && flag < kNumSelectableFlags && m_selectableFlags[static_cast<size_t>(flag)];
}

void CSelectable::SetSelectableFlag(ESelectableFlags flag, bool isOn) noexcept {
    if (flag >= 0 && flag < kNumSelectableFlags)
        m_selectableFlags[static_cast<size_t>(flag)] = isOn;
}

bool CSelectable::IsStop() const {
    return GetSelectableFlag(kSelectable_CanBeSelected) && CanDoSelection(std::max(1, m_lowest));
}

CSelectable* CSelectable::DoTab(int32_t direction) {
    if (direction == 0)
        return nullptr;
    const auto step = [direction](CSelectable* from) {
        return direction > 0 ? from->GetNext() : from->GetPrevious();
    };
    const auto back = [direction](CSelectable* from) {
        return direction > 0 ? from->GetPrevious() : from->GetNext();
    };
    for (CSelectable* at = step(this); at != nullptr && at != this; at = step(at))
        if (at->IsStop())
            return at;
    CSelectable* otherEnd = this;
    while (back(otherEnd) != nullptr && back(otherEnd) != this)
        otherEnd = back(otherEnd);
    for (CSelectable* at = otherEnd; at != nullptr && at != this; at = step(at))
        if (at->IsStop())
            return at;
    return nullptr;
}

} // namespace kvKorvoV12_9_0_320
