// KCGSArrays: the vertices and colours of the commands being written.
//
// One vertex array of one coordinate type and dimension, and one colour array of one kind; a range chooses the
// vertices that the next command uses, so that one array can serve several. Owned and filled on the GUI thread. It
// keeps its memory when cleared, so that a drawing pass that looks like the last one takes none.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/graphicstream/records.h>
#include <korvolib/utilities/mem_obj.h>

namespace kvKorvoV12_9_0_320::kvGS {

class KCGraphicStreamBinaryWriter;

enum KEGSVerticesType : int {
    eNoVerticesType = 0,
    eShortVerticesType = 1, ///< 16-bit signed coordinates
    eFloatVerticesType = 2, ///< 32-bit float coordinates
};

class KORVO_API KCGSArrays {
  public:
    // Each appends one point or `count` of them, coordinates point by point. False, and nothing appended, when the
    // array holds points of another type or dimension, for null with a count above 0, and without memory.

    bool AddPoint_2Ds(int16_t x, int16_t y) noexcept;
    bool AddPoint_3Ds(int16_t x, int16_t y, int16_t z) noexcept;
    bool AddPoint_2Df(float x, float y) noexcept;
    bool AddPoint_3Df(float x, float y, float z) noexcept;
    bool AddPoints_2Ds(const int16_t* coordinates, size_t count) noexcept;
    bool AddPoints_3Ds(const int16_t* coordinates, size_t count) noexcept;
    bool AddPoints_2Df(const float* coordinates, size_t count) noexcept;
    bool AddPoints_3Df(const float* coordinates, size_t count) noexcept;

    // The same for colours, channel by channel: RGB and RGBA do not mix.

    bool AddColor_3ub(uint8_t red, uint8_t green, uint8_t blue) noexcept;
    bool AddColor_4ub(uint8_t red, uint8_t green, uint8_t blue, uint8_t alpha) noexcept;
    bool AddColors_3ub(const uint8_t* channels, size_t count) noexcept;
    bool AddColors_4ub(const uint8_t* channels, size_t count) noexcept;

    /// True if points of this type and dimension may be appended: the array is empty or holds such points.
    bool CheckVerticesAndDimensionsConsistancy(KEGSVerticesType type, size_t dimensions) const noexcept;

    /// The vertices that commands use from now on; a count of 0 means all from the first on. Cut to what is there.
    void SetRange(size_t first, size_t count) noexcept;

    KEGSVerticesType GetVerticesType() const noexcept { return m_verticesType; }
    /// 2 or 3; 0 while there are no points.
    size_t GetDimensions() const noexcept { return m_dimensions; }
    /// Those of the range.
    size_t GetNumVertices() const noexcept;
    size_t GetNumVerticesTotal() const noexcept;
    /// The first vertex of the range, or null when it has none. Valid until the array changes.
    const void* GetVerticesPtr() const noexcept;
    /// Of the range.
    size_t GetVerticesSizeInBytes() const noexcept { return GetNumVertices() * GetSingleVerticeSizeInBytes(); }
    size_t GetSingleVerticeSizeInBytes() const noexcept;

    /// Those that belong to the vertices of the range.
    size_t GetNumColors() const noexcept;
    /// The colour of the first vertex of the range, or null when there is none.
    const void* GetColorPtr() const noexcept;
    size_t GetColorsSizeInBytes() const noexcept { return GetNumColors() * m_colorChannels; }
    /// 3 or 4; 0 while there are no colours.
    size_t GetSingleColorSizeInBytes() const noexcept { return m_colorChannels; }

    /// Write the range as data records. Always in place: the array is gone or overwritten when the stream is
    /// played.
    void GiveVerticesToGS(KCGraphicStreamBinaryWriter& writer) const noexcept;
    void GiveColorsToGS(KCGraphicStreamBinaryWriter& writer) const noexcept;

    /// Empties both and resets the range.
    void ClearArrays() noexcept;

    /// "eShortVerticesType", "eFloatVerticesType", "No vertices type set"; "Unknown vertices type" for any other.
    static KCFixedString<31> VerticesTypeToString(int type) noexcept;

  private:
    bool AddVertices(KEGSVerticesType type, size_t dimensions, const void* coordinates, size_t count) noexcept;
    bool AddColors(size_t channels, const uint8_t* bytes, size_t count) noexcept;
    size_t RangeStart() const noexcept;

    KCStMemObj m_vertices;
    KCStMemObj m_colors;
    KEGSVerticesType m_verticesType = eNoVerticesType;
    size_t m_dimensions = 0;
    size_t m_colorChannels = 0;
    size_t m_rangeFirst = 0;
    size_t m_rangeCount = 0;
};

} // namespace kvKorvoV12_9_0_320::kvGS
