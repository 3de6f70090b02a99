// A registration as a description tells of it.

#include <korvolib/gui/param_registration.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include <korvolib/gui/attribute_writer_internal.h>
#include <korvolib/gui/description_numbers_internal.h>
#include <korvolib/utilities/number_text.h>

namespace kvKorvoV12_9_0_320 {
namespace {

using namespace GUIDescription;

constexpr const char* kModifierWords[kNumModifiers] = {"Primary", "Secondary", "Shift", "Alt"};
constexpr double kLongestDelayMs = 1e6;

bool IsRegister(const KCXMLElement& element) noexcept {
    return element.HasName("Register") || element.HasName("RegisterType");
}

// "1 2 7"
void ReadLinkGroups(const KCXMLElement& element, KCParamRegistrationData& registration, Problems& problems) {
    std::string_view text = element.GetAttribute("LinkGroups", "");
    while (!text.empty()) {
        const size_t length = std::min(text.find_first_of(" \t\r\n"), text.size());
        KCFixedString<31> word(text.data(), length);
        text.remove_prefix(std::min(length + 1, text.size()));
        int32_t group = 0;
        if (ReadXMLValue(word.c_str(), group) == KEXMLValue::Found)
            registration.AddParamLinkGroup(group);
        else if (!word.empty())
            AddProblem(element, "a link group is a whole number, not", word.c_str(), problems);
    }
}

KCFixedString<63> ModifiersText(KUModifiers modifiers) noexcept {
    KCFixedString<63> text;
    for (size_t i = 0; i < kNumModifiers; ++i)
        if (modifiers.Has(static_cast<KEModifier>(i)))
            text << (text.empty() ? "" : " ") << kModifierWords[i];
    return text;
}

int32_t WriteValueChild(KCXMLElement& element, const char* name, double value) {
    if (value < 0.0)
        return kErr_NoErr;
    KCXMLElement* const child = element.AddChild(name);
    return child == nullptr ? kErr_AllocationFailed : child->SetAttribute("Value", value);
}

template <class Window>
int32_t WriteWindowChild(KCXMLElement& element, const char* name, const Window& win) {
    if (win == Window())
        return kErr_NoErr;
    KCXMLElement* const child = element.AddChild(name);
    return child == nullptr ? kErr_AllocationFailed : WriteWindowToXML(*child, win);
}

// A state of a "Drag" or "Drop"; there is no list for what does not read, its reader reports it.
bool ReadStateValue(const KCXMLElement& element, double& state) noexcept {
    double value = 0.0;
    if (element.ReadAttribute("Value", value) != KEXMLValue::Found || !(value >= 0.0 && value <= kFullTravel))
        return false;
    state = value;
    return true;
}

} // namespace

// Reading
// -----------------------------------------------------------------------------------------------------------

KUModifiers KCParamRegistrationData::ReadModifiers(const KCXMLElement& element) noexcept {
    const char* const text = element.GetAttribute("Modifiers", "");
    KUModifiers modifiers;
    for (size_t i = 0; i < kNumModifiers; ++i)
        modifiers.Set(static_cast<KEModifier>(i), std::strstr(text, kModifierWords[i]) != nullptr);
    return modifiers;
}

int32_t KCParamRegistrationData::ReadFromXML(const KCXMLElement& element, cALGORITHM& algorithm,
                                             Problems& problems) {
    if (!FindParam(element, algorithm, problems))
        return kErr_BadDescription;
    XMLSanityCheckDebugOnly(element, problems);
    ReadAttributes(element, problems);
    ReadChildren(element, problems);
    return kErr_NoErr;
}

// A record of an array without a name of its own begins with the array's first parameter.
bool KCParamRegistrationData::FindParam(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems) {
    const char* const array = element.GetAttribute("Array");
    KCFixedString<127> name(element.GetAttribute("Name", array == nullptr ? "" : array));
    if (array != nullptr && !element.HasAttribute("Name"))
        name << " 1";
    const size_t index = algorithm.GetParamIDFromName(name);
    if (index == kNoParam) {
        AddProblem(element, "no parameter is named", name.c_str(), problems);
        return false;
    }
    SetRegisteredParam(&algorithm, index);
    return true;
}

void KCParamRegistrationData::ReadAttributes(const KCXMLElement& element, Problems& problems) {
    m_role = element.GetAttribute("Role", m_role.c_str());
    m_arrayName = element.GetAttribute("Array", m_arrayName.c_str());
    ReadNumber(element, "FixedState", 0.0, kFullTravel, m_fixedState, problems);
    ReadNumber(element, "Sensitivity", -kMostSensitive, kMostSensitive, m_sensitivity, problems);
    ReadLinkGroups(element, *this, problems);
    if (element.ReadAttribute("SpecificData", m_specificData) == KEXMLValue::Malformed)
        AddProblem(element, "SpecificData is a whole number, not", element.GetAttribute("SpecificData"), problems);
}

void KCParamRegistrationData::ReadChildren(const KCXMLElement& element, Problems& problems) {
    bool isFirst = true;
    for (const KCXMLElement& child : element.Children()) {
        if (!IsRegister(child)) {
            ReadWindow(child, problems);
            continue;
        }
        // Those without a meaning are reported here, whatever record they would have been of.
        ERegisterType type = kRegister_Highlight;
        const bool isOfThis = isFirst || ReadModifiers(child) == m_info.GetModifiers();
        if (!RegisterTypeFromName(child.GetAttribute("Type"), type) || isOfThis)
            isFirst = TakeRegister(child, isFirst, problems) != kErr_NoErr && isFirst;
    }
}

void KCParamRegistrationData::ReadWindow(const KCXMLElement& child, Problems& problems) {
    if (child.HasName("Drag") || child.HasName("Drop")) {
        if ((child.HasName("Drag") ? ReadFromXMLDrag(child) : ReadFromXMLDrop(child)) != kErr_NoErr)
            AddProblem(child, "Value is a state from 0 to 1000, not", child.GetAttribute("Value", ""), problems);
    } else if (child.HasName("LabelWin")) {
        ReadFromXMLTextWin(child, m_label, problems);
    } else if (child.HasName("ValueWin")) {
        ReadFromXMLTextWin(child, m_valueWin, problems);
    } else if (child.HasName("UnitsWin")) {
        ReadFromXMLTextWin(child, m_units, problems);
    } else if (child.HasName("BitmapWin")) {
        ReadWindowFromXML(child, m_bitmap, problems);
    } else if (child.HasName("ParamDependantGraphWin")) {
        ReadWindowFromXML(child, m_graph, problems);
    }
}

int32_t KCParamRegistrationData::ReadFromXMLRegister(const KCXMLElement& element, Problems& problems) {
    return TakeRegister(element, m_info.CompareRegisterTypes(KCRegisterInfo()), problems);
}

int32_t KCParamRegistrationData::TakeRegister(const KCXMLElement& element, bool isFirst, Problems& problems) {
    ERegisterType type = kRegister_Highlight;
    const char* const word = element.GetAttribute("Type", "");
    if (!RegisterTypeFromName(word, type)) {
        AddProblem(element, "no gesture is named", word, problems);
        return kErr_BadDescription;
    }
    if (isFirst) { // until now it only highlights
        m_info.SetFlag(kRegister_Highlight, false);
        m_info.SetType(type);
        m_info.SetModifiers(ReadModifiers(element));
    }
    if (const char* const modifiers = element.GetAttribute("Modifiers", "");
        *modifiers != '\0' && ReadModifiers(element).IsEmpty())
        AddProblem(element, "Modifiers are Primary, Secondary, Shift and Alt, not", modifiers, problems);
    m_info.SetFlag(type, true);
    ReadNumber(element, "Sensitivity", -kMostSensitive, kMostSensitive, m_sensitivity, problems);
    if (type == kRegister_SetOnHover)
        ReadNumber(element, "Delay", 0.0, kLongestDelayMs, m_hoverDelayMs, problems);
    return kErr_NoErr;
}

int32_t KCParamRegistrationData::ReadFromXMLDrag(const KCXMLElement& element) {
    double drag = 0.0, drop = 0.0;
    m_info.GetDragDropValues(drag, drop);
    if (!ReadStateValue(element, drag))
        return kErr_BadDescription;
    m_info.SetDragDropValues(drag, drop);
    return kErr_NoErr;
}

int32_t KCParamRegistrationData::ReadFromXMLDrop(const KCXMLElement& element) {
    double drag = 0.0, drop = 0.0;
    m_info.GetDragDropValues(drag, drop);
    if (!ReadStateValue(element, drop))
        return kErr_BadDescription;
    m_info.SetDragDropValues(drag, drop);
    return kErr_NoErr;
}

int32_t KCParamRegistrationData::ReadFromXMLTextWin(const KCXMLElement& element, sTEXT_WIN& win,
                                                    Problems& problems) {
    return ReadWindowFromXML(element, win, problems);
}

void KCParamRegistrationData::UpdateDataForSkinChange(const KCXMLElement& element) {
    RemoveDrawAttributes();
    Problems problems; // a skin is read with its controls first: what is wrong with it is known
    for (const KCXMLElement& child : element.Children())
        if (!child.HasName("Drag") && !child.HasName("Drop"))
            ReadWindow(child, problems);
}

#ifdef NDEBUG
void KCParamRegistrationData::XMLSanityCheckDebugOnly(const KCXMLElement&, Problems&) {}
#else
namespace {

constexpr const char* kParameterAttributes[] = {"Name",       "Role",         "FixedState", "Sensitivity",
                                                "LinkGroups", "SpecificData", "Array"};
constexpr const char* kParameterChildren[] = {"Register", "RegisterType", "Drag",
                                              "Drop",     "LabelWin",     "ValueWin",
                                              "UnitsWin", "BitmapWin",    "ParamDependantGraphWin"};

template <size_t N>
bool IsOneOf(const char* const (&names)[N], const char* name) noexcept {
    return std::ranges::any_of(names, [name](const char* known) { return std::strcmp(known, name) == 0; });
}

} // namespace

void KCParamRegistrationData::XMLSanityCheckDebugOnly(const KCXMLElement& element, Problems& problems) {
    for (size_t i = 0; i < element.GetAttributeCount(); ++i)
        if (!IsOneOf(kParameterAttributes, element.GetAttributeName(i)))
            AddProblem(element, "nobody reads the attribute", element.GetAttributeName(i), problems);
    for (const KCXMLElement& child : element.Children())
        if (!IsOneOf(kParameterChildren, child.GetName()))
            AddProblem(child, "nobody reads the element", child.GetName(), problems);
}
#endif

// Writing
// -----------------------------------------------------------------------------------------------------------

int32_t KCParamRegistrationData::WriteToXML(KCXMLElement& element) const {
    int32_t result = WriteAttributes(element);
    if (result == kErr_NoErr)
        result = WriteRegisters(element);
    if (result == kErr_NoErr)
        result = WriteToXMLDrag(element);
    if (result == kErr_NoErr)
        result = WriteToXMLDrop(element);
    return result == kErr_NoErr ? WriteWindows(element) : result;
}

int32_t KCParamRegistrationData::WriteAttributes(KCXMLElement& element) const {
    AttributeWriter writer(element);
    if (IsBound())
        writer.Set("Name", GetRegisteredParamName());
    if (!m_role.empty())
        writer.Set("Role", m_role);
    if (IsParamArrayRegData())
        writer.Set("Array", m_arrayName);
    writer.SetUnless(0.0, "FixedState", m_fixedState).SetUnless(1.0, "Sensitivity", m_sensitivity);
    writer.SetUnless(int64_t{0}, "SpecificData", m_specificData);
    KCFixedString<1023> groups;
    for (const int group : m_linkGroups)
        groups << (groups.empty() ? "" : " ") << group;
    if (!groups.empty())
        writer.Set("LinkGroups", groups);
    return writer.GetResult();
}

// The type comes first: whoever reads takes the first for it.
int32_t KCParamRegistrationData::WriteRegisters(KCXMLElement& element) const {
    int32_t result = kErr_NoErr;
    for (int32_t i = -1; i < kNumRegisterTypes && result == kErr_NoErr; ++i) {
        const ERegisterType type = i < 0 ? m_info.GetType() : static_cast<ERegisterType>(i);
        const bool isNamed = *RegisterTypeName(type) != '\0';
        if (!isNamed || (i >= 0 && (type == m_info.GetType() || !m_info.GetFlag(type))))
            continue;
        KCXMLElement* const child = element.AddChild("Register");
        if (child == nullptr)
            return kErr_AllocationFailed;
        AttributeWriter writer(*child);
        writer.Set("Type", RegisterTypeName(type));
        if (const KCFixedString<63> modifiers = ModifiersText(m_info.GetModifiers()); !modifiers.empty())
            writer.Set("Modifiers", modifiers);
        if (type == kRegister_SetOnHover)
            writer.SetUnless(0.0, "Delay", m_hoverDelayMs);
        result = writer.GetResult();
    }
    return result;
}

int32_t KCParamRegistrationData::WriteToXMLDrag(KCXMLElement& element) const {
    double drag = 0.0, drop = 0.0;
    m_info.GetDragDropValues(drag, drop);
    return WriteValueChild(element, "Drag", drag);
}

int32_t KCParamRegistrationData::WriteToXMLDrop(KCXMLElement& element) const {
    double drag = 0.0, drop = 0.0;
    m_info.GetDragDropValues(drag, drop);
    return WriteValueChild(element, "Drop", drop);
}

int32_t KCParamRegistrationData::WriteWindows(KCXMLElement& element) const {
    int32_t result = WriteWindowChild(element, "LabelWin", m_label);
    if (result == kErr_NoErr)
        result = WriteWindowChild(element, "ValueWin", m_valueWin);
    if (result == kErr_NoErr)
        result = WriteWindowChild(element, "UnitsWin", m_units);
    if (result == kErr_NoErr)
        result = WriteWindowChild(element, "BitmapWin", m_bitmap);
    return result == kErr_NoErr ? WriteWindowChild(element, "ParamDependantGraphWin", m_graph) : result;
}

} // namespace kvKorvoV12_9_0_320
