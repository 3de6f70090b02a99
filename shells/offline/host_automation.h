// The host's side of a plug-in's automation controls: it connects them all, so that each of them tells of its
// gestures, plays values into them, takes and lets go of them as a control surface does, and hands on MIDI.
//
// Thread: [main], with the algorithm's lock held. Chains are the caller's to execute.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <korvolib/control/automation_manager.h>

#include "session.h"

namespace kvKorvoV12_9_0_320::kvHost {

class KCHostAutomation {
  public:
    using BUFFER_HEADER = cALGORITHM::BUFFER_HEADER;

    /// Refcon 2 of every control becomes its index: what the host callback is told. The algorithm (FinishCreate
    /// done) outlives this; its controls are disconnected at the end.
    explicit KCHostAutomation(cALGORITHM& algorithm);
    ~KCHostAutomation();
    KCHostAutomation(const KCHostAutomation&) = delete;
    KCHostAutomation& operator=(const KCHostAutomation&) = delete;

    /// Throws KCHostFailure, with the nearest names, for a name that no control has.
    size_t FindControl(const std::string& name) const;
    /// The state of 0 … 1000 that a `control` event means. Throws KCHostFailure for a value, text or state that the
    /// control's lead parameter does not have, and without a lead.
    double StateOf(size_t control, const sSET_CONTROL& set) const;
    /// Throws KCHostFailure for a control that no MIDI controller can move.
    void RefuseDeafControl(size_t control) const;

    /// The control and those that follow it. The host hears nothing of it.
    BUFFER_HEADER* SetValue(size_t control, double state) const;
    /// What came of each of these in a few words; empty where the parameters say it.
    std::string Hold(size_t control, bool isHeld) const;
    std::string ReceiveMidi(const kvMIDI::KorvoMidiEvent& event) const;
    /// The next controller is this control's; what it heard before is forgotten, and no other control learns.
    std::string Learn(size_t control) const;
    std::string Detach(size_t control) const;

  private:
    void Connect(bool isConnected) const;
    const KCAutomationControl& Control(size_t control) const;
    double StateOfValue(size_t control, double realWorld) const;

    cALGORITHM& m_algorithm;
    KCAutomationManager& m_manager;
};

} // namespace kvKorvoV12_9_0_320::kvHost
