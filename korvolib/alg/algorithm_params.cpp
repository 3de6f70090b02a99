// What can be asked of one parameter by its index: a thin layer over the records.

#include <korvolib/alg/algorithm_internal.h>
#include <korvolib/alg/param_stepping.h>
#include <korvolib/alg/param_text.h>

#include <algorithm>

namespace kvKorvoV12_9_0_320 {

namespace {
const KCFixedString<127> kNoText;
} // namespace

size_t cALGORITHM::GetParamIDFromName(const KCFixedStringBase& name) const {
    return GetParamIDFromName(std::string_view(name.c_str(), name.size()));
}

size_t cALGORITHM::GetParamIDFromName(const char* name) const {
    return name == nullptr ? kNoParam : GetParamIDFromName(std::string_view(name));
}

size_t cALGORITHM::GetParamIDFromName(std::string_view name) const {
    if (m_rest->isPrepared) {
        const auto found = m_rest->indexByName.find(name);
        return found == m_rest->indexByName.end() ? kNoParam : found->second;
    }
    for (size_t index = 0; index < m_params.size(); ++index)
        if (m_params[index].GetName() == name)
            return index;
    return kNoParam;
}

double cALGORITHM::GetParamInitialState(size_t index) const {
    return index < m_params.size() ? m_params[index].GetInitialState() : 0.0;
}

double cALGORITHM::GetParamResetState(size_t index) const {
    return index < m_params.size() ? m_params[index].GetResetState() : 0.0;
}

void cALGORITHM::SetParamResetState(size_t index, double state) {
    if (index < m_params.size())
        m_params[index].SetResetState(state);
}

int32_t cALGORITHM::GetParamNumStates(size_t index) const {
    return index < m_params.size() ? m_params[index].GetNumStates() : 0;
}

double cALGORITHM::GetStateStep(size_t index) const {
    return index < m_params.size() ? m_params[index].GetStateStep() : 0.0;
}

int32_t cALGORITHM::GetParamType(size_t index) const {
    return index < m_params.size() ? m_params[index].GetType() : 0;
}

uint32_t cALGORITHM::GetParamFlags(size_t index) const {
    return index < m_params.size() ? m_params[index].GetFlags() : 0;
}

const KCFixedString<127>& cALGORITHM::GetParamScaleType(size_t index) const {
    return index < m_params.size() ? m_params[index].GetScaleType() : kNoText;
}

const KCFixedString<127>& cALGORITHM::GetParamName(size_t index) const {
    return index < m_params.size() ? m_params[index].GetName() : kNoText;
}

bool cALGORITHM::IsParamUnused(size_t index) const { return index < m_params.size() && m_params[index].IsUnused(); }

void cALGORITHM::GetParamValueString(size_t index, KCFixedStringBase& out) const {
    out.clear();
    if (index >= m_params.size())
        return;
    const sCONTROL_PARAM& param = m_params[index];
    if (param.IsValueStringCurrent())
        out = param.GetValueString();
    else
        FormatValueText(param, param.GetRealWorld(m_activeSetup), out);
}

void cALGORITHM::SetParamValueString(size_t index, const KCFixedStringBase& text) {
    if (index < m_params.size())
        m_params[index].SetValueString(text);
}

void cALGORITHM::GetParamLabelString(size_t index, KCFixedStringBase& out) const {
    out.clear();
    if (index < m_params.size())
        out = m_params[index].GetLabelString();
}

void cALGORITHM::GetParamUnitsString(size_t index, KCFixedStringBase& out) const {
    out.clear();
    if (index < m_params.size())
        out = m_params[index].GetUnitsString();
}

double cALGORITHM::StateToRealWorld(size_t index, double state) const {
    return index < m_params.size() ? m_params[index].StateToRealWorld(state) : 0.0;
}

double cALGORITHM::RealWorldToState(size_t index, double realWorld) const {
    return index < m_params.size() ? std::clamp(m_params[index].RealWorldToState(realWorld), 0.0, kFullTravel)
                                   : 0.0;
}

double cALGORITHM::GetParamNextState(const sCONTROL_PARAM* param, double state, double offset) const {
    return ParamStepping::NextState(param, state, offset);
}

double cALGORITHM::OffsetToNextDifferentState(size_t index, double direction) const {
    if (index >= m_params.size() || !(direction != 0.0) || std::isnan(direction))
        return 0.0;
    return m_params[index].IsDiscrete() ? OffsetToNextDifferentStateDiscrete(index, direction)
                                        : OffsetToNextDifferentStateContinuous(index, direction);
}

double cALGORITHM::OffsetToNextDifferentStateContinuous(size_t index, double direction) const {
    return index < m_params.size() ? ParamStepping::OffsetContinuous(m_params[index], m_activeSetup, direction)
                                   : 0.0;
}

double cALGORITHM::OffsetToNextDifferentStateDiscrete(size_t index, double direction) const {
    if (index >= m_params.size())
        return 0.0;
    return ParamStepping::OffsetDiscrete(m_params[index], m_activeSetup, direction, IsParamInLinkedMode(index));
}

ETranslateTextRetType cALGORITHM::TranslateTextToRealWorld(size_t index, const KCFixedStringBase& text,
                                                           double& realWorld) const {
    if (index >= m_params.size())
        return kTranslateText_Refused;
    const sCONTROL_PARAM& param = m_params[index];
    switch (ParseValueText(param, text, realWorld)) {
    case KEValueText::NoNumber:
        return kTranslateText_Refused;
    case KEValueText::BottomOfScale:
        return kTranslateText_Accepted;
    case KEValueText::Number:
        break;
    }
    if (!ValidateRealWorld(index, realWorld))
        return kTranslateText_Refused;
    LimitTypedRealWorld(param, realWorld);
    return kTranslateText_Accepted;
}

bool cALGORITHM::ValidateRealWorld(size_t index, double realWorld) const {
    return index < m_params.size() && m_params[index].ValidateRealWorld(realWorld) &&
           ValidateRealWorldSelf(index, realWorld) == ValidationResult::kAccepted;
}

ValidationResult::Type cALGORITHM::ValidateRealWorldSelf(size_t, double) const {
    return ValidationResult::kAccepted;
}

void cALGORITHM::LimitLoadedRealWorld(size_t, EPluginSetup) {}

void cALGORITHM::RefreshAllParams() {
    for (sCONTROL_PARAM& param : m_params)
        param.SetRefreshMark(kRefreshMark);
}

} // namespace kvKorvoV12_9_0_320
