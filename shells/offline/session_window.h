// The window of a hosted plug-in, and the hand that a session moves at it: positions, buttons and fingers as they
// stand, steps of the history. No display is needed.
//
// Thread: [main].
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <korvolib/gui/x_cstandardgui.h>

#include "history.h"
#include "picture_file.h"
#include "session_hand.h"

namespace kvKorvoV12_9_0_320::kvHost {

class KCSessionWindow {
  public:
    /// From the description that the algorithm (FinishCreate done) has of it; gestures become steps of the history.
    /// Both outlive this. Throws KCHostFailure "it describes no window", or what is wrong with the description.
    KCSessionWindow(cALGORITHM& algorithm, KCHistory& history);

    /// What had to be left out, a line for each: "GUIXML:12: the window knows no class \"Knbo\"".
    std::vector<std::string> GetProblems() const;

    /// By its own name, or by that of the parameter it leads; null for neither.
    KCGUIControl* FindControl(const std::string& name);
    /// All names that FindControl knows, each once.
    std::vector<std::string> GetControlNames();

    // What a hand does; false when nothing in the window took it. The controls must be there.
    bool Play(const sUSE_MOUSE& mouse);
    bool Play(const sTURN_WHEEL& wheel);
    bool Play(const sPRESS_KEY& key);
    bool Play(const sTYPE_TEXT& type);
    bool Play(const sTOUCH& touch);
    bool Play(const sHOVER& hover);
    bool ChooseFromMenu(const KCGUIControl& control, int32_t choice);

    /// What came of the history since the last call: "step Input Gain", or nothing.
    std::string TakeSteps();

    /// The time of the window's clock: hover delays, marks of parameters.
    void Idle(double timeSeconds);
    bool NeedsRedraw() const { return m_window.NeedsRedraw(); }
    /// The whole window as a file of the kind that the path's ending says.
    std::string DrawFile(const std::string& path, double scale);

  private:
    using KCEventData = PluginViewManager::KCEventData;

    KUPoint<double> PointOf(const sHAND_PLACE& place);
    KCEventData PointerAt(KUPoint<double> point, KUModifiers modifiers);
    bool Press(KUPoint<double> point, KUModifiers modifiers, int32_t numClicks);
    bool Release(KUModifiers modifiers);

    KCHistory& m_history;
    KCEventData m_pointer;                    // as of its last event
    std::map<int32_t, KCEventData> m_fingers; // those that are down
    std::vector<std::string> m_steps;
    double m_timeSeconds = 0.0;
    CStandardGUI_X m_window; // the last: where it closes in a gesture, it still tells of a step
};

} // namespace kvKorvoV12_9_0_320::kvHost
