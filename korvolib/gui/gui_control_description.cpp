// A control's description: one operation for each kind of item, and the gestures of a parameter that names none.
#include <korvolib/gui/gui_control.h>

#include <limits>

#include <korvolib/gui/attribute_writer_internal.h>
#include <korvolib/gui/description_numbers_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320 {

namespace {

using namespace GUIDescription;

constexpr const char* kDirectionNames[] = {"Vertical", "Horizontal", "Both"}; // in the order of KEControlDirection
constexpr const char* kDisableModeNames[] = {"Dim", "Hide", "Ignore"};        // in the order of KEDisableMode
constexpr int32_t kMostSelections = 1000000;

int32_t ResultSince(size_t numProblems, const Problems& problems) {
    return problems.size() == numProblems ? kErr_NoErr : kErr_BadDescription;
}

int32_t WriteImages(KCXMLElement& parent, const char* name, const sBITMAP_WIN& images) {
    KCXMLElement* const element = parent.AddChild(name);
    return element == nullptr ? kErr_AllocationFailed : WriteWindowToXML(*element, images);
}

int32_t WriteDependents(KCXMLElement& parent, const std::vector<KCFixedString<63>>& ids, bool isDrawOnly) {
    for (const KCFixedString<63>& id : ids) {
        KCXMLElement* const element = parent.AddChild("Dependent");
        if (element == nullptr)
            return kErr_AllocationFailed;
        int32_t error = element->SetAttribute("ID", id);
        if (error == kErr_NoErr && isDrawOnly)
            error = element->SetAttribute("DrawOnly", true);
        if (error != kErr_NoErr)
            return error;
    }
    return kErr_NoErr;
}

} // namespace

// Items: each stays as it was when it is not named or does not read (kErr_BadDescription) -------------------------

int32_t KCGUIControl::ReadFromXMLClass(const KCXMLElement& element, Problems&) {
    m_className = element.GetAttribute("Class", m_className.c_str());
    return kErr_NoErr;
}

int32_t KCGUIControl::ReadFromXMLControlRect(const KCXMLElement& element, Problems& problems) {
    const size_t before = problems.size();
    ReadRect(element, "Rect", m_rect, problems);
    return ResultSince(before, problems);
}

int32_t KCGUIControl::ReadFromXMLControlRectOffset(const KCXMLElement& element, Problems& problems) {
    const size_t before = problems.size();
    double offset[] = {m_rectOffset.x, m_rectOffset.y};
    ReadNumbers(element, "RectOffset", offset, problems);
    m_rectOffset = {offset[0], offset[1]};
    return ResultSince(before, problems);
}

int32_t KCGUIControl::ReadFromXMLControlColor(const KCXMLElement& element, Problems& problems) {
    const size_t before = problems.size();
    m_hasColor = ReadColor(element, "Color", m_color, problems) || m_hasColor;
    return ResultSince(before, problems);
}

int32_t KCGUIControl::ReadFromXMLControlColorRect(const KCXMLElement& element, Problems& problems) {
    const size_t before = problems.size();
    m_hasColorRect = ReadRect(element, "ColorRect", m_colorRect, problems) || m_hasColorRect;
    return ResultSince(before, problems);
}

int32_t KCGUIControl::ReadFromXMLControlGroup(const KCXMLElement& element, Problems& problems) {
    using Limits = std::numeric_limits<int32_t>;
    const size_t before = problems.size();
    ReadWhole(element, "Group", Limits::min(), Limits::max(), m_group, problems);
    return ResultSince(before, problems);
}

int32_t KCGUIControl::ReadFromXMLDirection(const KCXMLElement& element, Problems& problems) {
    const size_t before = problems.size();
    ReadWord(element, "Direction", kDirectionNames, m_direction, problems);
    return ResultSince(before, problems);
}

int32_t KCGUIControl::ReadFromXMLDisableMode(const KCXMLElement& element, Problems& problems) {
    const size_t before = problems.size();
    ReadWord(element, "DisableMode", kDisableModeNames, m_disableMode, problems);
    return ResultSince(before, problems);
}

int32_t KCGUIControl::ReadFromXMLImageList(const KCXMLElement& element, Problems& problems) {
    const KCXMLElement* const list = element.FindChild("ImageList");
    return list == nullptr ? kErr_NoErr : ReadWindowFromXML(*list, m_images, problems);
}

int32_t KCGUIControl::ReadFromXMLSelectionImageList(const KCXMLElement& element, Problems& problems) {
    const KCXMLElement* const list = element.FindChild("SelectionImageList");
    return list == nullptr ? kErr_NoErr : ReadWindowFromXML(*list, m_selectionImages, problems);
}

int32_t KCGUIControl::ReadFromXMLBitmapList(const KCXMLElement& element, Problems& problems) {
    sBITMAP_WIN images;
    const int32_t error = ReadWindowFromXML(element, images, problems);
    if (error == kErr_NoErr)
        m_additionalImages.push_back(images);
    return error;
}

int32_t KCGUIControl::ReadFromXMLAdditionalBitmapList(const KCXMLElement& element, Problems& problems) {
    const size_t before = problems.size();
    const KCXMLElement* const list = element.FindChild("AdditionalBitmapList");
    if (list == nullptr)
        return kErr_NoErr;
    m_additionalImages.clear();
    for (const KCXMLElement& images : list->Children("BitmapList"))
        (void)ReadFromXMLBitmapList(images, problems);
    const int32_t error = ReadFromXMLAdditionalBitmapListSelf(*list, problems);
    return error != kErr_NoErr ? error : ResultSince(before, problems);
}

int32_t KCGUIControl::ReadFromXMLDependentsList(const KCXMLElement& element, Problems& problems) {
    const size_t before = problems.size();
    const KCXMLElement* const list = element.FindChild("DependentsList");
    if (list == nullptr)
        return kErr_NoErr;
    m_dependentIDs.clear();
    m_drawDependentIDs.clear();
    for (const KCXMLElement& dependent : list->Children("Dependent")) {
        const KCFixedString<63> id(dependent.GetAttribute("ID", ""));
        bool isDrawOnly = false;
        ReadFlag(dependent, "DrawOnly", isDrawOnly, problems);
        if (id.empty())
            AddProblem(dependent, "a Dependent needs the ID of a control", nullptr, problems);
        else
            (isDrawOnly ? m_drawDependentIDs : m_dependentIDs).push_back(id);
    }
    return ResultSince(before, problems);
}

int32_t KCGUIControl::ReadFromXMLMaxSelection(const KCXMLElement& element, Problems& problems) {
    const size_t before = problems.size();
    int32_t lowest = 0, highest = 0;
    GetMinMax(lowest, highest);
    if (ReadWhole(element, "MaxSelection", 0, kMostSelections, highest, problems))
        SetMinMax(lowest, highest);
    return ResultSince(before, problems);
}

int32_t KCGUIControl::ReadFromXMLAcceptableCharactersTextEntry(const KCXMLElement& element, Problems&) {
    m_acceptableCharacters = element.GetAttribute("AcceptableCharacters", m_acceptableCharacters.c_str());
    return kErr_NoErr;
}

// The whole -------------------------------------------------------------------------------------------------------

// Every item is read, whatever becomes of the others; an item that does not read stays as it was.
int32_t KCGUIControl::ReadLook(const KCXMLElement& element, Problems& problems) {
    using Reader = int32_t (KCGUIControl::*)(const KCXMLElement&, Problems&);
    static constexpr Reader kReaders[] = {&KCGUIControl::ReadFromXMLClass,
                                          &KCGUIControl::ReadFromXMLControlRect,
                                          &KCGUIControl::ReadFromXMLControlRectOffset,
                                          &KCGUIControl::ReadFromXMLControlColor,
                                          &KCGUIControl::ReadFromXMLControlColorRect,
                                          &KCGUIControl::ReadFromXMLControlGroup,
                                          &KCGUIControl::ReadFromXMLDirection,
                                          &KCGUIControl::ReadFromXMLDisableMode,
                                          &KCGUIControl::ReadFromXMLImageList,
                                          &KCGUIControl::ReadFromXMLSelectionImageList,
                                          &KCGUIControl::ReadFromXMLAdditionalBitmapList,
                                          &KCGUIControl::ReadFromXMLDependentsList,
                                          &KCGUIControl::ReadFromXMLMaxSelection,
                                          &KCGUIControl::ReadFromXMLAcceptableCharactersTextEntry};
    int32_t error = kErr_NoErr;
    for (const Reader reader : kReaders)
        if (const int32_t itemError = (this->*reader)(element, problems); error == kErr_NoErr)
            error = itemError;
    const size_t before = problems.size();
    ReadNumber(element, "DragSensitivity", -kMostSensitive, kMostSensitive, m_dragSensitivity, problems);
    if (error == kErr_NoErr)
        error = ResultSince(before, problems);
    return error;
}

int32_t KCGUIControl::ReadFromXMLWithAlg(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems) {
    (void)ReadLook(element, problems); // a control with a strange colour still works
    int32_t error = KCBaseControl::ReadFromXMLWithAlg(element, algorithm, problems);
    if (error == kErr_NoErr)
        error = ReadFromXMLCustom(element, problems);
    return error == kErr_NoErr ? ReadFromXMLWithAlgSelf(element, algorithm, problems) : error;
}

int32_t KCGUIControl::UpdateFromXMLWithAlg(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems) {
    (void)ReadLook(element, problems);
    if (const KCXMLElement* const images = element.FindChild("AdditionalBitmapList"))
        (void)UpdateXMLAdditionalBitmapListSelf(*images, problems);
    if (const KCXMLElement* const list = element.FindChild("ParameterList"))
        UpdateParameterList(*list);
    int32_t error = ReadFromXMLCustom(element, problems);
    if (error == kErr_NoErr)
        error = UpdateFromXMLWithAlgSelf(element, algorithm, problems);
    OnLRBChange();
    SetNeedToRedrawControl();
    return error;
}

// Of several registrations of a parameter the one of the element's first "Register": those of further modifiers
// show nothing. A parameter may be named twice: the second element finds the second of them.
void KCGUIControl::UpdateParameterList(const KCXMLElement& list) {
    std::vector<bool> isTaken(m_params.size());
    for (const KCXMLElement& child : list.Children("Parameter")) {
        const char* const array = child.GetAttribute("Array");
        const char* const name = child.GetAttribute("Name");
        const KCXMLElement* own = child.FindChild("Register");
        if (own == nullptr)
            own = child.FindChild("RegisterType");
        const KUModifiers modifiers = own == nullptr ? KUModifiers() : KCParamRegistrationData::ReadModifiers(*own);
        const auto isOfIt = [&](const KCParamRegistrationData& param) {
            if (array != nullptr)
                return param.GetParamArrayName().compare(array) == 0;
            return name != nullptr && param.GetRegisteredParamName().compare(name) == 0;
        };
        for (size_t i = 0; i < m_params.size(); ++i) {
            if (isTaken[i] || !isOfIt(m_params[i]) || m_params[i].GetRegisterInfo().GetModifiers() != modifiers)
                continue;
            isTaken[i] = true;
            m_params[i].UpdateDataForSkinChange(child);
            break;
        }
    }
}

int32_t KCGUIControl::ReadFromXML(const KCXMLElement& element) {
    Problems problems;
    const int32_t error = m_algorithm != nullptr ? UpdateFromXMLWithAlg(element, *m_algorithm, problems)
                                                 : ReadLook(element, problems);
    return error == kErr_NoErr && !problems.empty() ? kErr_BadDescription : error;
}

// Parameters ------------------------------------------------------------------------------------------------------

int32_t KCGUIControl::ReadFromXMLParameterList_Registration(const KCXMLElement& element, cALGORITHM& algorithm,
                                                            Problems& problems) {
    const size_t registration = m_params.size();
    const int32_t error = KCBaseControl::ReadFromXMLParameterList_Registration(element, algorithm, problems);
    if (error == kErr_NoErr && m_params.size() > registration && element.FindChild("Register") == nullptr &&
        element.FindChild("RegisterType") == nullptr)
        AddDefaultGestures(registration);
    return error;
}

// What its class answers to; a drag also finely with Shift, and the reset state with Primary or a double click.
void KCGUIControl::AddDefaultGestures(size_t registration) {
    constexpr double kFine = 0.1;
    const std::span<const ERegisterType> gestures = GetDefaultGestures();
    if (gestures.empty())
        return;
    double drag = 0.0, drop = 0.0;
    m_params[registration].GetRegisterInfo().GetDragDropValues(drag, drop);
    KCRegisterInfo info(gestures.front());
    info.SetDragDropValues(drag, drop);
    KCRegisterInfo fine; // the drags alone
    bool hasDrag = false;
    for (const ERegisterType gesture : gestures) {
        info.SetFlag(gesture, true);
        if (gesture != kRegister_DragVertical && gesture != kRegister_DragHorizontal && gesture != kRegister_Drag)
            continue;
        if (!hasDrag)
            fine = KCRegisterInfo(gesture, KEModifier::Shift);
        fine.SetFlag(gesture, true);
        hasDrag = true;
    }
    info.SetFlag(kRegister_ResetOnDoubleClick, hasDrag || info.GetFlag(kRegister_ResetOnDoubleClick));
    m_params[registration].GetRegisterInfo() = info;
    if (!hasDrag)
        return;
    KCParamRegistrationData second = m_params[registration];
    second.RemoveDrawAttributes();
    second.GetRegisterInfo() = fine;
    second.SetSensitivity(second.GetSensitivity() * kFine);
    KCParamRegistrationData third = m_params[registration];
    third.RemoveDrawAttributes();
    third.GetRegisterInfo() = KCRegisterInfo(kRegister_ResetOnPress, KEModifier::Primary);
    (void)Register(second);
    (void)Register(third);
}

// Writing ---------------------------------------------------------------------------------------------------------

int32_t KCGUIControl::WriteToXML(KCXMLElement& element) const {
    return m_algorithm != nullptr ? WriteToXMLWithAlg(element, *m_algorithm) : WriteLook(element);
}

int32_t KCGUIControl::WriteToXMLWithAlg(KCXMLElement& element, const cALGORITHM& algorithm) const {
    const int32_t error = WriteLook(element);
    return error != kErr_NoErr ? error : KCBaseControl::WriteToXMLWithAlg(element, algorithm);
}

int32_t KCGUIControl::WriteLook(KCXMLElement& element) const {
    AttributeWriter writer(element);
    int32_t lowest = 0, highest = 0;
    GetMinMax(lowest, highest);
    if (!m_className.empty())
        writer.Set("Class", m_className);
    if (!m_name.empty())
        writer.Set("Name", m_name);
    writer.Set("Rect", RectText(m_rect));
    const double offset[] = {m_rectOffset.x, m_rectOffset.y};
    if (m_rectOffset != KUPoint<double>())
        writer.Set("RectOffset", NumbersText(offset));
    if (m_hasColor)
        writer.Set("Color", m_color.Format().c_str());
    if (m_hasColorRect)
        writer.Set("ColorRect", RectText(m_colorRect));
    writer.SetUnless(0, "Group", m_group);
    // What is usual for these depends on the class.
    writer.Set("Direction", kDirectionNames[static_cast<size_t>(m_direction)])
        .Set("DisableMode", kDisableModeNames[static_cast<size_t>(m_disableMode)])
        .Set("DragSensitivity", m_dragSensitivity)
        .Set("MaxSelection", highest);
    if (!m_acceptableCharacters.empty())
        writer.Set("AcceptableCharacters", m_acceptableCharacters);
    return writer.GetResult() == kErr_NoErr ? WriteLists(element) : writer.GetResult();
}

int32_t KCGUIControl::WriteLists(KCXMLElement& element) const {
    int32_t error = kErr_NoErr;
    const auto then = [&error](int32_t next) {
        if (error == kErr_NoErr)
            error = next;
    };
    if (m_images.resID != 0)
        then(WriteImages(element, "ImageList", m_images));
    if (m_selectionImages.resID != 0)
        then(WriteImages(element, "SelectionImageList", m_selectionImages));
    if (!m_additionalImages.empty()) {
        KCXMLElement* const list = element.AddChild("AdditionalBitmapList");
        then(list == nullptr ? kErr_AllocationFailed : WriteFromXMLAdditionalBitmapListSelf(*list));
        for (const sBITMAP_WIN& images : m_additionalImages)
            if (list != nullptr)
                then(WriteImages(*list, "BitmapList", images));
    }
    if (m_dependentIDs.empty() && m_drawDependentIDs.empty())
        return error;
    KCXMLElement* const list = element.AddChild("DependentsList");
    if (list == nullptr)
        return kErr_AllocationFailed;
    then(WriteDependents(*list, m_dependentIDs, false));
    then(WriteDependents(*list, m_drawDependentIDs, true));
    return error;
}

} // namespace kvKorvoV12_9_0_320
