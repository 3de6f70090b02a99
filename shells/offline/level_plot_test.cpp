#include "level_plot.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "level_meter.h"
#include "plot_labels.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

TEST(LevelMeter, MeasuresEachWindowAndTheRest) {
    KCLevelMeter meter(2, 4);
    const std::vector<float> samples = {1, 1, 1, 1, 1, 1, 1, 1, 0.5f, 0.5f, 0.5f, 0.5f};
    meter.Add(samples.data(), 3);
    meter.Add(samples.data() + 6, 3);
    ASSERT_EQ(meter.GetLevels().size(), 2u);
    EXPECT_DOUBLE_EQ(meter.GetLevels()[0], 0.0);
    EXPECT_NEAR(meter.GetLevels()[1], -6.0206, 1e-4);
}

TEST(LevelMeter, SilenceAndWhatIsNotANumberAreTheFloor) {
    KCLevelMeter meter(1, 1);
    const float samples[] = {0.0f, std::numeric_limits<float>::quiet_NaN()};
    meter.Add(samples, 2);
    EXPECT_EQ(meter.GetLevels(), (std::vector<double>{kLevelFloor, kLevelFloor}));
    EXPECT_TRUE(KCLevelMeter(0, 0).GetLevels().empty());
}

TEST(PlotLabels, AFreeStandingLabelIsInTheFirstRow) {
    std::vector<sPLOT_LABEL> labels = {{0, "ab"}, {300, "cd"}, {600, "ef"}};
    EXPECT_EQ(PlaceLabels(labels), 1u);
    for (const sPLOT_LABEL& label : labels)
        EXPECT_EQ(label.row, 0u);
}

TEST(PlotLabels, ACrowdBecomesAStair) {
    std::vector<sPLOT_LABEL> labels = {{0, "abcdef"}, {10, "abcdef"}, {20, "abcdef"}, {500, "ab"}};
    EXPECT_EQ(PlaceLabels(labels), 3u);
    EXPECT_EQ(labels[1].row, 1u);
    EXPECT_EQ(labels[2].row, 2u);
    EXPECT_EQ(labels[3].row, 0u);
}

TEST(PlotLabels, NoLabelCoversAnotherOrALine) {
    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round) {
        std::vector<sPLOT_LABEL> labels(random() % 20);
        double x = 0.0;
        for (sPLOT_LABEL& label : labels)
            label = {x += static_cast<double>(random() % 120), std::string(1 + random() % 30, 'm')};
        PlaceLabels(labels);
        for (size_t i = 0; i < labels.size(); ++i)
            for (size_t j = i + 1; j < labels.size() && labels[i].isShown; ++j)
                ASSERT_TRUE(!labels[j].isShown || LabelEnd(labels[i]) <= labels[j].x ||
                            labels[i].row < labels[j].row);
    }
}

TEST(PlotLabels, WhatFindsNoRowIsNotShown) {
    std::vector<sPLOT_LABEL> labels(kMostLabelRows + 1, {5.0, "x"});
    EXPECT_EQ(PlaceLabels(labels), kMostLabelRows);
    EXPECT_TRUE(labels[kMostLabelRows - 1].isShown);
    EXPECT_FALSE(labels[kMostLabelRows].isShown);
}

TEST(LevelPlot, IsAPictureEvenOfNothing) {
    const std::string svg = LevelPlotSvg({});
    EXPECT_TRUE(svg.starts_with("<svg xmlns="));
    EXPECT_TRUE(svg.ends_with("</svg>\n"));
    EXPECT_EQ(svg.find("nan"), std::string::npos);
}

TEST(LevelPlot, TextFromOutsideIsEscaped) {
    sLEVEL_PLOT plot;
    plot.title = "<script>&\"\n";
    plot.before = {0.0, -6.0};
    const std::string svg = LevelPlotSvg(plot);
    EXPECT_NE(svg.find("&lt;script&gt;&amp;&quot; </text>"), std::string::npos);
    EXPECT_EQ(svg.find("<script>"), std::string::npos);
}

TEST(LevelPlot, DrawsACurveForEachSoundAndALineForEachEvent) {
    sLEVEL_PLOT plot;
    plot.before = {-6.0, -12.0, -200.0};
    plot.after = {-6.0, -12.0};
    plot.events = {{0.05, "set Gain to 3"}};
    const std::string svg = LevelPlotSvg(plot);
    EXPECT_NE(svg.find("stroke=\"#9aa5b1\" stroke-width=\"1.6\""), std::string::npos);
    EXPECT_NE(svg.find("stroke=\"#c2410c\" stroke-width=\"1.8\""), std::string::npos);
    EXPECT_NE(svg.find(">set Gain to 3</text>"), std::string::npos);
}

TEST(LevelPlot, MakesRoomAboveFullScaleWhereALevelGoesThere) {
    sLEVEL_PLOT plot;
    plot.after = {0.0};
    EXPECT_EQ(LevelPlotSvg(plot).find(">12</text>"), std::string::npos);
    plot.after = {0.5};
    EXPECT_NE(LevelPlotSvg(plot).find(">12</text>"), std::string::npos);
    plot.after = {1e300};
    EXPECT_NE(LevelPlotSvg(plot).find(">48</text>"), std::string::npos);
}

TEST(LevelPlot, EventsOfOneTimeShareALine) {
    sLEVEL_PLOT plot;
    plot.after = {-6.0, -6.0};
    const auto numLines = [&] {
        const std::string svg = LevelPlotSvg(plot);
        size_t count = 0;
        for (size_t at = svg.find("stroke-dasharray"); at != std::string::npos;
             at = svg.find("stroke-dasharray", at + 1))
            ++count;
        return count;
    };
    plot.events = {{0.05, "a"}};
    const size_t ofOne = numLines();
    plot.events = {{0.05, "a"}, {0.05, "b"}};
    EXPECT_EQ(numLines(), ofOne);
    plot.events = {{0.05, "a"}, {0.06, "b"}};
    EXPECT_EQ(numLines(), ofOne + 1);
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
