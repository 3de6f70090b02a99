// The value of a registration and the gestures that move it. What it shows is in param_registration_display.cpp,
// its description in param_registration_description.cpp.

#include <korvolib/gui/param_registration.h>

#include <algorithm>
#include <cmath>

#include <korvolib/alg/param_stepping.h>

namespace kvKorvoV12_9_0_320 {
namespace {

constexpr double kSameValue = 1e-10; // values closer than this look the same

// On the circle of a parameter that wraps, as a single step goes round it: on the way up 1000 stays, on the way
// down 0.
double FoldIntoTravel(double state) noexcept {
    if (state >= 0.0 && state <= kFullTravel)
        return state;
    const double rest = std::fmod(state, kFullTravel); // exact, with the sign of the state
    if (state > kFullTravel)
        return rest == 0.0 ? kFullTravel : rest;
    return rest == 0.0 ? 0.0 : rest + kFullTravel;
}

} // namespace

// The hold
// ----------------------------------------------------------------------------------------------------------

KCParamHold::~KCParamHold() {
    try {
        LetGo();
    } catch (...) { // a plug-in's own Release: nobody is left whom it could tell
    }
}

KCParamHold& KCParamHold::operator=(const KCParamHold& other) {
    if (this != &other)
        LetGo();
    return *this;
}

KCParamHold& KCParamHold::operator=(KCParamHold&& other) noexcept {
    std::swap(m_algorithm, other.m_algorithm); // the other ends this one's hold
    std::swap(m_index, other.m_index);
    return *this;
}

void KCParamHold::Take(cALGORITHM& algorithm, size_t index) {
    if (IsHolding())
        return;
    m_algorithm = &algorithm;
    m_index = index;
    algorithm.Touch(index);
}

void KCParamHold::LetGo() {
    if (cALGORITHM* const algorithm = std::exchange(m_algorithm, nullptr))
        algorithm->Release(m_index);
}

// The parameter
// -----------------------------------------------------------------------------------------------------

KCParamRegistrationData::KCParamRegistrationData(cALGORITHM* algorithm, size_t paramIndex,
                                                 const KCRegisterInfo& info)
    : m_info(info) {
    SetRegisteredParam(algorithm, paramIndex);
}

void KCParamRegistrationData::SetRegisteredParam(cALGORITHM* algorithm, size_t paramIndex) {
    Release();
    ClearDragResidues();
    m_algorithm = algorithm;
    m_paramIndex = paramIndex;
    m_value = 0.0;
    FollowParam();
}

const KCFixedString<127>& KCParamRegistrationData::GetRegisteredParamName() const {
    static const KCFixedString<127> kNone;
    const sCONTROL_PARAM* const param = GetParam();
    return param == nullptr ? kNone : param->GetName();
}

bool KCParamRegistrationData::IsRegisteredToTypes(std::initializer_list<ERegisterType> types) const noexcept {
    return std::ranges::any_of(types, [this](ERegisterType type) { return IsRegisteredToType(type); });
}

void KCParamRegistrationData::SetRegisterModifier(KEModifier modifier, bool isOn) noexcept {
    KUModifiers modifiers = m_info.GetModifiers();
    modifiers.Set(modifier, isOn);
    m_info.SetModifiers(modifiers);
}

void KCParamRegistrationData::SetSensitivity(double factor) noexcept {
    if (std::isfinite(factor))
        m_sensitivity = factor;
}

void KCParamRegistrationData::SetHoverDelay(double milliseconds) noexcept {
    if (std::isfinite(milliseconds))
        m_hoverDelayMs = std::max(milliseconds, 0.0);
}

// The value
// ---------------------------------------------------------------------------------------------------------

// The value is stored first: the parameter tells its observers during the update, and what it settled to is then
// seen to be this value. A link that held the parameter back has put it elsewhere, and the value follows.
KCParamRegistrationData::BUFFER_HEADER* KCParamRegistrationData::MoveTo(double state) {
    m_value = state;
    BUFFER_HEADER* const chain = m_algorithm->UpdateParamByGesture(m_paramIndex, state);
    FollowParam();
    return chain;
}

KCParamRegistrationData::BUFFER_HEADER* KCParamRegistrationData::SetParamValue(double state) {
    if (!IsBound() || std::isnan(state))
        return nullptr;
    return MoveTo(std::clamp(state, 0.0, GetLastState()));
}

KCParamRegistrationData::BUFFER_HEADER* KCParamRegistrationData::UpdateParamValue() {
    return IsBound() ? MoveTo(m_value) : nullptr;
}

KCParamRegistrationData::BUFFER_HEADER* KCParamRegistrationData::OffsetParamValue(double delta, ERegisterType type,
                                                                                  bool* hasChanged) {
    if (hasChanged != nullptr)
        *hasChanged = false;
    if (!IsBound() || !IsRegisteredToType(type) || !std::isfinite(delta))
        return nullptr;
    const double before = m_value;
    const sCONTROL_PARAM& param = *GetParam();
    const bool isRound = !param.IsDiscrete() && param.IsContinuousParamCyclic();
    const double moved = m_value + delta;
    BUFFER_HEADER* const chain = MoveTo(isRound ? FoldIntoTravel(moved) : std::clamp(moved, 0.0, GetLastState()));
    if (hasChanged != nullptr)
        *hasChanged = m_value != before;
    return chain;
}

KCParamRegistrationData::BUFFER_HEADER*
KCParamRegistrationData::OffsetParamValueToNextDifferentValue(double direction, ERegisterType type,
                                                              bool* hasChanged) {
    if (hasChanged != nullptr)
        *hasChanged = false;
    if (!IsBound() || !IsRegisteredToType(type))
        return nullptr;
    const double offset = OffsetToNextDifferentState(direction);
    if (offset == 0.0 || !std::isfinite(offset))
        return nullptr;
    const double before = m_value;
    BUFFER_HEADER* const chain = SetParamValue(m_algorithm->GetParamState(m_paramIndex) + offset);
    if (hasChanged != nullptr)
        *hasChanged = m_value != before;
    return chain;
}

double KCParamRegistrationData::OffsetToNextDifferentState(double direction) const {
    return IsBound() ? m_algorithm->OffsetToNextDifferentState(m_paramIndex, direction) : 0.0;
}

void KCParamRegistrationData::FollowState(const sCONTROL_PARAM& param) noexcept {
    const double state = param.GetState(m_algorithm->GetActiveSetup());
    if (!std::isnan(state) && state != ParamStepping::Settle(param, m_value))
        m_value = ClampState(state);
}

KCParamRegistrationData::BUFFER_HEADER* KCParamRegistrationData::ResetParam() {
    return IsBound() ? SetParamValue(m_algorithm->GetParamResetState(m_paramIndex)) : nullptr;
}

// What the parameter says
// -------------------------------------------------------------------------------------------

double KCParamRegistrationData::StateToRealWorld(double state) const {
    return IsBound() ? m_algorithm->StateToRealWorld(m_paramIndex, state) : 0.0;
}

double KCParamRegistrationData::RealWorldToState(double realWorld) const {
    return IsBound() ? m_algorithm->RealWorldToState(m_paramIndex, realWorld) : 0.0;
}

bool KCParamRegistrationData::TranslateValue(const KCFixedStringBase& text, double& state) const {
    double realWorld = 0.0;
    if (!IsBound() ||
        m_algorithm->TranslateTextToRealWorld(m_paramIndex, text, realWorld) != kTranslateText_Accepted)
        return false;
    const double typed = ParamStepping::Settle(*GetParam(), RealWorldToState(realWorld));
    if (std::isnan(typed))
        return false;
    state = std::clamp(typed, 0.0, GetLastState());
    return true;
}

int32_t KCParamRegistrationData::GetNumStates() const {
    const sCONTROL_PARAM* const param = GetParam();
    return param == nullptr ? 0 : param->GetNumStates();
}

double KCParamRegistrationData::GetLastState() const {
    const sCONTROL_PARAM* const param = GetParam();
    if (param == nullptr || !param->IsDiscrete() || param->GetNumStates() <= 0 || !(param->GetStateStep() > 0.0))
        return kFullTravel;
    return ClampState((param->GetNumStates() - 1) * param->GetStateStep());
}

sSCALE_INFO KCParamRegistrationData::GetScaleInfo() const {
    const sCONTROL_PARAM* const param = GetParam();
    return param == nullptr ? sSCALE_INFO() : param->GetScale();
}

bool KCParamRegistrationData::IsActiveControllerParameterDiscrete() const {
    const sCONTROL_PARAM* const param = GetParam();
    return param != nullptr && param->IsDiscrete();
}

double KCParamRegistrationData::GetActiveControllerParameterStateStep() const {
    return IsBound() ? m_algorithm->GetStateStep(m_paramIndex) : 0.0;
}

double KCParamRegistrationData::UpdateMouseDeltaStep(double deltaPixels) const {
    const sCONTROL_PARAM* const param = GetParam();
    const double delta =
        param == nullptr || !std::isfinite(deltaPixels) ? 0.0 : param->ConvertMouseDelta(deltaPixels);
    return std::isfinite(delta) ? delta : 0.0;
}

bool KCParamRegistrationData::DoesNewStateChangeRealWorld(double state) const {
    if (!IsBound() || std::isnan(state))
        return false;
    const double settled = ParamStepping::Settle(*GetParam(), ClampState(state));
    return !(std::fabs(StateToRealWorld(settled) - m_algorithm->GetParamRealWorld(m_paramIndex)) < kSameValue);
}

bool KCParamRegistrationData::IsParamSavableToUndo() const {
    return IsBound() && m_algorithm->IsParamSavableToUndo(m_paramIndex);
}

bool KCParamRegistrationData::IsOptionReset() const noexcept {
    return IsRegisteredToTypes({kRegister_ResetOnPress, kRegister_ResetOnDoubleClick});
}

bool KCParamRegistrationData::IsUnused() const { return !IsBound() || m_algorithm->IsParamUnused(m_paramIndex); }

// Gestures
// ----------------------------------------------------------------------------------------------------------

void KCParamRegistrationData::Touch() {
    if (!IsBound())
        return;
    if (IsTouchLost())
        m_algorithm->Touch(m_paramIndex);
    m_hold.Take(*m_algorithm, m_paramIndex);
}

// MIDI for the held parameter has told the host of a whole gesture of its own.
bool KCParamRegistrationData::IsTouchLost() const noexcept {
    return m_hold.IsHolding() && m_algorithm->IsTouchLost(m_paramIndex);
}

void KCParamRegistrationData::Release() { m_hold.LetGo(); }

bool KCParamRegistrationData::ShouldSendTouch() const noexcept {
    return IsBound() && (!m_hold.IsHolding() || IsTouchLost());
}

void KCParamRegistrationData::FinishDragParam() {
    ClearDragResidues();
    Release();
}

void KCParamRegistrationData::ClearDragResidues() noexcept {
    m_residue[0] = 0.0;
    m_residue[1] = 0.0;
}

// Links, the whole record
// -------------------------------------------------------------------------------------------

void KCParamRegistrationData::AddParamLinkGroup(int group) {
    if (std::ranges::find(m_linkGroups, group) == m_linkGroups.end())
        m_linkGroups.push_back(group);
}

bool KCParamRegistrationData::IsLinkGroupEnabled(int group) const {
    const KCLinkGroups* const groups = m_algorithm == nullptr ? nullptr : m_algorithm->GetLinkGroups();
    return groups != nullptr && groups->IsLinkGroupEnabled(m_paramIndex, group);
}

void KCParamRegistrationData::Reset() { *this = KCParamRegistrationData(); }

} // namespace kvKorvoV12_9_0_320
