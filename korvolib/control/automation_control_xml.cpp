// An automation control as a description tells of it:
//
//   <cCONTROLLER Name="Gain" ID="1" CtrlID="1" AutomationType="0" Lead="0">
//     <ParameterList> <Parameter Name="Gain"/> <Parameter Name="Trim"/> </ParameterList>
//     <MIDI EventType="4" ControlID="7" Low="0" High="1000" Curve="1" TakeOver="PickUp"/>
//     <LedMap> <Led Value="0" State="1"/> </LedMap>
//     <ControlSurfaceDisplay Ring="BoostCut" Name="Gn"/>
//   </cCONTROLLER>

#include <korvolib/control/automation_control.h>

#include <cstring>
#include <limits>

#include <korvolib/gui/attribute_writer_internal.h>
#include <korvolib/gui/description_numbers_internal.h>

namespace kvKorvoV12_9_0_320 {
namespace {

using namespace GUIDescription;

constexpr int32_t kMostInt = std::numeric_limits<int32_t>::max(), kLeastInt = std::numeric_limits<int32_t>::min();
constexpr const char* kTakeOverWords[] = {"Jump", "PickUp"};
constexpr const char* kRingWords[] = {"Dot", "BoostCut", "Wrap", "Spread"};

// The place of the attribute's word in the list; `number` as it was where there is none.
template <size_t N>
void ReadWord(const KCXMLElement& element, const char* attribute, const char* const (&words)[N], int32_t& number,
              Problems& problems) {
    const char* const text = element.GetAttribute(attribute);
    if (text == nullptr)
        return;
    for (size_t i = 0; i < N; ++i)
        if (std::strcmp(text, words[i]) == 0) {
            number = static_cast<int32_t>(i);
            return;
        }
    AddProblem(element, "nothing here is called", text, problems);
}

kvMIDI::sMIDI_MAPPING ReadMapping(const KCXMLElement& element, Problems& problems) {
    kvMIDI::sMIDI_MAPPING mapping;
    ReadNumber(element, "Low", 0.0, kFullTravel, mapping.low, problems);
    ReadNumber(element, "High", 0.0, kFullTravel, mapping.high, problems);
    ReadNumber(element, "Curve", kvMIDI::kFlattestCurve, kvMIDI::kSteepestCurve, mapping.curve, problems);
    int32_t takeOver = mapping.takeOver;
    ReadWord(element, "TakeOver", kTakeOverWords, takeOver, problems);
    mapping.takeOver = static_cast<kvMIDI::KEMidiTakeOver>(takeOver);
    return mapping;
}

} // namespace

// ---- Reading
// ------------------------------------------------------------------------------------------------------

int32_t KCAutomationControl::ReadFromXMLWithAlg(const KCXMLElement& element, cALGORITHM& algorithm,
                                                Problems& problems) {
    const int32_t result = KCBaseControl::ReadFromXMLWithAlg(element, algorithm, problems);
    if (result != kErr_NoErr)
        return result;
    ReadWhole(element, "ID", kLeastInt, kMostInt, m_id, problems);
    ReadWhole(element, "CtrlID", kLeastInt, kMostInt, m_ctrlID, problems);
    ReadWhole(element, "AutomationType", kLeastInt, kMostInt, m_automationType, problems);
    int32_t lead = 0;
    if (ReadWhole(element, "Lead", 0, kMostInt, lead, problems))
        SetLeadPosition(static_cast<size_t>(lead));
    if (const KCXMLElement* const midi = element.FindChild("MIDI"))
        ReadFromXMLMIDI(*midi, problems);
    if (const KCXMLElement* const leds = element.FindChild("LedMap"))
        ReadFromXMLLedMap(*leds, problems);
    if (const KCXMLElement* const display = element.FindChild("ControlSurfaceDisplay"))
        ReadFromXMLControlSurfaceDisplay(*display, problems);
    return ReadFromXMLWithAlgSelf(element, algorithm, problems);
}

// A parameter without a gesture of its own is there to be moved.
int32_t KCAutomationControl::ReadFromXMLParameterList_Registration(const KCXMLElement& element,
                                                                   cALGORITHM& algorithm, Problems& problems) {
    const size_t first = m_params.size();
    const int32_t result = KCBaseControl::ReadFromXMLParameterList_Registration(element, algorithm, problems);
    for (size_t i = first; i < m_params.size(); ++i) {
        KCRegisterInfo& info = m_params[i].GetRegisterInfo();
        if (!info.CompareRegisterTypes(KCRegisterInfo()))
            continue;
        info.SetFlag(kRegister_Highlight, false);
        info.SetType(kRegister_Controller);
    }
    return result;
}

int32_t KCAutomationControl::ReadFromXMLMIDI(const KCXMLElement& element, Problems& problems) {
    int32_t type = -1, id = -1, channel = 0, group = -1;
    ReadWhole(element, "EventType", 0, 127, type, problems);
    ReadWhole(element, "ControlID", 0, 127, id, problems);
    ReadWhole(element, "Channel", -1, 16, channel, problems);
    ReadWhole(element, "Group", kLeastInt, kMostInt, group, problems);
    SetMIDIMapping(ReadMapping(element, problems));
    SetMIDIChannel(channel);
    SetMIDIGroup(group);
    if ((type == -1) != (id == -1) || (type != -1 && !IsMIDIEventTypeHeard(type))) {
        AddProblem(element, "a MIDI attachment needs a ControlID, and an EventType of 2, 4 or 7", nullptr,
                   problems);
        return kErr_BadDescription;
    }
    SetMIDIEventType(type);
    SetMIDIControlID(id);
    return kErr_NoErr;
}

void KCAutomationControl::ReadFromXMLLedMap(const KCXMLElement& element, Problems& problems) {
    for (const KCXMLElement& led : element.Children("Led")) {
        int32_t value = 0, state = 0;
        if (ReadWhole(led, "Value", kLeastInt, kMostInt, value, problems) &&
            ReadWhole(led, "State", kLeastInt, kMostInt, state, problems))
            SetLedValueInMap(value, state);
    }
}

int32_t KCAutomationControl::ReadFromXMLControlSurfaceDisplay(const KCXMLElement& element, Problems& problems) {
    auto ring = static_cast<int32_t>(m_surfaceDisplay.ring);
    ReadWord(element, "Ring", kRingWords, ring, problems);
    m_surfaceDisplay.ring = static_cast<sCONTROL_SURFACE_DISPLAY::KERing>(ring);
    m_surfaceDisplay.name = element.GetAttribute("Name", m_surfaceDisplay.name.c_str());
    return kErr_NoErr;
}

// ---- Writing
// ------------------------------------------------------------------------------------------------------

int32_t KCAutomationControl::WriteToXMLWithAlg(KCXMLElement& element, const cALGORITHM& algorithm) const {
    int32_t result = KCBaseControl::WriteToXMLWithAlg(element, algorithm);
    if (result != kErr_NoErr)
        return result;
    AttributeWriter writer(element);
    writer.SetUnless(-1, "ID", m_id).SetUnless(-1, "CtrlID", m_ctrlID).Set("AutomationType", m_automationType);
    if (m_leadPosition != 0)
        writer.Set("Lead", static_cast<int32_t>(std::min(m_leadPosition, size_t{kMostInt})));
    result = writer.GetResult();
    if (result == kErr_NoErr)
        result = WriteToXMLMIDI(element);
    return result == kErr_NoErr ? WriteToXMLSurface(element) : result;
}

int32_t KCAutomationControl::WriteToXMLMIDI(KCXMLElement& element) const {
    const kvMIDI::sMIDI_MAPPING plain;
    const bool isHeard = IsAttachedToMIDI() && IsMIDIEventTypeHeard(m_midiEventType); // no other would be read back
    if (!isHeard && m_midiGroup == -1 && m_midiChannel == 0 && m_midiMapping == plain)
        return kErr_NoErr;
    KCXMLElement* const child = element.AddChild("MIDI");
    if (child == nullptr)
        return kErr_AllocationFailed;
    AttributeWriter writer(*child);
    if (isHeard)
        writer.Set("EventType", m_midiEventType).Set("ControlID", m_midiControlID);
    writer.SetUnless(0, "Channel", m_midiChannel).SetUnless(-1, "Group", m_midiGroup);
    writer.SetUnless(plain.low, "Low", m_midiMapping.low).SetUnless(plain.high, "High", m_midiMapping.high);
    writer.SetUnless(plain.curve, "Curve", m_midiMapping.curve);
    if (m_midiMapping.takeOver == kvMIDI::kMidiTakeOver_PickUp)
        writer.Set("TakeOver", kTakeOverWords[kvMIDI::kMidiTakeOver_PickUp]);
    return writer.GetResult();
}

int32_t KCAutomationControl::WriteToXMLSurface(KCXMLElement& element) const {
    KCXMLElement* const leds = m_ledMap.empty() ? nullptr : element.AddChild("LedMap");
    for (const auto& [value, state] : m_ledMap) {
        KCXMLElement* const led = leds == nullptr ? nullptr : leds->AddChild("Led");
        if (led == nullptr)
            return kErr_AllocationFailed;
        AttributeWriter writer(*led);
        if (writer.Set("Value", value).Set("State", state).GetResult() != kErr_NoErr)
            return writer.GetResult();
    }
    if (m_surfaceDisplay == sCONTROL_SURFACE_DISPLAY())
        return kErr_NoErr;
    KCXMLElement* const display = element.AddChild("ControlSurfaceDisplay");
    if (display == nullptr)
        return kErr_AllocationFailed;
    AttributeWriter writer(*display);
    writer.Set("Ring", kRingWords[static_cast<size_t>(m_surfaceDisplay.ring)]);
    if (!m_surfaceDisplay.name.empty())
        writer.Set("Name", m_surfaceDisplay.name);
    return writer.GetResult();
}

} // namespace kvKorvoV12_9_0_320
