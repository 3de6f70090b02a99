// How an automation control moves its parameters and what it tells the host. Its description is in
// automation_control_xml.cpp.

#include <korvolib/control/automation_control.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <korvolib/alg/param_stepping.h>
#include <korvolib/alg/param_text.h>
#include <korvolib/control/automation_manager.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/number_text.h>

namespace kvKorvoV12_9_0_320 {
namespace {

constexpr int32_t kSelector_Value = 16, kSelector_Touch = 17, kSelector_Release = 18;

// The chain that grows while parameters move. When a plug-in's hook throws, its blocks go back, and a whole update
// makes good what nobody will execute now.
class ChainUnderWay {
  public:
    using BUFFER_HEADER = cALGORITHM::BUFFER_HEADER;

    explicit ChainUnderWay(cALGORITHM* algorithm) : m_algorithm(algorithm) {}
    ~ChainUnderWay() {
        if (m_first == nullptr)
            return;
        KPAPI_PROCESS_MEMORY::GiveBackChain(m_first);
        if (m_algorithm != nullptr)
            m_algorithm->SetUpdateAlgRequired();
    }
    ChainUnderWay(const ChainUnderWay&) = delete;
    ChainUnderWay& operator=(const ChainUnderWay&) = delete;

    // From its last block on, so that no chain is walked twice.
    void Append(BUFFER_HEADER* blocks) {
        if (blocks == nullptr)
            return;
        if (m_first == nullptr)
            m_first = blocks;
        else
            cALGORITHM::ChainBufs(m_last, blocks);
        for (m_last = blocks; m_last->next != nullptr;)
            m_last = m_last->next;
    }
    BUFFER_HEADER* Take() { return std::exchange(m_first, nullptr); }

  private:
    cALGORITHM* m_algorithm;
    BUFFER_HEADER* m_first = nullptr;
    BUFFER_HEADER* m_last = nullptr;
};

// As unsigned, so that what is below 0 is above the limit too.
int32_t UpTo(uint32_t limit, int32_t number) noexcept {
    return static_cast<uint32_t>(number) > limit ? -1 : number;
}

} // namespace

KCAutomationControl::KCAutomationControl() : KCBaseControl(KEControlBinding::Controller) {}

KCAutomationControl::KCAutomationControl(const KCFixedStringBase& name) : KCAutomationControl() { SetName(name); }

KCAutomationControl::KCAutomationControl(const KCAutomationControl& other)
    : KCBaseControl(other), m_midiEventType(other.m_midiEventType), m_midiControlID(other.m_midiControlID),
      m_midiChannel(other.m_midiChannel), m_midiGroup(other.m_midiGroup), m_automationType(other.m_automationType),
      m_id(other.m_id), m_ctrlID(other.m_ctrlID), m_midiMapping(other.m_midiMapping), m_ledMap(other.m_ledMap),
      m_surfaceDisplay(other.m_surfaceDisplay) {}

KCAutomationControl::~KCAutomationControl() = default;

std::unique_ptr<KCBaseControl> KCAutomationControl::Clone() const {
    try {
        return std::unique_ptr<KCBaseControl>(new KCAutomationControl(*this));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

int32_t KCAutomationControl::FinishCreate() {
    const int32_t result = KCBaseControl::FinishCreate();
    SetControlFlag(kControl_HasLead, HasLead());
    return result;
}

// ---- The lead -------------------------------------------------------------------------------------------------

void KCAutomationControl::SetLeadPosition(size_t position) {
    m_leadPosition = position;
    SetControlFlag(kControl_HasLead, HasLead());
}

cALGORITHM* KCAutomationControl::GetLeadAlgorithm() const noexcept {
    return HasLead() ? m_params[m_leadPosition].GetAlgorithm() : nullptr;
}

bool KCAutomationControl::IsLeadStepped() const {
    return IsLeadBound() && GetLeadAlgorithm()->GetParamType(GetLeadParamIndex()) == kParamType_Discrete;
}

bool KCAutomationControl::FollowsLead(size_t registration) const noexcept {
    if (!HasLead() || registration == m_leadPosition || registration >= m_params.size())
        return false;
    const KCParamRegistrationData& follower = m_params[registration];
    return !follower.GetRegisterFlag(kRegister_NotByAutomation) &&
           follower.GetRegisterInfo().CompareParamModifiers(m_params[m_leadPosition].GetRegisterInfo());
}

void KCAutomationControl::UpdateValueStringOfParam() const {
    if (!IsLeadBound())
        return;
    cALGORITHM& algorithm = *GetLeadAlgorithm();
    sCONTROL_PARAM& param = *algorithm.GetParam(GetLeadParamIndex());
    if (!param.IsValueStringCurrent()) // a text set by hand stands as long as its value does
        param.UpdateValueString(algorithm.GetActiveSetup());
}

int32_t KCAutomationControl::TranslateController(double value, KCFixedStringBase& text, double& realWorld) const {
    if (!IsLeadBound() || std::isnan(value))
        return kErr_Generic;
    const sCONTROL_PARAM& param = *std::as_const(*GetLeadAlgorithm()).GetParam(GetLeadParamIndex());
    realWorld = param.StateToRealWorld(ParamStepping::Settle(param, std::clamp(value, 0.0, kFullTravel)));
    FormatValueText(param, realWorld, text);
    return kErr_NoErr;
}

// ---- Values ---------------------------------------------------------------------------------------------------

KCAutomationControl::BUFFER_HEADER* KCAutomationControl::SetControllerValue(double value) {
    return HasLead() ? SetControllerValueSelf(value) : nullptr;
}

namespace {

void StoreMoved(KCParamRegistrationData& registration, double delta) {
    registration.SetValue(std::min(kFullTravel, std::max(0.0, registration.GetValue() + delta)));
}

cALGORITHM::BUFFER_HEADER* MoveToStored(const KCParamRegistrationData& registration) {
    cALGORITHM* const algorithm = registration.GetAlgorithm();
    return algorithm == nullptr
               ? nullptr
               : algorithm->UpdateParamState(registration.GetParamIndex(), registration.GetValue(), false);
}

} // namespace

// All values are stored before any parameter moves: a record knows its own when its parameter tells of the change,
// and a parameter that two records name goes the distance once.

KCAutomationControl::BUFFER_HEADER* KCAutomationControl::SetControllerValueSelf(double value) {
    if (!HasLead() || std::isnan(value))
        return nullptr;
    const double delta = value - m_params[m_leadPosition].GetValue();
    StoreMoved(m_params[m_leadPosition], delta);
    for (size_t i = 0; i < m_params.size(); ++i)
        if (FollowsLead(i))
            StoreMoved(m_params[i], delta);
    ChainUnderWay chain(GetLeadAlgorithm());
    chain.Append(MoveToStored(m_params[m_leadPosition]));
    for (size_t i = 0; i < m_params.size(); ++i) // by index: a hook may register more
        if (FollowsLead(i))
            chain.Append(MoveToStored(m_params[i]));
    return chain.Take();
}

bool KCAutomationControl::ReinterpretMidiValue(int32_t, double&) { return false; }

// ---- The host ---------------------------------------------------------------------------------------------------

void KCAutomationControl::SetAutomationRefCons(int64_t refCon1, int64_t refCon2) noexcept {
    m_refCon1 = refCon1;
    m_refCon2 = refCon2;
}

void KCAutomationControl::GetAutomationRefCons(int64_t& refCon1, int64_t& refCon2) const noexcept {
    refCon1 = m_refCon1;
    refCon2 = m_refCon2;
}

bool KCAutomationControl::CanCallHost() const noexcept {
    return IsConnected() && m_algorithm != nullptr && m_algorithm->GetHostCallback() != nullptr;
}

void KCAutomationControl::CallHost(int32_t selector, intptr_t argument) const {
    m_algorithm->GetHostCallback()(selector, m_algorithm->GetExecRefcon(), static_cast<intptr_t>(m_refCon2),
                                   argument, 0, 0);
}

// In both the mark is settled before the call, so that a host that comes back from within its callback finds it.
bool KCAutomationControl::NotifyTouch() {
    if (m_isTouched || !CanCallHost())
        return false;
    m_isTouched = true;
    CallHost(kSelector_Touch, static_cast<intptr_t>(m_leadPosition));
    return true;
}

bool KCAutomationControl::NotifyRelease() {
    if (!m_isTouched || !CanCallHost())
        return false;
    m_isTouched = false;
    CallHost(kSelector_Release, static_cast<intptr_t>(m_leadPosition));
    return true;
}

void KCAutomationControl::NotifySetControlValue(double value) {
    if (CanCallHost())
        CallHost(kSelector_Value, reinterpret_cast<intptr_t>(&value));
}

int32_t KCAutomationControl::GetControlAutomationInfo(sCONTROL_AUTOMATION_INFO& info) const {
    if (!IsControlAutomationInfoVersionSupported(info.version))
        return kErr_WrongRecordVersion;
    info = sCONTROL_AUTOMATION_INFO();
    info.kind = kAutomationInfoKind;
    info.hasLead = m_flags[kControl_HasLead] && HasLead();
    info.infoFlag = m_flags[kControl_InfoFlag];
    info.automationType = m_automationType;
    GetAutomationRefCons(info.refCon1, info.refCon2);
    KUSafeStrcpy(info.shortName, m_name.c_str());
    KUSafeStrcpy(info.longName, m_name.c_str());
    if (!HasLead())
        return kErr_NoErr;
    if (!IsLeadBound())
        return kErr_Generic;
    FillLead(m_params[m_leadPosition], info);
    return kErr_NoErr;
}

void KCAutomationControl::FillLead(const KCParamRegistrationData& lead, sCONTROL_AUTOMATION_INFO& info) const {
    const cALGORITHM& algorithm = *lead.GetAlgorithm();
    const size_t index = lead.GetParamIndex();
    info.key = lead.GetSpecificData();
    info.value = lead.GetValue();
    info.realWorld = algorithm.GetParamRealWorld(index);
    info.leadParamIndex = index;
    KCFixedString<127> text;
    algorithm.GetParamUnitsString(index, text);
    KUSafeStrcpy(info.units, text.c_str());
    UpdateValueStringOfParam();
    algorithm.GetParamValueString(index, text);
    KUSafeStrcpy(info.valueString, text.c_str());
    info.numStates = IsLeadStepped() ? algorithm.GetParamNumStates(index) : 0;
}

// ---- MIDI -------------------------------------------------------------------------------------------------------

void KCAutomationControl::OnMidiChanged() noexcept {
    if (m_manager != nullptr)
        m_manager->OnMidiAttachmentChanged();
}

void KCAutomationControl::SetMIDILearnMode(bool isLearning) noexcept {
    m_isLearning = isLearning;
    OnMidiChanged();
}

void KCAutomationControl::SetMIDIEventType(int32_t type) noexcept {
    m_midiEventType = UpTo(127, type);
    m_takeOver.Reset();
    OnMidiChanged();
}

void KCAutomationControl::SetMIDIControlID(int32_t id) noexcept {
    m_midiControlID = UpTo(127, id);
    m_takeOver.Reset();
    OnMidiChanged();
}

void KCAutomationControl::SetMIDIChannel(int32_t channel) noexcept { m_midiChannel = UpTo(16, channel); }

void KCAutomationControl::SetMIDIMapping(const kvMIDI::sMIDI_MAPPING& mapping) noexcept {
    m_midiMapping = mapping;
    m_takeOver.Reset();
}

void KCAutomationControl::DetachFromMIDI() noexcept {
    SetMIDIControlID(kNotAttached);
    SetMIDIEventType(-1);
    SetMIDIChannel(0);
    SetMIDIMapping(kvMIDI::sMIDI_MAPPING());
    SetMIDILearnMode(false);
}

bool KCAutomationControl::CanAttachToRTMIDI() const {
    return CanAttachToMIDI() && !m_flags[kControl_NotAutomatable] &&
           !GetLeadAlgorithm()->IsParamUnused(GetLeadParamIndex());
}

// ---- Control surfaces -------------------------------------------------------------------------------------------

int32_t KCAutomationControl::GetLedValueFromMap(int32_t value) const noexcept {
    const auto found = m_ledMap.find(value);
    return found == m_ledMap.end() ? -1 : found->second;
}

} // namespace kvKorvoV12_9_0_320
