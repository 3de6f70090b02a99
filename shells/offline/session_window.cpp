#include "session_window.h"

#include <algorithm>

#include "failure.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {

using namespace PluginViewManager;

namespace {

std::string ProblemText(const sDESCRIPTION_PROBLEM& problem) {
    std::string text = problem.Description.empty() ? "GUIXML" : problem.Description.c_str();
    return text.append(":").append(std::to_string(problem.Line)).append(": ").append(problem.Text.c_str());
}

} // namespace

KCSessionWindow::KCSessionWindow(cALGORITHM& algorithm, KCHistory& history) : m_history(history) {
    const int32_t result = m_window.Create(algorithm);
    if (result == kErr_NullArgument)
        throw KCHostFailure("the plug-in describes no window");
    if (m_window.GetAlgorithm() == nullptr) { // nothing could be made of it
        const std::vector<std::string> problems = GetProblems();
        throw KCHostFailure("the plug-in's window cannot be made: " +
                            (problems.empty() ? "error " + std::to_string(result) : problems.front()));
    }
    m_window.SetHistory(history.GetManager());
    m_window.SetStepListener([this](size_t) { m_steps.push_back(m_history.DescribeLastStep()); });
}

std::vector<std::string> KCSessionWindow::GetProblems() const {
    std::vector<std::string> texts;
    for (const sDESCRIPTION_PROBLEM& problem : m_window.GetProblems())
        texts.push_back(ProblemText(problem));
    return texts;
}

KCGUIControl* KCSessionWindow::FindControl(const std::string& name) {
    if (KCGUIControl* const control = m_window.FindControl(KCFixedString<127>(name.c_str())))
        return control;
    const size_t param = m_window.GetAlgorithm()->GetParamIDFromName(name.c_str());
    return param == kNoParam ? nullptr : m_window.FindControlOfParam(param);
}

std::vector<std::string> KCSessionWindow::GetControlNames() {
    std::vector<std::string> names;
    const auto add = [&names](const char* name) {
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.emplace_back(name);
    };
    for (size_t number = 0; number < m_window.GetNumControls(); ++number) {
        const KCGUIControl& control = *m_window.GetControl(number);
        add(control.GetNamePtr());
        if (const size_t lead = control.GetLeadParamIndex(); lead != kNoParam)
            add(m_window.GetAlgorithm()->GetParamName(lead).c_str());
    }
    return names;
}

// ---- The hand ---------------------------------------------------------------------------------------------------

// A control is taken where a press begins a drag: a knob by its dial, not by its name.
KUPoint<double> KCSessionWindow::PointOf(const sHAND_PLACE& place) {
    if (place.control.empty())
        return place.at;
    const KURect<double> rect = FindControl(place.control)->GetMouseDragRect();
    return {rect.left + place.at.x * (rect.right - rect.left), rect.top + place.at.y * (rect.bottom - rect.top)};
}

KCEventData KCSessionWindow::PointerAt(KUPoint<double> point, KUModifiers modifiers) {
    m_pointer.position = point;
    m_pointer.modifiers = modifiers;
    m_pointer.timeSeconds = m_timeSeconds;
    return m_pointer;
}

bool KCSessionWindow::Press(KUPoint<double> point, KUModifiers modifiers, int32_t numClicks) {
    m_pointer.type = KEEventType::MouseDown;
    m_pointer.dragStart = point;
    m_pointer.numClicks = numClicks;
    return m_window.MouseDown(PointerAt(point, modifiers));
}

bool KCSessionWindow::Release(KUModifiers modifiers) {
    m_pointer.type = KEEventType::MouseUp;
    return m_window.MouseUp(PointerAt(m_pointer.position, modifiers));
}

bool KCSessionWindow::Play(const sUSE_MOUSE& mouse) {
    using KEWhat = sUSE_MOUSE::KEWhat;
    const KUModifiers held = mouse.modifiers.value_or(m_pointer.modifiers); // of what is down already
    const KUModifiers fresh = mouse.modifiers.value_or(KUModifiers());
    switch (mouse.what) {
    case KEWhat::Press:
        return Press(PointOf(mouse.place), fresh, mouse.numClicks);
    case KEWhat::Drag: {
        m_pointer.type = KEEventType::MouseDrag;
        const KUPoint<double> from = m_pointer.position;
        return m_window.MouseDrag(PointerAt({from.x + mouse.by.x, from.y + mouse.by.y}, held));
    }
    case KEWhat::Release:
        return Release(held);
    case KEWhat::Lost:
        m_window.MouseLost();
        return true;
    case KEWhat::Click:
    case KEWhat::DoubleClick:
        break;
    }
    bool isTaken = false;
    for (int32_t click = 1; click <= (mouse.what == KEWhat::DoubleClick ? 2 : 1); ++click) {
        isTaken = Press(PointOf(mouse.place), fresh, click) || isTaken;
        isTaken = Release(fresh) || isTaken;
    }
    return isTaken;
}

bool KCSessionWindow::Play(const sTURN_WHEEL& wheel) {
    KCEventData event;
    event.type = KEEventType::MouseWheel;
    event.position = event.dragStart = PointOf(wheel.place);
    event.modifiers = wheel.modifiers;
    event.timeSeconds = m_timeSeconds;
    return m_window.MouseWheel(event, wheel.by.x, wheel.by.y);
}

bool KCSessionWindow::Play(const sPRESS_KEY& key) {
    KCEventData event;
    event.type = KEEventType::Key;
    event.position = event.dragStart = m_pointer.position;
    event.key = key.key;
    event.modifiers = key.modifiers;
    event.timeSeconds = m_timeSeconds;
    return m_window.Key(event);
}

bool KCSessionWindow::Play(const sTYPE_TEXT& type) {
    if (type.control.empty())
        return m_window.Text(type.text.c_str());
    return m_window.EnterText(FindControl(type.control)->GetName(), KCFixedString<127>(type.text.c_str()));
}

bool KCSessionWindow::Play(const sTOUCH& touch) {
    KCEventData& finger = m_fingers[touch.finger];
    finger.touchID = touch.finger;
    finger.timeSeconds = m_timeSeconds;
    switch (touch.what) {
    case sTOUCH::KEWhat::Down:
        finger.type = KEEventType::TouchDown;
        finger.position = finger.dragStart = PointOf(touch.place);
        return m_window.TouchDown(finger);
    case sTOUCH::KEWhat::Drag:
        finger.type = KEEventType::TouchDrag;
        finger.position = {finger.position.x + touch.by.x, finger.position.y + touch.by.y};
        return m_window.TouchDrag(finger);
    case sTOUCH::KEWhat::Long:
        finger.type = KEEventType::TouchLongDown;
        return m_window.TouchLongDown(finger);
    case sTOUCH::KEWhat::Pinch:
        finger.type = KEEventType::TouchPinch;
        finger.pinchScale = touch.scale;
        return m_window.TouchPinch(finger);
    case sTOUCH::KEWhat::Up:
        break;
    }
    KCEventData last = finger;
    last.type = KEEventType::TouchUp;
    m_fingers.erase(touch.finger);
    return m_window.TouchUp(last);
}

bool KCSessionWindow::Play(const sHOVER& hover) {
    m_pointer.type = KEEventType::MouseOver;
    m_pointer.numClicks = 1;
    const KUPoint<double> point = PointOf(hover.place);
    m_pointer.dragStart = point;
    return m_window.MouseOver(PointerAt(point, hover.modifiers));
}

bool KCSessionWindow::ChooseFromMenu(const KCGUIControl& control, int32_t choice) {
    return m_window.MenuChoice(control.GetName(), choice);
}

std::string KCSessionWindow::TakeSteps() {
    std::string text = JoinedText(m_steps, ", ");
    m_steps.clear();
    return text;
}

void KCSessionWindow::Idle(double timeSeconds) {
    m_timeSeconds = timeSeconds;
    m_window.Idle(timeSeconds);
}

std::string KCSessionWindow::DrawFile(const std::string& path, double scale) {
    kvGS::KCGraphicStreamBinaryWriter writer;
    if (const int32_t result = m_window.Draw(writer); result != kErr_NoErr)
        throw KCHostFailure(path + ": the window cannot be drawn: error " + std::to_string(result));
    return PictureFileContents(path, writer, {scale, scale, &m_window.GetResources()});
}

} // namespace kvKorvoV12_9_0_320::kvHost
