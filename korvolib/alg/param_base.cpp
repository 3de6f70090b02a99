#include <korvolib/alg/param_base.h>

#include <cmath>
#include <limits>

#include <korvolib/alg/param_text.h>

namespace kvKorvoV12_9_0_320 {
namespace {

constexpr double kStatesPerTravel = 0.001; // reciprocal of full travel, as the set-ups multiply by it

bool IsUsableStep(double step) noexcept { return step > 0.0 && step <= std::numeric_limits<double>::max(); }

// From below zero to as far above it, but for what rounding leaves.
bool AreOpposite(double low, double high) noexcept {
    return low < 0.0 && high > 0.0 && std::fabs(low + high) <= 1e-9 * high;
}

double ClampOrZero(double state) noexcept { return std::isnan(state) ? 0.0 : ClampState(state); }

} // namespace

void KCParam_Base::CopySetup(EPluginSetup from, EPluginSetup to) noexcept {
    if (!IsPluginSetup(from) || !IsPluginSetup(to))
        return;
    m_state[to] = m_state[from];
    m_realWorld[to] = m_realWorld[from];
    m_setupWord[to] = m_setupWord[from];
    m_isValueStringCurrent = false;
}

void KCParam_Base::SetScaleEnds(double min, double max, double quantize, double slope, const char* scaleType) {
    m_minimum = min;
    m_maximum = max;
    m_scale.a = min;
    m_scale.b = slope;
    m_scale.c = 0.0;
    m_scale.SetQuantize(quantize);
    m_scale.RealWorldPoints.clear();
    m_scale.StatePoints.clear();
    m_scale.ScaleTypeName = scaleType;
    m_scaleType = scaleType;
}

void KCParam_Base::SetScaleLin(double min, double max, double quantize) {
    m_type = kParamType_Continuous;
    SetScaleEnds(min, max, quantize, (max - min) * kStatesPerTravel, "linear");
    m_scaleFunction = quantize > 1.0 ? ExtendedResLinearScale : LinearScale;
    m_inverseScaleFunction = InverseLinearScale;
    SettleSymmetry();
}

void KCParam_Base::SetScaleLog(double min, double max, double quantize) {
    m_type = kParamType_Continuous;
    SetScaleEnds(min, max, quantize, std::pow(max / min, kStatesPerTravel), "logarithmic");
    m_scaleFunction = quantize > 1.0 ? ExtendedResLogScale : LogScale;
    m_inverseScaleFunction = InverseLogScale;
    SettleSymmetry();
}

void KCParam_Base::SetScaleToggle(int numStates) {
    m_type = kParamType_Discrete;
    m_numStates = numStates < 0 ? 0 : numStates;
    SetScaleEnds(m_numStates, 0.0, 1.0, 0.0, "toggle");
    m_scaleFunction = ToggleScale;
    m_inverseScaleFunction = InverseToggleScale;
    SettleSymmetry();
}

void KCParam_Base::SetScaleGeneric(int type, const KCFixedStringBase& scaleType, const sSCALE_INFO& scale,
                                   ScaleFunction scaleFunction, ScaleFunction inverseScaleFunction) {
    m_type = type;
    m_scaleFunction = scaleFunction;
    m_inverseScaleFunction = inverseScaleFunction;
    SetScale(scale);
    m_scaleType = scaleType;
    m_scale.ScaleTypeName = scaleType;
}

void KCParam_Base::SetScale(const sSCALE_INFO& scale) {
    m_scale = scale;
    m_scale.SetQuantize(scale.Quantize);
    m_minimum = StateToRealWorld(0.0);
    m_maximum = StateToRealWorld(kFullTravel);
    SettleSymmetry();
}

void KCParam_Base::SettleSymmetry() {
    m_isSymmetric = AreOpposite(StateToRealWorld(0.0), StateToRealWorld(kFullTravel));
}

bool KCParam_Base::IsSymmetricUpTo(double lastState) const {
    return lastState == kFullTravel ? m_isSymmetric
                                    : AreOpposite(StateToRealWorld(0.0), StateToRealWorld(lastState));
}

bool KCParam_Base::GetScaleLin(double& min, double& max, double& quantize) const noexcept {
    const bool isLinear = m_inverseScaleFunction == InverseLinearScale;
    min = isLinear ? m_minimum : 0.0;
    max = isLinear ? m_maximum : 0.0;
    quantize = isLinear ? m_scale.Quantize : 0.0;
    return isLinear;
}

bool KCParam_Base::GetScaleLog(double& min, double& max, double& quantize) const noexcept {
    const bool isLog = m_inverseScaleFunction == InverseLogScale;
    min = isLog ? m_minimum : 0.0;
    max = isLog ? m_maximum : 0.0;
    quantize = isLog ? m_scale.Quantize : 0.0;
    return isLog;
}

bool KCParam_Base::GetScaleToggle(int& numStates) const noexcept {
    const bool isToggle = m_scaleFunction == ToggleScale;
    numStates = isToggle ? m_numStates : 0;
    return isToggle;
}

bool KCParam_Base::GetScaleGeneric(sSCALE_INFO& scale, ScaleFunction& scaleFunction,
                                   ScaleFunction& inverseScaleFunction) const {
    scale = m_scale;
    scaleFunction = m_scaleFunction;
    inverseScaleFunction = m_inverseScaleFunction;
    return m_scaleFunction != nullptr;
}

double KCParam_Base::QuantizeState(double state) const noexcept {
    return IsUsableStep(m_stateStep) ? std::floor(state / m_stateStep + 0.5) * m_stateStep : state;
}

void KCParam_Base::LimitRealWorld(double& realWorld) const {
    realWorld = StateToRealWorld(ClampOrZero(RealWorldToState(realWorld)));
}

int KCParam_Base::SetScaleDefaults(double value, const KCFixedStringBase& valueType, double& state,
                                   double& realWorld) const {
    int result = kErr_NoErr;
    const bool isExact = valueType.compare("RealWorldExact") == 0;
    if (valueType.compare("double") == 0)
        state = (value < 0.0 ? 0.0 : (value > 1.0 ? 1.0 : value)) * kFullTravel;
    else if (valueType.compare("state") == 0)
        state = value;
    else if (valueType.compare("RealWorld") == 0)
        state = std::round(RealWorldToState(value));
    else if (isExact)
        state = RealWorldToState(value);
    else
        result = kErr_Generic;
    realWorld = StateToRealWorld(ClampOrZero(state));
    state = RealWorldToState(realWorld);
    if (!isExact)
        state = std::round(state);
    return result;
}

void KCParam_Base::UpdateValueString(EPluginSetup setup) {
    FormatValueText(*this, GetRealWorld(setup), m_valueString);
    m_isValueStringCurrent = true;
}

ETranslateTextRetType KCParam_Base::TranslateValueString(const KCFixedStringBase& text, double& realWorld) const {
    double number = 0.0;
    switch (ParseValueText(*this, text, number)) {
    case KEValueText::NoNumber:
        return kTranslateText_Refused;
    case KEValueText::BottomOfScale:
        realWorld = number;
        return kTranslateText_Accepted;
    case KEValueText::Number:
        break;
    }
    realWorld = number;
    if (!ValidateRealWorld(number))
        return kTranslateText_Refused;
    LimitTypedRealWorld(*this, realWorld);
    return kTranslateText_Accepted;
}

void KCParam_Base::ResetMembers() { *this = KCParam_Base(); }

void KCParam_Base::copy_members(const KCParam_Base& other) { *this = other; }

} // namespace kvKorvoV12_9_0_320
