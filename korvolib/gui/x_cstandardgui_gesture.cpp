// A gesture of a window: from the first call of a control to the release of its parameters and the step of the
// history, whatever a hook throws between.

#include <korvolib/gui/x_cstandardgui_gesture_internal.h>

#include <exception>

#include <korvolib/undo/undo_api.h>
#include <korvolib/undo/undo_manager.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

CStandardGUI_X::BUFFER_HEADER* CStandardGUI_X::ChainBuffers(BUFFER_HEADER* first, BUFFER_HEADER* second) {
    return cALGORITHM::ChainBufs(first, second);
}

void CStandardGUI_X::Execute(sGESTURE& gesture, BUFFER_HEADER* chain) {
    if (chain == nullptr)
        return;
    if (gesture.control->CanExecuteImmediately())
        m_algorithm->ExecuteAndDisposeBuffer(chain);
    else
        gesture.pending = ChainBuffers(gesture.pending, chain);
}

void CStandardGUI_X::EndGesture(sGESTURE& gesture) {
    const sGESTURE ended = std::exchange(gesture, sGESTURE{});
    if (ended.control == nullptr)
        return;
    if (ended.dropTarget != nullptr)
        ended.dropTarget->SetControlHighlightInfo(false);
    if (ended.isCarrying)
        AskForAll();
    if (ended.pending != nullptr) {
        BUFFER_HEADER* pending = ended.pending;
        m_algorithm->ExecuteAndDisposeBuffer(pending);
        m_algorithm->SetUpdateAlgRequired(); // others may have sent newer values meanwhile
    }
    ended.control->Release();
    if (ended.hasMoved)
        InsertStep(*ended.control);
}

void CStandardGUI_X::AbandonGesture(sGESTURE& gesture) noexcept {
    try {
        EndGesture(gesture);
    } catch (...) { // NOLINT(bugprone-empty-catch): the exception that ended it is on its way
    }
}

void CStandardGUI_X::EndAllGestures() {
    std::exception_ptr first;
    const auto end = [&](sGESTURE& gesture) {
        try {
            EndGesture(gesture);
        } catch (...) {
            if (first == nullptr)
                first = std::current_exception();
        }
    };
    end(m_mouse);
    end(m_hover);
    for (sGESTURE& touch : m_touches)
        end(touch);
    if (first != nullptr)
        std::rethrow_exception(first);
}

// Of controls that take no input any more.
void CStandardGUI_X::EndStrandedGestures() {
    const auto end = [this](sGESTURE& gesture) {
        if (gesture.control != nullptr && !CanTakeInput(*gesture.control))
            EndGesture(gesture);
    };
    end(m_mouse);
    end(m_hover);
    for (sGESTURE& touch : m_touches)
        end(touch);
}

// The history leaves out what changed nothing; its listener hears only of what went in.
void CStandardGUI_X::InsertStep(const KCGUIControl& control) {
    const size_t lead = control.GetLeadParamIndex();
    if (m_history == nullptr || lead == kNoParam || !control.AreRegisteredParamsSavableToUndo())
        return;
    const Undo::Command* const before = Undo::FromHandle(m_history)->GetPresentCommand();
    const int32_t result = Undo::API::InsertGestureStep(m_history, m_algorithm, static_cast<uint32_t>(lead));
    if (result == kErr_NoErr && m_onStep && Undo::FromHandle(m_history)->GetPresentCommand() != before)
        m_onStep(lead);
}

void CStandardGUI_X::RememberStates(const KCGUIControl& control) {
    m_states.clear(); // room for every control's was made by Arrange
    for (const KCParamRegistrationData& data : control.GetParamDataVec())
        m_states.push_back(m_algorithm->GetParamState(data.GetParamIndex()));
}

bool CStandardGUI_X::HaveStatesChanged(const KCGUIControl& control) const noexcept {
    const std::vector<KCParamRegistrationData>& registrations = control.GetParamDataVec();
    for (size_t i = 0; i < registrations.size() && i < m_states.size(); ++i)
        if (m_algorithm->GetParamState(registrations[i].GetParamIndex()) != m_states[i])
            return true;
    return false;
}

CStandardGUI_X::sGESTURE* CStandardGUI_X::FindTouch(int64_t touchID) noexcept {
    for (sGESTURE& touch : m_touches)
        if (touch.control != nullptr && touch.touchID == touchID)
            return &touch;
    return nullptr;
}

CStandardGUI_X::sGESTURE* CStandardGUI_X::FindCapture(const KCGUIControl& control) noexcept {
    if (m_mouse.control == &control)
        return &m_mouse;
    for (sGESTURE& touch : m_touches)
        if (touch.control == &control)
            return &touch;
    return nullptr;
}

} // namespace kvKorvoV12_9_0_320
