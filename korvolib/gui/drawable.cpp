#include <korvolib/gui/drawable.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/converters.h>
#include <korvolib/gui/attribute_writer_internal.h>
#include <korvolib/gui/description_numbers_internal.h>
#include <korvolib/gui/theme.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

namespace {

using namespace GUIDescription;

constexpr const char* kAlignNames[] = {"Left", "Centre", "Right"}; // in the order of KETextAlign
constexpr double kTallest = 1000.0;                                // pixels of a text

constexpr uint32_t kHorizontals[] = {kvGS::kLeft, kvGS::kHCenter, kvGS::kRight}; // in the order of KETextAlign

// The vertices of a rectangle with round corners, clockwise from the right end of its top edge.
void AddRoundedRect(kvGS::KCGSArrays& arrays, const KURect<float>& rect, float radius) {
    constexpr int kPiecesPerCorner = 8;
    constexpr float kQuarter = std::numbers::pi_v<float> / 2.0f;
    const KUPoint<float> centres[] = {{rect.right - radius, rect.top + radius},
                                      {rect.right - radius, rect.bottom - radius},
                                      {rect.left + radius, rect.bottom - radius},
                                      {rect.left + radius, rect.top + radius}};
    for (int corner = 0; corner < 4; ++corner)
        for (int piece = 0; piece <= kPiecesPerCorner; ++piece) {
            const float angle =
                kQuarter * (static_cast<float>(corner - 1) + static_cast<float>(piece) / kPiecesPerCorner);
            (void)arrays.AddPoint_2Df(centres[corner].x + radius * std::cos(angle),
                                      centres[corner].y + radius * std::sin(angle));
        }
}

void DrawPanel(kvGS::KCGraphicStreamBinaryWriter& writer, KUColor color, const KURect<float>& rect, float radius,
               kvGS::KEGSMethod method) {
    const kvGS::SGSRGBAColor ink = kvGS::KCRGBAColorToSGSRGBAColor(color);
    const float round = std::min({radius, rect.GetWidth() / 2.0f, rect.GetHeight() / 2.0f});
    if (!(round > 0.0f)) {
        if (method == kvGS::kSolid)
            writer.DrawSolidRect(ink, rect);
        else
            writer.SetStrokeWidth(1.0f).DrawWireRect(ink, rect);
        return;
    }
    // A line has its width on both sides of the vertices: half a unit inwards it lies within the rectangle.
    const bool isWire = method == kvGS::kWire;
    writer.GetGSArrays().ClearArrays();
    AddRoundedRect(writer.GetGSArrays(), isWire ? rect.Inset(0.5f, 0.5f) : rect,
                   isWire ? std::max(round - 0.5f, 0.0f) : round);
    writer.SetDrawColor(ink).SetStrokeWidth(1.0f).DrawVertices(kvGS::kPolygon, method);
    writer.GetGSArrays().ClearArrays();
}

} // namespace

void CDrawable::GetDrawInstructions(kvGS::KCGraphicStreamBinaryWriter& writer, const KCTheme& theme) const {
    if (m_rect.IsEmpty())
        return;
    const KURect<float> rect = m_rect.ConvertTo<float>();
    const float radius = KUConvertCoordinate<float>(m_radius);
    if (m_hasColor)
        DrawPanel(writer, m_color, rect, radius, kvGS::kSolid);
    if (m_resID != 0)
        writer.DrawPNGScaled(kvGS::KCGSImage(m_resID), kvGS::ToSGSRect(m_rect));
    if (m_hasFrameColor)
        DrawPanel(writer, m_frameColor, rect, radius, kvGS::kWire);
    if (m_text.empty())
        return;
    const double em = m_textWin.height > 0.0 ? m_textWin.height : theme.titleHeight;
    writer.Font(theme.fontFamily, KUConvertCoordinate<float>(em), m_textWin.isBold ? kvGS::kBold : kvGS::kPlain)
        .SetDrawColor(kvGS::KCRGBAColorToSGSRGBAColor(m_textWin.hasColor ? m_textWin.color : theme.text))
        .DrawTheText(m_text, kvGS::ToSGSRect(m_rect), kHorizontals[static_cast<size_t>(m_textWin.align)]);
}

int32_t CDrawable::ReadFromXML(const KCXMLElement& element) {
    Problems problems;
    return ReadFromXML(element, problems);
}

int32_t CDrawable::ReadFromXML(const KCXMLElement& element, Problems& problems) {
    const size_t numBefore = problems.size();
    KURect<double> rect;
    if (!ReadRect(element, "Rect", rect, problems)) {
        if (problems.size() == numBefore)
            AddProblem(element, "a Drawable needs a Rect", nullptr, problems);
        return kErr_BadDescription;
    }
    RM::KCResContainer* const container = GetResContainer();
    *this = CDrawable();
    SetResContainer(container);
    m_rect = rect;
    m_hasColor = ReadColor(element, "Color", m_color, problems);
    m_hasFrameColor = ReadColor(element, "FrameColor", m_frameColor, problems);
    ReadNumber(element, "Radius", 0.0, kFarthest, m_radius, problems);
    ReadWhole(element, "ResID", 0, std::numeric_limits<int32_t>::max(), m_resID, problems);
    m_text = element.GetAttribute("Text", "");
    ReadNumber(element, "TextHeight", 0.0, kTallest, m_textWin.height, problems);
    m_textWin.hasColor = ReadColor(element, "TextColor", m_textWin.color, problems);
    ReadWord(element, "TextAlign", kAlignNames, m_textWin.align, problems);
    ReadFlag(element, "Bold", m_textWin.isBold, problems);
    return problems.size() == numBefore ? kErr_NoErr : kErr_BadDescription;
}

int32_t CDrawable::WriteToXML(KCXMLElement& element) const {
    AttributeWriter writer(element);
    writer.Set("Rect", RectText(m_rect));
    if (m_hasColor)
        writer.Set("Color", m_color.Format().c_str());
    if (m_hasFrameColor)
        writer.Set("FrameColor", m_frameColor.Format().c_str());
    writer.SetUnless(0.0, "Radius", m_radius).SetUnless(0, "ResID", m_resID);
    if (!m_text.empty())
        writer.Set("Text", m_text);
    writer.SetUnless(0.0, "TextHeight", m_textWin.height).SetUnless(false, "Bold", m_textWin.isBold);
    if (m_textWin.hasColor)
        writer.Set("TextColor", m_textWin.color.Format().c_str());
    if (m_textWin.align != KETextAlign::Centre)
        writer.Set("TextAlign", kAlignNames[static_cast<size_t>(m_textWin.align)]);
    return writer.GetResult();
}

} // namespace kvKorvoV12_9_0_320
