// A standard MIDI file becomes channel messages in the order of their times, or a complaint that names the file;
// nothing else.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <shells/offline/failure.h>
#include <shells/offline/midi_file.h>
#include <shells/offline/midi_filter.h>

using namespace kvKorvoV12_9_0_320::kvHost;

namespace {

void Require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view contents(reinterpret_cast<const char*>(data), size);
    try {
        double last = 0.0;
        for (const sTIMED_MIDI_EVENT& timed : ParseMidiFile(contents, "fuzz.mid")) {
            Require(timed.atSeconds >= last && std::isfinite(timed.atSeconds));
            Require(timed.event.IsChannelMessage());
            Require(timed.event.GetData1() < 0x80 && timed.event.GetData2() < 0x80);
            last = timed.atSeconds;
        }
        const std::string playable = PlayableMidi(contents, "fuzz.mid");
        Require(PlayableMidi(playable, "fuzz.mid") == playable);
    } catch (const KCHostFailure& failure) {
        const std::string_view complaint(failure.what());
        Require(complaint.starts_with("fuzz.mid: "));
        Require(complaint != "fuzz.mid: the MIDI file does not read"); // what was filtered always reads
    }
    return 0;
}
