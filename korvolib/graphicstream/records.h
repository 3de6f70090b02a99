// The records of the graphic stream as they lie in memory and on disk: little-endian, one behind the other without
// padding, each beginning with its code and its whole size. docs/graphic-stream.md explains every field.
//
// Records in a stream may lie at any address: copy their bytes out (KCGSRecord::Read), never cast a pointer to
// them. Plain values, for any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

#include <korvolib/graphicstream/commands.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvGS {

// The values that records are made of.

struct SGSLocation {
    float x = 0; ///< grows to the right
    float y = 0; ///< grows downwards
    friend bool operator==(const SGSLocation&, const SGSLocation&) noexcept = default;
};

struct SGSSize {
    float width = 0;
    float height = 0;
    friend bool operator==(const SGSSize&, const SGSSize&) noexcept = default;
};

struct SGSRect {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;

    /// Nothing lies in it: a side is 0, negative or not-a-number.
    bool IsEmpty() const noexcept { return !(width > 0 && height > 0); }
    friend bool operator==(const SGSRect&, const SGSRect&) noexcept = default;
};

struct SGSRGBAColor {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    uint8_t alpha = 255; ///< 0 is invisible, 255 covers
    friend bool operator==(const SGSRGBAColor&, const SGSRGBAColor&) noexcept = default;
};

/// What a shape is drawn as.
enum KEGSMethod : uint16_t {
    kWire = 0,  ///< its outline, with the stroke width and pattern
    kSolid = 1, ///< its inside
};

/// Bits of SGSFont::style.
enum KEGSFontStyle : uint32_t {
    kPlain = 0,
    kBold = 1,
    kItalic = 2,
};

struct SGSHeader {
    uint32_t code = 0;
    uint32_t size = 8; ///< of the whole record in bytes, this header included
};

inline constexpr uint32_t kStreamVersion = 1;

/// Opens a stream; the description of a picture.
struct SGSStream {
    uint32_t code = kBeginStream;
    uint32_t size = 112;
    uint32_t version = kStreamVersion; ///< a reader refuses any other
    uint32_t flags = 0;                ///< none defined
    uint64_t owner = 0;                ///< what the recording side likes to tell streams apart by
    uint64_t sequence = 0;             ///< number of the picture among those of a film
    SGSSize logicalSize;               ///< in drawing units; what lies outside is not seen
    float scale = 1;                   ///< pixels for one drawing unit
    SGSRGBAColor color{0, 0, 0, 0};    ///< the ground that is drawn on
    char name[64] = {};                ///< UTF-8, NUL-terminated
};

/// Opens a frame: what follows up to its end belongs together.
struct SGSFrame {
    uint32_t code = kBeginFrame;
    uint32_t size = 32;
    uint64_t owner = 0; ///< 0 when opened from a rectangle
    int32_t x = 0;
    int32_t y = 0;
    int32_t width = 0;
    int32_t height = 0;
};

struct SGSStreamFormat {
    uint32_t code = kStreamFormat;
    uint32_t size = 12;
    uint32_t format = kStreamVersion;
};

/// Turns what follows in the frame around the middle of the frame.
struct SGSRotateFrame {
    uint32_t code = kRotateFrame;
    uint32_t size = 12;
    float angle = 0; ///< degrees, clockwise
};

/// Sets the font of the texts that follow in the frame; the bytes behind it are the family's name, UTF-8.
struct SGSFont {
    uint32_t code = kFont;
    uint32_t size = 16;
    float height = 12;  ///< the em, in drawing units
    uint32_t style = 0; ///< KEGSFontStyle bits
};

struct SGSDrawText {
    uint32_t code = kDrawText;
    uint32_t size = 60;
    uint32_t flags = kAntialias;
    SGSRGBAColor drawColor;
    uint32_t horizontal = kLeft;
    uint32_t vertical = kVCenter;
    SGSRect rect;     ///< what the text is aligned to; it does not clip
    SGSRect clipRect; ///< empty: not clipped
    float angle = 0;  ///< degrees clockwise, around the middle of rect
};

struct SGSDrawOval {
    uint32_t code = kDrawOval;
    uint32_t size = 52;
    uint32_t flags = kAntialias;
    SGSRGBAColor drawColor;
    float strokeWidth = 1;
    uint16_t strokePattern = 0xFFFF;
    uint16_t method = kSolid;
    SGSRect rect;         ///< what the whole oval touches from inside
    float startAngle = 0; ///< degrees, 0 to the right, growing clockwise
    float sweepAngle = 360;
    uint32_t slicesNum = 0; ///< straight pieces it is drawn with; 0 draws a smooth curve
};

struct SGSDrawVertices {
    uint32_t code = kDrawVertices;
    uint32_t size = 32;
    uint32_t flags = kAntialias;
    SGSRGBAColor drawColor;
    float strokeWidth = 1;
    uint16_t strokePattern = 0xFFFF;
    uint16_t method = kSolid; ///< of polygons and triangles
    uint32_t kind = kPolygon;
    uint32_t numVertices = 0; ///< of the points record before
};

/// Clips what follows in the frame to a polygon.
struct SGSClipVertices {
    uint32_t code = kClipVertices;
    uint32_t size = 16;
    uint32_t flags = kAntialias;
    uint32_t numVertices = 0; ///< of the points record before
};

/// Clips what follows in the frame to a rectangle.
struct SGSClipRect {
    uint32_t code = kClipRect;
    uint32_t size = 28;
    uint32_t flags = kAntialias;
    SGSRect rect;
};

/// Clips what follows in the frame to the rectangles of the data record before.
struct SGSClipMultipleRects {
    uint32_t code = kClipMultipleRects;
    uint32_t size = 16;
    uint32_t flags = kAntialias;
    uint32_t numRects = 0;
};

/// Draws the picture of a resource id, or the embedded one of the data record before.
struct SGSDrawImage {
    uint32_t code = kDrawImage;
    uint32_t size = 48;
    uint32_t flags = kAntialias;
    int32_t resID = 0; ///< 0: the embedded picture
    SGSLocation location;
    SGSSize scaledSize; ///< 0 × 0: the picture's own size, one unit a pixel
    SGSRect clipRect;   ///< empty: not clipped
};

/// Draws a picture where the rectangles of the data record before show it.
struct SGSDrawImageMultipleClips {
    uint32_t code = kDrawImageMultipleClips;
    uint32_t size = 36;
    uint32_t flags = kAntialias;
    int32_t resID = 0;
    SGSLocation location;
    SGSSize scaledSize;
    uint32_t numRects = 0;
};

/// Data in place: the bytes stand behind the record.
struct SGSDataHere {
    uint32_t code = kDataHere;
    uint32_t size = 20;
    uint32_t purpose = 0;     ///< what the data is for: the writer's second integer
    uint32_t dataType = 0;    ///< the writer's first integer
    uint32_t numElements = 0; ///< of the data type
};

/// Data by its address: valid in its own process, while that memory lives.
struct SGSDataPtr {
    uint32_t code = kDataPtr;
    uint32_t size = 28;
    uint32_t purpose = 0;
    uint32_t dataType = 0;
    uint32_t numElements = 0;
    uint32_t address[2] = {}; ///< 64 bits, low half first: the record's size is no multiple of 8

    void SetAddress(const void* data) noexcept { std::memcpy(address, &data, sizeof data); }
    const void* GetAddress() const noexcept {
        const void* data;
        std::memcpy(&data, address, sizeof data);
        return data;
    }
    /// In bytes; 0 for a null address.
    size_t GetDataSize() const noexcept {
        return GetAddress() == nullptr ? 0 : numElements * GetDataTypeSize(static_cast<int>(dataType));
    }
};

/// A name and a value, which stand behind the record; both UTF-8.
struct SGSMetaData {
    uint32_t code = kMetaData;
    uint32_t size = 12;
    uint32_t nameSize = 0; ///< bytes of the name; the rest is the value
};

// What streams on disk rely on.

static_assert(sizeof(void*) == 8 && sizeof(SGSLocation) == 8 && sizeof(SGSSize) == 8 && sizeof(SGSRect) == 16);
static_assert(sizeof(SGSRGBAColor) == 4 && alignof(SGSRGBAColor) == 1);
static_assert(sizeof(SGSHeader) == 8 && offsetof(SGSHeader, code) == 0 && offsetof(SGSHeader, size) == 4);
static_assert(sizeof(SGSStream) == 112 && offsetof(SGSStream, version) == 8 && offsetof(SGSStream, flags) == 12 &&
              offsetof(SGSStream, owner) == 16 && offsetof(SGSStream, sequence) == 24 &&
              offsetof(SGSStream, logicalSize) == 32 && offsetof(SGSStream, scale) == 40 &&
              offsetof(SGSStream, color) == 44 && offsetof(SGSStream, name) == 48);
static_assert(sizeof(SGSFrame) == 32 && offsetof(SGSFrame, owner) == 8 && offsetof(SGSFrame, x) == 16 &&
              offsetof(SGSFrame, y) == 20 && offsetof(SGSFrame, width) == 24 && offsetof(SGSFrame, height) == 28);
static_assert(sizeof(SGSStreamFormat) == 12 && offsetof(SGSStreamFormat, format) == 8);
static_assert(sizeof(SGSRotateFrame) == 12 && offsetof(SGSRotateFrame, angle) == 8);
static_assert(sizeof(SGSFont) == 16 && offsetof(SGSFont, height) == 8 && offsetof(SGSFont, style) == 12);
static_assert(sizeof(SGSDrawText) == 60 && offsetof(SGSDrawText, flags) == 8 &&
              offsetof(SGSDrawText, drawColor) == 12 && offsetof(SGSDrawText, horizontal) == 16 &&
              offsetof(SGSDrawText, vertical) == 20 && offsetof(SGSDrawText, rect) == 24 &&
              offsetof(SGSDrawText, clipRect) == 40 && offsetof(SGSDrawText, angle) == 56);
static_assert(sizeof(SGSDrawOval) == 52 && offsetof(SGSDrawOval, flags) == 8 &&
              offsetof(SGSDrawOval, drawColor) == 12 && offsetof(SGSDrawOval, strokeWidth) == 16 &&
              offsetof(SGSDrawOval, strokePattern) == 20 && offsetof(SGSDrawOval, method) == 22 &&
              offsetof(SGSDrawOval, rect) == 24 && offsetof(SGSDrawOval, startAngle) == 40 &&
              offsetof(SGSDrawOval, sweepAngle) == 44 && offsetof(SGSDrawOval, slicesNum) == 48);
static_assert(sizeof(SGSDrawVertices) == 32 && offsetof(SGSDrawVertices, flags) == 8 &&
              offsetof(SGSDrawVertices, drawColor) == 12 && offsetof(SGSDrawVertices, strokeWidth) == 16 &&
              offsetof(SGSDrawVertices, strokePattern) == 20 && offsetof(SGSDrawVertices, method) == 22 &&
              offsetof(SGSDrawVertices, kind) == 24 && offsetof(SGSDrawVertices, numVertices) == 28);
static_assert(sizeof(SGSClipVertices) == 16 && offsetof(SGSClipVertices, flags) == 8 &&
              offsetof(SGSClipVertices, numVertices) == 12);
static_assert(sizeof(SGSClipRect) == 28 && offsetof(SGSClipRect, flags) == 8 && offsetof(SGSClipRect, rect) == 12);
static_assert(sizeof(SGSClipMultipleRects) == 16 && offsetof(SGSClipMultipleRects, flags) == 8 &&
              offsetof(SGSClipMultipleRects, numRects) == 12);
static_assert(sizeof(SGSDrawImage) == 48 && offsetof(SGSDrawImage, flags) == 8 &&
              offsetof(SGSDrawImage, resID) == 12 && offsetof(SGSDrawImage, location) == 16 &&
              offsetof(SGSDrawImage, scaledSize) == 24 && offsetof(SGSDrawImage, clipRect) == 32);
static_assert(sizeof(SGSDrawImageMultipleClips) == 36 && offsetof(SGSDrawImageMultipleClips, flags) == 8 &&
              offsetof(SGSDrawImageMultipleClips, resID) == 12 &&
              offsetof(SGSDrawImageMultipleClips, location) == 16 &&
              offsetof(SGSDrawImageMultipleClips, scaledSize) == 24 &&
              offsetof(SGSDrawImageMultipleClips, numRects) == 32);
static_assert(sizeof(SGSDataHere) == 20 && offsetof(SGSDataHere, purpose) == 8 &&
              offsetof(SGSDataHere, dataType) == 12 && offsetof(SGSDataHere, numElements) == 16);
static_assert(sizeof(SGSDataPtr) == 28 && offsetof(SGSDataPtr, purpose) == 8 &&
              offsetof(SGSDataPtr, dataType) == 12 && offsetof(SGSDataPtr, numElements) == 16 &&
              offsetof(SGSDataPtr, address) == 20);
static_assert(sizeof(SGSMetaData) == 12 && offsetof(SGSMetaData, nameSize) == 8);

/// Whether bytes may follow the fixed part of a record.
enum KEGSTail : bool { kFixedSize = false, kWithTail = true };

/// One record in a stream, checked: at least its fixed part can be read. Valid as long as the stream's memory.
template <class Record>
class KCGSRecord {
    static_assert(std::is_trivially_copyable_v<Record>);

  public:
    /// The record's own size field has been checked by whoever makes this.
    KCGSRecord(const uint8_t* bytes, size_t offset) noexcept : m_bytes(bytes), m_offset(offset) {}

    /// A copy of the fixed part.
    Record Read() const noexcept {
        Record record;
        std::memcpy(static_cast<void*>(&record), m_bytes, sizeof record);
        return record;
    }
    /// The bytes behind the fixed part.
    std::span<const uint8_t> GetTail() const noexcept {
        return {m_bytes + sizeof(Record), GetSize() - sizeof(Record)};
    }
    std::string_view GetTailText() const noexcept {
        return {reinterpret_cast<const char*>(m_bytes) + sizeof(Record), GetSize() - sizeof(Record)};
    }
    std::span<const uint8_t> GetBytes() const noexcept { return {m_bytes, GetSize()}; }
    /// The whole record, in bytes.
    size_t GetSize() const noexcept {
        uint32_t size;
        std::memcpy(&size, m_bytes + offsetof(SGSHeader, size), sizeof size);
        return size;
    }
    /// Where in the stream it begins, in bytes.
    size_t GetOffset() const noexcept { return m_offset; }

  private:
    const uint8_t* m_bytes;
    size_t m_offset;
};

} // namespace kvKorvoV12_9_0_320::kvGS
