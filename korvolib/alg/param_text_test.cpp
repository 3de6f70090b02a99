#include <korvolib/alg/param_text.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/alg/param_base.h>
#include <tests/support/allocation_count.h>
#include <tests/support/german_locale.h>

using namespace kvKorvoV12_9_0_320;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

std::string Format(double value, double quantize) {
    KCFixedString<127> text;
    FormatRealWorld(value, quantize, text);
    return text.c_str();
}

KCParam_Base Linear(double min, double max, double quantize, const char* units = "", uint32_t flags = 0) {
    KCParam_Base param;
    param.SetScaleLin(min, max, quantize);
    param.SetUnitsString(KCFixedString<63>(units));
    param.SetFlags(flags);
    return param;
}

// A parameter whose scale takes every number as it is read.
KCParam_Base Plain(const char* units = "", uint32_t flags = 0) {
    KCParam_Base param;
    param.SetScaleGeneric(kParamType_Continuous, KCFixedString<127>("plain"), {}, DummyScale, InverseDummyScale);
    param.SetUnitsString(KCFixedString<63>(units));
    param.SetFlags(flags);
    return param;
}

KCParam_Base Points(const char* type, std::vector<double> realWorld, std::vector<double> states, double quantize) {
    KCParam_Base param;
    sSCALE_INFO scale;
    scale.Quantize = quantize;
    scale.RealWorldPoints = std::move(realWorld);
    scale.StatePoints = std::move(states);
    const bool isMap = std::string(type) == "toggleMap", isToggle = std::string(type) == "toggleRanges";
    param.SetScaleGeneric(isMap || isToggle ? 0 : 1, KCFixedString<127>(type), scale,
                          isMap ? ToggleMapScale : (isToggle ? ToggleRangesScale : LinearRangesScale),
                          isMap ? InverseToggleMapScale
                                : (isToggle ? InverseToggleRangesScale : InverseLinearRangesScale));
    return param;
}

// The number that a text is read as, or 1e99 for none.
double Parse(const KCParam_Base& param, const char* text) {
    double value = 1e99;
    const KEValueText kind = ParseValueText(param, KCFixedString<127>(text), value);
    EXPECT_EQ(kind == KEValueText::NoNumber, value == 1e99);
    return value;
}

std::string Shown(const KCParam_Base& param, double realWorld) {
    KCFixedString<127> text;
    FormatValueText(param, realWorld, text);
    return text.c_str();
}

double LastState(const KCParam_Base& param) {
    const size_t points = param.GetScale().RealWorldPoints.size();
    return param.IsDiscrete() ? (points == 0 ? param.GetScale().a : static_cast<double>(points)) - 1.0 : 1000.0;
}

// What the parameter shows after its own text for `realWorld` was typed into it.
std::string ShownAfterTyping(const KCParam_Base& param, double realWorld) {
    double typed = 1e99;
    const KCFixedString<127> text(Shown(param, realWorld).c_str());
    EXPECT_EQ(param.TranslateValueString(text, typed), kTranslateText_Accepted) << text.c_str();
    return Shown(param, typed);
}

void ShowOnOff(const KCParam_Base&, double realWorld, KCFixedStringBase& out, void*) {
    if (realWorld < 0.5)
        out << "Off";
    else
        out << realWorld << "!";
}
bool ReadOff(const KCParam_Base&, const KCFixedStringBase& text, double& realWorld, void* refcon) {
    if (text != "Off")
        return false;
    realWorld = *static_cast<double*>(refcon);
    return true;
}

} // namespace

TEST(ParamText, TheResolutionImpliesTheDecimals) {
    EXPECT_EQ(DecimalsOfResolution(1.0), 0);
    EXPECT_EQ(DecimalsOfResolution(2.0), 0);
    EXPECT_EQ(DecimalsOfResolution(2.5), 1);
    EXPECT_EQ(DecimalsOfResolution(0.1), 1);
    EXPECT_EQ(DecimalsOfResolution(0.3), 1);
    EXPECT_EQ(DecimalsOfResolution(0.25), 2);
    EXPECT_EQ(DecimalsOfResolution(0.001), 3);
    EXPECT_EQ(DecimalsOfResolution(1e-9), 9);
    EXPECT_EQ(DecimalsOfResolution(1e-12), 12);
    EXPECT_EQ(DecimalsOfResolution(1e300), 0);
}

TEST(ParamText, EveryDecimalResolutionHasItsDecimals) {
    double power = 1.0;
    for (int decimals = 0; decimals <= 9; ++decimals, power *= 10.0)
        for (int digits = 1; digits < 1000; digits += digits % 10 == 9 ? 2 : 1)
            ASSERT_EQ(DecimalsOfResolution(digits / power), decimals) << digits << " / " << power;
}

TEST(ParamText, AResolutionThatIsNoDecimalFractionHasEnough) {
    EXPECT_EQ(DecimalsOfResolution(1.0 / 3.0), 6);
    EXPECT_EQ(DecimalsOfResolution(1e-6 / 3.0), 10);
    EXPECT_EQ(DecimalsOfResolution(1e-30), 12);
}

TEST(ParamText, WithoutAResolutionDecimalsAreThoseNeeded) {
    for (const double quantize : {0.0, -1.0, kNaN}) {
        EXPECT_EQ(DecimalsOfResolution(quantize), -1);
        EXPECT_EQ(Format(0.5, quantize), "0.5");
        EXPECT_EQ(Format(100.0, quantize), "100");
        EXPECT_EQ(Format(1.0 / 3.0, quantize), "0.333333");
        EXPECT_EQ(Format(1e-9, quantize), "0");
    }
}

TEST(ParamText, ValuesShowTheirDecimalsToTheLast) {
    EXPECT_EQ(Format(3.0, 0.1), "3.0");
    EXPECT_EQ(Format(-2.25, 0.25), "-2.25");
    EXPECT_EQ(Format(1500.0, 1.0), "1500");
    EXPECT_EQ(Format(0.30000000000000004, 0.1), "0.3");
    EXPECT_EQ(Format(99.96, 0.1), "100.0");
}

TEST(ParamText, ZeroHasNoSign) {
    EXPECT_EQ(Format(-0.0, 0.1), "0.0");
    EXPECT_EQ(Format(-0.04, 0.1), "0.0");
    EXPECT_EQ(Format(-0.06, 0.1), "-0.1");
    EXPECT_EQ(Format(-1e-9, 0.0), "0");
}

TEST(ParamText, HugeAndUnusualValuesHaveATextToo) {
    EXPECT_EQ(Format(999999999999999.0, 1.0), "999999999999999");
    EXPECT_EQ(Format(1e300, 0.1), "1e+300");
    EXPECT_EQ(Format(kInf, 0.1), "inf");
    EXPECT_EQ(Format(-kInf, 0.1), "-inf");
    EXPECT_EQ(Format(kNaN, 0.1), "nan");
}

TEST(ParamText, FormattingAgreesWithPrintf) {
    std::mt19937_64 engine(13);
    std::uniform_real_distribution<double> values(-1e6, 1e6);
    for (int i = 0; i < 50000; ++i) {
        const double value = values(engine);
        const int decimals = i % 7;
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.*f", decimals, value);
        ASSERT_EQ(Format(value, std::pow(10.0, -decimals)), expected);
    }
}

TEST(ParamText, AShortStringCutsTheText) {
    KCFixedString<3> text;
    FormatRealWorld(-1234.5, 0.0, text);
    EXPECT_EQ(text, "-12");
    FormatRealWorld(-0.0, 0.1, text);
    EXPECT_EQ(text, "0.");
    KCFixedString<0> none;
    FormatRealWorld(1.0, 0.0, none);
    EXPECT_TRUE(none.empty());
}

TEST(ParamText, NumbersAreReadWithTheirUnits) {
    EXPECT_EQ(Parse(Plain("dB"), "3 dB"), 3.0);
    EXPECT_EQ(Parse(Plain("dB"), "3dB"), 3.0);
    EXPECT_EQ(Parse(Plain(), "3 dB"), 3.0);
    EXPECT_EQ(Parse(Plain(), " +3"), 3.0);
    EXPECT_EQ(Parse(Plain(), "-3."), -3.0);
    EXPECT_EQ(Parse(Plain(), ".5"), 0.5);
    EXPECT_EQ(Parse(Plain(), "1e3"), 1000.0);
    EXPECT_EQ(Parse(Plain(), "\xE2\x88\x92"
                             "3"),
              -3.0);
}

TEST(ParamText, ACommaIsADecimalPoint) {
    EXPECT_EQ(Parse(Plain(), "0,5"), 0.5);
    EXPECT_EQ(Parse(Plain(), "-1,25 dB"), -1.25);
}

TEST(ParamText, AKIsAThousandAndAnMAMillion) {
    EXPECT_EQ(Parse(Plain("Hz"), "1k"), 1000.0);
    EXPECT_EQ(Parse(Plain("Hz"), "1 kHz"), 1000.0);
    EXPECT_EQ(Parse(Plain("Hz"), "1khz"), 1000.0);
    EXPECT_EQ(Parse(Plain(), "1 kHz"), 1000.0);
    EXPECT_EQ(Parse(Plain("Ohm"), "4.7 K Ohm"), 4700.0);
    EXPECT_EQ(Parse(Plain("Hz"), "1.1k"), 1100.0);
    EXPECT_EQ(Parse(Plain("Hz"), "-1,1 k"), -1100.0);
    EXPECT_EQ(Parse(Plain("Hz"), "2M"), 2e6);
    EXPECT_EQ(Parse(Plain("Hz"), "2 MHz"), 2e6);
    EXPECT_EQ(Parse(Plain("Hz"), "1e1k"), 10000.0);
    EXPECT_EQ(Parse(Plain("Hz"), "\xE2\x88\x92"
                                 "1k"),
              -1000.0);
}

TEST(ParamText, OtherLettersBehindANumberMeanNothing) {
    EXPECT_EQ(Parse(Plain("Hz"), "2 m"), 2.0);
    EXPECT_EQ(Parse(Plain("Hz"), "2 mHz"), 2.0);
    EXPECT_EQ(Parse(Plain("Hz"), "2 kilo"), 2.0);
    EXPECT_EQ(Parse(Plain("dB"), "2 Mono"), 2.0);
}

TEST(ParamText, AKThatTheUnitsBeginWithBelongsToThem) {
    EXPECT_EQ(Parse(Plain("kHz"), "2 kHz"), 2.0);
    EXPECT_EQ(Parse(Plain("kHz"), "2k"), 2.0);
    EXPECT_EQ(Parse(Plain("kHz"), "2"), 2.0);
    EXPECT_EQ(Parse(Plain("k"), "2 k"), 2.0);
}

TEST(ParamText, TextWithoutALeadingNumberIsRefusedAndTheOutputStays) {
    const char* const texts[] = {"",      " ",    "dB", "dB 3", "-",   "+ 3",      "--3",          "k",
                                 ".",     ",",    "e5", "inf",  "nan", "infinity", "\xE2\x88\x92", "\xE2\x88\x92-3",
                                 " -inf", "-INF", "Off"};
    for (const char* text : texts) {
        double value = 7.0;
        EXPECT_EQ(Plain().TranslateValueString(KCFixedString<127>(text), value), kTranslateText_Refused) << text;
        EXPECT_EQ(value, 7.0) << text;
    }
}

TEST(ParamText, MinusInfinityIsTheBottomOfTheScale) {
    for (const char* text : {"-Inf", "-inf"}) {
        double value = 7.0;
        EXPECT_EQ(Linear(-60, 12, 0.1).TranslateValueString(KCFixedString<15>(text), value),
                  kTranslateText_Accepted);
        EXPECT_EQ(value, -60.0);
        EXPECT_EQ(KCParam_Base().TranslateValueString(KCFixedString<15>(text), value), kTranslateText_Accepted);
        EXPECT_EQ(value, 0.0);
    }
}

TEST(ParamText, AnInfiniteNumberIsRefusedAndStaysInTheOutput) {
    double value = 7.0;
    EXPECT_EQ(Linear(0, 10, 1).TranslateValueString(KCFixedString<15>("1e999"), value), kTranslateText_Refused);
    EXPECT_EQ(value, kInf);
}

TEST(ParamText, ATypedValueIsOneThatTheScaleProduces) {
    double value = 0.0;
    EXPECT_EQ(Linear(0, 10, 0.1).TranslateValueString(KCFixedString<15>("3.14"), value), kTranslateText_Accepted);
    EXPECT_DOUBLE_EQ(value, 3.1);
    EXPECT_EQ(Linear(0, 10, 0.1).TranslateValueString(KCFixedString<15>("99"), value), kTranslateText_Accepted);
    EXPECT_EQ(value, 10.0);
    EXPECT_EQ(Linear(0, 9, 0.3).TranslateValueString(KCFixedString<15>("2"), value), kTranslateText_Accepted);
    EXPECT_EQ(value, 2.0); // plain rounding through the state gives 1.9
}

TEST(ParamText, NegativeTextOnlyTurnsEveryNumberNegative) {
    const KCParam_Base param = Linear(-60, 60, 0.1, "dB", kParamFlag_NegativeTextOnly);
    EXPECT_EQ(Parse(param, "12"), -12.0);
    EXPECT_EQ(Parse(param, "-12"), -12.0);
    EXPECT_EQ(Parse(param, "0"), 0.0);
}

TEST(ParamText, ADisplayFunctionWritesTheText) {
    KCParam_Base param = Linear(0, 10, 1.0);
    param.SetDisplayFunc(DisplayFunctionProxy(ShowOnOff));
    param.SetState(kPluginSetup_B, 500.0);
    param.UpdateRealWorldFromState(kPluginSetup_B);
    param.UpdateValueString(kPluginSetup_A);
    EXPECT_EQ(param.GetValueString(), "Off");
    param.UpdateValueString(kPluginSetup_B);
    EXPECT_EQ(param.GetValueString(), "5.0000000000!");
    param.SetDisplayFunc({});
    param.UpdateValueString(kPluginSetup_B);
    EXPECT_EQ(param.GetValueString(), "5");
}

TEST(ParamText, ItsInverseReadsWordsAndLeavesNumbersToTheRest) {
    double off = 4.0;
    KCParam_Base param = Linear(-10, 10, 1.0);
    param.SetDisplayFunc(DisplayFunctionProxy(ShowOnOff, ReadOff, &off));
    EXPECT_EQ(Parse(param, "Off"), 4.0);
    EXPECT_EQ(Parse(param, "7!"), 7.0);
    param.SetFlags(kParamFlag_NegativeTextOnly);
    EXPECT_EQ(Parse(param, "Off"), -4.0);
    param.SetDisplayFunc(DisplayFunctionProxy(ShowOnOff));
    EXPECT_EQ(Parse(param, "Off"), 1e99);
}

TEST(ParamText, WhatLinearAndLogScalesShowReadsBackToTheSameText) {
    std::mt19937_64 engine(14);
    std::uniform_int_distribution<int> multiples(-2000, 2000);
    std::uniform_real_distribution<double> states(0.0, 1000.0);
    const double resolutions[] = {0.001, 0.01, 0.05, 0.1, 0.2, 0.25, 0.3, 0.5, 0.7, 1.0, 1.5, 2.0, 3.0, 10.0, 0.0};
    for (size_t i = 0; i < 40000; ++i) {
        const double quantize = resolutions[i % std::size(resolutions)], unit = quantize == 0.0 ? 1.0 : quantize;
        const double min = multiples(engine) * unit, max = multiples(engine) * unit;
        KCParam_Base param;
        if (i % 2 == 0)
            param.SetScaleLin(min, max, quantize);
        else
            param.SetScaleLog(std::fabs(min) + unit, std::fabs(max) + 2.0 * unit, quantize);
        const double value = param.StateToRealWorld(states(engine));
        ASSERT_EQ(ShownAfterTyping(param, value), Shown(param, value))
            << min << ".." << max << " in " << quantize << ", " << value;
    }
}

TEST(ParamText, WhatAllOtherScalesShowReadsBackToTheSameText) {
    KCParam_Base frequency;
    sSCALE_INFO whole;
    whole.Quantize = 1.0;
    frequency.SetScaleGeneric(kParamType_Continuous, KCFixedString<127>("frequency"), whole, FrqScale,
                              InverseFrqScale);
    KCParam_Base toggle;
    toggle.SetScaleToggle(12);
    const KCParam_Base params[] = {frequency,
                                   toggle,
                                   Points("linearRanges", {-60, -20, 0}, {0, 500, 1000}, 0.1),
                                   Points("linearRanges", {20, 10, 4, 1}, {0, 300, 600, 1000}, 0.1),
                                   Points("toggleRanges", {6, 12, 18, 24}, {}, 1.0),
                                   Points("toggleMap", {1.0 / 3.0, -0.125, 1e6 / 7.0}, {0, 1, 2}, 0.0),
                                   Points("toggleMap", {0.44, 1.26, 3.49}, {0, 1, 2}, 0.1)};
    for (const KCParam_Base& param : params)
        for (double state = 0.0; state <= LastState(param); state += param.IsDiscrete() ? 1.0 : 0.5) {
            const double value = param.StateToRealWorld(state);
            ASSERT_EQ(ShownAfterTyping(param, value), Shown(param, value)) << param.GetScaleType().c_str();
        }
}

TEST(ParamText, AGermanHostChangesNothing) {
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    EXPECT_EQ(Format(0.5, 0.1), "0.5");
    EXPECT_EQ(Parse(Plain(), "0.5"), 0.5);
}

TEST(ParamText, NeitherDirectionAllocates) {
    const KCParam_Base param = Linear(-60, 12, 0.1, "dB");
    const KCFixedString<127> typed("-3,5k dB");
    KCFixedString<127> text;
    double value = 0.0;
    const kvTest::AllocationCount count;
    FormatValueText(param, -3.5, text);
    FormatRealWorld(1e300, 0.1, text);
    EXPECT_EQ(param.TranslateValueString(typed, value), kTranslateText_Accepted);
    EXPECT_EQ(count.Taken(), 0u);
}
