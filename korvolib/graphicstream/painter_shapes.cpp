#include <korvolib/graphicstream/painter.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

KCGSPaint PaintOf(uint32_t flags, SGSRGBAColor color) noexcept {
    return {color, (flags & kAntialias) != 0, (flags & eDrawInXORMode) != 0};
}

KUPoint<float> PointOnOval(const KCGSArc& arc, double angle) noexcept {
    const double radians = angle * std::numbers::pi / 180;
    const double x =
        static_cast<double>(arc.rect.x) + static_cast<double>(arc.rect.width) / 2 * (1 + std::cos(radians));
    const double y =
        static_cast<double>(arc.rect.y) + static_cast<double>(arc.rect.height) / 2 * (1 + std::sin(radians));
    return {static_cast<float>(x), static_cast<float>(y)};
}

bool MakeArc(const SGSDrawOval& oval, KCGSArc& arc) noexcept {
    constexpr float kMost = KCGraphicStreamPainter::kMaxCoordinate;
    const SGSRect& rect = oval.rect;
    // Written so that not-a-number is refused too.
    const bool inRange =
        std::abs(rect.x) <= kMost && std::abs(rect.y) <= kMost && rect.width <= kMost && rect.height <= kMost;
    if (!inRange || rect.width < KCGraphicStreamPainter::kMinSide ||
        rect.height < KCGraphicStreamPainter::kMinSide || !std::isfinite(oval.startAngle) ||
        !std::isfinite(oval.sweepAngle))
        return false;
    arc.rect = rect;
    arc.startAngle = std::fmod(static_cast<double>(oval.startAngle), 360.0);
    arc.sweepAngle = std::clamp(static_cast<double>(oval.sweepAngle), -360.0, 360.0);
    return arc.sweepAngle != 0;
}

} // namespace

/// Shapes of one kind that share a path: primitive i has the points from i × step on, `points` of them.
struct KCGraphicStreamPainter::Primitives {
    const std::vector<KUPoint<float>>& path;
    size_t count;
    size_t points;
    size_t step;
    bool closed;
    bool filled;
    bool joined; ///< neighbours share a point, and one line runs through them
};

int32_t KCGraphicStreamPainter::ExecDrawVertices(KCGSRecord<SGSDrawVertices> record) {
    const SGSDrawVertices command = record.Read();
    const bool pointsThere = TakePoints(command.numVertices);
    const bool colorsThere = (command.flags & kColorsInData) == 0 || command.numVertices <= m_colors.GetNumColors();
    int32_t result = kErr_NoErr;
    if (IsDrawing() && pointsThere && colorsThere) {
        const size_t count = m_path.size();
        const bool solid = command.method == kSolid;
        switch (command.kind) {
        case kPolygon:
            result = DrawPrimitives({m_path, 1, count, count, true, solid, false}, command);
            break;
        case kLineStrip:
            result = DrawPrimitives({m_path, count - 1, 2, 1, false, false, true}, command);
            break;
        case kStraightLines:
            result = DrawPrimitives({m_path, count / 2, 2, 2, false, false, false}, command);
            break;
        case kTriangleFan:
        case kTriangleStrip:
            MakeTriangles(command.kind == kTriangleFan);
            result = DrawPrimitives({m_triangles, m_triangles.size() / 3, 3, 3, true, solid, false}, command);
            break;
        default: // of an unknown kind nothing is drawn
            break;
        }
    }
    m_colors = KCGSDataOperand();
    return result;
}

// Neighbours of one colour are drawn together: without a seam between them, and in one call.
int32_t KCGraphicStreamPainter::DrawPrimitives(const Primitives& primitives, const SGSDrawVertices& command) {
    const bool colored = (command.flags & kColorsInData) != 0;
    // The first vertex of triangle i: in a fan the one after the hub, which all of them share.
    const size_t firstVertex = command.kind == kTriangleFan ? 1 : 0;
    const size_t vertexStep = primitives.closed ? 1 : primitives.step;
    const auto colorOf = [&](size_t i) {
        return colored ? m_colors.GetColor(i * vertexStep + firstVertex) : command.drawColor;
    };
    size_t first = 0;
    while (first < primitives.count) {
        const SGSRGBAColor color = colorOf(first);
        size_t next = first + 1;
        while (next < primitives.count && (!colored || colorOf(next) == color))
            ++next;
        if (const int32_t result = DrawRun(primitives, command, first, next - first, color); result != kErr_NoErr)
            return result;
        first = next;
    }
    return kErr_NoErr;
}

int32_t KCGraphicStreamPainter::DrawRun(const Primitives& primitives, const SGSDrawVertices& command, size_t first,
                                        size_t count, SGSRGBAColor color) {
    const size_t numPoints = (count - 1) * primitives.step + primitives.points;
    const KCGSPath path{{primitives.path.data() + first * primitives.step, numPoints},
                        primitives.joined ? numPoints : primitives.points,
                        primitives.closed};
    const KCGSPaint paint = PaintOf(command.flags, color);
    if (primitives.filled)
        return Fill(path, paint);
    KCGSStroke stroke;
    if (!GSStrokeFromPattern(command.strokeWidth, command.strokePattern, stroke))
        return kErr_NoErr;
    stroke.roundJoins = primitives.joined;
    return Stroke(path, paint, stroke);
}

// All turn the same way: then what two of them cover is covered, and not cancelled.
void KCGraphicStreamPainter::MakeTriangles(bool fan) {
    m_triangles.clear();
    for (size_t i = 0; i + 2 < m_path.size(); ++i) {
        const KUPoint<float> a = fan ? m_path[i + 1] : m_path[i];
        KUPoint<float> b = fan ? m_path[i + 2] : m_path[i + 1];
        KUPoint<float> c = fan ? m_path[0] : m_path[i + 2];
        const double twiceArea = static_cast<double>(b.x - a.x) * static_cast<double>(c.y - a.y) -
                                 static_cast<double>(b.y - a.y) * static_cast<double>(c.x - a.x);
        if (twiceArea < 0)
            std::swap(b, c);
        m_triangles.insert(m_triangles.end(), {a, b, c});
    }
}

int32_t KCGraphicStreamPainter::ExecDrawOval(KCGSRecord<SGSDrawOval> record) {
    const SGSDrawOval command = record.Read();
    KCGSArc arc;
    if (!IsDrawing() || !MakeArc(command, arc))
        return kErr_NoErr;
    if (command.slicesNum != 0)
        return DrawSlices(command, arc);
    const KCGSPaint paint = PaintOf(command.flags, command.drawColor);
    if (command.method == kSolid)
        return FillArc(arc, paint);
    KCGSStroke stroke;
    return GSStrokeFromPattern(command.strokeWidth, command.strokePattern, stroke) ? StrokeArc(arc, paint, stroke)
                                                                                   : kErr_NoErr;
}

int32_t KCGraphicStreamPainter::DrawSlices(const SGSDrawOval& command, const KCGSArc& arc) {
    constexpr uint32_t kMostSlices = 4096;
    const uint32_t slices = std::min(command.slicesNum, kMostSlices);
    const bool whole = arc.IsWhole();
    const bool solid = command.method == kSolid;
    m_path.clear();
    for (uint32_t i = 0; i < slices + !whole; ++i)
        m_path.push_back(PointOnOval(arc, arc.startAngle + arc.sweepAngle * i / slices));
    if (solid && !whole)
        m_path.push_back({arc.rect.x + arc.rect.width / 2, arc.rect.y + arc.rect.height / 2});
    const KCGSPath path{m_path, m_path.size(), whole || solid};
    const KCGSPaint paint = PaintOf(command.flags, command.drawColor);
    if (solid)
        return Fill(path, paint);
    KCGSStroke stroke;
    return GSStrokeFromPattern(command.strokeWidth, command.strokePattern, stroke) ? Stroke(path, paint, stroke)
                                                                                   : kErr_NoErr;
}

} // namespace kvKorvoV12_9_0_320::kvGS
