#include <vector>

#include <gtest/gtest.h>

#include <korvolib/gui/gui_control.h>
#include <tests/support/virtual_slot.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

// Behind the slots of KCBaseControl, which are 0 to 22; what is the library's own comes last.
TEST(GUIControlSlots, StandInTheirOrderBehindThoseOfTheBase) {
    using C = KCGUIControl;
    const std::vector<std::ptrdiff_t> slots = {
        VirtualSlot(&C::UpdateFromXMLWithAlg),
        VirtualSlot(&C::Move),
        VirtualSlot(&C::Resize),
        VirtualSlot(&C::GetBounds),
        VirtualSlot(&C::WhichParamIndexCanEnterText),
        VirtualSlot(&C::GetImageRect),
        VirtualSlot(&C::GetValueRect),
        VirtualSlot(&C::GetMovementRect),
        VirtualSlot(&C::GetMouseDragRect),
        VirtualSlot(&C::GetValueWinText),
        VirtualSlot(&C::CanEnterText),
        VirtualSlot(&C::GetCursorPosOnRelease),
        VirtualSlot(&C::CalcRelativeClickPoint),
        VirtualSlot(&C::ConvertMouseDeltaFromPixelsToState),
        VirtualSlot(&C::IsCyclicControl),
        VirtualSlot(&C::CanExecuteImmediately),
        VirtualSlot(&C::ControlHandlesMultiSelect),
        VirtualSlot(&C::IsDisabled),
        VirtualSlot(&C::ShouldDrawTopmost),
        VirtualSlot(&C::SetDisabled),
        VirtualSlot(&C::ClearDisabled),
        VirtualSlot(&C::GetValueRectSelf),
        VirtualSlot(&C::GetRectSelf),
        VirtualSlot(&C::SetControlHighlightInfo),
        VirtualSlot(&C::ChangeCursor),
        VirtualSlot(&C::UpdatePointerSelf),
        VirtualSlot(&C::DoControlPopupMenuSelf),
        VirtualSlot(&C::MouseOver),
        VirtualSlot(&C::MouseDown),
        VirtualSlot(&C::MouseDrag),
        VirtualSlot(&C::MouseUp),
        VirtualSlot(&C::MouseWheel),
        VirtualSlot(&C::MouseDraw),
        VirtualSlot(&C::TouchDown),
        VirtualSlot(&C::TouchDrag),
        VirtualSlot(&C::TouchLongDown),
        VirtualSlot(&C::TouchPinchGesture),
        VirtualSlot(&C::TouchUp),
        VirtualSlot(&C::EnterText),
        VirtualSlot(&C::HandleKeyEvent),
        VirtualSlot(&C::ShouldAcceptMouseWheelEvent),
        VirtualSlot(&C::GetDrawInstructionsBkgColor),
        VirtualSlot(&C::GetDrawInstructionsParamsData),
        VirtualSlot(&C::GetDrawInstructionsSelectionBitmap),
        VirtualSlot(&C::GetDrawInstructionsControlBackground),
        VirtualSlot(&C::GetDrawInstructionsForStaticTextBackground),
        VirtualSlot(&C::GetGraphDataAsGraphicStream),
        VirtualSlot(&C::GetDrawInstructionsDefaultSelectionLevel),
        VirtualSlot(&C::DragDropStart),
        VirtualSlot(&C::DragDropMove),
        VirtualSlot(&C::DragDropStop),
        VirtualSlot(&C::GetControlPopupMenuHandler),
        VirtualSlot(&C::SetBkgColor),
        VirtualSlot(&C::GetDrawInstructionsParamBitmapWindow),
        VirtualSlot(&C::GetDrawInstructionsDragDropImage),
        VirtualSlot(&C::GetDrawInstructionsParamValueWindow),
        VirtualSlot(&C::GetDrawInstructionsParamUnitsWindow),
        VirtualSlot(&C::GetDrawInstructionsParamLabelWindow),
        VirtualSlot(&C::GetDrawInstructionsParamGraphWindow),
        VirtualSlot(&C::ReadFromXMLCustom),
        VirtualSlot(&C::ReadFromXMLAdditionalBitmapListSelf),
        VirtualSlot(&C::UpdateXMLAdditionalBitmapListSelf),
        VirtualSlot(&C::WriteFromXMLAdditionalBitmapListSelf),
        VirtualSlot(&C::GetTouchDelta),
        VirtualSlot(&C::ResetHoldPoint),
        VirtualSlot(&C::GetSelectionBitmapRect),
        VirtualSlot(&C::IsPointInsideSelf),
        VirtualSlot(&C::DoYouIntersectSelf),
        VirtualSlot(&C::MouseDownSelf),
        VirtualSlot(&C::MouseOverSelf),
        VirtualSlot(&C::MouseDragSelf),
        VirtualSlot(&C::MouseUpSelf),
        VirtualSlot(&C::MouseWheelSelf),
        VirtualSlot(&C::MouseDrawSelf),
        VirtualSlot(&C::TouchDownSelf),
        VirtualSlot(&C::TouchDragSelf),
        VirtualSlot(&C::TouchUpSelf),
        VirtualSlot(&C::KeySelf),
        VirtualSlot(&C::EnterTextSelf),
        VirtualSlot(&C::SetNeedToRedrawControlOnly),
        VirtualSlot(&C::UpdateRedrawControl),
        VirtualSlot(&C::NeedToRedrawControl),
        VirtualSlot(&C::ShouldDisableGUIControl),
        VirtualSlot(&C::ShouldIgnoreMouseRightClick),
        VirtualSlot(&C::GetDefaultGestures),
    };
    for (size_t i = 0; i < slots.size(); ++i)
        EXPECT_EQ(slots[i], static_cast<std::ptrdiff_t>(23 + i)) << "operation " << i;
}

TEST(GUIControlSlots, WhatIsOverriddenKeepsTheSlotOfTheBase) {
    using C = KCGUIControl;
    EXPECT_EQ(VirtualSlot(&C::WriteToXMLWithAlg), 3);
    EXPECT_EQ(VirtualSlot(&C::ReadFromXMLWithAlg), 4);
    EXPECT_EQ(VirtualSlot(&C::ReadFromXMLParameterList_Registration), 8);
    EXPECT_EQ(VirtualSlot(&C::FinishCreate), 9);
    EXPECT_EQ(VirtualSlot(&C::SetControlFlag), 12);
    EXPECT_EQ(VirtualSlot(&C::UpdateDisabledMode), 13);
    EXPECT_EQ(VirtualSlot(&C::UpdatePointer), 14);
    EXPECT_EQ(VirtualSlot(&C::DebugControl), 17);
}

TEST(SelectableSlots, StandInTheirOrder) {
    using C = CSelectable; // the destructor has slots 0 and 1
    EXPECT_EQ(VirtualSlot(&C::Reset), 2);
    EXPECT_EQ(VirtualSlot(&C::SetModeSelf), 3);
    EXPECT_EQ(VirtualSlot(&C::CanDoModeSelf), 4);
    EXPECT_EQ(VirtualSlot(&C::IsStrictSelectSelf), 5);
    EXPECT_EQ(VirtualSlot(static_cast<void (C::*)(int32_t, int32_t)>(&C::SetSelectionSelf)), 6);
    EXPECT_EQ(VirtualSlot(&C::CanDoSelectionSelf), 7);
    EXPECT_EQ(VirtualSlot(&C::CanSwapSelectionsSelf), 8);
    EXPECT_EQ(VirtualSlot(&C::FindNextHighestSelectable), 9);
}

} // namespace
} // namespace kvTest
