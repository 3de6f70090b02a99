#include <korvolib/graphicstream/engine_base.h>

#include <algorithm>
#include <new>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

// Whether the tail of a record is as long as its fields say.
bool TailFits(const KCGSRecord<SGSMetaData>& record) noexcept {
    return record.Read().nameSize <= record.GetTail().size();
}
bool TailFits(const KCGSRecord<SGSDataHere>& record) noexcept {
    const SGSDataHere data = record.Read();
    return data.numElements * GetDataTypeSize(static_cast<int>(data.dataType)) == record.GetTail().size();
}
template <class Record>
bool TailFits(const KCGSRecord<Record>&) noexcept {
    return true;
}

// The error code of the exception being handled.
int32_t CaughtError() noexcept {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    } catch (...) {
        return kErr_Generic;
    }
}

} // namespace

int32_t KCGraphicStreamEngineBase::ExecStream(const void* stream, size_t size, KEGSPointers pointers) noexcept {
    m_ExecCommands_count = 0;
    m_endFramesCount = 0;
    m_offset = 0;
    m_depth = 0;
    m_maxDepth = 0;
    m_pointers = pointers;
    try {
        // Also for what is refused below: an engine does not go on showing what it walked before.
        if (const int32_t refused = ExecStart(); refused != kErr_NoErr)
            return refused;
        int32_t result = size == 0 ? kErr_NoErr : kErr_NullArgument;
        if (stream != nullptr)
            result = Walk(static_cast<const uint8_t*>(stream), size);
        CloseWhatIsOpen();
        return ExecFinish(result);
    } catch (...) {
        return CaughtError();
    }
}

int32_t KCGraphicStreamEngineBase::ExecStream(const KCGraphicStreamBinaryWriter& writer) noexcept {
    const KCStMemObj& stream = writer.GetStreamMemObj();
    return ExecStream(stream.GetData(), stream.GetSize(), kFollowPointers);
}

void KCGraphicStreamEngineBase::ExecMissingEnd(uint32_t) {}

int32_t KCGraphicStreamEngineBase::Walk(const uint8_t* stream, size_t size) {
    // Kept out of memory while records are small and many.
    size_t offset = 0;
    size_t count = 0;
    int32_t result = kErr_NoErr;
    try {
        while (offset != size) {
            SGSHeader header;
            result = kErr_MalformedStream;
            if (size - offset < sizeof header)
                break;
            std::memcpy(&header, stream + offset, sizeof header);
            if (header.size < sizeof header || header.size > size - offset)
                break;
            result = Dispatch(stream + offset, offset, header);
            if (result != kErr_NoErr)
                break;
            offset += header.size;
            ++count;
        }
    } catch (...) { // an engine that draws on something of others has to come to its end
        result = CaughtError();
    }
    m_offset = offset;
    m_ExecCommands_count = count;
    return result;
}

// What has to hold before the handler of a command is called.
template <class Record, uint32_t kCode, bool kTail>
int32_t KCGraphicStreamEngineBase::Check(const KCGSRecord<Record>& command, uint32_t size) noexcept {
    if (kTail ? size < sizeof(Record) || !TailFits(command) : size != sizeof(Record))
        return kErr_MalformedStream;
    int32_t result = kErr_NoErr;
    if constexpr (kCode == kBeginStream)
        result = command.Read().version == kStreamVersion ? Enter(kCode) : kErr_WrongRecordVersion;
    else if constexpr (kCode == kBeginFrame)
        result = Enter(kCode);
    else if constexpr (kCode == kEndStream || kCode == kEndFrame)
        result = Leave(kCode);
    return result;
}

inline int32_t KCGraphicStreamEngineBase::Dispatch(const uint8_t* record, size_t offset, SGSHeader header) {
    switch (header.code) {
#define KV_GS_CASE(identifier, display, shortName, value, Record, tail)                                            \
    case k##identifier: {                                                                                          \
        const KCGSRecord<Record> command(record, offset);                                                          \
        const int32_t result = Check<Record, k##identifier, tail>(command, header.size);                           \
        return result == kErr_NoErr ? Exec##identifier(command) : result;                                          \
    }
        KV_GS_COMMANDS(KV_GS_CASE)
#undef KV_GS_CASE
    default:
        return ExecUnknown({record, offset});
    }
}

int32_t KCGraphicStreamEngineBase::Enter(uint32_t openCommand) noexcept {
    if (m_depth == kMaxNesting)
        return kErr_LimitExceeded;
    m_open[m_depth++] = openCommand;
    m_maxDepth = std::max(m_maxDepth, m_depth);
    return kErr_NoErr;
}

int32_t KCGraphicStreamEngineBase::Leave(uint32_t closeCommand) noexcept {
    if (m_depth == 0 || CloseCommandFromOpenCommand(m_open[m_depth - 1]) != closeCommand)
        return kErr_MalformedStream;
    --m_depth;
    m_endFramesCount += closeCommand == kEndFrame;
    return kErr_NoErr;
}

void KCGraphicStreamEngineBase::CloseWhatIsOpen() {
    while (m_depth != 0) {
        --m_depth;
        ExecMissingEnd(m_open[m_depth]);
    }
}

} // namespace kvKorvoV12_9_0_320::kvGS
