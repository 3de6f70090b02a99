#include <gtest/gtest.h>

#include <limits>

#include <korvolib/gui/register_info.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

TEST(RegisterInfo, IsMadeOfAType) {
    const KCRegisterInfo info(kRegister_Wheel);
    EXPECT_EQ(info.GetType(), kRegister_Wheel);
    EXPECT_TRUE(info.GetFlag(kRegister_Wheel));
    EXPECT_FALSE(info.GetFlag(kRegister_Highlight));
    EXPECT_TRUE(info.GetModifiers().IsEmpty());
}

TEST(RegisterInfo, ClearedIsAsFresh) {
    KCRegisterInfo info(kRegister_Wheel, KEModifier::Alt);
    info.SetDragDropValues(100.0, 200.0);
    info.Clear();
    EXPECT_EQ(info, KCRegisterInfo());
    EXPECT_EQ(info.GetType(), kRegister_Highlight);
    EXPECT_TRUE(info.GetFlag(kRegister_Highlight));
    EXPECT_FALSE(info.GetFlag(kRegister_Wheel));
}

TEST(RegisterInfo, TypeOutOfRangeIsTakenForHighlight) {
    for (const int32_t number : {-1, 38, INT32_MAX, INT32_MIN}) {
        KCRegisterInfo info(static_cast<ERegisterType>(number));
        EXPECT_EQ(info, KCRegisterInfo());
        info.SetFlag(static_cast<ERegisterType>(number), true);
        EXPECT_FALSE(info.GetFlag(static_cast<ERegisterType>(number)));
        EXPECT_EQ(info, KCRegisterInfo());
    }
}

TEST(RegisterInfo, LastTypeIsInRange) {
    EXPECT_EQ(KCRegisterInfo(kRegister_NotByAutomation).GetType(), kRegister_NotByAutomation);
}

TEST(RegisterInfo, GesturesAreTheSameWithTypeAndEveryFlag) {
    KCRegisterInfo left(kRegister_DragVertical, KEModifier::Shift), right(kRegister_DragVertical);
    EXPECT_TRUE(left.CompareRegisterTypes(right)); // modifiers do not count
    right.SetFlag(kRegister_Keys, true);
    EXPECT_FALSE(left.CompareRegisterTypes(right));
    left.SetFlag(kRegister_Keys, true);
    EXPECT_TRUE(left.CompareRegisterTypes(right));
    left.SetType(kRegister_Keys); // the same flags, another type
    EXPECT_FALSE(left.CompareRegisterTypes(right));
}

TEST(RegisterInfo, ModifierSetsMatchByEquality) {
    KCRegisterInfo info(kRegister_Drag, KEModifier::Shift);
    KUModifiers both(KEModifier::Shift);
    both.Set(KEModifier::Alt, true);
    EXPECT_TRUE(info.CompareParamModifiers(KUModifiers(KEModifier::Shift)));
    EXPECT_FALSE(info.CompareParamModifiers(both));
    EXPECT_FALSE(info.CompareParamModifiers(KUModifiers()));
    EXPECT_TRUE(info.CompareParamModifiers(KCRegisterInfo(kRegister_Wheel, KEModifier::Shift)));
    EXPECT_FALSE(info.CompareParamModifiers(KCRegisterInfo(kRegister_Drag)));
}

TEST(RegisterInfo, WhatIsNoStateMeansTheParametersOwn) {
    KCRegisterInfo info;
    double drag = 0.0, drop = 0.0;
    info.GetDragDropValues(drag, drop);
    EXPECT_LT(drag, 0.0);
    EXPECT_LT(drop, 0.0);
    info.SetDragDropValues(250.0, 0.0);
    info.GetDragDropValues(drag, drop);
    EXPECT_EQ(drag, 250.0);
    EXPECT_EQ(drop, 0.0);
    info.SetDragDropValues(std::numeric_limits<double>::quiet_NaN(), -3.0);
    EXPECT_EQ(info, KCRegisterInfo()); // not-a-number would differ from itself
}

} // namespace
} // namespace kvTest
