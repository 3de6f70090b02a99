// Keyboard selection: CSelectable is one element of a list that Tab and the arrow keys walk through,
// CSelectableHome the list's owner, which a window is.
//
// A selectable may show a selection of a range (a band of an equaliser, of four): from a minimum to a maximum, of
// what SetMinMax allows. Most select nothing finer than themselves: 0 is not selected, 1 is. Thread: [main].
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <korvolib/export.h>
#include <korvolib/gui/event_data.h>
#include <korvolib/gui/interfaces.h>

namespace kvKorvoV12_9_0_320 {

class CSelectableHome;

enum ESelectableFlags : int32_t {
    kSelectable_CanBeSelected, // Tab stops here, unless it refuses; others are passed over
    kSelectable_TextEntry,     // takes typed text when selected
    kSelectable_KeepOnShift,   // stays selected when another is selected with Shift
    kSelectable_First,         // where GoHome goes, instead of the first in order
    kNumSelectableFlags
};

class KORVO_API CSelectable : public KCNeighborable<CSelectable*> {
  public:
    // In slot order, behind the destructor and Reset.
    ~CSelectable() override;
    void Reset() override;
    virtual void SetModeSelf(int32_t mode);
    virtual bool CanDoModeSelf(int32_t mode) const;
    virtual bool IsStrictSelectSelf() const; // a click selects this one alone, even with Shift
    virtual void SetSelectionSelf(int32_t minimum, int32_t maximum);
    virtual bool CanDoSelectionSelf(int32_t selection) const;
    virtual bool CanSwapSelectionsSelf() const;
    /// Of this one and those behind it in the list: the first whose selection is the highest; null when none of
    /// them is selected.
    virtual CSelectable* FindNextHighestSelectable();

    /// The end of the selected range; 0 when not selected.
    int32_t GetSelection() const noexcept { return m_maxSelection; }
    /// Selects `selection` alone. False, and no change, for what is outside of 0 … maximum or refused by
    /// CanDoSelectionSelf.
    bool SetSelection(int32_t selection);
    int32_t GetMinSelection() const noexcept { return m_minSelection; }
    int32_t GetMaxSelection() const noexcept { return m_maxSelection; }
    /// The limits of a selection; 0 and 1 unless told. Crossed limits are exchanged, a present selection is
    /// limited.
    void GetMinMax(int32_t& minimum, int32_t& maximum) const noexcept;
    void SetMinMax(int32_t minimum, int32_t maximum);
    void MinSelect() { SetSelection(m_lowest); }
    void MaxSelect() { SetSelection(m_highest); }
    /// Each takes over the other's selection; false, and no change, when one of them refuses.
    bool SwapSelections(CSelectable& other);
    bool CanDoSelection(int32_t selection) const;
    bool CanSwapSelections(const CSelectable& other) const;
    int32_t GetMode() const noexcept { return m_mode; }
    bool SetMode(int32_t mode);
    bool CanDoMode(int32_t mode) const { return CanDoModeSelf(mode); }
    bool GetSelectableFlag(ESelectableFlags flag) const noexcept;
    void SetSelectableFlag(ESelectableFlags flag, bool isOn) noexcept;
    /// The next that can be selected and does not refuse, in a direction's sign, round the end of the list; null
    /// when there is no other.
    CSelectable* DoTab(int32_t direction);
    /// Whether it stays selected when another one is selected with Shift. (The name is part of the interface.)
    bool SholdKeepSelectedOnShift() const noexcept { return GetSelectableFlag(kSelectable_KeepOnShift); }

  private:
    friend class CSelectableHome;
    /// Keys stop here: it can be selected, and would not refuse now.
    bool IsStop() const;

    std::bitset<kNumSelectableFlags> m_selectableFlags;
    int32_t m_lowest = 0, m_highest = 1;
    int32_t m_minSelection = 0, m_maxSelection = 0;
    int32_t m_mode = 0;
};

class KORVO_API CSelectableHome {
  public:
    virtual ~CSelectableHome();
    /// Anew: BuildSelectableListSelf gives the elements in order; each then knows its neighbours. What was selected
    /// and is still there stays selected.
    void BuildSelectableList();
    /// Nothing here; an owner appends its selectables.
    virtual void BuildSelectableListSelf(std::vector<CSelectable*>& list);
    void ResetSelectedList(); // nothing is selected any more
    bool GoHome();            // selects the first; false for an empty list
    bool IsSelected(const CSelectable& selectable) const noexcept;
    bool IsThisYours(const CSelectable* selectable) const noexcept;
    CSelectable* CurrMaxSelected() const; // the one with the highest selection; null when nothing is selected
    size_t GetNumSelectedControls() const noexcept;
    void GetListMinMax(int32_t& minimum, int32_t& maximum) const noexcept; // of all selections; 0 and 0 when empty
    /// A click selects the one clicked; with Shift also keeps those that keep, with Primary it toggles. Null
    /// selects nothing.
    void AdjustSelectionToClick(CSelectable* clicked, KUModifiers modifiers);
    /// Whoever may not be selected any more is not.
    void AdjustSelectionToSelectableFlags();
    /// Tab is +1, with Shift −1.
    static int32_t DirectionFromTabModifiers(KUModifiers modifiers) noexcept;
    /// Tab: on from what is selected; the newly selected or null.
    CSelectable* MoveSelection(int32_t direction);
    const std::vector<CSelectable*>& GetSelectableList() const noexcept { return m_list; }

  private:
    std::vector<CSelectable*> m_list;
};

} // namespace kvKorvoV12_9_0_320
