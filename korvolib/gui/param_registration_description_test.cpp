#include <gtest/gtest.h>

#include <random>
#include <string>

#include <korvolib/gui/gui_test_internal.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

using Registration = KCParamRegistrationData;
using Problems = std::vector<sDESCRIPTION_PROBLEM>;

class RegistrationDescriptionTest : public testing::Test {
  protected:
    RegistrationDescriptionTest() : algorithm(ThreeParams()) { algorithm.FinishCreate(); }
    Registration Read(const std::string& xml) {
        Registration record;
        problems.clear();
        result = record.ReadFromXML(ElementFrom(xml), algorithm, problems);
        return record;
    }
    KCXMLElement Write(const Registration& record) {
        KCXMLElement element;
        EXPECT_EQ(element.SetName("Parameter"), kErr_NoErr);
        EXPECT_EQ(record.WriteToXML(element), kErr_NoErr);
        return element;
    }
    static KUModifiers ModifiersOf(const std::string& text) {
        return Registration::ReadModifiers(ElementFrom("<Register Modifiers='" + text + "'/>"));
    }

    RecordingAlgorithm algorithm;
    Problems problems;
    int32_t result = 0;
};

void ExpectEqual(const Registration& left, const Registration& right) {
    EXPECT_EQ(left.GetParamIndex(), right.GetParamIndex());
    EXPECT_EQ(left.GetRegisterInfo(), right.GetRegisterInfo());
    EXPECT_EQ(left.GetFixedState(), right.GetFixedState());
    EXPECT_EQ(left.GetSensitivity(), right.GetSensitivity());
    EXPECT_EQ(left.GetHoverDelay(), right.GetHoverDelay());
    EXPECT_EQ(left.GetLabelWin(), right.GetLabelWin());
    EXPECT_EQ(left.GetValueWin(), right.GetValueWin());
    EXPECT_EQ(left.GetUnitsWin(), right.GetUnitsWin());
    EXPECT_EQ(left.GetBitmapWin(), right.GetBitmapWin());
    EXPECT_EQ(left.GetGraphWin(), right.GetGraphWin());
    EXPECT_EQ(left.GetParamLinkGroups(), right.GetParamLinkGroups());
    EXPECT_EQ(left.GetRole(), right.GetRole());
    EXPECT_EQ(left.GetSpecificData(), right.GetSpecificData());
    EXPECT_EQ(left.GetParamArrayName(), right.GetParamArrayName());
}

// Modifiers -------------------------------------------------------------------------------------------------------

TEST_F(RegistrationDescriptionTest, AltAloneSetsAltOnly) {
    EXPECT_EQ(ModifiersOf("Alt"), KUModifiers(KEModifier::Alt));
}

TEST_F(RegistrationDescriptionTest, WordsRunTogetherSetBoth) {
    KUModifiers both(KEModifier::Shift);
    both.Set(KEModifier::Alt, true);
    EXPECT_EQ(ModifiersOf("ShiftAlt"), both);
    EXPECT_EQ(ModifiersOf("Alt+Shift"), both);
    EXPECT_EQ(ModifiersOf("with Shift and Alt held"), both);
}

TEST_F(RegistrationDescriptionTest, EachWordSetsItsFlag) {
    const char* const words[] = {"Primary", "Secondary", "Shift", "Alt"};
    for (uint32_t i = 0; i < kNumModifiers; ++i)
        EXPECT_EQ(ModifiersOf(words[i]), KUModifiers(static_cast<KEModifier>(i))) << words[i];
    EXPECT_TRUE(ModifiersOf("shift ALT primar").IsEmpty());
}

TEST_F(RegistrationDescriptionTest, MissingAttributeLeavesAllClear) {
    EXPECT_TRUE(Registration::ReadModifiers(ElementFrom("<Register Type='Drag'/>")).IsEmpty());
}

// Registers -------------------------------------------------------------------------------------------------------

TEST_F(RegistrationDescriptionTest, EitherElementNameRegisters) {
    EXPECT_EQ(Read("<P Name='Gain'><Register Type='Wheel'/></P>").GetRegisterInfo(),
              KCRegisterInfo(kRegister_Wheel));
    EXPECT_EQ(Read("<P Name='Gain'><RegisterType Type='Wheel'/></P>").GetRegisterInfo(),
              KCRegisterInfo(kRegister_Wheel));
    EXPECT_TRUE(problems.empty());
}

TEST_F(RegistrationDescriptionTest, HighlightOnlyHighlights) {
    const Registration record = Read("<P Name='Gain'><Register Type='Highlight'/></P>");
    EXPECT_EQ(record.GetRegisterInfo(), KCRegisterInfo(kRegister_Highlight));
}

TEST_F(RegistrationDescriptionTest, HoverReadsItsDelay) {
    Registration record = Read("<P Name='Gain'><Register Type='SetOnHover' Delay='300'/></P>");
    EXPECT_TRUE(record.IsRegisteredToType(kRegister_SetOnHover));
    EXPECT_EQ(record.GetHoverDelay(), 300.0);
    record = Read("<P Name='Gain'><Register Type='SetOnHover' Delay='-1'/></P>");
    EXPECT_EQ(problems.size(), 1u);
    EXPECT_EQ(record.GetHoverDelay(), 0.0);
}

TEST_F(RegistrationDescriptionTest, FurtherGesturesOfTheSameModifiersAreFlagsOfOneRecord) {
    const Registration record = Read("<P Name='Gain'><Register Type='Drag' Modifiers='Shift'/>"
                                     "<Register Type='Wheel' Modifiers='Shift'/><Register Type='Keys'/></P>");
    EXPECT_EQ(record.GetRegisterInfo().GetType(), kRegister_Drag);
    EXPECT_TRUE(record.IsRegisteredToType(kRegister_Wheel));
    EXPECT_FALSE(record.IsRegisteredToType(kRegister_Keys)); // of another record
    EXPECT_FALSE(record.IsRegisteredToType(kRegister_Highlight));
}

TEST_F(RegistrationDescriptionTest, ModifiersThatNobodyKnowsAreReported) {
    Read("<P Name='Gain'><Register Type='Wheel' Modifiers='Ctrl'/><Register Type='Drag' Modifiers=''/></P>");
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].Text, "Modifiers are Primary, Secondary, Shift and Alt, not \"Ctrl\"");
}

TEST_F(RegistrationDescriptionTest, ANumberOutOfItsRangeIsReportedWithTheRange) {
    Read("<P Name='Gain'><Register Type='Wheel' Sensitivity='1e7'/></P>");
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].Text, "Sensitivity is a number from -1000000 to 1000000, not \"1e7\"");
}

TEST_F(RegistrationDescriptionTest, UnknownGestureIsReportedAndLeftOut) {
    const Registration record =
        Read("<P Name='Gain'>\n<Register Type='Wheele' Modifiers='Alt'/><Register Type='Keys'/><Register/></P>");
    EXPECT_EQ(result, kErr_NoErr);
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_EQ(problems[0].Line, 2);
    EXPECT_EQ(problems[0].Text, "no gesture is named \"Wheele\"");
    EXPECT_EQ(problems[1].Text, "no gesture is named \"\"");
    EXPECT_EQ(record.GetRegisterInfo(), KCRegisterInfo(kRegister_Keys));
}

TEST_F(RegistrationDescriptionTest, DragAndDropCarryTheirValues) {
    const Registration record = Read("<P Name='Gain'><Drag Value='500'/><Drop Value='0'/></P>");
    double drag = 0.0, drop = 0.0;
    record.GetRegisterInfo().GetDragDropValues(drag, drop);
    EXPECT_EQ(drag, 500.0);
    EXPECT_EQ(drop, 0.0);
    EXPECT_TRUE(problems.empty());
}

TEST_F(RegistrationDescriptionTest, DragValueThatIsNoStateIsReported) {
    for (const char* const value : {"-1", "1000.5", "1e300", "nan", ""}) {
        const Registration record = Read(std::string("<P Name='Gain'><Drag Value='") + value + "'/><Drop/></P>");
        EXPECT_EQ(problems.size(), 2u) << value;
        EXPECT_EQ(record.GetRegisterInfo(), KCRegisterInfo());
    }
}

// The parameter and its attributes
// ----------------------------------------------------------------------------------

TEST_F(RegistrationDescriptionTest, UnknownParameterIsReportedWithLineAndName) {
    const Registration record = Read("\n<P Name='Gian'/>");
    EXPECT_EQ(result, kErr_BadDescription);
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].Line, 2);
    EXPECT_EQ(problems[0].Text, "no parameter is named \"Gian\"");
    EXPECT_FALSE(record.IsBound());
}

TEST_F(RegistrationDescriptionTest, HostileAttributesAreReportedAndLeftOut) {
    for (const char* const attribute :
         {"FixedState='-1'", "FixedState='1e300'", "Sensitivity='nan'", "Sensitivity='1e300'", "LinkGroups='1.5'",
          "LinkGroups='99999999999'", "SpecificData='x'"}) {
        const Registration record = Read("<P Name='Gain' " + std::string(attribute) + "/>");
        EXPECT_EQ(result, kErr_NoErr) << attribute;
        EXPECT_EQ(problems.size(), 1u) << attribute;
        ExpectEqual(record, Registration(&algorithm, 0, KCRegisterInfo()));
    }
}

TEST_F(RegistrationDescriptionTest, LinkGroupsAreNumbersBetweenBlanks) {
    const Registration record = Read("<P Name='Gain' LinkGroups='  1 -2  7 1 '/>");
    EXPECT_TRUE(problems.empty());
    EXPECT_EQ(record.GetParamLinkGroups(), (std::vector<int>{1, -2, 7}));
}

TEST_F(RegistrationDescriptionTest, AttributesNobodyReadsAreReportedInDebugBuildsOnly) {
    Read("<P Name='Gain' Colour='red'><Registr/></P>");
    EXPECT_EQ(result, kErr_NoErr);
#ifdef NDEBUG
    EXPECT_TRUE(problems.empty());
#else
    EXPECT_EQ(problems.size(), 2u);
#endif
}

TEST_F(RegistrationDescriptionTest, ValueIsTheStateOfTheParameter) {
    algorithm.UpdateParamState(0, 123.0, false);
    EXPECT_EQ(Read("<P Name='Gain'/>").GetValue(), 123.0);
}

TEST_F(RegistrationDescriptionTest, NewSkinBringsItsOwnWindows) {
    Registration record = Read("<P Name='Gain' Role='X'><Register Type='Drag'/><LabelWin Rect='0 0 9 9'/>"
                               "<BitmapWin ResID='7' NumImages='4' Rect='0 0 9 9'/></P>");
    record.UpdateDataForSkinChange(ElementFrom(
        "<P Name='Mode' Role='Y'><Register Type='Wheel'/><ValueWin Rect='1 1 2 2'/><Drag Value='3'/></P>"));
    EXPECT_FALSE(record.GetLabelWin().IsShown());
    EXPECT_FALSE(record.GetBitmapWin().IsShown());
    EXPECT_EQ(record.GetValueWin().rect, KURect<double>::FromEdges(1.0, 1.0, 3.0, 3.0));
    EXPECT_EQ(record.GetRole(), "X");
    EXPECT_EQ(record.GetParamIndex(), 0u);
    EXPECT_EQ(record.GetRegisterInfo(), KCRegisterInfo(kRegister_Drag));
}

// Written and read back
// ---------------------------------------------------------------------------------------------

TEST_F(RegistrationDescriptionTest, WrittenDescriptionOfEverythingReadsBackTheSame) {
    const Registration record = Read(
        "<P Name='Mode' Role='X' FixedState='2.5' Sensitivity='0.1' LinkGroups='1 2' SpecificData='-9000000000' "
        "Array='Band'><Register Type='SetOnHover' Modifiers='Primary Alt' Delay='12.5'/>"
        "<Register Type='Highlight' Modifiers='Primary Alt'/><Register Type='DragVertical' Modifiers='Primary "
        "Alt'/>"
        "<Drag Value='500'/><Drop Value='0'/><LabelWin Rect='1 2 3 4' Height='9'/>"
        "<ValueWin Rect='1 2 3 4' Align='Left'/><UnitsWin Rect='1 2 3 4' Bold='true'/>"
        "<BitmapWin ResID='100' NumImages='5' Rect='0 0 1 1'/>"
        "<ParamDependantGraphWin Rect='0 0 9 9' MinX='20' MaxX='20000' MinY='-12' MaxY='12' Color='#01020304'/>"
        "</P>");
    EXPECT_TRUE(problems.empty());
    const KCXMLElement written = Write(record);
    Registration back;
    EXPECT_EQ(back.ReadFromXML(written, algorithm, problems), kErr_NoErr);
    EXPECT_TRUE(problems.empty());
    ExpectEqual(back, record);
    EXPECT_EQ(back.GetHoverDelay(), 12.5);
    EXPECT_TRUE(Write(back) == written);
}

TEST_F(RegistrationDescriptionTest, EveryRegisterInfoReadsBackTheSame) {
    std::mt19937 random(7);
    std::vector<ERegisterType> named;
    for (int32_t i = 0; i < kNumRegisterTypes; ++i)
        if (*RegisterTypeName(static_cast<ERegisterType>(i)) != '\0')
            named.push_back(static_cast<ERegisterType>(i));
    for (int round = 0; round < 1000; ++round) {
        KCRegisterInfo info(named[random() % named.size()]);
        for (const ERegisterType type : named)
            if (random() % 4 == 0)
                info.SetFlag(type, true);
        KUModifiers modifiers;
        for (uint32_t i = 0; i < kNumModifiers; ++i)
            modifiers.Set(static_cast<KEModifier>(i), random() % 2 == 0);
        info.SetModifiers(modifiers);
        const KCXMLElement written = Write(Registration(&algorithm, 0, info));
        Registration back;
        EXPECT_EQ(back.ReadFromXML(written, algorithm, problems), kErr_NoErr);
        ASSERT_EQ(back.GetRegisterInfo(), info) << "round " << round;
    }
    EXPECT_TRUE(problems.empty());
}

} // namespace
} // namespace kvTest
