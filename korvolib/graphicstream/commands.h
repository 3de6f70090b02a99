// The commands of the graphic stream: one list, from which the codes, the name table, the record of each command,
// the dispatch of the engines and their handlers are made. A command added here without a record, a name or a
// handler in every engine does not compile.
//
// Codes are what streams on disk hold: they are appended to, never changed, and never derived from their names
// (some spell their mnemonic in stream order, some in the digits of the value).
//
// The text functions allocate nothing and may be called from any thread.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

/// X(identifier, display name, short name, code, record, whether bytes may follow the record's fixed part)
#define KV_GS_COMMANDS(X)                                                                                          \
    X(IllegalGraphicStreamCommand, "IllegalGraphicStreamCommand", "", 0xBAADF00D, SGSHeader, kFixedSize)           \
    X(IgnoreStreamCommand, "kIgnoreStreamCommand", "", 0x69676E6F, SGSHeader, kWithTail)                           \
    X(None, "None", "", 0x656E6F6E, SGSHeader, kFixedSize)                                                         \
    X(Any, "Any", "", 0x5F796E61, SGSHeader, kFixedSize)                                                           \
    X(StreamSignature, "StreamSignature", "", 0x47495353, SGSHeader, kFixedSize)                                   \
    X(BeginStream, "BeginStream", "stream", 0x4D545342, SGSStream, kFixedSize)                                     \
    X(StreamFormat, "StreamFormat", "format", 0xA0A0A0A0, SGSStreamFormat, kFixedSize)                             \
    X(EndStream, "EndStream", "", 0x4D545345, SGSHeader, kFixedSize)                                               \
    X(ResourcesBaseURL, "ResourcesBaseURL", "resources_base_url", 0x4C525552, SGSHeader, kWithTail)                \
    X(BeginFrame, "BeginFrame", "frame", 0x4D524642, SGSFrame, kFixedSize)                                         \
    X(EndFrame, "EndFrame", "", 0x4D524645, SGSHeader, kFixedSize)                                                 \
    X(RotateFrame, "RotateFrame", "", 0x524F5446, SGSRotateFrame, kFixedSize)                                      \
    X(DrawImage, "DrawImage", "", 0x474E5065, SGSDrawImage, kFixedSize)                                            \
    X(DrawImageMultipleClips, "DrawImageMultipleClips", "", 0x474E506D, SGSDrawImageMultipleClips, kFixedSize)     \
    X(DrawText, "DrawText", "", 0x54585464, SGSDrawText, kFixedSize)                                               \
    X(DrawOval, "DrawOval", "", 0x4F76616C, SGSDrawOval, kFixedSize)                                               \
    X(DrawVertices, "DrawVertices", "", 0x4E495664, SGSDrawVertices, kFixedSize)                                   \
    X(ClipVertices, "ClipVertices", "", 0x4E495663, SGSClipVertices, kFixedSize)                                   \
    X(ClipRect, "ClipRect", "", 0x4E495263, SGSClipRect, kFixedSize)                                               \
    X(ClipMultipleRects, "ClipMultipleRects", "", 0x4D495263, SGSClipMultipleRects, kFixedSize)                    \
    X(DataHere, "DataHere", "", 0x3E3E3E0D, SGSDataHere, kWithTail)                                                \
    X(DataPtr, "DataPtr", "", 0x2A2A2A2A, SGSDataPtr, kFixedSize)                                                  \
    X(Font, "font", "", 0x666F6E74, SGSFont, kWithTail)                                                            \
    X(Remark, "Remark", "", 0x4D455223, SGSHeader, kWithTail)                                                      \
    X(MetaData, "MetaData", "", 0x4154454D, SGSMetaData, kWithTail)

/// Names of the same numbering space that are no commands: X(identifier, display name, code)
#define KV_GS_NAMES(X)                                                                                             \
    X(Char, "char", 0x72616863)                                                                                    \
    X(Float, "float", 0x746F6C66)                                                                                  \
    X(Int8, "int8", 0x746E6938)                                                                                    \
    X(Uint8, "uint8", 0x6E697538)                                                                                  \
    X(Int16, "int16", 0x6E693631)                                                                                  \
    X(Int32, "int32", 0x6E693233)                                                                                  \
    X(Rect, "Rect", 0x72656374)                                                                                    \
    X(ResID, "ResID", 0x64697372)                                                                                  \
    X(Text, "Text", 0x74786574)                                                                                    \
    X(Point2D, "Point2D", 0x32746E70)                                                                              \
    X(Point3D, "Point3D", 0x33746E70)                                                                              \
    X(RGBColor, "RGBColor", 0x7267625F)                                                                            \
    X(RGBAColor, "RGBAColor", 0x72676261)                                                                          \
    X(Polygon, "Polygon", 0x706F6C79)                                                                              \
    X(LineStrip, "LineStrip", 0x73747270)                                                                          \
    X(TriangleFan, "TriangleFan", 0x74726C66)                                                                      \
    X(TriangleStrip, "TriangleStrip", 0x74726C6E)                                                                  \
    X(StraightLines, "StraightLines", 0x73746C6E)                                                                  \
    X(Left, "Left", 0x686C6674)                                                                                    \
    X(HCenter, "HCenter", 0x68637472)                                                                              \
    X(Right, "Right", 0x68726974)                                                                                  \
    X(Top, "Top", 0x76746F70)                                                                                      \
    X(VCenter, "VCenter", 0x76637472)                                                                              \
    X(Bottom, "Bottom", 0x7662746D)                                                                                \
    X(ClipRectangles, "Clip Rectangles", 0x636C7072)                                                               \
    X(FrameChildren, "frame children", 0x4D524643)

namespace kvKorvoV12_9_0_320::kvGS {

/// The codes: kBeginFrame, kDrawOval, … and the data types, vertex kinds and alignments, kInt16, kPolygon, kLeft, …
enum KEGraphicStreamCommand : uint32_t {
#define KV_GS_CODE(identifier, display, shortName, code, record, tail) k##identifier = (code),
    KV_GS_COMMANDS(KV_GS_CODE)
#undef KV_GS_CODE
#define KV_GS_CODE(identifier, display, code) k##identifier = (code),
        KV_GS_NAMES(KV_GS_CODE)
#undef KV_GS_CODE
};

/// One entry of the name table.
struct SGSName {
    uint32_t code = 0;
    KCFixedString<63> displayName;
    KCFixedString<63> shortName; ///< the key in YAML, where it differs from the display name
};

/// The table, filled when the library is loaded; the entry after the last has the code 0.
KORVO_API const SGSName* GetGraphicStreamNames() noexcept;

/// Which of its names GraphicStreamCommandToText gives.
enum KEGSTextForm : int {
    kDisplayName = 0,
    kShortName = 1, ///< the display name where there is no short one
};

/// The name of any code of both lists; "Unknown GraphicStreamCommand " and the number in decimal for others.
KORVO_API KCFixedString<63> GraphicStreamCommandToText(uint32_t code, int form = kDisplayName) noexcept;

/// The code of a display name or short name, letter for letter; kIllegalGraphicStreamCommand for other text.
KORVO_API uint32_t GraphicStreamTextToCommand(const char* text) noexcept;
inline uint32_t GraphicStreamTextToCommand(const KCFixedStringBase& text) noexcept {
    return GraphicStreamTextToCommand(text.c_str());
}

/// kEndStream for kBeginStream, kEndFrame for kBeginFrame, kNone for what opens nothing.
KORVO_API uint32_t CloseCommandFromOpenCommand(uint32_t openCommand) noexcept;

/// How a drawing command draws; bits that are combined.
enum KEGSDrawLineFlags : uint32_t {
    kNoAntialias = 0,   ///< hard edges: a pixel is drawn or not
    kColorsInData = 1,  ///< the colours stand in a data record before the command, one a vertex
    eDrawInXORMode = 2, ///< blended by difference with what lies below: drawn twice it is gone
    kAntialias = 4,     ///< smooth edges
};

/// The names of the set bits joined by " | ", "NoAntialias" for 0; bits without a name as one decimal number.
KORVO_API KCFixedString<63> GraphicStreamDrawLineFlagsToText(uint32_t flags) noexcept;
/// Reads what GraphicStreamDrawLineFlagsToText writes. Parts that are no name and no number count as 0.
KORVO_API uint32_t GraphicStreamTextToDrawLineFlags(const char* text) noexcept;
inline uint32_t GraphicStreamTextToDrawLineFlags(const KCFixedStringBase& text) noexcept {
    return GraphicStreamTextToDrawLineFlags(text.c_str());
}

/// Bytes of one element of a data type; 1 for a type outside the table, whose elements are bytes.
constexpr size_t GetDataTypeSize(int dataType) noexcept;
/// How many plain numbers one element of a data type holds: 2 for Point2D, 4 for Rect; 1 for others.
constexpr size_t GetDataTypeComponents(int dataType) noexcept;

/// True if data of this type can serve this purpose: the purpose is the type itself, or what its numbers make up
/// (Point2D and Point3D of int16 or float, colours of uint8, Rect of int32 or float, "Clip Rectangles" of Rect,
/// ResID of int32, Text of char, an embedded picture, purpose DrawImage, of uint8). Any and None take every type.
KORVO_API bool DataTypeToPurposeMatch(int dataType, int purpose) noexcept;

constexpr size_t GetDataTypeSize(int dataType) noexcept {
    switch (static_cast<uint32_t>(dataType)) {
    case kInt16:
        return 2;
    case kRGBColor:
        return 3;
    case kFloat:
    case kInt32:
    case kResID:
    case kRGBAColor:
        return 4;
    case kPoint2D:
        return 8;
    case kPoint3D:
        return 12;
    case kRect:
        return 16;
    default:
        return 1;
    }
}

constexpr size_t GetDataTypeComponents(int dataType) noexcept {
    switch (static_cast<uint32_t>(dataType)) {
    case kPoint2D:
        return 2;
    case kPoint3D:
    case kRGBColor:
        return 3;
    case kRect:
    case kRGBAColor:
        return 4;
    default:
        return 1;
    }
}

} // namespace kvKorvoV12_9_0_320::kvGS
