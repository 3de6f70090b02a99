#include <korvolib/graphicstream/graph_extractor.h>

#include <limits>

#include <gtest/gtest.h>

#include <korvolib/graphicstream/stream_test_internal.h>
#include <korvolib/utilities/error_codes.h>

namespace {

using namespace kvGSTest;
using kvKorvo::KUPoint;

void DrawStrip(KCGraphicStreamBinaryWriter& writer, std::vector<float> points) {
    writer.GetGSArrays().ClearArrays();
    writer.GetGSArrays().AddPoints_2Df(points.data(), points.size() / 2);
    writer.DrawVertices(kLineStrip);
}

TEST(StreamGraphs, ALineStripIsAGraphWithItsColourFrameAndName) {
    KCGraphicStreamBinaryWriter writer;
    writer.ActivateMeatData().OpenFrame(kvKorvo::KURect<int>::FromEdges(1, 2, 30, 40)).MetaData("graph", "Gain");
    writer.SetDrawColor({1, 2, 3, 4}).SetStrokeWidth(2);
    DrawStrip(writer, {0, 0.5F, 10, -3});
    writer.CloseFrame();
    KCGSGraphExtractor graphs;
    ASSERT_EQ(graphs.ExecStream(writer), kvKorvo::kErr_NoErr);
    ASSERT_EQ(graphs.GetGraphs().size(), 1u);
    const KCGSGraph& graph = graphs.GetGraphs().front();
    EXPECT_EQ(graph.points, (std::vector<KUPoint<float>>{{0, 0.5F}, {10, -3}}));
    EXPECT_EQ(graph.color, (SGSRGBAColor{1, 2, 3, 4}));
    EXPECT_EQ(graph.strokeWidth, 2);
    EXPECT_EQ(graph.frame.x, 1);
    EXPECT_EQ(graph.name, "Gain");
}

TEST(StreamGraphs, ANameEndsWithItsFrame) {
    KCGraphicStreamBinaryWriter writer;
    writer.ActivateMeatData().OpenFrame(SGSFrame()).MetaData("graph", "Gain").CloseFrame();
    DrawStrip(writer, {0, 0, 1, 1});
    KCGSGraphExtractor graphs;
    ASSERT_EQ(graphs.ExecStream(writer), kvKorvo::kErr_NoErr);
    ASSERT_EQ(graphs.GetGraphs().size(), 1u);
    EXPECT_TRUE(graphs.GetGraphs().front().name.empty());
}

TEST(StreamGraphs, OnlyLineStripsAreGraphs) {
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    KCGSGraphExtractor graphs;
    ASSERT_EQ(graphs.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_TRUE(graphs.GetGraphs().empty());
}

TEST(StreamGraphs, AStripWithAPointThatIsNoNumberIsLeftOut) {
    KCGraphicStreamBinaryWriter writer;
    DrawStrip(writer, {0, 0, std::numeric_limits<float>::quiet_NaN(), 1});
    DrawStrip(writer, {0, 0, 5, 1});
    KCGSGraphExtractor graphs;
    ASSERT_EQ(graphs.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(graphs.GetGraphs().size(), 1u);
}

TEST(StreamGraphs, ColoursInDataComeBeforeTheDrawColour) {
    KCGraphicStreamBinaryWriter writer;
    writer.GetGSArrays().AddPoint_2Ds(1, 2);
    writer.GetGSArrays().AddColor_3ub(9, 8, 7);
    writer.DrawVertices(kLineStrip);
    KCGSGraphExtractor graphs;
    ASSERT_EQ(graphs.ExecStream(writer), kvKorvo::kErr_NoErr);
    ASSERT_EQ(graphs.GetGraphs().size(), 1u);
    EXPECT_EQ(graphs.GetGraphs().front().color, (SGSRGBAColor{9, 8, 7, 255}));
}

} // namespace
