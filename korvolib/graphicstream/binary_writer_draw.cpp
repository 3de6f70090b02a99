#include <korvolib/graphicstream/binary_writer.h>

#include <type_traits>

#include <korvolib/graphicstream/record_bytes_internal.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

template <class Coordinate>
constexpr int CoordinateType() noexcept {
    return std::is_same_v<Coordinate, float> ? int{kFloat} : int{kInt16};
}

} // namespace

/// The points in place and the command that uses them, in one piece. The points come as values that lie in memory
/// as their coordinates do, and go straight to where they belong: gathered in an array first, they would be read
/// back while they are still being stored.
template <class Coordinate, class... Points>
KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::AppendShape(uint32_t kind, KEGSMethod method,
                                                                      uint32_t flags, SGSRGBAColor color,
                                                                      Points... points) noexcept {
    constexpr size_t kBytes = (sizeof(Points) + ...);
    constexpr size_t kCoordinates = kBytes / sizeof(Coordinate);
    uint8_t* const at = Reserve(sizeof(SGSDataHere) + kBytes + sizeof(SGSDrawVertices));
    if (at == nullptr)
        return *this;
    RecordBytes(at)
        .PutDataHeader(CoordinateType<Coordinate>(), kPoint2D, kCoordinates, kBytes)
        .Put(points...)
        .Put(
            Join(uint32_t{kDrawVertices}, uint32_t{sizeof(SGSDrawVertices)}),
            Join(flags, std::bit_cast<uint32_t>(color)),
            Join(std::bit_cast<uint32_t>(m_settings.strokeWidth), Join(m_settings.strokePattern, uint16_t{method})),
            Join(kind, uint32_t{kCoordinates / 2}));
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::AppendShortRect(uint32_t flags, SGSRGBAColor color,
                                                                          uint32_t leftTop,
                                                                          uint32_t rightBottom) noexcept {
    constexpr uint32_t kX = 0x0000FFFF;
    constexpr uint32_t kY = 0xFFFF0000;
    const uint32_t rightTop = (rightBottom & kX) | (leftTop & kY);
    const uint32_t leftBottom = (leftTop & kX) | (rightBottom & kY);
    return AppendShape<short>(kPolygon, kSolid, flags, color, Join(leftTop, rightTop),
                              Join(rightBottom, leftBottom));
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::AppendFloatRect(KEGSMethod method, uint32_t flags,
                                                                          SGSRGBAColor color,
                                                                          const KURect<float>& rect) noexcept {
    return AppendShape<float>(kPolygon, method, flags, color, rect.left, rect.top, rect.right, rect.top, rect.right,
                              rect.bottom, rect.left, rect.bottom);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawLine(SGSLocation from, SGSLocation to) noexcept {
    return AppendShape<float>(kStraightLines, kWire, m_settings.flags, m_settings.color, from, to);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawLineOfShorts(KUPoint<short> from,
                                                                           KUPoint<short> to) noexcept {
    return AppendShape<short>(kStraightLines, kWire, m_settings.flags, m_settings.color, from, to);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawArcLine(const SGSRect& rect, float startAngle,
                                                                      float sweepAngle) noexcept {
    return AppendOval(rect, kWire, startAngle, sweepAngle);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawOval(const SGSRect& rect, KEGSMethod method,
                                                                   float startAngle, float sweepAngle) noexcept {
    return AppendOval(rect, method, startAngle, sweepAngle);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::AppendOval(const SGSRect& rect, KEGSMethod method,
                                                                     float startAngle, float sweepAngle) noexcept {
    if (uint8_t* at = Reserve(sizeof(SGSDrawOval))) {
        RecordBytes(at).Put(uint32_t{kDrawOval}, uint32_t{sizeof(SGSDrawOval)}, m_settings.flags, m_settings.color,
                            m_settings.strokeWidth, m_settings.strokePattern, method, rect, startAngle, sweepAngle,
                            m_settings.segments);
    }
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawSolidRect(SGSRGBAColor color,
                                                                        const KURect<float>& rect) noexcept {
    return AppendFloatRect(kSolid, m_settings.flags, color, rect);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawWireRect(SGSRGBAColor color,
                                                                       const KURect<short>& rect) noexcept {
    return DrawWireRect(color, rect.ConvertTo<float>());
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawWireRect(SGSRGBAColor color,
                                                                       const KURect<float>& rect) noexcept {
    const float half = m_settings.strokeWidth / 2;
    return AppendFloatRect(kWire, m_settings.flags, color, rect.Inset(half, half));
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawXORRect(const KURect<float>& rect) noexcept {
    return AppendFloatRect(kSolid, m_settings.flags | eDrawInXORMode, m_settings.color, rect);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawVertices(uint32_t kind, KEGSMethod method) noexcept {
    const size_t count = m_arrays.GetNumVertices();
    if (count == 0)
        return *this;
    if (count > UINT32_MAX) {
        Fail(kErr_LimitExceeded);
        return *this;
    }
    const bool colored = m_arrays.GetNumColors() == count;
    return WholeOrNothing([&] {
        m_arrays.GiveVerticesToGS(*this);
        if (colored)
            m_arrays.GiveColorsToGS(*this);
        if (uint8_t* at = Reserve(sizeof(SGSDrawVertices))) {
            const uint32_t flags = colored ? m_settings.flags | kColorsInData : m_settings.flags;
            RecordBytes(at).Put(uint32_t{kDrawVertices}, uint32_t{sizeof(SGSDrawVertices)}, flags, m_settings.color,
                                m_settings.strokeWidth, m_settings.strokePattern, method, kind,
                                static_cast<uint32_t>(count));
        }
    });
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::ClipRect(const SGSRect& rect) noexcept {
    if (uint8_t* at = Reserve(sizeof(SGSClipRect)))
        RecordBytes(at).Put(uint32_t{kClipRect}, uint32_t{sizeof(SGSClipRect)}, m_settings.flags, rect);
    return *this;
}

KCGraphicStreamBinaryWriter&
KCGraphicStreamBinaryWriter::ClipMultipleRects(std::span<const SGSRect> rects) noexcept {
    if (rects.size() > UINT32_MAX / sizeof(SGSRect) - 2) {
        Fail(kErr_LimitExceeded);
        return *this;
    }
    return WholeOrNothing([&] {
        DataHere(kRect, kClipRectangles, rects.data(), rects.size());
        if (uint8_t* at = Reserve(sizeof(SGSClipMultipleRects))) {
            RecordBytes(at).Put(uint32_t{kClipMultipleRects}, uint32_t{sizeof(SGSClipMultipleRects)},
                                m_settings.flags, static_cast<uint32_t>(rects.size()));
        }
    });
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::ClipVertices() noexcept {
    const size_t count = m_arrays.GetNumVertices();
    if (count == 0)
        return *this;
    if (count > UINT32_MAX) {
        Fail(kErr_LimitExceeded);
        return *this;
    }
    return WholeOrNothing([&] {
        m_arrays.GiveVerticesToGS(*this);
        if (uint8_t* at = Reserve(sizeof(SGSClipVertices))) {
            RecordBytes(at).Put(uint32_t{kClipVertices}, uint32_t{sizeof(SGSClipVertices)}, m_settings.flags,
                                static_cast<uint32_t>(count));
        }
    });
}

} // namespace kvKorvoV12_9_0_320::kvGS
