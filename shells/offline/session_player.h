// Plays a session into an algorithm: finds the parameters that it names, and carries out each event at the block
// that it is due at, in the way a host does: under the algorithm's lock, through the update operations, buffers
// executed.
//
// An event takes effect at the first block boundary that is not before its time, counted in whole frames: never
// early, and at most one block late.
//
// What a hand does goes to the plug-in's window, which is made when the session or the caller needs it, and which
// then sees everything else too.
//
// Thread: [main], between two blocks.
#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <korvolib/alg/algorithm.h>

#include "history.h"
#include "host_automation.h"
#include "parameter_changes.h"
#include "session.h"
#include "session_window.h"

namespace kvKorvoV12_9_0_320::kvHost {

/// What an event did.
struct sPLAYED_EVENT {
    double atSeconds = 0.0;     // as the session says
    double playedSeconds = 0.0; // when the block began
    int line = 0;
    std::string what;    // DescribeAction
    std::string effect;  // "Ratio 2 → 4", or "nothing changed"
    std::string history; // what came of it there, as KCHistory tells it; empty for nothing
    std::string state;   // "clean" or "dirty" afterwards
};

/// What only a window can be told.
template <class Action>
concept ActionByHand = std::same_as<Action, sCHOOSE_FROM_MENU> ||
    requires(KCSessionWindow& window, const Action& action) {
    window.Play(action);
};

class KCSessionPlayer {
  public:
    /// Algorithm (FinishCreate done) and session must outlive this. Throws KCHostFailure with file and line for a
    /// name, state, value or text that the parameters do not know, for a control that is not in the window, and
    /// where a hand needs a window that the plug-in does not describe. At most `undoLevel` gestures can be undone.
    KCSessionPlayer(cALGORITHM& algorithm, const sSESSION& session, int32_t sampleRateHz, uint16_t undoLevel);

    /// Carries out what is due at a block that begins with this frame; the frames of successive calls ascend.
    void PlayUpTo(int64_t frame);
    /// Carries out everything that is left, each event at its own time.
    void PlayAll();

    /// Makes the window unless it is there. Throws KCHostFailure where the plug-in describes none.
    KCSessionWindow& OpenWindow();
    /// Null unless the session or OpenWindow has made it.
    KCSessionWindow* GetWindow() const { return m_window.get(); }

    /// The controls, connected to this host.
    const KCHostAutomation& GetAutomation() const { return m_automation; }
    const KCHistory& GetHistory() const { return m_history; }
    const std::vector<sPLAYED_EVENT>& GetPlayed() const { return m_played; }
    size_t GetNumLeft() const { return m_events.size() - m_played.size(); }

  private:
    using BUFFER_HEADER = cALGORITHM::BUFFER_HEADER;

    struct sBOUND_EVENT {
        const sSESSION_EVENT* event = nullptr;
        int64_t frame = 0;
        size_t param = kNoParam;     // of the events that name one
        double state = 0.0;          // where a 'set' or a 'control' moves it
        int32_t choice = 0;          // of a menu
        size_t control = kNoControl; // of automation
    };

    sBOUND_EVENT Bind(const sSESSION_EVENT& event) const;
    size_t FindAutomationControl(const sSESSION_EVENT& event, const std::string& name) const;
    void BindAutomation(const sSESSION_EVENT& event, sBOUND_EVENT& bound) const;
    void RefuseUnknownGroup(const sSESSION_EVENT& event, const sENABLE_LINK& link) const;
    size_t FindParam(const sSESSION_EVENT& event, const std::string& name) const;
    void OpenWindowFor(const sSESSION_EVENT& event);
    KCGUIControl& FindControl(const sSESSION_EVENT& event, const std::string& name) const;
    int32_t ChoiceOf(const sSESSION_EVENT& event, const sCHOOSE_FROM_MENU& menu) const;
    double StateOf(const sSESSION_EVENT& event, const sSET_PARAM& set, size_t param) const;
    double StateOfValue(const sSESSION_EVENT& event, double realWorld, size_t param) const;
    double StateOfText(const sSESSION_EVENT& event, const std::string& text, size_t param) const;
    [[noreturn]] void Fail(const sSESSION_EVENT& event, const std::string& text) const;

    void PlayNext(int64_t frame);
    // One for each kind of event; the chain is executed by the caller. What `played` is not told of effect and
    // history is found out afterwards.
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sSET_PARAM& set, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sSTEP_PARAM& step, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sENABLE_LINK& link, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sSWITCH_SETUP& change, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sCOPY_SETUP& copy, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sUSE_HISTORY& use, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sCHOOSE_FROM_MENU& menu, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sSET_CONTROL& set, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sHOLD_CONTROL& hold, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sSEND_MIDI& midi, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sLEARN_CONTROL& learn, sPLAYED_EVENT& played);
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const sDETACH_CONTROL& detach, sPLAYED_EVENT& played);
    template <ActionByHand Action>
    BUFFER_HEADER* Play(const sBOUND_EVENT& event, const Action& action, sPLAYED_EVENT& played);
    void TellOfHand(bool isTaken, const KCParameterChanges& changes, sPLAYED_EVENT& played);
    BUFFER_HEADER* Move(size_t param, double state, bool isGesture);

    cALGORITHM& m_algorithm;
    const sSESSION& m_session;
    double m_sampleRateHz;
    KCHostAutomation m_automation;
    KCHistory m_history;
    std::unique_ptr<KCSessionWindow> m_window; // null until it is needed; goes before the history
    std::vector<sBOUND_EVENT> m_events;
    std::vector<sPLAYED_EVENT> m_played;
};

} // namespace kvKorvoV12_9_0_320::kvHost
