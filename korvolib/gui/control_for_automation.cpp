#include <korvolib/gui/control_for_automation.h>

#include <new>

#include <korvolib/control/automation_manager.h>
#include <korvolib/gui/description_numbers_internal.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

std::unique_ptr<KCBaseControl> CControlForAutomation_X::Clone() const {
    try {
        return std::unique_ptr<KCBaseControl>(new CControlForAutomation_X(*this));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

KCAutomationControl* CControlForAutomation_X::GetAutomationControl() const noexcept {
    return m_algorithm == nullptr ? nullptr : m_algorithm->GetAutomationControlByName(m_automationControl.c_str());
}

int32_t CControlForAutomation_X::ReadFromXMLWithAlg(const KCXMLElement& element, cALGORITHM& algorithm,
                                                    Problems& problems) {
    int32_t result = KCGUIControl::ReadFromXMLWithAlg(element, algorithm, problems);
    if (result != kErr_NoErr)
        return result;
    m_algorithm = &algorithm;
    m_automationControl = element.GetAttribute("AutomationControl", m_name.c_str());
    const KCAutomationControl* const control = GetAutomationControl();
    if (control == nullptr) {
        GUIDescription::AddProblem(element, "no automation control is named", m_automationControl.c_str(),
                                   problems);
        return kErr_BadDescription;
    }
    return m_params.empty() ? RegisterAs(*control) : kErr_NoErr;
}

// The lead first: whoever shows one value shows that of the first registration.
int32_t CControlForAutomation_X::RegisterAs(const KCAutomationControl& control) {
    const auto show = [this](const KCParamRegistrationData& registration) {
        return Register(m_algorithm, registration.GetParamIndex(), KCRegisterInfo(kRegister_Display));
    };
    if (!control.IsLeadBound())
        return kErr_NoErr;
    const size_t lead = control.GetLeadPosition();
    int32_t result = show(control.GetParamDataVec()[lead]);
    for (size_t i = 0; i < control.GetParamDataVec().size() && result == kErr_NoErr; ++i)
        if (i != lead && control.GetParamDataVec()[i].IsBound())
            result = show(control.GetParamDataVec()[i]);
    return result;
}

int32_t CControlForAutomation_X::WriteToXMLWithAlg(KCXMLElement& element, const cALGORITHM& algorithm) const {
    const int32_t result = KCGUIControl::WriteToXMLWithAlg(element, algorithm);
    return result != kErr_NoErr ? result : element.SetAttribute("AutomationControl", m_automationControl);
}

} // namespace kvKorvoV12_9_0_320
