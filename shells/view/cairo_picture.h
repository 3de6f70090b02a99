// Pictures of recorded streams: images in memory and PNG files. Any thread; one picture at a time on each.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/graphicstream/painter.h>
#include <korvolib/utilities/mem_obj.h>

namespace kvKorvoV12_9_0_320::kvGS {

/// How a picture is made of a stream.
struct KCPictureOptions {
    double scale = 1;                      ///< pixels for each pixel of the stream's own scale
    size_t pictureIndex = 0;               ///< which of the stream's pictures
    KCGSImageProvider* provider = nullptr; ///< for pictures named by id
    KEGSPointers pointers = kRefusePointers;
};

/// The PNG file of a picture. The results of KCGraphicStreamEngineBase::ExecStream, kErr_LimitExceeded for a
/// picture without a size or too large, kErr_AllocationFailed; `png` is empty unless it is kErr_NoErr.
[[nodiscard]] int32_t GraphicStreamToPNG(const void* stream, size_t size, const KCPictureOptions& options,
                                         KCStMemObj& png) noexcept;
/// The same from the writer that recorded it, data by pointer included.
[[nodiscard]] int32_t GraphicStreamToPNG(const KCGraphicStreamBinaryWriter& writer, const KCPictureOptions& options,
                                         KCStMemObj& png) noexcept;

} // namespace kvKorvoV12_9_0_320::kvGS
