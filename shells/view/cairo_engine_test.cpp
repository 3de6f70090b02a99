#include <shells/view/cairo_engine.h>

#include <limits>

#include <gtest/gtest.h>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/utilities/error_codes.h>
#include <shells/view/cairo_picture.h>
#include <shells/view/pixels_test_internal.h>

namespace {

using namespace kvKorvo::kvGS;
using namespace kvViewTest;
using kvKorvo::KURect;

SGSStream Picture(float width, float height, SGSRGBAColor ground = {0, 0, 0, 0}) {
    SGSStream stream;
    stream.logicalSize = {width, height};
    stream.color = ground;
    return stream;
}

TEST(CairoEngine, MakesAnImageOfTheStreamsSizeAndGround) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(Picture(10.5F, 4, {255, 0, 0, 255})).CommandHeader(kEndStream);
    KCCairoEngine engine;
    ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
    ASSERT_NE(engine.GetImage(), nullptr);
    EXPECT_EQ(cairo_image_surface_get_width(engine.GetImage()), 11);
    EXPECT_EQ(cairo_image_surface_get_height(engine.GetImage()), 4);
    EXPECT_EQ(PixelAt(engine.GetImage(), 0, 0), 0xFFFF0000);
}

TEST(CairoEngine, TheScaleMultipliesThatOfTheStream) {
    SGSStream stream = Picture(10, 4);
    stream.scale = 2;
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(stream).DrawSolidRect({0, 0, 255, 255}, KURect<short>::FromEdges(9, 3, 10, 4));
    KCCairoEngine engine;
    engine.SetScale(1.5);
    ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(cairo_image_surface_get_width(engine.GetImage()), 30);
    EXPECT_EQ(PixelAt(engine.GetImage(), 29, 11), 0xFF0000FF);
    EXPECT_EQ(PixelAt(engine.GetImage(), 26, 11), 0u);
}

TEST(CairoEngine, RefusesImagesThatCannotBe) {
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    for (const SGSSize size :
         {SGSSize{0, 5}, SGSSize{5, -1}, SGSSize{kNaN, 5}, SGSSize{20000, 5}, SGSSize{16000, 16000}}) {
        KCGraphicStreamBinaryWriter writer;
        writer.OpenStream(Picture(size.width, size.height));
        KCCairoEngine engine;
        EXPECT_EQ(engine.ExecStream(writer), kvKorvo::kErr_LimitExceeded);
        EXPECT_EQ(engine.GetImage(), nullptr);
    }
}

TEST(CairoEngine, WithoutAStreamThereIsNoImage) {
    KCGraphicStreamBinaryWriter writer;
    writer.DrawSolidRect({}, KURect<short>::FromEdges(0, 0, 5, 5)).DrawTheText("text", {0, 0, 5, 5});
    KCCairoEngine engine;
    EXPECT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(engine.GetImage(), nullptr);
}

TEST(CairoEngine, DrawsOnATargetAndLeavesItsStateAsItWas) {
    const Surface surface = MakeSurface(20, 20);
    const Context context(cairo_create(surface.get()));
    cairo_translate(context.get(), 10, 0);
    cairo_set_line_width(context.get(), 7);
    KCGraphicStreamBinaryWriter writer;
    writer.OpenFrame(SGSFrame())
        .ClipRect({0, 0, 2, 2})
        .DrawSolidRect({255, 0, 0, 255}, KURect<short>::FromEdges(0, 0, 9, 9));
    KCCairoEngine engine;
    engine.SetTarget(context.get());
    ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr); // the frame is left open
    EXPECT_EQ(PixelAt(surface.get(), 11, 1), 0xFFFF0000);
    EXPECT_EQ(PixelAt(surface.get(), 12, 1), 0u);
    EXPECT_EQ(PixelAt(surface.get(), 1, 1), 0u);
    EXPECT_EQ(cairo_get_line_width(context.get()), 7);
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    cairo_clip_extents(context.get(), &left, &top, &right, &bottom);
    EXPECT_EQ(right, 10);
}

TEST(CairoEngine, AFailedWalkLeavesTheTargetsStateToo) {
    const Surface surface = MakeSurface(20, 20);
    const Context context(cairo_create(surface.get()));
    KCGraphicStreamBinaryWriter writer;
    writer.OpenFrame(SGSFrame()).RotateFrame(45).CommandHeader(kDrawOval);
    KCCairoEngine engine;
    engine.SetTarget(context.get());
    EXPECT_EQ(engine.ExecStream(writer), kvKorvo::kErr_MalformedStream);
    cairo_matrix_t matrix;
    cairo_get_matrix(context.get(), &matrix);
    EXPECT_EQ(matrix.xy, 0);
}

TEST(CairoEngine, WhatIsDrawnTwiceInXORModeIsGone) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(Picture(10, 10, {10, 200, 99, 255})).SetDrawColor({255, 255, 255, 255});
    writer.DrawXORRect(KURect<short>::FromEdges(0, 0, 5, 5));
    KCCairoEngine engine;
    ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(PixelAt(engine.GetImage(), 2, 2), 0xFFF5379C);
    writer.DrawXORRect(KURect<short>::FromEdges(0, 0, 5, 5));
    ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(PixelAt(engine.GetImage(), 2, 2), 0xFF0AC863);
}

TEST(CairoEngine, DashesOfOneLineAreNotThoseOfTheNext) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(Picture(40, 10)).SetDrawColor({0, 0, 0, 255}).SetStrokeWidth(2);
    writer.SetStrokePattern(0xF0F0).DrawLine({0, 2}, {40, 2}).SetStrokePattern(0xFFFF).DrawLine({0, 6}, {40, 6});
    KCCairoEngine engine;
    ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(PixelAt(engine.GetImage(), 5, 2), 0u);
    EXPECT_EQ(PixelAt(engine.GetImage(), 5, 6), 0xFF000000);
}

TEST(CairoEngine, TheFontOfAFrameEndsWithIt) {
    const auto boxWith = [](bool frame) {
        KCGraphicStreamBinaryWriter writer;
        writer.OpenStream(Picture(200, 60, {255, 255, 255, 255})).Font("DejaVu Sans", 12);
        if (frame)
            writer.OpenFrame(SGSFrame()).Font("DejaVu Sans", 40).CloseFrame();
        writer.DrawTheText("Text", {10, 10, 180, 40});
        KCCairoEngine engine;
        EXPECT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
        return BoxOf(engine.GetImage());
    };
    EXPECT_EQ(boxWith(true).right, boxWith(false).right);
    EXPECT_EQ(boxWith(true).top, boxWith(false).top);
}

TEST(CairoEngine, CapitalsStandInTheMiddleOfTheirRectangle) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(Picture(200, 100, {255, 255, 255, 255})).Font("DejaVu Sans", 40);
    writer.DrawTheText("HHH", {0, 0, 200, 100}, kHCenter, kVCenter);
    KCCairoEngine engine;
    ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
    const Box box = BoxOf(engine.GetImage());
    EXPECT_NEAR((box.left + box.right) / 2.0, 100, 1.5);
    EXPECT_NEAR((box.top + box.bottom) / 2.0, 50, 1.5);
}

TEST(CairoEngine, TextThatIsNotValidDrawsTheRest) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(Picture(100, 40, {255, 255, 255, 255})).DrawTheText("\xFF\xC0 A", {0, 0, 50, 40});
    writer.DrawSolidRect({0, 0, 0, 255}, KURect<short>::FromEdges(90, 30, 100, 40));
    KCCairoEngine engine;
    ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(PixelAt(engine.GetImage(), 95, 35), 0xFF000000);
}

TEST(CairoEngine, ABrokenPictureIsNotDrawnAndTheRestIs) {
    RampPicture provider;
    std::vector<uint8_t> broken(provider.GetImagePNG(1001).begin(), provider.GetImagePNG(1001).end());
    broken.resize(60);
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(Picture(40, 10)).DrawPNG({broken.data(), broken.size()}).DrawPNGAtPosition({1001}, {20, 0});
    KCCairoEngine engine;
    engine.SetImageProvider(&provider);
    for (int pass = 0; pass < 2; ++pass) { // the second time from the cache
        ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
        EXPECT_EQ(PixelAt(engine.GetImage(), 5, 5), 0u);
        EXPECT_EQ(PixelAt(engine.GetImage(), 25, 0), 0xFF500020);
    }
}

TEST(CairoEngine, HugeCoordinatesDrawWhatIsInThePicture) {
    KCGraphicStreamBinaryWriter writer;
    constexpr float kHuge = std::numeric_limits<float>::max();
    writer.OpenStream(Picture(10, 10))
        .DrawSolidRect({255, 0, 0, 255}, KURect<float>::FromEdges(-kHuge, -kHuge, kHuge, kHuge));
    writer.SetStrokeWidth(kHuge).DrawLine({-kHuge, 0}, {kHuge, 0}).DrawOval({-kHuge, 0, kHuge, kHuge});
    KCCairoEngine engine;
    ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(PixelAt(engine.GetImage(), 5, 5) >> 24, 0xFFu);
}

TEST(CairoPicture, APNGFileComesOutOfAStream) {
    KCGraphicStreamBinaryWriter writer(1);
    writer.OpenStream(Picture(30, 20)).DrawTheText("by pointer", {0, 0, 30, 20});
    kvKorvo::KCStMemObj png;
    ASSERT_EQ(GraphicStreamToPNG(writer, KCPictureOptions{2}, png), kvKorvo::kErr_NoErr);
    uint32_t width = 0;
    uint32_t height = 0;
    EXPECT_TRUE(GSReadPNGSize(png.GetBytes(), width, height));
    EXPECT_EQ(width, 60u);
    EXPECT_EQ(height, 40u);
}

TEST(CairoPicture, AStreamThatDoesNotHoldTogetherGivesNoPicture) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(Picture(30, 20)).CommandHeader(kDrawOval);
    kvKorvo::KCStMemObj png;
    EXPECT_EQ(GraphicStreamToPNG(writer, {}, png), kvKorvo::kErr_MalformedStream);
    EXPECT_TRUE(png.IsEmpty());
    EXPECT_EQ(GraphicStreamToPNG(nullptr, 0, {}, png), kvKorvo::kErr_LimitExceeded);
}

} // namespace
