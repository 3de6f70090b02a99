#include <korvolib/alg/param_stepping.h>

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

using namespace kvKorvoV12_9_0_320;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

KCParam_Base AtState(KCParam_Base param, double state) {
    param.SetState(kPluginSetup_A, state);
    param.UpdateRealWorldFromState(kPluginSetup_A);
    return param;
}

KCParam_Base Discrete(int numStates, double step, uint32_t flags = 0) {
    KCParam_Base param;
    param.SetScaleToggle(numStates);
    param.SetStateStep(step);
    param.SetFlags(flags);
    return param;
}

KCParam_Base Linear(double min, double max, double quantize, double step = 1.0, uint32_t flags = 0) {
    KCParam_Base param;
    param.SetScaleLin(min, max, quantize);
    param.SetStateStep(step);
    param.SetFlags(flags);
    return param;
}

// Flat from state 200 to 600.
KCParam_Base WithPlateau() {
    KCParam_Base param;
    sSCALE_INFO scale;
    scale.RealWorldPoints = {0, 2, 2, 10};
    scale.StatePoints = {0, 200, 600, 1000};
    param.SetScaleGeneric(kParamType_Continuous, KCFixedString<127>("linearRanges"), scale, LinearRangesScale,
                          InverseLinearRangesScale);
    return param;
}

double Step(const KCParam_Base& param, double direction, bool isLinked = false) {
    return ParamStepping::Offset(param, kPluginSetup_A, direction, isLinked);
}

double Flat(double, sSCALE_INFO*) { return 7.0; }

} // namespace

TEST(ParamStepping, FourStatesWrapUnlessTheyMustNot) {
    EXPECT_EQ(Step(AtState(Discrete(4, 1.0), 3.0), 1.0), -3.0);
    EXPECT_EQ(Step(AtState(Discrete(4, 1.0, kParamFlag_DiscreteDoesNotWrap), 3.0), 1.0), 0.0);
    EXPECT_EQ(Step(AtState(Discrete(4, 1.0), 3.0), 1.0, true), 0.0);
}

TEST(ParamStepping, DiscreteStatesWrapDownwardToo) {
    EXPECT_EQ(Step(AtState(Discrete(4, 1.0), 0.0), -1.0), 3.0);
    EXPECT_EQ(Step(AtState(Discrete(4, 1.0, kParamFlag_DiscreteDoesNotWrap), 0.0), -1.0), 0.0);
    EXPECT_EQ(Step(AtState(Discrete(4, 1.0), 0.0), -1.0, true), 0.0);
}

TEST(ParamStepping, DiscreteStepsAreWholeStateSteps) {
    EXPECT_EQ(Step(AtState(Discrete(5, 250.0), 500.0), 0.01), 250.0);
    EXPECT_EQ(Step(AtState(Discrete(5, 250.0), 500.0), -99.0), -250.0);
    EXPECT_EQ(Step(AtState(Discrete(5, 250.0), 1000.0), 1.0), -1000.0);
    EXPECT_EQ(Step(AtState(Discrete(5, 250.0), 749.0), 1.0), 250.0); // from index 2, the part of a step falls away
}

TEST(ParamStepping, DiscreteStepsAgreeWithAPlainCount) {
    std::mt19937_64 engine(11);
    std::uniform_int_distribution<int> counts(1, 12), coins(0, 1);
    for (int i = 0; i < 20000; ++i) {
        const int count = counts(engine), index = std::uniform_int_distribution<int>(0, count - 1)(engine);
        const bool wraps = coins(engine) != 0, isLinked = coins(engine) != 0, isUp = coins(engine) != 0;
        const double step = 1.0 + coins(engine);
        int next = index + (isUp ? 1 : -1);
        if (next == count)
            next = wraps && !isLinked ? 0 : index;
        if (next == -1)
            next = wraps && !isLinked ? count - 1 : index;
        const KCParam_Base param = Discrete(count, step, wraps ? 0u : kParamFlag_DiscreteDoesNotWrap);
        ASSERT_EQ(Step(AtState(param, index * step), isUp ? 1.0 : -1.0, isLinked), (next - index) * step);
    }
}

TEST(ParamStepping, WithoutStatesThereIsNoStep) {
    EXPECT_EQ(Step(AtState(Discrete(0, 1.0), 0.0), 1.0), 0.0);
    EXPECT_EQ(Step(AtState(Discrete(0, 1.0), 0.0), -1.0), 0.0);
    EXPECT_EQ(Step(AtState(Discrete(-5, 1.0), 0.0), -1.0), 0.0);
}

TEST(ParamStepping, NoDirectionIsNoStep) {
    for (const KCParam_Base& param : {AtState(Discrete(4, 1.0), 2.0), AtState(Linear(0, 10, 0.1), 500.0)}) {
        EXPECT_EQ(Step(param, 0.0), 0.0);
        EXPECT_EQ(Step(param, kNaN), 0.0);
    }
}

TEST(ParamStepping, AnUnusableStateStepIsNoStep) {
    for (const double step : {0.0, -1.0, kNaN, kInf}) {
        EXPECT_EQ(Step(AtState(Discrete(4, step), 2.0), 1.0), 0.0) << step;
        EXPECT_EQ(Step(AtState(Linear(0, 10, 0.1, step), 500.0), 1.0), 0.0) << step;
    }
}

TEST(ParamStepping, DiscreteStatesFarOutsideDoNotOverflow) {
    EXPECT_EQ(Step(AtState(Discrete(4, 1e-300, kParamFlag_DiscreteDoesNotWrap), 1e300), 1.0), 0.0);
    EXPECT_EQ(Step(AtState(Discrete(4, 1e-300, kParamFlag_DiscreteDoesNotWrap), -1e300), -1.0), 0.0);
    EXPECT_EQ(Step(AtState(Discrete(4, 1.0, kParamFlag_DiscreteDoesNotWrap), kNaN), 1.0), 1.0);
}

TEST(ParamStepping, AContinuousStepReachesTheNextValueThatDiffers) {
    const KCParam_Base param = AtState(Linear(0, 10, 0.1), 500.0); // a value is 10 states wide
    EXPECT_NEAR(Step(param, 1.0), 10.0, 1e-9);
    EXPECT_NEAR(Step(param, -1.0), -10.0, 1e-9);
}

TEST(ParamStepping, AContinuousStepSkipsAFlatSpanWhole) {
    EXPECT_DOUBLE_EQ(Step(AtState(WithPlateau(), 300.0), 1.0), 301.0);   // to 601
    EXPECT_DOUBLE_EQ(Step(AtState(WithPlateau(), 300.0), -1.0), -101.0); // to 199
}

TEST(ParamStepping, AContinuousStepLandsOnAMultipleOfTheStateStep) {
    const KCParam_Base param = AtState(Linear(0, 1000, 0.0, 8.0), 501.0);
    EXPECT_DOUBLE_EQ(Step(param, 1.0), 3.0);   // 504
    EXPECT_DOUBLE_EQ(Step(param, -1.0), -5.0); // 496
}

TEST(ParamStepping, ContinuousStepsEndAtTheEnds) {
    EXPECT_DOUBLE_EQ(Step(AtState(Linear(0, 10, 0.1), 1000.0), 1.0), 0.0);
    EXPECT_DOUBLE_EQ(Step(AtState(Linear(0, 10, 0.1), 0.0), -1.0), 0.0);
}

TEST(ParamStepping, ContinuousStepsWrapWhereTheFlagSaysSo) {
    const KCParam_Base degrees = Linear(0, 1000, 0.0, 1.0, kParamFlag_ContinuousWraps);
    EXPECT_DOUBLE_EQ(Step(AtState(degrees, 1000.0), 1.0), -999.0);
    EXPECT_DOUBLE_EQ(Step(AtState(degrees, 0.0), -1.0), 999.0);
    EXPECT_DOUBLE_EQ(Step(AtState(degrees, 500.0), 1.0), 1.0);
}

TEST(ParamStepping, ContinuousStepsFollowTheirRuleEverywhere) {
    std::mt19937_64 engine(12);
    std::uniform_real_distribution<double> states(0.0, 1000.0), steps(0.05, 40.0);
    for (int i = 0; i < 5000; ++i) {
        const double st = steps(engine);
        const bool wraps = i % 3 == 0, isUp = i % 2 == 0;
        const KCParam_Base param =
            AtState(i % 5 == 0 ? WithPlateau() : Linear(-6, 6, 0.1, st, wraps ? kParamFlag_ContinuousWraps : 0u),
                    states(engine));
        const double step = param.GetStateStep(), state = param.GetState(kPluginSetup_A);
        const double delta = isUp ? step : -step;
        double s = state;
        if (param.HasFlag(kParamFlag_ContinuousWraps))
            s = state + delta > 1000.0 ? state + delta - 1000.0
                                       : (state + delta < 0.0 ? state + delta + 1000.0 : state + delta);
        s = isUp ? std::fmin(std::ceil(s / step) * step, 1000.0) : std::fmax(std::floor(s / step) * step, 0.0);
        while ((isUp ? s < 1000.0 : s > 0.0) &&
               std::fabs(param.StateToRealWorld(s) - param.GetRealWorld(kPluginSetup_A)) < 1e-10)
            s += delta;
        ASSERT_EQ(Step(param, delta), param.RealWorldToState(param.StateToRealWorld(s)) - state);
    }
}

TEST(ParamStepping, TinyStepsOnAFlatScaleEnd) {
    KCParam_Base param;
    param.SetScaleGeneric(kParamType_Continuous, KCFixedString<127>("flat"), {}, Flat, InverseDummyScale);
    param.SetStateStep(1e-300);
    EXPECT_EQ(Step(AtState(param, 500.0), 1.0), 7.0 - 500.0);
    EXPECT_EQ(Step(AtState(param, 500.0), -1.0), 7.0 - 500.0);
}

TEST(ParamStepping, StatesFarOutsideEnd) {
    const KCParam_Base param = Linear(0, 10, 0.1);
    EXPECT_DOUBLE_EQ(Step(AtState(param, 1e300), -1.0), -1e300);
    EXPECT_DOUBLE_EQ(Step(AtState(param, -1e300), 1.0), 1e300);
    EXPECT_EQ(Step(AtState(param, kNaN), 1.0), 0.0);
}

TEST(ParamStepping, ASetupThatIsNeitherStepsFromZero) {
    EXPECT_EQ(ParamStepping::Offset(AtState(Discrete(4, 1.0), 3.0), kPluginSetup_Active, 1.0, false), 1.0);
}

TEST(ParamStepping, NextStateGoesRoundTheCircleOnlyWithItsFlag) {
    const KCParam_Base circle = Linear(0, 360, 0.1, 1.0, kParamFlag_ContinuousWraps);
    EXPECT_EQ(ParamStepping::NextState(&circle, 990.0, 20.0), 10.0);
    EXPECT_EQ(ParamStepping::NextState(&circle, 10.0, -20.0), 990.0);
    EXPECT_EQ(ParamStepping::NextState(&circle, 990.0, 10.0), 1000.0);
    EXPECT_EQ(ParamStepping::NextState(&circle, 10.0, -10.0), 0.0);
    const KCParam_Base line = Linear(0, 360, 0.1);
    EXPECT_EQ(ParamStepping::NextState(&line, 990.0, 20.0), 990.0);
    EXPECT_EQ(ParamStepping::NextState(nullptr, 990.0, 20.0), 990.0);
}
