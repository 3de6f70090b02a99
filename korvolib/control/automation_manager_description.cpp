// The controls of a description, one by one and by templates:
//
//   <Control_List> <cCONTROLLER Name="Gain">…</cCONTROLLER> … </Control_List>      see automation_control_xml.cpp
//   <Control_Template_List>
//     <Control_Template Name="Band">
//       <cCONTROLLER Name="Bell Gain"> <ParameterList> <Parameter Array="Bell Gain"/> </ParameterList>
//       </cCONTROLLER>
//     </Control_Template>
//   </Control_Template_List>
//   <Control_Template_Batch_List> <Control_Template_Batch Template="Band" Count="4" First="0" Stride="0"/> … </…>
//   <SubViewRect_List> <SubViewRect Rect="x y w h" Template="Band" Element="0" Stride="0"/> … </SubViewRect_List>

#include <korvolib/control/automation_manager.h>

#include <cstring>

#include <korvolib/gui/description_numbers_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320 {

using namespace GUIDescription;

namespace {

constexpr int32_t kMostElements = 1024; // of a template's batch: beyond the strips of any console

// The result of a whole is that of its first part that failed.
void KeepFirstError(int32_t& kept, int32_t result) noexcept {
    if (kept == kErr_NoErr)
        kept = result;
}

const KCXMLElement* FindTemplate(const KCXMLElement& root, const char* name) noexcept {
    const KCXMLElement* const list = root.FindChild("Control_Template_List");
    if (list == nullptr || name == nullptr)
        return nullptr;
    for (const KCXMLElement& candidate : list->Children("Control_Template"))
        if (std::strcmp(candidate.GetAttribute("Name", ""), name) == 0)
            return &candidate;
    return nullptr;
}

// The template that the element names, and how it is to be repeated.
struct sTEMPLATE_USE {
    const KCXMLElement* controlTemplate = nullptr; // null: reported
    size_t first = 0;
    size_t stride = 0;
    size_t count = 1;
};

sTEMPLATE_USE ReadTemplateUse(const KCXMLElement& root, const KCXMLElement& element, const char* firstName,
                              Problems& problems) {
    const char* const name = element.GetAttribute("Template", "");
    int32_t first = 0, stride = 0, count = 1;
    ReadWhole(element, firstName, 0, kMostElements, first, problems);
    ReadWhole(element, "Stride", 0, kMostElements, stride, problems);
    ReadWhole(element, "Count", 0, kMostElements, count, problems);
    sTEMPLATE_USE use{FindTemplate(root, name), static_cast<size_t>(first), static_cast<size_t>(stride),
                      static_cast<size_t>(count)};
    if (use.controlTemplate == nullptr)
        AddProblem(element, "no control template is named", name, problems);
    return use;
}

bool HasParamArray(const KCAutomationControl& control) noexcept {
    for (const KCParamRegistrationData& registration : control.GetParamDataVec())
        if (registration.IsParamArrayRegData())
            return true;
    return false;
}

// Where a controller names states by their number, neighbours have to be 1 apart.
bool IsMappedUnevenly(const KCAutomationControl& control) {
    return control.IsAttachedToMIDI() && control.IsLeadStepped() &&
           control.GetAlgorithm()->GetStateStep(control.GetLeadParamIndex()) != 1.0;
}

} // namespace

int32_t KCAutomationManager::Init(cALGORITHM* algorithm) {
    if (algorithm == nullptr || m_algorithm != nullptr)
        return kErr_NoErr;
    m_algorithm = algorithm;
    int32_t result = kErr_NoErr;
    if (const char* const xml = algorithm->GetDescription("GUIXML")) {
        Problems problems;
        result = ReadDescription(xml, problems);
        algorithm->KeepDescriptionProblems("GUIXML", problems);
    }
    m_isInitialised = true;
    return result;
}

int32_t KCAutomationManager::ReadDescription(const char* xml, Problems& problems) {
    KCXMLElement root;
    sXML_ERROR error;
    const int32_t result = root.Parse(xml, std::strlen(xml), &error);
    if (result == kErr_NoErr)
        return ReadFromXML(root, problems);
    problems.push_back({error.line, error.text, {}});
    return result;
}

int32_t KCAutomationManager::ReadFromXML(const KCXMLElement& root, Problems& problems) {
    if (m_algorithm == nullptr)
        return kErr_NullArgument;
    int32_t result = kErr_NoErr;
    if (const KCXMLElement* const list = root.FindChild("Control_List"))
        KeepFirstError(result, ReadXMLControlsList(*list, problems));
    KeepFirstError(result, ReadTemplateBatches(root, problems));
    KeepFirstError(result, LinkSubViewControlsWithControlsTemplate(root, problems));
    if (const KCXMLElement* const list = root.FindChild("ControlOrder_List"))
        KeepFirstError(result, ReadXMLControlOrderList(*list, problems));
    if (const KCXMLElement* const layout = root.FindChild("PTLayout"))
        KeepFirstError(result, ReadPageTables(*layout, problems));
    m_readNames.clear();
    return result;
}

int32_t KCAutomationManager::ReadXMLControlsList(const KCXMLElement& list, Problems& problems) {
    int32_t result = kErr_NoErr;
    for (const KCXMLElement& child : list.Children()) {
        if (child.HasName("cCONTROLLER"))
            KeepFirstError(result, ReadXMLControl(child, problems));
        else
            AddProblem(child, "expected a cCONTROLLER, found", child.GetName(), problems);
    }
    return result;
}

int32_t KCAutomationManager::ReadXMLControl(const KCXMLElement& element, Problems& problems) {
    if (m_algorithm == nullptr)
        return kErr_NullArgument;
    auto control = std::make_unique<KCAutomationControl>();
    const int32_t result = control->ReadFromXMLWithAlg(element, *m_algorithm, problems);
    return result != kErr_NoErr ? result : AddReadControl(std::move(control), element, problems);
}

int32_t KCAutomationManager::AddReadControl(ControlPtr control, const KCXMLElement& element, Problems& problems) {
    if (control->GetName().empty()) {
        AddProblem(element, "a cCONTROLLER needs a Name", nullptr, problems);
        return kErr_BadDescription;
    }
    if (!m_readNames.insert(control->GetName()).second)
        AddProblem(element, "several controls have this name, and the first is found by it:", control->GetNamePtr(),
                   problems);
    if (IsMappedUnevenly(*control))
        AddProblem(element, "a MIDI controller counts states by 1, and those of this lead are further apart:",
                   control->GetNamePtr(), problems);
    const int32_t result = AddNewAutomationControl(std::move(control));
    if (result != kErr_NoErr)
        AddProblem(element, "there is no room for more controls", nullptr, problems);
    return result;
}

// ---- Templates
// ------------------------------------------------------------------------------------------------------

int32_t KCAutomationManager::ReadTemplateBatches(const KCXMLElement& root, Problems& problems) {
    const KCXMLElement* const list = root.FindChild("Control_Template_Batch_List");
    int32_t result = kErr_NoErr;
    if (list == nullptr)
        return result;
    for (const KCXMLElement& batch : list->Children("Control_Template_Batch")) {
        const sTEMPLATE_USE use = ReadTemplateUse(root, batch, "First", problems);
        int32_t added = use.controlTemplate == nullptr ? kErr_BadDescription : kErr_NoErr;
        for (size_t i = 0; i < use.count && added == kErr_NoErr; ++i)
            added = AddFromTemplate(*use.controlTemplate, use.first + i, use.stride, problems);
        KeepFirstError(result, added);
    }
    return result;
}

int32_t KCAutomationManager::LinkSubViewControlsWithControlsTemplate(const KCXMLElement& root, Problems& problems) {
    const KCXMLElement* const list = root.FindChild("SubViewRect_List");
    int32_t result = kErr_NoErr;
    if (list == nullptr || m_algorithm == nullptr)
        return result;
    for (const KCXMLElement& view : list->Children("SubViewRect")) {
        if (!view.HasAttribute("Template"))
            continue; // it shows no controls of this kind
        const sTEMPLATE_USE use = ReadTemplateUse(root, view, "Element", problems);
        KeepFirstError(result, use.controlTemplate == nullptr
                                   ? kErr_BadDescription
                                   : AddFromTemplate(*use.controlTemplate, use.first, use.stride, problems));
    }
    return result;
}

int32_t KCAutomationManager::AddFromTemplate(const KCXMLElement& controlTemplate, size_t element, size_t stride,
                                             Problems& problems) {
    for (const KCXMLElement& child : controlTemplate.Children("cCONTROLLER")) {
        auto control = std::make_unique<KCAutomationControl>();
        int32_t result = control->ReadFromXMLWithAlg(child, *m_algorithm, problems);
        if (result != kErr_NoErr)
            return result;
        KCFixedString<127> name = control->GetName();
        name << ' ' << element + 1;
        control->SetName(name);
        result = HasParamArray(*control) ? control->RegisterFromParamArrayRegData(element)
                                         : control->OffsetParamIter(static_cast<ptrdiff_t>(element * stride));
        if (result != kErr_NoErr) {
            AddProblem(child, "the template reaches beyond the parameters with", name.c_str(), problems);
            return kErr_BadDescription;
        }
        result = AddReadControl(std::move(control), child, problems);
        if (result != kErr_NoErr)
            return result;
    }
    return kErr_NoErr;
}

} // namespace kvKorvoV12_9_0_320
