#include <plugins/channel_strip/dsp/filter_section.h>

#include <plugins/channel_strip/dsp/glide.h>
#include <plugins/channel_strip/dsp/test_signals.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace kvStrip {
namespace {

using namespace test;

std::vector<double> Filtered(KCFilterSection& section, std::vector<double> samples) {
    section.Process(Mono(samples));
    return samples;
}

// The difference equation as it stands in the books.
std::vector<double> DirectForm(const sBIQUAD& f, const std::vector<double>& x) {
    std::vector<double> y(x.size());
    const auto at = [](const std::vector<double>& v, size_t i, size_t back) {
        return i < back ? 0.0 : v[i - back];
    };
    for (size_t i = 0; i < x.size(); ++i)
        y[i] = f.b0 * x[i] + f.b1 * at(x, i, 1) + f.b2 * at(x, i, 2) - f.a1 * at(y, i, 1) - f.a2 * at(y, i, 2);
    return y;
}

TEST(FilterSection, AgreesWithTheDifferenceEquation) {
    const sBIQUAD bell = DesignBell(700.0, 9.0, 3.0, kSampleRateHz);
    KCFilterSection section;
    section.SetTarget(bell);
    section.Reset();
    const std::vector<double> noise = Noise(2000);
    const std::vector<double> expected = DirectForm(bell, noise);
    const std::vector<double> found = Filtered(section, noise);
    for (size_t i = 0; i < noise.size(); ++i)
        ASSERT_NEAR(found[i], expected[i], 1e-11) << i;
}

TEST(FilterSection, AtRestWithoutGainChangesNoBit) {
    KCFilterSection section;
    const std::vector<double> noise = Noise(500);
    EXPECT_EQ(Filtered(section, noise), noise);
}

TEST(FilterSection, GlidesToItsTargetAndArrivesExactly) {
    const sBIQUAD bell = DesignBell(700.0, -18.0, 3.0, kSampleRateHz);
    KCFilterSection glided;
    glided.SetGlideRate(GlideRate(kGlideSeconds, kSampleRateHz));
    glided.SetTarget(bell);
    Filtered(glided, std::vector<double>(48000, 0.0));
    KCFilterSection there;
    there.SetTarget(bell);
    there.Reset();
    const std::vector<double> noise = Noise(100);
    EXPECT_EQ(Filtered(glided, noise), Filtered(there, noise));
}

TEST(FilterSection, StaysBoundedWhileItsTargetIsThrownAbout) {
    KCFilterSection section;
    section.SetGlideRate(GlideRate(kGlideSeconds, kSampleRateHz));
    std::mt19937 random(7);
    std::uniform_real_distribution<double> way(0.0, 1.0);
    double loudest = 0.0;
    for (unsigned i = 0; i < 500; ++i) {
        section.SetTarget(DesignBell(20.0 * std::pow(1000.0, way(random)), 36.0 * way(random) - 18.0,
                                     0.1 + 10.0 * way(random), kSampleRateHz));
        for (const double sample : Filtered(section, Noise(64, i)))
            loudest = std::max(loudest, std::fabs(sample));
    }
    EXPECT_LT(loudest, 100.0);
}

TEST(FilterSection, CutIntoPiecesGivesTheSameBits) {
    const auto run = [](size_t pieceFrames) {
        KCFilterSection section;
        section.SetGlideRate(GlideRate(kGlideSeconds, kSampleRateHz));
        section.SetTarget(DesignBell(90.0, 12.0, 0.4, kSampleRateHz));
        std::vector<double> result;
        const std::vector<double> noise = Noise(10000);
        for (size_t first = 0; first < noise.size(); first += pieceFrames) {
            const size_t last = std::min(first + pieceFrames, noise.size());
            const std::vector<double> piece =
                Filtered(section, {noise.begin() + static_cast<std::ptrdiff_t>(first),
                                   noise.begin() + static_cast<std::ptrdiff_t>(last)});
            result.insert(result.end(), piece.begin(), piece.end());
        }
        return result;
    };
    EXPECT_EQ(run(10000), run(1));
    EXPECT_EQ(run(10000), run(333));
}

TEST(FilterSection, KeepsChannelsApart) {
    KCFilterSection section;
    section.SetTarget(DesignBell(700.0, 9.0, 3.0, kSampleRateHz));
    section.Reset();
    std::vector<double> left = Noise(300);
    std::vector<double> right(300, 0.0);
    section.Process(Stereo(left, right));
    EXPECT_EQ(right, std::vector<double>(300, 0.0));
    EXPECT_NE(left, Noise(300));
}

TEST(FilterSection, ForgetsThePastWhenReset) {
    KCFilterSection section;
    section.SetTarget(DesignBell(700.0, 9.0, 3.0, kSampleRateHz));
    Filtered(section, Noise(300));
    section.Reset();
    EXPECT_EQ(Filtered(section, std::vector<double>(10, 0.0)), std::vector<double>(10, 0.0));
}

} // namespace
} // namespace kvStrip
