#include <gtest/gtest.h>

#include <cstring>

#include <korvolib/gui/register_type.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

TEST(RegisterType, NumbersOfTheTwoThatAutomationAsksForAreFixed) {
    EXPECT_EQ(kRegister_Highlight, 0);
    EXPECT_EQ(kRegister_NotByAutomation, 37);
}

TEST(RegisterType, EveryWordReadsBack) {
    int numNamed = 0;
    for (int32_t i = 0; i < kNumRegisterTypes; ++i) {
        const char* const name = RegisterTypeName(static_cast<ERegisterType>(i));
        if (*name == '\0')
            continue;
        ERegisterType type = kNumRegisterTypes;
        EXPECT_TRUE(RegisterTypeFromName(name, type)) << name;
        EXPECT_EQ(type, i) << name;
        ++numNamed;
    }
    EXPECT_EQ(numNamed, 21);
}

TEST(RegisterType, WordsOfTheDescriptionAreTheseOnes) {
    ERegisterType type = kNumRegisterTypes;
    EXPECT_TRUE(RegisterTypeFromName("Highlight", type));
    EXPECT_EQ(type, kRegister_Highlight);
    EXPECT_TRUE(RegisterTypeFromName("SetOnHover", type));
    EXPECT_EQ(type, kRegister_SetOnHover);
}

TEST(RegisterType, UnknownWordLeavesTheType) {
    ERegisterType type = kRegister_Wheel;
    for (const char* const word : {"", "wheel", "Wheel ", "DragVertically", static_cast<const char*>(nullptr)})
        EXPECT_FALSE(RegisterTypeFromName(word, type));
    EXPECT_EQ(type, kRegister_Wheel);
}

TEST(RegisterType, NumberWithoutAWordHasTheEmptyOne) {
    for (const int32_t number : {-1, 20, 36, 38, INT32_MAX, INT32_MIN})
        EXPECT_STREQ(RegisterTypeName(static_cast<ERegisterType>(number)), "") << number;
}

} // namespace
} // namespace kvTest
