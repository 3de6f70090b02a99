// What a user has attached, as an element of a preset:
//
//   <AutomationControls> <Control Name="Gain"> <MIDI EventType="4" ControlID="7" …/> </Control> …
//   </AutomationControls>

#include <korvolib/control/automation_manager.h>

#include <korvolib/gui/description_numbers_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

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
    for (const ControlPtr& control : m_controls) {
        KCXMLElement* const entry = list->AddChild("Control");
        int32_t result = entry == nullptr ? kErr_AllocationFailed : entry->SetAttribute("Name", control->GetName());
        if (result == kErr_NoErr)
            result = control->WriteToXMLMIDI(*entry);
        if (result != kErr_NoErr)
            return result;
        if (entry->GetChildCount() == 0) // nothing to say: that is how it is read back
            list->RemoveChild(entry);
    }
    return kErr_NoErr;
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
        const auto named = names.find(entry.GetAttribute("Name", ""));
        KCAutomationControl* const control = named == names.end() ? nullptr : GetAutomationControl(named->second);
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
