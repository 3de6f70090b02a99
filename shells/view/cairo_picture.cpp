#include <shells/view/cairo_picture.h>

#include <cairo.h>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/utilities/error_codes.h>
#include <shells/view/cairo_engine.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

cairo_status_t AppendBytes(void* bytes, const unsigned char* from, unsigned int count) noexcept {
    return static_cast<KCStMemObj*>(bytes)->Append(from, count) == kErr_NoErr ? CAIRO_STATUS_SUCCESS
                                                                              : CAIRO_STATUS_NO_MEMORY;
}

} // namespace

int32_t GraphicStreamToPNG(const void* stream, size_t size, const KCPictureOptions& options,
                           KCStMemObj& png) noexcept {
    png.Clear();
    KCCairoEngine engine;
    engine.SetScale(options.scale);
    engine.SelectPicture(options.pictureIndex);
    engine.SetImageProvider(options.provider);
    if (const int32_t result = engine.ExecStream(stream, size, options.pointers); result != kErr_NoErr)
        return result;
    if (engine.GetImage() == nullptr)
        return kErr_LimitExceeded;
    if (cairo_surface_write_to_png_stream(engine.GetImage(), AppendBytes, &png) == CAIRO_STATUS_SUCCESS)
        return kErr_NoErr;
    png.Clear();
    return kErr_AllocationFailed;
}

int32_t GraphicStreamToPNG(const KCGraphicStreamBinaryWriter& writer, const KCPictureOptions& options,
                           KCStMemObj& png) noexcept {
    KCPictureOptions own = options;
    own.pointers = kFollowPointers;
    const KCStMemObj& stream = writer.GetStreamMemObj();
    return GraphicStreamToPNG(stream.GetData(), stream.GetSize(), own, png);
}

} // namespace kvKorvoV12_9_0_320::kvGS
