#include "host_automation.h"

#include <algorithm>
#include <cmath>

#include "failure.h"
#include "midi_text.h"
#include "nearest_names.h"
#include "parameter_text.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {

KCHostAutomation::KCHostAutomation(cALGORITHM& algorithm)
    : m_algorithm(algorithm), m_manager(*algorithm.GetAutomationManager()) {
    Connect(true);
}

KCHostAutomation::~KCHostAutomation() { Connect(false); }

void KCHostAutomation::Connect(bool isConnected) const {
    for (size_t control = 0; control < m_manager.GetNumAutomationControllers(); ++control)
        m_manager.SetAutomationRefCons(control, isConnected ? 1 : 0, static_cast<int64_t>(control));
}

const KCAutomationControl& KCHostAutomation::Control(size_t control) const {
    return *m_manager.GetAutomationControl(control);
}

// ---- Finding what an event means --------------------------------------------------------------------------------

size_t KCHostAutomation::FindControl(const std::string& name) const {
    const size_t found = m_manager.GetControlIndexByName(name.c_str());
    if (found != kNoControl)
        return found;
    std::vector<std::string> names;
    for (size_t control = 0; control < m_manager.GetNumAutomationControllers(); ++control)
        names.emplace_back(Control(control).GetNamePtr());
    const char* const otherwise =
        names.empty() ? "; the plug-in has none" : "; 'korvo-host list --controls' shows the names";
    throw KCHostFailure("no automation control is named " + Quoted(name) + NearestText(names, name, otherwise));
}

void KCHostAutomation::RefuseDeafControl(size_t control) const {
    if (!Control(control).CanAttachToMIDI())
        throw KCHostFailure(Quoted(Control(control).GetNamePtr()) + " leads no parameter");
}

double KCHostAutomation::StateOf(size_t control, const sSET_CONTROL& set) const {
    RefuseDeafControl(control);
    double state = set.number, realWorld = 0.0;
    switch (set.by) {
    case sSET_PARAM::KEBy::RealWorld:
        return StateOfValue(control, set.number);
    case sSET_PARAM::KEBy::Text:
        if (m_algorithm.TranslateTextToControlState(static_cast<int32_t>(control), set.text.c_str(), state,
                                                    realWorld) != kTranslateText_Accepted)
            throw KCHostFailure(Quoted(set.controlName) + " does not understand the text " + Quoted(set.text));
        return state;
    case sSET_PARAM::KEBy::State:
        break;
    }
    const sCONTROL_PARAM& lead = *m_algorithm.GetParam(Control(control).GetLeadParamIndex());
    if (state > LastState(lead))
        throw KCHostFailure(Quoted(set.controlName) + " has the states 0 to " + NumberText(LastState(lead)) +
                            ", not " + NumberText(state));
    return state;
}

// Among a few choices, a value that is none of them is a mistake; a continuous lead takes the nearest it has.
double KCHostAutomation::StateOfValue(size_t control, double realWorld) const {
    constexpr double kSameValue = 1e-9;
    double state = 0.0, taken = 0.0;
    m_algorithm.ControlStateFromRealWorldValue(control, realWorld, state);
    m_algorithm.ControlRealWorldValueFromState(control, state, taken);
    const sCONTROL_PARAM& lead = *m_algorithm.GetParam(Control(control).GetLeadParamIndex());
    if (lead.IsDiscrete() && std::abs(taken - realWorld) > kSameValue)
        throw KCHostFailure(Quoted(Control(control).GetNamePtr()) + " has no value " + NumberText(realWorld) +
                            "; it goes " + RangeText(lead));
    return state;
}

// ---- Carrying it out --------------------------------------------------------------------------------------------

KCHostAutomation::BUFFER_HEADER* KCHostAutomation::SetValue(size_t control, double state) const {
    return m_manager.SetControllerValue(control, state);
}

std::string KCHostAutomation::Hold(size_t control, bool isHeld) const {
    const bool isDone = isHeld ? m_manager.Touch(control) : m_manager.ReleaseTouch(control);
    if (isDone)
        return isHeld ? "held" : "let go";
    if (!Control(control).IsConnected() || m_algorithm.GetHostCallback() == nullptr)
        return "nobody listens";
    return isHeld ? "held already" : "not held";
}

std::string KCHostAutomation::ReceiveMidi(const kvMIDI::KorvoMidiEvent& event) const {
    const size_t learning = m_manager.WhichControlInMIDILearn();
    const bool isHeard = m_manager.FirstMIDIEventControl(event) != kNoControl;
    m_manager.MidiProcessControlChange(event);
    if (learning != kNoControl && m_manager.WhichControlInMIDILearn() != learning)
        return Quoted(Control(learning).GetNamePtr()) + " hears it from now on";
    if (isHeard)
        return "";
    return learning != kNoControl ? "not learnt" : "no control hears it";
}

std::string KCHostAutomation::Learn(size_t control) const {
    for (size_t other = 0; other < m_manager.GetNumAutomationControllers(); ++other)
        m_manager.GetAutomationControl(other)->SetMIDILearnMode(other == control);
    // The range and the curve stay: they are the control's, whichever controller it hears.
    m_manager.GetAutomationControl(control)->SetMIDIControlID(-1);
    return "waits for a controller";
}

std::string KCHostAutomation::Detach(size_t control) const {
    const KCAutomationControl& found = Control(control);
    const std::string source = MidiSourceText(found.GetMIDIEventType(), found.GetMIDIControlID());
    m_manager.DetachControlFromMIDI(control);
    return source == "-" ? "it heard nothing" : "it heard " + source;
}

} // namespace kvKorvoV12_9_0_320::kvHost
