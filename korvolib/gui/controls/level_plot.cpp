#include <korvolib/gui/controls/level_plot.h>

#include <korvolib/gui/controls/draw_shapes_internal.h>

#include <algorithm>

namespace kvKorvoV12_9_0_320 {

namespace {

using Rect = KURect<double>;

constexpr int kMarks = 10;
constexpr double kMinBar = 12.0;

void DrawGraphGrid(KCShapes& shapes, const Rect& rect) {
    for (int mark = 1; mark < kMarks; ++mark) {
        const double x = rect.left + rect.GetWidth() * mark / kMarks;
        shapes.LineUp(rect, x, 1.0, shapes.Theme().panel);
    }
    for (int mark = 1; mark < 4; ++mark) {
        const double y = rect.top + rect.GetHeight() * mark / 4;
        shapes.LineAcross(rect, y, mark == 2 ? 2.0 : 1.0, shapes.Theme().panel);
    }
}

// The part of `rect` between two shares of its length.
Rect PartOf(const Rect& rect, bool isLying, double from, double to) {
    const double low = std::min(from, to);
    const double high = std::max(from, to);
    return isLying ? Rect::FromEdges(rect.left + rect.GetWidth() * low, rect.top,
                                     rect.left + rect.GetWidth() * high, rect.bottom)
                   : Rect::FromEdges(rect.left, rect.bottom - rect.GetHeight() * high, rect.right,
                                     rect.bottom - rect.GetHeight() * low);
}

void DrawBar(KCShapes& shapes, const Rect& rect, bool isLying, double fraction, double origin) {
    const KCTheme& theme = shapes.Theme();
    const Rect inside = rect.Inset(2.0, 2.0);
    shapes.Rounded(PartOf(inside, isLying, origin, fraction), 0.0, theme.accent);
    for (int mark = 1; mark < kMarks; ++mark) {
        const double share = static_cast<double>(mark) / kMarks;
        if (isLying)
            shapes.LineUp(inside, inside.left + inside.GetWidth() * share, 1.0, theme.track);
        else
            shapes.LineAcross(inside, inside.bottom - inside.GetHeight() * share, 1.0, theme.track);
    }
}

} // namespace

std::unique_ptr<KCBaseControl> KCLevelPlot::Clone() const { return CloneControl(*this); }

std::span<const ERegisterType> KCLevelPlot::GetDefaultGestures() const {
    static constexpr ERegisterType kGestures[] = {kRegister_Display};
    return kGestures;
}

void KCLevelPlot::GetDrawInstructionsControlBackground(Writer& writer) const {
    KCShapes shapes(writer, *this);
    const KCTheme& theme = shapes.Theme();
    const KCParamRegistrationData* const lead = GetParamData(0);
    const bool hasGraph = lead != nullptr && lead->GetGraphWin().IsShown();
    sLABELLED_LAYOUT layout;
    layout.shape = GetBounds();
    if (!hasGraph)
        layout = LabelledLayout(*this, kMinBar);
    shapes.Rounded(layout.shape, theme.cornerRadius, theme.track);
    if (hasGraph)
        DrawGraphGrid(shapes, ToWindow(lead->GetGraphWin().rect));
    else
        DrawBar(shapes, layout.shape, GetDirection() == KEControlDirection::Horizontal, FractionOf(lead),
                OriginOf(lead));
    shapes.RoundedFrame(layout.shape, theme.cornerRadius, 1.0, theme.panelFrame);
    DrawLabelled(shapes, *this, layout);
}

} // namespace kvKorvoV12_9_0_320
