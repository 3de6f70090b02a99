// KCCairoEngine: plays a recorded stream with Cairo, onto any Cairo surface or into an image of its own.
//
//   KCCairoEngine engine;
//   engine.SetTarget(cr);                        // a window's context, with whatever scale it has
//   (void)engine.ExecStream(writer);
//
// Its price is that of the same Cairo calls made directly. Decoded pictures are kept between walks. The target is
// left as it was, but for its pixels. One engine draws on one thread at a time.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include <korvolib/graphicstream/painter.h>

typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;

namespace kvKorvoV12_9_0_320::kvGS {

class KCCairoEngine final : public KCGraphicStreamPainter {
  public:
    KCCairoEngine() noexcept = default;
    ~KCCairoEngine() override;
    KCCairoEngine(const KCCairoEngine&) = delete;
    KCCairoEngine& operator=(const KCCairoEngine&) = delete;

    /// What the next walks draw on, in drawing units of the context's own scale; it outlives them. Null: each walk
    /// makes an image of the size that its stream states.
    void SetTarget(cairo_t* target) noexcept { m_target = target; }
    /// Pixels for each pixel of the stream's own scale, for an image made by the engine: 2 for dense screens.
    /// Finite and above 0, otherwise it counts as 1. The image has sides up to kMaxImageSide.
    void SetScale(double scale) noexcept;

    /// The image of the last walk without a target; null when its stream stated no size, or none that an image can
    /// have (the walk then ended with kErr_LimitExceeded). The engine's, until the next walk.
    cairo_surface_t* GetImage() const noexcept { return m_image; }

    /// Gives the memory of decoded pictures back. Pictures are known by their bytes, so that nothing else calls for
    /// it.
    void ClearPictureCache() noexcept;

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
    void DropContext() noexcept;
    int32_t MakeImage(double width, double height, double scale) noexcept;
    void ClearImage() noexcept;
    void Prepare() noexcept;
    void SetPaint(const KCGSPaint& paint) noexcept;
    void SetStroke(const KCGSStroke& stroke) noexcept;
    void SetFont(const KCGSTextLine& line, bool antialias);
    void AddPath(const KCGSPath& path) noexcept;
    void AddArc(const KCGSArc& arc, bool pie) noexcept;
    cairo_surface_t* Decode(const KCGSPicture& picture);

    cairo_t* m_target = nullptr;
    cairo_t* m_cr = nullptr; // what is drawn on during a walk
    cairo_t* m_ownContext = nullptr;
    cairo_surface_t* m_image = nullptr;
    double m_scale = 1;
    // The font that the context has; Cairo takes longer to set it than to draw with it.
    std::string m_family;
    float m_fontHeight = 0;
    uint32_t m_fontStyle = 0;
    std::string m_text; // of the line that is shown, terminated
    bool m_fontIsSmooth = true;
    bool m_hasFont = false;
    bool m_hasDashes = false;
    std::unordered_map<uint64_t, cairo_surface_t*> m_pictures; // by the hash of their bytes
};

} // namespace kvKorvoV12_9_0_320::kvGS
