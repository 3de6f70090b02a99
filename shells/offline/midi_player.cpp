#include "midi_player.h"

#include <algorithm>
#include <cmath>

#include "midi_text.h"
#include "parameter_changes.h"

namespace kvKorvoV12_9_0_320::kvHost {

KCMidiPlayer::KCMidiPlayer(cALGORITHM& algorithm, const KCHostAutomation& automation,
                           const std::vector<sTIMED_MIDI_EVENT>& events, int32_t sampleRateHz)
    : m_algorithm(algorithm), m_automation(automation), m_events(events), m_sampleRateHz(sampleRateHz) {
    m_played.reserve(events.size());
}

// A file of a thousand hours at the highest rate stays far below 2^53 frames.
int64_t KCMidiPlayer::FrameOfNext() const {
    return std::llround(m_events[m_played.size()].atSeconds * m_sampleRateHz);
}

void KCMidiPlayer::PlayBlock(int64_t firstFrame, int64_t numFrames) {
    while (GetNumLeft() > 0 && FrameOfNext() < firstFrame + numFrames)
        PlayNext(firstFrame, FrameOfNext());
}

void KCMidiPlayer::PlayNext(int64_t blockFrame, int64_t eventFrame) {
    const sTIMED_MIDI_EVENT& timed = m_events[m_played.size()];
    const auto offset = static_cast<uint32_t>(std::max<int64_t>(eventFrame - blockFrame, 0));
    const KCAlgorithmLock lock(m_algorithm);
    const KCParameterChanges changes(m_algorithm);
    std::string effect = m_automation.ReceiveMidi(timed.event.AtFrame(offset));
    if (effect.empty())
        effect = changes.ToText();
    m_played.push_back({timed.atSeconds, static_cast<double>(blockFrame) / m_sampleRateHz,
                        MidiEventText(timed.event), std::move(effect)});
}

} // namespace kvKorvoV12_9_0_320::kvHost
