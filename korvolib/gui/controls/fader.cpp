#include <korvolib/gui/controls/fader.h>

#include <korvolib/gui/controls/draw_shapes_internal.h>

#include <algorithm>

namespace kvKorvoV12_9_0_320 {

namespace {

using Rect = KURect<double>;

constexpr double kMinTrack = 32.0;
constexpr double kMinLyingTrack = 12.0;
constexpr double kTrackWidth = 4.0;
constexpr double kCapLength = 26.0; // along the travel
constexpr double kCapLengthLying = 14.0;
constexpr double kCapWidth = 28.0; // across it

// A lying fader's texts share one line: label at the left, value at the right.
sLABELLED_LAYOUT LyingLayout(const KCGUIControl& control) noexcept {
    sLABELLED_LAYOUT layout;
    layout.shape = control.GetBounds();
    const double line = LineHeight(std::max(control.GetTheme().labelHeight, control.GetTheme().valueHeight));
    if (control.GetParamData(0) == nullptr || layout.shape.GetHeight() < kMinLyingTrack + line)
        return layout;
    const bool hasLabelWin = control.GetParamData(0)->GetLabelWin().IsShown();
    const bool hasValueWin = control.GetParamData(0)->GetValueWin().IsShown();
    if (hasLabelWin && hasValueWin)
        return layout;
    Rect both = layout.shape;
    both.bottom = layout.shape.top += line;
    const double middle = hasLabelWin ? both.left : hasValueWin ? both.right : both.GetCentre().x;
    layout.label = Rect::FromEdges(both.left, both.top, middle, both.bottom);
    layout.value = Rect::FromEdges(middle, both.top, both.right, both.bottom);
    return layout;
}

// Everything is drawn upright; a lying fader exchanges the axes.
class KCFaderAxes {
  public:
    KCFaderAxes(const Rect& travel, bool isLying) noexcept : m_travel(travel), m_isLying(isLying) {}

    /// Across from −half to half around the middle, along from `low` to `high` of the travel.
    Rect Bar(double half, double low, double high) const noexcept { return Around(half, At(low), At(high)); }
    Rect Cap(double half, double length, double fraction) const noexcept {
        return Around(half, At(fraction) - length / 2, At(fraction) + length / 2);
    }

  private:
    double At(double fraction) const noexcept {
        return m_isLying ? m_travel.left + m_travel.GetWidth() * fraction
                         : m_travel.bottom - m_travel.GetHeight() * fraction;
    }
    Rect Around(double half, double from, double to) const noexcept {
        const KUPoint<double> centre = m_travel.GetCentre();
        const double low = std::min(from, to);
        const double high = std::max(from, to);
        return m_isLying ? Rect::FromEdges(low, centre.y - half, high, centre.y + half)
                         : Rect::FromEdges(centre.x - half, low, centre.x + half, high);
    }
    Rect m_travel;
    bool m_isLying;
};

void DrawTicks(KCShapes& shapes, const KCFaderAxes& axes, double half) {
    for (int tick = 0; tick <= 10; ++tick) {
        const bool isLong = tick % 5 == 0;
        const Rect mark = axes.Cap(half * (isLong ? 0.9 : 0.6), 1.0, tick / 10.0);
        shapes.Rounded(mark, 0.0, shapes.Theme().panelFrame);
    }
}

// The cap leaves at least half of the way free.
double CapLength(const Rect& shape, bool isLying) noexcept {
    const double wanted = isLying ? kCapLengthLying : kCapLength;
    return std::max(0.0, std::min(wanted, (isLying ? shape.GetWidth() : shape.GetHeight()) / 2 - 2.0));
}

Rect TravelIn(const Rect& shape, bool isLying) noexcept {
    const double end = CapLength(shape, isLying) / 2 + 1.0;
    return isLying ? shape.Inset(end, 0.0) : shape.Inset(0.0, end);
}

void DrawCap(KCShapes& shapes, const KCFaderAxes& axes, double half, double length, double fraction) {
    const KCTheme& theme = shapes.Theme();
    const Rect cap = axes.Cap(half, length, fraction);
    shapes.Rounded(cap.Inset(-1.0, -1.0), theme.cornerRadius, theme.track);
    shapes.Rounded(cap, theme.cornerRadius - 1.0, shapes.Body());
    shapes.RoundedFrame(cap, theme.cornerRadius - 1.0, 1.0, theme.bodyLight);
    shapes.Rounded(axes.Cap(half - 4.0, 2.0, fraction), 1.0, theme.text);
}

void DrawFader(KCShapes& shapes, const Rect& shape, bool isLying, double fraction, double origin) {
    const KCTheme& theme = shapes.Theme();
    const KCFaderAxes axes(TravelIn(shape, isLying), isLying);
    const double across = (isLying ? shape.GetHeight() : shape.GetWidth()) - 4.0; // room for the cap's edge
    const double half = std::min(kCapWidth, across) / 2;
    const double halfTrack = std::min(kTrackWidth, across) / 2;
    DrawTicks(shapes, axes, half);
    shapes.Rounded(axes.Bar(halfTrack, 0.0, 1.0), halfTrack, theme.track);
    shapes.Rounded(axes.Bar(halfTrack, origin, fraction), halfTrack, theme.accent);
    const double length = CapLength(shape, isLying);
    if (half > 0.0 && length > 2.0)
        DrawCap(shapes, axes, half, length, fraction);
}

} // namespace

std::unique_ptr<KCBaseControl> KCFader::Clone() const { return CloneControl(*this); }

std::span<const ERegisterType> KCFader::GetDefaultGestures() const {
    static constexpr ERegisterType kUpright[] = {kRegister_DragVertical, kRegister_Wheel, kRegister_Keys,
                                                 kRegister_ResetOnDoubleClick, kRegister_Text};
    static constexpr ERegisterType kLying[] = {kRegister_DragHorizontal, kRegister_Wheel, kRegister_Keys,
                                               kRegister_ResetOnDoubleClick, kRegister_Text};
    return IsLying() ? kLying : kUpright;
}

KCFader::Rect KCFader::GetMovementRect() const {
    return TravelIn(IsLying() ? LyingLayout(*this).shape : LabelledLayout(*this, kMinTrack).shape, IsLying());
}

void KCFader::GetDrawInstructionsControlBackground(Writer& writer) const {
    KCShapes shapes(writer, *this);
    const KCParamRegistrationData* const lead = GetParamData(0);
    const sLABELLED_LAYOUT layout = IsLying() ? LyingLayout(*this) : LabelledLayout(*this, kMinTrack);
    if (HasPictures())
        KCGUIControl::GetDrawInstructionsControlBackground(writer);
    else
        DrawFader(shapes, layout.shape, IsLying(), FractionOf(lead), OriginOf(lead));
    if (!IsLying()) {
        DrawLabelled(shapes, *this, layout);
        return;
    }
    KCFixedString<127> text;
    GetCaption(text);
    shapes.Label(text, layout.label, KETextAlign::Left);
    ValueText(lead, text);
    shapes.Value(text, layout.value, KETextAlign::Right);
}

} // namespace kvKorvoV12_9_0_320
