#include <korvolib/gui/controls/draw_shapes_internal.h>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/converters.h>

#include <algorithm>
#include <array>
#include <cstdint>

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

// Advance widths of DejaVu Sans and DejaVu Sans Bold from the blank to the tilde, in hundredths of an em, rounded
// up.
constexpr uint8_t kFirstMeasured = 0x20;
constexpr std::array<uint8_t, 95> kPlainWidths = {
    32, 41, 46, 84, 64, 96, 78, 28, 40,  40, 50, 84, 32, 37, 32, 34, 64, 64, 64, 64, 64, 64, 64, 64,
    64, 64, 34, 34, 84, 84, 84, 54, 100, 69, 69, 70, 78, 64, 58, 78, 76, 30, 30, 66, 56, 87, 75, 79,
    61, 79, 70, 64, 62, 74, 69, 99, 69,  62, 69, 40, 34, 40, 84, 50, 50, 62, 64, 55, 64, 62, 36, 64,
    64, 28, 28, 58, 28, 98, 64, 62, 64,  64, 42, 53, 40, 64, 60, 82, 60, 60, 53, 64, 34, 64, 84};
constexpr std::array<uint8_t, 95> kBoldWidths = {
    35, 46, 53, 84, 70, 101, 88, 31,  46,  46, 53, 84, 38, 42, 38, 37, 70, 70, 70, 70, 70, 70,  70, 70,
    70, 70, 40, 40, 84, 84,  84, 59,  100, 78, 77, 74, 84, 69, 69, 83, 84, 38, 38, 78, 64, 100, 84, 86,
    74, 86, 78, 73, 69, 82,  78, 111, 78,  73, 73, 46, 37, 46, 84, 50, 50, 68, 72, 60, 72, 68,  44, 72,
    72, 35, 35, 67, 35, 105, 72, 69,  72,  72, 50, 60, 48, 72, 66, 93, 65, 66, 59, 72, 37, 72,  84};
constexpr double kOtherWidth =
    1.0; // of a character outside of ASCII, when it is plain; its further bytes count nothing
constexpr double kBoldFactor = 1.2; // of those

// Looked up, since every text that is drawn is measured.
constexpr std::array<double, 256> WidthsInEms(const std::array<uint8_t, 95>& measured, double other) {
    std::array<double, 256> widths{};
    for (size_t c = 0x80; c < widths.size(); ++c)
        widths[c] = (c & 0xC0u) == 0x80u ? 0.0 : other;
    for (size_t i = 0; i < measured.size(); ++i)
        widths[kFirstMeasured + i] = measured[i] / 100.0;
    return widths;
}
constexpr std::array<double, 256> kPlain = WidthsInEms(kPlainWidths, kOtherWidth);
constexpr std::array<double, 256> kBold = WidthsInEms(kBoldWidths, kOtherWidth* kBoldFactor);

bool BeginsNumber(char c) noexcept { return (c >= '0' && c <= '9') || c == '-' || c == '+'; }

} // namespace

double EstimateTextWidth(std::string_view text, double height, bool isBold) noexcept {
    const std::array<double, 256>& widths = isBold ? kBold : kPlain;
    double ems = 0.0;
    for (const char c : text)
        ems += widths[static_cast<unsigned char>(c)];
    return ems * height;
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
    if (isBold) { // thinner rather than shorter
        Text(text, rect, height, color, align, false);
        return;
    }
    KCFixedString<127> fitting(text);
    FitText(fitting, em, isBold, rect.GetWidth());
    if (!fitting.empty())
        FittingText({fitting.data(), fitting.size()}, rect, em, color, align, isBold);
}

void KCShapes::Value(const KCFixedStringBase& text, const Rect& rect, KETextAlign align) noexcept {
    const std::string_view whole(text.data(), text.size());
    const size_t blank = whole.find(' ');
    const bool isNumber = blank != std::string_view::npos && BeginsNumber(whole[0]);
    const double em = std::min(m_theme.valueHeight, rect.GetHeight());
    if (isNumber && EstimateTextWidth(whole, em, false) > rect.GetWidth()) {
        KCFixedString<127> number(text);
        number.resize(blank);
        Text(number, rect, m_theme.valueHeight, m_theme.text, align);
        return;
    }
    Text(text, rect, m_theme.valueHeight, m_theme.text, align);
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
