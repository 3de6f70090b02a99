#include <korvolib/graphicstream/to_svg.h>

#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/graphicstream/stream_test_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>
#include <tests/support/german_locale.h>

namespace {

using namespace kvGSTest;
using kvKorvo::KURect;

std::string SvgOf(const KCGraphicStreamBinaryWriter& writer) {
    KCGraphicStreamToSVG svg;
    EXPECT_EQ(svg.ExecStream(writer), kvKorvo::kErr_NoErr);
    return std::string(svg.GetText());
}

// What stands between the document's head and its end.
std::string BodyOf(const KCGraphicStreamBinaryWriter& writer) {
    const std::string text = SvgOf(writer);
    const std::string head = "stroke-miterlimit=\"10\">\n";
    const size_t from = text.find(head) + head.size();
    return text.substr(from, text.rfind("</g>\n</svg>") - from);
}

void ExpectWellFormed(std::string_view text) {
    kvKorvo::KCXMLElement root;
    kvKorvo::sXML_ERROR error;
    EXPECT_EQ(root.Parse(text.data(), text.size(), &error), kvKorvo::kErr_NoErr)
        << error.text.c_str() << " in line " << error.line << "\n"
        << text;
    EXPECT_STREQ(root.GetName(), "svg");
}

SGSStream Picture(float width, float height) {
    SGSStream stream;
    stream.logicalSize = {width, height};
    return stream;
}

TEST(StreamToSVG, TheSizeOfThePictureIsThatOfItsStreamTimesItsScale) {
    SGSStream stream = Picture(200, 100);
    stream.scale = 1.5F;
    stream.color = {1, 2, 3, 255};
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(stream).CommandHeader(kEndStream);
    EXPECT_EQ(SvgOf(writer),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
              "version=\"1.1\" width=\"300\" height=\"150\" viewBox=\"0 0 200 100\">\n"
              "<rect width=\"200\" height=\"100\" fill=\"#010203\" shape-rendering=\"crispEdges\"/>\n"
              "<g fill=\"none\" stroke-miterlimit=\"10\">\n<g>\n</g>\n</g>\n</svg>\n");
}

TEST(StreamToSVG, AStreamWithoutASizeHasTheDefaultOne) {
    KCGraphicStreamBinaryWriter writer;
    writer.DrawSolidRect({}, KURect<short>::FromEdges(0, 0, 1, 1));
    EXPECT_NE(SvgOf(writer).find("viewBox=\"0 0 640 480\""), std::string::npos);
}

TEST(StreamToSVG, AScaleMultipliesTheSizeAndNothingElse) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(Picture(200, 100));
    KCGraphicStreamToSVG svg;
    svg.SetScale(2.5F);
    ASSERT_EQ(svg.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_NE(svg.GetText().find("width=\"500\" height=\"250\" viewBox=\"0 0 200 100\""), std::string::npos);
    for (const float none : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()}) {
        svg.SetScale(none);
        ASSERT_EQ(svg.ExecStream(writer), kvKorvo::kErr_NoErr);
        EXPECT_NE(svg.GetText().find("width=\"200\" height=\"100\""), std::string::npos);
    }
}

TEST(StreamToSVG, ASizeThatIsNoNumberIsZero) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(Picture(std::numeric_limits<float>::quiet_NaN(), -5));
    EXPECT_NE(SvgOf(writer).find("viewBox=\"0 0 0 0\""), std::string::npos);
}

TEST(StreamToSVG, EveryCommandMakesAWellFormedDocument) {
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    ExpectWellFormed(SvgOf(writer));
}

TEST(StreamToSVG, RandomStreamsMakeWellFormedDocuments) {
    for (uint32_t seed = 0; seed < 200; ++seed) {
        KCGraphicStreamBinaryWriter writer;
        RandomRecorder(seed).Record(writer, 60);
        ExpectWellFormed(SvgOf(writer));
    }
}

TEST(StreamToSVG, AWalkThatFailsLeavesAWellFormedDocument) {
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    const std::vector<uint8_t> bytes = BytesOf(writer);
    for (size_t size = 0; size < bytes.size(); size += 7) {
        KCGraphicStreamToSVG svg;
        (void)svg.ExecStream(bytes.data(), size);
        ExpectWellFormed(svg.GetText());
    }
}

TEST(StreamToSVG, SolidAndWireShapesAreFilledAndStroked) {
    KCGraphicStreamBinaryWriter writer;
    writer.DrawSolidRect({255, 0, 0, 51}, KURect<short>::FromEdges(1, 2, 3, 4));
    writer.SetDrawColor({0, 0, 255, 255}).SetStrokeWidth(2).DrawLine({0, 0}, {5.5F, 6});
    EXPECT_EQ(BodyOf(writer), "<path d=\"M1 2L3 2L3 4L1 4Z\" fill=\"#FF0000\" fill-opacity=\"0.2\"/>\n"
                              "<path d=\"M0 0L5.5 6\" stroke=\"#0000FF\" stroke-width=\"2\"/>\n");
}

TEST(StreamToSVG, XORModeIsDifferenceBlendingAndHardEdgesAreCrisp) {
    KCGraphicStreamBinaryWriter writer;
    writer.SetAntialias(false).DrawXORRect(KURect<short>::FromEdges(0, 0, 1, 1));
    EXPECT_EQ(BodyOf(writer), "<path d=\"M0 0L1 0L1 1L0 1Z\" fill=\"#000000\" shape-rendering=\"crispEdges\" "
                              "style=\"mix-blend-mode:difference\"/>\n");
}

TEST(StreamToSVG, EachPrimitiveHasTheColourOfItsFirstVertexAndEqualNeighboursShareAPath) {
    KCGraphicStreamBinaryWriter writer;
    const int16_t points[] = {0, 0, 10, 0, 20, 0, 30, 0};
    const uint8_t colors[] = {255, 0, 0, 255, 0, 0, 0, 255, 0, 1, 1, 1};
    writer.GetGSArrays().AddPoints_2Ds(points, 4);
    writer.GetGSArrays().AddColors_3ub(colors, 4);
    writer.DrawVertices(kLineStrip);
    EXPECT_EQ(BodyOf(writer), "<path d=\"M0 0L10 0L20 0\" stroke=\"#FF0000\" stroke-linejoin=\"round\"/>\n"
                              "<path d=\"M20 0L30 0\" stroke=\"#00FF00\" stroke-linejoin=\"round\"/>\n");
}

TEST(StreamToSVG, AFrameEndsItsClipsAndTurns) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenFrame(KURect<int>::FromEdges(0, 0, 10, 20)).ClipRect({0, 0, 5, 5}).RotateFrame(90).CloseFrame();
    EXPECT_EQ(BodyOf(writer), "<g>\n<clipPath id=\"c1\"><path d=\"M0 0L5 0L5 5L0 5Z\"/></clipPath>\n"
                              "<g clip-path=\"url(#c1)\">\n<g transform=\"rotate(90 5 10)\">\n"
                              "</g>\n</g>\n</g>\n");
}

TEST(StreamToSVG, TextIsEscapedAndMadeValid) {
    KCGraphicStreamBinaryWriter writer;
    writer.Font("It's \"bold\"", 10).DrawTheText("<&>\xFF\x01\n", {0, 0, 10, 10}, kLeft, kTop);
    EXPECT_EQ(BodyOf(writer), "<text x=\"0\" y=\"9.3\" font-family=\"'Its &quot;bold&quot;'\" font-size=\"10\" "
                              "fill=\"#000000\" xml:space=\"preserve\">"
                              "&lt;&amp;&gt;\xEF\xBF\xBD\xEF\xBF\xBD </text>\n");
}

TEST(StreamToSVG, APatternBecomesDashesWithAnOffset) {
    KCGraphicStreamBinaryWriter writer;
    writer.SetStrokePattern(0x0FF3).DrawLine({0, 0}, {9, 0});
    EXPECT_NE(BodyOf(writer).find("stroke-dasharray=\"8 2 2 4\" stroke-dashoffset=\"12\""), std::string::npos);
    writer.ClearStream().SetStrokePattern(0).DrawLine({0, 0}, {9, 0});
    EXPECT_EQ(BodyOf(writer), "");
}

// The pattern's bits once more, one by one.
TEST(StreamToSVG, DashesDrawWhatThePatternSays) {
    for (uint32_t pattern = 1; pattern < 0xFFFF; ++pattern) {
        KCGSStroke stroke;
        ASSERT_TRUE(GSStrokeFromPattern(1, static_cast<uint16_t>(pattern), stroke));
        ASSERT_EQ(stroke.numDashes % 2, 0u);
        std::string units;
        for (size_t i = 0; i < stroke.numDashes; ++i)
            units.append(static_cast<size_t>(stroke.dashes[i]), i % 2 == 0 ? '1' : '0');
        ASSERT_EQ(units.size(), 16u);
        for (size_t bit = 0; bit < 16; ++bit) {
            const bool drawn = (pattern >> (15 - bit) & 1) != 0;
            ASSERT_EQ(units[(bit + static_cast<size_t>(stroke.dashOffset)) % 16] == '1', drawn) << pattern;
        }
    }
}

TEST(StreamToSVG, LinesOfNoWidthAreNotDrawn) {
    for (const float width :
         {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        KCGraphicStreamBinaryWriter writer;
        writer.SetStrokeWidth(width).DrawLine({0, 0}, {9, 0});
        EXPECT_EQ(BodyOf(writer), "");
    }
}

TEST(StreamToSVG, WhatIsNoNumberDrawsNothing) {
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    KCGraphicStreamBinaryWriter writer;
    writer.DrawLine({0, 0}, {kNaN, 0}).DrawLine({kInfinity, 0}, {0, 0}).DrawOval({0, 0, kNaN, 5});
    writer.DrawOval({0, 0, 5, 5}, kSolid, kNaN, 360).DrawOval({0, 0, 5, 5}, kSolid, 0, 0);
    writer.DrawTheText("x", {kNaN, 0, 1, 1}).Font("", kNaN).DrawTheText("x", {0, 0, 1, 1}).RotateFrame(kNaN);
    EXPECT_EQ(BodyOf(writer), "");
}

TEST(StreamToSVG, ACommandWithoutItsDataDrawsNothing) {
    KCGraphicStreamBinaryWriter writer;
    writer.DrawSolidRect({}, KURect<short>::FromEdges(0, 0, 1, 1)).DrawTheText("text", {0, 0, 9, 9});
    std::vector<uint8_t> bytes = BytesOf(writer);
    const uint32_t ignore = kIgnoreStreamCommand;
    for (const size_t offset : {size_t{0}, size_t{68}})
        std::memcpy(bytes.data() + offset, &ignore, sizeof ignore);
    KCGraphicStreamToSVG svg;
    EXPECT_EQ(svg.ExecStream(bytes.data(), bytes.size()), kvKorvo::kErr_NoErr);
    EXPECT_EQ(svg.GetText().find("<path"), std::string_view::npos);
    EXPECT_EQ(svg.GetText().find("<text"), std::string_view::npos);
}

TEST(StreamToSVG, PointersOfAnotherProcessAreNotFollowed) {
    KCGraphicStreamBinaryWriter writer(1);
    writer.DrawTheText("secret", {0, 0, 9, 9});
    KCGraphicStreamToSVG svg;
    const std::vector<uint8_t> bytes = BytesOf(writer);
    EXPECT_EQ(svg.ExecStream(bytes.data(), bytes.size()), kvKorvo::kErr_NoErr);
    EXPECT_EQ(svg.GetText().find("secret"), std::string_view::npos);
    EXPECT_NE(SvgOf(writer).find("secret"), std::string::npos);
}

class OnePicture final : public KCGSImageProvider {
  public:
    std::span<const uint8_t> GetImagePNG(int32_t resID) noexcept override {
        return resID == 1001 ? std::span<const uint8_t>(SmallPNG()) : std::span<const uint8_t>();
    }
};

TEST(StreamToSVG, APictureStandsInTheDocumentOnceHoweverOftenItIsDrawn) {
    OnePicture provider;
    KCGraphicStreamBinaryWriter writer;
    writer.DrawPNG({1001}).DrawPNGScaled({1001}, {10, 20, 4, 4}).DrawPNG({SmallPNG().data(), SmallPNG().size()});
    KCGraphicStreamToSVG svg;
    svg.SetImageProvider(&provider);
    ASSERT_EQ(svg.ExecStream(writer), kvKorvo::kErr_NoErr);
    const std::string text(svg.GetText());
    const size_t image = text.find("<image ");
    ASSERT_NE(image, std::string::npos);
    EXPECT_EQ(text.find("<image ", image + 1), std::string::npos);
    EXPECT_NE(text.find("href=\"data:image/png;base64,iVBORw0KGgo"), std::string::npos);
    EXPECT_NE(text.find("<use xlink:href=\"#i0\" transform=\"matrix(2 0 0 4 10 20)\"/>"), std::string::npos);
}

TEST(StreamToSVG, UnknownAndBrokenPicturesAreNotDrawn) {
    OnePicture provider;
    KCGraphicStreamBinaryWriter writer;
    writer.DrawPNG({1002}).DrawPNG({"no PNG", 6}).DrawPNG({SmallPNG().data(), 23});
    KCGraphicStreamToSVG svg;
    svg.SetImageProvider(&provider);
    ASSERT_EQ(svg.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(svg.GetText().find("<use"), std::string_view::npos);
}

TEST(StreamToSVG, OneOfSeveralPicturesIsDrawn) {
    KCGraphicStreamBinaryWriter writer;
    for (short i = 0; i < 3; ++i) {
        writer.OpenStream(Picture(10, 10)).DrawSolidRect({}, KURect<short>::FromEdges(i, 0, 9, 9));
        writer.CommandHeader(kEndStream);
    }
    KCGraphicStreamToSVG svg;
    svg.SelectPicture(1);
    ASSERT_EQ(svg.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(svg.GetNumPictures(), 3u);
    EXPECT_EQ(svg.GetText().find("M0 0"), std::string_view::npos);
    EXPECT_NE(svg.GetText().find("M1 0"), std::string_view::npos);
    EXPECT_EQ(svg.GetText().find("M2 0"), std::string_view::npos);
}

TEST(StreamToSVG, SizesOfPNGFilesAreReadFromTheirFirstBytes) {
    uint32_t width = 0;
    uint32_t height = 0;
    EXPECT_TRUE(GSReadPNGSize(SmallPNG(), width, height));
    EXPECT_EQ(width, 2u);
    EXPECT_EQ(height, 1u);
    std::vector<uint8_t> png = SmallPNG();
    png.resize(24);
    EXPECT_TRUE(GSReadPNGSize(png, width, height));
    png[18] = 0x40; // 16386 pixels wide
    EXPECT_FALSE(GSReadPNGSize(png, width, height));
    EXPECT_EQ(width, 0u);
    png[18] = 0;
    EXPECT_TRUE(GSReadPNGSize(png, width, height));
    png[19] = 0;
    EXPECT_FALSE(GSReadPNGSize(png, width, height));
    png.pop_back();
    EXPECT_FALSE(GSReadPNGSize(png, width, height));
}

TEST(StreamToSVG, ANumberReadsTheSameInAGermanHost) {
    KCGraphicStreamBinaryWriter writer;
    writer.DrawLine({0.5F, 1.0e7F}, {-0.25F, 1.0e-7F});
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    EXPECT_NE(BodyOf(writer).find("M0.5 1e+06L-0.25 1e-07"), std::string::npos) << BodyOf(writer);
}

} // namespace
