// The list of controls: who stands where, and who is found by what. Values are in automation_manager_values.cpp.

#include <korvolib/control/automation_manager.h>

#include <algorithm>
#include <cstring>
#include <typeinfo>
#include <utility>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320 {

KCAutomationManager::KCAutomationManager() = default;
// By then whoever gave the algorithm its host callback may have ended: nobody is called.
KCAutomationManager::~KCAutomationManager() { DestroyControls(); }

int32_t KCAutomationManager::MoveControl(size_t, size_t) { return kErr_NoErr; }
int32_t KCAutomationManager::SanityCheck() { return kErr_NoErr; }

// ---- The list ---------------------------------------------------------------------------------------------------

void KCAutomationManager::Release() {
    for (size_t index = 0; index < m_controls.size(); ++index)
        m_controls[index]->NotifyRelease();
    DestroyControls();
}

void KCAutomationManager::DestroyControls() noexcept {
    const std::vector<ControlPtr> controls = std::exchange(m_controls, {});
    m_midiIndex.next.clear();
    m_isMidiIndexStale = true;
}

void KCAutomationManager::OnCreateControl(size_t index) {
    KCAutomationControl* const control = GetAutomationControl(index);
    if (control == nullptr)
        return;
    control->m_manager = this;
    if (control->m_algorithm == nullptr)
        control->m_algorithm = m_algorithm;
    m_isMidiIndexStale = true;
}

// Puts it behind the list or in place of the control at `index`. The room comes first, so that a failure changes
// nothing.
int32_t KCAutomationManager::PlaceNew(ControlPtr control, size_t index) {
    try {
        if (index == m_controls.size()) {
            m_midiIndex.next.resize(m_controls.size() + 1, kNobody);
            m_controls.push_back(std::move(control));
        } else {
            std::swap(m_controls[index], control);
        }
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    OnCreateControl(index);
    return kErr_NoErr;
}

int32_t KCAutomationManager::AddNewAutomationControl(ControlPtr control) {
    return AddNewAutomationControlForIndex(std::move(control), m_controls.size());
}

int32_t KCAutomationManager::AddNewAutomationControlForIndex(ControlPtr control, size_t index) {
    if (control == nullptr)
        return kErr_NullArgument;
    if (IsOwn(control.get())) { // it has an owner already
        const KCAutomationControl* const own = control.release();
        return GetAutomationControl(index) == own ? kErr_NoErr : kErr_Generic;
    }
    if (index >= kMaxAutomationControls)
        return kErr_LimitExceeded;
    ReleaseTouch(index); // of the control there
    while (m_controls.size() < index) {
        auto dummy = std::make_unique<KCAutomationControl>(KCFixedString<127>("Dummy"));
        if (const int32_t result = PlaceNew(std::move(dummy), m_controls.size()); result != kErr_NoErr)
            return result;
    }
    return PlaceNew(std::move(control), index);
}

int32_t KCAutomationManager::DeleteAutomationControl(size_t index) {
    ReleaseTouch(index);
    if (index >= m_controls.size())
        return kErr_ControlIndexOutOfRange;
    const ControlPtr deleted = std::move(m_controls[index]);
    m_controls.erase(m_controls.begin() + static_cast<ptrdiff_t>(index));
    m_midiIndex.next.resize(m_controls.size());
    m_isMidiIndexStale = true;
    return kErr_NoErr;
}

int32_t KCAutomationManager::RenameAutomationControl(size_t index, const char* name) {
    KCAutomationControl* const control = GetAutomationControl(index);
    if (control == nullptr)
        return kErr_ControlIndexOutOfRange;
    if (name == nullptr)
        return kErr_NullArgument;
    control->SetName(KCFixedString<127>(name));
    return kErr_NoErr;
}

int32_t KCAutomationManager::AddControlsForParams() {
    if (m_algorithm == nullptr)
        return kErr_NullArgument;
    for (size_t index = 0; index < m_algorithm->GetNumParams(); ++index) {
        if (GetAutomationControlByLeadParamID(index) != nullptr)
            continue;
        auto control = std::make_unique<KCAutomationControl>(m_algorithm->GetParamName(index));
        int32_t result = control->Register(m_algorithm, index, KCRegisterInfo(kRegister_Controller));
        if (result == kErr_NoErr)
            result = control->FinishCreate();
        if (result == kErr_NoErr)
            result = AddNewAutomationControl(std::move(control));
        if (result != kErr_NoErr)
            return result;
    }
    return kErr_NoErr;
}

// ---- Look-ups ---------------------------------------------------------------------------------------------------

KCAutomationControl* KCAutomationManager::GetAutomationControlByName(const char* name) const noexcept {
    return GetAutomationControl(GetControlIndexByName(name));
}

size_t KCAutomationManager::GetControlIndexByName(const char* name) const noexcept {
    if (name == nullptr)
        return kNoControl;
    const auto count = static_cast<uint16_t>(std::min(m_controls.size(), kMaxAutomationControls));
    for (uint16_t index = 0; index < count; ++index)
        if (std::strcmp(m_controls[index]->GetNamePtr(), name) == 0)
            return index;
    return kNoControl;
}

KCAutomationManager::NameIndex KCAutomationManager::IndexNames() const {
    NameIndex names;
    for (size_t index = 0; index < m_controls.size(); ++index)
        names.try_emplace(m_controls[index]->GetNamePtr(), index);
    return names;
}

size_t KCAutomationManager::GetControlIndex(const KCAutomationControl* control) const noexcept {
    const auto found = std::ranges::find(m_controls, control, &ControlPtr::get);
    return found == m_controls.end() ? kNoControl : static_cast<size_t>(found - m_controls.begin());
}

namespace {

// Part of every gesture. What is bound to a parameter is nearly always a binding of exactly this type to a control
// of exactly that one, which costs two comparisons to see.
KCAutomationControl* AsAutomationControl(KCParamController& bound) noexcept {
    if (typeid(bound) != typeid(KCControlBinding))
        return nullptr;
    KCBaseControl& control = static_cast<KCControlBinding&>(bound).GetControl();
    if (typeid(control) == typeid(KCAutomationControl))
        return static_cast<KCAutomationControl*>(&control);
    return dynamic_cast<KCAutomationControl*>(&control);
}

bool IsLeadBy(const KCAutomationControl& control, size_t paramIndex) noexcept {
    if (control.GetLeadParamIndex() != paramIndex)
        return false;
    const KCParamRegistrationData& lead = *control.GetParamData(control.GetLeadPosition());
    return !lead.GetRegisterFlag(kRegister_Highlight) && !lead.GetRegisterFlag(kRegister_NotByAutomation);
}

} // namespace

KCAutomationControl* KCAutomationManager::GetAutomationControlByLeadParamID(size_t paramIndex) const noexcept {
    const sCONTROL_PARAM* const param =
        m_algorithm == nullptr ? nullptr : std::as_const(*m_algorithm).GetParam(paramIndex);
    if (param == nullptr)
        return nullptr;
    KCAutomationControl* found = nullptr;
    for (KCParamController* const bound : param->GetControllers()) {
        KCAutomationControl* const control = AsAutomationControl(*bound);
        if (control == nullptr || !IsLeadBy(*control, paramIndex))
            continue;
        if (found != nullptr)
            return nullptr;
        found = control;
    }
    return found;
}

void KCAutomationManager::GetControlNameOfLength(size_t index, KCFixedStringBase& out,
                                                 size_t maxLength) const noexcept {
    out.clear();
    if (const KCAutomationControl* const control = GetAutomationControl(index))
        control->GetControlNameOfLength(out, maxLength);
}

} // namespace kvKorvoV12_9_0_320
