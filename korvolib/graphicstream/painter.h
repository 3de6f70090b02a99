// KCGraphicStreamPainter: the half of a drawing engine that is the same for every kind of picture. It joins each
// command with the data that stands before it, checks both, and asks the derived class for a few plain things: fill
// this, stroke that, clip, turn, write, show a picture. What does not make sense (points that are missing or no
// numbers, an empty text, an unknown picture) draws nothing, and the walk goes on.
//
// A stream may hold several pictures, one behind the other (a film); one of them is drawn. Records outside any
// "BeginStream" belong to the first. Coordinates are those of the picture, also inside frames; a frame is a scope:
// clips, turns and fonts set in it end with it.
//
// Takes no memory once its buffers have grown to what the stream needs. One stream at a time, on any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include <korvolib/export.h>
#include <korvolib/graphicstream/data_operand.h>
#include <korvolib/graphicstream/engine_base.h>
#include <korvolib/utilities/geometry.h>
#include <korvolib/utilities/mem_obj.h>

namespace kvKorvoV12_9_0_320::kvGS {

/// Knows the pictures that streams name by resource id.
class KORVO_API KCGSImageProvider {
  public:
    virtual ~KCGSImageProvider() = default;
    /// The bytes of a PNG file, valid and the same as long as the provider lives; empty for an unknown id.
    virtual std::span<const uint8_t> GetImagePNG(int32_t resID) noexcept = 0;

  protected:
    KCGSImageProvider() noexcept = default;
    KCGSImageProvider(const KCGSImageProvider&) noexcept = default;
    KCGSImageProvider& operator=(const KCGSImageProvider&) noexcept = default;
};

/// Polylines of `perPart` points each. All coordinates are numbers within ±kMaxCoordinate.
struct KCGSPath {
    std::span<const KUPoint<float>> points;
    size_t perPart = 0;
    bool closed = false;
};

/// An oval or a part of one, drawn smoothly. The sweep is within ±360 and not 0; at ±360 the oval is whole.
struct KCGSArc {
    SGSRect rect;
    double startAngle = 0; ///< degrees, 0 to the right, clockwise
    double sweepAngle = 360;
    bool IsWhole() const noexcept { return sweepAngle >= 360 || sweepAngle <= -360; }
};

struct KCGSPaint {
    SGSRGBAColor color;
    bool antialias = true;
    bool difference = false; ///< blended by difference
};

struct KCGSStroke {
    float width = 1; ///< above 0
    bool roundJoins = false;
    size_t numDashes = 0; ///< 0: a whole line; else lengths drawn and left out in turn, an even number
    float dashes[16] = {};
    float dashOffset = 0; ///< where in the dashes a line begins
};

struct KCGSTextLine {
    std::string_view text;   ///< well-formed UTF-8 without control characters, not empty
    std::string_view family; ///< the same, at most 127 bytes; may be empty
    float height = 12;       ///< the em
    uint32_t style = kPlain;
    SGSLocation baseline; ///< of the text's left end, middle or right end
    uint32_t anchor = kLeft;
    float angle = 0; ///< degrees clockwise, around the pivot
    SGSLocation pivot;
    const SGSRect* clip = nullptr; ///< not turned with the text
};

struct KCGSPicture {
    int32_t resID = 0; ///< 0: embedded
    std::span<const uint8_t> png;
    uint32_t pixelWidth = 0; ///< 1 to 16384 each
    uint32_t pixelHeight = 0;
    SGSRect target;
    const KCGSPath* clip = nullptr; ///< rectangles of which any shows it
};

class KORVO_API KCGraphicStreamPainter : public KCGraphicStreamEngineBase {
  public:
    /// Coordinates beyond are moved here: no picture is that large, and drawing libraries overflow somewhere.
    static constexpr float kMaxCoordinate = 1.0e6F;
    /// Ovals and pictures smaller than this are not seen.
    static constexpr float kMinSide = 1.0F / 256;
    static constexpr uint32_t kMaxImageSide = 16384;

    /// Null: pictures named by id are not drawn. It outlives the walks.
    void SetImageProvider(KCGSImageProvider* provider) noexcept { m_provider = provider; }
    /// Which picture of the stream is drawn, from 0.
    void SelectPicture(size_t index) noexcept { m_selected = index; }
    /// Pictures that the last walk met.
    size_t GetNumPictures() const noexcept { return m_numPictures; }

  protected:
    KCGraphicStreamPainter() noexcept = default;

    // What the derived class draws with. A result other than kErr_NoErr ends the walk with it.

    virtual int32_t BeginPicture(const SGSStream& stream) = 0;
    /// What is set between the two ends with the second.
    virtual int32_t OpenGroup() = 0;
    virtual int32_t CloseGroup() = 0;
    virtual int32_t Rotate(float angle, SGSLocation centre) = 0;
    /// Narrows the clip to the inside of any part of the path; a path without points leaves nothing to be seen.
    virtual int32_t Clip(const KCGSPath& path, bool antialias) = 0;
    /// What lies in any part of the path.
    virtual int32_t Fill(const KCGSPath& path, const KCGSPaint& paint) = 0;
    virtual int32_t Stroke(const KCGSPath& path, const KCGSPaint& paint, const KCGSStroke& stroke) = 0;
    /// A part of an oval is filled as a pie.
    virtual int32_t FillArc(const KCGSArc& arc, const KCGSPaint& paint) = 0;
    virtual int32_t StrokeArc(const KCGSArc& arc, const KCGSPaint& paint, const KCGSStroke& stroke) = 0;
    virtual int32_t ShowText(const KCGSTextLine& line, const KCGSPaint& paint) = 0;
    virtual int32_t ShowPicture(const KCGSPicture& picture, const KCGSPaint& paint) = 0;

    int32_t ExecStart() override;
    void ExecMissingEnd(uint32_t openCommand) override;

    int32_t ExecIllegalGraphicStreamCommand(KCGSRecord<SGSHeader> command) final;
    int32_t ExecIgnoreStreamCommand(KCGSRecord<SGSHeader> command) final;
    int32_t ExecNone(KCGSRecord<SGSHeader> command) final;
    int32_t ExecAny(KCGSRecord<SGSHeader> command) final;
    int32_t ExecStreamSignature(KCGSRecord<SGSHeader> command) final;
    int32_t ExecBeginStream(KCGSRecord<SGSStream> command) final;
    int32_t ExecStreamFormat(KCGSRecord<SGSStreamFormat> command) final;
    int32_t ExecEndStream(KCGSRecord<SGSHeader> command) final;
    int32_t ExecResourcesBaseURL(KCGSRecord<SGSHeader> command) final;
    int32_t ExecBeginFrame(KCGSRecord<SGSFrame> command) final;
    int32_t ExecEndFrame(KCGSRecord<SGSHeader> command) final;
    int32_t ExecRotateFrame(KCGSRecord<SGSRotateFrame> command) final;
    int32_t ExecDrawImage(KCGSRecord<SGSDrawImage> command) final;
    int32_t ExecDrawImageMultipleClips(KCGSRecord<SGSDrawImageMultipleClips> command) final;
    int32_t ExecDrawText(KCGSRecord<SGSDrawText> command) final;
    int32_t ExecDrawOval(KCGSRecord<SGSDrawOval> command) final;
    int32_t ExecDrawVertices(KCGSRecord<SGSDrawVertices> command) final;
    int32_t ExecClipVertices(KCGSRecord<SGSClipVertices> command) final;
    int32_t ExecClipRect(KCGSRecord<SGSClipRect> command) final;
    int32_t ExecClipMultipleRects(KCGSRecord<SGSClipMultipleRects> command) final;
    int32_t ExecDataHere(KCGSRecord<SGSDataHere> command) final;
    int32_t ExecDataPtr(KCGSRecord<SGSDataPtr> command) final;
    int32_t ExecFont(KCGSRecord<SGSFont> command) final;
    int32_t ExecRemark(KCGSRecord<SGSHeader> command) final;
    int32_t ExecMetaData(KCGSRecord<SGSMetaData> command) final;
    int32_t ExecUnknown(KCGSRecord<SGSHeader> command) final;

  private:
    /// What a frame or stream sets for its inside.
    struct State {
        SGSRect frame; ///< what RotateFrame turns around
        std::string_view family;
        float fontHeight = 12;
        uint32_t fontStyle = kPlain;
    };
    struct Primitives;

    bool IsDrawing() const noexcept;
    State& Current() noexcept { return m_states[GetDepth()]; }
    int32_t TakeData(const KCGSDataOperand& data) noexcept;
    bool TakePoints(size_t count);
    bool TakeRects(size_t count);
    int32_t DrawPrimitives(const Primitives& primitives, const SGSDrawVertices& command);
    int32_t DrawRun(const Primitives& primitives, const SGSDrawVertices& command, size_t first, size_t count,
                    SGSRGBAColor color);
    void MakeTriangles(bool fan);
    int32_t DrawSlices(const SGSDrawOval& command, const KCGSArc& arc);
    bool MakePicture(int32_t resID, SGSLocation location, SGSSize scaledSize, KCGSPicture& picture) noexcept;

    KCGSImageProvider* m_provider = nullptr;
    size_t m_selected = 0;
    size_t m_numPictures = 0;
    KCGSDataOperand m_points;
    KCGSDataOperand m_colors;
    KCGSDataOperand m_textData;
    KCGSDataOperand m_rects;
    KCGSDataOperand m_png;
    State m_states[kMaxNesting + 1];
    std::vector<KUPoint<float>> m_path;
    std::vector<KUPoint<float>> m_triangles;
    KCStMemObj m_validText;
    KCStMemObj m_validFamily;
};

/// The lengths drawn and left out that a pattern of sixteen units makes, from its top bit on. False when it draws
/// nothing.
[[nodiscard]] KORVO_API bool GSStrokeFromPattern(float width, uint16_t pattern, KCGSStroke& stroke) noexcept;

/// Width and height of a PNG file from its first bytes; false when it is none, or larger than a decoder
/// should be asked for (kMaxImageSide, 64 million pixels).
[[nodiscard]] KORVO_API bool GSReadPNGSize(std::span<const uint8_t> png, uint32_t& width,
                                           uint32_t& height) noexcept;

} // namespace kvKorvoV12_9_0_320::kvGS
