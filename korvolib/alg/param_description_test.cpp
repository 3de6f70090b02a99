#include <korvolib/alg/param_description.h>

#include <limits>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <korvolib/utilities/xml/xml_element.h>
#include <tests/support/source_file.h>

using namespace kvKorvoV12_9_0_320;

namespace {

double Half(double x, sSCALE_INFO* scale) { return x * 0.5 + scale->c; }
double Twice(double x, sSCALE_INFO* scale) { return (x - scale->c) * 2.0; }

UserScaleFunctionsMap UserScales() {
    UserScaleFunctionsMap scales;
    scales[KCFixedString<127>("half")] = {Half, Twice, kParamType_Continuous};
    scales[KCFixedString<127>("steps")] = {ToggleRangesScale, InverseToggleRangesScale, kParamType_Discrete};
    return scales;
}

struct Result {
    int32_t Code = 0;
    std::vector<sCONTROL_PARAM> Params;
    std::vector<sDESCRIPTION_PROBLEM> Problems;

    // Each problem as "line: text".
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const sDESCRIPTION_PROBLEM& problem : Problems)
            texts.push_back(std::to_string(problem.Line) + ": " + problem.Text.c_str());
        return texts;
    }
};

Result Read(const std::string& xml) {
    Result result;
    result.Code = ReadParamDescription(xml.data(), xml.size(), UserScales(), result.Params, result.Problems);
    return result;
}

// One parameter named P with these children.
Result ReadOne(const std::string& children) {
    Result result = Read("<Params><Param Name='P'>" + children + "</Param></Params>");
    EXPECT_EQ(result.Params.size(), 1u);
    return result;
}

std::string ExampleOfTheGuide() {
    const std::string text = kvTest::ReadSourceFile("docs/parameter-description.md"), fence = "```xml\n";
    const size_t begin = text.find(fence) + fence.size();
    return text.substr(begin, text.find("```", begin) - begin);
}

const sCONTROL_PARAM& Find(const std::vector<sCONTROL_PARAM>& params, const char* name) {
    for (const sCONTROL_PARAM& param : params)
        if (param.GetName() == name)
            return param;
    ADD_FAILURE() << "no parameter " << name;
    return params.front();
}

void ExpectEqual(const sCONTROL_PARAM& a, const sCONTROL_PARAM& b) {
    const sSCALE_INFO &x = a.GetScale(), &y = b.GetScale();
    EXPECT_EQ(a.GetName(), b.GetName());
    EXPECT_EQ(a.GetLabelString(), b.GetLabelString());
    EXPECT_EQ(a.GetUnitsString(), b.GetUnitsString());
    EXPECT_EQ(a.GetFlags(), b.GetFlags());
    EXPECT_EQ(a.GetType(), b.GetType());
    EXPECT_EQ(a.GetScaleType(), b.GetScaleType());
    EXPECT_TRUE(x.a == y.a && x.b == y.b && x.c == y.c && x.Quantize == y.Quantize) << a.GetName().c_str();
    EXPECT_EQ(x.RealWorldPoints, y.RealWorldPoints);
    EXPECT_EQ(x.StatePoints, y.StatePoints);
    EXPECT_EQ(a.GetScaleFunction(), b.GetScaleFunction());
    EXPECT_EQ(a.GetInverseScaleFunction(), b.GetInverseScaleFunction());
    EXPECT_EQ(a.GetNumStates(), b.GetNumStates());
    EXPECT_EQ(a.GetStateStep(), b.GetStateStep());
    EXPECT_EQ(a.GetInitialState(), b.GetInitialState());
    EXPECT_EQ(a.GetResetState(), b.GetResetState());
}

Result ReadBack(const std::vector<sCONTROL_PARAM>& params) {
    KCXMLElement root;
    KCStMemObj text;
    EXPECT_EQ(WriteParamDescription(params, root), kErr_NoErr);
    EXPECT_EQ(root.Write(text), kErr_NoErr);
    return Read(std::string(static_cast<const char*>(static_cast<const void*>(text.GetData())), text.GetSize()));
}

} // namespace

TEST(ParamDescription, TheExampleOfTheGuideHasEveryScaleAndNoProblem) {
    const Result result = Read(ExampleOfTheGuide());
    EXPECT_EQ(result.Code, kErr_NoErr);
    EXPECT_THAT(result.Texts(), testing::IsEmpty());
    ASSERT_EQ(result.Params.size(), 8u);
    EXPECT_EQ(Find(result.Params, "Input Gain").GetRealWorld(kPluginSetup_A), 0.0);
    EXPECT_EQ(Find(result.Params, "Input Gain").GetStateStep(), 10.0);
    EXPECT_EQ(Find(result.Params, "Bell Frequency").GetRealWorld(kPluginSetup_B), 1000.0);
    EXPECT_EQ(Find(result.Params, "Low Cut").StateToRealWorld(250.0), 200.0);
    EXPECT_EQ(Find(result.Params, "Slope").GetNumStates(), 4);
    EXPECT_EQ(Find(result.Params, "Slope").GetState(kPluginSetup_A), 1.0);
    EXPECT_EQ(Find(result.Params, "Threshold").GetFlags(), 0x10000080u);
    EXPECT_EQ(Find(result.Params, "Threshold").StateToRealWorld(250.0), -40.0);
    EXPECT_EQ(Find(result.Params, "Ratio").StateToRealWorld(600.0), 4.0);
    EXPECT_EQ(Find(result.Params, "Detector").GetRealWorld(kPluginSetup_A), 4.0);
    EXPECT_EQ(Find(result.Params, "Bypass").GetNumStates(), 2);
}

TEST(ParamDescription, TheExampleOfTheGuideReadsBackAsItWasWritten) {
    const Result first = Read(ExampleOfTheGuide());
    const Result second = ReadBack(first.Params);
    EXPECT_THAT(second.Texts(), testing::IsEmpty());
    ASSERT_EQ(second.Params.size(), first.Params.size());
    for (size_t i = 0; i < first.Params.size(); ++i)
        ExpectEqual(first.Params[i], second.Params[i]);
}

TEST(ParamDescription, EveryFlagOfTheGuideIsOneOfOurs) {
    for (const sPARAM_FLAG_NAME& flag : kParamFlagNames)
        EXPECT_EQ(
            ReadOne(std::string("<Flags>") + flag.Name + "</Flags><ScaleType Type='none'/>").Params[0].GetFlags(),
            flag.Mask);
}

TEST(ParamDescription, LinearAndLogarithmicGoThroughTheSetUps) {
    const std::string range = "<Minimum>2</Minimum><Maximum>50</Maximum><Resolution>2</Resolution>";
    sCONTROL_PARAM linear, logarithmic;
    linear.SetScaleLin(2.0, 50.0, 2.0);
    logarithmic.SetScaleLog(2.0, 50.0, 2.0);
    linear.SetName(KCFixedString<7>("P"));
    logarithmic.SetName(KCFixedString<7>("P"));
    ExpectEqual(ReadOne(range + "<ScaleType Type='linear'/>").Params[0], linear);
    ExpectEqual(ReadOne(range + "<ScaleType Type='logarithmic'/>").Params[0], logarithmic);
}

TEST(ParamDescription, AToggleCountsInNumStatesOrMinimum) {
    EXPECT_EQ(ReadOne("<NumStates>3</NumStates><ScaleType Type='toggle'/>").Params[0].GetScale().a, 3.0);
    EXPECT_EQ(ReadOne("<Minimum>5</Minimum><ScaleType Type='toggle'/>").Params[0].GetNumStates(), 5);
    const Result none = ReadOne("<ScaleType Type='toggle'/>");
    EXPECT_EQ(none.Code, kErr_BadDescription);
    EXPECT_EQ(none.Params[0].GetNumStates(), 0);
}

TEST(ParamDescription, RangesKeepTheirCoefficients) {
    const Result result = ReadOne("<Minimum>1</Minimum><Maximum>2</Maximum><Var>3</Var><Resolution>0.5</Resolution>"
                                  "<ScaleType Type='frequency'/>");
    const sSCALE_INFO& scale = result.Params[0].GetScale();
    EXPECT_TRUE(scale.a == 1.0 && scale.b == 2.0 && scale.c == 3.0 && scale.Quantize == 0.5);
    EXPECT_EQ(scale.OverQuantize, 2.0);
}

TEST(ParamDescription, RangesAreContinuousAndTogglesDiscreteWithAsManyStatesAsPoints) {
    const char* const pairs =
        "<State>0</State><RealWorld>1</RealWorld><State>1</State><RealWorldExact>2</RealWorldExact>";
    const auto read = [&](const char* type) {
        return ReadOne(std::string("<ScaleType Type='") + type + "'>" + pairs + "</ScaleType>").Params[0];
    };
    EXPECT_EQ(read("linearRanges").GetType(), kParamType_Continuous);
    EXPECT_EQ(read("linearRangesWithRounding").GetType(), kParamType_Continuous);
    EXPECT_EQ(read("toggleMap").GetType(), kParamType_Discrete);
    EXPECT_EQ(read("toggleMap").GetNumStates(), 2);
    EXPECT_EQ(read("toggleMap").GetStateStep(), 1.0);
}

TEST(ParamDescription, ToggleRangesReadNoStates) {
    const Result result = ReadOne("<ScaleType Type='toggleRanges'><State>0</State><RealWorld>6</RealWorld>"
                                  "<RealWorld>12</RealWorld></ScaleType>");
    EXPECT_TRUE(result.Params[0].GetScale().StatePoints.empty());
    EXPECT_EQ(result.Params[0].GetNumStates(), 2);
    EXPECT_THAT(result.Texts(), testing::ElementsAre("1: P: unknown element State in ScaleType"));
}

TEST(ParamDescription, AnyOtherTypeIsTheOneThatThePlugInSupplies) {
    const sCONTROL_PARAM half = ReadOne("<Var>7</Var><ScaleType Type='half'/>").Params[0];
    EXPECT_EQ(half.StateToRealWorld(10.0), 12.0);
    EXPECT_EQ(half.RealWorldToState(12.0), 10.0);
    EXPECT_EQ(half.GetScaleType(), "half");
    const sCONTROL_PARAM steps =
        ReadOne("<ScaleType Type='steps'><RealWorld>5</RealWorld><RealWorld>9</RealWorld></ScaleType>").Params[0];
    EXPECT_TRUE(steps.IsDiscrete());
    EXPECT_EQ(steps.GetNumStates(), 2);
    EXPECT_EQ(steps.StateToRealWorld(1.0), 9.0);
}

TEST(ParamDescription, AnUnknownTypeLeavesTheParameterWithoutAScale) {
    const Result result = ReadOne("\n<ScaleType Type='wavy'/>");
    EXPECT_EQ(result.Code, kErr_BadDescription);
    EXPECT_EQ(result.Params[0].StateToRealWorld(500.0), 0.0);
    EXPECT_THAT(result.Texts(), testing::ElementsAre("2: P: unknown scale type wavy, it has no scale"));
    EXPECT_THAT(ReadOne("").Texts(), testing::ElementsAre("1: P: without a ScaleType it has no scale"));
    EXPECT_THAT(ReadOne("<ScaleType Type='none'/>").Texts(), testing::IsEmpty());
}

TEST(ParamDescription, WithoutANameOfItsOwnAParameterIsLeftOut) {
    const Result result =
        Read("<Params>\n<Param/>\n<Param Name=''/>\n<Param Name='A'><ScaleType Type='none'/></Param>\n"
             "<Param Name='A'/>\n<Param Name='B'><ScaleType Type='none'/></Param></Params>");
    EXPECT_EQ(result.Code, kErr_BadDescription);
    ASSERT_EQ(result.Params.size(), 2u);
    EXPECT_EQ(result.Params[1].GetName(), "B");
    EXPECT_THAT(result.Texts(), testing::ElementsAre("2: a parameter without a name is left out",
                                                     "3: a parameter without a name is left out",
                                                     "5: A: a second parameter of this name is left out"));
}

TEST(ParamDescription, NamesThatAreCutAlikeAreTheSame) {
    const std::string stem(127, 'x');
    const Result result = Read("<Params><Param Name='" + stem + "1'><ScaleType Type='none'/></Param><Param Name='" +
                               stem + "2'/></Params>");
    ASSERT_EQ(result.Params.size(), 1u);
    EXPECT_EQ(result.Params[0].GetName(), stem);
    EXPECT_EQ(result.Problems.size(), 3u); // cut, cut, and the second left out
}

TEST(ParamDescription, ABadNumberIsReportedAndCountsAsZeroOrAsItsBeginning) {
    const Result result = ReadOne("<Minimum>low</Minimum>\n<Maximum>10 dB</Maximum><Resolution>1e999</Resolution>"
                                  "<ScaleType Type='linear'/>");
    double min = 1, max = 1, resolution = 1;
    EXPECT_TRUE(result.Params[0].GetScaleLin(min, max, resolution));
    EXPECT_TRUE(min == 0.0 && max == 10.0 && resolution == 0.0);
    EXPECT_THAT(result.Texts(), testing::ElementsAre("1: P: Minimum \"low\" is no number, 0 is taken",
                                                     "2: P: Maximum \"10 dB\" is more than a number, 10 is taken",
                                                     "2: P: Resolution \"1e999\" is no number, 0 is taken"));
}

TEST(ParamDescription, WhatAScaleLacksIsReported) {
    EXPECT_THAT(ReadOne("<Maximum>1</Maximum><ScaleType Type='linear'/>").Texts(),
                testing::ElementsAre("1: P: its scale lacks a Minimum, 0 is taken"));
    EXPECT_THAT(ReadOne("<Minimum>0</Minimum><Maximum>1</Maximum><ScaleType Type='logarithmic'/>").Texts(),
                testing::ElementsAre("1: P: a logarithmic scale needs a Minimum and a Maximum above 0"));
    EXPECT_THAT(ReadOne("<ScaleType Type='linearRanges'/>").Texts(),
                testing::ElementsAre("1: P: a scale of type linearRanges needs points"));
}

TEST(ParamDescription, PointsThatDoNotFitAreReportedAndTheirCommonPartCounts) {
    const Result result = ReadOne("<ScaleType Type='toggleMap'><State>0</State><State>1</State>"
                                  "<RealWorld>5</RealWorld></ScaleType>");
    EXPECT_EQ(result.Params[0].GetNumStates(), 1);
    EXPECT_THAT(result.Texts(),
                testing::ElementsAre("1: P: it has 1 real-world points for 2 states, the common part is used"));
}

TEST(ParamDescription, PointsOutOfOrderAreReported) {
    EXPECT_THAT(ReadOne("<ScaleType Type='linearRanges'><State>9</State><RealWorld>1</RealWorld><State>0</State>"
                        "<RealWorld>2</RealWorld></ScaleType>")
                    .Texts(),
                testing::ElementsAre("1: P: its State points do not ascend"));
    EXPECT_THAT(
        ReadOne("<ScaleType Type='toggleRanges'><RealWorld>2</RealWorld><RealWorld>1</RealWorld></ScaleType>")
            .Texts(),
        testing::ElementsAre("1: P: its real-world points do not ascend"));
}

TEST(ParamDescription, UnknownAndRepeatedElementsAreReported) {
    const Result result = Read("<Params><Parm/><Param Name='P'><Unit>dB</Unit><Units>a</Units><Units>b</Units>"
                               "<ScaleType Type='none'/></Param></Params>");
    EXPECT_EQ(result.Params[0].GetUnitsString(), "a");
    EXPECT_THAT(result.Texts(), testing::ElementsAre("1: unknown element Parm", "1: P: unknown element Unit",
                                                     "1: P: a second Units is not read"));
}

TEST(ParamDescription, FlagsAreNamesAndNumbers) {
    const Result result = ReadOne("<Flags>Lab,0x20|16\n 0XF0000000 </Flags><ScaleType Type='none'/>");
    EXPECT_EQ(result.Params[0].GetFlags(), 0xF0004030u);
    EXPECT_THAT(result.Texts(), testing::IsEmpty());
}

TEST(ParamDescription, UnknownFlagsAreReportedAndLeftOut) {
    const Result result =
        ReadOne("<Flags>lab 0x 0x1G 4294967296 -1 99999999999999999999999 4</Flags><ScaleType Type='none'/>");
    EXPECT_EQ(result.Params[0].GetFlags(), 4u);
    EXPECT_EQ(result.Problems.size(), 6u);
}

TEST(ParamDescription, DefaultsFillBothSetupsAndTheReset) {
    const std::string scale = "<Minimum>0</Minimum><Maximum>10</Maximum><Resolution>0.1</Resolution>"
                              "<ScaleType Type='linear'/>";
    const sCONTROL_PARAM param = ReadOne(scale + "<Default Type='double'>0.5</Default>").Params[0];
    EXPECT_EQ(param.GetInitialState(), 500.0);
    EXPECT_EQ(param.GetResetState(), 500.0);
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B}) {
        EXPECT_EQ(param.GetState(setup), 500.0);
        EXPECT_EQ(param.GetRealWorld(setup), 5.0);
    }
    EXPECT_EQ(param.GetValueString(), "5.0");
    EXPECT_EQ(ReadOne(scale + "<Reset Type='state'>100</Reset>").Params[0].GetResetState(), 100.0);
    EXPECT_EQ(ReadOne(scale).Params[0].GetInitialState(), 0.0);
}

TEST(ParamDescription, ADefaultBeyondTheEndsIsTheEnd) {
    const std::string scale = "<Minimum>0.004</Minimum><Maximum>0.018</Maximum><Resolution>0.01</Resolution>"
                              "<ScaleType Type='linear'/>"; // the ends round to 0 and 0.02
    EXPECT_EQ(ReadOne(scale + "<Default>0</Default>").Params[0].GetInitialState(), 0.0);
    EXPECT_EQ(ReadOne(scale + "<Default>9</Default>").Params[0].GetInitialState(), 1000.0);
}

TEST(ParamDescription, ADefaultOfAnUnknownTypeIsTheStart) {
    const Result result = ReadOne("<Minimum>1</Minimum><Maximum>2</Maximum><ScaleType Type='linear'/>"
                                  "<Default Type='percent'>50</Default>");
    EXPECT_EQ(result.Params[0].GetRealWorld(kPluginSetup_A), 1.0);
    EXPECT_THAT(result.Texts(),
                testing::ElementsAre("1: P: unknown type percent of a Default, its start is taken"));
}

TEST(ParamDescription, StepsThatCannotBeAreReportedAndNotTaken) {
    const Result result = ReadOne("<StateStep>0</StateStep><NumStates>-1</NumStates><ScaleType Type='none'/>");
    EXPECT_EQ(result.Params[0].GetStateStep(), 1.0);
    EXPECT_EQ(result.Params[0].GetNumStates(), 0);
    EXPECT_EQ(result.Problems.size(), 2u);
}

TEST(ParamDescription, TextThatIsNoXMLIsOneProblem) {
    const Result result = Read("<Params>\n<Param></Params>");
    EXPECT_EQ(result.Code, kErr_MalformedText);
    EXPECT_TRUE(result.Params.empty());
    ASSERT_EQ(result.Problems.size(), 1u);
    EXPECT_EQ(result.Problems[0].Line, 2);
    EXPECT_FALSE(result.Problems[0].Text.empty());
    EXPECT_NE(Read("").Code, kErr_NoErr);
}

TEST(ParamDescription, AnEarlierResultIsNotKept) {
    Result result = ReadOne("");
    EXPECT_EQ(ReadParamDescription(KCXMLElement(), {}, result.Params, result.Problems), kErr_NoErr);
    EXPECT_TRUE(result.Params.empty() && result.Problems.empty());
}

TEST(ParamDescription, ProblemsWithoutEndAreNotListedWithoutEnd) {
    std::string xml = "<Params>";
    for (size_t i = 0; i < kMaxListedProblems + 5; ++i)
        xml += "<X/>";
    const Result result = Read(xml + "</Params>");
    EXPECT_EQ(result.Problems.size(), kMaxListedProblems + 1);
    EXPECT_EQ(result.Problems.back().Text, "there are more problems than are listed");
}

TEST(ParamDescription, ParametersWithoutEndAreNotRead) {
    std::string xml = "<Params>";
    for (size_t i = 0; i < kMaxDescribedParams + 2; ++i)
        xml += "<Param Name='" + std::to_string(i) + "'><ScaleType Type='none'/></Param>";
    const Result result = Read(xml + "</Params>");
    EXPECT_EQ(result.Params.size(), kMaxDescribedParams);
    EXPECT_EQ(result.Problems.size(), 1u);
}

TEST(ParamDescription, RandomParametersReadBackAsTheyWereWritten) {
    std::mt19937_64 engine(15);
    std::uniform_real_distribution<double> ends(0.001, 1000.0), states(0.0, 1000.0);
    std::vector<sCONTROL_PARAM> params;
    for (int i = 0; i < 2000; ++i) {
        sCONTROL_PARAM& param = params.emplace_back(KCFixedString<127>(std::to_string(i).c_str()));
        param.SetFlags(static_cast<uint32_t>(engine()));
        if (i % 3 == 0)
            param.SetScaleLin(ends(engine) - 500.0, ends(engine), 0.01);
        else if (i % 3 == 1)
            param.SetScaleLog(ends(engine), ends(engine), 0.0);
        else
            param.SetScaleToggle(1 + i % 9);
        param.SetStateStep(ends(engine));
        double state = 0.0, realWorld = 0.0;
        param.SetScaleDefaults(param.StateToRealWorld(states(engine)), KCFixedString<31>("RealWorldExact"), state,
                               realWorld);
        param.SetInitialState(ClampState(state));
        param.SetResetState(i % 2 == 0 ? 0.0 : states(engine));
    }
    const Result result = ReadBack(params);
    EXPECT_THAT(result.Texts(), testing::IsEmpty());
    ASSERT_EQ(result.Params.size(), params.size());
    for (size_t i = 0; i < params.size(); ++i)
        ExpectEqual(params[i], result.Params[i]);
}

TEST(ParamDescription, WhatXMLCannotCarryIsRefusedWhole) {
    std::vector<sCONTROL_PARAM> params(1);
    KCXMLElement root;
    params[0].SetName(KCFixedString<127>("P"));
    params[0].SetScaleLin(0.0, std::numeric_limits<double>::infinity(), 0.1);
    EXPECT_EQ(WriteParamDescription(params, root), kErr_BadDescription);
    EXPECT_TRUE(root.IsEmpty());
    params[0].SetScaleLin(0.0, 1.0, 0.1);
    params[0].SetName(KCFixedString<127>("\xFF"));
    EXPECT_EQ(WriteParamDescription(params, root), kErr_BadDescription);
    params[0].SetName(KCFixedString<127>("P"));
    EXPECT_EQ(WriteParamDescription(params, root), kErr_NoErr);
}
