#include "level_plot.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "failure.h"
#include "level_meter.h"
#include "picture_file.h"
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

using Writer = kvGS::KCGraphicStreamBinaryWriter;

std::string FileOf(const sLEVEL_PLOT& plot, const std::string& path) {
    Writer writer;
    RecordLevelPlot(plot, writer);
    return PictureFileContents(path, writer, {});
}

std::string YamlOf(const sLEVEL_PLOT& plot) { return FileOf(plot, "plot.yaml"); }

size_t Count(const std::string& text, const std::string& word) {
    size_t count = 0;
    for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
        ++count;
    return count;
}

bool Shows(const sLEVEL_PLOT& plot, const std::string& text) {
    return FileOf(plot, "plot.svg").find(">" + text + "</text>") != std::string::npos;
}

TEST(LevelPlot, IsAPictureEvenOfNothing) {
    const std::string svg = FileOf({}, "plot.svg");
    EXPECT_TRUE(svg.starts_with("<?xml"));
    EXPECT_TRUE(svg.ends_with("</svg>\n"));
    EXPECT_EQ(svg.find("nan"), std::string::npos);
    EXPECT_TRUE(Shows({}, "time in seconds"));
}

TEST(LevelPlot, TextFromOutsideIsEscaped) {
    sLEVEL_PLOT plot;
    plot.title = "<script>&";
    EXPECT_TRUE(Shows(plot, "&lt;script&gt;&amp;"));
}

TEST(LevelPlot, DrawsACurveForEachSoundAndALineForEachEvent) {
    sLEVEL_PLOT plot;
    const auto numStrips = [&] { return Count(YamlOf(plot), "kind: LineStrip"); };
    const size_t ofNothing = numStrips();
    plot.before = {-6.0, -12.0, -200.0};
    EXPECT_EQ(numStrips(), ofNothing + 1);
    plot.after = {-6.0, -12.0};
    EXPECT_EQ(numStrips(), ofNothing + 2);
    plot.events = {{0.05, "set Gain to 3"}};
    EXPECT_TRUE(Shows(plot, "set Gain to 3"));
}

TEST(LevelPlot, MakesRoomAboveFullScaleWhereALevelGoesThere) {
    sLEVEL_PLOT plot;
    plot.after = {0.0};
    EXPECT_FALSE(Shows(plot, "12"));
    plot.after = {0.5};
    EXPECT_TRUE(Shows(plot, "12"));
    plot.after = {1e300};
    EXPECT_TRUE(Shows(plot, "48"));
}

TEST(LevelPlot, EventsOfOneTimeShareALine) {
    sLEVEL_PLOT plot;
    plot.after = {-6.0, -6.0};
    const auto numLines = [&] { return Count(YamlOf(plot), "- DrawVertices:"); };
    plot.events = {{0.05, "a"}};
    const size_t ofOne = numLines();
    plot.events = {{0.05, "a"}, {0.05, "b"}};
    EXPECT_EQ(numLines(), ofOne);
    plot.events = {{0.05, "a"}, {0.06, "b"}};
    EXPECT_EQ(numLines(), ofOne + 1);
}

TEST(PictureFile, IsWhatItsEndingSays) {
    EXPECT_TRUE(FileOf({}, "a.png").starts_with("\x89PNG\r\n"));
    EXPECT_TRUE(FileOf({}, "a.SVG").starts_with("<?xml"));
    Writer writer;
    RecordLevelPlot({}, writer);
    EXPECT_EQ(PictureFileContents("a.gs", writer, {}), writer.GetStreamMemObj().GetText());
}

TEST(PictureFile, HasTheSizeThatItsScaleSays) {
    Writer writer;
    RecordLevelPlot({}, writer);
    const std::string natural = PictureFileContents("a.svg", writer, {2.0, 1.0, nullptr});
    const std::string threefold = PictureFileContents("a.svg", writer, {2.0, 3.0, nullptr});
    const auto number = [](const std::string& text, const std::string& word) {
        return std::stod(text.substr(text.find(word) + word.size()));
    };
    EXPECT_EQ(number(threefold, " width=\""), 3.0 * number(natural, " width=\""));
    EXPECT_EQ(number(threefold, " height=\""), 3.0 * number(natural, " height=\""));
    const std::string small = PictureFileContents("a.png", writer, {1.0, 1.0, nullptr});
    const std::string large = PictureFileContents("a.png", writer, {2.0, 1.0, nullptr});
    const auto pngWidth = [](const std::string& png) { // big-endian, after the name of the first chunk
        return (static_cast<unsigned char>(png[18]) << 8) + static_cast<unsigned char>(png[19]);
    };
    EXPECT_EQ(pngWidth(large), 2 * pngWidth(small));
}

TEST(PictureFile, OfAnotherKindIsRefused) {
    RefuseUnknownPictureKind("a.yaml", "a plot");
    EXPECT_THROW(RefuseUnknownPictureKind("a.pdf", "a plot"), KCHostFailure);
    EXPECT_THROW(RefuseUnknownPictureKind("svg", "a plot"), KCHostFailure);
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
