#include "midi_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <random>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/file.h>
#include <tests/support/source_file.h>

#include "failure.h"
#include "midi_filter.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using kvMIDI::KorvoMidiEvent;
using Events = std::vector<sTIMED_MIDI_EVENT>;

constexpr int kPulsesPerQuarter = 96; // at 120 quarters a minute, 192 pulses a second

// ---- a writer of files --------------------------------------------------------------------------------------

std::string Bytes(std::initializer_list<int> numbers) {
    std::string bytes;
    for (const int number : numbers)
        bytes += static_cast<char>(number);
    return bytes;
}

std::string BigEndian(size_t number, int numBytes) {
    std::string bytes;
    for (; numBytes > 0; --numBytes, number >>= 8)
        bytes.insert(bytes.begin(), static_cast<char>(number & 0xFF));
    return bytes;
}

std::string VariableLength(size_t number) {
    std::string bytes(1, static_cast<char>(number % 128));
    while ((number /= 128) != 0)
        bytes.insert(bytes.begin(), static_cast<char>(number % 128 + 128));
    return bytes;
}

std::string Meta(int type, const std::string& contents) {
    return Bytes({0xFF, type}) + VariableLength(contents.size()) + contents;
}

std::string Tempo(size_t microseconds) { return Meta(0x51, BigEndian(microseconds, 3)); }

std::string Exclusive(const std::string& contents) {
    return Bytes({0xF0}) + VariableLength(contents.size()) + contents;
}

std::string Chunk(const std::string& id, const std::string& contents) {
    return id + BigEndian(contents.size(), 4) + contents;
}

std::string Header(size_t numTracks, size_t division = kPulsesPerQuarter, size_t format = 1) {
    return Chunk("MThd", BigEndian(format, 2) + BigEndian(numTracks, 2) + BigEndian(division, 2));
}

const std::string kEnd = Bytes({0, 0xFF, 0x2F, 0});

std::string Track(const std::string& events) { return Chunk("MTrk", events + kEnd); }

std::string OneTrack(const std::string& events, size_t division = kPulsesPerQuarter) {
    return Header(1, division, 0) + Track(events);
}

Events Parsed(const std::string& contents) { return ParseMidiFile(contents, "song.mid"); }

void ExpectFailure(const std::string& contents, const std::string& what) {
    try {
        Parsed(contents);
        FAIL() << "was read, not refused: " << what;
    } catch (const KCHostFailure& failure) {
        EXPECT_EQ(failure.what(), "song.mid: " + what);
    }
}

} // namespace

// ---- what is read -------------------------------------------------------------------------------------------

TEST(MidiFile, MessagesComeInSecondsWithRunningStatus) {
    const Events events = Parsed(OneTrack(Bytes({96, 0xB0, 7, 100, 96, 7, 101, 0, 0xC0, 5, 0, 0xE1, 1, 2})));
    EXPECT_EQ(events,
              Events({{0.5, {0xB0, 7, 100}}, {1.0, {0xB0, 7, 101}}, {1.0, {0xC0, 5, 0}}, {1.0, {0xE1, 1, 2}}}));
}

TEST(MidiFile, TempoChangesAreFollowed) {
    const Events events = Parsed(OneTrack(Bytes({96, 0xB0, 7, 1, 0}) + Tempo(1000000) + Bytes({96, 7, 2, 0}) +
                                          Tempo(250000) + Bytes({96, 7, 3})));
    ASSERT_EQ(events.size(), 3u);
    EXPECT_DOUBLE_EQ(events[0].atSeconds, 0.5);
    EXPECT_DOUBLE_EQ(events[1].atSeconds, 1.5);
    EXPECT_DOUBLE_EQ(events[2].atSeconds, 1.75);
}

TEST(MidiFile, TracksAreMergedAndTheFirstGoesFirst) {
    const Events events = Parsed(Header(3) + Track(Bytes({0}) + Tempo(1000000)) + Track(Bytes({96, 0xB0, 7, 1})) +
                                 Track(Bytes({0, 0xB1, 7, 2, 96, 7, 3})));
    EXPECT_EQ(events, Events({{0.0, {0xB1, 7, 2}}, {1.0, {0xB0, 7, 1}}, {1.0, {0xB1, 7, 3}}}));
}

TEST(MidiFile, ATempoInALaterTrackCountsForAll) {
    const Events events = Parsed(Header(2) + Track(Bytes({96, 0xB0, 7, 1})) + Track(Bytes({0}) + Tempo(1000000)));
    EXPECT_EQ(events, Events({{1.0, {0xB0, 7, 1}}}));
}

TEST(MidiFile, AZeroTempoAndOneOfAnotherLengthSayNothing) {
    EXPECT_EQ(Parsed(OneTrack(Bytes({0}) + Tempo(0) + Bytes({0}) + Meta(0x51, "ab") + Bytes({0}) +
                              Meta(0x51, "abcd") + Bytes({96, 0xB0, 7, 1}))),
              Events({{0.5, {0xB0, 7, 1}}}));
}

TEST(MidiFile, MetaEventsAndExclusiveAreLeftOut) {
    EXPECT_EQ(Parsed(OneTrack(Bytes({0, 0xB0, 7, 1, 0}) + Meta(1, std::string(300, 'x')) +
                              Bytes({96, 0xF0, 3, 1, 2, 0xF7, 0, 0xF7, 2, 0xF3, 1, 0, 7, 2}))),
              Events({{0.0, {0xB0, 7, 1}}, {0.5, {0xB0, 7, 2}}}));
}

TEST(MidiFile, UnknownChunksAndAMissingEndAreNoHarm) {
    EXPECT_EQ(Parsed(Header(1) + Chunk("XTRA", "abc") + Chunk("MTrk", Bytes({0, 0xB0, 7, 1})) + "what follows"),
              Events({{0.0, {0xB0, 7, 1}}}));
}

TEST(MidiFile, ALongerHeaderIsOneOfALaterVersion) {
    const std::string fields = BigEndian(0, 2) + BigEndian(1, 2) + BigEndian(kPulsesPerQuarter, 2);
    EXPECT_EQ(Parsed(Chunk("MThd", fields + "later") + Track(Bytes({0, 0xB0, 7, 1}))),
              Events({{0.0, {0xB0, 7, 1}}}));
}

TEST(MidiFile, NothingIsReadPastTheEndOfATrack) {
    EXPECT_EQ(Parsed(OneTrack(Bytes({0, 0xB0, 7, 1}) + kEnd + Bytes({0, 0xB0, 7, 2}))),
              Events({{0.0, {0xB0, 7, 1}}}));
    EXPECT_EQ(Parsed(OneTrack("")), Events());
}

TEST(MidiFile, FilmFramesAreTimeAndNoTempoMovesThem) {
    const std::string events = Bytes({0}) + Tempo(1000000) + Bytes({100, 0xB0, 7, 1});
    EXPECT_EQ(Parsed(OneTrack(events, 0xE728)), Events({{0.1, {0xB0, 7, 1}}})); // 25 frames of 40 pulses
    const Events dropFrame = Parsed(OneTrack(events, 0xE350));                  // 30/1.001 frames of 80 pulses
    ASSERT_EQ(dropFrame.size(), 1u);
    EXPECT_DOUBLE_EQ(dropFrame[0].atSeconds, 100.0 * 1.001 / 2400.0);
}

// ---- what is refused ----------------------------------------------------------------------------------------

TEST(MidiFile, WhatIsNoMidiFileIsRefused) {
    ExpectFailure("", "not a standard MIDI file");
    ExpectFailure("MTh", "not a standard MIDI file");
    ExpectFailure("RIFF....WAVE", "not a standard MIDI file");
    ExpectFailure("MThd" + BigEndian(5, 4) + "12345", "not a standard MIDI file: its header is too short");
    ExpectFailure(Header(1, 96, 2) + Track(""), "MIDI files of format 2 cannot be played, only those of 0 and 1");
}

TEST(MidiFile, ADivisionThatMeansNothingIsRefused) {
    for (const size_t division : {size_t{0}, size_t{0xE700}, size_t{0x8001}, size_t{0xFF28}})
        ExpectFailure(OneTrack("", division), "its time division is none of the format's");
}

TEST(MidiFile, WhatBreaksOffIsRefusedWherever) {
    const std::string whole = Header(2) + Track(Bytes({0}) + Tempo(500000)) + Track(Bytes({0, 0xB0, 7, 1}));
    ASSERT_EQ(Parsed(whole).size(), 1u);
    for (size_t length = 0; length < whole.size(); ++length)
        EXPECT_THROW(Parsed(whole.substr(0, length)), KCHostFailure) << length;
    ExpectFailure(whole.substr(0, whole.size() - 1), "the MIDI file breaks off");
    ExpectFailure(Header(2) + Track(""), "the MIDI file has 1 tracks of the 2 that it announces");
}

TEST(MidiFile, BytesThatMeanNothingAreRefused) {
    ExpectFailure(OneTrack(Bytes({0, 7, 1})), "it has data that belong to no message");
    ExpectFailure(OneTrack(Bytes({0, 0xB0, 7, 0x81})), "a message in it is cut short");
    ExpectFailure(OneTrack(Bytes({0, 0xF8})), "it has a message that no MIDI file may have");
    ExpectFailure(OneTrack(Bytes({0x81, 0x81, 0x81, 0x81, 1, 0xB0, 7, 1})),
                  "a length or a time in it has more than four bytes");
    ExpectFailure(OneTrack(Bytes({0, 0xFF, 1, 100, 1, 2})), "the MIDI file breaks off");
}

TEST(MidiFile, TheLastPulseIsPlayedAndTheNextRefused) {
    const std::string longest = VariableLength(kLongestMidiPulses) + Bytes({0xB0, 7, 1});
    const Events events = Parsed(OneTrack(longest));
    ASSERT_EQ(events.size(), 1u);
    EXPECT_DOUBLE_EQ(events[0].atSeconds, static_cast<double>(kLongestMidiPulses) / 192.0);
    ExpectFailure(OneTrack(longest + Bytes({1, 7, 2})), "it is longer than can be played");
}

TEST(MidiFile, AMillionEventsAreReadAndOneMoreRefused) {
    std::string events = Bytes({0, 0xB0});
    for (size_t i = 1; i < kMostMidiEvents; ++i)
        events += Bytes({7, 1, 0});
    events += Bytes({7, 1});
    EXPECT_EQ(Parsed(OneTrack(events)).size(), kMostMidiEvents);
    ExpectFailure(OneTrack(events + Bytes({0, 7, 2})), "more than 1000000 events");
}

// Left in tracks of their own, these would take minutes to read.
TEST(MidiFile, ManyTempoChangesInALaterTrackAreFollowed) {
    std::string messages = Bytes({0, 0xB0, 7, 1}), tempos;
    for (int i = 0; i < 100000; ++i) {
        messages += Bytes({1, 7, 1});
        tempos += Bytes({1}) + Tempo(500000);
    }
    const Events events = Parsed(Header(2) + Track(messages) + Track(tempos));
    ASSERT_EQ(events.size(), 100001u);
    EXPECT_NEAR(events.back().atSeconds, 100000.0 / 192.0, 1e-6);
}

// ---- against a plain model, and damaged at random -----------------------------------------------------------

namespace {

struct sRandomSong {
    std::string file;
    Events events; // what it should read as
};

// Time told pulse by pulse.
double SecondsAt(size_t pulse, const std::map<size_t, size_t>& tempos, size_t division) {
    double seconds = 0.0;
    size_t tempo = 500000;
    for (size_t passed = 0; passed < pulse; ++passed) {
        if (const auto change = tempos.find(passed); change != tempos.end())
            tempo = change->second;
        seconds += static_cast<double>(tempo) / 1e6 / static_cast<double>(division);
    }
    return seconds;
}

class SongWriter {
  public:
    explicit SongWriter(std::mt19937_64& engine) : m_engine(engine) {}

    sRandomSong Write() {
        const size_t division = 1 + Any(960), numTracks = 1 + Any(5);
        std::string tracks;
        for (size_t track = 0; track < numTracks; ++track)
            tracks += Track(RandomEvents());
        std::stable_sort(m_messages.begin(), m_messages.end(),
                         [](const auto& left, const auto& right) { return left.first < right.first; });
        sRandomSong song{Header(numTracks, division) + tracks, {}};
        for (const auto& [pulse, event] : m_messages)
            song.events.push_back({SecondsAt(pulse, m_tempos, division), event});
        return song;
    }

  private:
    size_t Any(size_t below) { return std::uniform_int_distribution<size_t>(0, below - 1)(m_engine); }

    std::string RandomEvents() {
        std::string bytes;
        size_t pulse = 0;
        m_status = 0;
        for (size_t numEvents = Any(30); numEvents > 0; --numEvents) {
            const size_t delta = Any(3) == 0 ? 0 : Any(300);
            pulse += delta;
            bytes += VariableLength(delta) + RandomEvent(pulse);
        }
        return bytes;
    }

    std::string RandomEvent(size_t pulse) {
        switch (Any(8)) {
        case 0:
            // Of two tempos at one moment the later track's counts.
            m_tempos[pulse] = 1 + Any(2000000);
            return Tempo(m_tempos[pulse]);
        case 1:
            return Meta(1 + static_cast<int>(Any(9)), std::string(Any(200), '\x90'));
        case 2:
            return Exclusive(std::string(Any(200), '\x01'));
        default:
            return RandomMessage(pulse);
        }
    }

    std::string RandomMessage(size_t pulse) {
        const bool runs = m_status != 0 && Any(2) == 0;
        if (!runs)
            m_status = static_cast<uint8_t>(0x80 + Any(0x70));
        const bool isShort = m_status >= 0xC0 && m_status < 0xE0;
        const auto data1 = static_cast<uint8_t>(Any(128)), data2 = static_cast<uint8_t>(isShort ? 0 : Any(128));
        m_messages.push_back({pulse, {m_status, data1, data2}});
        return (runs ? "" : Bytes({m_status})) + Bytes({data1}) + (isShort ? "" : Bytes({data2}));
    }

    std::mt19937_64& m_engine;
    std::map<size_t, size_t> m_tempos;
    std::vector<std::pair<size_t, KorvoMidiEvent>> m_messages;
    uint8_t m_status = 0;
};

} // namespace

TEST(MidiFile, RandomSongsReadAsTheyWereWritten) {
    std::mt19937_64 engine(12);
    for (int i = 0; i < 200; ++i) {
        const sRandomSong song = SongWriter(engine).Write();
        const Events events = Parsed(song.file);
        ASSERT_EQ(events.size(), song.events.size());
        for (size_t e = 0; e < events.size(); ++e) {
            ASSERT_EQ(events[e].event, song.events[e].event) << i << ", " << e;
            ASSERT_NEAR(events[e].atSeconds, song.events[e].atSeconds, 1e-8 * (1.0 + song.events[e].atSeconds));
        }
    }
}

TEST(MidiFile, DamagedSongsAreReadOrRefusedButNeverHarm) {
    std::mt19937_64 engine(13);
    int numRead = 0, numRefused = 0;
    for (int i = 0; i < 3000; ++i) {
        std::string file = SongWriter(engine).Write().file;
        for (uint64_t damages = 1 + engine() % 4; damages > 0; --damages)
            file[engine() % file.size()] = static_cast<char>(engine());
        try {
            for (const sTIMED_MIDI_EVENT& timed : Parsed(file))
                ASSERT_TRUE(timed.event.IsChannelMessage() && timed.atSeconds >= 0.0);
            ++numRead;
        } catch (const KCHostFailure&) {
            ++numRefused;
        }
    }
    EXPECT_GT(numRead, 100);
    EXPECT_GT(numRefused, 100);
}

// ---- from the disk ------------------------------------------------------------------------------------------

namespace {

class MidiFileOnDisk : public testing::Test {
  protected:
    MidiFileOnDisk() {
        FM::KCStTempFile file;
        FM::KCStPath path;
        EXPECT_EQ(file.TakeOver(path), kErr_NoErr);
        m_path = path.GetPathString().c_str();
    }
    ~MidiFileOnDisk() override { std::remove(m_path.c_str()); }

    void Write(const std::string& contents) const { std::ofstream(m_path, std::ios::binary) << contents; }

    void ExpectFailure(const std::string& what) const {
        try {
            ReadMidiFile(m_path);
            ADD_FAILURE() << "was read";
        } catch (const KCHostFailure& failure) {
            EXPECT_EQ(failure.what(), m_path + ": " + what);
        }
    }

    std::string m_path;
};

std::vector<int> Values(const Events& events, int eventType, int data1) {
    std::vector<int> values;
    for (const sTIMED_MIDI_EVENT& timed : events)
        if (timed.event.GetEventType() == eventType && timed.event.GetData1() == data1)
            values.push_back(timed.event.GetData2());
    return values;
}

} // namespace

TEST_F(MidiFileOnDisk, IsReadWhole) {
    Write(OneTrack(Bytes({96, 0xB0, 7, 100})));
    EXPECT_EQ(ReadMidiFile(m_path), Events({{0.5, {0xB0, 7, 100}}}));
}

TEST_F(MidiFileOnDisk, ThatIsMissingIsNamed) {
    std::remove(m_path.c_str());
    ExpectFailure("cannot be read: no such file or folder");
}

TEST_F(MidiFileOnDisk, ThatIsEmptyIsNamed) { ExpectFailure("not a standard MIDI file"); }

TEST_F(MidiFileOnDisk, OfMoreThanSixteenMebibytesIsRefused) {
    Write(std::string((size_t{16} << 20) + 1, 'x'));
    ExpectFailure("larger than a MIDI file may be (16 MiB)");
    Write(std::string(size_t{16} << 20, 'x'));
    ExpectFailure("not a standard MIDI file");
}

TEST(KnobsOfTheDemo, SweepThreeControllersAndTheBendWhileAKeyIsHeld) {
    using testing::AllOf, testing::Contains;
    const Events events = Parsed(kvTest::ReadSourceFile("demo/knobs.mid"));
    EXPECT_THAT(Values(events, kvMIDI::kMidiEvent_ControlChange, 7), AllOf(Contains(127), Contains(64)));
    EXPECT_THAT(Values(events, kvMIDI::kMidiEvent_ControlChange, 74), AllOf(Contains(0), Contains(127)));
    EXPECT_THAT(Values(events, kvMIDI::kMidiEvent_ControlChange, 10), AllOf(Contains(0), Contains(127)));
    EXPECT_THAT(events, Contains(sTIMED_MIDI_EVENT{0.5, {0x90, 60, 100}}));
    EXPECT_THAT(events, Contains(sTIMED_MIDI_EVENT{3.0, {0xE0, 127, 127}}));
    EXPECT_THAT(events, Contains(sTIMED_MIDI_EVENT{3.5, {0x80, 60, 0}}));
    EXPECT_EQ(events.front().atSeconds, 0.0);
    EXPECT_EQ(events.back().atSeconds, 4.0);
}

} // namespace kvKorvoV12_9_0_320::kvHost
