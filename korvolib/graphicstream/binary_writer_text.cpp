#include <korvolib/graphicstream/binary_writer.h>

#include <korvolib/graphicstream/record_bytes_internal.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::Font(KCGSText family, float height,
                                                               uint32_t style) noexcept {
    if (family.size() > UINT32_MAX - sizeof(SGSFont)) {
        Fail(kErr_LimitExceeded);
        return *this;
    }
    const size_t size = sizeof(SGSFont) + family.size();
    if (uint8_t* at = Reserve(size)) {
        RecordBytes(at)
            .Put(uint32_t{kFont}, static_cast<uint32_t>(size), height, style)
            .PutBytes(family.data(), family.size());
    }
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawTheText(KCGSText text, const SGSRect& rect,
                                                                      uint32_t horizontal,
                                                                      uint32_t vertical) noexcept {
    return AppendText(text, rect, horizontal, vertical, {}, 0);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawTheText(KCGSText text, const SGSRect& rect,
                                                                      uint32_t horizontal, uint32_t vertical,
                                                                      const SGSRect& clip) noexcept {
    return clip.IsEmpty() ? *this : AppendText(text, rect, horizontal, vertical, clip, 0);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::SpecialText(KCGSText text, const SGSRect& rect,
                                                                      float angle, uint32_t horizontal,
                                                                      uint32_t vertical) noexcept {
    return AppendText(text, rect, horizontal, vertical, {}, angle);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::AppendText(KCGSText text, const SGSRect& rect,
                                                                     uint32_t horizontal, uint32_t vertical,
                                                                     const SGSRect& clip, float angle) noexcept {
    if (text.size() > UINT32_MAX - sizeof(SGSDataHere)) {
        Fail(kErr_LimitExceeded);
        return *this;
    }
    const bool byPointer = WillBeWrittenAsDataPtr(text.size());
    const size_t dataSize = byPointer ? sizeof(SGSDataPtr) : sizeof(SGSDataHere) + text.size();
    uint8_t* const at = Reserve(dataSize + sizeof(SGSDrawText));
    if (at == nullptr)
        return *this;
    RecordBytes record(at);
    if (byPointer)
        record.PutDataPtr(kChar, kText, text.data(), text.size());
    else
        record.PutData(kChar, kText, text.data(), text.size(), text.size());
    record.Put(uint32_t{kDrawText}, uint32_t{sizeof(SGSDrawText)}, m_settings.flags, m_settings.color, horizontal,
               vertical, rect, clip, angle);
    return *this;
}

// Pictures.

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawPNGAtPosition(const KCGSImage& image,
                                                                            SGSLocation location) noexcept {
    return AppendImage(image, location, {}, {});
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawPNGAtPositionClipped(const KCGSImage& image,
                                                                                   SGSLocation location,
                                                                                   const SGSRect& clip) noexcept {
    return clip.IsEmpty() ? *this : AppendImage(image, location, {}, clip);
}

KCGraphicStreamBinaryWriter&
KCGraphicStreamBinaryWriter::DrawPNGAtPositionMultipleClips(const KCGSImage& image, SGSLocation location,
                                                            std::span<const SGSRect> clips) noexcept {
    if (clips.size() > UINT32_MAX / sizeof(SGSRect) - 2) {
        Fail(kErr_LimitExceeded);
        return *this;
    }
    return WholeOrNothing([&] {
        if (!GiveImageData(image))
            return;
        DataHere(kRect, kClipRectangles, clips.data(), clips.size());
        if (uint8_t* at = Reserve(sizeof(SGSDrawImageMultipleClips))) {
            RecordBytes(at).Put(uint32_t{kDrawImageMultipleClips}, uint32_t{sizeof(SGSDrawImageMultipleClips)},
                                m_settings.flags, image.resID, location, SGSSize(),
                                static_cast<uint32_t>(clips.size()));
        }
    });
}

KCGraphicStreamBinaryWriter&
KCGraphicStreamBinaryWriter::DrawPNGMultipleClips(const KCGSImage& image, std::span<const SGSRect> clips) noexcept {
    return DrawPNGAtPositionMultipleClips(image, {0, 0}, clips);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawPNGScaled(const KCGSImage& image,
                                                                        const SGSRect& rect) noexcept {
    return rect.IsEmpty() ? *this : AppendImage(image, {rect.x, rect.y}, {rect.width, rect.height}, {});
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawPNGScaledAndClipped(const KCGSImage& image,
                                                                                  const SGSRect& rect,
                                                                                  const SGSRect& clip) noexcept {
    if (rect.IsEmpty() || clip.IsEmpty())
        return *this;
    return AppendImage(image, {rect.x, rect.y}, {rect.width, rect.height}, clip);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawPushedImage(const KCGSImage& image,
                                                                          SGSLocation location) noexcept {
    return AppendImage(image, {location.x + 1, location.y + 1}, {}, {});
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DrawOldStylePlugin(const SGSRect& rect,
                                                                             KCGSText name) noexcept {
    constexpr SGSRGBAColor kPanel{0x4A, 0x4D, 0x52, 255};
    constexpr SGSRGBAColor kFrame{0x8C, 0x90, 0x96, 255};
    const KURect<float> edges = KURect<float>::FromOrigin({rect.x, rect.y}, {rect.width, rect.height});
    DrawSolidRect(kPanel, edges);
    DrawWireRect(kFrame, edges);
    return DrawTheText(name, rect, kHCenter, kVCenter, rect);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::AppendImage(const KCGSImage& image, SGSLocation location,
                                                                      SGSSize size, const SGSRect& clip) noexcept {
    return WholeOrNothing([&] {
        if (!GiveImageData(image))
            return;
        if (uint8_t* at = Reserve(sizeof(SGSDrawImage))) {
            RecordBytes(at).Put(uint32_t{kDrawImage}, uint32_t{sizeof(SGSDrawImage)}, m_settings.flags, image.resID,
                                location, size, clip);
        }
    });
}

// An embedded picture stands before its command. False when there is none to draw.
bool KCGraphicStreamBinaryWriter::GiveImageData(const KCGSImage& image) noexcept {
    if (image.resID != 0)
        return true;
    const size_t before = m_stream.GetSize();
    if (image.png != nullptr && image.pngSize != 0)
        Data(kUint8, kDrawImage, image.png, image.pngSize);
    return m_stream.GetSize() != before;
}

} // namespace kvKorvoV12_9_0_320::kvGS
