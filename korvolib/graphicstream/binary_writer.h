// KCGraphicStreamBinaryWriter: records drawing into one growing block of memory, for an engine to play later.
//
//   KCGraphicStreamBinaryWriter writer;
//   KCStGSStreamStructWriter stream(writer, description);
//   writer.SetDrawColor({255, 160, 0}).SetStrokeWidth(2).DrawArcLine({10, 10, 40, 40}, 135, 200);
//
// Recording is appending bytes: no memory is taken unless the block grows, and nothing is drawn. Colour, stroke,
// antialias, XOR, range and segments are settings of the writer that go into the records written after them. What a
// command draws with (points, colours, text, rectangles, an embedded picture) stands in data records before it.
//
// The writer never fails on a full block. Without memory, and for a count beyond 32 bits, the operation writes
// nothing, its data records included, and GetError says so until the stream is cleared. One writer belongs to the
// GUI thread.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include <korvolib/export.h>
#include <korvolib/graphicstream/arrays.h>
#include <korvolib/graphicstream/converters.h>
#include <korvolib/graphicstream/records.h>
#include <korvolib/graphicstream/text.h>
#include <korvolib/utilities/geometry.h>
#include <korvolib/utilities/mem_obj.h>

namespace kvKorvoV12_9_0_320::kvGS {

/// A picture to be drawn: a resource id, which the engine's provider knows, or the bytes of a PNG file.
struct KCGSImage {
    int32_t resID = 0;
    const void* png = nullptr;
    size_t pngSize = 0;

    KCGSImage(int32_t resourceID) noexcept : resID(resourceID) {}
    /// Large bytes may be written by pointer: they have to live as long as the stream is played.
    KCGSImage(const void* pngBytes, size_t size) noexcept : png(pngBytes), pngSize(size) {}
};

/// Settings that go into the records of drawing commands.
struct KCGSDrawSettings {
    SGSRGBAColor color{0, 0, 0, 255};
    float strokeWidth = 1;           ///< in drawing units
    uint16_t strokePattern = 0xFFFF; ///< sixteen units of a line from the top bit on: 1 drawn, 0 left out
    uint32_t flags = kAntialias;     ///< kAntialias and eDrawInXORMode
    uint32_t segments = 0;
};

class KORVO_API KCGraphicStreamBinaryWriter {
  public:
    using Writer = KCGraphicStreamBinaryWriter;

    /// Data of `dataPtrThreshold` bytes and more is written by pointer; 0 writes all data in place.
    explicit KCGraphicStreamBinaryWriter(size_t dataPtrThreshold = 0) noexcept : m_threshold(dataPtrThreshold) {}
    KCGraphicStreamBinaryWriter(const Writer&) = delete;
    KCGraphicStreamBinaryWriter& operator=(const Writer&) = delete;

    // The stream.

    /// Begins a drawing pass: clears the arrays. The stream stays.
    Writer& Start() noexcept;
    /// Empties the stream and forgets an error; its memory stays for what comes. Open scopes write nothing more.
    Writer& ClearStream() noexcept;
    Writer& OpenStream(const SGSStream& stream) noexcept;
    Writer& OpenFrame(const SGSFrame& frame) noexcept;
    /// A frame of no owner. Width and height saturate.
    Writer& OpenFrame(const KURect<int>& rect) noexcept;
    Writer& CloseFrame(uint32_t code = kEndFrame) noexcept { return CommandHeader(code); }
    /// Degrees clockwise, around the middle of the open frame.
    Writer& RotateFrame(float angle) noexcept;
    /// A record of 8 bytes: the code and the size.
    Writer& CommandHeader(uint32_t code) noexcept;
    Writer& StreamFormat(uint32_t format = kStreamVersion) noexcept;
    /// Where the resources of the picture are to be found.
    Writer& ResourcesBaseURL(KCGSText url) noexcept;

    // Settings.

    Writer& SetDrawColor(SGSRGBAColor color) noexcept;
    /// In drawing units; 0 and less, and not-a-number, draw no line.
    Writer& SetStrokeWidth(float width) noexcept;
    Writer& SetStrokePattern(uint16_t pattern) noexcept;
    Writer& SetAntialias(bool on) noexcept;
    bool GetAntialias() const noexcept { return (m_settings.flags & kAntialias) != 0; }
    /// By difference with what lies below: drawn twice it is gone.
    Writer& SetXorMode(bool on) noexcept;
    bool GetXorMode() const noexcept { return (m_settings.flags & eDrawInXORMode) != 0; }
    /// The vertices of the arrays that DrawVertices and ClipVertices use; a count of 0 means all.
    Writer& SetRange(size_t first, size_t count) noexcept;
    /// Straight pieces that ovals and arcs are drawn with; 0 draws smooth curves.
    Writer& SetSegment(uint32_t segments) noexcept;
    const KCGSDrawSettings& GetSettings() const noexcept { return m_settings; }
    /// The font of the texts that follow in the frame. The height is the em in drawing units.
    Writer& Font(KCGSText family, float height, uint32_t style = kPlain) noexcept;

    // Shapes, in the draw colour unless a colour is given.

    Writer& DrawLine(SGSLocation from, SGSLocation to) noexcept;
    template <std::same_as<short> T> // so that plain braces mean the one above
    Writer& DrawLine(KUPoint<T> from, KUPoint<T> to) noexcept {
        return DrawLineOfShorts(from, to);
    }
    /// A part of the outline of the oval in `rect`: degrees from the right, clockwise.
    Writer& DrawArcLine(const SGSRect& rect, float startAngle, float sweepAngle) noexcept;
    /// Solid with less than a whole sweep is a pie.
    Writer& DrawOval(const SGSRect& rect, KEGSMethod method = kSolid, float startAngle = 0,
                     float sweepAngle = 360) noexcept;
    Writer& DrawSolidRect(SGSRGBAColor color, const KURect<short>& rect) noexcept {
        return AppendShortRect(m_settings.flags, color, Corner(rect.left, rect.top),
                               Corner(rect.right, rect.bottom));
    }
    Writer& DrawSolidRect(SGSRGBAColor color, const KURect<float>& rect) noexcept;
    /// The line lies inside the rectangle.
    Writer& DrawWireRect(SGSRGBAColor color, const KURect<short>& rect) noexcept;
    Writer& DrawWireRect(SGSRGBAColor color, const KURect<float>& rect) noexcept;
    /// Solid, in XOR mode whatever the setting, in the draw colour.
    Writer& DrawXORRect(const KURect<short>& rect) noexcept {
        return AppendShortRect(m_settings.flags | eDrawInXORMode, m_settings.color, Corner(rect.left, rect.top),
                               Corner(rect.right, rect.bottom));
    }
    Writer& DrawXORRect(const KURect<float>& rect) noexcept;
    /// The vertices of the arrays' range, with their colours if there is one for each. `kind` is kPolygon,
    /// kLineStrip, kTriangleFan, kTriangleStrip or kStraightLines; the method counts for polygons and triangles.
    /// Each primitive has the colour of its first vertex. Writes nothing without vertices.
    Writer& DrawVertices(uint32_t kind, KEGSMethod method = kSolid) noexcept;

    // Text, in the draw colour. It stands on a line fixed by the rectangle and the font's height alone, so that it
    // looks the same in every engine.

    Writer& DrawTheText(KCGSText text, const SGSRect& rect, uint32_t horizontal = kLeft,
                        uint32_t vertical = kVCenter) noexcept;
    Writer& DrawTheText(KCGSText text, const SGSRect& rect, uint32_t horizontal, uint32_t vertical,
                        const SGSRect& clip) noexcept;
    /// Turned by `angle` degrees clockwise around the middle of the rectangle, as labels of an axis are.
    Writer& SpecialText(KCGSText text, const SGSRect& rect, float angle, uint32_t horizontal = kHCenter,
                        uint32_t vertical = kVCenter) noexcept;

    // Pictures: at their own size, one drawing unit a pixel, unless scaled. Clips are in drawing units; where a
    // clip or a scaled rectangle is empty, here and with text, nothing is written.

    Writer& DrawPNG(const KCGSImage& image) noexcept { return DrawPNGAtPosition(image, {0, 0}); }
    Writer& DrawPNGAtPosition(const KCGSImage& image, SGSLocation location) noexcept;
    Writer& DrawPNGAtPositionClipped(const KCGSImage& image, SGSLocation location, const SGSRect& clip) noexcept;
    Writer& DrawPNGAtPositionMultipleClips(const KCGSImage& image, SGSLocation location,
                                           std::span<const SGSRect> clips) noexcept;
    Writer& DrawPNGMultipleClips(const KCGSImage& image, std::span<const SGSRect> clips) noexcept;
    Writer& DrawPNGScaled(const KCGSImage& image, const SGSRect& rect) noexcept;
    Writer& DrawPNGScaledAndClipped(const KCGSImage& image, const SGSRect& rect, const SGSRect& clip) noexcept;
    /// One unit to the right and down, as a pressed button looks.
    Writer& DrawPushedImage(const KCGSImage& image, SGSLocation location) noexcept;
    /// The panel of a plug-in that records no drawing of its own: a filled, framed rectangle with a name in it.
    Writer& DrawOldStylePlugin(const SGSRect& rect, KCGSText name) noexcept;

    // Clips: each narrows the one before, up to the end of the frame.

    Writer& ClipRect(const SGSRect& rect) noexcept;
    /// To what any of the rectangles covers; without a rectangle nothing is seen.
    Writer& ClipMultipleRects(std::span<const SGSRect> rects) noexcept;
    /// To the polygon of the arrays' range; without vertices nothing is written.
    Writer& ClipVertices() noexcept;

    // Data: a type, the purpose it serves, and `count` elements of the type. A type outside the table has elements
    // of one byte. A null pointer with a count above 0 writes nothing (kErr_NullArgument).

    /// By pointer or in place, as the threshold says.
    Writer& Data(int dataType, int purpose, const void* data, size_t count) noexcept;
    Writer& DataHere(int dataType, int purpose, const void* data, size_t count) noexcept;
    /// The data has to live as long as the stream is played.
    Writer& DataPtr(int dataType, int purpose, const void* data, size_t count) noexcept;
    Writer& DataStr(KCGSText text) noexcept;
    Writer& DataHereStr(KCGSText text) noexcept;
    Writer& DataPtrStr(KCGSText text) noexcept;
    Writer& SetDataPtrThreshold(size_t bytes) noexcept;
    bool WillBeWrittenAsDataPtr(size_t bytes) const noexcept { return m_threshold != 0 && bytes >= m_threshold; }
    bool WillBeWrittenAsDataHere(size_t bytes) const noexcept { return !WillBeWrittenAsDataPtr(bytes); }

    // Notes for people and tools: written only while switched on.

    Writer& ActivateRemarks(bool on = true) noexcept;
    Writer& ActivateMeatData(bool on = true) noexcept;
    Writer& Remark(KCGSText text) noexcept;
    Writer& MetaData(KCGSText name, KCGSText value) noexcept;

    // What is there.

    KCGSArrays& GetGSArrays() noexcept { return m_arrays; }
    const KCStMemObj& GetStreamMemObj() const noexcept { return m_stream; }
    KCStMemObj& GetStreamMemObj() noexcept { return m_stream; }
    /// kErr_NoErr, or the first of kErr_AllocationFailed, kErr_LimitExceeded and kErr_NullArgument since the stream
    /// was cleared.
    int32_t GetError() const noexcept { return m_error; }
    /// Changes when the stream is cleared.
    uint64_t GetGeneration() const noexcept { return m_generation; }
    /// Appends one line on the stream and the settings.
    Writer& ReportState(KCFixedStringBase& report) noexcept;
    /// Writes a file that is complete on its own: data by pointer stands in place in it. A file of that name is
    /// replaced in one step. `result` is kErr_NoErr, kErr_NullArgument, kErr_AllocationFailed,
    /// kErr_MalformedStream, kErr_LimitExceeded, or what FM::WriteFileFromKCStMemObj says of the file.
    Writer& WriteGraphicStreamToFile(const char* path, int32_t& result) noexcept;

  private:
    Writer& DrawLineOfShorts(KUPoint<short> from, KUPoint<short> to) noexcept;
    uint8_t* Reserve(size_t size) noexcept;
    void Fail(int32_t error) noexcept;
    /// Runs an operation of several records; when one of them fails, those before it are taken back: a command
    /// without its data would be drawn with that of another, or not clip.
    template <class Operation>
    Writer& WholeOrNothing(const Operation& write) noexcept {
        const size_t sizeBefore = m_stream.GetSize();
        const int32_t errorBefore = std::exchange(m_error, 0);
        write();
        if (m_error != 0)
            (void)m_stream.Resize(sizeBefore); // a smaller size always has its memory
        if (errorBefore != 0)
            m_error = errorBefore;
        return *this;
    }
    Writer& AppendTailRecord(uint32_t code, std::string_view tail) noexcept;
    Writer& AppendOval(const SGSRect& rect, KEGSMethod method, float startAngle, float sweepAngle) noexcept;
    template <class Coordinate, class... Points>
    Writer& AppendShape(uint32_t kind, KEGSMethod method, uint32_t flags, SGSRGBAColor color,
                        Points... points) noexcept;
    /// Corners travel in registers: a rectangle of shorts read back from memory costs more than its record.
    static constexpr uint32_t Corner(short x, short y) noexcept {
        return static_cast<uint16_t>(x) | uint32_t{static_cast<uint16_t>(y)} << 16;
    }
    Writer& AppendShortRect(uint32_t flags, SGSRGBAColor color, uint32_t leftTop, uint32_t rightBottom) noexcept;
    Writer& AppendFloatRect(KEGSMethod method, uint32_t flags, SGSRGBAColor color,
                            const KURect<float>& rect) noexcept;
    Writer& AppendText(KCGSText text, const SGSRect& rect, uint32_t horizontal, uint32_t vertical,
                       const SGSRect& clip, float angle) noexcept;
    Writer& AppendImage(const KCGSImage& image, SGSLocation location, SGSSize size, const SGSRect& clip) noexcept;
    bool GiveImageData(const KCGSImage& image) noexcept;

    KCStMemObj m_stream;
    KCGSDrawSettings m_settings;
    size_t m_threshold;
    uint64_t m_generation = 0;
    int32_t m_error = 0;
    bool m_remarks = false;
    bool m_metaData = false;
    KCGSArrays m_arrays;
};

/// The same stream with its data by pointer in place. Only for a stream of this process whose data still lives.
/// kErr_AllocationFailed, kErr_MalformedStream, kErr_LimitExceeded leave `inPlace` empty.
[[nodiscard]] KORVO_API int32_t GSCopyWithDataInPlace(const void* stream, size_t size,
                                                      KCStMemObj& inPlace) noexcept;

} // namespace kvKorvoV12_9_0_320::kvGS
