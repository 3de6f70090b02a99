#include <korvolib/gui/controls/knob.h>

#include <korvolib/gui/controls/draw_shapes_internal.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kvKorvoV12_9_0_320 {

namespace {

constexpr double kStartAngle = 135.0; // clockwise from the right: the travel opens downwards
constexpr double kSweepAngle = 270.0;
constexpr double kMinDial = 20.0;
constexpr double kMinBody = 4.0;

KUPoint<double> DirectionOf(double angle) {
    const double radians = angle * std::numbers::pi / 180.0;
    return {std::cos(radians), std::sin(radians)};
}

KURect<double> SquareIn(const KURect<double>& rect) {
    const double half = std::min(rect.GetWidth(), rect.GetHeight()) / 2;
    const KUPoint<double> centre = rect.GetCentre();
    return KURect<double>::FromEdges(centre.x - half, centre.y - half, centre.x + half, centre.y + half);
}

void DrawDial(KCShapes& shapes, const KURect<double>& rect, double fraction, double origin) {
    const KCTheme& theme = shapes.Theme();
    const KUPoint<double> centre = rect.GetCentre();
    const double stroke = theme.strokeWidth;
    const double radius = std::min(rect.GetWidth(), rect.GetHeight()) / 2 - stroke / 2;
    const double body = radius - stroke * 1.5;
    shapes.Arc(centre, radius, kStartAngle, kSweepAngle, stroke, theme.track);
    shapes.Arc(centre, radius, kStartAngle + kSweepAngle * origin, kSweepAngle * (fraction - origin), stroke,
               theme.accent);
    if (body < kMinBody)
        return; // room for the arc alone
    shapes.Disc(centre, body + 1.0, theme.track);
    shapes.Disc(centre, body, shapes.Body());
    shapes.Arc(centre, body - 0.5, 200.0, 140.0, 1.0, theme.bodyLight);
    const KUPoint<double> pointer = DirectionOf(kStartAngle + kSweepAngle * fraction);
    const auto onPointer = [&](double distance) {
        return KUPoint<double>{centre.x + distance * pointer.x, centre.y + distance * pointer.y};
    };
    shapes.Line(onPointer(body * 0.35), onPointer(body - 1.5), std::max(2.0, body / 8), theme.text);
}

} // namespace

std::unique_ptr<KCBaseControl> KCKnob::Clone() const { return CloneControl(*this); }

std::span<const ERegisterType> KCKnob::GetDefaultGestures() const {
    static constexpr ERegisterType kGestures[3][6] = {
        {kRegister_DragVertical, kRegister_Wheel, kRegister_Keys, kRegister_Pinch, kRegister_ResetOnDoubleClick,
         kRegister_Text},
        {kRegister_DragHorizontal, kRegister_Wheel, kRegister_Keys, kRegister_Pinch, kRegister_ResetOnDoubleClick,
         kRegister_Text},
        {kRegister_Drag, kRegister_Wheel, kRegister_Keys, kRegister_Pinch, kRegister_ResetOnDoubleClick,
         kRegister_Text}};
    return kGestures[static_cast<size_t>(GetDirection()) % 3];
}

KCKnob::Rect KCKnob::GetMovementRect() const { return SquareIn(LabelledLayout(*this, kMinDial).shape); }

void KCKnob::GetDrawInstructionsControlBackground(Writer& writer) const {
    KCShapes shapes(writer, *this);
    const KCParamRegistrationData* const lead = GetParamData(0);
    const sLABELLED_LAYOUT layout = LabelledLayout(*this, kMinDial);
    const double fraction = FractionOf(lead);
    if (HasPictures())
        KCGUIControl::GetDrawInstructionsControlBackground(writer);
    else
        DrawDial(shapes, SquareIn(layout.shape), fraction, OriginOf(lead));
    DrawLabelled(shapes, *this, layout);
}

} // namespace kvKorvoV12_9_0_320
