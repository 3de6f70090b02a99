#include <korvolib/control/midi_event.h>

#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/allocation_count.h>

using namespace kvKorvoV12_9_0_320::kvMIDI;

namespace {

using Bytes = std::vector<uint8_t>;
using Events = std::vector<KorvoMidiEvent>;

Events Parsed(const Bytes& bytes) {
    KCMidiParser parser;
    Events events;
    parser.ParseAll(bytes.data(), bytes.size(), 0, [&](const KorvoMidiEvent& event) { events.push_back(event); });
    return events;
}

// The same rules the slow way: for each data byte it looks back through the stream for what the byte belongs to.
Events ParsedByLookingBack(Bytes bytes) {
    std::erase_if(bytes, [](uint8_t byte) { return byte >= 0xF8; });
    Events events;
    for (size_t i = 0; i < bytes.size(); ++i) {
        size_t status = i;
        while (status > 0 && bytes[status] < 0x80)
            --status;
        if (bytes[i] >= 0x80 || bytes[status] < 0x80 || bytes[status] >= 0xF0)
            continue;
        const size_t numData = i - status;
        const bool isShort = bytes[status] / 32 == 0xC0 / 32;
        if (isShort)
            events.emplace_back(bytes[status], bytes[i], uint8_t{0});
        else if (numData % 2 == 0)
            events.emplace_back(bytes[status], bytes[i - 1], bytes[i]);
    }
    return events;
}

// Bytes as hostile wires send them: statuses, real-time bytes and data in any order.
Bytes RandomStream(std::mt19937_64& engine) {
    Bytes bytes(std::uniform_int_distribution<size_t>(0, 64)(engine));
    std::uniform_int_distribution<int> any(0, 255), kinds(0, 9);
    for (uint8_t& byte : bytes) {
        const int kind = kinds(engine), drawn = any(engine);
        byte = static_cast<uint8_t>(kind < 6 ? drawn % 128 : kind < 8 ? 0xF0 + drawn % 16 : drawn);
    }
    return bytes;
}

} // namespace

TEST(KorvoMidiEvent, TypesAreTheStatusNibbleLessSeven) {
    EXPECT_EQ(KorvoMidiEvent(0x80, 1, 2).GetEventType(), 1);
    EXPECT_EQ(KorvoMidiEvent(0x9F, 1, 2).GetEventType(), 2);
    EXPECT_EQ(KorvoMidiEvent(0xA0, 1, 2).GetEventType(), 3);
    EXPECT_EQ(KorvoMidiEvent(0xBF, 1, 2).GetEventType(), 4);
    EXPECT_EQ(KorvoMidiEvent(0xC0, 1, 0).GetEventType(), 5);
    EXPECT_EQ(KorvoMidiEvent(0xDF, 1, 0).GetEventType(), 6);
    EXPECT_EQ(KorvoMidiEvent(0xE0, 1, 2).GetEventType(), 7);
}

TEST(KorvoMidiEvent, WithoutAStatusIsNoMessage) {
    EXPECT_EQ(KorvoMidiEvent().GetEventType(), kMidiEvent_None);
    EXPECT_EQ(KorvoMidiEvent(0x7F, 1, 2).GetEventType(), kMidiEvent_None);
    EXPECT_EQ(KorvoMidiEvent(0x7F, 1, 2).GetChannel(), 0);
}

TEST(KorvoMidiEvent, ASystemMessageHasNoChannel) {
    EXPECT_EQ(KorvoMidiEvent(0xF2, 1, 2).GetEventType(), kMidiEvent_System);
    EXPECT_EQ(KorvoMidiEvent(0xF2, 1, 2).GetChannel(), 0);
    EXPECT_FALSE(KorvoMidiEvent(0xF0, 1, 2).IsChannelMessage());
    EXPECT_TRUE(KorvoMidiEvent(0xEF, 1, 2).IsChannelMessage());
}

TEST(KorvoMidiEvent, ChannelsCountFromOneToSixteen) {
    EXPECT_EQ(KorvoMidiEvent(0xB0, 7, 64).GetChannel(), 1);
    EXPECT_EQ(KorvoMidiEvent(0xBF, 7, 64).GetChannel(), 16);
}

TEST(KorvoMidiEvent, KeepsItsBytesAndItsPlace) {
    constexpr KorvoMidiEvent event(0xB2, 7, 64, 480);
    EXPECT_EQ(event.GetStatus(), 0xB2);
    EXPECT_EQ(event.GetData1(), 7);
    EXPECT_EQ(event.GetData2(), 64);
    EXPECT_EQ(event.GetFrameOffset(), 480u);
    EXPECT_NE(event, KorvoMidiEvent(0xB2, 7, 64));
    EXPECT_EQ(event.AtFrame(0), KorvoMidiEvent(0xB2, 7, 64));
}

TEST(KCMidiParser, MakesOneEventOfOneMessage) {
    EXPECT_EQ(Parsed({0xB0, 7, 127}), Events({{0xB0, 7, 127}}));
    EXPECT_EQ(Parsed({0x80, 60, 0, 0x91, 60, 1}), Events({{0x80, 60, 0}, {0x91, 60, 1}}));
}

TEST(KCMidiParser, GivesShortMessagesAZero) {
    EXPECT_EQ(Parsed({0xC3, 9}), Events({{0xC3, 9, 0}}));
    EXPECT_EQ(Parsed({0xB0, 7, 127, 0xD3, 100, 101}), Events({{0xB0, 7, 127}, {0xD3, 100, 0}, {0xD3, 101, 0}}));
}

TEST(KCMidiParser, GoesOnWithTheRunningStatus) {
    EXPECT_EQ(Parsed({0xB0, 7, 1, 7, 2, 8, 3}), Events({{0xB0, 7, 1}, {0xB0, 7, 2}, {0xB0, 8, 3}}));
}

TEST(KCMidiParser, HearsRealTimeBytesWithoutLosingItsPlace) {
    EXPECT_EQ(Parsed({0xF8, 0xB0, 0xFE, 7, 0xFF, 1, 0xF9, 7, 0xFD, 2}), Events({{0xB0, 7, 1}, {0xB0, 7, 2}}));
}

TEST(KCMidiParser, SkipsSystemExclusive) {
    EXPECT_EQ(Parsed({0xB0, 7, 1, 0xF0, 0x43, 7, 2, 0xF8, 3, 4, 0xF7, 5, 6}), Events({{0xB0, 7, 1}}));
}

TEST(KCMidiParser, LetsAnyStatusEndSystemExclusive) {
    EXPECT_EQ(Parsed({0xF0, 1, 2, 3, 0x90, 60, 100}), Events({{0x90, 60, 100}}));
}

TEST(KCMidiParser, ForgetsTheRunningStatusAtSystemCommon) {
    for (const uint8_t common : Bytes({0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7}))
        EXPECT_EQ(Parsed({0xB0, 7, 1, common, 7, 2, 8, 3}), Events({{0xB0, 7, 1}})) << int{common};
}

TEST(KCMidiParser, DropsAMessageThatIsCutShort) {
    EXPECT_EQ(Parsed({0xB0, 7, 0x90, 60, 100}), Events({{0x90, 60, 100}}));
    EXPECT_EQ(Parsed({0xB0, 7, 0xB0, 8, 9}), Events({{0xB0, 8, 9}}));
    EXPECT_EQ(Parsed({0xB0, 7}), Events());
}

TEST(KCMidiParser, IgnoresDataThatNoStatusPrecedes) {
    EXPECT_EQ(Parsed({1, 2, 3, 127}), Events());
    EXPECT_EQ(Parsed({}), Events());
}

TEST(KCMidiParser, TakesAMessageInPieces) {
    KCMidiParser parser;
    KorvoMidiEvent event;
    EXPECT_FALSE(parser.Parse(0xE0, 10, event));
    EXPECT_FALSE(parser.Parse(1, 11, event));
    EXPECT_EQ(event, KorvoMidiEvent());
    EXPECT_TRUE(parser.Parse(2, 12, event));
    EXPECT_EQ(event, KorvoMidiEvent(0xE0, 1, 2, 12));
}

TEST(KCMidiParser, TakesNullForNoBytes) {
    KCMidiParser().ParseAll(nullptr, 3, 0, [](const KorvoMidiEvent&) { FAIL(); });
}

TEST(KCMidiParser, ForgetsHalfAMessageAndTheStatusAtAReset) {
    KCMidiParser parser;
    KorvoMidiEvent event;
    parser.Parse(0xB0, 0, event);
    parser.Parse(7, 0, event);
    parser.Reset();
    EXPECT_FALSE(parser.Parse(1, 0, event));
    EXPECT_FALSE(parser.Parse(2, 0, event));
}

TEST(KCMidiParser, AgreesWithLookingBackThroughRandomStreams) {
    std::mt19937_64 engine(7);
    size_t numEvents = 0;
    for (int i = 0; i < 20000; ++i) {
        const Bytes bytes = RandomStream(engine);
        const Events events = Parsed(bytes);
        ASSERT_EQ(events, ParsedByLookingBack(bytes)) << testing::PrintToString(bytes);
        numEvents += events.size();
    }
    EXPECT_GT(numEvents, 20000u);
}

TEST(KCMidiParser, TakesNothingFromTheHeap) {
    const Bytes bytes = {0xB0, 7, 1, 7, 2, 0xF0, 1, 2, 0xF7, 0xC0, 3, 0xFE, 0xE0, 0, 64};
    int numEvents = 0;
    const kvTest::AllocationCount count;
    KCMidiParser().ParseAll(bytes.data(), bytes.size(), 0, [&](const KorvoMidiEvent&) { ++numEvents; });
    EXPECT_EQ(count.Taken(), 0u);
    EXPECT_EQ(numEvents, 4);
}
