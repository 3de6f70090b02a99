#include <korvolib/gui/controls/draw_shapes_internal.h>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/converters.h>

#include <algorithm>
#include <array>

namespace kvKorvoV12_9_0_320 {

namespace {

using kvGS::SGSLocation;
using kvGS::SGSRect;

constexpr double kLeastTextHeight = 5.0;

// A quarter of the unit circle from the top to the right, in pieces of 18 degrees: at the radii of panels no corner
// is seen.
constexpr KUPoint<double> kQuarter[] = {{0.0, -1.0},
                                        {0.30901699437494745, -0.9510565162951535},
                                        {0.5877852522924731, -0.8090169943749475},
                                        {0.8090169943749475, -0.5877852522924731},
                                        {0.9510565162951535, -0.30901699437494745},
                                        {1.0, 0.0}};

SGSLocation ToLocation(KUPoint<double> point) noexcept {
    return {KUConvertCoordinate<float>(point.x), KUConvertCoordinate<float>(point.y)};
}

SGSRect SquareAround(KUPoint<double> centre, double radius) noexcept {
    return kvGS::ToSGSRect(
        KURect<double>::FromEdges(centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius));
}

uint32_t AlignmentCode(KETextAlign align) noexcept {
    if (align == KETextAlign::Left)
        return kvGS::kLeft;
    return align == KETextAlign::Right ? kvGS::kRight : kvGS::kHCenter;
}

bool IsContinuation(char c) noexcept { return (static_cast<unsigned char>(c) & 0xC0u) == 0x80u; }

// Upper bounds by kind, in ems. A character outside of ASCII counts as one em; its further bytes as nothing.
constexpr double WidthOfKind(unsigned char c) noexcept {
    if ((c & 0xC0u) == 0x80u)
        return 0.0;
    if (std::string_view(" !'(),-./:;IJ[]\\fijlrt|").find(static_cast<char>(c)) != std::string_view::npos)
        return 0.42;
    if (c >= 0x80u || std::string_view("%mW@").find(static_cast<char>(c)) != std::string_view::npos)
        return 1.0;
    if ((c >= 'A' && c <= 'Z') ||
        std::string_view("w&#+<=>^~").find(static_cast<char>(c)) != std::string_view::npos)
        return 0.87;
    return 0.64;
}

// Looked up, since every text that is drawn is measured.
constexpr std::array<double, 256> kWidths = [] {
    std::array<double, 256> widths{};
    for (size_t c = 0; c < widths.size(); ++c)
        widths[c] = WidthOfKind(static_cast<unsigned char>(c));
    return widths;
}();

double WidthOf(char c) noexcept { return kWidths[static_cast<unsigned char>(c)]; }

constexpr double kBoldFactor = 1.2;

} // namespace

double EstimateTextWidth(std::string_view text, double height, bool isBold) noexcept {
    double ems = 0.0;
    for (const char c : text)
        ems += WidthOf(c);
    return ems * height * (isBold ? kBoldFactor : 1.0);
}

void FitText(KCFixedStringBase& text, double height, bool isBold, double width) noexcept {
    constexpr std::string_view kEllipsis = "\xE2\x80\xA6";
    const std::string_view whole(text.data(), text.size());
    if (EstimateTextWidth(whole, height, isBold) <= width)
        return;
    const double room = width - EstimateTextWidth(kEllipsis, height, isBold);
    size_t kept = std::min(text.size(), text.capacity() - std::min(kEllipsis.size(), text.capacity()));
    while (kept > 0 && (IsContinuation(text[kept]) || text[kept - 1] == ' ' ||
                        EstimateTextWidth(whole.substr(0, kept), height, isBold) > room))
        --kept;
    text.resize(kept);
    if (kept > 0)
        text.append(kEllipsis.data(), kEllipsis.size());
}

KCShapes::KCShapes(Writer& writer, const KCGUIControl& control) noexcept
    : m_writer(writer), m_theme(control.GetTheme()), m_bounds(control.GetBounds()),
      m_isHighlighted(control.IsHighlighted()) {
    if (control.IsDisabled() && control.GetDisableMode() == KEDisableMode::Dim)
        m_opacity = m_theme.disabledOpacity;
}

kvGS::SGSRGBAColor KCShapes::Tone(KUColor color) const noexcept {
    return kvGS::KCRGBAColorToSGSRGBAColor(m_opacity < 1.0 ? color.WithOpacity(color.GetOpacity() * m_opacity)
                                                           : color);
}

void KCShapes::Finish() noexcept { m_writer.GetGSArrays().ClearArrays(); }

void KCShapes::AddRounded(const Rect& rect, double radius) noexcept {
    kvGS::KCGSArrays& arrays = m_writer.GetGSArrays();
    arrays.ClearArrays();
    const double r = std::max(0.0, std::min({radius, rect.GetWidth() / 2, rect.GetHeight() / 2}));
    const auto corner = [&](double x, double y, int turn) {
        for (KUPoint<double> p : kQuarter) {
            for (int quarter = 0; quarter < turn; ++quarter)
                p = {-p.y, p.x};
            arrays.AddPoint_2Df(KUConvertCoordinate<float>(x + r * p.x), KUConvertCoordinate<float>(y + r * p.y));
            if (r == 0.0)
                break;
        }
    };
    corner(rect.right - r, rect.top + r, 0);
    corner(rect.right - r, rect.bottom - r, 1);
    corner(rect.left + r, rect.bottom - r, 2);
    corner(rect.left + r, rect.top + r, 3);
}

void KCShapes::Rounded(const Rect& rect, double radius, KUColor color) noexcept {
    if (rect.IsEmpty())
        return;
    if (!(radius > 0.0)) {
        m_writer.DrawSolidRect(Tone(color), rect.ConvertTo<float>());
        return;
    }
    AddRounded(rect, radius);
    m_writer.SetDrawColor(Tone(color)).DrawVertices(kvGS::kPolygon, kvGS::kSolid);
    Finish();
}

void KCShapes::RoundedFrame(const Rect& rect, double radius, double width, KUColor color) noexcept {
    if (rect.IsEmpty())
        return;
    const Rect middle = rect.Inset(width / 2, width / 2);
    if (middle.IsEmpty())
        return;
    AddRounded(middle, radius - width / 2);
    m_writer.SetDrawColor(Tone(color)).SetStrokeWidth(KUConvertCoordinate<float>(width));
    m_writer.DrawVertices(kvGS::kPolygon, kvGS::kWire);
    Finish();
}

void KCShapes::Disc(Point centre, double radius, KUColor color) noexcept {
    if (radius > 0.0)
        m_writer.SetDrawColor(Tone(color)).DrawOval(SquareAround(centre, radius));
}

void KCShapes::Arc(Point centre, double radius, double startAngle, double sweepAngle, double width,
                   KUColor color) noexcept {
    if (!(radius > 0.0) || sweepAngle == 0.0)
        return;
    m_writer.SetDrawColor(Tone(color)).SetStrokeWidth(KUConvertCoordinate<float>(width));
    m_writer.DrawArcLine(SquareAround(centre, radius), KUConvertCoordinate<float>(startAngle),
                         KUConvertCoordinate<float>(sweepAngle));
}

void KCShapes::Line(Point from, Point to, double width, KUColor color) noexcept {
    m_writer.SetDrawColor(Tone(color)).SetStrokeWidth(KUConvertCoordinate<float>(width));
    m_writer.DrawLine(ToLocation(from), ToLocation(to));
}

void KCShapes::LineAcross(const Rect& rect, double y, double width, KUColor color) noexcept {
    Rounded(Rect::FromEdges(rect.left, y - width / 2, rect.right, y + width / 2).Intersection(rect), 0.0, color);
}

void KCShapes::LineUp(const Rect& rect, double x, double width, KUColor color) noexcept {
    Rounded(Rect::FromEdges(x - width / 2, rect.top, x + width / 2, rect.bottom).Intersection(rect), 0.0, color);
}

void KCShapes::Polygon(std::span<const Point> corners, KUColor color) noexcept {
    kvGS::KCGSArrays& arrays = m_writer.GetGSArrays();
    arrays.ClearArrays();
    for (const Point& corner : corners)
        arrays.AddPoint_2Df(KUConvertCoordinate<float>(corner.x), KUConvertCoordinate<float>(corner.y));
    m_writer.SetDrawColor(Tone(color)).DrawVertices(kvGS::kPolygon, kvGS::kSolid);
    Finish();
}

void KCShapes::Text(const KCFixedStringBase& text, const Rect& rect, double height, KUColor color,
                    KETextAlign align, bool isBold) noexcept {
    const double em = std::min(height, rect.GetHeight());
    if (text.empty() || rect.IsEmpty() || em < kLeastTextHeight)
        return;
    if (EstimateTextWidth({text.data(), text.size()}, em, isBold) <= rect.GetWidth()) {
        FittingText({text.data(), text.size()}, rect, em, color, align, isBold);
        return;
    }
    KCFixedString<127> fitting(text);
    FitText(fitting, em, isBold, rect.GetWidth());
    if (!fitting.empty())
        FittingText({fitting.data(), fitting.size()}, rect, em, color, align, isBold);
}

void KCShapes::FittingText(std::string_view text, const Rect& rect, double em, KUColor color, KETextAlign align,
                           bool isBold) noexcept {
    if (m_fontHeight != em || m_isFontBold != isBold)
        m_writer.Font(m_theme.fontFamily, KUConvertCoordinate<float>(em), isBold ? kvGS::kBold : kvGS::kPlain);
    m_fontHeight = em;
    m_isFontBold = isBold;
    m_writer.SetDrawColor(Tone(color)).DrawTheText(text, kvGS::ToSGSRect(rect), AlignmentCode(align));
}

bool KCShapes::Picture(const sBITMAP_WIN& images, int32_t image) noexcept {
    if (images.resID == 0 || images.numImages <= 0)
        return false;
    const Rect rect = images.rect.IsEmpty() ? m_bounds : images.rect.Offset(m_bounds.left, m_bounds.top);
    m_writer.DrawPNGScaled(images.resID + std::clamp(image, 0, images.numImages - 1), kvGS::ToSGSRect(rect));
    return true;
}

} // namespace kvKorvoV12_9_0_320
