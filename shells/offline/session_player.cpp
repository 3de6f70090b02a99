#include "session_player.h"

#include <algorithm>
#include <cmath>

#include "failure.h"
#include "nearest_names.h"
#include "parameter_text.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

bool IsGesture(const SessionAction& action) {
    return std::visit(
        [](const auto& each) {
            if constexpr (requires { each.isGesture; })
                return each.isGesture;
            else
                return false;
        },
        action);
}

} // namespace

KCSessionPlayer::KCSessionPlayer(cALGORITHM& algorithm, const sSESSION& session, int32_t sampleRateHz,
                                 uint16_t undoLevel)
    : m_algorithm(algorithm), m_session(session), m_sampleRateHz(sampleRateHz), m_automation(algorithm),
      m_history(algorithm, undoLevel) {
    const KCAlgorithmLock lock(m_algorithm);
    for (const sSESSION_EVENT& event : session.events) {
        OpenWindowFor(event);
        m_events.push_back(Bind(event));
    }
}

KCSessionWindow& KCSessionPlayer::OpenWindow() {
    if (m_window == nullptr)
        m_window = std::make_unique<KCSessionWindow>(m_algorithm, m_history);
    return *m_window;
}

void KCSessionPlayer::PlayUpTo(int64_t frame) {
    const double seconds = static_cast<double>(frame) / m_sampleRateHz;
    if (m_window != nullptr)
        m_window->Idle(seconds);
    const size_t numPlayed = m_played.size();
    while (GetNumLeft() > 0 && m_events[m_played.size()].frame <= frame)
        PlayNext(frame);
    // What an event has changed beside values, such as which parameters are disabled, shows with the next tick.
    if (m_window != nullptr && m_played.size() > numPlayed)
        m_window->Idle(seconds);
}

void KCSessionPlayer::PlayAll() {
    while (GetNumLeft() > 0)
        PlayUpTo(m_events[m_played.size()].frame);
}

void KCSessionPlayer::PlayNext(int64_t frame) {
    const sBOUND_EVENT& bound = m_events[m_played.size()];
    const KCAlgorithmLock lock(m_algorithm);
    const KCParameterChanges changes(m_algorithm);
    sPLAYED_EVENT played;
    played.atSeconds = bound.event->atSeconds;
    played.playedSeconds = static_cast<double>(frame) / m_sampleRateHz;
    played.line = bound.event->line;
    played.what = DescribeAction(bound.event->action);
    BUFFER_HEADER* chain =
        std::visit([&](const auto& action) { return Play(bound, action, played); }, bound.event->action);
    m_algorithm.ExecuteAndDisposeBuffer(chain);
    // A gesture that has moved nothing is no step, and what can be redone stays.
    if (IsGesture(bound.event->action) && changes.HasAny())
        played.history = m_history.InsertStep(bound.param);
    if (played.effect.empty())
        played.effect = changes.ToText();
    played.state = m_history.GetStateText();
    m_played.push_back(std::move(played));
}

// ---- Finding what an event means --------------------------------------------------------------------------------

KCSessionPlayer::sBOUND_EVENT KCSessionPlayer::Bind(const sSESSION_EVENT& event) const {
    sBOUND_EVENT bound{&event, std::llround(event.atSeconds * m_sampleRateHz)};
    std::visit(
        [&](const auto& action) {
            if constexpr (requires { action.param; })
                bound.param = FindParam(event, action.param);
            if constexpr (requires { action.controlName; })
                bound.control = FindAutomationControl(event, action.controlName);
            if constexpr (requires { action.place; })
                if (!action.place.control.empty())
                    FindControl(event, action.place.control);
            if constexpr (requires { action.control; })
                if (!action.control.empty())
                    FindControl(event, action.control);
        },
        event.action);
    if (const auto* const menu = std::get_if<sCHOOSE_FROM_MENU>(&event.action))
        bound.choice = ChoiceOf(event, *menu);
    if (const auto* const set = std::get_if<sSET_PARAM>(&event.action))
        bound.state = std::clamp(StateOf(event, *set, bound.param), 0.0, 1000.0);
    BindAutomation(event, bound);
    if (const auto* const link = std::get_if<sENABLE_LINK>(&event.action))
        RefuseUnknownGroup(event, *link);
    return bound;
}

size_t KCSessionPlayer::FindAutomationControl(const sSESSION_EVENT& event, const std::string& name) const {
    try {
        return m_automation.FindControl(name);
    } catch (const KCHostFailure& failure) {
        Fail(event, failure.what());
    }
}

void KCSessionPlayer::BindAutomation(const sSESSION_EVENT& event, sBOUND_EVENT& bound) const {
    try {
        if (const auto* const set = std::get_if<sSET_CONTROL>(&event.action))
            bound.state = m_automation.StateOf(bound.control, *set);
        if (std::holds_alternative<sLEARN_CONTROL>(event.action))
            m_automation.RefuseDeafControl(bound.control);
    } catch (const KCHostFailure& failure) {
        Fail(event, failure.what());
    }
}

void KCSessionPlayer::RefuseUnknownGroup(const sSESSION_EVENT& event, const sENABLE_LINK& link) const {
    const KCLinkGroups::GroupMap& groups = m_algorithm.GetLinkGroups()->GetLinkGroupInfo();
    if (groups.contains(link.group))
        return;
    std::vector<std::string> numbers;
    for (const auto& [number, info] : groups)
        numbers.push_back(std::to_string(number));
    Fail(event, "no link group has the number " + std::to_string(link.group) +
                    (numbers.empty() ? "; the plug-in has none" : "; known are " + JoinedText(numbers, " and ")));
}

size_t KCSessionPlayer::FindParam(const sSESSION_EVENT& event, const std::string& name) const {
    const size_t param = m_algorithm.GetParamIDFromName(name.c_str());
    if (param != kNoParam)
        return param;
    std::vector<std::string> names;
    for (size_t index = 0; index < m_algorithm.GetNumParams(); ++index)
        names.emplace_back(m_algorithm.GetParamName(index).c_str());
    Fail(event,
         "no parameter is named " + Quoted(name) + NearestText(names, name, "; 'korvo-host list' shows the names"));
}

void KCSessionPlayer::OpenWindowFor(const sSESSION_EVENT& event) {
    const bool isByHand =
        std::visit([]<class Action>(const Action&) { return ActionByHand<Action>; }, event.action);
    if (!isByHand)
        return;
    try {
        OpenWindow();
    } catch (const KCHostFailure& failure) {
        Fail(event, failure.what());
    }
}

KCGUIControl& KCSessionPlayer::FindControl(const sSESSION_EVENT& event, const std::string& name) const {
    if (KCGUIControl* const control = m_window->FindControl(name))
        return *control;
    Fail(event, "no control is named " + Quoted(name) + NearestText(m_window->GetControlNames(), name, ""));
}

// The first parameter that the control has a menu for says what the choices are.
int32_t KCSessionPlayer::ChoiceOf(const sSESSION_EVENT& event, const sCHOOSE_FROM_MENU& menu) const {
    const auto& registrations = FindControl(event, menu.control).GetParamDataVec();
    const auto found = std::find_if(registrations.begin(), registrations.end(), [](const auto& registration) {
        return registration.IsBound() && registration.GetRegisterFlag(kRegister_Menu);
    });
    if (found == registrations.end())
        Fail(event, Quoted(menu.control) + " has no menu");
    const sCONTROL_PARAM& record = *m_algorithm.GetParam(found->GetParamIndex());
    const double step = record.GetStateStep();
    if (!record.IsDiscrete() || !(step > 0.0))
        Fail(event, Quoted(menu.control) + " has no menu with choices");
    if (!menu.choice)
        return static_cast<int32_t>(std::lround(StateOfText(event, menu.text, found->GetParamIndex()) / step));
    const double last = std::round(LastState(record) / step);
    if (*menu.choice > last)
        Fail(event, Quoted(menu.control) + " has the choices 0 to " + NumberText(last) + ", not " +
                        std::to_string(*menu.choice));
    return *menu.choice;
}

double KCSessionPlayer::StateOf(const sSESSION_EVENT& event, const sSET_PARAM& set, size_t param) const {
    switch (set.by) {
    case sSET_PARAM::KEBy::RealWorld:
        return StateOfValue(event, set.number, param);
    case sSET_PARAM::KEBy::Text:
        return StateOfText(event, set.text, param);
    case sSET_PARAM::KEBy::State:
        break;
    }
    const sCONTROL_PARAM& record = *m_algorithm.GetParam(param);
    if (record.IsDiscrete() && record.GetNumStates() > 0 && set.number > LastState(record))
        Fail(event, Quoted(set.param) + " has the states 0 to " + NumberText(LastState(record)) + ", not " +
                        NumberText(set.number));
    return set.number;
}

// A continuous parameter takes the nearest value that it has, as it does when somebody types; among a few choices,
// a value that is none of them is a mistake.
double KCSessionPlayer::StateOfValue(const sSESSION_EVENT& event, double realWorld, size_t param) const {
    constexpr double kSameValue = 1e-9;
    const double state = m_algorithm.RealWorldToState(param, realWorld);
    const sCONTROL_PARAM& record = *m_algorithm.GetParam(param);
    if (record.IsDiscrete() && std::abs(record.StateToRealWorld(state) - realWorld) > kSameValue)
        Fail(event, Quoted(record.GetName().c_str()) + " has no value " + NumberText(realWorld) + "; it goes " +
                        RangeText(record));
    return state;
}

double KCSessionPlayer::StateOfText(const sSESSION_EVENT& event, const std::string& text, size_t param) const {
    double realWorld = 0.0;
    if (m_algorithm.TranslateTextToRealWorld(param, KCFixedString<127>(text.c_str()), realWorld) !=
        kTranslateText_Accepted)
        Fail(event,
             Quoted(m_algorithm.GetParamName(param).c_str()) + " does not understand the text " + Quoted(text));
    return m_algorithm.RealWorldToState(param, realWorld);
}

void KCSessionPlayer::Fail(const sSESSION_EVENT& event, const std::string& text) const {
    throw KCHostFailure(SessionComplaint(m_session.fileName, event.line, text));
}

// ---- Carrying it out --------------------------------------------------------------------------------------------

// A user's hand moves what is linked too; a host's automation brings one parameter its own value.
KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Move(size_t param, double state, bool isGesture) {
    return isGesture ? m_algorithm.UpdateParamByGesture(param, state)
                     : m_algorithm.UpdateParamState(param, state, false);
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT& event, const sSET_PARAM& set,
                                                      sPLAYED_EVENT&) {
    return Move(event.param, event.state, set.isGesture);
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT& event, const sSTEP_PARAM& step,
                                                      sPLAYED_EVENT&) {
    BUFFER_HEADER* chain = nullptr;
    for (int32_t left = std::abs(step.by); left > 0; --left) {
        const double offset = m_algorithm.OffsetToNextDifferentState(event.param, step.by);
        const double state = std::clamp(m_algorithm.GetParamState(event.param) + offset, 0.0, 1000.0);
        // Each step's blocks go out at once: a long way would exhaust the pool.
        m_algorithm.ExecuteAndDisposeBuffer(chain);
        chain = Move(event.param, state, step.isGesture);
    }
    return chain;
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT&, const sENABLE_LINK& link,
                                                      sPLAYED_EVENT& played) {
    KCLinkGroups& groups = *m_algorithm.GetLinkGroups();
    groups.SetGroupState(link.group, link.isEnabled);
    played.effect = LinkGroupText(m_algorithm, link.group);
    return nullptr;
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT&, const sSWITCH_SETUP& change,
                                                      sPLAYED_EVENT&) {
    return m_algorithm.SetActiveSetup(change.setup);
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT&, const sCOPY_SETUP& copy,
                                                      sPLAYED_EVENT&) {
    return m_algorithm.CopySetup(copy.from, copy.to);
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT&, const sUSE_HISTORY& use,
                                                      sPLAYED_EVENT& played) {
    switch (use.what) {
    case sUSE_HISTORY::KEWhat::Undo:
        played.history = m_history.Undo();
        break;
    case sUSE_HISTORY::KEWhat::Redo:
        played.history = m_history.Redo();
        break;
    case sUSE_HISTORY::KEWhat::MarkClean:
        m_history.MarkClean();
        break;
    }
    return nullptr;
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT& event, const sSET_CONTROL&,
                                                      sPLAYED_EVENT&) {
    return m_automation.SetValue(event.control, event.state);
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT& event, const sHOLD_CONTROL& hold,
                                                      sPLAYED_EVENT& played) {
    played.effect = m_automation.Hold(event.control, hold.isHeld);
    return nullptr;
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT&, const sSEND_MIDI& midi,
                                                      sPLAYED_EVENT& played) {
    played.effect = m_automation.ReceiveMidi(midi.event);
    return nullptr;
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT& event, const sLEARN_CONTROL&,
                                                      sPLAYED_EVENT& played) {
    played.effect = m_automation.Learn(event.control);
    return nullptr;
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT& event, const sDETACH_CONTROL&,
                                                      sPLAYED_EVENT& played) {
    played.effect = m_automation.Detach(event.control);
    return nullptr;
}

// The window executes its own chains, and inserts its own steps.
template <ActionByHand Action>
KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT&, const Action& action,
                                                      sPLAYED_EVENT& played) {
    const KCParameterChanges changes(m_algorithm);
    TellOfHand(m_window->Play(action), changes, played);
    return nullptr;
}

KCSessionPlayer::BUFFER_HEADER* KCSessionPlayer::Play(const sBOUND_EVENT& event, const sCHOOSE_FROM_MENU& menu,
                                                      sPLAYED_EVENT& played) {
    const KCParameterChanges changes(m_algorithm);
    const KCGUIControl& control = FindControl(*event.event, menu.control);
    TellOfHand(m_window->ChooseFromMenu(control, event.choice), changes, played);
    return nullptr;
}

void KCSessionPlayer::TellOfHand(bool isTaken, const KCParameterChanges& changes, sPLAYED_EVENT& played) {
    played.history = m_window->TakeSteps();
    if (!isTaken && !changes.HasAny())
        played.effect = "no control took it";
}

} // namespace kvKorvoV12_9_0_320::kvHost
