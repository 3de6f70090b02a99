#include <memory>

#include <gtest/gtest.h>

#include <korvolib/gui/selectable.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

class Item : public CSelectable {
  public:
    Item() { SetSelectableFlag(kSelectable_CanBeSelected, true); }
    void SetSelectionSelf(int32_t, int32_t) override { ++numChanges; }
    bool CanDoSelectionSelf(int32_t selection) const override { return selection != refused; }
    bool CanSwapSelectionsSelf() const override { return canSwap; }
    bool CanDoModeSelf(int32_t mode) const override { return mode != refused; }
    bool IsStrictSelectSelf() const override { return isStrict; }

    int numChanges = 0;
    int32_t refused = -1;
    bool canSwap = true;
    bool isStrict = false;
};

class FourItems : public ::testing::Test, public CSelectableHome {
  protected:
    FourItems() { BuildSelectableList(); }
    void BuildSelectableListSelf(std::vector<CSelectable*>& list) override {
        list = {&items[0], nullptr, &items[1], &items[2], &items[1], &items[3]};
    }
    void Click(size_t item, KUModifiers modifiers = {}) { AdjustSelectionToClick(&items[item], modifiers); }
    std::string Selected() const {
        std::string digits;
        for (const Item& item : items)
            digits += static_cast<char>('0' + item.GetSelection());
        return digits;
    }
    Item items[4];
};

TEST(Selectable, SelectsWithinItsLimits) {
    Item item;
    EXPECT_TRUE(item.SetSelection(1));
    EXPECT_FALSE(item.SetSelection(2));
    EXPECT_FALSE(item.SetSelection(-1));
    EXPECT_EQ(item.GetSelection(), 1);
    EXPECT_EQ(item.numChanges, 1);
    EXPECT_TRUE(item.SetSelection(1));
    EXPECT_EQ(item.numChanges, 1);
}

TEST(Selectable, ASelectionThatTheElementRefusesChangesNothing) {
    Item item;
    item.refused = 1;
    EXPECT_FALSE(item.SetSelection(1));
    EXPECT_EQ(item.GetSelection(), 0);
    EXPECT_EQ(item.numChanges, 0);
}

TEST(Selectable, CrossedLimitsAreExchangedAndLimitWhatIsSelected) {
    Item item;
    item.SetMinMax(5, 2);
    int32_t minimum = 0, maximum = 0;
    item.GetMinMax(minimum, maximum);
    EXPECT_EQ(minimum, 2);
    EXPECT_EQ(maximum, 5);
    item.MaxSelect();
    EXPECT_EQ(item.GetSelection(), 5);
    item.SetMinMax(1, 3);
    EXPECT_EQ(item.GetMaxSelection(), 3);
    item.MinSelect();
    EXPECT_EQ(item.GetMinSelection(), 1);
}

TEST(Selectable, SwapsSelectionsOrRefusesWithoutAChange) {
    Item one, other;
    one.SetSelection(1);
    EXPECT_TRUE(one.SwapSelections(other));
    EXPECT_EQ(one.GetSelection(), 0);
    EXPECT_EQ(other.GetSelection(), 1);
    other.canSwap = false;
    EXPECT_FALSE(one.SwapSelections(other));
    EXPECT_EQ(other.GetSelection(), 1);
    other.canSwap = true;
    one.refused = 1;
    EXPECT_FALSE(one.SwapSelections(other));
    EXPECT_EQ(other.GetSelection(), 1);
}

TEST(Selectable, ARefusedModeStaysAsItWas) {
    Item item;
    item.refused = 7;
    EXPECT_TRUE(item.SetMode(3));
    EXPECT_FALSE(item.SetMode(7));
    EXPECT_EQ(item.GetMode(), 3);
}

TEST(Selectable, FlagsOutOfRangeAreFalse) {
    Item item;
    item.SetSelectableFlag(static_cast<ESelectableFlags>(99), true);
    EXPECT_FALSE(item.GetSelectableFlag(static_cast<ESelectableFlags>(99)));
    EXPECT_FALSE(item.GetSelectableFlag(static_cast<ESelectableFlags>(-1)));
}

TEST(Selectable, AloneInNoListItTabsNowhere) {
    Item item;
    EXPECT_EQ(item.DoTab(1), nullptr);
    EXPECT_EQ(item.DoTab(-1), nullptr);
    EXPECT_EQ(item.FindNextHighestSelectable(), nullptr);
}

TEST_F(FourItems, KnowTheirNeighboursEachOnce) {
    EXPECT_EQ(GetSelectableList().size(), 4u);
    EXPECT_EQ(items[0].GetPrevious(), nullptr);
    EXPECT_EQ(items[0].GetNext(), &items[1]);
    EXPECT_EQ(items[2].GetPrevious(), &items[1]);
    EXPECT_EQ(items[3].GetNext(), nullptr);
    items[1].Reset();
    EXPECT_EQ(items[1].GetNext(), nullptr);
}

TEST_F(FourItems, TabGoesRoundTheEndsAndPassesThoseThatCannotBeSelected) {
    items[2].SetSelectableFlag(kSelectable_CanBeSelected, false);
    EXPECT_EQ(items[1].DoTab(1), &items[3]);
    EXPECT_EQ(items[3].DoTab(1), &items[0]);
    EXPECT_EQ(items[0].DoTab(-1), &items[3]);
    EXPECT_EQ(items[3].DoTab(-5), &items[1]);
    EXPECT_EQ(items[0].DoTab(0), nullptr);
}

TEST_F(FourItems, TabWithNobodyElseGoesNowhere) {
    for (const size_t i : {0u, 1u, 3u})
        items[i].SetSelectableFlag(kSelectable_CanBeSelected, false);
    EXPECT_EQ(items[2].DoTab(1), nullptr);
    EXPECT_EQ(items[2].DoTab(-1), nullptr);
}

TEST_F(FourItems, GoHomeSelectsTheFirstThatCanBeOrTheOneThatSaysSo) {
    items[0].SetSelectableFlag(kSelectable_CanBeSelected, false);
    EXPECT_TRUE(GoHome());
    EXPECT_EQ(Selected(), "0100");
    items[3].SetSelectableFlag(kSelectable_First, true);
    EXPECT_TRUE(GoHome());
    EXPECT_EQ(Selected(), "0001");
}

TEST_F(FourItems, AClickSelectsTheOneAloneAndNothingSelectsNothing) {
    Click(0);
    Click(2);
    EXPECT_EQ(Selected(), "0010");
    AdjustSelectionToClick(nullptr, {});
    EXPECT_EQ(Selected(), "0000");
    EXPECT_EQ(CurrMaxSelected(), nullptr);
}

TEST_F(FourItems, AClickOnAStrangerChangesNothing) {
    Item stranger;
    Click(1);
    AdjustSelectionToClick(&stranger, {});
    EXPECT_EQ(Selected(), "0100");
    EXPECT_EQ(stranger.GetSelection(), 0);
    EXPECT_FALSE(IsThisYours(&stranger));
    EXPECT_FALSE(IsThisYours(nullptr));
}

TEST_F(FourItems, PrimaryTogglesAndShiftKeepsThoseThatKeep) {
    Click(0);
    Click(1, KEModifier::Primary);
    EXPECT_EQ(Selected(), "1100");
    Click(0, KEModifier::Primary);
    EXPECT_EQ(Selected(), "0100");
    Click(0, KEModifier::Primary);
    items[0].SetSelectableFlag(kSelectable_KeepOnShift, true);
    EXPECT_TRUE(items[0].SholdKeepSelectedOnShift());
    Click(3, KEModifier::Shift);
    EXPECT_EQ(Selected(), "1001");
}

TEST_F(FourItems, AStrictOneIsSelectedAloneWhateverIsHeld) {
    items[0].SetSelectableFlag(kSelectable_KeepOnShift, true);
    items[3].isStrict = true;
    for (const KEModifier held : {KEModifier::Shift, KEModifier::Primary}) {
        Click(0);
        Click(3, held);
        EXPECT_EQ(Selected(), "0001");
    }
}

TEST_F(FourItems, TheHighestSelectionIsFoundFromAnyPlaceOn) {
    items[1].SetMinMax(0, 4);
    items[1].SetSelection(4);
    items[2].SetSelection(1);
    EXPECT_EQ(CurrMaxSelected(), &items[1]);
    EXPECT_EQ(items[2].FindNextHighestSelectable(), &items[2]);
    EXPECT_EQ(items[3].FindNextHighestSelectable(), nullptr);
    int32_t minimum = 0, maximum = 0;
    GetListMinMax(minimum, maximum);
    EXPECT_EQ(minimum, 1);
    EXPECT_EQ(maximum, 4);
    EXPECT_EQ(GetNumSelectedControls(), 2u);
}

TEST_F(FourItems, WhoeverMayNotBeSelectedAnyMoreIsNot) {
    Click(2);
    items[2].SetSelectableFlag(kSelectable_CanBeSelected, false);
    AdjustSelectionToSelectableFlags();
    EXPECT_EQ(Selected(), "0000");
    Click(2);
    EXPECT_EQ(Selected(), "0000");
}

TEST_F(FourItems, ASelectionOutlivesANewList) {
    Click(2);
    BuildSelectableList();
    EXPECT_TRUE(IsSelected(items[2]));
    ResetSelectedList();
    EXPECT_FALSE(IsSelected(items[2]));
}

TEST_F(FourItems, TabKeysWalkTheListInBothDirections) {
    KUModifiers shift(KEModifier::Shift);
    EXPECT_EQ(CSelectableHome::DirectionFromTabModifiers({}), 1);
    EXPECT_EQ(CSelectableHome::DirectionFromTabModifiers(shift), -1);
    EXPECT_EQ(MoveSelection(1), &items[0]);
    EXPECT_EQ(MoveSelection(1), &items[1]);
    EXPECT_EQ(MoveSelection(-1), &items[0]);
    EXPECT_EQ(MoveSelection(-1), &items[3]);
    EXPECT_EQ(Selected(), "0001");
    ResetSelectedList();
    EXPECT_EQ(MoveSelection(-1), &items[3]);
    EXPECT_EQ(MoveSelection(0), nullptr);
}

TEST(SelectableHome, AnEmptyOneHasNothingToSelect) {
    CSelectableHome home;
    home.BuildSelectableList();
    int32_t minimum = 7, maximum = 7;
    home.GetListMinMax(minimum, maximum);
    EXPECT_EQ(minimum, 0);
    EXPECT_EQ(maximum, 0);
    EXPECT_FALSE(home.GoHome());
    EXPECT_EQ(home.MoveSelection(1), nullptr);
    EXPECT_EQ(home.CurrMaxSelected(), nullptr);
}

} // namespace
} // namespace kvTest
