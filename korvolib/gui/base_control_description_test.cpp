#include <gtest/gtest.h>

#include <string>

#include <korvolib/gui/gui_test_internal.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

class BaseControlDescriptionTest : public testing::Test {
  protected:
    BaseControlDescriptionTest() : algorithm(Params()) { algorithm.FinishCreate(); }
    static std::vector<sCONTROL_PARAM> Params() {
        std::vector<sCONTROL_PARAM> params = ThreeParams();
        params.push_back(LinearParam("Band 1"));
        return params;
    }
    int32_t Read(const std::string& content) {
        problems.clear();
        return control.ReadFromXMLWithAlg(ElementFrom("<Control Name='Knob'>" + content + "</Control>"), algorithm,
                                          problems);
    }
    int32_t ReadParams(const std::string& list) { return Read("<ParameterList>" + list + "</ParameterList>"); }
    const KCParamRegistrationData& Record(size_t number) { return control.GetParamDataVec().at(number); }

    RecordingAlgorithm algorithm;
    PlainControl control;
    std::vector<sDESCRIPTION_PROBLEM> problems;
};

TEST_F(BaseControlDescriptionTest, ReadsNameFlagsAndParameters) {
    EXPECT_EQ(Read("<Flags Disabled='true' Cyclic='yes' Hidden='false'/>"
                   "<ParameterList><Parameter Name='Gain'/><Parameter Name='Mode'/></ParameterList>"),
              kErr_NoErr);
    EXPECT_TRUE(problems.empty());
    EXPECT_STREQ(control.GetNamePtr(), "Knob");
    EXPECT_TRUE(control.GetControlFlag(kControl_Disabled));
    EXPECT_TRUE(control.GetControlFlag(kControl_Cyclic));
    EXPECT_FALSE(control.GetControlFlag(kControl_Hidden));
    ASSERT_EQ(control.GetParamDataVec().size(), 2u);
    EXPECT_EQ(control.GetLeadParamIndex(), 0u);
    EXPECT_EQ(algorithm.GetParam(1)->GetObservers().size(), 1u);
}

TEST_F(BaseControlDescriptionTest, FlagsThatFollowFromTheControlAreNotRead) {
    Read("<Flags HasLead='true' NeedToResetParams='true' Nonsense='true' Disabled='maybe'/>");
    EXPECT_FALSE(control.GetControlFlag(kControl_HasLead));
    EXPECT_FALSE(control.NeedToResetParam());
    EXPECT_FALSE(control.GetControlFlag(kControl_Disabled));
    EXPECT_EQ(problems.size(), 1u);
}

TEST_F(BaseControlDescriptionTest, OtherModifiersMakeAFurtherRecordBehindTheFirst) {
    EXPECT_EQ(ReadParams("<Parameter Name='Gain' Role='X' Sensitivity='2'><LabelWin Rect='0 0 9 9'/>"
                         "<Register Type='Drag' Sensitivity='3'/>"
                         "<Register Type='Drag' Modifiers='Shift' Sensitivity='0.1'/><Register Type='Wheel'/>"
                         "<Register Type='ResetOnPress' Modifiers='Primary'/>"
                         "<Register Type='Wheel' Modifiers='Shift'/></Parameter><Parameter Name='Mode'/>"),
              kErr_NoErr);
    EXPECT_TRUE(problems.empty());
    ASSERT_EQ(control.GetParamDataVec().size(), 4u);
    EXPECT_TRUE(Record(0).IsRegisteredToType(kRegister_Drag) && Record(0).IsRegisteredToType(kRegister_Wheel));
    EXPECT_EQ(Record(0).GetSensitivity(), 3.0);
    EXPECT_EQ(Record(1).GetRegisterInfo().GetModifiers(), KUModifiers(KEModifier::Shift));
    EXPECT_TRUE(Record(1).IsRegisteredToType(kRegister_Drag) && Record(1).IsRegisteredToType(kRegister_Wheel));
    EXPECT_EQ(Record(1).GetSensitivity(), 0.1);
    EXPECT_EQ(Record(2).GetRegisterInfo(), KCRegisterInfo(kRegister_ResetOnPress, KEModifier::Primary));
    EXPECT_EQ(Record(2).GetSensitivity(), 2.0); // the parameter's own
    EXPECT_EQ(Record(2).GetRole(), "X");
    EXPECT_TRUE(Record(0).GetLabelWin().IsShown());
    EXPECT_FALSE(Record(1).GetLabelWin().IsShown() || Record(2).GetLabelWin().IsShown());
    EXPECT_EQ(Record(3).GetParamIndex(), 1u);
    EXPECT_EQ(algorithm.GetParam(0)->GetObservers().size(), 1u);
}

TEST_F(BaseControlDescriptionTest, UnknownGestureIsReportedOnce) {
    EXPECT_EQ(ReadParams("<Parameter Name='Gain'><Register Type='No' Modifiers='Alt'/><Register Type='Drag'/>"
                         "<Register Type='Never' Modifiers='Shift'/></Parameter>"),
              kErr_NoErr);
    EXPECT_EQ(problems.size(), 2u);
    ASSERT_EQ(control.GetParamDataVec().size(), 1u);
    EXPECT_EQ(Record(0).GetRegisterInfo(), KCRegisterInfo(kRegister_Drag));
}

TEST_F(BaseControlDescriptionTest, UnknownParameterLeavesTheControlOut) {
    EXPECT_EQ(ReadParams("<Parameter Name='Gain'/>\n<Parameter Name='Gian'/><Parameter/><Parameter Array='Bnd'/>"),
              kErr_BadDescription);
    ASSERT_EQ(problems.size(), 3u); // all of them, so that one look mends all
    EXPECT_EQ(problems[0].Line, 2);
    EXPECT_EQ(problems[0].Text, "no parameter is named \"Gian\"");
    EXPECT_EQ(problems[2].Text, "no parameter is named \"Bnd 1\"");
    EXPECT_TRUE(control.GetParamDataVec().empty());
    EXPECT_TRUE(algorithm.GetParam(0)->GetObservers().empty());
}

TEST_F(BaseControlDescriptionTest, ArrayBeginsWithItsFirstParameter) {
    EXPECT_EQ(ReadParams("<Parameter Array='Band'><Register Type='Drag'/></Parameter>"), kErr_NoErr);
    EXPECT_EQ(Record(0).GetParamIndex(), 3u);
    EXPECT_EQ(Record(0).GetParamArrayName(), "Band");
}

TEST_F(BaseControlDescriptionTest, ReadingAgainBeginsAnew) {
    ReadParams("<Parameter Name='Gain'/><Parameter Name='Mode'/>");
    ReadParams("<Parameter Name='Angle'/>");
    EXPECT_EQ(control.GetParamDataVec().size(), 1u);
    EXPECT_TRUE(algorithm.GetParam(0)->GetObservers().empty());
    EXPECT_EQ(algorithm.GetParam(2)->GetObservers().size(), 1u);
}

TEST_F(BaseControlDescriptionTest, WithoutAListTheRegistrationsStay) {
    ReadParams("<Parameter Name='Gain'/>");
    EXPECT_EQ(Read("<Flags Hidden='true'/>"), kErr_NoErr);
    EXPECT_EQ(control.GetParamDataVec().size(), 1u);
}

TEST_F(BaseControlDescriptionTest, WrittenControlReadsBackTheSame) {
    Read("<Flags Disabled='true' InfoFlag='true'/><ParameterList>"
         "<Parameter Name='Gain' LinkGroups='3'><Register Type='Drag'/><Register Type='Drag' Modifiers='Shift' "
         "Sensitivity='0.1'/><ValueWin Rect='1 2 3 4'/></Parameter><Parameter Array='Band'/></ParameterList>");
    KCXMLElement written;
    EXPECT_EQ(written.SetName("Control"), kErr_NoErr);
    EXPECT_EQ(control.WriteToXML(written), kErr_NoErr);
    PlainControl back;
    EXPECT_EQ(back.ReadFromXMLWithAlg(written, algorithm, problems), kErr_NoErr);
    EXPECT_TRUE(problems.empty());
    KCXMLElement again;
    EXPECT_EQ(again.SetName("Control"), kErr_NoErr);
    EXPECT_EQ(back.WriteToXMLWithAlg(again, algorithm), kErr_NoErr);
    EXPECT_TRUE(again == written);
    ASSERT_EQ(back.GetParamDataVec().size(), 3u);
    EXPECT_EQ(back.GetParamData(1)->GetSensitivity(), 0.1);
    EXPECT_TRUE(back.GetControlFlag(kControl_InfoFlag));
}

TEST_F(BaseControlDescriptionTest, ControlWithoutAnAlgorithmIsNotWritten) {
    KCXMLElement element = ElementFrom("<Control/>");
    EXPECT_EQ(control.WriteToXML(element), kErr_NullArgument);
}

TEST_F(BaseControlDescriptionTest, DerivedControlReplacesTheReadingOfEither) {
    struct Own : PlainControl {
        int32_t ReadFromXMLFlags(const KCXMLElement&, Problems&) override { return kErr_NoErr; }
        int32_t ReadFromXMLParameterList(const KCXMLElement&, cALGORITHM& from, Problems&) override {
            return Register(&from, 2, KCRegisterInfo());
        }
    } own;
    const KCXMLElement element =
        ElementFrom("<C><Flags Hidden='true'/><ParameterList><Parameter Name='Gain'/></ParameterList></C>");
    EXPECT_EQ(own.ReadFromXMLWithAlg(element, algorithm, problems), kErr_NoErr);
    EXPECT_FALSE(own.GetControlFlag(kControl_Hidden));
    EXPECT_EQ(own.GetLeadParamIndex(), 2u);
}

} // namespace
} // namespace kvTest
