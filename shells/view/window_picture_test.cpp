// What a window draws of a change, drawn over the picture before, is the picture that the window would draw now:
// pixel by pixel.
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/gui/window_test_internal.h>
#include <shells/view/cairo_engine.h>
#include <shells/view/pixels_test_internal.h>

namespace {

using namespace kvWindowTest;
using namespace kvViewTest;
using kvKorvo::kvGS::KCCairoEngine;
using Writer = CStandardGUI_X::Writer;

// A picture of the window that is drawn over again and again.
class Screen {
  public:
    Screen(KUSize<double> size, double scale)
        : m_surface(MakeSurface(static_cast<int>(size.width * scale), static_cast<int>(size.height * scale))),
          m_context(cairo_create(m_surface.get())) {
        cairo_scale(m_context.get(), scale, scale);
    }
    void Play(const Writer& writer) {
        KCCairoEngine engine;
        engine.SetTarget(m_context.get());
        ASSERT_EQ(engine.ExecStream(writer), 0);
    }
    cairo_surface_t* Get() const { return m_surface.get(); }

  private:
    Surface m_surface;
    Context m_context;
};

// Cairo finds how much of a pixel a smooth edge covers with other roundings where a clip cuts the shape.
constexpr int kRounding = 8; // of 255

int NumDifferentPixels(const Screen& a, const Screen& b) {
    int different = 0;
    for (int y = 0; y < cairo_image_surface_get_height(a.Get()); ++y)
        for (int x = 0; x < cairo_image_surface_get_width(a.Get()); ++x)
            different += Difference(PixelAt(a.Get(), x, y), PixelAt(b.Get(), x, y)) > kRounding;
    return different;
}

// Controls that overlap each other and stand between pixels, over and under panels that end inside of them.
std::string CrowdedXML() {
    return WindowXML(
        KnobXML("A", "10.5 10.25 60 80", "Gain") + KnobXML("B", "40 30 60 80", "Pan") +
            "<Control Class=\"Fader\" Name=\"Top\" Rect=\"60 20.7 40 120\"><Flags DrawTopmost=\"true\"/>"
            "<ParameterList><Parameter Name=\"Tone\"/></ParameterList></Control>" +
            ControlXML("ValueText", "Text", "30.3 95 80 24", "Gain") +
            ControlXML("Menu", "Menu", "100 90 80 40", "Mode") +
            "<Control Class=\"XYPad\" Name=\"Pad\" Rect=\"90 60 99.9 120\" Direction=\"Both\">"
            "<ParameterList><Parameter Name=\"Tone\" Role=\"X\"/><Parameter Name=\"Width\" Role=\"Y\"/>"
            "</ParameterList></Control>" +
            ControlXML("Label", "Caption", "95 65 100 20", "Gain"),
        "<Drawable Rect=\"4 4 70.6 200\" Color=\"#22252C80\" FrameColor=\"#D04550\" Radius=\"6\"/>"
        "<Drawable Rect=\"50.2 50.4 90 90\" Color=\"#40FF0060\" FrameColor=\"#404550\"/>"
        "<Drawable Rect=\"20 100 100 20\" Text=\"A caption\" TextHeight=\"12\"/>");
}

void Disturb(sWINDOW& window, std::mt19937& random) {
    const auto upTo = [&random](int count) { return static_cast<double>(random() % static_cast<unsigned>(count)); };
    const double x = upTo(200), y = upTo(200);
    KCGUIControl& control = *window.window.GetControl(random() % window.window.GetNumControls());
    const double seen = window.window.GetOpenMenu() != nullptr ? upTo(6) : upTo(10);
    switch (static_cast<int>(seen)) {
    case 8:
    case 9:
        window.window.MouseDown(Down(140, 112, KEModifier::Secondary)); // the menu, of a crowd or not
        window.window.MouseUp(Up(140, 112));
        break;
    case 0:
        window.window.MouseWheel(Over(x, y), 0, 1);
        break;
    case 1:
        window.window.MouseOver(Over(x, y));
        break;
    case 2:
        control.GetControlFlag(kControl_Hidden) ? control.Show() : control.Hide();
        break;
    case 3:
        control.IsDisabled() ? control.ClearDisabled() : control.SetDisabled();
        break;
    case 4:
        window.window.Key(Key(PluginViewManager::kKey_Tab));
        break;
    default:
        window.Drag(x, y, upTo(60) - 30, upTo(60) - 30);
    }
}

void ExpectSamePictures(const std::string& xml, double scale) {
    sWINDOW window(xml);
    ASSERT_EQ(window.result, 0);
    Screen screen(window.window.GetSize(), scale);
    std::mt19937 random(7);
    for (int step = 0; step < 150; ++step) {
        Writer dirty;
        ASSERT_EQ(window.window.DrawDirty(dirty), 0);
        screen.Play(dirty);
        if (step % 5 == 0) {
            Writer all;
            ASSERT_EQ(window.window.Draw(all), 0);
            Screen fresh(window.window.GetSize(), scale);
            fresh.Play(all);
            ASSERT_EQ(NumDifferentPixels(screen, fresh), 0) << "step " << step << " at scale " << scale;
        }
        Disturb(window, random);
    }
}

// Whole scales: at others Cairo measures a text that a clip cuts by its unhinted outlines, and may lose the row of
// pixels that hinting adds on top.
TEST(WindowPixels, ChangesDrawnOverThePictureBeforeGiveThePictureOfNow) {
    for (const double scale : {1.0, 2.0})
        ExpectSamePictures(CrowdedXML(), scale);
}

TEST(WindowPixels, TheSameForEveryClassSideBySide) { ExpectSamePictures(EveryClassXML(), 1.0); }

} // namespace
