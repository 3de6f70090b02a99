#include <korvolib/gui/controls/menu.h>

#include <korvolib/gui/controls/draw_shapes_internal.h>

#include <algorithm>

namespace kvKorvoV12_9_0_320 {

namespace {

using Rect = KURect<double>;

constexpr double kMinField = 16.0;
constexpr double kMaxField = 24.0;
constexpr double kArrowWidth = 16.0; // what an arrow takes of the field at each end

void DrawArrow(KCShapes& shapes, KUPoint<double> centre, double toward, KUColor color) {
    const KUPoint<double> corners[] = {{centre.x + toward * 2.5, centre.y},
                                       {centre.x - toward * 2.0, centre.y - 4.0},
                                       {centre.x - toward * 2.0, centre.y + 4.0}};
    shapes.Polygon(corners, color);
}

// The field in the middle of the height, the label right above it.
sLABELLED_LAYOUT LayoutOf(const KCGUIControl& control) noexcept {
    sLABELLED_LAYOUT layout;
    layout.shape = control.GetBounds();
    const KCParamRegistrationData* const lead = control.GetParamData(0);
    const double line = LineHeight(control.GetTheme().labelHeight);
    const bool hasLabel =
        lead != nullptr && !lead->GetLabelWin().IsShown() && layout.shape.GetHeight() >= kMinField + line;
    if (hasLabel)
        layout.shape.top += line;
    const double spare = std::max(0.0, layout.shape.GetHeight() - kMaxField);
    layout.shape = layout.shape.Inset(0.0, spare / 2);
    if (hasLabel)
        layout.label =
            Rect::FromEdges(layout.shape.left, layout.shape.top - line, layout.shape.right, layout.shape.top);
    return layout;
}

} // namespace

std::unique_ptr<KCBaseControl> KCMenu::Clone() const { return CloneControl(*this); }

std::span<const ERegisterType> KCMenu::GetDefaultGestures() const {
    static constexpr ERegisterType kGestures[] = {kRegister_Menu, kRegister_Wheel, kRegister_Keys};
    return kGestures;
}

KECursor KCMenu::ChangeCursor(const KCEventData&) const {
    return IsVisible() && !IsDisabled() ? KECursor::Hand : KECursor::Arrow;
}

Rect KCMenu::GetValueRectSelf(size_t) const { return LayoutOf(*this).shape; }

KCMenu::BUFFER_HEADER* KCMenu::Step(const KCEventData& event, bool& isHandled) {
    for (size_t index = 0; index < m_params.size(); ++index) {
        if (!m_params[index].IsRegisteredToType(kRegister_Menu) ||
            !m_params[index].GetRegisterInfo().CompareParamModifiers(event.modifiers) || !event.modifiers.IsEmpty())
            continue;
        isHandled = true;
        TouchParamOf(index);
        const bool isBack = event.position.x < LayoutOf(*this).shape.left + kArrowWidth;
        return m_params[index].OffsetParamValueToNextDifferentValue(isBack ? -1.0 : 1.0, kRegister_Menu);
    }
    return nullptr;
}

KCMenu::BUFFER_HEADER* KCMenu::MouseDownSelf(const KCEventData& event, Rect&, bool& isHandled) {
    return isHandled ? nullptr : Step(event, isHandled);
}

KCMenu::BUFFER_HEADER* KCMenu::TouchDownSelf(const KCEventData& event, Rect&) {
    if (IsInGesture())
        return nullptr;
    bool isHandled = false;
    BUFFER_HEADER* const chain = Step(event, isHandled);
    if (isHandled)
        EndSingleEvent();
    return chain;
}

void KCMenu::GetDrawInstructionsControlBackground(Writer& writer) const {
    KCShapes shapes(writer, *this);
    const KCTheme& theme = shapes.Theme();
    const KCParamRegistrationData* const lead = GetParamData(0);
    const sLABELLED_LAYOUT layout = LayoutOf(*this);
    const Rect& field = layout.shape;
    if (HasPictures()) {
        KCGUIControl::GetDrawInstructionsControlBackground(writer);
    } else {
        const double y = field.GetCentre().y;
        shapes.Rounded(field, theme.cornerRadius, theme.track);
        shapes.RoundedFrame(field, theme.cornerRadius, 1.0, IsHighlighted() ? theme.bodyLight : theme.panelFrame);
        if (field.GetWidth() >= 3 * kArrowWidth && field.GetHeight() >= 8.0) {
            DrawArrow(shapes, {field.left + kArrowWidth / 2, y}, -1.0, theme.textDim);
            DrawArrow(shapes, {field.right - kArrowWidth / 2, y}, 1.0, theme.textDim);
        }
    }
    KCFixedString<127> text;
    if (lead != nullptr && !lead->GetValueWin().IsShown()) {
        ValueText(lead, text);
        shapes.Value(text, field.Inset(kArrowWidth, 0.0));
    }
    if (layout.label.IsEmpty())
        return;
    GetCaption(text);
    shapes.Label(text, layout.label);
}

} // namespace kvKorvoV12_9_0_320
