// Every kind of drawing twice: by the Cairo engine, and as SVG drawn by librsvg. Shapes are compared pixel by
// pixel, text by its box. With KORVO_TEST_PICTURES=folder both pictures of each scene are kept there.

#include <cstdlib>
#include <ostream>
#include <string>

#include <gtest/gtest.h>
#include <librsvg/rsvg.h>

#include <korvolib/graphicstream/struct_writers.h>
#include <korvolib/graphicstream/to_svg.h>
#include <korvolib/utilities/error_codes.h>
#include <shells/view/cairo_engine.h>
#include <shells/view/pixels_test_internal.h>

namespace {

using namespace kvKorvo::kvGS;
using namespace kvViewTest;
using kvKorvo::KURect;
using Writer = KCGraphicStreamBinaryWriter;

struct Scene {
    const char* name;
    void (*draw)(Writer& writer);
    bool isText = false;
};

std::ostream& operator<<(std::ostream& out, const Scene& scene) { return out << scene.name; }

void KeepPicture(cairo_surface_t* surface, const std::string& name) {
    if (const char* folder = std::getenv("KORVO_TEST_PICTURES"))
        cairo_surface_write_to_png(surface, (std::string(folder) + "/" + name + ".png").c_str());
}

Surface DrawSVG(std::string_view svg, int width, int height) {
    Surface surface = MakeSurface(width, height);
    GError* error = nullptr;
    RsvgHandle* handle = rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(svg.data()), svg.size(), &error);
    EXPECT_NE(handle, nullptr) << (error == nullptr ? "" : error->message) << svg;
    if (handle == nullptr)
        return surface;
    const Context context(cairo_create(surface.get()));
    const RsvgRectangle viewport{0, 0, static_cast<double>(width), static_cast<double>(height)};
    EXPECT_TRUE(rsvg_handle_render_document(handle, context.get(), &viewport, &error));
    g_object_unref(handle);
    return surface;
}

// Shapes.

void SolidShapes(Writer& writer) {
    writer.DrawSolidRect({255, 0, 0, 255}, KURect<short>::FromEdges(10, 10, 60, 50));
    writer.DrawSolidRect({0, 128, 255, 128}, KURect<float>::FromEdges(40.25F, 30.5F, 100.75F, 80.125F));
    writer.SetDrawColor({0, 255, 0, 77}).DrawOval({80, 20, 90, 60});
    writer.SetDrawColor({20, 20, 20, 255}).DrawOval({120, 60, 60, 30}, kSolid, 30, 250);
    writer.DrawOval({10, 70, 40, 40}, kSolid, 0, -90).SetSegment(7).DrawOval({60, 80, 30, 30});
}

void WireShapes(Writer& writer) {
    writer.SetStrokeWidth(3).DrawWireRect({255, 0, 0, 128}, KURect<short>::FromEdges(10, 10, 60, 50));
    writer.SetStrokeWidth(1).DrawWireRect({0, 0, 0, 255}, KURect<float>::FromEdges(70.5F, 10, 110, 50.5F));
    writer.SetDrawColor({0, 0, 200, 200}).SetStrokeWidth(7.5F).DrawArcLine({120, 10, 60, 60}, 135, 270);
    writer.SetStrokeWidth(2).DrawOval({20, 60, 80, 40}, kWire).DrawArcLine({20, 60, 80, 50}, 0, -180);
    writer.DrawArcLine({110, 80, 60, 30}, 10, 355).SetSegment(5).DrawOval({150, 80, 30, 30}, kWire, 20, 200);
    writer.DrawLine({3, 3}, {195, 115}).DrawLine({195, 3.5F}, {3, 115.5F});
}

void Patterns(Writer& writer) {
    float y = 8;
    constexpr uint16_t kPatterns[] = {0xFFFF, 0xF0F0, 0xAAAA, 0xFF18, 0x0FF3, 0x0001, 0x8000};
    for (const uint16_t pattern : kPatterns) {
        writer.SetStrokePattern(pattern).SetStrokeWidth(4).DrawLine({5, y}, {195, y});
        y += 8;
    }
    writer.SetStrokeWidth(2).SetStrokePattern(0xFC30).DrawOval({20, 65, 80, 45}, kWire);
    writer.DrawWireRect({0, 90, 0, 255}, KURect<short>::FromEdges(110, 70, 180, 110));
}

void HardEdges(Writer& writer) {
    writer.SetAntialias(false);
    writer.DrawSolidRect({255, 0, 0, 255}, KURect<float>::FromEdges(10.4F, 10.6F, 60.3F, 50.2F));
    writer.SetDrawColor({0, 0, 0, 255}).DrawOval({80, 20, 60, 60}).SetStrokeWidth(2).DrawLine({5, 5}, {150, 110});
    writer.DrawOval({20, 60, 50, 40}, kWire);
}

void XORMode(Writer& writer) {
    writer.DrawSolidRect({200, 100, 50, 255}, KURect<short>::FromEdges(20, 20, 120, 80));
    writer.SetDrawColor({255, 255, 255, 255}).DrawXORRect(KURect<short>::FromEdges(60, 40, 180, 100));
    writer.SetXorMode(true).SetDrawColor({0, 255, 128, 128}).DrawOval({10, 10, 150, 100});
    writer.SetDrawColor({255, 255, 255, 255}).SetStrokeWidth(5).DrawLine({0, 0}, {200, 120});
}

void Turns(Writer& writer) {
    KCStGSFrameStructWriter outer(writer, KURect<int>::FromEdges(20, 20, 120, 100));
    writer.DrawSolidRect({0, 0, 0, 40}, KURect<short>::FromEdges(20, 20, 120, 100)).RotateFrame(20);
    writer.DrawSolidRect({255, 0, 0, 128}, KURect<short>::FromEdges(20, 20, 120, 100));
    {
        const KCStGSFrameStructWriter inner(writer, KURect<int>::FromEdges(60, 40, 80, 90));
        writer.RotateFrame(-45).DrawSolidRect({0, 0, 255, 200}, KURect<short>::FromEdges(60, 40, 80, 90));
    }
    writer.SetDrawColor({0, 100, 0, 255}).DrawOval({90, 40, 60, 20});
    outer.CloseFrame();
    writer.DrawSolidRect({0, 0, 0, 255}, KURect<short>::FromEdges(150, 90, 190, 110));
}

void Clips(Writer& writer) {
    const auto fill = [&](SGSRGBAColor color) {
        writer.DrawSolidRect(color, KURect<short>::FromEdges(0, 0, 200, 120));
    };
    {
        const KCStGSFrameStructWriter frame(writer, KURect<int>::FromEdges(0, 0, 200, 120));
        writer.ClipRect({10, 10, 50.5F, 40.25F});
        fill({255, 0, 0, 255});
        writer.ClipRect({40, 30, 100, 100});
        fill({0, 0, 0, 128});
    }
    {
        const KCStGSFrameStructWriter frame(writer, KURect<int>::FromEdges(0, 0, 200, 120));
        const SGSRect rects[] = {{80, 10, 40, 40}, {100, 30, 40, 40}, {150, 10, -5, 40}, {150, 10, 20, 20}};
        writer.ClipMultipleRects(rects);
        fill({0, 160, 0, 128});
    }
    {
        const KCStGSFrameStructWriter frame(writer, KURect<int>::FromEdges(0, 0, 200, 120));
        const float star[] = {60, 60, 90, 118, 20, 80, 100, 80, 30, 118};
        writer.GetGSArrays().ClearArrays();
        writer.GetGSArrays().AddPoints_2Df(star, 5);
        writer.RotateFrame(5).ClipVertices();
        fill({0, 0, 255, 200});
    }
    {
        const KCStGSFrameStructWriter frame(writer, KURect<int>::FromEdges(0, 0, 200, 120));
        writer.ClipMultipleRects({});
        fill({255, 0, 255, 255});
    }
}

void Vertices(Writer& writer, bool colored, KEGSMethod method) {
    const float shape[] = {0, 10, 8, 0, 16, 12, 24, 1, 32, 11, 36, 30, 4, 30};
    float x = 3;
    float y = 3;
    KCGSArrays& arrays = writer.GetGSArrays();
    for (const uint32_t kind : {kPolygon, kLineStrip, kTriangleFan, kTriangleStrip, kStraightLines}) {
        arrays.ClearArrays();
        for (size_t i = 0; i < 7; ++i)
            arrays.AddPoint_2Df(x + shape[2 * i], y + shape[2 * i + 1]);
        for (uint8_t i = 0; colored && i < 7; ++i)
            arrays.AddColor_4ub(static_cast<uint8_t>(i * 40), static_cast<uint8_t>(255 - i * 30), 60,
                                i == 3 ? 120 : 255);
        writer.DrawVertices(kind, method);
        x += 60;
        if (x > 150) {
            x = 3;
            y += 40;
        }
    }
}

void SolidVertices(Writer& writer) {
    Vertices(writer.SetDrawColor({200, 0, 100, 128}).SetStrokeWidth(2), false, kSolid);
}
void WireVertices(Writer& writer) { Vertices(writer.SetStrokeWidth(3), false, kWire); }
void ColoredVertices(Writer& writer) { Vertices(writer.SetStrokeWidth(4), true, kSolid); }
void ColoredWireVertices(Writer& writer) { Vertices(writer.SetStrokeWidth(1.5F), true, kWire); }

void Pictures(Writer& writer) {
    writer.DrawPNGAtPosition({1001}, {5, 5}).DrawPNGScaled({1001}, {30, 5, 64, 32});
    writer.DrawPNGAtPositionClipped({1001}, {5, 20}, {8, 22, 5, 4}).DrawPushedImage({1001}, {5, 35});
    writer.DrawPNGScaledAndClipped({1001}, {100, 5, 90, 45}, {110, 10, 60, 30});
    const SGSRect clips[] = {{5, 60, 4, 8}, {12, 60, 4, 4}};
    writer.DrawPNGAtPositionMultipleClips({1001}, {5, 60}, clips);
    writer.DrawPNGScaled({1001}, {40, 60, 8, 4}).SetAntialias(false).DrawPNGScaled({1001}, {60, 55, 80, 40});
    writer.SetAntialias(true).SetXorMode(true).DrawPNGScaled({1001}, {120, 60, 64, 32});
    const KCStGSFrameStructWriter frame(writer, KURect<int>::FromEdges(20, 80, 52, 112));
    writer.SetXorMode(false).RotateFrame(30).DrawPNGScaled({1001}, {20, 80, 32, 32});
}

// Text.

void Text(Writer& writer) { writer.Font("DejaVu Sans", 20).DrawTheText("Gain Ag", {20, 20, 160, 40}, kLeft, kTop); }
void CentredText(Writer& writer) {
    writer.Font("DejaVu Sans", 18, kBold).DrawTheText("-12.5 dB", {0, 0, 200, 120}, kHCenter, kVCenter);
}
void RightText(Writer& writer) {
    writer.Font("DejaVu Serif", 24, kItalic).DrawTheText("Release", {10, 10, 180, 100}, kRight, kBottom);
}
void TurnedText(Writer& writer) { writer.Font("DejaVu Sans", 20).SpecialText("Level", {0, 0, 200, 120}, -90); }
void ClippedText(Writer& writer) {
    writer.Font("DejaVu Sans Mono", 40).DrawTheText("WWWWWW", {10, 20, 200, 60}, kLeft, kVCenter, {30, 30, 60, 25});
}
void HardText(Writer& writer) {
    writer.SetAntialias(false).Font("DejaVu Sans", 20).DrawTheText("Hard", {20, 20, 160, 40});
}

constexpr Scene kScenes[] = {
    {"solid_shapes", SolidShapes},
    {"wire_shapes", WireShapes},
    {"patterns", Patterns},
    {"hard_edges", HardEdges},
    {"xor_mode", XORMode},
    {"turns", Turns},
    {"clips", Clips},
    {"solid_vertices", SolidVertices},
    {"wire_vertices", WireVertices},
    {"colored_vertices", ColoredVertices},
    {"colored_wire_vertices", ColoredWireVertices},
    {"pictures", Pictures},
    {"text", Text, true},
    {"centred_text", CentredText, true},
    {"right_text", RightText, true},
    {"turned_text", TurnedText, true},
    {"clipped_text", ClippedText, true},
    {"hard_text", HardText, true},
};

class SvgLooksTheSame : public testing::TestWithParam<Scene> {};

void ExpectSameBox(const Box& a, const Box& b, int tolerance) {
    EXPECT_FALSE(a.IsEmpty());
    EXPECT_NEAR(a.left, b.left, tolerance);
    EXPECT_NEAR(a.top, b.top, tolerance);
    EXPECT_NEAR(a.right, b.right, tolerance);
    EXPECT_NEAR(a.bottom, b.bottom, tolerance);
}

void Compare(const Scene& scene, float scale) {
    SGSStream description;
    description.logicalSize = {200, 120};
    description.scale = scale;
    description.color = {240, 240, 230, 255};
    Writer writer;
    {
        const KCStGSStreamStructWriter stream(writer, description);
        scene.draw(writer);
    }
    RampPicture provider;
    KCCairoEngine engine;
    KCGraphicStreamToSVG svg;
    engine.SetImageProvider(&provider);
    svg.SetImageProvider(&provider);
    ASSERT_EQ(engine.ExecStream(writer), kvKorvo::kErr_NoErr);
    ASSERT_EQ(svg.ExecStream(writer), kvKorvo::kErr_NoErr);
    const Surface drawn = DrawSVG(svg.GetText(), static_cast<int>(200 * scale), static_cast<int>(120 * scale));
    const std::string name = scene.name + std::string(scale == 1 ? "" : "@2x");
    KeepPicture(engine.GetImage(), name + "_cairo");
    KeepPicture(drawn.get(), name + "_svg");
    EXPECT_FALSE(BoxOf(engine.GetImage()).IsEmpty()) << "nothing was drawn";
    if (scene.isText)
        ExpectSameBox(BoxOf(engine.GetImage()), BoxOf(drawn.get()), 2 * static_cast<int>(scale));
    else
        EXPECT_LE(ShareOfDifferentPixels(engine.GetImage(), drawn.get()), 0.01);
}

TEST_P(SvgLooksTheSame, AtItsOwnSize) { Compare(GetParam(), 1); }
TEST_P(SvgLooksTheSame, AtTwiceItsSize) { Compare(GetParam(), 2); }

INSTANTIATE_TEST_SUITE_P(Scenes, SvgLooksTheSame, testing::ValuesIn(kScenes),
                         [](const auto& scene) { return std::string(scene.param.name); });

} // namespace
