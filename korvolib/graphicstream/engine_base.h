// KCGraphicStreamEngineBase: walks a stream and calls one handler per command.
//
// An engine derives from it and has a handler for every command of the list: one that is missing does not compile.
// Streams from outside are hostile: every size is checked before it is used, nothing beyond the buffer is read, and
// pointers in them are not followed. What a walk does with a record that does not hold together:
//
// - a size below 8, beyond the end of the stream, or wrong for its code: the walk ends with kErr_MalformedStream;
// - a stream of another version: kErr_WrongRecordVersion;
// - more than kMaxNesting streams and frames open at once: kErr_LimitExceeded;
// - an end without its beginning: kErr_MalformedStream. What is still open at the end of the bytes is closed.
// - an unknown code: ExecUnknown, and the walk goes on.
//
// GetErrorOffset tells the record. An engine plays one stream at a time, on any one thread.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/graphicstream/checksum.h>
#include <korvolib/graphicstream/records.h>

namespace kvKorvoV12_9_0_320::kvGS {

class KCGraphicStreamBinaryWriter;

class KORVO_API KCGraphicStreamEngineBase {
  public:
    /// Streams and frames that may be open at once.
    static constexpr size_t kMaxNesting = 64;

    virtual ~KCGraphicStreamEngineBase() = default;

    /// Plays the records from the first to the last. An error of the walk (above), or what a handler returned.
    [[nodiscard]] int32_t ExecStream(const void* stream, size_t size,
                                     KEGSPointers pointers = kRefusePointers) noexcept;
    /// Plays what the writer of this process has recorded, data by pointer included.
    [[nodiscard]] int32_t ExecStream(const KCGraphicStreamBinaryWriter& writer) noexcept;

    /// Commands that the last walk executed without an error, unknown ones included.
    size_t GetExecCommandsCount() const noexcept { return m_ExecCommands_count; }
    /// Ends of frames among them.
    size_t GetEndFramesCount() const noexcept { return m_endFramesCount; }
    /// Byte offset of the record that the last walk stopped at; the stream's size after a walk to the end.
    size_t GetErrorOffset() const noexcept { return m_offset; }
    /// The deepest nesting the last walk met.
    size_t GetMaxDepth() const noexcept { return m_maxDepth; }

  protected:
    KCGraphicStreamEngineBase() noexcept = default;
    KCGraphicStreamEngineBase(const KCGraphicStreamEngineBase&) noexcept = default;
    KCGraphicStreamEngineBase& operator=(const KCGraphicStreamEngineBase&) noexcept = default;

    // The handlers: ExecBeginFrame, ExecDrawOval, … A result other than kErr_NoErr ends the walk with it. Records
    // are handed over by their place: the bytes are read only if the handler wants them.
#define KV_GS_HANDLER(identifier, display, shortName, code, record, tail)                                          \
    virtual int32_t Exec##identifier(KCGSRecord<record> command) = 0;
    KV_GS_COMMANDS(KV_GS_HANDLER)
#undef KV_GS_HANDLER
    virtual int32_t ExecUnknown(KCGSRecord<SGSHeader> command) = 0;

    /// Called before the first record; a result other than kErr_NoErr ends the walk before it began.
    virtual int32_t ExecStart() { return 0; }
    /// Called for each frame and stream that the walk left open, the innermost first.
    virtual void ExecMissingEnd(uint32_t openCommand);
    /// Called last, also behind an error, with the result so far; returns the result of ExecStream.
    virtual int32_t ExecFinish(int32_t result) { return result; }

    KEGSPointers GetPointers() const noexcept { return m_pointers; }
    /// Streams and frames open in the handler: a begin counts itself, an end does not any more.
    size_t GetDepth() const noexcept { return m_depth; }

  private:
    int32_t Walk(const uint8_t* stream, size_t size);
    int32_t Dispatch(const uint8_t* record, size_t offset, SGSHeader header);
    template <class Record, uint32_t kCode, bool kTail>
    int32_t Check(const KCGSRecord<Record>& command, uint32_t size) noexcept;
    void CloseWhatIsOpen();
    int32_t Enter(uint32_t openCommand) noexcept;
    int32_t Leave(uint32_t closeCommand) noexcept;

    size_t m_ExecCommands_count = 0;
    size_t m_endFramesCount = 0;
    size_t m_offset = 0;
    size_t m_depth = 0;
    size_t m_maxDepth = 0;
    KEGSPointers m_pointers = kRefusePointers;
    uint32_t m_open[kMaxNesting] = {};
};

} // namespace kvKorvoV12_9_0_320::kvGS
