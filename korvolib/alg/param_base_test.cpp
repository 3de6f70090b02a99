#include <korvolib/alg/param_base.h>

#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include <tests/support/allocation_count.h>

using namespace kvKorvoV12_9_0_320;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr EPluginSetup kNoSetup = static_cast<EPluginSetup>(2);

KCParam_Base Linear(double min, double max, double quantize) {
    KCParam_Base param;
    param.SetScaleLin(min, max, quantize);
    return param;
}

KCParam_Base Logarithmic(double min, double max, double quantize) {
    KCParam_Base param;
    param.SetScaleLog(min, max, quantize);
    return param;
}

KCParam_Base Toggle(int numStates) {
    KCParam_Base param;
    param.SetScaleToggle(numStates);
    return param;
}

KCParam_Base SlopeMap() {
    KCParam_Base param;
    sSCALE_INFO scale;
    scale.Quantize = 1.0;
    scale.RealWorldPoints = {6, 12, 18, 24};
    param.SetScaleGeneric(kParamType_Discrete, KCFixedString<127>("toggleRanges"), scale, ToggleRangesScale,
                          InverseToggleRangesScale);
    param.SetNumStates(4);
    return param;
}

double Half(double x, sSCALE_INFO*) { return x * 0.5; }
double Twice(double x, sSCALE_INFO*) { return x * 2.0; }

struct Default {
    int Result;
    double State;
    double RealWorld;
};

Default DefaultOf(const KCParam_Base& param, double value, const char* type, double before = 0.0) {
    Default result{0, before, -1.0};
    result.Result = param.SetScaleDefaults(value, KCFixedString<31>(type), result.State, result.RealWorld);
    return result;
}

} // namespace

TEST(ParamBase, AFreshRecordIsEmptyWithAStateStepOfOne) {
    const KCParam_Base param;
    EXPECT_EQ(param.GetStateStep(), 1.0);
    EXPECT_EQ(param.GetType(), kParamType_Discrete);
    EXPECT_EQ(param.GetFlags(), 0u);
    EXPECT_EQ(param.GetRefreshMark(), 0);
    EXPECT_EQ(param.GetNumStates(), 0);
    EXPECT_EQ(param.GetScaleFunction(), nullptr);
    EXPECT_EQ(param.GetInverseScaleFunction(), nullptr);
    EXPECT_TRUE(param.GetName().empty() && param.GetScaleType().empty() && param.GetValueString().empty());
}

TEST(ParamBase, WhatAnUpdateTouchesFitsTwoCacheLines) {
    const KCParam_Base param;
    const auto begin = reinterpret_cast<std::uintptr_t>(&param);
    const auto lastCoefficient = reinterpret_cast<std::uintptr_t>(&param.GetScale().OverQuantize);
    EXPECT_EQ(begin % 64, 0u);
    EXPECT_LE(lastCoefficient + sizeof(double) - begin, 128u);
}

TEST(ParamBase, ScaleLinRunsFromMinToMax) {
    const KCParam_Base param = Linear(-60.0, 12.0, 0.1);
    EXPECT_EQ(param.GetType(), kParamType_Continuous);
    EXPECT_EQ(param.GetScaleType(), "linear");
    EXPECT_EQ(param.GetScale().ScaleTypeName, "linear");
    EXPECT_EQ(param.GetScale().a, -60.0);
    EXPECT_EQ(param.GetScale().b, 72.0 * 0.001);
    EXPECT_EQ(param.GetScale().c, 0.0);
    EXPECT_EQ(param.GetScale().OverQuantize, 1.0 / 0.1);
    EXPECT_EQ(param.StateToRealWorld(0.0), -60.0);
    EXPECT_EQ(param.StateToRealWorld(1000.0), 12.0);
}

TEST(ParamBase, ScaleLogRunsFromMinToMaxInEqualRatios) {
    const KCParam_Base param = Logarithmic(20.0, 20000.0, 0.01);
    EXPECT_EQ(param.GetType(), kParamType_Continuous);
    EXPECT_EQ(param.GetScaleType(), "logarithmic");
    EXPECT_EQ(param.GetScale().b, std::pow(1000.0, 0.001));
    EXPECT_EQ(param.StateToRealWorld(0.0), 20.0);
    EXPECT_NEAR(param.StateToRealWorld(1000.0), 20000.0, 1e-6);
    EXPECT_NEAR(param.StateToRealWorld(500.0), std::sqrt(20.0 * 20000.0), 0.01);
}

TEST(ParamBase, ScaleToggleCountsItsStates) {
    const KCParam_Base param = Toggle(3);
    EXPECT_EQ(param.GetType(), kParamType_Discrete);
    EXPECT_EQ(param.GetScaleType(), "toggle");
    EXPECT_EQ(param.GetNumStates(), 3);
    EXPECT_EQ(param.GetScale().a, 3.0);
    EXPECT_EQ(param.GetScale().b, 0.0);
    EXPECT_EQ(param.GetScale().Quantize, 1.0);
    EXPECT_EQ(param.GetScale().OverQuantize, 1.0);
    EXPECT_EQ(param.StateToRealWorld(2.0), 2.0);
    EXPECT_EQ(param.StateToRealWorld(3.0), 0.0);
}

TEST(ParamBase, NoStatesAreZeroStates) {
    for (const int count : {0, -3}) {
        const KCParam_Base param = Toggle(count);
        EXPECT_EQ(param.GetNumStates(), 0);
        EXPECT_EQ(param.StateToRealWorld(2.0), 0.0);
    }
}

TEST(ParamBase, AResolutionAboveOneRoundsWholeValues) {
    EXPECT_EQ(Linear(0, 10, 1.0).GetScaleFunction(), &LinearScale);
    EXPECT_EQ(Linear(0, 10, 1.01).GetScaleFunction(), &ExtendedResLinearScale);
    EXPECT_EQ(Logarithmic(1, 10, 1.0).GetScaleFunction(), &LogScale);
    EXPECT_EQ(Logarithmic(1, 10, 1.01).GetScaleFunction(), &ExtendedResLogScale);
}

TEST(ParamBase, ALinearScaleOfTenInTenthsOrInTwos) {
    const KCParam_Base tenths = Linear(0.0, 10.0, 0.1);
    EXPECT_EQ(tenths.StateToRealWorld(500.0), 5.0);
    EXPECT_EQ(tenths.StateToRealWorld(1000.0), 10.0);
    EXPECT_EQ(Linear(0.0, 10.0, 2.0).StateToRealWorld(333.0), 4.0);
}

TEST(ParamBase, StatesBeyondTheEndsCountAsTheEnds) {
    for (const KCParam_Base& param : {Linear(-3, 9, 0.1), Logarithmic(20, 20000, 1), Toggle(7), SlopeMap()}) {
        EXPECT_EQ(param.StateToRealWorld(-5.0), param.StateToRealWorld(0.0));
        EXPECT_EQ(param.StateToRealWorld(1200.0), param.StateToRealWorld(1000.0));
        EXPECT_EQ(param.StateToRealWorld(kInf), param.StateToRealWorld(1000.0));
    }
}

TEST(ParamBase, NotANumberConvertsToZero) {
    for (const KCParam_Base& param : {Linear(5, 9, 0.1), Toggle(7), SlopeMap()}) {
        EXPECT_EQ(param.StateToRealWorld(kNaN), 0.0);
        EXPECT_EQ(param.RealWorldToState(kNaN), 0.0);
    }
}

TEST(ParamBase, WithoutAScaleEverythingConvertsToZero) {
    const KCParam_Base param;
    double limited = 7.0;
    param.LimitRealWorld(limited);
    EXPECT_EQ(limited, 0.0);
    EXPECT_EQ(param.StateToRealWorld(500.0), 0.0);
    EXPECT_EQ(param.RealWorldToState(7.0), 0.0);
}

TEST(ParamBase, TheInverseAloneDoesNotConvert) {
    KCParam_Base param;
    param.SetScaleGeneric(kParamType_Continuous, KCFixedString<127>("half"), {}, nullptr, Twice);
    EXPECT_EQ(param.RealWorldToState(7.0), 0.0);
}

TEST(ParamBase, AMissingInverseGivesStateZero) {
    KCParam_Base param;
    param.SetScaleGeneric(kParamType_Continuous, KCFixedString<127>("half"), {}, Half, nullptr);
    EXPECT_EQ(param.StateToRealWorld(10.0), 5.0);
    EXPECT_EQ(param.RealWorldToState(5.0), 0.0);
}

TEST(ParamBase, TheInverseIsNotLimited) {
    EXPECT_DOUBLE_EQ(Linear(0, 10, 0.1).RealWorldToState(20.0), 2000.0);
    EXPECT_DOUBLE_EQ(Linear(0, 10, 0.1).RealWorldToState(-1.0), -100.0);
}

TEST(ParamBase, ScalesWithoutARangeAreConstant) {
    EXPECT_EQ(Linear(5, 5, 0.1).StateToRealWorld(700.0), 5.0);
    EXPECT_EQ(Linear(5, 5, 0.1).RealWorldToState(7.0), 0.0);
    EXPECT_EQ(Logarithmic(5, 5, 0.1).StateToRealWorld(700.0), 5.0);
    EXPECT_EQ(Logarithmic(5, 5, 0.1).RealWorldToState(7.0), 0.0);
}

TEST(ParamBase, ALogRangeThroughZeroIsZeroOrItsFirstPoint) {
    for (const double state : {0.0, 1.0, 500.0, 1000.0}) {
        EXPECT_EQ(Logarithmic(0, 10, 0.1).StateToRealWorld(state), 0.0);
        EXPECT_EQ(Logarithmic(-10, 10, 0.1).StateToRealWorld(state), state == 0.0 ? -10.0 : 0.0);
        EXPECT_EQ(Logarithmic(0, 0, 0.1).StateToRealWorld(state), 0.0);
        EXPECT_EQ(Logarithmic(10, 0, 0.1).StateToRealWorld(state), state == 0.0 ? 10.0 : 0.0);
    }
    EXPECT_EQ(Logarithmic(0, 10, 0.1).RealWorldToState(5.0), 0.0);
    EXPECT_EQ(Logarithmic(-10, 10, 0.1).RealWorldToState(5.0), 0.0);
}

TEST(ParamBase, ScalesMayDescend) {
    const KCParam_Base param = Linear(10.0, -10.0, 0.5);
    EXPECT_EQ(param.StateToRealWorld(0.0), 10.0);
    EXPECT_EQ(param.StateToRealWorld(1000.0), -10.0);
    EXPECT_EQ(param.RealWorldToState(5.0), 250.0);
}

TEST(ParamBase, ATravelFromMinusXToPlusXIsSymmetric) {
    EXPECT_TRUE(Linear(-24.0, 24.0, 0.01).IsSymmetricUpTo(1000.0));
    EXPECT_FALSE(Linear(-24.0, 24.5, 0.01).IsSymmetricUpTo(1000.0));
    EXPECT_FALSE(Linear(0.0, 24.0, 0.01).IsSymmetricUpTo(1000.0));
    EXPECT_FALSE(Linear(24.0, -24.0, 0.01).IsSymmetricUpTo(1000.0));
    EXPECT_FALSE(Linear(0.0, 0.0, 0.01).IsSymmetricUpTo(1000.0));
    EXPECT_FALSE(Logarithmic(20.0, 20000.0, 0.01).IsSymmetricUpTo(1000.0));
    EXPECT_FALSE(KCParam_Base().IsSymmetricUpTo(1000.0));
}

TEST(ParamBase, APartOfTheTravelHasASymmetryOfItsOwn) {
    const KCParam_Base param = Linear(-10.0, 30.0, 0.01);
    EXPECT_TRUE(param.IsSymmetricUpTo(500.0));
    EXPECT_FALSE(param.IsSymmetricUpTo(1000.0));
    EXPECT_FALSE(param.IsSymmetricUpTo(499.0));
}

TEST(ParamBase, EveryNewScaleTellsItsSymmetryAnew) {
    KCParam_Base param = Linear(-24.0, 24.0, 0.01);
    sSCALE_INFO scale = param.GetScale();
    scale.a = 0.0;
    param.SetScale(scale);
    EXPECT_FALSE(param.IsSymmetricUpTo(1000.0));
    param.SetScaleLin(-1.0, 1.0, 0.01);
    EXPECT_TRUE(param.IsSymmetricUpTo(1000.0));
    param.SetScaleLog(1.0, 2.0, 0.01);
    EXPECT_FALSE(param.IsSymmetricUpTo(1000.0));
    param.SetScaleLin(-1.0, 1.0, 0.01);
    param.SetScaleToggle(3);
    EXPECT_FALSE(param.IsSymmetricUpTo(1000.0));
}

TEST(ParamBase, InversesReturnToTheStateWithinTheResolution) {
    std::mt19937_64 engine(7);
    std::uniform_real_distribution<double> states(0.0, 1000.0), ends(0.01, 100.0);
    for (int i = 0; i < 20000; ++i) {
        const double low = ends(engine), high = low * 2.0 + ends(engine), state = states(engine);
        const KCParam_Base linear = Linear(low, high, 0.001), logarithmic = Logarithmic(low, high, 0.0);
        ASSERT_NEAR(linear.RealWorldToState(linear.StateToRealWorld(state)), state, 0.51 / (high - low) + 1e-9);
        ASSERT_NEAR(logarithmic.RealWorldToState(logarithmic.StateToRealWorld(state)), state, 1e-8);
    }
}

TEST(ParamBase, SetUpsReadBackAsTheyWereGiven) {
    double min = 0, max = 0, quantize = 0;
    EXPECT_TRUE(Linear(-0.3, 12.7, 0.1).GetScaleLin(min, max, quantize));
    EXPECT_EQ(min, -0.3);
    EXPECT_EQ(max, 12.7);
    EXPECT_EQ(quantize, 0.1);
    EXPECT_TRUE(Logarithmic(20, 19876.5, 2.0).GetScaleLog(min, max, quantize));
    EXPECT_EQ(max, 19876.5);
    int numStates = 0;
    EXPECT_TRUE(Toggle(5).GetScaleToggle(numStates));
    EXPECT_EQ(numStates, 5);
}

TEST(ParamBase, AnotherScaleReadsBackAsZeros) {
    double min = 1, max = 1, quantize = 1;
    int numStates = 1;
    EXPECT_FALSE(Toggle(5).GetScaleLin(min, max, quantize));
    EXPECT_EQ(min + max + quantize, 0.0);
    EXPECT_FALSE(Linear(1, 2, 3).GetScaleLog(min, max, quantize));
    EXPECT_FALSE(Linear(1, 2, 3).GetScaleToggle(numStates));
    EXPECT_EQ(numStates, 0);
}

TEST(ParamBase, AGenericScaleReadsBackWhole) {
    sSCALE_INFO scale;
    ScaleFunction forward = nullptr, inverse = nullptr;
    EXPECT_TRUE(SlopeMap().GetScaleGeneric(scale, forward, inverse));
    EXPECT_EQ(scale.RealWorldPoints, (std::vector<double>{6, 12, 18, 24}));
    EXPECT_EQ(scale.ScaleTypeName, "toggleRanges");
    EXPECT_EQ(forward, &ToggleRangesScale);
    EXPECT_EQ(inverse, &InverseToggleRangesScale);
    EXPECT_FALSE(KCParam_Base().GetScaleGeneric(scale, forward, inverse));
    EXPECT_EQ(forward, nullptr);
}

TEST(ParamBase, SetScaleKeepsTheFunctionsAndRenewsTheReciprocal) {
    KCParam_Base param = Linear(0, 10, 0.1);
    sSCALE_INFO scale;
    scale.a = 1.0;
    scale.b = 0.5;
    scale.Quantize = 0.25;
    scale.OverQuantize = 99.0;
    param.SetScale(scale);
    EXPECT_EQ(param.GetScale().OverQuantize, 4.0);
    EXPECT_EQ(param.StateToRealWorld(10.0), 6.0);
    double min = 0, max = 0, quantize = 0;
    EXPECT_TRUE(param.GetScaleLin(min, max, quantize));
    EXPECT_EQ(max, 501.0);
}

TEST(ParamBase, ANewSetUpForgetsEarlierPoints) {
    KCParam_Base param = SlopeMap();
    param.SetScaleLin(0, 1, 0.1);
    EXPECT_TRUE(param.GetScale().RealWorldPoints.empty());
}

TEST(ParamBase, QuantizeStateRoundsHalvesUpward) {
    KCParam_Base param = Toggle(4);
    EXPECT_EQ(param.QuantizeState(2.4), 2.0);
    EXPECT_EQ(param.QuantizeState(2.5), 3.0);
    EXPECT_EQ(param.QuantizeState(-0.5), 0.0);
    param.SetStateStep(250.0);
    EXPECT_EQ(param.QuantizeState(374.9), 250.0);
    EXPECT_EQ(param.QuantizeState(375.0), 500.0);
}

TEST(ParamBase, QuantizeStateFollowsItsFormulaEverywhere) {
    std::mt19937_64 engine(8);
    std::uniform_real_distribution<double> states(0.0, 1000.0), steps(1e-3, 300.0);
    KCParam_Base param;
    for (int i = 0; i < 20000; ++i) {
        const double state = states(engine), step = steps(engine);
        param.SetStateStep(step);
        ASSERT_EQ(param.QuantizeState(state), std::floor(state / step + 0.5) * step);
    }
}

TEST(ParamBase, AnUnusableStateStepLeavesStatesAlone) {
    KCParam_Base param;
    for (const double step : {0.0, -1.0, kNaN, kInf}) {
        param.SetStateStep(step);
        EXPECT_EQ(param.QuantizeState(2.4), 2.4) << step;
    }
}

TEST(ParamBase, LimitingGivesTheNearestValueOfTheScale) {
    const struct {
        KCParam_Base Param;
        double Before, After;
    } cases[] = {{Linear(0, 10, 0.1), 3.14, 3.1},  {Linear(0, 10, 0.1), 99.0, 10.0},
                 {Linear(0, 10, 0.1), -9.0, 0.0},  {Linear(0, 10, 2.0), 3.1, 4.0},
                 {SlopeMap(), 16.0, 18.0},         {Linear(3, 10, 1.0), kNaN, 3.0},
                 {Linear(0, 10, 0.1), kInf, 10.0}, {Linear(0, 10, 0.1), -kInf, 0.0}};
    for (const auto& [param, before, after] : cases) {
        double value = before;
        param.LimitRealWorld(value);
        EXPECT_DOUBLE_EQ(value, after) << before;
    }
}

TEST(ParamBase, ValidationAcceptsFiniteNumbersOnly) {
    const KCParam_Base param;
    EXPECT_TRUE(param.ValidateRealWorld(-1e308));
    EXPECT_FALSE(param.ValidateRealWorld(kNaN));
    EXPECT_FALSE(param.ValidateRealWorld(kInf));
    EXPECT_FALSE(param.ValidateRealWorld(-kInf));
}

TEST(ParamBase, ADefaultAsAFractionOfTravel) {
    const Default half = DefaultOf(Linear(0, 10, 0.1), 0.5, "double");
    EXPECT_EQ(half.Result, 0);
    EXPECT_EQ(half.State, 500.0);
    EXPECT_EQ(half.RealWorld, 5.0);
    EXPECT_EQ(DefaultOf(Linear(0, 10, 0.1), 7.0, "double").State, 1000.0);
    EXPECT_EQ(DefaultOf(Linear(0, 10, 0.1), -7.0, "double").State, 0.0);
}

TEST(ParamBase, ADefaultAsAState) {
    const Default third = DefaultOf(Linear(0, 10, 0.1), 333.0, "state");
    EXPECT_EQ(third.Result, 0);
    EXPECT_DOUBLE_EQ(third.RealWorld, 3.3);
    EXPECT_EQ(third.State, 330.0); // the state of 3.3, not the one given
    EXPECT_EQ(DefaultOf(Linear(0, 10, 0.1), 1e9, "state").State, 1000.0);
}

TEST(ParamBase, ADefaultAsAValueIsAWholeStateUnlessExact) {
    const KCParam_Base param = Linear(0, 30, 0.1);
    EXPECT_EQ(DefaultOf(param, 10.0, "RealWorld").State, 333.0);
    const Default exact = DefaultOf(param, 10.0, "RealWorldExact");
    EXPECT_NEAR(exact.State, 1000.0 / 3.0, 1e-9);
    EXPECT_EQ(exact.RealWorld, 10.0);
}

TEST(ParamBase, ADefaultOfAnUnknownTypeKeepsTheStateAndSaysSo) {
    const Default odd = DefaultOf(Linear(0, 10, 0.1), 0.5, "Double", 333.0);
    EXPECT_EQ(odd.Result, -1);
    EXPECT_DOUBLE_EQ(odd.RealWorld, 3.3);
    EXPECT_EQ(odd.State, 330.0);
    EXPECT_EQ(DefaultOf(Linear(0, 10, 0.1), 0.5, "", 5000.0).State, 1000.0);
    EXPECT_EQ(DefaultOf(Linear(0, 10, 0.1), 0.5, "", kNaN).State, 0.0);
}

TEST(ParamBase, DefaultsFollowTheirRuleEverywhere) {
    std::mt19937_64 engine(9);
    std::uniform_real_distribution<double> values(-20.0, 1200.0);
    const KCParam_Base params[] = {Linear(-20, 1100, 0.5), Logarithmic(1, 900, 0.01), Toggle(6), SlopeMap()};
    const char* const types[] = {"double", "state", "RealWorld", "RealWorldExact"};
    for (int i = 0; i < 20000; ++i) {
        const KCParam_Base& param = params[i % 4];
        const int type = i / 4 % 4;
        const double value = type == 0 ? values(engine) / 1000.0 : values(engine);
        const double starts[] = {std::fmin(std::fmax(value, 0.0), 1.0) * 1000.0, value,
                                 std::round(param.RealWorldToState(value)), param.RealWorldToState(value)};
        const double realWorld = param.StateToRealWorld(std::fmin(std::fmax(starts[type], 0.0), 1000.0));
        const double state = param.RealWorldToState(realWorld);
        const Default found = DefaultOf(param, value, types[type]);
        ASSERT_EQ(found.RealWorld, realWorld) << types[type] << ' ' << value;
        ASSERT_EQ(found.State, type == 3 ? state : std::round(state)) << types[type] << ' ' << value;
    }
}

TEST(ParamBase, DefaultsOfNotANumberAreTheBottom) {
    for (const char* type : {"double", "state", "RealWorld", "RealWorldExact"})
        EXPECT_EQ(DefaultOf(Linear(2, 10, 1.0), kNaN, type).RealWorld, 2.0) << type;
}

TEST(ParamBase, TheSetupsAreApart) {
    KCParam_Base param = Linear(0, 10, 0.1);
    param.SetState(kPluginSetup_B, 500.0);
    param.UpdateRealWorldFromState(kPluginSetup_B);
    EXPECT_EQ(param.GetRealWorld(kPluginSetup_B), 5.0);
    EXPECT_EQ(param.GetRealWorld(kPluginSetup_A), 0.0);
    param.SetRealWorld(kPluginSetup_A, 2.0);
    param.UpdateStateFromRealWorld(kPluginSetup_A);
    EXPECT_EQ(param.GetState(kPluginSetup_A), 200.0);
    EXPECT_EQ(param.GetState(kPluginSetup_B), 500.0);
}

TEST(ParamBase, ASetupThatIsNeitherIsZeroAndNotWritten) {
    KCParam_Base param = Linear(1, 10, 1);
    for (const EPluginSetup setup : {kPluginSetup_Active, kNoSetup}) {
        param.SetState(setup, 500.0);
        param.SetRealWorld(setup, 500.0);
        param.SetSetupWord(setup, 500);
        param.UpdateRealWorldFromState(setup);
        param.UpdateStateFromRealWorld(setup);
        param.CopySetup(setup, kPluginSetup_A);
        param.CopySetup(kPluginSetup_A, setup);
        EXPECT_EQ(param.GetState(setup) + param.GetRealWorld(setup) + param.GetSetupWord(setup), 0.0);
    }
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B})
        EXPECT_EQ(param.GetState(setup) + param.GetRealWorld(setup) + param.GetSetupWord(setup), 0.0);
}

TEST(ParamBase, StateFromValueNeedsNoForwardScale) {
    KCParam_Base param;
    param.SetScaleGeneric(kParamType_Continuous, KCFixedString<127>("half"), {}, nullptr, Twice);
    param.SetRealWorld(kPluginSetup_A, 7.0);
    param.UpdateStateFromRealWorld(kPluginSetup_A);
    EXPECT_EQ(param.GetState(kPluginSetup_A), 14.0);
    param.SetScaleGeneric(kParamType_Continuous, KCFixedString<127>("half"), {}, Half, nullptr);
    param.SetRealWorld(kPluginSetup_A, 8.0);
    param.UpdateStateFromRealWorld(kPluginSetup_A);
    EXPECT_EQ(param.GetState(kPluginSetup_A), 14.0);
}

TEST(ParamBase, CopySetupTakesStateValueAndWord) {
    KCParam_Base param = Linear(0, 10, 0.1);
    param.SetState(kPluginSetup_A, 300.0);
    param.UpdateRealWorldFromState(kPluginSetup_A);
    param.SetSetupWord(kPluginSetup_A, -7);
    param.CopySetup(kPluginSetup_A, kPluginSetup_B);
    EXPECT_EQ(param.GetState(kPluginSetup_B), 300.0);
    EXPECT_EQ(param.GetRealWorld(kPluginSetup_B), 3.0);
    EXPECT_EQ(param.GetSetupWord(kPluginSetup_B), -7);
}

TEST(ParamBase, TextsNameAndFlagsAreKept) {
    KCParam_Base param;
    param.SetName(KCFixedString<127>("Low Cut"));
    param.SetLabelString(KCFixedString<127>("LOW CUT"));
    param.SetUnitsString(KCFixedString<63>("Hz"));
    param.SetValueString(KCFixedString<127>("120"));
    param.SetFlags(0x80000001u);
    EXPECT_EQ(param.GetName(), "Low Cut");
    EXPECT_EQ(param.GetLabelString(), "LOW CUT");
    EXPECT_EQ(param.GetUnitsString(), "Hz");
    EXPECT_EQ(param.GetValueString(), "120");
    EXPECT_EQ(param.GetFlags(), 0x80000001u);
    EXPECT_TRUE(param.HasFlag(1u));
    EXPECT_FALSE(param.HasFlag(2u));
}

TEST(ParamBase, ACopyIsWholeAndItsOwn) {
    KCParam_Base param = SlopeMap();
    param.SetName(KCFixedString<127>("Slope"));
    param.SetState(kPluginSetup_B, 2.0);
    const KCParam_Base copy = param;
    param.ResetMembers();
    EXPECT_EQ(copy.GetName(), "Slope");
    EXPECT_EQ(copy.GetState(kPluginSetup_B), 2.0);
    EXPECT_EQ(copy.StateToRealWorld(3.0), 24.0);
    EXPECT_TRUE(param.GetName().empty());
    EXPECT_EQ(param.StateToRealWorld(3.0), 0.0);
    EXPECT_TRUE(param.GetScale().RealWorldPoints.empty());
}

TEST(ParamBase, ConversionsDoNotAllocate) {
    KCParam_Base params[] = {Linear(0, 10, 0.1), Logarithmic(1, 10, 0.1), Toggle(4), SlopeMap()};
    const kvTest::AllocationCount count;
    for (KCParam_Base& param : params) {
        param.SetState(kPluginSetup_A, param.QuantizeState(2.0));
        param.UpdateRealWorldFromState(kPluginSetup_A);
        double value = param.GetRealWorld(kPluginSetup_A);
        param.LimitRealWorld(value);
        param.UpdateStateFromRealWorld(kPluginSetup_A);
        param.CopySetup(kPluginSetup_A, kPluginSetup_B);
    }
    EXPECT_EQ(count.Taken(), 0u);
}

TEST(ParamFlags, HaveTheirBits) {
    const uint32_t masks[] = {0x4, 0x8, 0x10, 0x20, 0x80, 0x800, 0x1000, 0x2000, 0x4000, 0x40000};
    ASSERT_EQ(std::size(kParamFlagNames), std::size(masks));
    for (size_t i = 0; i < std::size(masks); ++i)
        EXPECT_EQ(kParamFlagNames[i].Mask, masks[i]) << kParamFlagNames[i].Name;
}

TEST(PluginSetup, OnlyAAndBAreSetups) {
    EXPECT_TRUE(IsPluginSetup(kPluginSetup_A) && IsPluginSetup(kPluginSetup_B));
    EXPECT_FALSE(IsPluginSetup(kPluginSetup_Active) || IsPluginSetup(kNoSetup));
    EXPECT_EQ(OtherPluginSetup(kPluginSetup_A), kPluginSetup_B);
    EXPECT_EQ(OtherPluginSetup(kPluginSetup_B), kPluginSetup_A);
}
