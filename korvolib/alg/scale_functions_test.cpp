#include <korvolib/alg/scale_functions.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include <gtest/gtest.h>

using namespace kvKorvoV12_9_0_320;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr int kRandomRuns = 20000;

sSCALE_INFO Coefficients(double a, double b, double quantize) {
    sSCALE_INFO scale;
    scale.a = a;
    scale.b = b;
    scale.SetQuantize(quantize);
    return scale;
}

sSCALE_INFO Points(std::vector<double> realWorld, std::vector<double> state, double quantize = 0.0) {
    sSCALE_INFO scale = Coefficients(0.0, 0.0, quantize);
    scale.RealWorldPoints = std::move(realWorld);
    scale.StatePoints = std::move(state);
    return scale;
}

// The published rules once more, slow and plain.
double RoundFraction(double v, double quantize) {
    return std::floor(v) + std::floor((v - std::floor(v)) * (1.0 / quantize) + 0.5) * quantize;
}
double RoundWhole(double v, double quantize) { return std::floor(v * (1.0 / quantize) + 0.5) * quantize; }

struct Random {
    std::mt19937_64 engine{20240607};
    double Between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(engine); }
    double Quantize() { return std::pow(10.0, std::floor(Between(-4.0, 0.99))) * std::floor(Between(1.0, 6.0)); }
    std::vector<double> Ascending(size_t count, double low, double high) {
        std::vector<double> values(count);
        for (double& value : values)
            value = Between(low, high);
        std::sort(values.begin(), values.end());
        return values;
    }
};

using Function = double (*)(double, sSCALE_INFO*);
constexpr Function kAll[] = {LinearScale,
                             ExtendedResLinearScale,
                             LogScale,
                             ExtendedResLogScale,
                             FrqScale,
                             ToggleScale,
                             ToggleRangesScale,
                             ToggleMapScale,
                             LinearRangesScale,
                             InverseLinearScale,
                             InverseLogScale,
                             InverseFrqScale,
                             InverseToggleScale,
                             InverseToggleRangesScale,
                             DummyScale,
                             InverseToggleMapScale,
                             InverseDummyScale,
                             InverseLinearRangesScale,
                             InverseLinearRangesScaleWithRounding};
constexpr bool IsIdentity(Function f) {
    return f == InverseToggleScale || f == DummyScale || f == InverseDummyScale;
}

} // namespace

TEST(ScaleFunctions, LinearFollowsItsFormulaEverywhere) {
    Random random;
    for (int i = 0; i < kRandomRuns; ++i) {
        const double a = random.Between(-1e5, 1e5), b = random.Between(-50, 50), x = random.Between(0, 1000);
        const double quantize = random.Quantize();
        sSCALE_INFO scale = Coefficients(a, b, quantize);
        ASSERT_EQ(LinearScale(x, &scale), RoundFraction(a + b * x, quantize)) << a << ' ' << b << ' ' << x;
        ASSERT_EQ(ExtendedResLinearScale(x, &scale), RoundWhole(a + b * x, quantize));
        ASSERT_EQ(InverseLinearScale(x, &scale), (x - a) / b);
    }
}

TEST(ScaleFunctions, LogFollowsItsFormulaEverywhere) {
    Random random;
    for (int i = 0; i < kRandomRuns; ++i) {
        const double a = random.Between(1e-3, 1e4), b = random.Between(0.99, 1.01), x = random.Between(0, 1000);
        const double quantize = random.Quantize();
        sSCALE_INFO scale = Coefficients(a, b, quantize);
        ASSERT_EQ(LogScale(x, &scale), RoundFraction(a * std::pow(b, x), quantize)) << a << ' ' << b << ' ' << x;
        ASSERT_EQ(ExtendedResLogScale(x, &scale), RoundWhole(a * std::pow(b, x), quantize));
        ASSERT_EQ(InverseLogScale(x + 1.0, &scale), std::log((x + 1.0) / a) / std::log(b));
    }
}

TEST(ScaleFunctions, QuantizingKeepsTheWholePartAndRoundsTheFraction) {
    sSCALE_INFO scale = Coefficients(0.0, 1.0, 0.3);
    EXPECT_DOUBLE_EQ(LinearScale(7.95, &scale), 7.9); // 0.95 is three times 0.3; 7.95 rounded whole would be 8.1
    EXPECT_DOUBLE_EQ(ExtendedResLinearScale(7.96, &scale), 8.1);
    EXPECT_NEAR(LinearScale(-0.25, &scale), -0.1, 1e-15); // -1 and 0.9
}

TEST(ScaleFunctions, QuantizingHugeValuesLeavesThemWhole) {
    sSCALE_INFO scale = Coefficients(0.0, 1.0, 0.25);
    for (const double v : {2251799813685247.6, 2251799813685248.0, -2251799813685247.9, 4503599627370495.5,
                           4503599627370496.0, -4503599627370496.5, 1e300, -1e300})
        EXPECT_EQ(LinearScale(v, &scale), RoundFraction(v, 0.25)) << v;
}

TEST(ScaleFunctions, WithoutAPositiveQuantizeValuesStayAsTheyAre) {
    for (const double quantize : {0.0, -0.5, kNaN}) {
        sSCALE_INFO scale = Coefficients(0.125, 0.01, quantize);
        EXPECT_EQ(LinearScale(333.0, &scale), 0.125 + 0.01 * 333.0);
        EXPECT_EQ(ExtendedResLinearScale(333.0, &scale), 0.125 + 0.01 * 333.0);
    }
    sSCALE_INFO tiny = Coefficients(0.0, 0.01, 1e-320); // its reciprocal is no finite number
    EXPECT_EQ(LinearScale(333.0, &tiny), 0.01 * 333.0);
    sSCALE_INFO coarse = Coefficients(0.0, 0.01, 1e250);
    EXPECT_EQ(LinearScale(333.0, &coarse), RoundFraction(0.01 * 333.0, 1e250));
    sSCALE_INFO huge = Coefficients(0.0, 0.01, kInf);
    EXPECT_EQ(LinearScale(333.0, &huge), 0.01 * 333.0);
}

TEST(ScaleFunctions, FrequencyRunsThroughItsFiveCorners) {
    sSCALE_INFO scale;
    const double corners[][2] = {{0, 20}, {250, 200}, {500, 1000}, {750, 5000}, {1000, 20000}};
    for (const auto& [state, frequency] : corners) {
        EXPECT_NEAR(FrqScale(state, &scale), frequency, frequency * 1e-12);
        EXPECT_NEAR(InverseFrqScale(frequency, &scale), state, 1e-9);
    }
}

TEST(ScaleFunctions, FrequencyQuartersAreLogarithmic) {
    const double corners[] = {20, 200, 1000, 5000, 20000};
    sSCALE_INFO scale;
    for (int x = 0; x < 1000; ++x) {
        const double low = corners[x / 250], high = corners[x / 250 + 1];
        const double expected = low * std::pow(high / low, x % 250 / 250.0);
        ASSERT_NEAR(FrqScale(x, &scale), expected, expected * 1e-12) << x;
        ASSERT_NEAR(InverseFrqScale(expected, &scale), x, 1e-9) << x;
    }
}

TEST(ScaleFunctions, InverseFrequencyStaysWithinTravel) {
    sSCALE_INFO scale;
    EXPECT_EQ(InverseFrqScale(0.0, &scale), 0.0);
    EXPECT_EQ(InverseFrqScale(-440.0, &scale), 0.0);
    EXPECT_EQ(InverseFrqScale(40000.0, &scale), 1000.0);
    EXPECT_EQ(InverseFrqScale(1.0, &scale), 0.0);
    EXPECT_EQ(InverseFrqScale(kInf, &scale), 1000.0);
}

TEST(ScaleFunctions, FrequencyIsQuantizedLikeTheOthers) {
    sSCALE_INFO fine, coarse = Coefficients(1e9, -7.0, 1.0);
    EXPECT_NE(FrqScale(333.0, &fine), std::floor(FrqScale(333.0, &fine)));
    EXPECT_EQ(FrqScale(333.0, &coarse), RoundFraction(FrqScale(333.0, &fine), 1.0));
}

TEST(ScaleFunctions, ToggleIsTheRemainderOfWholeParts) {
    Random random;
    for (int i = 0; i < kRandomRuns; ++i) {
        const double x = random.Between(-5000, 5000), a = random.Between(1, 20);
        sSCALE_INFO scale = Coefficients(a, 0.0, 1.0);
        ASSERT_EQ(ToggleScale(x, &scale), std::ldiv(static_cast<long>(x), static_cast<long>(a)).rem)
            << x << ' ' << a;
    }
}

TEST(ScaleFunctions, ToggleWithoutADivisorIsZero) {
    for (const double a : {0.0, 0.9, -0.9, -1.0, kNaN, kInf, 1e19}) {
        sSCALE_INFO scale = Coefficients(a, 0.0, 1.0);
        EXPECT_EQ(ToggleScale(-9223372036854775808.0, &scale), 0.0) << a;
        EXPECT_EQ(ToggleScale(5.0, &scale), 0.0) << a;
    }
    sSCALE_INFO four = Coefficients(4.0, 0.0, 1.0);
    EXPECT_EQ(ToggleScale(9.3e18, &four), 0.0);
}

TEST(ScaleFunctions, ToggleRangesCountRoundTheirPoints) {
    sSCALE_INFO scale = Points({6, 12, 18, 24}, {});
    EXPECT_EQ(ToggleRangesScale(0.0, &scale), 6.0);
    EXPECT_EQ(ToggleRangesScale(3.99, &scale), 24.0);
    EXPECT_EQ(ToggleRangesScale(4.0, &scale), 6.0);
    EXPECT_EQ(ToggleRangesScale(1000.0, &scale), 6.0);
    EXPECT_EQ(ToggleRangesScale(-1.0, &scale), 6.0);
    EXPECT_EQ(ToggleRangesScale(1e30, &scale), 6.0);
}

TEST(ScaleFunctions, InverseToggleRangesTakesTheNearestPointAndTheUpperInATie) {
    sSCALE_INFO scale = Points({6, 12, 18, 24}, {});
    EXPECT_EQ(InverseToggleRangesScale(9.0, &scale), 1.0); // midway between 6 and 12
    EXPECT_EQ(InverseToggleRangesScale(8.99, &scale), 0.0);
    EXPECT_EQ(InverseToggleRangesScale(18.0, &scale), 2.0);
    EXPECT_EQ(InverseToggleRangesScale(24.0, &scale), 3.0);
    EXPECT_EQ(InverseToggleRangesScale(1e9, &scale), 3.0);
    EXPECT_EQ(InverseToggleRangesScale(-1e9, &scale), 0.0);
}

TEST(ScaleFunctions, InverseToggleRangesIsTheNearestOfAscendingPoints) {
    Random random;
    for (int i = 0; i < kRandomRuns; ++i) {
        sSCALE_INFO scale = Points(random.Ascending(1 + static_cast<size_t>(i) % 9, -50, 50), {});
        const double r = random.Between(-60, 60);
        size_t nearest = 0;
        for (size_t k = 1; k < scale.RealWorldPoints.size(); ++k)
            if (std::fabs(scale.RealWorldPoints[k] - r) <= std::fabs(scale.RealWorldPoints[nearest] - r))
                nearest = k;
        ASSERT_EQ(InverseToggleRangesScale(r, &scale), static_cast<double>(nearest)) << r;
    }
}

TEST(ScaleFunctions, InverseToggleRangesWithoutAUsablePointIsZero) {
    sSCALE_INFO descending = Points({10, 5, 7}, {});
    EXPECT_EQ(InverseToggleRangesScale(6.0, &descending), 2.0); // 5..7, midway
    sSCALE_INFO falling = Points({10, 5, kNaN}, {});
    EXPECT_EQ(InverseToggleRangesScale(6.0, &falling), 0.0);
}

TEST(ScaleFunctions, ToggleMapLooksUpTheFirstEqualPoint) {
    sSCALE_INFO scale = Points({10, 20, 20, 30}, {0, 1, 1, 5});
    EXPECT_EQ(ToggleMapScale(1.0, &scale), 20.0);
    EXPECT_EQ(ToggleMapScale(5.0, &scale), 30.0);
    EXPECT_EQ(ToggleMapScale(2.0, &scale), 0.0);
    EXPECT_EQ(InverseToggleMapScale(20.0, &scale), 1.0);
    EXPECT_EQ(InverseToggleMapScale(30.0, &scale), 5.0);
    EXPECT_EQ(InverseToggleMapScale(25.0, &scale), 0.0);
}

TEST(ScaleFunctions, LinearRangesInterpolateBetweenTheirPoints) {
    sSCALE_INFO scale = Points({-60, -20, 0}, {0, 500, 1000});
    EXPECT_EQ(LinearRangesScale(250.0, &scale), -40.0);
    EXPECT_EQ(LinearRangesScale(500.0, &scale), -20.0);
    EXPECT_EQ(LinearRangesScale(750.0, &scale), -10.0);
    EXPECT_EQ(InverseLinearRangesScale(-40.0, &scale), 250.0);
    EXPECT_EQ(InverseLinearRangesScale(-10.0, &scale), 750.0);
}

TEST(ScaleFunctions, LinearRangesEndAtTheirEndPoints) {
    sSCALE_INFO scale = Points({1, 2, 4}, {100, 500, 900});
    EXPECT_EQ(LinearRangesScale(0.0, &scale), 1.0);
    EXPECT_EQ(LinearRangesScale(1000.0, &scale), 4.0);
    EXPECT_EQ(InverseLinearRangesScale(0.99, &scale), 0.0);
    EXPECT_EQ(InverseLinearRangesScale(1.0, &scale), 100.0);
    EXPECT_EQ(InverseLinearRangesScale(4.0, &scale), 900.0);
    EXPECT_EQ(InverseLinearRangesScale(4.01, &scale), 1000.0);
}

TEST(ScaleFunctions, DescendingRealWorldPointsInterpolateToo) {
    sSCALE_INFO scale = Points({20, 10, 4, 1}, {0, 300, 600, 1000});
    EXPECT_EQ(LinearRangesScale(150.0, &scale), 15.0);
    EXPECT_EQ(InverseLinearRangesScale(15.0, &scale), 150.0);
    EXPECT_EQ(InverseLinearRangesScale(7.0, &scale), 450.0);
    EXPECT_EQ(InverseLinearRangesScale(10.0, &scale), 300.0); // a point's own state, not interpolated
    EXPECT_EQ(InverseLinearRangesScale(0.5, &scale), 0.0);
    EXPECT_EQ(InverseLinearRangesScale(21.0, &scale), 1000.0);
}

TEST(ScaleFunctions, LinearRangesAgreeWithAPlainSearch) {
    Random random;
    for (int i = 0; i < kRandomRuns; ++i) {
        const size_t count = 2 + static_cast<size_t>(i) % 6;
        sSCALE_INFO scale = Points(random.Ascending(count, -100, 100), random.Ascending(count, 0, 1000));
        if (i % 2 != 0)
            std::reverse(scale.RealWorldPoints.begin(), scale.RealWorldPoints.end());
        const auto& rw = scale.RealWorldPoints;
        const auto& st = scale.StatePoints;
        const size_t k = 1 + static_cast<size_t>(random.Between(0, static_cast<double>(count - 1)));
        const double x = random.Between(st[k - 1], st[k]);
        const double r = rw[k - 1] + (rw[k] - rw[k - 1]) * (x - st[k - 1]) / (st[k] - st[k - 1]);
        ASSERT_EQ(LinearRangesScale(x, &scale), r);
        ASSERT_NEAR(InverseLinearRangesScale(r, &scale), x, 1e-6);
    }
}

TEST(ScaleFunctions, RangesWithRoundingGiveWholeStates) {
    sSCALE_INFO scale = Points({0, 10}, {0, 1000});
    EXPECT_EQ(InverseLinearRangesScaleWithRounding(3.3337, &scale), 333.0);
    EXPECT_EQ(InverseLinearRangesScaleWithRounding(3.3350, &scale), 334.0);
    EXPECT_EQ(InverseLinearRangesScaleWithRounding(kNaN, &scale), 0.0);
}

TEST(ScaleFunctions, LinearRangesAreQuantizedAndAlsoWithoutPoints) {
    sSCALE_INFO scale = Points({0, 1}, {0, 1000}, 0.1);
    EXPECT_DOUBLE_EQ(LinearRangesScale(260.0, &scale), 0.3);
    sSCALE_INFO empty = Points({}, {}, 0.1);
    EXPECT_EQ(LinearRangesScale(260.0, &empty), 0.0);
}

TEST(ScaleFunctions, OnlyPairedPointsCount) {
    sSCALE_INFO moreValues = Points({1, 2, 3}, {0, 1000});
    EXPECT_EQ(LinearRangesScale(1000.0, &moreValues), 2.0);
    EXPECT_EQ(InverseLinearRangesScale(3.0, &moreValues), 1000.0);
    sSCALE_INFO moreStates = Points({1, 2}, {0, 400, 1000});
    EXPECT_EQ(LinearRangesScale(1000.0, &moreStates), 2.0);
    EXPECT_EQ(ToggleMapScale(1000.0, &moreStates), 0.0);
}

TEST(ScaleFunctions, StatePointsThatDoNotAscendGiveTheFirstPointOrAValueBetween) {
    sSCALE_INFO falling = Points({5, 6, 7}, {1000, 500, 0});
    EXPECT_EQ(LinearRangesScale(700.0, &falling), 5.0);
    sSCALE_INFO equal = Points({5, 6}, {400, 400});
    EXPECT_EQ(LinearRangesScale(700.0, &equal), 5.0);
    sSCALE_INFO broken = Points({5, 6}, {0, kNaN});
    EXPECT_EQ(LinearRangesScale(700.0, &broken), 5.0);
}

TEST(ScaleFunctions, ASinglePointIsAConstant) {
    sSCALE_INFO scale = Points({5}, {400});
    EXPECT_EQ(LinearRangesScale(0.0, &scale), 5.0);
    EXPECT_EQ(InverseLinearRangesScale(4.0, &scale), 0.0);
    EXPECT_EQ(InverseLinearRangesScale(5.0, &scale), 400.0);
    EXPECT_EQ(InverseLinearRangesScale(6.0, &scale), 1000.0);
    EXPECT_EQ(ToggleRangesScale(7.0, &scale), 5.0);
    EXPECT_EQ(InverseToggleRangesScale(-7.0, &scale), 0.0);
}

TEST(ScaleFunctions, InverseLinearWithoutASlopeIsZero) {
    sSCALE_INFO scale = Coefficients(5.0, 0.0, 0.1);
    EXPECT_EQ(InverseLinearScale(7.0, &scale), 0.0);
    EXPECT_EQ(LinearScale(700.0, &scale), 5.0);
}

TEST(ScaleFunctions, InverseLogOfWhatHasNoLogarithmIsZero) {
    sSCALE_INFO scale = Coefficients(20.0, 1.007, 1.0);
    EXPECT_EQ(InverseLogScale(0.0, &scale), 0.0);
    EXPECT_EQ(InverseLogScale(-3.0, &scale), 0.0);
    for (const auto& [a, b] : {std::pair{20.0, 1.0}, {0.0, kInf}, {20.0, kNaN}, {-20.0, 1.1}, {20.0, -1.0}}) {
        sSCALE_INFO odd = Coefficients(a, b, 1.0);
        EXPECT_EQ(InverseLogScale(100.0, &odd), 0.0) << a << ' ' << b;
    }
}

TEST(ScaleFunctions, AScaleThatLeavesTheFiniteNumbersIsZero) {
    sSCALE_INFO through0 = Coefficients(0.0, kInf, 0.1), tooSteep = Coefficients(1.0, 1e300, 0.1);
    EXPECT_EQ(LogScale(500.0, &through0), 0.0);
    EXPECT_EQ(LogScale(500.0, &tooSteep), 0.0);
    EXPECT_EQ(LinearScale(kInf, &tooSteep), 0.0);
}

TEST(ScaleFunctions, NotANumberBecomesZeroButPassesTheIdentities) {
    sSCALE_INFO scale = Points({1, 2, 3}, {0, 500, 1000}, 0.1);
    scale.a = 1.0;
    scale.b = 1.01;
    for (const Function function : kAll)
        EXPECT_TRUE(IsIdentity(function) ? std::isnan(function(kNaN, &scale)) : function(kNaN, &scale) == 0.0);
}

TEST(ScaleFunctions, WithoutAScaleEverythingIsZeroButTheIdentities) {
    for (const Function function : kAll)
        EXPECT_EQ(function(7.0, nullptr), IsIdentity(function) ? 7.0 : 0.0);
}

TEST(ScaleFunctions, NoCoefficientsPointsOrArgumentsTrap) {
    const double odd[] = {kNaN, kInf, -kInf, 0.0, -0.0, 1.0, -1.0, 1e308, -1e308, 5e-324, 500.0};
    Random random;
    const auto pick = [&] { return odd[static_cast<size_t>(random.Between(0, std::size(odd)))]; };
    for (int i = 0; i < kRandomRuns; ++i) {
        sSCALE_INFO scale = Points({}, {}, pick());
        scale.a = pick();
        scale.b = pick();
        for (int k = 0; k < i % 5; ++k)
            scale.RealWorldPoints.push_back(pick());
        for (int k = 0; k < i % 7; ++k)
            scale.StatePoints.push_back(pick());
        for (const Function function : kAll)
            function(pick(), &scale);
    }
}

TEST(ScaleFunctions, ClampingKeepsStatesWithinFullTravel) {
    EXPECT_EQ(ClampState(-0.001), 0.0);
    EXPECT_EQ(ClampState(1000.001), 1000.0);
    EXPECT_EQ(ClampState(333.3), 333.3);
    EXPECT_TRUE(std::isnan(ClampState(kNaN)));
}

TEST(ScaleInfo, QuantizeAndItsReciprocalGoTogether) {
    sSCALE_INFO scale;
    EXPECT_EQ(scale.Quantize, 0.0);
    EXPECT_TRUE(scale.RealWorldPoints.empty() && scale.StatePoints.empty() && scale.ScaleTypeName.empty());
    scale.SetQuantize(0.1);
    EXPECT_EQ(scale.OverQuantize, 1.0 / 0.1);
    scale.SetQuantize(0.0);
    EXPECT_EQ(scale.OverQuantize, 0.0);
}
