#include <korvolib/alg/param_description.h>

#include <korvolib/alg/param_description_internal.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320 {
namespace ParamDescription {
namespace {

// Adds children to one element and remembers whether all of them were taken.
class Writer {
  public:
    explicit Writer(KCXMLElement& element) noexcept : m_element(element) {}

    KCXMLElement* Add(const char* name, const KUXMLValue& text) noexcept {
        KCXMLElement* const child = text.IsValid() ? m_element.AddChild(name, text) : nullptr;
        m_isWhole = m_isWhole && child != nullptr;
        return child;
    }
    void AddTyped(const char* name, const char* type, const KUXMLValue& text) noexcept {
        KCXMLElement* const child = Add(name, text);
        m_isWhole = m_isWhole && child->SetAttribute(kType, type) == kErr_NoErr;
    }
    void AddUnlessZero(const char* name, double value) noexcept {
        if (value != 0.0)
            Add(name, value);
    }
    bool IsWhole() const noexcept { return m_isWhole; }

  private:
    KCXMLElement& m_element;
    bool m_isWhole = true;
};

void WriteTexts(const sCONTROL_PARAM& param, Writer& writer) noexcept {
    if (!param.GetLabelString().empty())
        writer.Add(kLabel, param.GetLabelString());
    if (!param.GetUnitsString().empty())
        writer.Add(kUnits, param.GetUnitsString());
}

// Names for the bits that have one, one hexadecimal number for all others.
void WriteFlags(uint32_t flags, Writer& writer) noexcept {
    KCFixedString<255> text;
    uint32_t rest = flags;
    for (const sPARAM_FLAG_NAME& flag : kParamFlagNames)
        if ((rest & flag.Mask) != 0) {
            text << (text.empty() ? "" : " ") << flag.Name;
            rest &= ~flag.Mask;
        }
    if (rest != 0) {
        text << (text.empty() ? "0x" : " 0x");
        text.append_uint(rest, 16);
    }
    if (flags != 0)
        writer.Add(kFlags, text);
}

bool WritePoints(const sSCALE_INFO& scale, KCXMLElement& scaleType) noexcept {
    Writer writer(scaleType);
    const size_t count = scale.RealWorldPoints.size();
    const size_t numStates = scale.StatePoints.size();
    for (size_t i = 0; i < count || i < numStates; ++i) {
        if (i < numStates)
            writer.Add(kState, scale.StatePoints[i]);
        if (i < count)
            writer.Add(kRealWorld, scale.RealWorldPoints[i]);
    }
    return writer.IsWhole();
}

// Minimum, Maximum, Var and Resolution as the parameter's kind of scale reads them.
void WriteCoefficients(const sCONTROL_PARAM& param, Writer& writer) noexcept {
    double min = 0.0, max = 0.0, resolution = 0.0;
    const KCFixedString<127>& type = param.GetScaleType();
    if (type == kTypeLinear || type == kTypeLogarithmic) {
        type == kTypeLinear ? param.GetScaleLin(min, max, resolution) : param.GetScaleLog(min, max, resolution);
        writer.Add(kMinimum, min);
        writer.Add(kMaximum, max);
        writer.AddUnlessZero(kResolution, resolution);
    } else if (type != kTypeToggle) {
        const sSCALE_INFO& scale = param.GetScale();
        writer.AddUnlessZero(kMinimum, scale.a);
        writer.AddUnlessZero(kMaximum, scale.b);
        writer.AddUnlessZero(kVar, scale.c);
        writer.AddUnlessZero(kResolution, scale.Quantize);
    }
}

bool WriteScale(const sCONTROL_PARAM& param, KCXMLElement& element) noexcept {
    Writer writer(element);
    WriteCoefficients(param, writer);
    KCXMLElement* const scaleType = writer.Add(kScaleType, "");
    if (!writer.IsWhole())
        return false;
    const KUXMLValue type = param.GetScaleFunction() == nullptr ? KUXMLValue(kTypeNone) : param.GetScaleType();
    return scaleType->SetAttribute(kType, type) == kErr_NoErr && WritePoints(param.GetScale(), *scaleType);
}

// What reading makes of a default of this type.
double StateReadFrom(const sCONTROL_PARAM& param, const char* type, double value) noexcept {
    double state = 0.0, realWorld = 0.0;
    param.SetScaleDefaults(value, KCFixedString<31>(type), state, realWorld);
    return ClampState(state);
}

// In the first form that reads back to this very state.
void WriteState(const char* name, const sCONTROL_PARAM& param, double state, Writer& writer) noexcept {
    const double realWorld = param.StateToRealWorld(state);
    if (StateReadFrom(param, kTypeState, state) == state)
        writer.AddTyped(name, kTypeState, state);
    else if (StateReadFrom(param, kRealWorldExact, realWorld) == state)
        writer.AddTyped(name, kRealWorldExact, realWorld);
    else
        writer.AddTyped(name, kTypeStateExact, state);
}

bool WriteParam(const sCONTROL_PARAM& param, KCXMLElement& element) noexcept {
    if (element.SetAttribute(kName, param.GetName()) != kErr_NoErr)
        return false;
    Writer writer(element);
    WriteTexts(param, writer);
    WriteFlags(param.GetFlags(), writer);
    if (!WriteScale(param, element))
        return false;
    if (param.GetNumStates() != 0)
        writer.Add(kNumStates, param.GetNumStates());
    if (param.GetStateStep() != 1.0)
        writer.Add(kStateStep, param.GetStateStep());
    WriteState(kDefault, param, param.GetInitialState(), writer);
    if (param.GetResetState() != param.GetInitialState())
        WriteState(kReset, param, param.GetResetState(), writer);
    return writer.IsWhole();
}

} // namespace
} // namespace ParamDescription

int32_t WriteParamDescription(const std::vector<sCONTROL_PARAM>& params, KCXMLElement& root) noexcept {
    using namespace ParamDescription;
    root.Clear();
    bool isWhole = root.SetName(kParams) == kErr_NoErr;
    for (const sCONTROL_PARAM& param : params) {
        KCXMLElement* const element = isWhole ? root.AddChild(kParam) : nullptr;
        isWhole = element != nullptr && WriteParam(param, *element);
    }
    if (!isWhole)
        root.Clear();
    return isWhole ? kErr_NoErr : kErr_BadDescription;
}

} // namespace kvKorvoV12_9_0_320
