// Scopes that keep frames and streams balanced: what one opens in its constructor it closes when it ends.
//
//   {
//       KCStGSFrameStructWriter frame(writer, controlRect);
//       control.Draw(writer);
//   }   // "EndFrame" is written here; had Draw written nothing, the frame would be gone without a trace
//
// They move, and a moved scope closes once. When the stream is cleared inside a scope, the scope writes and removes
// nothing any more. The writer outlives its scopes; same thread.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/graphicstream/binary_writer.h>

namespace kvKorvoV12_9_0_320::kvGS {

/// What the two scopes share: whether the opening record is still there to be closed.
class KORVO_API KCStGSStructWriter {
  public:
    KCStGSStructWriter(const KCStGSStructWriter&) = delete;
    KCStGSStructWriter& operator=(const KCStGSStructWriter&) = delete;

    /// True until it has closed, was moved from, or the stream was cleared.
    bool ShouldClose() const noexcept;

  protected:
    explicit KCStGSStructWriter(KCGraphicStreamBinaryWriter& writer) noexcept;
    KCStGSStructWriter(KCStGSStructWriter&& other) noexcept;
    ~KCStGSStructWriter() = default;

    /// The opening record has just been written, unless there was no memory for it.
    void Opened(size_t sizeBefore) noexcept;

    KCGraphicStreamBinaryWriter* m_writer = nullptr; // null once closed
    size_t m_sizeAfterOpening = 0;
    uint64_t m_generation = 0;
};

class KORVO_API KCStGSFrameStructWriter : public KCStGSStructWriter {
  public:
    KCStGSFrameStructWriter(KCGraphicStreamBinaryWriter& writer, const SGSFrame& frame) noexcept;
    KCStGSFrameStructWriter(KCGraphicStreamBinaryWriter& writer, const KURect<int>& rect) noexcept;
    KCStGSFrameStructWriter(KCStGSFrameStructWriter&& other) noexcept = default;
    ~KCStGSFrameStructWriter() { CloseFrame(); }

    /// Closes now: "EndFrame" behind what was written, or the frame taken back out of the stream if nothing was.
    void CloseFrame() noexcept;
};

class KORVO_API KCStGSStreamStructWriter : public KCStGSStructWriter {
  public:
    KCStGSStreamStructWriter(KCGraphicStreamBinaryWriter& writer, const SGSStream& stream) noexcept;
    KCStGSStreamStructWriter(KCStGSStreamStructWriter&& other) noexcept = default;
    ~KCStGSStreamStructWriter() { CloseStream(); }

    /// Closes now: "EndStream", also behind an empty stream.
    void CloseStream() noexcept;
};

} // namespace kvKorvoV12_9_0_320::kvGS
