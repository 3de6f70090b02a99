// Plays the events of a MIDI file into a plug-in's automation controls.
//
// All events that are due in a block, those at its first frame to those at its last, take effect when the block
// begins, in their order: never late, and early by less than a block. Each keeps its place in the block as its
// frame offset.
//
// Thread: [main], between two blocks.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host_automation.h"
#include "midi_file.h"

namespace kvKorvoV12_9_0_320::kvHost {

/// What an event of the file did.
struct sPLAYED_MIDI {
    double atSeconds = 0.0;     // as the file says
    double playedSeconds = 0.0; // when the block began
    std::string what;           // MidiEventText
    std::string effect;         // "Output Gain 0.0 → -2.6", "no control hears it"
};

class KCMidiPlayer {
  public:
    /// All outlive this; the events stand in the order of their times. What each of them did is kept where it is
    /// going to be told: a file may hold millions.
    KCMidiPlayer(cALGORITHM& algorithm, const KCHostAutomation& automation,
                 const std::vector<sTIMED_MIDI_EVENT>& events, int32_t sampleRateHz, bool isTold);

    /// The block of this many frames that begins with this one; the blocks follow each other.
    void PlayBlock(int64_t firstFrame, int64_t numFrames);

    const std::vector<sPLAYED_MIDI>& GetPlayed() const { return m_played; } // empty where nothing is told
    size_t GetNumPlayed() const { return m_numPlayed; }
    size_t GetNumLeft() const { return m_events.size() - m_numPlayed; }

  private:
    void Play(const sTIMED_MIDI_EVENT& timed, uint32_t frameOffset, double blockSeconds);
    int64_t FrameOfNext() const;

    cALGORITHM& m_algorithm;
    const KCHostAutomation& m_automation;
    const std::vector<sTIMED_MIDI_EVENT>& m_events;
    double m_sampleRateHz;
    bool m_isTold;
    size_t m_numPlayed = 0;
    std::vector<sPLAYED_MIDI> m_played;
};

} // namespace kvKorvoV12_9_0_320::kvHost
