#include <korvolib/graphicstream/struct_writers.h>

#include <cstring>
#include <utility>

namespace kvKorvoV12_9_0_320::kvGS {

KCStGSStructWriter::KCStGSStructWriter(KCGraphicStreamBinaryWriter& writer) noexcept
    : m_writer(&writer), m_sizeAfterOpening(writer.GetStreamMemObj().GetSize()),
      m_generation(writer.GetGeneration()) {}

void KCStGSStructWriter::Opened(size_t sizeBefore) noexcept {
    m_sizeAfterOpening = m_writer->GetStreamMemObj().GetSize();
    if (m_sizeAfterOpening == sizeBefore)
        m_writer = nullptr;
}

KCStGSStructWriter::KCStGSStructWriter(KCStGSStructWriter&& other) noexcept
    : m_writer(std::exchange(other.m_writer, nullptr)), m_sizeAfterOpening(other.m_sizeAfterOpening),
      m_generation(other.m_generation) {}

bool KCStGSStructWriter::ShouldClose() const noexcept {
    return m_writer != nullptr && m_writer->GetGeneration() == m_generation &&
           m_writer->GetStreamMemObj().GetSize() >= m_sizeAfterOpening;
}

KCStGSFrameStructWriter::KCStGSFrameStructWriter(KCGraphicStreamBinaryWriter& writer,
                                                 const SGSFrame& frame) noexcept
    : KCStGSStructWriter(writer) {
    writer.OpenFrame(frame);
    Opened(m_sizeAfterOpening);
}

KCStGSFrameStructWriter::KCStGSFrameStructWriter(KCGraphicStreamBinaryWriter& writer,
                                                 const KURect<int>& rect) noexcept
    : KCStGSStructWriter(writer) {
    writer.OpenFrame(rect);
    Opened(m_sizeAfterOpening);
}

void KCStGSFrameStructWriter::CloseFrame() noexcept {
    if (ShouldClose()) {
        KCStMemObj& stream = m_writer->GetStreamMemObj();
        if (stream.GetSize() > m_sizeAfterOpening) {
            m_writer->CloseFrame(kEndFrame);
        } else {
            const size_t sizeBefore = m_sizeAfterOpening - sizeof(SGSFrame);
            std::memset(stream.GetBytes().data() + sizeBefore, 0, sizeof(SGSFrame));
            (void)stream.Resize(sizeBefore); // a smaller size always has its memory
        }
    }
    m_writer = nullptr;
}

KCStGSStreamStructWriter::KCStGSStreamStructWriter(KCGraphicStreamBinaryWriter& writer,
                                                   const SGSStream& stream) noexcept
    : KCStGSStructWriter(writer) {
    writer.OpenStream(stream);
    Opened(m_sizeAfterOpening);
}

void KCStGSStreamStructWriter::CloseStream() noexcept {
    if (ShouldClose())
        m_writer->CommandHeader(kEndStream);
    m_writer = nullptr;
}

} // namespace kvKorvoV12_9_0_320::kvGS
