#include <korvolib/graphicstream/binary_writer.h>

#include <korvolib/graphicstream/record_bytes_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/open_file.h>
#include <korvolib/utilities/fm/path.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

int32_t AppendInPlace(const uint8_t* record, KCStMemObj& inPlace) noexcept {
    SGSDataPtr data;
    std::memcpy(&data, record, sizeof data);
    const size_t bytes = data.GetDataSize();
    if (bytes > UINT32_MAX - sizeof(SGSDataHere))
        return kErr_LimitExceeded;
    uint8_t* const at = inPlace.AppendAndReserve(sizeof(SGSDataHere) + bytes);
    if (at == nullptr)
        return kErr_AllocationFailed;
    RecordBytes(at).PutData(static_cast<int>(data.dataType), static_cast<int>(data.purpose), data.GetAddress(),
                            bytes == 0 ? 0 : data.numElements, bytes);
    return kErr_NoErr;
}

int32_t AppendRecords(const uint8_t* stream, size_t size, KCStMemObj& inPlace) noexcept {
    int32_t result = kErr_NoErr;
    while (size != 0 && result == kErr_NoErr) {
        SGSHeader header;
        if (size < sizeof header)
            return kErr_MalformedStream;
        std::memcpy(&header, stream, sizeof header);
        if (header.size < sizeof header || header.size > size)
            return kErr_MalformedStream;
        if (header.code != kDataPtr)
            result = inPlace.Append(stream, header.size);
        else
            result = header.size == sizeof(SGSDataPtr) ? AppendInPlace(stream, inPlace) : kErr_MalformedStream;
        stream += header.size;
        size -= header.size;
    }
    return result;
}

} // namespace

int32_t GSCopyWithDataInPlace(const void* stream, size_t size, KCStMemObj& inPlace) noexcept {
    inPlace.Clear();
    if (stream == nullptr && size != 0)
        return kErr_NullArgument;
    const int32_t result = AppendRecords(static_cast<const uint8_t*>(stream), size, inPlace);
    if (result != kErr_NoErr)
        inPlace.Clear();
    return result;
}

KCGraphicStreamBinaryWriter& KCGraphicStreamBinaryWriter::WriteGraphicStreamToFile(const char* path,
                                                                                   int32_t& result) noexcept {
    KCStMemObj inPlace;
    result = path == nullptr ? kErr_NullArgument
                             : GSCopyWithDataInPlace(m_stream.GetData(), m_stream.GetSize(), inPlace);
    if (result == kErr_NoErr)
        result = FM::WriteFileFromKCStMemObj(FM::KCStPath(path), inPlace);
    return *this;
}

} // namespace kvKorvoV12_9_0_320::kvGS
