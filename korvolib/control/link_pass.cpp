// How a moved parameter moves the members of its groups, and what a pass remembers.

#include <korvolib/control/link_groups.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvKorvoV12_9_0_320 {

// ---- Last values ----------------------------------------------------------------------------------------------

inline void KCLinkGroups::StoreLast(size_t index, EPluginSetup setup) {
    if (!IsPluginSetup(setup))
        return;
    m_lastValues[index].realWorld[setup] = m_params[index].GetRealWorld(setup);
    m_lastValues[index].state[setup] = m_params[index].GetState(setup);
}

void KCLinkGroups::InitLastValuesMap() {
    m_lastValues.assign(m_params.size(), {});
    for (size_t index = 0; index < m_params.size(); ++index) {
        const sCONTROL_PARAM& param = m_params[index];
        m_lastValues[index] = {{param.GetRealWorld(kPluginSetup_A), param.GetRealWorld(kPluginSetup_B)},
                               {param.GetState(kPluginSetup_A), param.GetState(kPluginSetup_B)}};
    }
}

const sLINK_LAST_VALUES* KCLinkGroups::GetLastValues(size_t index) const {
    return index < m_lastValues.size() ? &m_lastValues[index] : nullptr;
}

void KCLinkGroups::UpdateLastValues(size_t index, int32_t setup) {
    const EPluginSetup which = setup == kPluginSetup_Active ? m_activeSetup : static_cast<EPluginSetup>(setup);
    if (index >= m_lastValues.size() || !IsPluginSetup(which))
        return;
    // A value that belongs to its state stays, also one that the scale would round: absolute links carry those.
    sCONTROL_PARAM& param = m_params[index];
    const bool hasInverse = param.GetInverseScaleFunction() != nullptr;
    if (hasInverse && param.RealWorldToState(param.GetRealWorld(m_activeSetup)) != param.GetState(m_activeSetup))
        param.UpdateRealWorldFromState(m_activeSetup);
    StoreLast(index, which);
}

void KCLinkGroups::CopyLastValuesToOtherSetup() {
    const EPluginSetup other = OtherPluginSetup(m_activeSetup);
    for (sLINK_LAST_VALUES& last : m_lastValues) {
        last.realWorld[other] = last.realWorld[m_activeSetup];
        last.state[other] = last.state[m_activeSetup];
    }
}

void KCLinkGroups::StoreLastValues(size_t source) {
    InitAtFirstCall(source);
    ForgetLeftAlone();
    if (!IsParam(source) || m_groupsOfParam[source].empty())
        return;
    m_heldSource = source;
    StoreLast(source, m_activeSetup);
    for (const sLINK_GROUP_INFO* info : m_groupsOfParam[source])
        if (info->IsActing())
            for (const size_t member : info->members)
                StoreLast(member, m_activeSetup);
}

void KCLinkGroups::LeaveAlone(size_t index) {
    InitAtFirstCall(index);
    const auto place = std::ranges::lower_bound(m_leftAlone, index);
    if (IsParam(index) && (place == m_leftAlone.end() || *place != index))
        m_leftAlone.insert(place, index);
}

// A gesture inside a pass under way, from a hook, leaves that pass its marks.
void KCLinkGroups::ForgetLeftAlone() noexcept {
    if (m_leftAlone.empty() || m_walkDepth + m_tellingDepth != 0)
        return;
    for (const size_t index : m_leftAlone)
        m_params[index].SetLinkedInThisPass(false);
    m_leftAlone.clear();
}

void KCLinkGroups::AtUpdateAlg() {
    InitAtFirstCall(kNoSource);
    for (size_t index = 0; index < m_params.size(); ++index)
        if (index != m_heldSource && !m_groupsOfParam[index].empty())
            StoreLast(index, m_activeSetup);
}

void KCLinkGroups::ResetMinDelta(size_t index) {
    if (index < m_lastValues.size())
        m_minDelta = std::fabs(m_params[index].GetState(m_activeSetup) - m_lastValues[index].state[m_activeSetup]);
}

// ---- The pass -------------------------------------------------------------------------------------------------

bool KCLinkGroups::ShouldLinkParams(size_t index, double realWorld) const {
    return IsParam(index) && m_params[index].GetRealWorld(m_activeSetup) == realWorld;
}

void KCLinkGroups::ResetParamUpdatedMap() { std::fill(m_updated.begin(), m_updated.end(), false); }

void KCLinkGroups::BeginPass(size_t source) {
    for (const sMove& move : m_moves) {
        m_params[move.index].SetLinkedInThisPass(false);
        m_updated[move.index] = false;
    }
    m_moves.clear();
    if (IsParam(m_source)) {
        m_params[m_source].SetLinkedInThisPass(false);
        m_updated[m_source] = false;
    }
    m_source = source;
    m_passSetup = m_activeSetup;
    m_sourceLastState = m_lastValues[source].state[m_activeSetup];
    m_isCorrectionCancelled = false;
    for (const size_t index : m_leftAlone)
        m_params[index].SetLinkedInThisPass(true);
    m_params[source].SetLinkedInThisPass(true);
    m_updated[source] = true;
    ResetMinDelta(source);
}

// Counts what is under way, also when it throws.
class KCLinkGroups::sUnderWay {
  public:
    explicit sUnderWay(int32_t& depth) : m_depth(depth) { ++m_depth; }
    ~sUnderWay() { --m_depth; }
    sUnderWay(const sUnderWay&) = delete;
    sUnderWay& operator=(const sUnderWay&) = delete;

  private:
    int32_t& m_depth;
};

void KCLinkGroups::LinkParams(size_t source, bool isTopLevel) {
    InitAtFirstCall(source);
    if (!IsParam(source) || m_groupsOfParam[source].empty())
        return;
    if ((isTopLevel && m_walkDepth + m_tellingDepth == 0) || !IsParam(m_source))
        BeginPass(source);
    const size_t firstMove = m_moves.size();
    const double minDelta = m_minDelta;
    Walk(source);
    if (source != m_source)
        m_minDelta = minDelta; // members of another source are no bound for this pass
    if (source == m_heldSource)
        m_heldSource = kNoSource;
    if (m_walkDepth == 0)
        EndPass(source, firstMove); // otherwise the walk around this one tells of all
}

// By number and index, not by iterator: a law may change groups and members.
void KCLinkGroups::Walk(size_t source) {
    const sUnderWay walking(m_walkDepth);
    for (size_t group = 0; group < m_groupsOfParam[source].size(); ++group) {
        const sLINK_GROUP_INFO& info = *m_groupsOfParam[source][group];
        for (size_t i = 0; i < info.members.size() && info.IsActing(); ++i)
            if (info.members[i] != source)
                MoveMember(source, info.members[i], *info.law);
    }
}

// A member that the pass has met already stays where it is; its look is brought up to date.
void KCLinkGroups::MoveMember(size_t source, size_t member, KCLinkFuncInterface& law) {
    sCONTROL_PARAM& param = m_params[member];
    if (param.IsLinkedInThisPass()) {
        param.SetRefreshMark(kRefreshMark);
        return;
    }
    const size_t number = Remember(source, member, &law);
    const double outerSign = std::exchange(m_distanceSign, 0.0);
    law.LinkFunc(source, member);
    m_moves[number].distanceSign = std::exchange(m_distanceSign, outerSign);
}

// Counts the parameter as met in this pass; its number among the moves.
size_t KCLinkGroups::Remember(size_t source, size_t index, KCLinkFuncInterface* law) {
    m_params[index].SetLinkedInThisPass(true);
    m_updated[index] = true;
    const double lastState = m_lastValues[index].state[m_activeSetup];
    m_moves.push_back({index, source, lastState, m_params[index].GetRealWorld(m_activeSetup), law, 0.0});
    return m_moves.size() - 1;
}

void KCLinkGroups::EndPass(size_t source, size_t firstMove) {
    const size_t endMove = m_moves.size();
    StoreLast(source, m_activeSetup);
    for (size_t i = firstMove; i < endMove; ++i)
        StoreLast(m_moves[i].index, m_activeSetup);
    const sUnderWay telling(m_tellingDepth);
    for (size_t i = firstMove; i < endMove; ++i)
        if (m_listener != nullptr)
            m_listener->OnLinkedParamValueModified(m_moves[i].index, m_moves[i].oldRealWorld);
}

void KCLinkGroups::Tell(size_t index, double oldRealWorld) {
    if (m_listener == nullptr)
        return;
    const sUnderWay telling(m_tellingDepth);
    m_listener->OnLinkedParamValueModified(index, oldRealWorld);
}

// ---- The laws' arithmetic -------------------------------------------------------------------------------------

void KCLinkGroups::MoveTo(size_t index, double state) {
    sCONTROL_PARAM& param = m_params[index];
    param.UpdateState(m_activeSetup, state < 0.0 ? 0.0 : std::min(TopState(param), state));
    param.SetRefreshMark(kRefreshMark);
}

double KCLinkGroups::TopState(const sCONTROL_PARAM& param) {
    return param.IsDiscrete() && param.GetScaleType() == "toggle" ? std::max(param.GetNumStates(), 1) - 1
                                                                  : kFullTravel;
}

void KCLinkGroups::LinkAbsolute(size_t source, size_t destination) {
    if (!IsParam(source) || !IsParam(destination))
        return;
    sCONTROL_PARAM& param = m_params[destination];
    param.SetState(m_activeSetup, m_params[source].GetState(m_activeSetup));
    param.UpdateRealWorldFromState(m_activeSetup);
    param.SetRefreshMark(kRefreshMark);
}

void KCLinkGroups::LinkRelative(size_t source, size_t destination) {
    LinkReverseOrRelative(source, destination, false);
}

void KCLinkGroups::LinkReverse(size_t source, size_t destination) {
    LinkReverseOrRelative(source, destination, true);
}

void KCLinkGroups::LinkReverseOrRelative(size_t source, size_t destination, bool isReverse) {
    InitAtFirstCall(source);
    const EPluginSetup setup = m_activeSetup;
    if (std::max(source, destination) >= m_lastValues.size() || !IsPluginSetup(setup))
        return;
    const double delta = m_params[source].GetState(setup) - m_lastValues[source].state[setup];
    const double state = m_params[destination].GetState(setup);
    MoveTo(destination, isReverse ? state - delta : state + delta);
    const double moved = m_params[destination].GetState(setup) - m_lastValues[destination].state[setup];
    m_minDelta = std::min(m_minDelta, std::fabs(moved));
    m_distanceSign = isReverse ? -1.0 : 1.0;
}

// ---- Correction, equalising, resetting --------------------------------------------------------------------------

void KCLinkGroups::CorrectParamModifications(size_t source) {
    constexpr double kRounding = 1e-9; // of states: a destination that went this much less has met no bound
    if (!IsParam(source) || source != m_source || m_activeSetup != m_passSetup || m_isCorrectionCancelled)
        return;
    sCONTROL_PARAM& param = m_params[source];
    const double wanted = param.GetState(m_activeSetup) - m_sourceLastState;
    if (!(m_minDelta < std::fabs(wanted) - kRounding))
        return;
    m_isCorrectionCancelled = true; // a pass is corrected once
    const double distance = std::copysign(m_minDelta, wanted);
    const double oldRealWorld = param.GetRealWorld(m_activeSetup);
    MoveTo(source, m_sourceLastState + distance);
    for (size_t i = 0; i < m_moves.size(); ++i) { // a law may link on and add to them
        m_moves[i].oldRealWorld = m_params[m_moves[i].index].GetRealWorld(m_activeSetup);
        BringBack(m_moves[i], distance);
    }
    Tell(source, oldRealWorld);
    EndPass(source, 0);
    CorrectParamModificationsSelf(source);
}

void KCLinkGroups::BringBack(const sMove& move, double distance) {
    if (move.law == nullptr || move.source != m_source)
        return; // brought to its reset state, by nobody's law, or moved by a pass inside this one
    if (move.distanceSign == 0.0) {
        const sUnderWay walking(m_walkDepth);
        move.law->LinkFunc(m_source, move.index);
        return;
    }
    MoveTo(move.index, move.lastState + move.distanceSign * distance);
}

void KCLinkGroups::CorrectParamModificationsSelf(size_t) {}

void KCLinkGroups::EqualizeAllAbsoluteControls() {
    InitAtFirstCall(kNoSource);
    for (const auto& [number, info] : m_groups) {
        // By index, and asked each time: the listener may change the group.
        for (size_t i = 1; i < info.members.size() && info.IsActing() && info.law->AmIAbsolute(); ++i) {
            const size_t member = info.members[i];
            const double oldRealWorld = m_params[member].GetRealWorld(m_activeSetup);
            info.law->LinkFunc(info.members.front(), member);
            UpdateLastValues(member, kPluginSetup_Active);
            Tell(member, oldRealWorld);
        }
    }
}

void KCLinkGroups::ResetLinkedParam(size_t index) {
    InitAtFirstCall(index);
    if (!IsParam(index))
        return;
    if (!m_params[index].IsLinkedInThisPass())
        Remember(index, index, nullptr);
    m_params[index].SetState(m_activeSetup, m_params[index].GetResetState());
    m_params[index].UpdateRealWorldFromState(m_activeSetup);
    m_params[index].SetRefreshMark(kRefreshMark);
}

} // namespace kvKorvoV12_9_0_320
