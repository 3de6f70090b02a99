// A control as a description tells of it: name, flags, parameter list.

#include <korvolib/gui/base_control.h>

#include <algorithm>

#include <korvolib/gui/attribute_writer_internal.h>
#include <korvolib/gui/description_numbers_internal.h>

namespace kvKorvoV12_9_0_320 {
namespace {

using namespace GUIDescription;

constexpr const char* kFlagNames[kNumControlFlags] = {
    "Disabled",         "HasLead", "Hidden",      "InfoFlag",          "NotAutomatable",
    "IgnoreRightClick", "Cyclic",  "DrawTopmost", "NeedToResetParams",
};

// The others follow from what happens to the control.
bool IsAuthors(EControlFlags flag) noexcept {
    return flag != kControl_HasLead && flag != kControl_NeedToResetParams;
}

bool IsRegister(const KCXMLElement& element) noexcept {
    return element.HasName("Register") || element.HasName("RegisterType");
}

// Of the parameter as a whole: one that a "Register" names is that of its record alone. It is read, and reported,
// with the first record.
double OwnSensitivity(const KCXMLElement& element) {
    double sensitivity = 1.0;
    Problems known;
    ReadNumber(element, "Sensitivity", -kMostSensitive, kMostSensitive, sensitivity, known);
    return sensitivity;
}

// The place of a record with these modifiers among those from `first` on; the end without one.
size_t FindModifiers(const std::vector<KCParamRegistrationData>& records, size_t first, KUModifiers modifiers) {
    while (first < records.size() && !records[first].GetRegisterInfo().CompareParamModifiers(modifiers))
        ++first;
    return first;
}

} // namespace

const char* ControlFlagName(EControlFlags flag) noexcept {
    return flag >= 0 && flag < kNumControlFlags ? kFlagNames[flag] : "";
}

int32_t KCBaseControl::ReadFromXMLWithAlg(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems) {
    m_name = element.GetAttribute("Name", m_name.c_str());
    int32_t result = kErr_NoErr;
    if (const KCXMLElement* const flags = element.FindChild("Flags"))
        result = ReadFromXMLFlags(*flags, problems);
    if (const KCXMLElement* const list = element.FindChild("ParameterList");
        list != nullptr && result == kErr_NoErr)
        result = ReadFromXMLParameterList(*list, algorithm, problems);
    return result;
}

int32_t KCBaseControl::ReadFromXMLFlags(const KCXMLElement& element, Problems& problems) {
    for (int32_t i = 0; i < kNumControlFlags; ++i) {
        const auto flag = static_cast<EControlFlags>(i);
        bool isOn = false;
        if (IsAuthors(flag) && ReadFlag(element, ControlFlagName(flag), isOn, problems))
            SetControlFlag(flag, isOn);
    }
    return kErr_NoErr;
}

int32_t KCBaseControl::ReadFromXMLParameterList(const KCXMLElement& element, cALGORITHM& algorithm,
                                                Problems& problems) {
    UnRegisterAll();
    m_algorithm = &algorithm;
    int32_t result = kErr_NoErr;
    for (const KCXMLElement& child : element.Children("Parameter")) {
        int32_t read = ReadFromXMLParameterList_Attributes(child, algorithm, problems);
        if (read == kErr_NoErr)
            read = ReadFromXMLParameterList_Registration(child, algorithm, problems);
        if (result == kErr_NoErr)
            result = read;
    }
    if (result != kErr_NoErr)
        UnRegisterAll();
    return result;
}

int32_t KCBaseControl::ReadFromXMLParameterList_Attributes(const KCXMLElement& element, cALGORITHM& algorithm,
                                                           Problems& problems) {
    if (!element.HasAttribute("Name") && !element.HasAttribute("Array")) {
        AddProblem(element, "a Parameter needs the Name of one", nullptr, problems);
        return kErr_BadDescription;
    }
    const char* const name = element.GetAttribute("Name");
    if (name == nullptr || algorithm.GetParamIDFromName(name) != kNoParam)
        return kErr_NoErr;
    AddProblem(element, "no parameter is named", name, problems);
    return kErr_BadDescription;
}

int32_t KCBaseControl::ReadFromXMLParameterList_Registration(const KCXMLElement& element, cALGORITHM& algorithm,
                                                             Problems& problems) {
    KCParamRegistrationData record;
    int32_t result = record.ReadFromXML(element, algorithm, problems);
    const size_t first = m_params.size();
    if (result == kErr_NoErr)
        result = Register(record);
    if (result != kErr_NoErr)
        return result;
    // The windows stay with the first; what else the element says holds for all.
    const KUModifiers ofFirst = record.GetRegisterInfo().GetModifiers();
    record.RemoveDrawAttributes();
    double drag = 0.0, drop = 0.0;
    record.GetRegisterInfo().GetDragDropValues(drag, drop);
    record.GetRegisterInfo().Clear();
    record.GetRegisterInfo().SetDragDropValues(drag, drop);
    record.SetSensitivity(OwnSensitivity(element));
    for (const KCXMLElement& child : element.Children()) {
        const KUModifiers modifiers = KCParamRegistrationData::ReadModifiers(child);
        ERegisterType type = kRegister_Highlight;
        const bool hasType = RegisterTypeFromName(child.GetAttribute("Type"), type);
        if (!IsRegister(child) || !hasType || modifiers == ofFirst)
            continue;
        const size_t known = FindModifiers(m_params, first, modifiers);
        KCParamRegistrationData further = record;
        KCParamRegistrationData& target = known < m_params.size() ? m_params[known] : further;
        if (target.ReadFromXMLRegister(child, problems) == kErr_NoErr && known == m_params.size())
            result = Register(further);
        if (result != kErr_NoErr)
            return result;
    }
    return kErr_NoErr;
}

int32_t KCBaseControl::WriteToXMLWithAlg(KCXMLElement& element, const cALGORITHM&) const {
    AttributeWriter writer(element);
    if (!m_name.empty())
        writer.Set("Name", m_name);
    int32_t result = writer.GetResult();
    if (result == kErr_NoErr)
        result = WriteFlags(element);
    return result == kErr_NoErr ? WriteParameterList(element) : result;
}

int32_t KCBaseControl::WriteFlags(KCXMLElement& element) const {
    KCXMLElement* child = nullptr;
    for (int32_t i = 0; i < kNumControlFlags; ++i) {
        const auto flag = static_cast<EControlFlags>(i);
        if (!IsAuthors(flag) || !m_flags[static_cast<size_t>(i)])
            continue;
        if (child == nullptr)
            child = element.AddChild("Flags");
        const int32_t result =
            child == nullptr ? kErr_AllocationFailed : child->SetAttribute(ControlFlagName(flag), true);
        if (result != kErr_NoErr)
            return result;
    }
    return kErr_NoErr;
}

int32_t KCBaseControl::WriteParameterList(KCXMLElement& element) const {
    if (m_params.empty())
        return kErr_NoErr;
    KCXMLElement* const list = element.AddChild("ParameterList");
    for (const KCParamRegistrationData& registration : m_params) {
        KCXMLElement* const child = list == nullptr ? nullptr : list->AddChild("Parameter");
        const int32_t result = child == nullptr ? kErr_AllocationFailed : registration.WriteToXML(*child);
        if (result != kErr_NoErr)
            return result;
    }
    return kErr_NoErr;
}

int32_t KCBaseControl::WriteToXML(KCXMLElement& element) const {
    return m_algorithm == nullptr ? kErr_NullArgument : WriteToXMLWithAlg(element, *m_algorithm);
}

} // namespace kvKorvoV12_9_0_320
