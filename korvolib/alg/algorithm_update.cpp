// How one parameter changes: the update operations, in the order in which others hear of it.

#include <korvolib/alg/algorithm_internal.h>
#include <korvolib/alg/param_stepping.h>

#include <cmath>

namespace kvKorvoV12_9_0_320 {

namespace {

// Whether an update to the state that the parameter has already must run all the same.
bool IsRepeatDue(const sCONTROL_PARAM& param, uint32_t flags) {
    return (flags & kParamFlags_AlwaysUpdate) != 0 || param.IsUpdatePending() ||
           ((flags & kParamFlag_CompareForModified) != 0 && param.IsComparisonPending());
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
    const EPluginSetup setup = m_activeSetup;
    const uint32_t flags = param.GetFlags();
    const double settled = ParamStepping::Settle(param, state);
    if (param.GetState(setup) == settled && !IsRepeatDue(param, flags))
        return nullptr;

    const double oldRealWorld = param.GetRealWorld(setup);
    const double newRealWorld = param.UpdateState(setup, settled);
    if ((flags & kParamFlag_BothSetups) != 0)
        param.UpdateState(OtherPluginSetup(setup), settled);
    param.UpdateControllers(index);
    if (!HasVisiblyChanged(oldRealWorld, newRealWorld) && !IsUpdateParamAlwayesRequired(index)) {
        param.SetRefreshMark(kRefreshMark);
        return nullptr;
    }
    sChain result(*this, ApplyParamSelf(index));
    const bool isUnlikeComparison =
        (flags & kParamFlag_CompareForModified) != 0 && param.GetComparisonValue() != newRealWorld;
    ReportPresetModified(param, oldRealWorld != newRealWorld || isUnlikeComparison);
    if (notify)
        NotifyParamValue(index);
    return result.Release();
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
    sChain result(*this, ApplyParamSelf(index));
    ReportPresetModified(param, hasChanged);
    return result.Release();
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::UpdateParamRequestRealWorld(size_t index, double realWorld) {
    if (!std::isfinite(realWorld))
        return nullptr;
    const KCAlgorithmLock lock(*this);
    if (index < m_params.size())
        m_params[index].LimitRealWorld(realWorld);
    const bool hasChanged = GetParamRealWorld(index) != realWorld;
    sChain result(*this, UpdateParamRealWorld(index, realWorld));
    if (hasChanged && index < m_params.size())
        NotifyParamValue(index);
    return result.Release();
}

void cALGORITHM::SetRealWorldAndUpdateAndNotifyAutomation(size_t index, double realWorld, EPluginSetup setup) {
    setup = Resolve(setup);
    if (!std::isfinite(realWorld) || index >= m_params.size() || !IsPluginSetup(setup))
        return;
    sCONTROL_PARAM& param = m_params[index];
    StoreRealWorld(param, setup, realWorld);
    param.SetRefreshMark(kRefreshMark);
    param.UpdateControllers(index);
    Touch(index);
    NotifyParamValue(index);
    Release(index);
}

} // namespace kvKorvoV12_9_0_320
