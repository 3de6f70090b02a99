#include <korvolib/graphicstream/to_svg.h>

#include <charconv>
#include <cmath>
#include <numbers>
#include <utility>

#include <korvolib/graphicstream/float_text_internal.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

int32_t KCGraphicStreamToSVG::ExecStart() {
    // A smaller size always has its memory.
    (void)m_document.Resize(0);
    (void)m_body.Resize(0);
    m_stream = {};
    m_stream.logicalSize = kDefaultSize;
    m_failed = false;
    m_numClips = 0;
    m_depth = 0;
    m_openGroups[0] = 0;
    m_images.clear();
    return KCGraphicStreamPainter::ExecStart();
}

// The head is written last: the picture's size is known then, and whether there is a picture at all.
int32_t KCGraphicStreamToSVG::ExecFinish(int32_t result) {
    for (size_t open = std::exchange(m_openGroups[0], 0); open != 0; --open)
        Put("</g>\n");
    const KCStMemObj body = std::exchange(m_body, KCStMemObj());
    const auto limited = [](float value) { return value > 0 && value <= kMaxCoordinate ? value : 0.0F; };
    const float width = limited(m_stream.logicalSize.width);
    const float height = limited(m_stream.logicalSize.height);
    const float scale = m_scale * (limited(m_stream.scale) > 0 ? m_stream.scale : 1);
    Put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" version=\"1.1\" "
        "width=\"");
    Put(width * scale).Put("\" height=\"").Put(height * scale).Put("\" viewBox=\"0 0 ");
    Put(width).Put(" ").Put(height).Put("\">\n");
    if (m_stream.color.alpha != 0) {
        Put("<rect width=\"").Put(width).Put("\" height=\"").Put(height).Put("\"");
        PutPaint("fill", {m_stream.color, false, false}).Put("/>\n");
    }
    Put("<g fill=\"none\" stroke-miterlimit=\"10\">\n").Put(body.GetText()).Put("</g>\n</svg>\n");
    m_document.Swap(m_body);
    m_body.Clear();
    return result == kErr_NoErr ? Done() : result;
}

int32_t KCGraphicStreamToSVG::Done() const noexcept { return m_failed ? kErr_AllocationFailed : kErr_NoErr; }

int32_t KCGraphicStreamToSVG::BeginPicture(const SGSStream& stream) {
    m_stream = stream;
    return kErr_NoErr;
}

int32_t KCGraphicStreamToSVG::OpenGroup() {
    m_openGroups[++m_depth] = 1;
    Put("<g>\n");
    return Done();
}

int32_t KCGraphicStreamToSVG::CloseGroup() {
    for (size_t open = m_openGroups[m_depth]; open != 0; --open)
        Put("</g>\n");
    --m_depth;
    return Done();
}

int32_t KCGraphicStreamToSVG::Rotate(float angle, SGSLocation centre) {
    ++m_openGroups[m_depth];
    Put("<g transform=\"rotate(").Put(angle).Put(" ").Put(centre.x).Put(" ").Put(centre.y).Put(")\">\n");
    return Done();
}

int32_t KCGraphicStreamToSVG::Clip(const KCGSPath& path, bool antialias) {
    ++m_openGroups[m_depth];
    return OpenClip(path, antialias);
}

int32_t KCGraphicStreamToSVG::OpenClip(const KCGSPath& path, bool antialias) noexcept {
    ++m_numClips;
    Put("<clipPath id=\"c").PutUint(m_numClips).Put("\"><path d=\"").PutPath(path);
    Put(antialias ? "\"" : "\" shape-rendering=\"crispEdges\"").Put("/></clipPath>\n");
    Put("<g clip-path=\"url(#c").PutUint(m_numClips).Put(")\">\n");
    return Done();
}

int32_t KCGraphicStreamToSVG::Fill(const KCGSPath& path, const KCGSPaint& paint) {
    Put("<path d=\"").PutPath(path).Put("\"").PutPaint("fill", paint).Put("/>\n");
    return Done();
}

int32_t KCGraphicStreamToSVG::Stroke(const KCGSPath& path, const KCGSPaint& paint, const KCGSStroke& stroke) {
    Put("<path d=\"").PutPath(path).Put("\"").PutStroke(paint, stroke).Put("/>\n");
    return Done();
}

int32_t KCGraphicStreamToSVG::FillArc(const KCGSArc& arc, const KCGSPaint& paint) {
    PutArc(arc, true).PutPaint("fill", paint).Put("/>\n");
    return Done();
}

int32_t KCGraphicStreamToSVG::StrokeArc(const KCGSArc& arc, const KCGSPaint& paint, const KCGSStroke& stroke) {
    PutArc(arc, false).PutStroke(paint, stroke).Put("/>\n");
    return Done();
}

int32_t KCGraphicStreamToSVG::ShowText(const KCGSTextLine& line, const KCGSPaint& paint) {
    if (line.clip != nullptr) {
        const SGSRect& clip = *line.clip;
        const KUPoint<float> corners[] = {{clip.x, clip.y},
                                          {clip.x + clip.width, clip.y},
                                          {clip.x + clip.width, clip.y + clip.height},
                                          {clip.x, clip.y + clip.height}};
        OpenClip({corners, 4, true}, paint.antialias);
    }
    Put("<text x=\"").Put(line.baseline.x).Put("\" y=\"").Put(line.baseline.y).Put("\" font-family=\"");
    PutFamily(line.family).Put("\" font-size=\"").Put(line.height).Put("\"");
    if ((line.style & kBold) != 0)
        Put(" font-weight=\"bold\"");
    if ((line.style & kItalic) != 0)
        Put(" font-style=\"italic\"");
    if (line.anchor == kHCenter || line.anchor == kRight)
        Put(line.anchor == kRight ? " text-anchor=\"end\"" : " text-anchor=\"middle\"");
    if (line.angle != 0)
        Put(" transform=\"rotate(")
            .Put(line.angle)
            .Put(" ")
            .Put(line.pivot.x)
            .Put(" ")
            .Put(line.pivot.y)
            .Put(")\"");
    if (!paint.antialias)
        Put(" text-rendering=\"optimizeSpeed\"");
    PutPaint("fill", paint).Put(" xml:space=\"preserve\">").PutEscaped(line.text).Put("</text>\n");
    if (line.clip != nullptr)
        Put("</g>\n");
    return Done();
}

int32_t KCGraphicStreamToSVG::ShowPicture(const KCGSPicture& picture, const KCGSPaint& paint) {
    const size_t known = m_images.size();
    const size_t number = ImageNumber(picture);
    if (number == known) {
        Put("<defs><image id=\"i").PutUint(number).Put("\" width=\"").PutUint(picture.pixelWidth);
        Put("\" height=\"").PutUint(picture.pixelHeight).Put("\" xlink:href=\"data:image/png;base64,");
        PutBase64(picture.png).Put("\"/></defs>\n");
    }
    if (picture.clip != nullptr)
        OpenClip(*picture.clip, paint.antialias);
    Put("<use xlink:href=\"#i").PutUint(number).Put("\" transform=\"matrix(");
    Put(picture.target.width / static_cast<float>(picture.pixelWidth)).Put(" 0 0 ");
    Put(picture.target.height / static_cast<float>(picture.pixelHeight)).Put(" ");
    Put(picture.target.x).Put(" ").Put(picture.target.y).Put(")\"");
    if (paint.difference)
        Put(" style=\"mix-blend-mode:difference\"");
    Put("/>\n");
    if (picture.clip != nullptr)
        Put("</g>\n");
    return Done();
}

// A picture that is drawn many times stands in the document once.
size_t KCGraphicStreamToSVG::ImageNumber(const KCGSPicture& picture) {
    const Image image{MurmurHash64A(picture.png.data(), picture.png.size(), 0), picture.png.size()};
    size_t number = 0;
    while (number < m_images.size() && (m_images[number].hash != image.hash || m_images[number].size != image.size))
        ++number;
    if (number == m_images.size())
        m_images.push_back(image);
    return number;
}

// Text.

KCGraphicStreamToSVG& KCGraphicStreamToSVG::Put(std::string_view text) noexcept {
    if (text.empty() || m_failed)
        return *this;
    if (uint8_t* at = m_body.AppendAndReserve(text.size()))
        std::memcpy(at, text.data(), text.size());
    else
        m_failed = true;
    return *this;
}

KCGraphicStreamToSVG& KCGraphicStreamToSVG::Put(float number) noexcept {
    char text[kFloatTextSize];
    // A whole number of few digits is the usual coordinate.
    if (std::abs(number) < 1.0e6F && number == std::trunc(number)) {
        const auto whole = static_cast<int32_t>(number);
        return Put({text, static_cast<size_t>(std::to_chars(text, text + sizeof text, whole).ptr - text)});
    }
    const size_t length = FormatFloat(number, text);
    return Put({text, length});
}

KCGraphicStreamToSVG& KCGraphicStreamToSVG::PutUint(uint64_t number) noexcept {
    char text[24];
    return Put({text, static_cast<size_t>(std::to_chars(text, text + sizeof text, number).ptr - text)});
}

KCGraphicStreamToSVG& KCGraphicStreamToSVG::PutEscaped(std::string_view text) noexcept {
    while (!text.empty()) {
        const size_t special = text.find_first_of("<>&\"'");
        Put(text.substr(0, special));
        if (special == std::string_view::npos)
            break;
        switch (text[special]) {
        case '<':
            Put("&lt;");
            break;
        case '>':
            Put("&gt;");
            break;
        case '&':
            Put("&amp;");
            break;
        case '"':
            Put("&quot;");
            break;
        default:
            Put("&apos;");
            break;
        }
        text.remove_prefix(special + 1);
    }
    return *this;
}

KCGraphicStreamToSVG& KCGraphicStreamToSVG::PutColor(const SGSRGBAColor& color) noexcept {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const uint8_t channels[] = {color.red, color.green, color.blue};
    char text[7] = {'#'};
    for (size_t i = 0; i < 3; ++i) {
        text[1 + 2 * i] = kDigits[channels[i] >> 4];
        text[2 + 2 * i] = kDigits[channels[i] & 15];
    }
    return Put({text, sizeof text});
}

KCGraphicStreamToSVG& KCGraphicStreamToSVG::PutPaint(const char* property, const KCGSPaint& paint) noexcept {
    Put(" ").Put(property).Put("=\"").PutColor(paint.color).Put("\"");
    if (paint.color.alpha != 255)
        Put(" ").Put(property).Put("-opacity=\"").Put(static_cast<float>(paint.color.alpha) / 255).Put("\"");
    if (!paint.antialias)
        Put(" shape-rendering=\"crispEdges\"");
    if (paint.difference)
        Put(" style=\"mix-blend-mode:difference\"");
    return *this;
}

KCGraphicStreamToSVG& KCGraphicStreamToSVG::PutStroke(const KCGSPaint& paint, const KCGSStroke& stroke) noexcept {
    PutPaint("stroke", paint);
    if (stroke.width != 1)
        Put(" stroke-width=\"").Put(stroke.width).Put("\"");
    if (stroke.roundJoins)
        Put(" stroke-linejoin=\"round\"");
    if (stroke.numDashes != 0) {
        for (size_t i = 0; i < stroke.numDashes; ++i)
            Put(i == 0 ? " stroke-dasharray=\"" : " ").Put(stroke.dashes[i]);
        Put("\" stroke-dashoffset=\"").Put(stroke.dashOffset).Put("\"");
    }
    return *this;
}

KCGraphicStreamToSVG& KCGraphicStreamToSVG::PutPath(const KCGSPath& path) noexcept {
    size_t inPart = 0;
    for (const KUPoint<float>& point : path.points) {
        Put(inPart == 0 ? "M" : "L").Put(point.x).Put(" ").Put(point.y);
        if (++inPart == path.perPart) {
            Put(path.closed ? "Z" : "");
            inPart = 0;
        }
    }
    return *this;
}

KCGraphicStreamToSVG& KCGraphicStreamToSVG::PutArc(const KCGSArc& arc, bool pie) noexcept {
    const float radiusX = arc.rect.width / 2;
    const float radiusY = arc.rect.height / 2;
    const float x = arc.rect.x + radiusX;
    const float y = arc.rect.y + radiusY;
    if (arc.IsWhole() && pie) {
        return Put("<ellipse cx=\"")
            .Put(x)
            .Put("\" cy=\"")
            .Put(y)
            .Put("\" rx=\"")
            .Put(radiusX)
            .Put("\" ry=\"")
            .Put(radiusY)
            .Put("\"");
    }
    const auto point = [&](const char* before, double angle) {
        const double radians = angle * std::numbers::pi / 180;
        Put(before).Put(x + radiusX * static_cast<float>(std::cos(radians))).Put(" ");
        Put(y + radiusY * static_cast<float>(std::sin(radians)));
    };
    // An elliptical arc says nothing of a whole turn, and little near half of one: it is written in two halves.
    const char* const flags = arc.sweepAngle > 0 ? " 0 0 1 " : " 0 0 0 ";
    point("<path d=\"M", arc.startAngle);
    for (const double part : {0.5, 1.0}) {
        Put("A").Put(radiusX).Put(" ").Put(radiusY);
        point(flags, arc.startAngle + arc.sweepAngle * part);
    }
    if (pie)
        Put("L").Put(x).Put(" ").Put(y);
    return Put(pie || arc.IsWhole() ? "Z\"" : "\"");
}

KCGraphicStreamToSVG& KCGraphicStreamToSVG::PutFamily(std::string_view family) noexcept {
    if (family.empty() || family == "sans-serif" || family == "serif" || family == "monospace")
        return Put(family.empty() ? "sans-serif" : family);
    // A name stands in quotes, and no name has a quote or a backslash in it.
    Put("'");
    while (!family.empty()) {
        const size_t special = family.find_first_of("'\\");
        PutEscaped(family.substr(0, special));
        family.remove_prefix(special == std::string_view::npos ? family.size() : special + 1);
    }
    return Put("'");
}

// RFC 4648, section 4.
KCGraphicStreamToSVG& KCGraphicStreamToSVG::PutBase64(std::span<const uint8_t> bytes) noexcept {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (size_t i = 0; i < bytes.size(); i += 3) {
        const size_t rest = bytes.size() - i;
        const uint32_t group = uint32_t{bytes[i]} << 16 | (rest > 1 ? uint32_t{bytes[i + 1]} << 8 : 0) |
                               (rest > 2 ? uint32_t{bytes[i + 2]} : 0);
        const char text[] = {kDigits[group >> 18], kDigits[group >> 12 & 63],
                             rest > 1 ? kDigits[group >> 6 & 63] : '=', rest > 2 ? kDigits[group & 63] : '='};
        Put({text, sizeof text});
    }
    return *this;
}

} // namespace kvKorvoV12_9_0_320::kvGS
