#include <korvolib/gui/controls/xy_pad.h>

#include <korvolib/gui/controls/draw_shapes_internal.h>
#include <korvolib/utilities/xml/xml_element.h>

#include <algorithm>

namespace kvKorvoV12_9_0_320 {

namespace {

using Rect = KURect<double>;
using PluginViewManager::kKey_Down;
using PluginViewManager::kKey_Left;
using PluginViewManager::kKey_Right;
using PluginViewManager::kKey_Up;

constexpr double kDotRadius = 6.0;
constexpr double kMargin = 4.0;
constexpr int kGridLines = 8;

void DrawGrid(KCShapes& shapes, const Rect& rect) {
    const KUColor color = shapes.Theme().panel;
    for (int line = 1; line < kGridLines; ++line) {
        const double x = rect.left + rect.GetWidth() * line / kGridLines;
        const double y = rect.top + rect.GetHeight() * line / kGridLines;
        const double width = line == kGridLines / 2 ? 2.0 : 1.0;
        shapes.LineUp(rect, x, width, color);
        shapes.LineAcross(rect, y, width, color);
    }
}

void DrawCrossHair(KCShapes& shapes, const Rect& rect, KUPoint<double> dot) {
    shapes.LineUp(rect, dot.x, 1.0, shapes.Theme().accentOff);
    shapes.LineAcross(rect, dot.y, 1.0, shapes.Theme().accentOff);
}

void DrawDot(KCShapes& shapes, const Rect& rect, KUPoint<double> dot) {
    const KCTheme& theme = shapes.Theme();
    const double radius = std::min({kDotRadius, rect.GetWidth() / 2 - 1.0, rect.GetHeight() / 2 - 1.0});
    shapes.Disc(dot, radius + 1.0, theme.track);
    shapes.Disc(dot, radius, theme.accent);
    shapes.Disc(dot, radius / 3, theme.track);
}

} // namespace

std::unique_ptr<KCBaseControl> KCXYPad::Clone() const { return CloneControl(*this); }

std::span<const ERegisterType> KCXYPad::GetDefaultGestures() const {
    static constexpr ERegisterType kGestures[] = {kRegister_DragVertical, kRegister_Wheel,
                                                  kRegister_ResetOnDoubleClick};
    return kGestures;
}

int32_t KCXYPad::ReadFromXMLParameterList_Registration(const KCXMLElement& element, cALGORITHM& algorithm,
                                                       Problems& problems) {
    const size_t first = m_params.size();
    const int32_t error = KCGUIControl::ReadFromXMLParameterList_Registration(element, algorithm, problems);
    const bool hasOwnGestures =
        element.FindChild("Register") != nullptr || element.FindChild("RegisterType") != nullptr;
    for (size_t index = first; index < m_params.size() && !hasOwnGestures; ++index) {
        KCParamRegistrationData& record = m_params[index];
        if (record.GetRole() != "X" || !record.GetRegisterFlag(kRegister_DragVertical))
            continue;
        record.SetRegisterFlag(kRegister_DragVertical, false);
        record.SetRegisterFlag(kRegister_Wheel, false);
        record.GetRegisterInfo().SetType(kRegister_DragHorizontal);
    }
    return error;
}

size_t KCXYPad::FindRole(const char* role) const noexcept {
    for (size_t index = 0; index < m_params.size(); ++index)
        if (m_params[index].GetRole() == role)
            return index;
    return kNoParam;
}

Rect KCXYPad::GetMovementRect() const { return GetBounds().Inset(kDotRadius + 2.0, kDotRadius + 2.0); }

KCXYPad::BUFFER_HEADER* KCXYPad::KeySelf(const KCEventData& event, bool& isHandled) {
    const bool isAcross = event.key == kKey_Left || event.key == kKey_Right;
    const bool isUpright = event.key == kKey_Down || event.key == kKey_Up;
    const size_t index = isAcross ? FindRole("X") : isUpright ? FindRole("Y") : kNoParam;
    if (isHandled || index == kNoParam || !event.modifiers.IsEmpty())
        return nullptr;
    isHandled = true;
    const double direction = event.key == kKey_Right || event.key == kKey_Up ? 1.0 : -1.0;
    KCParamRegistrationData& record = m_params[index];
    TouchParamOf(index);
    BUFFER_HEADER* const chain =
        record.OffsetParamValueToNextDifferentValue(direction, record.GetRegisterInfo().GetType());
    EndSingleEvent();
    return chain;
}

KUPoint<double> KCXYPad::GetDot() const {
    const Rect travel = GetMovementRect();
    return {travel.left + travel.GetWidth() * FractionOf(GetParamData(FindRole("X"))),
            travel.bottom - travel.GetHeight() * FractionOf(GetParamData(FindRole("Y")))};
}

void KCXYPad::GetDrawInstructionsControlBackground(Writer& writer) const {
    KCShapes shapes(writer, *this);
    const KCTheme& theme = shapes.Theme();
    const Rect field = GetBounds();
    const Rect inside = field.Inset(1.0, 1.0);
    shapes.Rounded(field, theme.cornerRadius, theme.track);
    DrawGrid(shapes, inside);
    DrawCrossHair(shapes, inside, GetDot());
    shapes.RoundedFrame(field, theme.cornerRadius, 1.0, IsHighlighted() ? theme.bodyLight : theme.panelFrame);
}

// The dot stands on a graph, if there is one.
void KCXYPad::GetDrawInstructionsParamsData(Writer& writer) const {
    KCGUIControl::GetDrawInstructionsParamsData(writer);
    KCShapes shapes(writer, *this);
    const Rect field = GetBounds();
    DrawDot(shapes, field.Inset(1.0, 1.0), GetDot());
    if (field.GetHeight() >= 4 * LineHeight(shapes.Theme().valueHeight))
        DrawValues(shapes);
}

// In the corner that is farthest from the dot.
void KCXYPad::DrawValues(KCShapes& shapes) const {
    KCFixedString<127> text, second;
    ValueText(GetParamData(FindRole("X")), text);
    ValueText(GetParamData(FindRole("Y")), second);
    if (!text.empty() && !second.empty())
        text << ", ";
    text << second;
    const Rect inside = GetBounds().Inset(kMargin, kMargin);
    const double line = LineHeight(shapes.Theme().valueHeight);
    const KUPoint<double> dot = GetDot();
    const double top = dot.y > inside.GetCentre().y ? inside.top : inside.bottom - line;
    shapes.Value(text, Rect::FromEdges(inside.left, top, inside.right, top + line),
                 dot.x < inside.GetCentre().x ? KETextAlign::Right : KETextAlign::Left);
}

} // namespace kvKorvoV12_9_0_320
