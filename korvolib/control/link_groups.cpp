// Which groups there are and who is in them. The pass that moves parameters is in link_pass.cpp.

#include <korvolib/control/link_groups.h>

#include <algorithm>

#include <korvolib/alg/algorithm.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

KCLinkGroups::Listener::~Listener() = default;

KCLinkGroups::KCLinkGroups(cALGORITHM& algorithm) : KCLinkGroups(algorithm.m_params, algorithm.m_activeSetup) {}

KCLinkGroups::KCLinkGroups(std::vector<sCONTROL_PARAM>& params, const EPluginSetup& activeSetup)
    : m_params(params), m_activeSetup(activeSetup) {
    InitFunctionsMap();
}

KCLinkGroups::~KCLinkGroups() = default;

void KCLinkGroups::InitFunctionsMapSelf() {}

void KCLinkGroups::InitFunctionsMap() {
    AddFunctionInMap("Reverse", std::make_unique<KCLinkReverseImpl>(*this));
    AddFunctionInMap("Absolute", std::make_unique<KCLinkAbsoluteImpl>(*this));
    AddFunctionInMap("Relative", std::make_unique<KCLinkRelativeImpl>(*this));
}

int32_t KCLinkGroups::AddFunctionInMap(const LawName& name, std::unique_ptr<KCLinkFuncInterface> law) {
    if (law == nullptr || name.empty())
        return kErr_NullArgument;
    return m_laws.try_emplace(name, std::move(law)).second ? kErr_NoErr : kErr_Generic;
}

KCLinkFuncInterface* KCLinkGroups::FindLaw(const LawName& name) const {
    const auto found = m_laws.find(name);
    return found == m_laws.end() ? nullptr : found->second.get();
}

KCLinkGroups::LawName KCLinkGroups::GetLawName(const KCLinkFuncInterface* law) const {
    for (const auto& [name, known] : m_laws)
        if (known.get() == law)
            return name;
    return {};
}

int32_t KCLinkGroups::FinishCreate() {
    InitFunctionsMapSelf();
    m_isInitialised = false;
    InitAtFirstCall(kNoSource);
    return kErr_NoErr;
}

void KCLinkGroups::Init() {
    m_isInitialised = true;
    InitLinkGroupsInfoMap();
    InitLastValuesMap();
    m_updated.assign(m_params.size(), false);
    m_moves.reserve(m_params.size());
    m_leftAlone.reserve(m_params.size());
}

void KCLinkGroups::InitLinkGroupsInfoMap() {
    m_groupsOfParam.assign(m_params.size(), {});
    for (sCONTROL_PARAM& param : m_params) {
        param.ClearLinkGroups();
        param.ClearControlledLinkGroups();
    }
    for (const auto& [number, info] : m_groups) {
        for (const size_t member : info.members) {
            m_groupsOfParam[member].push_back(&info);
            m_params[member].AddLinkGroup(number);
            m_params[member].AddControlledLinkGroup(number);
        }
    }
}

int32_t KCLinkGroups::SetGroupInfo(int32_t group, int64_t word, double number, const LawName& law, bool isEnabled,
                                   bool isAlwaysActive) {
    return SetGroupInfo(group, word, number, FindLaw(law), isEnabled, isAlwaysActive);
}

int32_t KCLinkGroups::SetGroupInfo(int32_t group, int64_t word, double number, KCLinkFuncInterface* law,
                                   bool isEnabled, bool isAlwaysActive) {
    sLINK_GROUP_INFO& info = m_groups[group];
    info.word = word;
    info.number = number;
    info.law = law;
    info.isEnabled = isEnabled;
    info.isAlwaysActive = isAlwaysActive;
    return law != nullptr ? kErr_NoErr : kErr_Generic;
}

bool KCLinkGroups::SetGroupState(int32_t group, bool isEnabled) {
    const auto found = m_groups.find(group);
    if (found == m_groups.end())
        return false;
    found->second.isEnabled = isEnabled;
    return true;
}

bool KCLinkGroups::SetGroupAlwaysActive(int32_t group, bool isAlwaysActive) {
    const auto found = m_groups.find(group);
    if (found == m_groups.end())
        return false;
    found->second.isAlwaysActive = isAlwaysActive;
    return true;
}

bool KCLinkGroups::AddMember(int32_t group, size_t index) {
    const auto found = m_groups.find(group);
    if (found == m_groups.end() || !IsParam(index))
        return false;
    std::vector<size_t>& members = found->second.members;
    const auto place = std::ranges::lower_bound(members, index);
    if (place != members.end() && *place == index)
        return false;
    members.insert(place, index);
    if (m_isInitialised)
        InitLinkGroupsInfoMap();
    return true;
}

bool KCLinkGroups::IsLinkGroupEnabled(size_t index, int32_t group) const {
    const auto found = m_groups.find(group);
    return found != m_groups.end() && found->second.isEnabled &&
           std::ranges::binary_search(found->second.members, index);
}

const std::vector<int>& KCLinkGroups::GetParamLinkGroups(size_t index) const {
    static const std::vector<int> kNone;
    return IsParam(index) ? m_params[index].GetLinkGroups() : kNone;
}

const std::vector<int>& KCLinkGroups::GetParamControlledLinkGroups(size_t index) const {
    static const std::vector<int> kNone;
    return IsParam(index) ? m_params[index].GetControlledLinkGroups() : kNone;
}

bool KCLinkGroups::IsParamInLinkedMode(size_t index) const {
    return index < m_groupsOfParam.size() && std::ranges::any_of(m_groupsOfParam[index], [](const auto* info) {
               return info->IsActing() && info->members.size() >= 2;
           });
}

bool KCLinkGroups::SanityCheck() const {
    for (const auto& [number, info] : m_groups) {
        const auto* const law = info.law; // clang 14 captures no structured binding
        const bool isKnownLaw = law == nullptr || std::ranges::any_of(m_laws, [law](const auto& entry) {
                                    return entry.second.get() == law;
                                });
        const bool areMembersSound =
            std::ranges::adjacent_find(info.members, std::greater_equal<size_t>()) == info.members.end() &&
            std::ranges::all_of(info.members, [&](size_t member) { return IsParam(member); });
        if (!isKnownLaw || !areMembersSound)
            return false;
    }
    return m_lastValues.empty() || m_lastValues.size() == m_params.size();
}

void KCLinkGroups::AdjustLinkGroupsToCurrentGuiControls(std::span<const sNAMED_LINK_GROUP> named,
                                                        std::vector<sDESCRIPTION_PROBLEM>& problems) {
    for (size_t i = 0; i < named.size(); ++i) {
        const int32_t group = named[i].group;
        const auto isSame = [group](const sNAMED_LINK_GROUP& other) { return other.group == group; };
        if (m_groups.contains(group)) {
            AddMember(group, named[i].index);
        } else if (std::ranges::none_of(named.first(i), isSame)) {
            sDESCRIPTION_PROBLEM problem;
            problem.Text << "no link group has the number " << group;
            problems.push_back(problem);
        }
    }
}

} // namespace kvKorvoV12_9_0_320
