#include <korvolib/graphicstream/arrays.h>

#include <algorithm>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

size_t CoordinateSize(KEGSVerticesType type) noexcept {
    switch (type) {
    case eShortVerticesType:
        return sizeof(int16_t);
    case eFloatVerticesType:
        return sizeof(float);
    case eNoVerticesType:
        return 0;
    }
    return 0;
}

bool AppendElements(KCStMemObj& to, const void* elements, size_t count, size_t elementSize) noexcept {
    return count <= PTRDIFF_MAX / elementSize && to.Append(elements, count * elementSize) == kErr_NoErr;
}

} // namespace

bool KCGSArrays::AddPoint_2Ds(int16_t x, int16_t y) noexcept {
    const int16_t point[] = {x, y};
    return AddPoints_2Ds(point, 1);
}
bool KCGSArrays::AddPoint_3Ds(int16_t x, int16_t y, int16_t z) noexcept {
    const int16_t point[] = {x, y, z};
    return AddPoints_3Ds(point, 1);
}
bool KCGSArrays::AddPoint_2Df(float x, float y) noexcept {
    const float point[] = {x, y};
    return AddPoints_2Df(point, 1);
}
bool KCGSArrays::AddPoint_3Df(float x, float y, float z) noexcept {
    const float point[] = {x, y, z};
    return AddPoints_3Df(point, 1);
}
bool KCGSArrays::AddPoints_2Ds(const int16_t* coordinates, size_t count) noexcept {
    return AddVertices(eShortVerticesType, 2, coordinates, count);
}
bool KCGSArrays::AddPoints_3Ds(const int16_t* coordinates, size_t count) noexcept {
    return AddVertices(eShortVerticesType, 3, coordinates, count);
}
bool KCGSArrays::AddPoints_2Df(const float* coordinates, size_t count) noexcept {
    return AddVertices(eFloatVerticesType, 2, coordinates, count);
}
bool KCGSArrays::AddPoints_3Df(const float* coordinates, size_t count) noexcept {
    return AddVertices(eFloatVerticesType, 3, coordinates, count);
}

bool KCGSArrays::AddColor_3ub(uint8_t red, uint8_t green, uint8_t blue) noexcept {
    const uint8_t color[] = {red, green, blue};
    return AddColors_3ub(color, 1);
}
bool KCGSArrays::AddColor_4ub(uint8_t red, uint8_t green, uint8_t blue, uint8_t alpha) noexcept {
    const uint8_t color[] = {red, green, blue, alpha};
    return AddColors_4ub(color, 1);
}
bool KCGSArrays::AddColors_3ub(const uint8_t* channels, size_t count) noexcept {
    return AddColors(3, channels, count);
}
bool KCGSArrays::AddColors_4ub(const uint8_t* channels, size_t count) noexcept {
    return AddColors(4, channels, count);
}

bool KCGSArrays::CheckVerticesAndDimensionsConsistancy(KEGSVerticesType type, size_t dimensions) const noexcept {
    if (CoordinateSize(type) == 0 || (dimensions != 2 && dimensions != 3))
        return false;
    return m_verticesType == eNoVerticesType || (m_verticesType == type && m_dimensions == dimensions);
}

void KCGSArrays::SetRange(size_t first, size_t count) noexcept {
    m_rangeFirst = first;
    m_rangeCount = count;
}

size_t KCGSArrays::RangeStart() const noexcept { return std::min(m_rangeFirst, GetNumVerticesTotal()); }

size_t KCGSArrays::GetNumVertices() const noexcept {
    const size_t rest = GetNumVerticesTotal() - RangeStart();
    return m_rangeCount == 0 ? rest : std::min(rest, m_rangeCount);
}

size_t KCGSArrays::GetNumVerticesTotal() const noexcept {
    return m_verticesType == eNoVerticesType ? 0 : m_vertices.GetSize() / GetSingleVerticeSizeInBytes();
}

const void* KCGSArrays::GetVerticesPtr() const noexcept {
    return GetNumVertices() == 0 ? nullptr
                                 : m_vertices.GetBytes().data() + RangeStart() * GetSingleVerticeSizeInBytes();
}

size_t KCGSArrays::GetSingleVerticeSizeInBytes() const noexcept {
    return CoordinateSize(m_verticesType) * m_dimensions;
}

size_t KCGSArrays::GetNumColors() const noexcept {
    if (m_colorChannels == 0)
        return 0;
    const size_t total = m_colors.GetSize() / m_colorChannels;
    // Colours may be gathered before their vertices: without vertices all of them count.
    if (GetNumVerticesTotal() == 0)
        return total;
    return std::min(GetNumVertices(), total - std::min(total, RangeStart()));
}

const void* KCGSArrays::GetColorPtr() const noexcept {
    return GetNumColors() == 0 ? nullptr : m_colors.GetBytes().data() + RangeStart() * m_colorChannels;
}

void KCGSArrays::GiveVerticesToGS(KCGraphicStreamBinaryWriter& writer) const noexcept {
    if (GetNumVertices() == 0)
        return;
    writer.DataHere(m_verticesType == eShortVerticesType ? kInt16 : kFloat, m_dimensions == 2 ? kPoint2D : kPoint3D,
                    GetVerticesPtr(), GetNumVertices() * m_dimensions);
}

void KCGSArrays::GiveColorsToGS(KCGraphicStreamBinaryWriter& writer) const noexcept {
    if (GetNumColors() == 0)
        return;
    writer.DataHere(kUint8, m_colorChannels == 3 ? kRGBColor : kRGBAColor, GetColorPtr(), GetColorsSizeInBytes());
}

void KCGSArrays::ClearArrays() noexcept {
    // A smaller size always has its memory.
    (void)m_vertices.Resize(0);
    (void)m_colors.Resize(0);
    m_verticesType = eNoVerticesType;
    m_dimensions = 0;
    m_colorChannels = 0;
    m_rangeFirst = 0;
    m_rangeCount = 0;
}

KCFixedString<31> KCGSArrays::VerticesTypeToString(int type) noexcept {
    switch (type) {
    case eNoVerticesType:
        return KCFixedString<31>("No vertices type set");
    case eShortVerticesType:
        return KCFixedString<31>("eShortVerticesType");
    case eFloatVerticesType:
        return KCFixedString<31>("eFloatVerticesType");
    default:
        return KCFixedString<31>("Unknown vertices type");
    }
}

bool KCGSArrays::AddVertices(KEGSVerticesType type, size_t dimensions, const void* coordinates,
                             size_t count) noexcept {
    if (!CheckVerticesAndDimensionsConsistancy(type, dimensions))
        return false;
    if (!AppendElements(m_vertices, coordinates, count, CoordinateSize(type) * dimensions))
        return false;
    if (count != 0) {
        m_verticesType = type;
        m_dimensions = dimensions;
    }
    return true;
}

bool KCGSArrays::AddColors(size_t channels, const uint8_t* bytes, size_t count) noexcept {
    if (m_colorChannels != 0 && m_colorChannels != channels)
        return false;
    if (!AppendElements(m_colors, bytes, count, channels))
        return false;
    if (count != 0)
        m_colorChannels = channels;
    return true;
}

} // namespace kvKorvoV12_9_0_320::kvGS
