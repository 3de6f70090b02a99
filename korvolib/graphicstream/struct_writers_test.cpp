#include <korvolib/graphicstream/struct_writers.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace kvKorvo::kvGS;
using kvKorvo::KURect;

std::vector<uint8_t> BytesOf(const KCGraphicStreamBinaryWriter& writer) {
    const auto bytes = writer.GetStreamMemObj().GetBytes();
    return {bytes.begin(), bytes.end()};
}

uint32_t WordAt(const std::vector<uint8_t>& bytes, size_t offset) {
    uint32_t word = 0;
    std::memcpy(&word, bytes.data() + offset, sizeof word);
    return word;
}

const KURect<int> kRectangle = KURect<int>::FromEdges(1, 2, 11, 22);

TEST(FrameScope, OneThatReceivesNothingLeavesTheStreamExactlyAsItWas) {
    KCGraphicStreamBinaryWriter writer;
    writer.CommandHeader(kAny);
    const std::vector<uint8_t> before = BytesOf(writer);
    {
        const KCStGSFrameStructWriter frame(writer, kRectangle);
        EXPECT_TRUE(frame.ShouldClose());
    }
    EXPECT_EQ(BytesOf(writer), before);
}

TEST(FrameScope, ATakenBackOpeningIsZeroed) {
    KCGraphicStreamBinaryWriter writer;
    { const KCStGSFrameStructWriter frame(writer, kRectangle); }
    const uint8_t* block = writer.GetStreamMemObj().GetBytes().data();
    EXPECT_TRUE(std::all_of(block, block + sizeof(SGSFrame), [](uint8_t byte) { return byte == 0; }));
}

TEST(FrameScope, OneThatReceivesARecordLeavesOpeningRecordAndEnd) {
    KCGraphicStreamBinaryWriter writer;
    {
        const KCStGSFrameStructWriter frame(writer, kRectangle);
        writer.CommandHeader(kAny);
    }
    const std::vector<uint8_t> bytes = BytesOf(writer);
    ASSERT_EQ(bytes.size(), 32u + 8u + 8u);
    EXPECT_EQ(WordAt(bytes, 0), kBeginFrame);
    EXPECT_EQ(WordAt(bytes, 32), kAny);
    EXPECT_EQ(WordAt(bytes, 40), kEndFrame);
    EXPECT_EQ(WordAt(bytes, 44), 8u);
}

TEST(FrameScope, NestedEmptyFramesAllVanish) {
    KCGraphicStreamBinaryWriter writer;
    {
        const KCStGSFrameStructWriter outer(writer, kRectangle);
        const KCStGSFrameStructWriter middle(writer, kRectangle);
        const KCStGSFrameStructWriter inner(writer, kRectangle);
        EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 96u);
    }
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
}

TEST(FrameScope, AnEmptyFrameInAFullOneVanishesAlone) {
    KCGraphicStreamBinaryWriter writer;
    {
        const KCStGSFrameStructWriter outer(writer, kRectangle);
        writer.CommandHeader(kAny);
        const KCStGSFrameStructWriter inner(writer, kRectangle);
    }
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 32u + 8u + 8u);
}

TEST(FrameScope, ClosingTwiceClosesOnce) {
    KCGraphicStreamBinaryWriter writer;
    KCStGSFrameStructWriter frame(writer, kRectangle);
    writer.CommandHeader(kAny);
    frame.CloseFrame();
    EXPECT_FALSE(frame.ShouldClose());
    frame.CloseFrame();
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 48u);
}

TEST(FrameScope, AMovedScopeClosesOnce) {
    KCGraphicStreamBinaryWriter writer;
    {
        KCStGSFrameStructWriter frame(writer, kRectangle);
        writer.CommandHeader(kAny);
        const KCStGSFrameStructWriter taken(std::move(frame));
        EXPECT_FALSE(frame.ShouldClose()); // NOLINT(bugprone-use-after-move)
        EXPECT_TRUE(taken.ShouldClose());
    }
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 48u);
}

TEST(FrameScope, AfterTheStreamIsClearedNothingIsWrittenOrRemoved) {
    KCGraphicStreamBinaryWriter writer;
    {
        const KCStGSFrameStructWriter outer(writer, kRectangle);
        const KCStGSFrameStructWriter inner(writer, kRectangle);
        writer.ClearStream();
        EXPECT_FALSE(inner.ShouldClose());
        for (int i = 0; i < 20; ++i)
            writer.CommandHeader(kAny);
    }
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 160u);
    const std::vector<uint8_t> bytes = BytesOf(writer);
    for (size_t offset = 0; offset < bytes.size(); offset += 8)
        EXPECT_EQ(WordAt(bytes, offset), kAny);
}

TEST(FrameScope, TheGivenRecordIsWrittenAsItIs) {
    KCGraphicStreamBinaryWriter writer;
    SGSFrame frame;
    frame.owner = 0x1122334455667788;
    frame.x = -5;
    frame.height = 77;
    {
        const KCStGSFrameStructWriter scope(writer, frame);
        EXPECT_EQ(std::memcmp(BytesOf(writer).data(), &frame, sizeof frame), 0);
        writer.CommandHeader(kAny);
    }
}

TEST(StreamScope, AnEmptyStreamIsKept) {
    KCGraphicStreamBinaryWriter writer;
    { const KCStGSStreamStructWriter stream(writer, SGSStream()); }
    const std::vector<uint8_t> bytes = BytesOf(writer);
    ASSERT_EQ(bytes.size(), 112u + 8u);
    EXPECT_EQ(WordAt(bytes, 112), kEndStream);
}

TEST(StreamScope, ClosesOnceWhenMovedOrClosedBefore) {
    KCGraphicStreamBinaryWriter writer;
    {
        KCStGSStreamStructWriter stream(writer, SGSStream());
        KCStGSStreamStructWriter taken(std::move(stream));
        taken.CloseStream();
        EXPECT_FALSE(taken.ShouldClose());
    }
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 120u);
}

TEST(StreamScope, AfterTheStreamIsClearedNoEndIsWritten) {
    KCGraphicStreamBinaryWriter writer;
    {
        const KCStGSStreamStructWriter stream(writer, SGSStream());
        writer.ClearStream();
    }
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
}

} // namespace
