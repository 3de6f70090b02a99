#include <korvolib/alg/param_description.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <string_view>
#include <unordered_set>

#include <korvolib/alg/param_description_internal.h>
#include <korvolib/utilities/number_text.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320 {
namespace ParamDescription {
namespace {

constexpr double kMostStates = 1e6;

// Reads one description; its problems name the parameter that is being read.
class Reader {
  public:
    Reader(const UserScaleFunctionsMap& userScales, std::vector<sCONTROL_PARAM>& params,
           std::vector<sDESCRIPTION_PROBLEM>& problems)
        : m_userScales(userScales), m_params(params), m_problems(problems) {}

    void Read(const KCXMLElement& root);

  private:
    template <class... Parts>
    void Report(const KCXMLElement& at, const Parts&... parts) {
        KCFixedString<255> text;
        if (!m_current.empty())
            text << m_current << ": ";
        (text << ... << parts);
        List(at.GetLine(), text);
    }
    void List(int32_t line, const KCFixedStringBase& text);
    void ReadParam(const KCXMLElement& element);
    bool TakeName(const KCXMLElement& element, sCONTROL_PARAM& param);
    void CheckChildren(const KCXMLElement& element);
    void ReadTexts(const KCXMLElement& element, sCONTROL_PARAM& param);
    void ReadFlags(const KCXMLElement& element, sCONTROL_PARAM& param);
    uint32_t FlagOf(const KCXMLElement& at, std::string_view word);
    double NumberIn(const KCXMLElement& element);
    bool ReadNumber(const KCXMLElement& parent, const char* name, double& value);
    void RequireNumber(const KCXMLElement& parent, const char* name, double& value);
    void ReadScale(const KCXMLElement& element, sCONTROL_PARAM& param);
    void ReadLinear(const KCXMLElement& element, sCONTROL_PARAM& param);
    void ReadLogarithmic(const KCXMLElement& element, sCONTROL_PARAM& param);
    void ReadToggle(const KCXMLElement& element, sCONTROL_PARAM& param);
    void ReadNamed(const KCXMLElement& element, const NamedScale& named, sCONTROL_PARAM& param);
    void ReadUser(const KCXMLElement& element, const char* type, sCONTROL_PARAM& param);
    sSCALE_INFO Coefficients(const KCXMLElement& element);
    void ReadPoints(const KCXMLElement& scaleType, Points which, sSCALE_INFO& scale);
    void CheckPoints(const KCXMLElement& scaleType, const NamedScale& named, const sSCALE_INFO& scale);
    void ReadSteps(const KCXMLElement& element, sCONTROL_PARAM& param);
    void ReadDefaults(const KCXMLElement& element, sCONTROL_PARAM& param);
    double StateIn(const KCXMLElement& element, const sCONTROL_PARAM& param);

    const UserScaleFunctionsMap& m_userScales;
    std::vector<sCONTROL_PARAM>& m_params;
    std::vector<sDESCRIPTION_PROBLEM>& m_problems;
    std::unordered_set<std::string_view> m_names; // views into the tree that is read
    KCFixedString<127> m_current;
};

void Reader::List(int32_t line, const KCFixedStringBase& text) {
    if (m_problems.size() > kMaxListedProblems)
        return;
    const bool isLast = m_problems.size() == kMaxListedProblems;
    m_problems.push_back({line, text, {}});
    if (isLast)
        m_problems.back().Text = "there are more problems than are listed";
}

void Reader::Read(const KCXMLElement& root) {
    for (const KCXMLElement& child : root.Children()) {
        m_current.clear();
        if (child.HasName(kLinkGroups))
            continue; // read by the link groups themselves
        if (!child.HasName(kParam)) {
            Report(child, "unknown element ", child.GetName());
        } else if (m_params.size() == kMaxDescribedParams) {
            Report(child, "more parameters than can be read, which is ", kMaxDescribedParams);
            return;
        } else {
            ReadParam(child);
        }
    }
}

void Reader::ReadParam(const KCXMLElement& element) {
    sCONTROL_PARAM param;
    if (!TakeName(element, param))
        return;
    CheckChildren(element);
    ReadTexts(element, param);
    ReadFlags(element, param);
    ReadScale(element, param);
    ReadSteps(element, param);
    ReadDefaults(element, param);
    m_params.push_back(std::move(param));
}

bool Reader::TakeName(const KCXMLElement& element, sCONTROL_PARAM& param) {
    const std::string_view name = element.GetAttribute(kName, "");
    if (name.empty()) {
        Report(element, "a parameter without a name is left out");
        return false;
    }
    param.SetName(KCFixedString<127>(name.data(), name.size()));
    m_current = param.GetName();
    if (name.size() > m_current.capacity())
        Report(element, "its name is cut here");
    if (!m_names.insert(name.substr(0, m_current.capacity())).second) {
        Report(element, "a second parameter of this name is left out");
        return false;
    }
    return true;
}

void Reader::CheckChildren(const KCXMLElement& element) {
    for (const KCXMLElement& child : element.Children()) {
        const bool isKnown = std::any_of(std::begin(kParamChildren), std::end(kParamChildren),
                                         [&](const char* name) { return child.HasName(name); });
        if (!isKnown)
            Report(child, "unknown element ", child.GetName());
        else if (element.FindChild(child.GetName()) != &child)
            Report(child, "a second ", child.GetName(), " is not read");
    }
}

void Reader::ReadTexts(const KCXMLElement& element, sCONTROL_PARAM& param) {
    KCFixedString<127> label;
    KCFixedString<63> units;
    if (element.ReadChildText(kLabel, label) == KEXMLValue::Found)
        param.SetLabelString(label);
    if (element.ReadChildText(kUnits, units) == KEXMLValue::Found)
        param.SetUnitsString(units);
}

void Reader::ReadFlags(const KCXMLElement& element, sCONTROL_PARAM& param) {
    const KCXMLElement* const child = element.FindChild(kFlags);
    if (child == nullptr)
        return;
    std::string_view rest = child->GetText();
    constexpr std::string_view kSeparators = " \t\r\n,|";
    uint32_t flags = 0;
    while (!rest.empty()) {
        const size_t end = std::min(rest.find_first_of(kSeparators), rest.size());
        if (end != 0)
            flags |= FlagOf(*child, rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    param.SetFlags(flags);
}

// A word of a flag list: a name, a decimal number, or a hexadecimal one after 0x.
uint32_t Reader::FlagOf(const KCXMLElement& at, std::string_view word) {
    for (const sPARAM_FLAG_NAME& flag : kParamFlagNames)
        if (word == flag.Name)
            return flag.Mask;
    const bool isHex = word.starts_with("0x") || word.starts_with("0X");
    uint64_t value = 0;
    bool isNumber = word.size() > (isHex ? 2u : 0u);
    for (const char c : isHex ? word.substr(2) : word) {
        const int digit = c >= '0' && c <= '9'            ? c - '0'
                          : isHex && c >= 'a' && c <= 'f' ? c - 'a' + 10
                          : isHex && c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                          : -1;
        isNumber = isNumber && digit >= 0 && value <= UINT32_MAX;
        value = isNumber ? value * (isHex ? 16u : 10u) + static_cast<uint64_t>(digit) : 0;
    }
    if (isNumber && value <= UINT32_MAX)
        return static_cast<uint32_t>(value);
    Report(at, "unknown flag ", word);
    return 0;
}

// The number that leads the element's text, 0 where there is none.
double Reader::NumberIn(const KCXMLElement& element) {
    double value = 0.0;
    if (element.ReadText(value) == KEXMLValue::Found)
        return value;
    const KCFixedString<63> text(element.GetText());
    if (!KUStod(element.GetText(), value) || !std::isfinite(value)) {
        Report(element, element.GetName(), " \"", text, "\" is no number, 0 is taken");
        return 0.0;
    }
    char number[kDecimalTextSize];
    FormatDecimal(value, number, sizeof number);
    Report(element, element.GetName(), " \"", text, "\" is more than a number, ", number, " is taken");
    return value;
}

// False, and the value as it was, without such a child.
bool Reader::ReadNumber(const KCXMLElement& parent, const char* name, double& value) {
    const KCXMLElement* const child = parent.FindChild(name);
    if (child != nullptr)
        value = NumberIn(*child);
    return child != nullptr;
}

void Reader::RequireNumber(const KCXMLElement& parent, const char* name, double& value) {
    if (!ReadNumber(parent, name, value))
        Report(parent, "its scale lacks a ", name, ", 0 is taken");
}

void Reader::ReadScale(const KCXMLElement& element, sCONTROL_PARAM& param) {
    const KCXMLElement* const scaleType = element.FindChild(kScaleType);
    const std::string_view type = scaleType == nullptr ? "" : scaleType->GetAttribute(kType, "");
    if (type.empty())
        Report(element, "without a ScaleType it has no scale");
    else if (type == kTypeLinear)
        ReadLinear(element, param);
    else if (type == kTypeLogarithmic)
        ReadLogarithmic(element, param);
    else if (type == kTypeToggle)
        ReadToggle(element, param);
    else if (const NamedScale* const named = FindNamedScale(type.data()))
        ReadNamed(element, *named, param);
    else if (type != kTypeNone)
        ReadUser(element, type.data(), param);
}

void Reader::ReadLinear(const KCXMLElement& element, sCONTROL_PARAM& param) {
    double min = 0.0, max = 0.0, resolution = 0.0;
    RequireNumber(element, kMinimum, min);
    RequireNumber(element, kMaximum, max);
    ReadNumber(element, kResolution, resolution);
    param.SetScaleLin(min, max, resolution);
}

void Reader::ReadLogarithmic(const KCXMLElement& element, sCONTROL_PARAM& param) {
    double min = 0.0, max = 0.0, resolution = 0.0;
    RequireNumber(element, kMinimum, min);
    RequireNumber(element, kMaximum, max);
    ReadNumber(element, kResolution, resolution);
    if (!(min > 0.0) || !(max > 0.0))
        Report(element, "a logarithmic scale needs a Minimum and a Maximum above 0");
    param.SetScaleLog(min, max, resolution);
}

void Reader::ReadToggle(const KCXMLElement& element, sCONTROL_PARAM& param) {
    double numStates = 0.0;
    if (!ReadNumber(element, kNumStates, numStates))
        ReadNumber(element, kMinimum, numStates);
    if (!(numStates >= 1.0 && numStates <= kMostStates))
        Report(element, "a toggle needs from 1 to a million states, in NumStates or Minimum");
    param.SetScaleToggle(static_cast<int>(std::clamp(numStates, 0.0, kMostStates)));
}

sSCALE_INFO Reader::Coefficients(const KCXMLElement& element) {
    sSCALE_INFO scale;
    ReadNumber(element, kMinimum, scale.a);
    ReadNumber(element, kMaximum, scale.b);
    ReadNumber(element, kVar, scale.c);
    ReadNumber(element, kResolution, scale.Quantize);
    return scale;
}

void Reader::ReadPoints(const KCXMLElement& scaleType, Points which, sSCALE_INFO& scale) {
    for (const KCXMLElement& child : scaleType.Children()) {
        if (child.HasName(kRealWorld) || child.HasName(kRealWorldExact))
            scale.RealWorldPoints.push_back(NumberIn(child));
        else if (child.HasName(kState) && which == Points::Pairs)
            scale.StatePoints.push_back(NumberIn(child));
        else
            Report(child, "unknown element ", child.GetName(), " in ScaleType");
    }
}

void Reader::CheckPoints(const KCXMLElement& scaleType, const NamedScale& named, const sSCALE_INFO& scale) {
    const std::vector<double>&values = scale.RealWorldPoints, &states = scale.StatePoints;
    if (values.empty())
        Report(scaleType, "a scale of type ", named.Name, " needs points");
    if (named.WhichPoints == Points::Pairs && values.size() != states.size())
        Report(scaleType, "it has ", values.size(), " real-world points for ", states.size(),
               " states, the common part is used");
    if (named.Scale == LinearRangesScale && !std::is_sorted(states.begin(), states.end()))
        Report(scaleType, "its State points do not ascend");
    if (named.Scale == ToggleRangesScale && !std::is_sorted(values.begin(), values.end()))
        Report(scaleType, "its real-world points do not ascend");
}

void Reader::ReadNamed(const KCXMLElement& element, const NamedScale& named, sCONTROL_PARAM& param) {
    const KCXMLElement& scaleType = *element.FindChild(kScaleType);
    sSCALE_INFO scale = Coefficients(element);
    if (named.WhichPoints != Points::None) {
        ReadPoints(scaleType, named.WhichPoints, scale);
        CheckPoints(scaleType, named, scale);
    }
    const size_t pairs = std::min(scale.RealWorldPoints.size(), scale.StatePoints.size());
    const size_t count = named.WhichPoints == Points::RealWorldOnly ? scale.RealWorldPoints.size() : pairs;
    param.SetScaleGeneric(named.Type, KCFixedString<127>(named.Name), scale, named.Scale, named.Inverse);
    if (named.Type == kParamType_Discrete)
        param.SetNumStates(static_cast<int>(count));
}

void Reader::ReadUser(const KCXMLElement& element, const char* type, sCONTROL_PARAM& param) {
    const auto found = m_userScales.find(KCFixedString<127>(type));
    if (found == m_userScales.end()) {
        Report(*element.FindChild(kScaleType), "unknown scale type ", type, ", it has no scale");
        return;
    }
    sSCALE_INFO scale = Coefficients(element);
    ReadPoints(*element.FindChild(kScaleType), Points::Pairs, scale);
    const sUserScaleFunctions& functions = found->second;
    param.SetScaleGeneric(functions.Type, found->first, scale, functions.Scale, functions.InverseScale);
    if (functions.Type == kParamType_Discrete)
        param.SetNumStates(static_cast<int>(scale.RealWorldPoints.size()));
}

void Reader::ReadSteps(const KCXMLElement& element, sCONTROL_PARAM& param) {
    double numStates = 0.0, step = 1.0;
    const bool isToggle = param.GetScaleFunction() == ToggleScale; // which has read them already
    if (!isToggle && ReadNumber(element, kNumStates, numStates)) {
        if (numStates >= 0.0 && numStates <= kMostStates)
            param.SetNumStates(static_cast<int>(numStates));
        else
            Report(element, "NumStates is from 0 to a million, this one is not taken");
    }
    if (ReadNumber(element, kStateStep, step)) {
        if (step > 0.0)
            param.SetStateStep(step);
        else
            Report(element, "a StateStep is above 0, 1 is taken");
    }
}

// The state that a Default or Reset element stands for.
double Reader::StateIn(const KCXMLElement& element, const sCONTROL_PARAM& param) {
    const KCFixedString<31> type(element.GetAttribute(kType, kRealWorldExact));
    if (type == kTypeStateExact)
        return ClampState(NumberIn(element));
    double state = 0.0, realWorld = 0.0;
    if (param.SetScaleDefaults(NumberIn(element), type, state, realWorld) != kErr_NoErr)
        Report(element, "unknown type ", type, " of a ", element.GetName(), ", its start is taken");
    return ClampState(state); // the inverse of a value that was rounded beyond the ends lies beyond them too
}

void Reader::ReadDefaults(const KCXMLElement& element, sCONTROL_PARAM& param) {
    const KCXMLElement* const initial = element.FindChild(kDefault);
    const KCXMLElement* const reset = element.FindChild(kReset);
    param.SetInitialState(initial == nullptr ? 0.0 : StateIn(*initial, param));
    param.SetResetState(reset == nullptr ? param.GetInitialState() : StateIn(*reset, param));
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B}) {
        param.SetState(setup, param.GetInitialState());
        param.UpdateRealWorldFromState(setup);
    }
    param.UpdateValueString(kPluginSetup_A);
}

} // namespace
} // namespace ParamDescription

int32_t ReadParamDescription(const KCXMLElement& root, const UserScaleFunctionsMap& userScales,
                             std::vector<sCONTROL_PARAM>& params,
                             std::vector<sDESCRIPTION_PROBLEM>& problems) noexcept {
    params.clear();
    problems.clear();
    try {
        ParamDescription::Reader(userScales, params, problems).Read(root);
    } catch (const std::exception&) {
        params.clear();
        return kErr_AllocationFailed;
    }
    return problems.empty() ? kErr_NoErr : kErr_BadDescription;
}

int32_t ReadParamDescription(const void* bytes, size_t size, const UserScaleFunctionsMap& userScales,
                             std::vector<sCONTROL_PARAM>& params,
                             std::vector<sDESCRIPTION_PROBLEM>& problems) noexcept {
    KCXMLElement root;
    sXML_ERROR error;
    const int32_t result = root.Parse(bytes, size, &error);
    if (result == kErr_NoErr)
        return ReadParamDescription(root, userScales, params, problems);
    params.clear();
    problems.clear();
    try {
        problems.emplace_back().Line = error.line;
        problems.back().Text = error.text;
    } catch (const std::exception&) {
        return kErr_AllocationFailed;
    }
    return result;
}

} // namespace kvKorvoV12_9_0_320
