// What a user has attached, as an element of a preset:
//
//   <AutomationControls> <Control Name="Gain" Index="0"> <MIDI EventType="4" ControlID="7" …/> </Control> …
//   </AutomationControls>
//
// The index keeps controls of one name apart. Where another control stands there by now, the name alone counts.

#include <korvolib/control/automation_manager.h>

#include <korvolib/gui/description_numbers_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>
#include <korvolib/utilities/xml/xml_text_internal.h>

namespace kvKorvoV12_9_0_320 {

namespace {
constexpr const char* kElement = "AutomationControls";
}

int32_t KCAutomationManager::SaveControlsToPreset(KCXMLElement& preset) const {
    while (const KCXMLElement* const old = preset.FindChild(kElement))
        preset.RemoveChild(old);
    KCXMLElement* const list = preset.AddChild(kElement);
    if (list == nullptr)
        return kErr_AllocationFailed;
    for (size_t index = 0; index < m_controls.size(); ++index) {
        KCXMLElement* const entry = list->AddChild("Control");
        if (entry == nullptr)
            return kErr_AllocationFailed;
        int32_t result = entry->SetAttribute("Name", XMLTextOf(m_controls[index]->GetName()));
        if (result == kErr_NoErr)
            result = entry->SetAttribute("Index", static_cast<int32_t>(index));
        if (result == kErr_NoErr)
            result = m_controls[index]->WriteToXMLMIDI(*entry);
        if (result != kErr_NoErr)
            return result;
        if (entry->GetChildCount() == 0) // nothing to say: that is how it is read back
            list->RemoveChild(entry);
    }
    return kErr_NoErr;
}

KCAutomationControl* KCAutomationManager::FindPresetEntry(const KCXMLElement& entry,
                                                          const NameIndex& names) const noexcept {
    const char* const name = entry.GetAttribute("Name", "");
    int32_t index = -1;
    if (entry.ReadAttribute("Index", index) != KEXMLValue::Found)
        index = -1;
    KCAutomationControl* const inPlace = GetAutomationControl(static_cast<size_t>(index)); // below 0: none
    if (inPlace != nullptr && XMLTextOf(inPlace->GetName()) == name)
        return inPlace;
    const auto named = names.find(name);
    return named == names.end() ? nullptr : GetAutomationControl(named->second);
}

int32_t KCAutomationManager::LoadControlsFromPreset(const KCXMLElement& preset, Problems& problems) {
    const KCXMLElement* const list = preset.FindChild(kElement);
    if (list == nullptr)
        return kErr_NoErr;
    for (const ControlPtr& control : m_controls) {
        control->DetachFromMIDI();
        control->SetMIDIGroup(-1);
    }
    const NameIndex names = IndexNames();
    int32_t result = kErr_NoErr;
    for (const KCXMLElement& entry : list->Children("Control")) {
        KCAutomationControl* const control = FindPresetEntry(entry, names);
        const KCXMLElement* const midi = entry.FindChild("MIDI");
        if (control == nullptr)
            GUIDescription::AddProblem(entry, "no control is named", entry.GetAttribute("Name", ""), problems);
        const int32_t read = control == nullptr ? kErr_BadDescription
                             : midi == nullptr  ? kErr_NoErr
                                                : control->ReadFromXMLMIDI(*midi, problems);
        result = result == kErr_NoErr ? read : result;
    }
    return result;
}

} // namespace kvKorvoV12_9_0_320
