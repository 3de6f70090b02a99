// Life of a window: its description, where its controls stand, and who overlaps whom.

#include <korvolib/gui/x_cstandardgui_internal.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <numeric>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320 {

namespace {

constexpr KUSize<double> kDefaultSize{640.0, 400.0};
constexpr size_t kMaxListedOverlaps = 64; // of one control; past it everything is looked at

bool IsSide(double side) noexcept { return side >= 1.0 && side <= CStandardGUI_X::kMaxSide; }

bool Overlap(const KURect<double>& a, const KURect<double>& b) noexcept { return !a.Intersection(b).IsEmpty(); }

bool AnswersToKeys(const KCGUIControl& control) {
    for (const KCParamRegistrationData& data : control.GetParamDataVec())
        if (data.IsRegisteredToType(kRegister_Keys))
            return true;
    return false;
}

} // namespace

CStandardGUI_X::CStandardGUI_X() : m_size(kDefaultSize) {}

CStandardGUI_X::~CStandardGUI_X() {
    try {
        Close();
    } catch (...) { // NOLINT(bugprone-empty-catch): a destructor has nobody to tell
    }
}

// ---- From a description
// ------------------------------------------------------------------------------------------

int32_t CStandardGUI_X::Create(cALGORITHM& algorithm) {
    return Create(algorithm, algorithm.GetDescription("GUIXML"));
}

int32_t CStandardGUI_X::Create(cALGORITHM& algorithm, const char* xml) {
    if (m_algorithm != nullptr)
        return kErr_Generic;
    const KCAlgorithmLock lock(algorithm);
    try {
        m_problems.clear();
        KCXMLElement root;
        if (const int32_t result = Parse(xml, root); result != kErr_NoErr)
            return result;
        m_algorithm = &algorithm;
        return Build(root);
    } catch (const std::bad_alloc&) {
        Forget();
        return kErr_AllocationFailed;
    } catch (...) {
        Forget();
        throw;
    }
}

int32_t CStandardGUI_X::Parse(const char* xml, KCXMLElement& root) {
    if (xml == nullptr)
        return kErr_NullArgument;
    sXML_ERROR error;
    if (const int32_t result = root.Parse(xml, std::strlen(xml), &error); result != kErr_NoErr) {
        Report(error.line, error.text.c_str());
        return result;
    }
    if (root.HasName("GUI"))
        return kErr_NoErr;
    Report(root.GetLine(), "a window is described by \"GUI\", not by ", root.GetName());
    return kErr_BadDescription;
}

int32_t CStandardGUI_X::Build(const KCXMLElement& root) {
    ReadLook(root);
    ReadControls(root);
    return Finish();
}

int32_t CStandardGUI_X::UpdateFromXML(const char* xml) {
    const sEVENT event(*this);
    if (!event)
        return kErr_Generic;
    EndAllGestures();
    CloseMenu();
    try {
        m_problems.clear();
        KCXMLElement root;
        const int32_t result = Parse(xml, root);
        return result != kErr_NoErr ? result : Rebuild(root);
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
}

int32_t CStandardGUI_X::Rebuild(const KCXMLElement& root) {
    ReadLook(root);
    const KCXMLElement* const list = root.FindChild("Controls");
    for (const KCXMLElement* element = list == nullptr ? nullptr : list->FindChild("Control"); element != nullptr;
         element = element->FindNextSibling("Control")) {
        KCFixedString<127> name;
        (void)element->ReadAttribute("Name", name);
        if (KCGUIControl* const control = FindControl(name); control != nullptr)
            (void)control->UpdateFromXMLWithAlg(*element, *m_algorithm, m_problems);
        else
            Report(element->GetLine(), "no control is named ", name.c_str());
    }
    return Finish();
}

int32_t CStandardGUI_X::Finish() {
    ResolveDependents();
    Arrange();
    for (size_t index = 0; index < m_controlsOfParam.size(); ++index)
        FollowHiddenParam(index); // the mark that told of it may have gone to a window before this one
    NameLinkGroups();
    return m_problems.empty() ? kErr_NoErr : kErr_BadDescription;
}

void CStandardGUI_X::ReadLook(const KCXMLElement& root) {
    ReadSize(root);
    m_theme = KCTheme::Default();
    if (const KCXMLElement* const theme = root.FindChild("Theme"); theme != nullptr)
        (void)m_theme.ReadFromXML(*theme, m_problems);
    std::vector<std::unique_ptr<CDrawable>> drawables = ReadDrawables(root);
    for (sPLACE& place : m_controls) // the numbers in their lists are those of the drawables before
        place.overlapsMany = true;
    m_drawables = std::move(drawables);
}

void CStandardGUI_X::ReadSize(const KCXMLElement& root) {
    KUSize<double> size;
    if (root.ReadAttribute("Width", size.width) == KEXMLValue::Found && IsSide(size.width) &&
        root.ReadAttribute("Height", size.height) == KEXMLValue::Found && IsSide(size.height)) {
        m_size = size;
        return;
    }
    m_size = kDefaultSize;
    Report(root.GetLine(), "a window needs a Width and a Height from 1 to 16384; without them it is 640 by 400");
}

std::vector<std::unique_ptr<CDrawable>> CStandardGUI_X::ReadDrawables(const KCXMLElement& root) {
    std::vector<std::unique_ptr<CDrawable>> drawables;
    const KCXMLElement* const list = root.FindChild("Drawables");
    for (const KCXMLElement* element = list == nullptr ? nullptr : list->FindChild("Drawable"); element != nullptr;
         element = element->FindNextSibling("Drawable")) {
        if (drawables.size() == kMaxDrawables) {
            Report(element->GetLine(), "a window has no room for more drawables");
            break;
        }
        auto drawable = std::make_unique<CDrawable>();
        drawable->SetResContainer(&m_resources);
        if (drawable->ReadFromXML(*element, m_problems) == kErr_NoErr || !drawable->GetRect().IsEmpty())
            drawables.push_back(std::move(drawable)); // what does not read of it stays as in a new one
    }
    return drawables;
}

void CStandardGUI_X::ReadControls(const KCXMLElement& root) {
    const KCXMLElement* const list = root.FindChild("Controls");
    for (const KCXMLElement* element = list == nullptr ? nullptr : list->FindChild("Control"); element != nullptr;
         element = element->FindNextSibling("Control")) {
        if (m_controls.size() == kMaxControls) {
            Report(element->GetLine(), "a window has no room for more controls");
            break;
        }
        ReadControl(*element);
    }
}

void CStandardGUI_X::ReadControl(const KCXMLElement& element) {
    const char* const className = element.GetAttribute("Class", "");
    std::unique_ptr<KCGUIControl> control = MakeControlSelf(className);
    if (control == nullptr) {
        Report(element.GetLine(), "the window knows no class ", className);
        return;
    }
    control->SetHome(this);
    control->SetResContainer(&m_resources);
    if (control->ReadFromXMLWithAlg(element, *m_algorithm, m_problems) != kErr_NoErr)
        return; // what was wrong is in the list
    if (!element.HasAttribute("Rect") && control->GetBounds().IsEmpty())
        Report(element.GetLine(), "without a Rect nobody will see the control ", control->GetNamePtr());
    if (control->FinishCreate() != kErr_NoErr)
        Report(element.GetLine(), "the control cannot be completed: ", control->GetNamePtr());
    else
        Keep(std::move(control), element);
}

std::unique_ptr<KCGUIControl> CStandardGUI_X::MakeControlSelf(const char* className) {
    return MakeControlOfClass(className);
}

void CStandardGUI_X::Keep(std::unique_ptr<KCGUIControl> control, const KCXMLElement& element) {
    KCGUIControl* const kept = control.get();
    const bool takesText = kept->CanEnterText();
    if (takesText || AnswersToKeys(*kept))
        kept->SetSelectableFlag(kSelectable_CanBeSelected, true);
    if (takesText)
        kept->SetSelectableFlag(kSelectable_TextEntry, true);
    sPLACE place;
    place.control = std::move(control);
    place.line = element.GetLine();
    m_controls.push_back(std::move(place));
    m_numbers.emplace(kept, static_cast<uint32_t>(m_controls.size() - 1));
    if (!kept->GetName().empty() && !m_byName.emplace(kept->GetName(), kept).second)
        Report(element.GetLine(), "another control is named ", kept->GetNamePtr(), " too: look-ups take the first");
}

void CStandardGUI_X::ResolveDependents() {
    for (sPLACE& place : m_controls) {
        place.control->ClearDependentsList();
        ResolveDependents(place, place.control->GetControlDependentsIDs());
        ResolveDependents(place, place.control->GetControlDrawDependentsIDs());
    }
}

void CStandardGUI_X::ResolveDependents(sPLACE& place, const std::vector<KCFixedString<63>>& ids) {
    for (const KCFixedString<63>& id : ids) {
        KCGUIControl* const dependent = FindControl(id);
        if (dependent == nullptr)
            Report(place.line, "no control is named ", id.c_str());
        else if (dependent != place.control.get())
            place.control->AddDependentPtr(dependent);
    }
}

void CStandardGUI_X::NameLinkGroups() {
    KCLinkGroups* const links = m_algorithm->GetLinkGroups();
    if (links == nullptr)
        return;
    std::vector<sNAMED_LINK_GROUP> named;
    for (const sPLACE& place : m_controls)
        place.control->AppendNamedLinkGroups(named);
    links->AdjustLinkGroupsToCurrentGuiControls(named, m_problems);
}

void CStandardGUI_X::Report(int32_t line, const char* before, const char* name, const char* after) {
    sDESCRIPTION_PROBLEM problem;
    problem.Line = line;
    problem.Text << before;
    if (name != nullptr)
        problem.Text << '"' << name << '"' << after;
    m_problems.push_back(problem);
}

// ---- Order and overlaps
// ------------------------------------------------------------------------------------------

void CStandardGUI_X::Arrange() {
    m_dirty.clear();
    m_dirty.reserve(m_controls.size());
    m_order.resize(m_controls.size());
    std::iota(m_order.begin(), m_order.end(), 0U);
    size_t most = 0;
    for (sPLACE& place : m_controls) {
        place.overlapsMany = true; // until its lists are whole
        place.isMarked = false;
        place.rect = DrawnRect(*place.control);
        place.isTopmost = IsTopmost(*place.control);
        most = std::max(most, place.control->GetParamDataVec().size());
    }
    m_states.reserve(most);
    std::stable_partition(m_order.begin(), m_order.end(),
                          [this](uint32_t number) { return !m_controls[number].isTopmost; });
    for (sPLACE& place : m_controls)
        FindOverlaps(place);
    FindControlsOfParams();
    BuildSelectableList();
    AskForAll();
}

void CStandardGUI_X::FindOverlaps(sPLACE& place) {
    place.drawables.clear();
    place.overlaps.clear();
    for (uint32_t number = 0; number < m_drawables.size() && place.drawables.size() <= kMaxListedOverlaps; ++number)
        if (Overlap(DrawnRect(*m_drawables[number]), place.rect))
            place.drawables.push_back(number);
    for (const uint32_t number : m_order) {
        if (place.overlaps.size() > kMaxListedOverlaps)
            break;
        if (&m_controls[number] == &place || Overlap(m_controls[number].rect, place.rect))
            place.overlaps.push_back(number);
    }
    place.overlapsMany = std::max(place.drawables.size(), place.overlaps.size()) > kMaxListedOverlaps;
}

void CStandardGUI_X::FindControlsOfParams() {
    m_controlsOfParam.assign(m_algorithm->GetNumParams(), {});
    for (uint32_t number = 0; number < m_controls.size(); ++number)
        for (const KCParamRegistrationData& data : m_controls[number].control->GetParamDataVec()) {
            if (data.GetParamIndex() >= m_controlsOfParam.size())
                continue;
            std::vector<uint32_t>& list = m_controlsOfParam[data.GetParamIndex()];
            if (list.empty() || list.back() != number)
                list.push_back(number);
        }
}

void CStandardGUI_X::BuildSelectableListSelf(std::vector<CSelectable*>& list) {
    for (const sPLACE& place : m_controls)
        list.push_back(place.control.get());
}

// ---- Back into a description
// -------------------------------------------------------------------------------------

int32_t CStandardGUI_X::WriteToXML(KCXMLElement& element) const {
    if (m_algorithm == nullptr)
        return kErr_Generic;
    const KCAlgorithmLock lock(*m_algorithm);
    element.Clear();
    int32_t result = element.SetName("GUI");
    const auto keepFirst = [&result](int32_t next) { result = result == kErr_NoErr ? next : result; };
    keepFirst(element.SetAttribute("Width", m_size.width));
    keepFirst(element.SetAttribute("Height", m_size.height));
    KCXMLElement* const theme = element.AddChild("Theme");
    KCXMLElement* const drawables = element.AddChild("Drawables");
    KCXMLElement* const controls = element.AddChild("Controls");
    if (theme == nullptr || drawables == nullptr || controls == nullptr)
        return kErr_AllocationFailed;
    keepFirst(m_theme.WriteToXML(*theme));
    for (const std::unique_ptr<CDrawable>& drawable : m_drawables) {
        KCXMLElement* const child = drawables->AddChild("Drawable");
        keepFirst(child == nullptr ? kErr_AllocationFailed : drawable->WriteToXML(*child));
    }
    for (const sPLACE& place : m_controls) {
        KCXMLElement* const child = controls->AddChild("Control");
        keepFirst(child == nullptr ? kErr_AllocationFailed
                                   : place.control->WriteToXMLWithAlg(*child, *m_algorithm));
    }
    return result;
}

// ---- The end
// -----------------------------------------------------------------------------------------------------

void CStandardGUI_X::Close() {
    if (m_isInEvent) { // a hook's wish: its control is still at work
        m_isCloseWanted = true;
        return;
    }
    const sEVENT event(*this);
    if (!event)
        return;
    try {
        EndAllGestures();
    } catch (...) {
        Forget();
        throw;
    }
    Forget();
}

void CStandardGUI_X::Forget() noexcept {
    m_hovered = nullptr;
    m_textFocus = nullptr;
    CloseMenu();
    m_order.clear();
    m_dirty.clear();
    m_byName.clear();
    m_numbers.clear();
    m_controlsOfParam.clear();
    std::vector<sPLACE> controls;
    controls.swap(m_controls);
    BuildSelectableList(); // of nothing, while the controls that it knew are still there
    controls.clear();
    m_drawables.clear();
    m_needsAll = true;
    m_needsRedraw = false;
    m_isCloseWanted = false;
    m_algorithm = nullptr;
}

// ---- Controls
// ----------------------------------------------------------------------------------------------------

KCGUIControl* CStandardGUI_X::GetControl(size_t number) noexcept {
    return number < m_controls.size() ? m_controls[number].control.get() : nullptr;
}

KCGUIControl* CStandardGUI_X::FindControl(const KCFixedStringBase& name) noexcept {
    if (name.size() > KCFixedString<127>().capacity())
        return nullptr;
    const auto found = m_byName.find(KCFixedString<127>(name));
    return found == m_byName.end() ? nullptr : found->second;
}

KCGUIControl* CStandardGUI_X::FindControlAt(KUPoint<double> point) const {
    for (size_t i = m_order.size(); i-- > 0;) {
        KCGUIControl* const control = m_controls[m_order[i]].control.get();
        if (control->IsPointInside(point))
            return control;
    }
    return nullptr;
}

KCGUIControl* CStandardGUI_X::FindControlOfParam(size_t paramIndex) noexcept {
    if (paramIndex >= m_controlsOfParam.size())
        return nullptr;
    for (const uint32_t number : m_controlsOfParam[paramIndex])
        if (m_controls[number].control->GetLeadParamIndex() == paramIndex)
            return m_controls[number].control.get();
    return nullptr;
}

} // namespace kvKorvoV12_9_0_320
