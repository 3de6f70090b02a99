// KCShapes: what the controls of this folder draw with: rounded panels, discs, arcs, texts that fit, in the colours
// of a theme, all of them paler while the control is disabled. And where on a control its parts go.
//
// It lives within one frame of the stream. It allocates nothing, but for the growth of the stream and its arrays.
#pragma once

#include <korvolib/gui/controls/captioned_control.h>
#include <korvolib/gui/gui_control.h>
#include <korvolib/gui/theme.h>

#include <span>
#include <string_view>

namespace kvKorvoV12_9_0_320 {

class KCShapes {
  public:
    using Writer = KCGUIControl::Writer;
    using Rect = KURect<double>;
    using Point = KUPoint<double>;

    KCShapes(Writer& writer, const KCGUIControl& control) noexcept;

    const KCTheme& Theme() const noexcept { return m_theme; }
    /// The body of a knob or button: lighter under the pointer.
    KUColor Body() const noexcept { return m_isHighlighted ? m_theme.bodyLight : m_theme.body; }

    // Corners and edges are antialiased; empty rectangles draw nothing.
    void Rounded(const Rect& rect, double radius, KUColor color) noexcept;
    /// The line lies inside the rectangle.
    void RoundedFrame(const Rect& rect, double radius, double width, KUColor color) noexcept;
    void Disc(Point centre, double radius, KUColor color) noexcept;
    /// Degrees clockwise from the right; its middle line runs at `radius`.
    void Arc(Point centre, double radius, double startAngle, double sweepAngle, double width,
             KUColor color) noexcept;
    void Line(Point from, Point to, double width, KUColor color) noexcept;
    /// From edge to edge of the rectangle, no farther than it reaches.
    void LineAcross(const Rect& rect, double y, double width, KUColor color) noexcept;
    void LineUp(const Rect& rect, double x, double width, KUColor color) noexcept;
    void Polygon(std::span<const Point> corners, KUColor color) noexcept;

    /// One line in the middle of the rectangle's height. One that would not fit is plain instead of bold, and then
    /// shortened with "…". Smaller than `height` where the rectangle is; nothing below 5 pixels.
    void Text(const KCFixedStringBase& text, const Rect& rect, double height, KUColor color,
              KETextAlign align = KETextAlign::Centre, bool isBold = false) noexcept;
    void Label(const KCFixedStringBase& text, const Rect& rect, KETextAlign align = KETextAlign::Centre) noexcept {
        Text(text, rect, m_theme.labelHeight, m_theme.textDim, align);
    }
    /// A number that would not fit goes without its units: one that is cut is another number.
    void Value(const KCFixedStringBase& text, const Rect& rect, KETextAlign align = KETextAlign::Centre) noexcept;

    /// Picture `image` of a list, from 0; false, and nothing drawn, without pictures. The list's rectangle counts
    /// from the control's corner; an empty one is the whole control.
    bool Picture(const sBITMAP_WIN& images, int32_t image) noexcept;

  private:
    kvGS::SGSRGBAColor Tone(KUColor color) const noexcept;
    void FittingText(std::string_view text, const Rect& rect, double em, KUColor color, KETextAlign align,
                     bool isBold) noexcept;
    void AddRounded(const Rect& rect, double radius) noexcept;
    void Finish() noexcept;

    Writer& m_writer;
    const KCTheme& m_theme;
    Rect m_bounds;
    double m_opacity = 1.0;
    bool m_isHighlighted = false;
    double m_fontHeight = 0.0; // of the font set last; 0 before
    bool m_isFontBold = false;
};

/// How wide a text comes out, in pixels, in the font family of the library's own theme; there is no font here to
/// ask, so its widths are in a table. In a wider family a text may reach out of its place, and is clipped there.
double EstimateTextWidth(std::string_view text, double height, bool isBold) noexcept;
/// Cuts whole characters off the end and puts "…" there, until the text is not wider than `width`. Empty where not
/// even that fits.
void FitText(KCFixedStringBase& text, double height, bool isBold, double width) noexcept;

/// Of one line of text, with some air.
inline double LineHeight(double em) noexcept { return em * 1.4; }

// What a registration shows; all of them answer for a null or unbound one.

/// 0 … 1 along the travel; a discrete parameter is at 1 in its last state.
double FractionOf(const KCParamRegistrationData* registration) noexcept;
/// Where the value begins on its travel: 0, or the middle for the role "Bipolar" and a scale from −x to +x.
double OriginOf(const KCParamRegistrationData* registration);
/// The parameter's label, or its name without one.
void LabelText(const KCParamRegistrationData* registration, KCFixedStringBase& text);
/// The value, and behind it the units if the value is a number ("-3.0 dB", "90°", "Off").
void ValueText(const KCParamRegistrationData* registration, KCFixedStringBase& text);
/// The same of a text that stands for a value.
void AppendUnits(KCFixedStringBase& text, const KCFixedStringBase& units);

/// A control with its label above and its value below its shape.
struct sLABELLED_LAYOUT {
    KURect<double> label; // empty: none
    KURect<double> shape;
    KURect<double> value; // empty: none
};
/// What there is no room for is left out: first the label, then the value, so that `minShape` stays in height.
/// Texts that have windows of their own get no place here.
sLABELLED_LAYOUT LabelledLayout(const KCGUIControl& control, double minShape) noexcept;
/// The caption and the value of the lead registration.
void DrawLabelled(KCShapes& shapes, const KCCaptionedControl& control, const sLABELLED_LAYOUT& layout);

/// Of a class with a copy constructor; null without memory.
template <class Control>
std::unique_ptr<KCBaseControl> CloneControl(const Control& control) {
    try {
        return std::make_unique<Control>(control);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace kvKorvoV12_9_0_320
