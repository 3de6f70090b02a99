// The members of cALGORITHM that reach the link groups, and what it does when a link has moved a parameter: the
// same as an update would have done.

#include <korvolib/alg/algorithm_internal.h>
#include <korvolib/control/link_groups.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

#include <cstring>
#include <utility>

namespace kvKorvoV12_9_0_320 {

std::unique_ptr<KCLinkGroups> cALGORITHM::InstantiateSpecificLinkGroupSelf() { return nullptr; }
void cALGORITHM::AddSpecificLinkFuncs(KCLinkGroups&) {}

int32_t cALGORITHM::CreateLinkGroupsInstance() {
    m_linkGroups = InstantiateSpecificLinkGroupSelf();
    if (m_linkGroups == nullptr)
        m_linkGroups = std::make_unique<KCLinkGroups>(*this);
    m_linkGroups->ConnectListener(this);
    AddSpecificLinkFuncs(*m_linkGroups);
    const int32_t result = DescribeLinkGroups();
    const int32_t finished = m_linkGroups->FinishCreate();
    return result != kErr_NoErr ? result : finished;
}

int32_t cALGORITHM::DescribeLinkGroups() {
    const char* const xml = GetDescription("ParamsXML");
    KCXMLElement root;
    if (xml == nullptr || root.Parse(xml, std::strlen(xml)) != kErr_NoErr)
        return kErr_NoErr; // what is wrong with it was said when the parameters were read
    const KCXMLElement* const groups = root.FindChild("LinkGroups");
    if (groups == nullptr)
        return kErr_NoErr;
    std::vector<sDESCRIPTION_PROBLEM> problems;
    m_linkGroups->ReadFromXML(*groups, problems);
    return KeepDescriptionProblems("ParamsXML", problems);
}

bool cALGORITHM::IsParamInLinkedMode(size_t index) const {
    return m_linkGroups != nullptr && m_linkGroups->IsParamInLinkedMode(index);
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::LinkParams(size_t index, bool isTopLevel) {
    // Most parameters are in no group: the caller, who holds the lock as ever, need not take it once more.
    if (index >= m_params.size() || m_linkGroups == nullptr || m_params[index].GetLinkGroups().empty())
        return nullptr;
    const KCAlgorithmLock lock(*this);
    return CollectLinkChain([&] { m_linkGroups->LinkParams(index, isTopLevel); });
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::UpdateParamByGesture(size_t index, double state) {
    const KCAlgorithmLock lock(*this);
    const sLINK_GESTURE gesture = BeginLinkGesture(index);
    sChain chain(*this, UpdateParamRequestState(index, state));
    chain.Append(EndLinkGesture(gesture));
    return chain.Release();
}

cALGORITHM::sLINK_GESTURE cALGORITHM::BeginLinkGesture(size_t index) {
    if (m_linkGroups != nullptr)
        m_linkGroups->StoreLastValues(index);
    return {index, m_activeSetup, GetParamState(index)};
}

void cALGORITHM::LeaveOutOfLinkGesture(size_t index) {
    if (m_linkGroups != nullptr)
        m_linkGroups->LeaveAlone(index);
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::EndLinkGesture(const sLINK_GESTURE& gesture) {
    // A hook that switched setups has ended the gesture: the other setup's values know nothing of it.
    const bool hasMoved = m_activeSetup == gesture.setup && GetParamState(gesture.index) != gesture.oldState;
    if (m_linkGroups == nullptr)
        return nullptr;
    // Also when a law throws: what was left out of this gesture is part of whatever links next.
    const std::unique_ptr<KCLinkGroups, void (*)(KCLinkGroups*)> atEnd(
        m_linkGroups.get(), [](KCLinkGroups* groups) { groups->ForgetLeftAlone(); });
    return !hasMoved ? nullptr : CollectLinkChain([&] {
        m_linkGroups->LinkParams(gesture.index, true);
        m_linkGroups->CorrectParamModifications(gesture.index);
    });
}

// Runs `links`; the blocks of all parameters that it moved, as one chain. A pass inside a pass has a chain of its
// own.
template <class Links>
cALGORITHM::BUFFER_HEADER* cALGORITHM::CollectLinkChain(Links links) {
    sChain chain(*this);
    sChain* const outer = std::exchange(m_linkChain, &chain);
    try {
        links();
    } catch (...) {
        m_linkChain = outer;
        throw;
    }
    m_linkChain = outer;
    return chain.Release();
}

void cALGORITHM::OnLinkedParamValueModified(size_t index, double oldRealWorld) {
    if (index >= m_params.size())
        return;
    sCONTROL_PARAM& param = m_params[index];
    if (param.HasFlag(kParamFlag_BothSetups)) {
        const EPluginSetup other = OtherPluginSetup(m_activeSetup);
        param.SetState(other, param.GetState(m_activeSetup));
        param.SetRealWorld(other, param.GetRealWorld(m_activeSetup));
    }
    param.SetRefreshMark(kRefreshMark);
    param.UpdateControllers(index);
    const double newRealWorld = param.GetRealWorld(m_activeSetup);
    if (!HasVisiblyChanged(oldRealWorld, newRealWorld) && !IsUpdateParamAlwayesRequired(index))
        return;
    BUFFER_HEADER* blocks = ApplyParamSelf(index);
    if (m_linkChain != nullptr)
        m_linkChain->Append(blocks);
    else
        ExecuteAndDisposeBuffer(blocks); // moved outside a gesture: nobody else would send it
    ReportPresetModified(param, oldRealWorld != newRealWorld);
    if (m_linkGroups == nullptr || m_linkGroups->GetNotifyOnLinkedParams())
        NotifyParamValue(index);
}

} // namespace kvKorvoV12_9_0_320
