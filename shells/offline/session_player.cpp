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
    : m_algorithm(algorithm), m_session(session), m_sampleRateHz(sampleRateHz), m_history(algorithm, undoLevel) {
    const KCAlgorithmLock lock(m_algorithm);
    for (const sSESSION_EVENT& event : session.events)
        m_events.push_back(Bind(event));
}

void KCSessionPlayer::PlayUpTo(int64_t frame) {
    while (GetNumLeft() > 0 && m_events[m_played.size()].frame <= frame)
        PlayNext(frame);
}

void KCSessionPlayer::PlayNext(int64_t frame) {
    const sBOUND_EVENT& bound = m_events[m_played.size()];
    const KCAlgorithmLock lock(m_algorithm);
    const std::vector<double> before = ActiveValues();
    sPLAYED_EVENT played;
    played.atSeconds = bound.event->atSeconds;
    played.playedSeconds = static_cast<double>(frame) / m_sampleRateHz;
    played.line = bound.event->line;
    played.what = DescribeAction(bound.event->action);
    BUFFER_HEADER* chain =
        std::visit([&](const auto& action) { return Play(bound, action, played); }, bound.event->action);
    m_algorithm.ExecuteAndDisposeBuffer(chain);
    // A gesture that has moved nothing is no step, and what can be redone stays.
    if (IsGesture(bound.event->action) && ActiveValues() != before)
        played.history = m_history.InsertStep(bound.param);
    if (played.effect.empty())
        played.effect = EffectSince(before);
    played.state = m_history.GetStateText();
    m_played.push_back(std::move(played));
}

// ---- Finding what an event means --------------------------------------------------------------------------------

KCSessionPlayer::sBOUND_EVENT KCSessionPlayer::Bind(const sSESSION_EVENT& event) const {
    sBOUND_EVENT bound{&event, std::llround(event.atSeconds * m_sampleRateHz), kNoParam, 0.0};
    std::visit(
        [&](const auto& action) {
            if constexpr (requires { action.param; })
                bound.param = FindParam(event, action.param);
        },
        event.action);
    if (const auto* const set = std::get_if<sSET_PARAM>(&event.action))
        bound.state = std::clamp(StateOf(event, *set, bound.param), 0.0, 1000.0);
    if (const auto* const link = std::get_if<sENABLE_LINK>(&event.action))
        RefuseUnknownGroup(event, *link);
    return bound;
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
    std::vector<std::string> nearest = NearestNames(names, name);
    for (std::string& near : nearest)
        near = Quoted(near);
    Fail(event,
         "no parameter is named " + Quoted(name) +
             (nearest.empty() ? "; 'korvo-host list' shows the names" : "; nearest: " + JoinedText(nearest, ", ")));
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

// ---- Telling what it did ----------------------------------------------------------------------------------------

std::vector<double> KCSessionPlayer::ActiveValues() const {
    std::vector<double> values(m_algorithm.GetNumParams());
    for (size_t index = 0; index < values.size(); ++index)
        values[index] = m_algorithm.GetParamRealWorld(index);
    return values;
}

std::string KCSessionPlayer::EffectSince(const std::vector<double>& before) const {
    constexpr size_t kMostNamed = 3;
    std::vector<std::string> changes;
    for (size_t index = 0; index < before.size(); ++index) {
        const double now = m_algorithm.GetParamRealWorld(index);
        const sCONTROL_PARAM& record = *m_algorithm.GetParam(index);
        if (now == before[index])
            continue;
        std::string change = record.GetName().c_str();
        change += ' ';
        changes.push_back(change + ValueText(record, before[index]) + " → " + ValueText(record, now));
    }
    if (changes.empty())
        return "nothing changed";
    if (changes.size() <= kMostNamed)
        return JoinedText(changes, ", ");
    return std::to_string(changes.size()) + " parameters changed";
}

} // namespace kvKorvoV12_9_0_320::kvHost
