#include <korvolib/control/midi_event.h>

#include <type_traits>

namespace kvKorvoV12_9_0_320::kvMIDI {
namespace {

constexpr uint8_t kFirstStatus = 0x80, kFirstSystem = 0xF0, kFirstRealTime = 0xF8;

bool HasOneDataByte(uint8_t status) noexcept {
    const int type = KorvoMidiEvent(status, 0, 0).GetEventType();
    return type == kMidiEvent_ProgramChange || type == kMidiEvent_ChannelPressure;
}

// Queues between threads copy events byte for byte.
static_assert(std::is_trivially_copyable_v<KorvoMidiEvent>);
static_assert(sizeof(KorvoMidiEvent) == 8);

} // namespace

bool KCMidiParser::Parse(uint8_t byte, uint32_t frameOffset, KorvoMidiEvent& event) noexcept {
    if (byte >= kFirstRealTime)
        return false;
    if (byte >= kFirstStatus) {
        // System exclusive and system common need no state of their own: without a status their data is ignored.
        m_status = byte < kFirstSystem ? byte : 0;
        m_hasData1 = false;
        return false;
    }
    if (m_status == 0)
        return false;
    if (HasOneDataByte(m_status)) {
        event = KorvoMidiEvent(m_status, byte, 0, frameOffset);
        return true;
    }
    m_hasData1 = !m_hasData1;
    if (m_hasData1) {
        m_data1 = byte;
        return false;
    }
    event = KorvoMidiEvent(m_status, m_data1, byte, frameOffset);
    return true;
}

void KCMidiParser::Reset() noexcept { *this = KCMidiParser(); }

} // namespace kvKorvoV12_9_0_320::kvMIDI
