// What a host asks of a control by its index, and the way of a chain to the host.

#include <korvolib/control/automation_manager.h>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

int32_t KCAutomationManager::GetControlAutomationInfo(size_t index, sCONTROL_AUTOMATION_INFO& info) const {
    const KCAutomationControl* const control = GetAutomationControl(index);
    return control == nullptr ? kErr_ControlIndexOutOfRange : control->GetControlAutomationInfo(info);
}

int32_t KCAutomationManager::SetAutomationRefCons(size_t index, int64_t refCon1, int64_t refCon2) noexcept {
    KCAutomationControl* const control = GetAutomationControl(index);
    if (control == nullptr)
        return kErr_ControlIndexOutOfRange;
    control->SetAutomationRefCons(refCon1, refCon2);
    return kErr_NoErr;
}

int64_t KCAutomationManager::GetAutomationRefCon1(size_t index) const noexcept {
    const KCAutomationControl* const control = GetAutomationControl(index);
    return control == nullptr ? 0 : control->GetAutomationRefCon1();
}

int64_t KCAutomationManager::GetAutomationRefCon2(size_t index) const noexcept {
    const KCAutomationControl* const control = GetAutomationControl(index);
    return control == nullptr ? 0 : control->GetAutomationRefCon2();
}

int32_t KCAutomationManager::GetAutomationRefCons(size_t index, int64_t& refCon1, int64_t& refCon2) const noexcept {
    const KCAutomationControl* const control = GetAutomationControl(index);
    if (control == nullptr)
        return kErr_ControlIndexOutOfRange;
    control->GetAutomationRefCons(refCon1, refCon2);
    return kErr_NoErr;
}

KCAutomationManager::BUFFER_HEADER* KCAutomationManager::SetControllerValue(size_t index, double value) {
    KCAutomationControl* const control = GetAutomationControl(index);
    return control == nullptr ? nullptr : control->SetControllerValue(value);
}

int32_t KCAutomationManager::TranslateController(size_t index, double value, KCFixedStringBase& text,
                                                 double& realWorld) const {
    const KCAutomationControl* const control = GetAutomationControl(index);
    return control == nullptr ? kErr_ControlIndexOutOfRange : control->TranslateController(value, text, realWorld);
}

bool KCAutomationManager::Touch(size_t index) {
    KCAutomationControl* const control = GetAutomationControl(index);
    return control != nullptr && control->NotifyTouch();
}

bool KCAutomationManager::ReleaseTouch(size_t index) {
    KCAutomationControl* const control = GetAutomationControl(index);
    return control != nullptr && control->NotifyRelease();
}

void KCAutomationManager::NotifyParamValue(size_t paramIndex, double value) {
    if (KCAutomationControl* const control = GetAutomationControlByLeadParamID(paramIndex))
        control->NotifySetControlValue(value);
}

void KCAutomationManager::ExecuteAndDisposeBuffer(BUFFER_HEADER*& buffer) {
    if (buffer == nullptr)
        return;
    if (m_algorithm != nullptr)
        m_algorithm->ExecuteAndDisposeBuffer(buffer);
    else
        KPAPI_PROCESS_MEMORY::GiveBackChain(buffer);
}

} // namespace kvKorvoV12_9_0_320
