#include <korvolib/graphicstream/engine_base.h>

#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <korvolib/graphicstream/stream_test_internal.h>
#include <korvolib/utilities/error_codes.h>

namespace {

using namespace kvGSTest;

// Notes what it is called with.
class Recorder : public KCGraphicStreamEngineBase {
  public:
    std::string calls;
    int32_t answer = 0;
    size_t throwsAt = SIZE_MAX;

  protected:
#define NOTE(identifier, display, shortName, code, record, tail)                                                   \
    int32_t Exec##identifier(KCGSRecord<record> command) override { return Note(display, command.GetOffset()); }
    KV_GS_COMMANDS(NOTE)
#undef NOTE
    int32_t ExecUnknown(KCGSRecord<SGSHeader> command) override { return Note("unknown", command.GetOffset()); }
    void ExecMissingEnd(uint32_t openCommand) override {
        calls += "missing end of " + std::string(GraphicStreamCommandToText(openCommand).c_str()) + "\n";
    }
    int32_t ExecFinish(int32_t result) override {
        calls += "finish\n";
        return result;
    }

  private:
    int32_t Note(const char* name, size_t offset) {
        calls += std::string(name) + " " + std::to_string(offset) + "\n";
        if (offset == throwsAt)
            throw std::runtime_error("an engine that throws");
        return answer;
    }
};

// An engine without a handler for one of the commands.
class Incomplete : public KCGraphicStreamEngineBase {
  protected:
    int32_t ExecUnknown(KCGSRecord<SGSHeader>) override { return 0; }
    int32_t ExecDrawOval(KCGSRecord<SGSDrawOval>) override { return 0; }
};
static_assert(std::is_abstract_v<Incomplete>, "a command without a handler has to be an error at compile time");
static_assert(!std::is_abstract_v<Recorder>);

int32_t Walk(Recorder& recorder, const std::vector<uint8_t>& bytes) {
    // Exactly as long as the stream: a sanitizer sees a byte too many.
    const auto exact = std::make_unique<uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), exact.get());
    return recorder.ExecStream(exact.get(), bytes.size());
}

TEST(StreamEngine, CallsOneHandlerForEachCommandInOrder) {
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(kAny).RotateFrame(1).CommandHeader(4711).CommandHeader(kNone);
    Recorder recorder;
    EXPECT_EQ(recorder.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(recorder.calls, "Any 0\nRotateFrame 8\nunknown 20\nNone 28\nfinish\n");
    EXPECT_EQ(recorder.GetExecCommandsCount(), 4u);
    EXPECT_EQ(recorder.GetErrorOffset(), 36u);
}

TEST(StreamEngine, WalksEveryCommand) {
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    Recorder recorder;
    ASSERT_EQ(recorder.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(recorder.GetErrorOffset(), writer.GetStreamMemObj().GetSize());
    EXPECT_EQ(recorder.GetMaxDepth(), 2u);
    EXPECT_EQ(recorder.GetEndFramesCount(), 1u);
#define EXPECT_SEEN(identifier, display, shortName, code, record, tail)                                            \
    if (code != kDataPtr) { /* the stream has all its data in place */                                             \
        EXPECT_NE(("\n" + recorder.calls).find("\n" display " "), std::string::npos) << display;                   \
    }
    KV_GS_COMMANDS(EXPECT_SEEN)
#undef EXPECT_SEEN
}

TEST(StreamEngine, AnEmptyStreamIsFine) {
    Recorder recorder;
    EXPECT_EQ(recorder.ExecStream(nullptr, 0), kvKorvo::kErr_NoErr);
    EXPECT_EQ(recorder.GetExecCommandsCount(), 0u);
    EXPECT_EQ(recorder.ExecStream(nullptr, 8), kvKorvo::kErr_NullArgument);
}

TEST(StreamEngine, AHandlersErrorEndsTheWalkAtItsRecord) {
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(kAny).CommandHeader(kNone);
    Recorder recorder;
    recorder.answer = -77;
    EXPECT_EQ(recorder.ExecStream(writer), -77);
    EXPECT_EQ(recorder.calls, "Any 0\nfinish\n");
    EXPECT_EQ(recorder.GetErrorOffset(), 0u);
}

TEST(StreamEngine, AHandlerThatThrowsEndsTheWalkAsOneThatReturnsAnError) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenFrame(SGSFrame()).CommandHeader(kAny).CommandHeader(kNone);
    Recorder recorder;
    recorder.throwsAt = 32;
    EXPECT_EQ(recorder.ExecStream(writer), kvKorvo::kErr_Generic);
    EXPECT_EQ(recorder.calls, "BeginFrame 0\nAny 32\nmissing end of BeginFrame\nfinish\n");
    EXPECT_EQ(recorder.GetErrorOffset(), 32u);
    EXPECT_EQ(recorder.GetExecCommandsCount(), 1u);
}

// Streams from outside.

std::vector<uint8_t> Header(uint32_t code, uint32_t size, size_t bytes) {
    std::vector<uint8_t> record(bytes);
    const SGSHeader header{code, size};
    std::memcpy(record.data(), &header, std::min(bytes, sizeof header));
    return record;
}

TEST(StreamEngine, ASizeBelowTheHeaderEndsTheWalk) {
    for (uint32_t size = 0; size < 8; ++size) {
        Recorder recorder;
        EXPECT_EQ(Walk(recorder, Header(kAny, size, 16)), kvKorvo::kErr_MalformedStream) << size;
        EXPECT_EQ(recorder.calls, "finish\n");
        EXPECT_EQ(recorder.GetErrorOffset(), 0u);
    }
}

TEST(StreamEngine, ASizeBeyondTheEndEndsTheWalk) {
    for (const uint32_t size : {17u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        Recorder recorder;
        EXPECT_EQ(Walk(recorder, Header(kRemark, size, 16)), kvKorvo::kErr_MalformedStream) << size;
        EXPECT_EQ(recorder.calls, "finish\n");
    }
}

TEST(StreamEngine, AHeaderThatIsCutEndsTheWalkAtItsOffset) {
    for (size_t rest = 1; rest < 8; ++rest) {
        const std::vector<uint8_t> bytes = Header(kAny, 8, 8 + rest);
        Recorder recorder;
        EXPECT_EQ(Walk(recorder, bytes), kvKorvo::kErr_MalformedStream);
        EXPECT_EQ(recorder.GetErrorOffset(), 8u);
    }
}

TEST(StreamEngine, ARecordOneByteTooShortOrTooLongForItsCodeEndsTheWalk){
#define EXPECT_CHECKED(identifier, display, shortName, code, record, tail)                                         \
    {                                                                                                              \
        Recorder recorder;                                                                                         \
        EXPECT_EQ(Walk(recorder, Header(code, sizeof(record) - 1, sizeof(record) - 1)),                            \
                  kvKorvo::kErr_MalformedStream)                                                                   \
            << display;                                                                                            \
        if (!tail) {                                                                                               \
            EXPECT_EQ(Walk(recorder, Header(code, sizeof(record) + 1, sizeof(record) + 1)),                        \
                      kvKorvo::kErr_MalformedStream)                                                               \
                << display;                                                                                        \
        }                                                                                                          \
        EXPECT_EQ(recorder.calls.find(display), std::string::npos);                                                \
    }
    KV_GS_COMMANDS(EXPECT_CHECKED)
#undef EXPECT_CHECKED
}

TEST(StreamEngine, AnUnknownCodeIsSteppedOverWhateverItsSize) {
    for (const size_t size : {8u, 9u, 100u}) {
        std::vector<uint8_t> bytes = Header(0x12345678, static_cast<uint32_t>(size), size);
        for (const uint8_t byte : Header(kAny, 8, 8))
            bytes.push_back(byte);
        Recorder recorder;
        EXPECT_EQ(Walk(recorder, bytes), kvKorvo::kErr_NoErr);
        EXPECT_EQ(recorder.calls, "unknown 0\nAny " + std::to_string(size) + "\nfinish\n");
    }
}

TEST(StreamEngine, DataInPlaceHasToBeAsLongAsItsCountSays) {
    KCGraphicStreamBinaryWriter writer;
    writer.DataHere(kFloat, kPoint2D, "12345678", 2);
    std::vector<uint8_t> bytes = BytesOf(writer);
    Recorder recorder;
    EXPECT_EQ(Walk(recorder, bytes), kvKorvo::kErr_NoErr);
    for (const uint32_t count : {0u, 1u, 3u, 0x40000002u, 0xFFFFFFFFu}) {
        std::memcpy(bytes.data() + 16, &count, sizeof count);
        EXPECT_EQ(Walk(recorder, bytes), kvKorvo::kErr_MalformedStream) << count;
    }
}

TEST(StreamEngine, ANameOfMetaDataBeyondItsRecordEndsTheWalk) {
    KCGraphicStreamBinaryWriter writer;
    writer.ActivateMeatData().MetaData("ab", "c");
    std::vector<uint8_t> bytes = BytesOf(writer);
    Recorder recorder;
    EXPECT_EQ(Walk(recorder, bytes), kvKorvo::kErr_NoErr);
    bytes[8] = 3;
    EXPECT_EQ(Walk(recorder, bytes), kvKorvo::kErr_NoErr);
    bytes[8] = 4;
    EXPECT_EQ(Walk(recorder, bytes), kvKorvo::kErr_MalformedStream);
}

TEST(StreamEngine, AStreamOfAnotherVersionIsRefused) {
    SGSStream stream;
    stream.version = kStreamVersion + 1;
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(stream);
    Recorder recorder;
    EXPECT_EQ(recorder.ExecStream(writer), kvKorvo::kErr_WrongRecordVersion);
}

TEST(StreamEngine, NestingIsLimited) {
    KCGraphicStreamBinaryWriter writer;
    for (size_t i = 0; i < KCGraphicStreamEngineBase::kMaxNesting; ++i)
        writer.OpenFrame(SGSFrame());
    Recorder recorder;
    EXPECT_EQ(recorder.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(recorder.GetMaxDepth(), KCGraphicStreamEngineBase::kMaxNesting);
    writer.OpenFrame(SGSFrame());
    EXPECT_EQ(recorder.ExecStream(writer), kvKorvo::kErr_LimitExceeded);
    EXPECT_EQ(recorder.GetErrorOffset(), KCGraphicStreamEngineBase::kMaxNesting * sizeof(SGSFrame));
}

TEST(StreamEngine, AnEndWithoutItsBeginningEndsTheWalk) {
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(kEndFrame);
    Recorder recorder;
    EXPECT_EQ(recorder.ExecStream(writer), kvKorvo::kErr_MalformedStream);
    writer.ClearStream().OpenStream(SGSStream()).CloseFrame();
    EXPECT_EQ(recorder.ExecStream(writer), kvKorvo::kErr_MalformedStream);
    EXPECT_EQ(recorder.GetErrorOffset(), 112u);
}

TEST(StreamEngine, WhatIsLeftOpenIsClosedInnermostFirst) {
    KCGraphicStreamBinaryWriter writer;
    writer.OpenStream(SGSStream()).OpenFrame(SGSFrame());
    Recorder recorder;
    EXPECT_EQ(recorder.ExecStream(writer), kvKorvo::kErr_NoErr);
    EXPECT_EQ(recorder.calls,
              "BeginStream 0\nBeginFrame 112\nmissing end of BeginFrame\nmissing end of BeginStream\nfinish\n");
}

TEST(StreamEngine, RecordsMayLieAtAnyAddress) {
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    const std::vector<uint8_t> bytes = BytesOf(writer);
    for (size_t shift = 0; shift < 8; ++shift) {
        const auto block = std::make_unique<uint8_t[]>(shift + bytes.size());
        std::copy(bytes.begin(), bytes.end(), block.get() + shift);
        Rewriter rewriter;
        ASSERT_EQ(rewriter.ExecStream(block.get() + shift, bytes.size()), kvKorvo::kErr_NoErr);
        EXPECT_EQ(BytesOf(rewriter.writer), bytes);
    }
}

TEST(StreamEngine, EveryPrefixOfAStreamIsWalkedOrRefused) {
    KCGraphicStreamBinaryWriter writer;
    RecordEveryCommand(writer);
    const std::vector<uint8_t> bytes = BytesOf(writer);
    for (size_t size = 0; size <= bytes.size(); ++size) {
        Recorder recorder;
        const int32_t result = Walk(recorder, {bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(size)});
        EXPECT_EQ(result == kvKorvo::kErr_NoErr, recorder.GetErrorOffset() == size);
    }
}

} // namespace
