// From a MIDI event to the controls that it drives, and how controls come to be attached.

#include <korvolib/control/automation_manager.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include <korvolib/control/midi_value.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

using kvMIDI::KorvoMidiEvent;

namespace {

// From here on a control change is a channel mode message.
bool IsNeverLearnt(const KorvoMidiEvent& event) noexcept {
    constexpr int kFirstChannelMode = 120;
    return event.GetEventType() == kvMIDI::kMidiEvent_ControlChange &&
           kvMIDI::ControllerNumber(event) >= kFirstChannelMode;
}

// Notes press and release: nothing for a parameter that glides.
bool CanHear(const KCAutomationControl& control, int32_t eventType) {
    return eventType != kvMIDI::kMidiEvent_NoteOn || control.IsLeadStepped();
}

// The upper half of the status byte of such an event.
size_t StatusHalf(int32_t eventType) noexcept { return static_cast<size_t>(eventType) + 7; }

// Whether there is an event of this type and number.
bool CanHappen(int32_t eventType, int32_t controlID) noexcept {
    const int32_t lastID = eventType == kvMIDI::kMidiEvent_PitchBend ? 0 : 127;
    return KCAutomationControl::IsMIDIEventTypeHeard(eventType) && controlID >= 0 && controlID <= lastID;
}

void Attach(KCAutomationControl& control, int32_t eventType, int32_t controlID) noexcept {
    control.SetMIDIControlID(controlID);
    control.SetMIDIEventType(eventType);
    control.SetMIDIChannel(0);
    control.SetMIDILearnMode(false);
}

// The whole-number part where an int holds it; not-a-number drives nothing.
int WholePart(double value) noexcept {
    constexpr double kMost = std::numeric_limits<int>::max();
    return std::isnan(value) ? kvMIDI::kMidiValue_None : static_cast<int>(std::clamp(value, -kMost, kMost));
}

// A state among its neighbours as a place on the way from the first to the last.
double PlaceOfState(double state, int numStates) noexcept {
    return numStates < 2 ? 0.0 : state * kFullTravel / (numStates - 1);
}

// What an event makes of one control.
class MidiMove {
  public:
    MidiMove(const KorvoMidiEvent& event, KCAutomationControl& control)
        : m_event(event), m_control(control), m_algorithm(*control.GetAlgorithm()),
          m_param(control.GetLeadParamIndex()), m_numStates(m_algorithm.GetParamNumStates(m_param)),
          m_isStepped(control.IsLeadStepped()) {}

    // kMidiValue_None: the control stays.
    int Value() {
        double value = kvMIDI::AutomationValue(m_event);
        if (m_control.ReinterpretMidiValue(m_event.GetEventType(), value))
            return WholePart(value);
        if (m_isStepped && kvMIDI::IsSwitchMessage(m_event))
            return kvMIDI::SteppedValue(m_event, m_algorithm.GetParamState(m_param), m_numStates);
        const int mapped =
            m_isStepped ? kvMIDI::MappedStateAtPosition(m_control.GetMIDIMapping(), m_event.GetData2(), m_numStates)
                        : WholePart(kvMIDI::ApplyMidiMapping(m_control.GetMIDIMapping(), value));
        return IsTakenOver(mapped) ? mapped : kvMIDI::kMidiValue_None;
    }
    // After the move: what the control holds now is its controller's.
    void NoteDriven() const {
        m_control.GetMIDITakeOverState().NoteDriven(Place(m_algorithm.GetParamState(m_param)));
    }

  private:
    double Place(double value) const { return m_isStepped ? PlaceOfState(value, m_numStates) : value; }
    bool IsTakenOver(int value) const {
        return value != kvMIDI::kMidiValue_None &&
               kvMIDI::ShouldTakeOver(m_control.GetMIDIMapping(), m_control.GetMIDITakeOverState(),
                                      Place(m_algorithm.GetParamState(m_param)), Place(value));
    }

    const KorvoMidiEvent& m_event;
    KCAutomationControl& m_control;
    const cALGORITHM& m_algorithm;
    size_t m_param;
    int m_numStates;
    bool m_isStepped;
};

} // namespace

// ---- The index
// ----------------------------------------------------------------------------------------------------

// From the last control to the first, so that every list comes out in the order of the controls.
void KCAutomationManager::RebuildMidiIndex() const noexcept {
    for (auto& ofStatus : m_midiIndex.first)
        ofStatus.fill(kNobody);
    m_midiIndex.learning = kNobody;
    for (size_t place = m_controls.size(); place-- > 0;) {
        const KCAutomationControl& control = *m_controls[place];
        const auto index = static_cast<int32_t>(place);
        m_midiIndex.next[place] = kNobody;
        if (control.GetMIDILearnMode())
            m_midiIndex.learning = index;
        const int32_t type = control.GetMIDIEventType(), id = control.GetMIDIControlID();
        if (CanHappen(type, id))
            m_midiIndex.next[place] =
                std::exchange(m_midiIndex.first[StatusHalf(type)][static_cast<size_t>(id)], index);
    }
    auto& bends = m_midiIndex.first[StatusHalf(kvMIDI::kMidiEvent_PitchBend)];
    bends.fill(bends[0]);
    ++m_midiIndex.generation;
    m_isMidiIndexStale = false;
}

size_t KCAutomationManager::WhichControlInMIDILearn() const noexcept { return AsIndex(MidiIndex().learning); }

size_t KCAutomationManager::GetMIDIEventControls(int32_t eventType, int32_t controlID,
                                                 std::span<size_t> indexes) const noexcept {
    if (!CanHappen(eventType, controlID))
        return 0;
    size_t count = 0;
    for (size_t index = AsIndex(MidiIndex().first[StatusHalf(eventType)][static_cast<size_t>(controlID)]);
         index != kNoControl; index = NextMIDIEventControl(index)) {
        if (count < indexes.size())
            indexes[count] = index;
        ++count;
    }
    return count;
}

// ---- Events
// -------------------------------------------------------------------------------------------------------

int32_t KCAutomationManager::MidiProcessControlChange(const KorvoMidiEvent& event) {
    const int32_t type = event.GetEventType();
    if (m_algorithm == nullptr || !KCAutomationControl::IsMIDIEventTypeHeard(type))
        return kErr_NoErr;
    KCAutomationControl* const learning = GetAutomationControl(WhichControlInMIDILearn());
    if (learning != nullptr && !IsNeverLearnt(event)) {
        Learn(event, *learning);
        return kErr_NoErr;
    }
    size_t index = FirstMIDIEventControl(event);
    while (index != kNoControl) {
        const uint32_t generation = m_midiIndex.generation;
        Drive(event, *m_controls[index]);
        const bool isAsBefore = !m_isMidiIndexStale && m_midiIndex.generation == generation;
        index = isAsBefore ? NextMIDIEventControl(index) : FirstBehind(index, event);
    }
    return kErr_NoErr;
}

// For when a hook has changed attachments on the way.
size_t KCAutomationManager::FirstBehind(size_t index, const KorvoMidiEvent& event) const noexcept {
    size_t behind = FirstMIDIEventControl(event);
    while (behind <= index)
        behind = NextMIDIEventControl(behind);
    return behind;
}

void KCAutomationManager::Learn(const KorvoMidiEvent& event, KCAutomationControl& control) {
    if (!control.IsAttachedToMIDI() && CanHear(control, event.GetEventType()))
        Attach(control, event.GetEventType(), kvMIDI::ControllerNumber(event));
}

void KCAutomationManager::Drive(const KorvoMidiEvent& event, KCAutomationControl& control) {
    if (!control.IsLeadBound())
        return;
    const size_t param = control.GetLeadParamIndex();
    cALGORITHM& algorithm = *control.GetAlgorithm();
    MidiMove move(event, control);
    const int value = move.Value();
    if (value == kvMIDI::kMidiValue_None)
        return;
    MoveByMidi(control, value);
    move.NoteDriven();
    algorithm.Touch(param);
    algorithm.NotifyParamValue(param);
    algorithm.Release(param);
}

// Like a user's gesture: what is linked to the lead moves with it, except for followers, which have moved already.
void KCAutomationManager::MoveByMidi(KCAutomationControl& control, double value) {
    cALGORITHM& algorithm = *control.GetAlgorithm();
    const cALGORITHM::sLINK_GESTURE gesture = algorithm.BeginLinkGesture(control.GetLeadParamIndex());
    BUFFER_HEADER* chain = control.SetControllerValue(value);
    ExecuteAndDisposeBuffer(chain);
    for (size_t i = 0; i < control.GetParamDataVec().size(); ++i)
        if (control.FollowsLead(i))
            algorithm.LeaveOutOfLinkGesture(control.GetParamDataVec()[i].GetParamIndex());
    chain = algorithm.EndLinkGesture(gesture);
    ExecuteAndDisposeBuffer(chain);
}

// ---- Attachments
// ----------------------------------------------------------------------------------------------------

void KCAutomationManager::ClearMidiControlsAttachment() noexcept {
    for (const ControlPtr& control : m_controls)
        control->SetMIDIControlID(-1);
}

int32_t KCAutomationManager::DetachControlFromMIDI(size_t index) noexcept {
    KCAutomationControl* const control = GetAutomationControl(index);
    if (control == nullptr)
        return kErr_ControlIndexOutOfRange;
    control->DetachFromMIDI();
    return kErr_NoErr;
}

void KCAutomationManager::AttachMIDIToLearnMode(int32_t eventType, int32_t controlID, size_t index) {
    KCAutomationControl* const control = GetAutomationControl(index);
    if (control != nullptr && !control->IsAttachedToMIDI() && CanHear(*control, eventType))
        Attach(*control, eventType, controlID);
}

size_t KCAutomationManager::SyncronizeMidiGroup(size_t index) noexcept {
    const KCAutomationControl* const from = GetAutomationControl(index);
    if (from == nullptr || from->GetMIDIGroup() == -1)
        return 0;
    size_t count = 0;
    for (const ControlPtr& control : m_controls) {
        if (control.get() == from || control->GetMIDIGroup() != from->GetMIDIGroup())
            continue;
        Attach(*control, from->GetMIDIEventType(), from->GetMIDIControlID());
        control->SetMIDIChannel(from->GetMIDIChannel());
        control->SetMIDIMapping(from->GetMIDIMapping());
        ++count;
    }
    return count;
}

int32_t KCAutomationManager::ControlLedStateFromMap(size_t index, int32_t value) const noexcept {
    const KCAutomationControl* const control = GetAutomationControl(index);
    return control == nullptr ? -1 : control->GetLedValueFromMap(value);
}

std::vector<sMIDI_ATTACHMENT> KCAutomationManager::GetMIDIAttachments() const {
    std::vector<sMIDI_ATTACHMENT> attachments;
    for (size_t index = 0; index < m_controls.size(); ++index) {
        const KCAutomationControl& control = *m_controls[index];
        if (control.IsAttachedToMIDI())
            attachments.push_back({index, control.GetMIDIEventType(), control.GetMIDIControlID(),
                                   control.GetMIDIChannel(), control.GetMIDIMapping()});
    }
    return attachments;
}

} // namespace kvKorvoV12_9_0_320
