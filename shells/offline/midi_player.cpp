#include "midi_player.h"

#include <algorithm>
#include <cmath>

#include "midi_text.h"
#include "parameter_changes.h"

namespace kvKorvoV12_9_0_320::kvHost {

KCMidiPlayer::KCMidiPlayer(cALGORITHM& algorithm, const KCHostAutomation& automation,
                           const std::vector<sTIMED_MIDI_EVENT>& events, int32_t sampleRateHz, bool isTold)
    : m_algorithm(algorithm), m_automation(automation), m_events(events), m_sampleRateHz(sampleRateHz),
      m_isTold(isTold) {}

// A file of a thousand hours at the highest rate stays far below 2^53 frames.
int64_t KCMidiPlayer::FrameOfNext() const { return std::llround(m_events[m_numPlayed].atSeconds * m_sampleRateHz); }

void KCMidiPlayer::PlayBlock(int64_t firstFrame, int64_t numFrames) {
    for (; GetNumLeft() > 0 && FrameOfNext() < firstFrame + numFrames; ++m_numPlayed) {
        const auto offset = static_cast<uint32_t>(std::max<int64_t>(FrameOfNext() - firstFrame, 0));
        Play(m_events[m_numPlayed], offset, static_cast<double>(firstFrame) / m_sampleRateHz);
    }
}

void KCMidiPlayer::Play(const sTIMED_MIDI_EVENT& timed, uint32_t frameOffset, double blockSeconds) {
    const KCAlgorithmLock lock(m_algorithm);
    if (!m_isTold) {
        m_automation.ReceiveMidi(timed.event.AtFrame(frameOffset));
        return;
    }
    const KCParameterChanges changes(m_algorithm);
    std::string effect = m_automation.ReceiveMidi(timed.event.AtFrame(frameOffset));
    if (effect.empty())
        effect = changes.ToText();
    m_played.push_back({timed.atSeconds, blockSeconds, MidiEventText(timed.event), std::move(effect)});
}

} // namespace kvKorvoV12_9_0_320::kvHost
