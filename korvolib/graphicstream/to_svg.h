// KCGraphicStreamToSVG: a picture of a stream as one self-contained SVG 1.1 document (with the blend mode of CSS
// Compositing Level 1 where XOR mode is used): embedded pictures are data, nothing is fetched.
//
//   KCGraphicStreamToSVG svg;
//   if (svg.ExecStream(writer) == kErr_NoErr)
//       …svg.GetText()…
//
// It looks as the Cairo engine's picture does. Memory is kept from one walk to the next. When a walk fails, the
// text is still well-formed and holds what came before the error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <korvolib/export.h>
#include <korvolib/graphicstream/painter.h>

namespace kvKorvoV12_9_0_320::kvGS {

class KORVO_API KCGraphicStreamToSVG final : public KCGraphicStreamPainter {
  public:
    KCGraphicStreamToSVG() noexcept = default;

    /// The document of the last walk, UTF-8. Valid until the next one.
    std::string_view GetText() const noexcept { return m_document.GetText(); }

    /// The drawing asks for this many times the picture's own size; it looks the same. 1 unless told; what is not
    /// above 0, or not a number, counts as 1.
    void SetScale(float scale) noexcept { m_scale = scale > 0 && scale <= kMaxCoordinate ? scale : 1; }

    /// Size of a picture whose stream states none, in drawing units.
    static constexpr SGSSize kDefaultSize{640, 480};

  protected:
    int32_t ExecStart() override;
    int32_t ExecFinish(int32_t result) override;

    int32_t BeginPicture(const SGSStream& stream) override;
    int32_t OpenGroup() override;
    int32_t CloseGroup() override;
    int32_t Rotate(float angle, SGSLocation centre) override;
    int32_t Clip(const KCGSPath& path, bool antialias) override;
    int32_t Fill(const KCGSPath& path, const KCGSPaint& paint) override;
    int32_t Stroke(const KCGSPath& path, const KCGSPaint& paint, const KCGSStroke& stroke) override;
    int32_t FillArc(const KCGSArc& arc, const KCGSPaint& paint) override;
    int32_t StrokeArc(const KCGSArc& arc, const KCGSPaint& paint, const KCGSStroke& stroke) override;
    int32_t ShowText(const KCGSTextLine& line, const KCGSPaint& paint) override;
    int32_t ShowPicture(const KCGSPicture& picture, const KCGSPaint& paint) override;

  private:
    // Append to the body; without memory nothing more is written, and the walk ends with kErr_AllocationFailed.
    KCGraphicStreamToSVG& Put(std::string_view text) noexcept;
    KCGraphicStreamToSVG& Put(float number) noexcept;
    KCGraphicStreamToSVG& PutUint(uint64_t number) noexcept;
    KCGraphicStreamToSVG& PutEscaped(std::string_view text) noexcept;
    KCGraphicStreamToSVG& PutColor(const SGSRGBAColor& color) noexcept;
    KCGraphicStreamToSVG& PutPaint(const char* property, const KCGSPaint& paint) noexcept;
    KCGraphicStreamToSVG& PutStroke(const KCGSPaint& paint, const KCGSStroke& stroke) noexcept;
    KCGraphicStreamToSVG& PutPath(const KCGSPath& path) noexcept;
    KCGraphicStreamToSVG& PutArc(const KCGSArc& arc, bool pie) noexcept;
    KCGraphicStreamToSVG& PutFamily(std::string_view family) noexcept;
    KCGraphicStreamToSVG& PutBase64(std::span<const uint8_t> bytes) noexcept;
    int32_t OpenClip(const KCGSPath& path, bool antialias) noexcept;
    size_t ImageNumber(const KCGSPicture& picture);
    int32_t Done() const noexcept;

    struct Image {
        uint64_t hash;
        size_t size;
    };

    KCStMemObj m_document;
    KCStMemObj m_body;
    SGSStream m_stream;
    float m_scale = 1;
    bool m_failed = false;
    size_t m_numClips = 0;
    size_t m_depth = 0;
    size_t m_openGroups[kMaxNesting + 1] = {}; ///< elements to close at the end of each group
    std::vector<Image> m_images;
};

} // namespace kvKorvoV12_9_0_320::kvGS
