// The members of cALGORITHM that reach automation. Without a manager there are no controls: whatever asks for one
// by its index is out of range, and nobody is told of a value.

#include <korvolib/alg/algorithm.h>
#include <korvolib/control/automation_manager.h>
#include <korvolib/utilities/error_codes.h>

#include <cmath>

namespace kvKorvoV12_9_0_320 {

int32_t cALGORITHM::InitAutomation() {
    m_automationManager = {new KCAutomationManager, [](KCAutomationManager* manager) { delete manager; }};
    return m_automationManager->Init(this);
}

int32_t cALGORITHM::FinishCreateAutomation() {
    CreateSpecificAutomationControls();
    return m_automationManager->FinishCreate();
}

void cALGORITHM::CreateSpecificAutomationControls() {}

// ---- Look-ups ---------------------------------------------------------------------------------------------------

KCAutomationControl* cALGORITHM::GetAutomationControl(size_t control) const {
    return m_automationManager == nullptr ? nullptr : m_automationManager->GetAutomationControl(control);
}

KCAutomationControl* cALGORITHM::GetAutomationControlByLeadParamID(size_t index) const noexcept {
    return m_automationManager == nullptr ? nullptr : m_automationManager->GetAutomationControlByLeadParamID(index);
}

KCAutomationControl* cALGORITHM::GetAutomationControlByName(const char* name) const {
    return m_automationManager == nullptr ? nullptr : m_automationManager->GetAutomationControlByName(name);
}

bool cALGORITHM::IsTouchLost(size_t index) const noexcept {
    const KCAutomationControl* const control = GetAutomationControlByLeadParamID(index);
    return control != nullptr && control->IsConnected() && !control->GetTouched();
}

// ---- Gestures ---------------------------------------------------------------------------------------------------

void cALGORITHM::NotifyParamValue(size_t index) {
    if (m_automationManager != nullptr)
        m_automationManager->NotifyParamValue(index, GetParamState(index));
}

void cALGORITHM::Touch(size_t index) {
    if (KCAutomationControl* const control = GetAutomationControlByLeadParamID(index))
        control->NotifyTouch();
}

void cALGORITHM::Release(size_t index) {
    if (KCAutomationControl* const control = GetAutomationControlByLeadParamID(index))
        control->NotifyRelease();
}

// ---- Conversions by control
// ---------------------------------------------------------------------------------------

int32_t cALGORITHM::TranslateTextToControlState(int32_t control, const char* text, double& state,
                                                double& realWorld) {
    const KCAutomationControl* const found = GetAutomationControl(static_cast<size_t>(control)); // below 0: none
    if (found == nullptr)
        return kErr_ControlIndexOutOfRange;
    const size_t index = found->GetLeadParamID();
    if (text == nullptr || index == kNoParam)
        return kTranslateText_Refused;
    if (TranslateTextToRealWorld(index, KCFixedString<127>(text), realWorld) != kTranslateText_Accepted)
        return kTranslateText_Refused;
    state = RealWorldToState(index, realWorld);
    return kTranslateText_Accepted;
}

int32_t cALGORITHM::ControlStateFromRealWorldValue(size_t control, double realWorld, double& state) {
    const KCAutomationControl* const found = GetAutomationControl(control);
    if (found == nullptr)
        return kErr_ControlIndexOutOfRange;
    if (std::isnan(realWorld))
        return kErr_Generic;
    const size_t index = found->GetLeadParamID();
    if (index != kNoParam)
        state = RealWorldToState(index, realWorld);
    return kErr_NoErr;
}

int32_t cALGORITHM::ControlRealWorldValueFromState(size_t control, double state, double& realWorld) {
    const KCAutomationControl* const found = GetAutomationControl(control);
    if (found == nullptr)
        return kErr_ControlIndexOutOfRange;
    if (std::isnan(state))
        return kErr_Generic;
    const size_t index = found->GetLeadParamID();
    if (index != kNoParam)
        realWorld = StateToRealWorld(index, state); // limits the state
    return kErr_NoErr;
}

} // namespace kvKorvoV12_9_0_320
