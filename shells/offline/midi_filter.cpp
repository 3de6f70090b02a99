#include "midi_filter.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include <korvolib/control/midi_event.h>

#include "failure.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

constexpr uint8_t kStatus_Exclusive = 0xF0, kStatus_Escape = 0xF7, kStatus_Meta = 0xFF;
constexpr uint8_t kMeta_EndOfTrack = 0x2F, kMeta_Tempo = 0x51;
constexpr uint8_t kTempoBytes = 3;
constexpr std::string_view kEndOfTrack("\0\xFF\x2F\0", 4); // with the delta time before it

// ---- in -----------------------------------------------------------------------------------------------------

// A piece of the file, read from its beginning; whoever reads past its end has failed.
class KCMidiBytes {
  public:
    KCMidiBytes(std::string_view bytes, const std::string& name) : m_rest(bytes), m_name(name) {}

    bool IsAtEnd() const { return m_rest.empty(); }
    bool StartsWith(std::string_view bytes) const { return m_rest.starts_with(bytes); }
    uint8_t Peek() const { return static_cast<uint8_t>(Checked(1).front()); }
    uint8_t Byte() { return static_cast<uint8_t>(Take(1).front()); }

    std::string_view Take(size_t numBytes) {
        const std::string_view taken = Checked(numBytes);
        m_rest.remove_prefix(numBytes);
        return taken;
    }

    uint32_t Number(size_t numBytes) { // big-endian
        uint32_t number = 0;
        for (size_t i = 0; i < numBytes; ++i)
            number = number << 8 | Byte();
        return number;
    }

    uint32_t VariableNumber() { // seven bits a byte, the eighth says that another follows
        constexpr int kMostBytes = 4;
        uint32_t number = 0;
        for (int i = 0; i < kMostBytes; ++i) {
            const uint8_t byte = Byte();
            number = number << 7 | (byte & 0x7F);
            if (byte < 0x80)
                return number;
        }
        Fail("a length or a time in it has more than four bytes");
    }

    uint8_t Data() {
        const uint8_t byte = Byte();
        if (byte >= 0x80)
            Fail("a message in it is cut short");
        return byte;
    }

    [[noreturn]] void Fail(const std::string& what) const { throw KCHostFailure(m_name + ": " + what); }

  private:
    std::string_view Checked(size_t numBytes) const {
        if (numBytes > m_rest.size())
            Fail("the MIDI file breaks off");
        return m_rest.substr(0, numBytes);
    }

    std::string_view m_rest;
    const std::string& m_name;
};

struct sMIDI_HEADER {
    uint32_t numTracks = 0;
    uint32_t pulsesPerQuarter = 0;
    uint32_t fixedTempo = 0; // microseconds a quarter, where the file counts film frames; otherwise 0
};

// Film frames: a "quarter" is made to last a second of film, and no tempo change moves it.
sMIDI_HEADER FilmHeader(const KCMidiBytes& bytes, uint32_t framesPerSecond, uint32_t pulsesPerFrame) {
    constexpr uint32_t kDropFrame = 29; // stands for 30/1.001
    constexpr auto kKnown = std::to_array<uint32_t>({24, 25, kDropFrame, 30});
    if (std::find(kKnown.begin(), kKnown.end(), framesPerSecond) == kKnown.end() || pulsesPerFrame == 0)
        bytes.Fail("its time division is none of the format's");
    if (framesPerSecond == kDropFrame)
        return {0, 30 * pulsesPerFrame, 1001000};
    return {0, framesPerSecond * pulsesPerFrame, 1000000};
}

sMIDI_HEADER ReadHeader(KCMidiBytes& file) {
    constexpr size_t kFields = 6;
    if (!file.StartsWith("MThd"))
        file.Fail("not a standard MIDI file");
    file.Take(4);
    const uint32_t length = file.Number(4);
    if (length < kFields)
        file.Fail("not a standard MIDI file: its header is too short");
    const uint32_t format = file.Number(2), numTracks = file.Number(2), division = file.Number(2);
    file.Take(length - kFields); // whatever a later version of the format may say there
    if (format > 1)
        file.Fail("MIDI files of format " + std::to_string(format) + " cannot be played, only those of 0 and 1");
    constexpr uint32_t kIsFilm = 0x8000;
    sMIDI_HEADER header{0, division, 0};
    if ((division & kIsFilm) != 0)
        header = FilmHeader(file, 0x100 - (division >> 8), division & 0xFF);
    else if (division == 0)
        file.Fail("its time division is none of the format's");
    header.numTracks = numTracks;
    return header;
}

// ---- out ----------------------------------------------------------------------------------------------------

void AppendNumber(std::string& out, size_t number, int numBytes) {
    for (int shift = 8 * (numBytes - 1); shift >= 0; shift -= 8)
        out += static_cast<char>(number >> shift & 0xFF);
}

void AppendVariableNumber(std::string& out, size_t number) {
    int shift = 0;
    while (number >> (shift + 7) != 0)
        shift += 7;
    for (; shift > 0; shift -= 7)
        out += static_cast<char>((number >> shift & 0x7F) | 0x80);
    out += static_cast<char>(number & 0x7F);
}

void AppendChunk(std::string& out, std::string_view id, std::string_view contents) {
    out += id;
    AppendNumber(out, contents.size(), 4);
    out += contents;
}

// ---- from the one to the other ------------------------------------------------------------------------------

class KCMidiFilter {
  public:
    KCMidiFilter(std::string_view bytes, const std::string& name) : m_file(bytes, name), m_name(name) {}

    std::string Filtered() {
        m_header = ReadHeader(m_file);
        if (m_header.fixedTempo != 0)
            Keep(0, TempoMessage(m_header.fixedTempo));
        for (uint32_t numRead = 0; numRead < m_header.numTracks;) {
            if (m_file.IsAtEnd())
                m_file.Fail("the MIDI file has " + std::to_string(numRead) + " tracks of the " +
                            std::to_string(m_header.numTracks) + " that it announces");
            const std::string_view id = m_file.Take(4);
            const std::string_view contents = m_file.Take(m_file.Number(4));
            if (id != "MTrk")
                continue;
            ReadTrack({contents, m_name});
            ++numRead;
        }
        return Written();
    }

  private:
    struct sMESSAGE {
        size_t atPulse = 0;
        std::array<uint8_t, 6> bytes{};
        uint8_t numBytes = 0;
    };

    void ReadTrack(KCMidiBytes bytes) {
        m_atPulse = 0;
        m_runningStatus = 0;
        do {
            if (bytes.IsAtEnd())
                return;
            m_atPulse += bytes.VariableNumber();
            if (m_atPulse > kLongestMidiPulses)
                bytes.Fail("it is longer than can be played");
        } while (ReadEvent(bytes));
    }

    // False at the end of the track.
    bool ReadEvent(KCMidiBytes& bytes) {
        const uint8_t first = bytes.Peek();
        if (first < kStatus_Exclusive)
            ReadMessage(bytes);
        else if (first == kStatus_Meta)
            return ReadMeta(bytes);
        else if (first == kStatus_Exclusive || first == kStatus_Escape) {
            bytes.Byte();
            bytes.Take(bytes.VariableNumber());
        } else
            bytes.Fail("it has a message that no MIDI file may have");
        return true;
    }

    bool ReadMeta(KCMidiBytes& bytes) {
        bytes.Byte();
        const uint8_t type = bytes.Byte();
        const std::string_view contents = bytes.Take(bytes.VariableNumber());
        if (type == kMeta_Tempo && contents.size() == kTempoBytes && m_header.fixedTempo == 0)
            if (const uint32_t tempo = KCMidiBytes(contents, m_name).Number(kTempoBytes); tempo != 0)
                Keep(m_atPulse, TempoMessage(tempo)); // one of no time at all says nothing
        return type != kMeta_EndOfTrack;
    }

    void ReadMessage(KCMidiBytes& bytes) {
        if (bytes.Peek() >= 0x80)
            m_runningStatus = bytes.Byte();
        if (m_runningStatus == 0)
            bytes.Fail("it has data that belong to no message");
        const int type = kvMIDI::KorvoMidiEvent(m_runningStatus, 0, 0).GetEventType();
        sMESSAGE message{0, {m_runningStatus, bytes.Data()}, 2};
        if (type != kvMIDI::kMidiEvent_ProgramChange && type != kvMIDI::kMidiEvent_ChannelPressure)
            message.bytes[message.numBytes++] = bytes.Data();
        Keep(m_atPulse, message);
    }

    static sMESSAGE TempoMessage(uint32_t microsecondsPerQuarter) {
        const auto byte = [&](int shift) { return static_cast<uint8_t>(microsecondsPerQuarter >> shift & 0xFF); };
        return {0, {kStatus_Meta, kMeta_Tempo, kTempoBytes, byte(16), byte(8), byte(0)}, 6};
    }

    void Keep(size_t atPulse, sMESSAGE message) {
        if (m_messages.size() == kMostMidiEvents)
            m_file.Fail("more than " + std::to_string(kMostMidiEvents) + " events");
        message.atPulse = atPulse;
        m_messages.push_back(message);
    }

    std::string Written() {
        std::stable_sort(m_messages.begin(), m_messages.end(),
                         [](const sMESSAGE& left, const sMESSAGE& right) { return left.atPulse < right.atPulse; });
        std::string track;
        size_t writtenTo = 0;
        for (const sMESSAGE& message : m_messages) {
            AppendVariableNumber(track, message.atPulse - writtenTo);
            track.append(message.bytes.begin(), message.bytes.begin() + message.numBytes);
            writtenTo = message.atPulse;
        }
        std::string header;
        for (const uint32_t field : {0U, 1U, m_header.pulsesPerQuarter}) // format, number of tracks, division
            AppendNumber(header, field, 2);
        std::string out;
        AppendChunk(out, "MThd", header);
        AppendChunk(out, "MTrk", track.append(kEndOfTrack));
        return out;
    }

    KCMidiBytes m_file;
    const std::string& m_name;
    sMIDI_HEADER m_header;
    std::vector<sMESSAGE> m_messages; // of all tracks, one after the other
    size_t m_atPulse = 0;
    uint8_t m_runningStatus = 0;
};

} // namespace

std::string PlayableMidi(std::string_view bytes, const std::string& name) {
    return KCMidiFilter(bytes, name).Filtered();
}

} // namespace kvKorvoV12_9_0_320::kvHost
