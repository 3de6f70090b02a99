// How one parameter changes: the update operations, in the order in which others hear of it.

#include <korvolib/alg/algorithm_internal.h>

#include <cmath>

namespace kvKorvoV12_9_0_320 {

namespace {

// A discrete parameter's state is a whole multiple of its step that the travel still holds.
double SettleState(const sCONTROL_PARAM& param, double state) {
    if (!param.IsDiscrete())
        return state;
    const double settled = param.QuantizeState(state);
    return settled > kFullTravel ? settled - param.GetStateStep() : settled;
}

bool HasNothingToDo(const sCONTROL_PARAM& param, EPluginSetup setup, double state) {
    return param.GetState(setup) == state && !param.HasFlag(kParamFlags_AlwaysUpdate) &&
           (!param.HasFlag(kParamFlag_CompareForModified) || !param.IsComparisonPending()) &&
           !param.IsUpdatePending();
}

void StoreState(sCONTROL_PARAM& param, EPluginSetup setup, double state) {
    param.SetState(setup, state);
    param.UpdateRealWorldFromState(setup);
}

void StoreRealWorld(sCONTROL_PARAM& param, EPluginSetup setup, double realWorld) {
    param.SetRealWorld(setup, realWorld);
    const ScaleFunction inverse = param.GetInverseScaleFunction();
    if (inverse != nullptr)
        param.SetState(setup, inverse(realWorld, const_cast<sSCALE_INFO*>(&param.GetScale()))); // which is mutable
}

} // namespace

cALGORITHM::BUFFER_HEADER* cALGORITHM::UpdateParamState(size_t index, double state, bool notify) {
    if (!(state >= 0.0 && state <= kFullTravel) || index >= m_params.size())
        return nullptr;
    const KCAlgorithmLock lock(*this);
    sCONTROL_PARAM& param = m_params[index];
    const double settled = SettleState(param, state);
    if (HasNothingToDo(param, m_activeSetup, settled))
        return nullptr;

    const double oldRealWorld = param.GetRealWorld(m_activeSetup);
    StoreState(param, m_activeSetup, settled);
    if (param.HasFlag(kParamFlag_BothSetups))
        StoreState(param, OtherPluginSetup(m_activeSetup), settled);
    param.UpdateControllers(index);

    const double newRealWorld = param.GetRealWorld(m_activeSetup);
    if (!HasVisiblyChanged(oldRealWorld, newRealWorld) && !IsUpdateParamAlwayesRequired(index)) {
        param.SetRefreshMark(kRefreshMark);
        return nullptr;
    }
    BUFFER_HEADER* const result = ApplyParamSelf(index);
    const bool differsFromComparison =
        param.HasFlag(kParamFlag_CompareForModified) && param.GetComparisonValue() != newRealWorld;
    ReportPresetModified(param, oldRealWorld != newRealWorld || differsFromComparison);
    if (notify)
        NotifyParamValue(index);
    return result;
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::UpdateParamRealWorld(size_t index, double realWorld) {
    if (!std::isfinite(realWorld) || index >= m_params.size())
        return nullptr;
    const KCAlgorithmLock lock(*this);
    sCONTROL_PARAM& param = m_params[index];
    const bool hasChanged = param.GetRealWorld(m_activeSetup) != realWorld;
    if (!hasChanged && !param.HasFlag(kParamFlags_AlwaysUpdate))
        return nullptr;

    StoreRealWorld(param, m_activeSetup, realWorld);
    if (param.HasFlag(kParamFlag_BothSetups))
        StoreRealWorld(param, OtherPluginSetup(m_activeSetup), realWorld);
    param.UpdateControllers(index);
    BUFFER_HEADER* const result = ApplyParamSelf(index);
    ReportPresetModified(param, hasChanged);
    return result;
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::UpdateParamRequestRealWorld(size_t index, double realWorld) {
    if (!std::isfinite(realWorld))
        return nullptr;
    const KCAlgorithmLock lock(*this);
    if (index < m_params.size())
        m_params[index].LimitRealWorld(realWorld);
    const bool hasChanged = GetParamRealWorld(index) != realWorld;
    BUFFER_HEADER* const result = UpdateParamRealWorld(index, realWorld);
    if (hasChanged && index < m_params.size())
        NotifyParamValue(index);
    return result;
}

void cALGORITHM::SetRealWorldAndUpdateAndNotifyAutomation(size_t index, double realWorld, EPluginSetup setup) {
    if (!std::isfinite(realWorld) || index >= m_params.size() ||
        (setup != kPluginSetup_A && setup != kPluginSetup_B))
        return;
    sCONTROL_PARAM& param = m_params[index];
    StoreRealWorld(param, setup, realWorld);
    param.SetRefreshMark(kRefreshMark);
    param.UpdateControllers(index);
    Touch(index);
    NotifyParamValue(index);
    Release(index);
}

bool cALGORITHM::IsUpdateParamAlwayesRequired(size_t index) const {
    return m_params[index].HasFlag(kParamFlags_AlwaysUpdate);
}

void cALGORITHM::ReportPresetModified(const sCONTROL_PARAM& param, bool hasChanged) {
    if (hasChanged && !param.HasFlag(kParamFlags_NeverModifiesPreset))
        Broadcaster()->PresetModified(m_activeSetup);
}

} // namespace kvKorvoV12_9_0_320
