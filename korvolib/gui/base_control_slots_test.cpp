#include <gtest/gtest.h>

#include <korvolib/gui/base_control.h>
#include <tests/support/virtual_slot.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

TEST(BaseControlSlots, StandInTheirOrder) {
    using C = KCBaseControl; // the destructor has slots 0 and 1
    EXPECT_EQ(VirtualSlot(&C::Clone), 2);
    EXPECT_EQ(VirtualSlot(&C::WriteToXMLWithAlg), 3);
    EXPECT_EQ(VirtualSlot(&C::ReadFromXMLWithAlg), 4);
    EXPECT_EQ(VirtualSlot(&C::ReadFromXMLFlags), 5);
    EXPECT_EQ(VirtualSlot(&C::ReadFromXMLParameterList), 6);
    EXPECT_EQ(VirtualSlot(&C::ReadFromXMLParameterList_Attributes), 7);
    EXPECT_EQ(VirtualSlot(&C::ReadFromXMLParameterList_Registration), 8);
    EXPECT_EQ(VirtualSlot(&C::FinishCreate), 9);
    EXPECT_EQ(VirtualSlot(&C::SetNeedToResetParams), 10);
    EXPECT_EQ(VirtualSlot(&C::GetControlFlag), 11);
    EXPECT_EQ(VirtualSlot(&C::SetControlFlag), 12);
    EXPECT_EQ(VirtualSlot(&C::UpdateDisabledMode), 13);
    EXPECT_EQ(VirtualSlot(&C::UpdatePointer), 14);
    EXPECT_EQ(VirtualSlot(&C::GetLeadParamID), 15);
    EXPECT_EQ(VirtualSlot(&C::FinishCreateSelf), 16);
    EXPECT_EQ(VirtualSlot(&C::DebugControl), 17);
    EXPECT_EQ(VirtualSlot(&C::DebugControlSelf), 18);
    EXPECT_EQ(VirtualSlot(&C::ReadFromXMLWithAlgSelf), 19);
    EXPECT_EQ(VirtualSlot(&C::UpdateFromXMLWithAlgSelf), 20);
    EXPECT_EQ(VirtualSlot(&C::OnLRBChange), 21);
    EXPECT_EQ(VirtualSlot(&C::WriteToXML), 22);
}

} // namespace
} // namespace kvTest
