#include <korvolib/control/link_laws.h>

#include <algorithm>

#include <korvolib/control/link_groups.h>

namespace kvKorvoV12_9_0_320 {

KCLinkFuncInterface::~KCLinkFuncInterface() = default;
bool KCLinkFuncInterface::AmIAbsolute() const { return false; }

bool KCLinkAbsoluteImpl::AmIAbsolute() const { return true; }

void KCLinkAbsoluteImpl::LinkFunc(size_t source, size_t destination) {
    KCLinkGroups& groups = Groups();
    groups.m_distanceSign = 0.0;
    std::vector<sCONTROL_PARAM>& params = groups.GetParams();
    if (source >= params.size() || destination >= params.size())
        return;
    const EPluginSetup setup = groups.GetAlgSetup();
    const double realWorld = params[source].GetRealWorld(setup);
    sCONTROL_PARAM& param = params[destination];
    param.SetRealWorld(setup, realWorld);
    param.SetRefreshMark(kRefreshMark);
    if (param.GetInverseScaleFunction() == nullptr)
        return;
    const double top = param.IsDiscrete() ? (param.GetNumStates() - 1.0) * param.GetStateStep() : kFullTravel;
    const auto [lowest, highest] = std::minmax({param.StateToRealWorld(0.0), param.StateToRealWorld(top)});
    const double state = param.RealWorldToState(realWorld);
    if (realWorld >= lowest && realWorld <= highest) {
        param.SetState(setup, state);
        return;
    }
    param.SetState(setup, std::clamp(state, 0.0, std::max(top, 0.0)));
    param.UpdateRealWorldFromState(setup);
}

void KCLinkRelativeImpl::LinkFunc(size_t source, size_t destination) { Groups().LinkRelative(source, destination); }

void KCLinkReverseImpl::LinkFunc(size_t source, size_t destination) { Groups().LinkReverse(source, destination); }

} // namespace kvKorvoV12_9_0_320
