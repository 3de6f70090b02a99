// MIDI messages as values, and the parser that makes them from bytes.
//
//   KCMidiParser parser;
//   parser.ParseAll(bytes, numBytes, frame, [&](const kvMIDI::KorvoMidiEvent& event) { queue.Push(event); });
//
// Only channel messages become events: they are what moves a control. System exclusive, system common and real-time
// messages are recognised and left out. Source: MIDI 1.0 Detailed Specification, document version 4.2.
//
// Any thread, one parser per stream. Nothing here allocates.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvMIDI {

/// What an event is: the high nibble of its status byte less 7.
enum KEMidiEventType : int {
    kMidiEvent_None = 0, ///< no status byte, so no message
    kMidiEvent_NoteOff = 1,
    kMidiEvent_NoteOn = 2, ///< with velocity 0 it means note off, and is still a note on here
    kMidiEvent_KeyPressure = 3,
    kMidiEvent_ControlChange = 4,
    kMidiEvent_ProgramChange = 5,
    kMidiEvent_ChannelPressure = 6,
    kMidiEvent_PitchBend = 7, ///< data 1 is the low, data 2 the high half of the 14-bit position
    kMidiEvent_System = 8,    ///< never made by the parser
};

/// One message of up to three bytes and when it happens in its block. A plain value: copy it, queue it, hand it to
/// the audio thread. The bytes are kept as they were given, so a hostile one may have its eighth bit set in data.
class KorvoMidiEvent {
  public:
    /// No message: type kMidiEvent_None.
    KorvoMidiEvent() = default;
    constexpr KorvoMidiEvent(uint8_t status, uint8_t data1, uint8_t data2, uint32_t frameOffset = 0) noexcept
        : m_frameOffset(frameOffset), m_status(status), m_data1(data1), m_data2(data2) {}

    /// A KEMidiEventType.
    constexpr int GetEventType() const noexcept { return m_status < 0x80 ? kMidiEvent_None : (m_status >> 4) - 7; }
    constexpr uint8_t GetStatus() const noexcept { return m_status; }
    constexpr uint8_t GetData1() const noexcept { return m_data1; }
    /// 0 for program change and channel pressure, which have one data byte.
    constexpr uint8_t GetData2() const noexcept { return m_data2; }
    /// 1 to 16; 0 for what is no channel message.
    constexpr int GetChannel() const noexcept { return IsChannelMessage() ? (m_status & 0x0F) + 1 : 0; }
    constexpr bool IsChannelMessage() const noexcept { return m_status >= 0x80 && m_status < 0xF0; }
    /// Frames from the beginning of the block in which the event arrives.
    constexpr uint32_t GetFrameOffset() const noexcept { return m_frameOffset; }
    /// The same message at another place.
    constexpr KorvoMidiEvent AtFrame(uint32_t frameOffset) const noexcept {
        return {m_status, m_data1, m_data2, frameOffset};
    }

    friend constexpr bool operator==(const KorvoMidiEvent&, const KorvoMidiEvent&) noexcept = default;

  private:
    uint32_t m_frameOffset = 0;
    uint8_t m_status = 0;
    uint8_t m_data1 = 0;
    uint8_t m_data2 = 0;
};

/// A stream of bytes, in pieces of any length, becomes events.
///
/// - Running status: data bytes after a complete message begin the next one of the same status.
/// - Real-time bytes (0xF8 to 0xFF) may stand anywhere, even inside a message, and change nothing. System reset
///   (0xFF) is among them: it is meant for the instrument, not for its wire.
/// - System exclusive (0xF0 and all data bytes after it) is skipped; any other status byte ends it.
/// - System common (0xF1 to 0xF7) is skipped with its data bytes, and ends the running status.
/// - A message that the next status byte cuts short is dropped, and so are data bytes that no status precedes.
class KORVO_API KCMidiParser {
  public:
    /// Takes the next byte. True when it completes a message, which is then in `event` with this frame offset;
    /// otherwise `event` stays as it was.
    bool Parse(uint8_t byte, uint32_t frameOffset, KorvoMidiEvent& event) noexcept;

    /// Takes `numBytes` bytes of one moment and hands each complete message to `receive(const KorvoMidiEvent&)`.
    /// Null is no bytes.
    template <typename Receiver>
    void ParseAll(const uint8_t* bytes, size_t numBytes, uint32_t frameOffset, Receiver&& receive) {
        KorvoMidiEvent event;
        for (size_t i = 0; bytes != nullptr && i < numBytes; ++i)
            if (Parse(bytes[i], frameOffset, event))
                receive(event);
    }

    /// Forgets a half-taken message and the running status, as after an interruption of the stream.
    void Reset() noexcept;

  private:
    uint8_t m_status = 0; // the running status; 0 while data bytes mean nothing
    uint8_t m_data1 = 0;
    bool m_hasData1 = false;
};

} // namespace kvKorvoV12_9_0_320::kvMIDI
