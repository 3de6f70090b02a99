#include "control_table.h"

#include <korvolib/control/automation_manager.h>

#include "midi_text.h"
#include "text.h"
#include "text_table.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

std::string ParamName(const cALGORITHM& algorithm, size_t index) {
    return index < algorithm.GetNumParams() ? algorithm.GetParamName(index).c_str() : "";
}

std::string FollowersText(const cALGORITHM& algorithm, const KCAutomationControl& control) {
    std::vector<std::string> names;
    for (size_t i = 0; i < control.GetParamDataVec().size(); ++i)
        if (control.FollowsLead(i))
            names.push_back(ParamName(algorithm, control.GetParamDataVec()[i].GetParamIndex()));
    return JoinedText(names, ", ");
}

// How the controller's travel becomes the control's, where it is not the plain way.
std::string MappingText(const kvMIDI::sMIDI_MAPPING& mapping) {
    const kvMIDI::sMIDI_MAPPING plain;
    std::vector<std::string> parts;
    if (mapping.low != plain.low || mapping.high != plain.high)
        parts.push_back(NumberText(mapping.low) + " … " + NumberText(mapping.high));
    if (mapping.curve != plain.curve)
        parts.push_back("curve " + NumberText(mapping.curve));
    if (mapping.takeOver == kvMIDI::kMidiTakeOver_PickUp)
        parts.emplace_back("pick-up");
    return JoinedText(parts, ", ");
}

std::string ChannelText(const KCAutomationControl& control) {
    if (!control.IsAttachedToMIDI())
        return "";
    return control.GetMIDIChannel() <= 0 ? "any" : std::to_string(control.GetMIDIChannel());
}

} // namespace

std::string ControlTable(const cALGORITHM& algorithm) {
    const KCAlgorithmLock lock(algorithm);
    const KCAutomationManager& manager = *algorithm.GetAutomationManager();
    if (manager.GetNumAutomationControllers() == 0)
        return "no automation controls\n";
    KCTextTable table(
        {{"index", true}, {"name"}, {"lead"}, {"followers"}, {"MIDI"}, {"channel", true}, {"mapping"}, {"learns"}});
    for (size_t index = 0; index < manager.GetNumAutomationControllers(); ++index) {
        const KCAutomationControl& control = *manager.GetAutomationControl(index);
        table.AddRow({std::to_string(index), control.GetNamePtr(),
                      ParamName(algorithm, control.GetLeadParamIndex()), FollowersText(algorithm, control),
                      MidiSourceText(control.GetMIDIEventType(), control.GetMIDIControlID()), ChannelText(control),
                      MappingText(control.GetMIDIMapping()), control.GetMIDILearnMode() ? "yes" : ""});
    }
    return table.ToText();
}

} // namespace kvKorvoV12_9_0_320::kvHost
