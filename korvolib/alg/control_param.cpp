#include <korvolib/alg/control_param.h>

#include <algorithm>
#include <cmath>

namespace kvKorvoV12_9_0_320 {
namespace {

void AddOnce(std::vector<int>& groups, int group) {
    if (std::find(groups.begin(), groups.end(), group) == groups.end())
        groups.push_back(group);
}

} // namespace

void sCONTROL_PARAM::SetLab(bool isLab) noexcept {
    SetFlags(isLab ? GetFlags() | kParamFlag_Lab : GetFlags() & ~kParamFlag_Lab);
}

void sCONTROL_PARAM::AddLinkGroup(int group) { AddOnce(m_linkGroups, group); }

void sCONTROL_PARAM::AddControlledLinkGroup(int group) { AddOnce(m_controlledLinkGroups, group); }

void sCONTROL_PARAM::SetMouseDeltaFunc(MouseDeltaFunction function) noexcept {
    m_mouseDelta = function == nullptr ? DefaultMouseDelta : function;
}

double sCONTROL_PARAM::DefaultMouseDelta(double deltaPixels, double acceleration) noexcept {
    return acceleration > 0.0 ? deltaPixels * (1.0 + acceleration * std::fabs(deltaPixels)) : deltaPixels;
}

void sCONTROL_PARAM::UpdateDisabledMode(int32_t mode) noexcept {
    if (m_disabledMode == mode)
        return;
    m_disabledMode = mode;
    SetRefreshMark();
}

void sCONTROL_PARAM::SetHidden(bool isHidden) noexcept {
    if (m_isHidden == isHidden)
        return;
    m_isHidden = isHidden;
    SetRefreshMark();
}

void sCONTROL_PARAM::SetCurrentImage(EPluginSetup setup, int32_t image) noexcept {
    if (IsPluginSetup(setup))
        m_image[setup] = image;
}

void sCONTROL_PARAM::ResetMembers() { *this = sCONTROL_PARAM(); }

void sCONTROL_PARAM::copy_members(const sCONTROL_PARAM& other) { *this = other; }

} // namespace kvKorvoV12_9_0_320
