#include <korvolib/graphicstream/binary_writer.h>

#include <korvolib/graphicstream/record_bytes_internal.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

// The stream.

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::Start() noexcept {
    m_arrays.ClearArrays();
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::ClearStream() noexcept {
    (void)m_stream.Resize(0); // a smaller size always has its memory
    ++m_generation;
    m_error = kErr_NoErr;
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::OpenStream(const SGSStream& stream) noexcept {
    if (uint8_t* at = Reserve(sizeof stream)) {
        std::memcpy(at, &stream, sizeof stream);
        // A description that was filled by zeroing it is written as a stream all the same.
        RecordBytes(at).Put(uint32_t{kBeginStream}, uint32_t{sizeof stream});
    }
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::OpenFrame(const SGSFrame& frame) noexcept {
    if (uint8_t* at = Reserve(sizeof frame)) {
        RecordBytes(at).Put(uint32_t{kBeginFrame}, uint32_t{sizeof frame}, frame.owner, frame.x, frame.y,
                            frame.width, frame.height);
    }
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::OpenFrame(const KURect<int>& rect) noexcept {
    SGSFrame frame;
    frame.x = rect.left;
    frame.y = rect.top;
    frame.width = KUConvertCoordinate<int>(rect.GetWidth());
    frame.height = KUConvertCoordinate<int>(rect.GetHeight());
    return OpenFrame(frame);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::RotateFrame(float angle) noexcept {
    if (uint8_t* at = Reserve(sizeof(SGSRotateFrame)))
        RecordBytes(at).Put(uint32_t{kRotateFrame}, uint32_t{sizeof(SGSRotateFrame)}, angle);
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::CommandHeader(uint32_t code) noexcept {
    if (uint8_t* at = Reserve(sizeof(SGSHeader)))
        RecordBytes(at).Put(code, uint32_t{sizeof(SGSHeader)});
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::StreamFormat(uint32_t format) noexcept {
    if (uint8_t* at = Reserve(sizeof(SGSStreamFormat)))
        RecordBytes(at).Put(uint32_t{kStreamFormat}, uint32_t{sizeof(SGSStreamFormat)}, format);
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::ResourcesBaseURL(KCGSText url) noexcept {
    return AppendTailRecord(kResourcesBaseURL, url.View());
}

// Settings.

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::SetDrawColor(SGSRGBAColor color) noexcept {
    m_settings.color = color;
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::SetStrokeWidth(float width) noexcept {
    m_settings.strokeWidth = width;
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::SetStrokePattern(uint16_t pattern) noexcept {
    m_settings.strokePattern = pattern;
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::SetAntialias(bool on) noexcept {
    m_settings.flags = on ? m_settings.flags | kAntialias : m_settings.flags & ~uint32_t{kAntialias};
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::SetXorMode(bool on) noexcept {
    m_settings.flags = on ? m_settings.flags | eDrawInXORMode : m_settings.flags & ~uint32_t{eDrawInXORMode};
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::SetRange(size_t first, size_t count) noexcept {
    m_arrays.SetRange(first, count);
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::SetSegment(uint32_t segments) noexcept {
    m_settings.segments = segments;
    return *this;
}

// Data.

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::Data(int dataType, int purpose, const void* data,
                                                               size_t count) noexcept {
    const size_t elementSize = GetDataTypeSize(dataType);
    const size_t bytes = count > SIZE_MAX / elementSize ? SIZE_MAX : count * elementSize;
    return WillBeWrittenAsDataPtr(bytes) ? DataPtr(dataType, purpose, data, count)
                                         : DataHere(dataType, purpose, data, count);
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DataHere(int dataType, int purpose, const void* data,
                                                                   size_t count) noexcept {
    const size_t elementSize = GetDataTypeSize(dataType);
    if (count > (UINT32_MAX - sizeof(SGSDataHere)) / elementSize)
        Fail(kErr_LimitExceeded);
    else if (data == nullptr && count != 0)
        Fail(kErr_NullArgument);
    else if (uint8_t* at = Reserve(sizeof(SGSDataHere) + count * elementSize))
        RecordBytes(at).PutData(dataType, purpose, data, count, count * elementSize);
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DataPtr(int dataType, int purpose, const void* data,
                                                                  size_t count) noexcept {
    if (count > UINT32_MAX)
        Fail(kErr_LimitExceeded);
    else if (data == nullptr && count != 0)
        Fail(kErr_NullArgument);
    else if (uint8_t* at = Reserve(sizeof(SGSDataPtr)))
        RecordBytes(at).PutDataPtr(dataType, purpose, data, count);
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DataStr(KCGSText text) noexcept {
    return Data(kChar, kText, text.data(), text.size());
}
KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DataHereStr(KCGSText text) noexcept {
    return DataHere(kChar, kText, text.data(), text.size());
}
KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::DataPtrStr(KCGSText text) noexcept {
    return DataPtr(kChar, kText, text.data(), text.size());
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::SetDataPtrThreshold(size_t bytes) noexcept {
    m_threshold = bytes;
    return *this;
}

// Notes.

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::ActivateRemarks(bool on) noexcept {
    m_remarks = on;
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::ActivateMeatData(bool on) noexcept {
    m_metaData = on;
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::Remark(KCGSText text) noexcept {
    return m_remarks ? AppendTailRecord(kRemark, text.View()) : *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::MetaData(KCGSText name, KCGSText value) noexcept {
    if (!m_metaData)
        return *this;
    constexpr size_t kMost = (UINT32_MAX - sizeof(SGSMetaData)) / 2;
    if (name.size() > kMost || value.size() > kMost) {
        Fail(kErr_LimitExceeded);
        return *this;
    }
    const size_t size = sizeof(SGSMetaData) + name.size() + value.size();
    if (uint8_t* at = Reserve(size)) {
        RecordBytes(at)
            .Put(uint32_t{kMetaData}, static_cast<uint32_t>(size), static_cast<uint32_t>(name.size()))
            .PutBytes(name.data(), name.size())
            .PutBytes(value.data(), value.size());
    }
    return *this;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::ReportState(KCFixedStringBase& report) noexcept {
    report << "graphic stream: " << m_stream.GetSize() << " bytes, error " << m_error << ", data by pointer from "
           << m_threshold << " bytes, color " << SGSRGBAColorToHTMLColor(m_settings.color) << ", stroke width "
           << m_settings.strokeWidth << ", flags " << GraphicStreamDrawLineFlagsToText(m_settings.flags) << ", "
           << m_arrays.GetNumVerticesTotal() << " vertices ("
           << KCGSArrays::VerticesTypeToString(m_arrays.GetVerticesType()) << "), " << m_arrays.GetNumColors()
           << " colors\n";
    return *this;
}

uint8_t* KCGraphicStreamBinaryWriter::Reserve(size_t size) noexcept {
    uint8_t* const at = m_stream.AppendAndReserve(size);
    if (at == nullptr)
        Fail(kErr_AllocationFailed);
    return at;
}

void KCGraphicStreamBinaryWriter::Fail(int32_t error) noexcept {
    if (m_error == kErr_NoErr)
        m_error = error;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::AppendTailRecord(uint32_t code,
                                                                           std::string_view tail) noexcept {
    if (tail.size() > UINT32_MAX - sizeof(SGSHeader)) {
        Fail(kErr_LimitExceeded);
        return *this;
    }
    const size_t size = sizeof(SGSHeader) + tail.size();
    if (uint8_t* at = Reserve(size))
        RecordBytes(at).Put(code, static_cast<uint32_t>(size)).PutBytes(tail.data(), tail.size());
    return *this;
}

} // namespace kvKorvoV12_9_0_320::kvGS
