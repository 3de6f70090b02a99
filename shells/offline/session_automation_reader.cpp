// Reads what a host's automation and MIDI do. A message is written by its bytes, or in words.
#include <charconv>

#include "session_kinds_internal.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using kvMIDI::KorvoMidiEvent;

constexpr const char* kMessageExpected =
    "the bytes of a message, such as [0xB0, 7, 64], or a message in words, such as {controller: 7, value: 64}";
constexpr int32_t kMost7Bit = 127, kMost14Bit = 16383, kNumChannels = 16;

// Bytes are often written in hexadecimal, here and nowhere else.
int32_t ReadByte(const KCEventFields& fields, const std::string& text) {
    uint8_t byte = 0;
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const char* const first = text.data() + (isHexadecimal ? 2 : 0);
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(first, end, byte, isHexadecimal ? 16 : 10);
    if (error != std::errc() || stop != end)
        fields.Fail("midi", "a byte is a whole number from 0 to 255 or 0x00 to 0xFF, not " + Quoted(text));
    return byte;
}

size_t NumBytesAfter(int32_t status) {
    const int type = KorvoMidiEvent(static_cast<uint8_t>(status), 0, 0).GetEventType();
    return type == kvMIDI::kMidiEvent_ProgramChange || type == kvMIDI::kMidiEvent_ChannelPressure ? 1 : 2;
}

SessionAction ReadBytes(const KCEventFields& fields) {
    std::vector<int32_t> bytes;
    for (const std::string& text : fields.Texts("midi", kMessageExpected))
        bytes.push_back(ReadByte(fields, text));
    if (bytes.empty() || bytes[0] < 0x80 || bytes[0] > 0xEF)
        fields.Fail("midi", "a message begins with its status, 0x80 to 0xEF");
    if (bytes.size() != NumBytesAfter(bytes[0]) + 1)
        fields.Fail("midi", "a message of this status has " + std::to_string(NumBytesAfter(bytes[0]) + 1) +
                                " bytes, not " + std::to_string(bytes.size()));
    bytes.resize(3, 0);
    if (bytes[1] > kMost7Bit || bytes[2] > kMost7Bit)
        fields.Fail("midi", "the bytes behind the status go from 0 to 127");
    return sSEND_MIDI{
        {static_cast<uint8_t>(bytes[0]), static_cast<uint8_t>(bytes[1]), static_cast<uint8_t>(bytes[2])}};
}

sSEND_MIDI MakeMessage(const KCEventFields& fields, kvMIDI::KEMidiEventType type, int32_t data1, int32_t data2) {
    const int32_t channel = fields.Has("channel") ? fields.WholeNumber("channel", 1, kNumChannels) : 1;
    const int32_t status = ((type + 7) << 4) + channel - 1;
    return {{static_cast<uint8_t>(status), static_cast<uint8_t>(data1), static_cast<uint8_t>(data2)}};
}

SessionAction ReadController(const KCEventFields& fields) {
    return MakeMessage(fields, kvMIDI::kMidiEvent_ControlChange, fields.WholeNumber("controller", 0, kMost7Bit),
                       fields.WholeNumber("value", 0, kMost7Bit));
}

SessionAction ReadNote(const KCEventFields& fields) {
    return MakeMessage(fields, kvMIDI::kMidiEvent_NoteOn, fields.WholeNumber("note", 0, kMost7Bit),
                       fields.WholeNumber("velocity", 0, kMost7Bit));
}

SessionAction ReadNoteOff(const KCEventFields& fields) {
    return MakeMessage(fields, kvMIDI::kMidiEvent_NoteOff, fields.WholeNumber("note off", 0, kMost7Bit), 0);
}

SessionAction ReadBend(const KCEventFields& fields) {
    const int32_t bend = fields.WholeNumber("bend", 0, kMost14Bit);
    return MakeMessage(fields, kvMIDI::kMidiEvent_PitchBend, bend & kMost7Bit, bend >> 7);
}

const sSESSION_KINDS& MessageKinds() {
    static const sSESSION_KINDS kinds = {"the message",
                                         {"channel"},
                                         {{"controller", {"value"}, ReadController},
                                          {"note", {"velocity"}, ReadNote},
                                          {"note off", {}, ReadNoteOff},
                                          {"bend", {}, ReadBend}}};
    return kinds;
}

} // namespace

SessionAction ReadMidi(const KCEventFields& fields) {
    if (fields.IsList("midi"))
        return ReadBytes(fields);
    const KCEventFields message = fields.Part("midi", kMessageExpected);
    return FindKind(message, MessageKinds()).read(message);
}

SessionAction ReadTouchControl(const KCEventFields& fields) {
    return sHOLD_CONTROL{fields.Text("touch control"), true};
}

SessionAction ReadReleaseControl(const KCEventFields& fields) {
    return sHOLD_CONTROL{fields.Text("release control"), false};
}

SessionAction ReadLearn(const KCEventFields& fields) { return sLEARN_CONTROL{fields.Text("learn")}; }

SessionAction ReadDetach(const KCEventFields& fields) { return sDETACH_CONTROL{fields.Text("detach")}; }

} // namespace kvKorvoV12_9_0_320::kvHost
