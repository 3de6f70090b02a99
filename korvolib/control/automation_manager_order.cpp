// The order of the controls is what hosts have stored their automation by. A description can say it a second time,
//
//   <ControlOrder_List IgnoreControlOrder="false"> <ControlOrder Name="Gain"/> … </ControlOrder_List>
//
// and a control that has come to stand elsewhere is then noticed by whoever builds the plug-in, not by its users.

#include <korvolib/control/automation_manager.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include <korvolib/gui/description_numbers_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/replace_file.h>
#include <korvolib/utilities/fm/well_known_folders.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320 {

using namespace GUIDescription;

namespace {

using Name = KCFixedString<127>;

std::vector<Name> WithoutMasterBypass(std::vector<Name> names) {
    std::erase_if(names, [](const Name& name) { return name == "Master Bypass"; });
    return names;
}

void PrintNames(const char* heading, const std::vector<Name>& names, std::string& text) {
    text += heading;
    for (const Name& name : names)
        text.append(name.c_str()).append("\n");
}

// A name that every file system takes.
Name FileNameOf(const char* plugin) {
    constexpr const char* kNotInNames = "/\\:*?\"<>|";
    constexpr std::string_view kEnd = "_ControlDump.txt";
    Name name;
    name.assign(plugin, std::min(std::strlen(plugin), name.capacity() - kEnd.size()));
    name.replace(kNotInNames, '_');
    for (char& c : name)
        if (static_cast<unsigned char>(c) < ' ')
            c = '_';
    if (name.empty() || name[0] == '.')
        name = "KorvoLib";
    return name << kEnd.data();
}

int32_t LogFolder(FM::KCStPath& folder) {
    int32_t result = FM::GetPathFromIndicator("State", folder);
    if (result == kErr_NoErr)
        result = folder.Append("KorvoLib");
    return result == kErr_NoErr ? folder.Append("Logs") : result;
}

} // namespace

int32_t KCAutomationManager::ReadXMLControlOrderList(const KCXMLElement& list, Problems& problems) {
    ReadFlag(list, "IgnoreControlOrder", m_isOrderIgnored, problems);
    for (const KCXMLElement& entry : list.Children("ControlOrder")) {
        if (const char* const name = entry.GetAttribute("Name"))
            m_requestedOrder.emplace_back(name);
        else
            AddProblem(entry, "a ControlOrder needs the Name of a control", nullptr, problems);
    }
    return kErr_NoErr;
}

std::vector<KCFixedString<127>> KCAutomationManager::GetActualOrder() const {
    std::vector<Name> names;
    for (const ControlPtr& control : m_controls)
        names.push_back(control->GetName());
    return names;
}

bool KCAutomationManager::IsInRequestedOrder() const {
    return m_requestedOrder.empty() ||
           WithoutMasterBypass(m_requestedOrder) == WithoutMasterBypass(GetActualOrder());
}

void KCAutomationManager::PrintAutomationControlOrder(std::string& text) const {
    text += "ControlDump\n";
    PrintNames("Requested Control Order:\n", m_requestedOrder, text);
    PrintNames("Actual Control Order:\n", GetActualOrder(), text);
    if (m_isOrderIgnored)
        text += "Control Order is ignored.\n";
    else if (!IsInRequestedOrder())
        text += "Inconsistency Observed:\n"
                "Requested Control Order is different from Actual Control Order\n"
                "Must be fixed in GUI.xml\n";
}

int32_t KCAutomationManager::DumpAutomationControlOrder() const {
    FM::KCStPath path;
    int32_t result = LogFolder(path);
    const char* const plugin =
        m_algorithm == nullptr ? "" : std::as_const(*m_algorithm).GetKeyValues().GetText("PluginName");
    if (result == kErr_NoErr)
        result = path.Append(FileNameOf(plugin).c_str());
    if (result != kErr_NoErr)
        return result;
    std::string text;
    PrintAutomationControlOrder(text);
    return FM::ReplaceFile(path, text.data(), text.size());
}

int32_t KCAutomationManager::FinishCreate() {
    int32_t result = kErr_NoErr;
    for (size_t index = 0; index < m_controls.size(); ++index) { // a control may bring others
        const int32_t finished = m_controls[index]->FinishCreate();
        result = result == kErr_NoErr ? finished : result;
    }
    // For whoever builds the plug-in; that it cannot be written is no reason to refuse the plug-in's user.
    if (!IsInRequestedOrder())
        static_cast<void>(DumpAutomationControlOrder());
    return result;
}

} // namespace kvKorvoV12_9_0_320
