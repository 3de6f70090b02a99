// Setups A and B, and the one operation that brings a whole set of values back. What has changed is written
// first, then announced: no hook ever sees a half-restored set.

#include <korvolib/alg/algorithm_internal.h>
#include <korvolib/utilities/error_codes.h>

#include <bit>
#include <cmath>
#include <cstring>

namespace kvKorvoV12_9_0_320 {

namespace {

// What is still owed to a parameter whose value has been replaced. A hook that restores in turn pays the debts it
// finds, so each is paid once.
constexpr uint8_t kDue_Hook = 1;
constexpr uint8_t kDue_Notification = 2;
constexpr uint8_t kDue_Switch = 4; // both, unless the value restored on the way is the one that is heard now

constexpr const char* kSetupTexts[] = {"SETUP_A", "SETUP_B"};

bool IsSameNumber(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// The first parameter from `index` on that is owed `what`; most are owed nothing, eight at a look.
bool FindDue(const std::vector<uint8_t>& due, uint8_t what, size_t& index) {
    const uint64_t whatOfEight = what * UINT64_C(0x0101010101010101);
    for (uint64_t eight = 0; index + sizeof eight <= due.size(); index += sizeof eight) {
        std::memcpy(&eight, &due[index], sizeof eight);
        if ((eight & whatOfEight) != 0)
            break;
    }
    while (index < due.size() && (due[index] & what) == 0)
        ++index;
    return index < due.size();
}

// Written by the parameter itself, or a number that anything could have written.
bool IsRestorable(const sCONTROL_PARAM& param, const sPARAM_VALUES& values) {
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B}) {
        const double state = values.state[setup];
        const double realWorld = values.realWorld[setup];
        if (!std::isfinite(state))
            return false;
        if (!std::isfinite(realWorld) && !IsSameNumber(param.StateToRealWorld(state), realWorld))
            return false;
    }
    return true;
}

sPARAM_VALUES ValuesOf(const sCONTROL_PARAM& param) {
    return {{param.GetState(kPluginSetup_A), param.GetState(kPluginSetup_B)},
            {param.GetRealWorld(kPluginSetup_A), param.GetRealWorld(kPluginSetup_B)}};
}

bool IsSameBits(double a, double b) { return std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b); }

// Nothing to write, to hear or to draw.
bool IsUntouched(const sCONTROL_PARAM& param, const sPARAM_VALUES& values) {
    return IsSameBits(param.GetState(kPluginSetup_A), values.state[0]) &&
           IsSameBits(param.GetState(kPluginSetup_B), values.state[1]) &&
           IsSameBits(param.GetRealWorld(kPluginSetup_A), values.realWorld[0]) &&
           IsSameBits(param.GetRealWorld(kPluginSetup_B), values.realWorld[1]) &&
           !param.HasFlag(kParamFlags_AlwaysUpdate);
}

void StoreValues(sCONTROL_PARAM& param, const sPARAM_VALUES& values) {
    param.SetState(kPluginSetup_A, values.state[0]);
    param.SetState(kPluginSetup_B, values.state[1]);
    param.SetRealWorld(kPluginSetup_A, values.realWorld[0]);
    param.SetRealWorld(kPluginSetup_B, values.realWorld[1]);
}

} // namespace

size_t cALGORITHM::CaptureParams(size_t first, sPARAM_VALUES* values, size_t count) const {
    if (values == nullptr || first >= m_params.size())
        return 0;
    const KCAlgorithmLock lock(*this);
    count = std::min(count, m_params.size() - first);
    const sCONTROL_PARAM* const params = m_params.data() + first;
    for (size_t i = 0; i < count; ++i)
        values[i] = ValuesOf(params[i]);
    return count;
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::RestoreParams(const size_t* indexes, const sPARAM_VALUES* values,
                                                     size_t count, EPluginSetup activeSetup) {
    const KCAlgorithmLock lock(*this);
    return AnnounceRestored(WriteRestored(indexes, values, count, activeSetup));
}

cALGORITHM::sRestored cALGORITHM::WriteRestored(const size_t* indexes, const sPARAM_VALUES* values, size_t count,
                                                EPluginSetup activeSetup) {
    if (values == nullptr)
        count = 0;
    const EPluginSetup newActive = IsPluginSetup(activeSetup) ? activeSetup : m_activeSetup;
    sRestored restored;
    restored.isSwitch = newActive != m_activeSetup;
    if (restored.isSwitch)
        OweDifferencesBetweenSetups();
    for (size_t i = 0; i < count; ++i) {
        const size_t index = indexes != nullptr ? indexes[i] : i;
        if (index >= m_params.size() || (!restored.isSwitch && IsUntouched(m_params[index], values[i])))
            continue;
        if (IsRestorable(m_params[index], values[i]))
            restored.isModified |= RestoreParam(index, values[i], newActive);
    }
    m_activeSetup = newActive;
    if (restored.isSwitch)
        ShowActiveSetup();
    return restored;
}

// True when the preset differs afterwards.
bool cALGORITHM::RestoreParam(size_t index, const sPARAM_VALUES& values, EPluginSetup newActive) {
    sCONTROL_PARAM& param = m_params[index];
    const sPARAM_VALUES old = ValuesOf(param);
    StoreValues(param, values);
    param.SetRefreshMark(kRefreshMark);
    if (newActive == m_activeSetup) // in a switch they are told when the other setup is there to be read
        param.UpdateControllers(index);
    const double heard = old.realWorld[m_activeSetup]; // what the plug-in works with now
    uint8_t& due = m_rest->due[index];
    due &= static_cast<uint8_t>(~kDue_Switch);
    if (HasVisiblyChanged(heard, values.realWorld[newActive]) || IsUpdateParamAlwayesRequired(index))
        due |= kDue_Hook | kDue_Notification;
    return old != values && !param.HasFlag(kParamFlags_NeverModifiesPreset);
}

void cALGORITHM::OweDifferencesBetweenSetups() {
    for (size_t index = 0; index < m_params.size(); ++index) {
        const sPARAM_VALUES values = ValuesOf(m_params[index]);
        if (HasVisiblyChanged(values.realWorld[0], values.realWorld[1]) || IsUpdateParamAlwayesRequired(index))
            m_rest->due[index] |= kDue_Switch;
    }
}

// A switch changes what every parameter shows, also of those whose values were not restored.
void cALGORITHM::ShowActiveSetup() {
    for (size_t index = 0; index < m_params.size(); ++index) {
        m_params[index].InvalidateValueString();
        m_params[index].UpdateControllers(index);
    }
    RefreshAllParams();
}

// Between writing and announcing, so that the plug-in's processing never hears a value which its own hook takes
// back.
void cALGORITHM::LimitLoadedRealWorlds() {
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B}) {
        for (size_t index = 0; index < m_params.size(); ++index) {
            const sCONTROL_PARAM& param = m_params[index];
            const double loadedState = param.GetState(m_activeSetup);
            const double loaded = param.GetRealWorld(m_activeSetup);
            LimitLoadedRealWorld(index, setup);
            const bool hasChanged = HasVisiblyChanged(loaded, param.GetRealWorld(m_activeSetup));
            if (hasChanged)
                m_rest->due[index] |= kDue_Hook | kDue_Notification;
            if (hasChanged || param.GetState(m_activeSetup) != loadedState)
                param.UpdateControllers(index);
        }
    }
}

// Hooks, then the listeners, then automation; the hooks' blocks as one chain.
cALGORITHM::BUFFER_HEADER* cALGORITHM::AnnounceRestored(const sRestored& restored) {
    if (restored.isSwitch)
        for (uint8_t& due : m_rest->due)
            if ((due & kDue_Switch) != 0)
                due = kDue_Hook | kDue_Notification;
    sChain chain(*this);
    for (size_t index = 0; FindDue(m_rest->due, kDue_Hook, index); ++index) {
        m_rest->due[index] &= static_cast<uint8_t>(~kDue_Hook);
        chain.Append(ApplyParamSelf(index));
    }
    if (restored.isSwitch)
        Broadcaster()->ActiveSetupChanged(m_activeSetup);
    if (restored.isModified)
        Broadcaster()->PresetModified(m_activeSetup);
    for (size_t index = 0; FindDue(m_rest->due, kDue_Notification, index); ++index) {
        m_rest->due[index] &= static_cast<uint8_t>(~kDue_Notification);
        NotifyParamValue(index);
    }
    return chain.Release();
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::SetActiveSetup(EPluginSetup setup) {
    const KCAlgorithmLock lock(*this);
    if (!IsPluginSetup(setup) || setup == m_activeSetup)
        return nullptr;
    OweDifferencesBetweenSetups();
    if (m_linkGroups != nullptr)
        m_linkGroups->CopyLastValuesToOtherSetup();
    m_activeSetup = setup;
    ShowActiveSetup();
    return AnnounceRestored({.isSwitch = true});
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::CopySetup(EPluginSetup from, EPluginSetup to) {
    const KCAlgorithmLock lock(*this);
    from = Resolve(from);
    to = Resolve(to);
    if (!IsPluginSetup(from) || !IsPluginSetup(to) || from == to)
        return nullptr;
    bool isModified = false;
    for (size_t index = 0; index < m_params.size(); ++index)
        isModified |= CopySetupOfParam(index, from, to);
    if (to == m_activeSetup)
        return AnnounceRestored({.isModified = isModified});
    if (isModified)
        Broadcaster()->PresetModified(to);
    return nullptr;
}

// True when the preset differs afterwards.
bool cALGORITHM::CopySetupOfParam(size_t index, EPluginSetup from, EPluginSetup to) {
    sCONTROL_PARAM& param = m_params[index];
    const sPARAM_VALUES old = ValuesOf(param);
    param.CopySetup(from, to);
    if (ValuesOf(param) == old)
        return false;
    if (to == m_activeSetup) {
        param.SetRefreshMark(kRefreshMark);
        param.UpdateControllers(index);
        if (HasVisiblyChanged(old.realWorld[0], old.realWorld[1]))
            m_rest->due[index] |= kDue_Hook | kDue_Notification;
    }
    return !param.HasFlag(kParamFlags_NeverModifiesPreset);
}

cALGORITHM::BUFFER_HEADER* cALGORITHM::InitData() {
    const KCAlgorithmLock lock(*this);
    InitInstanceData();
    std::vector<sPARAM_VALUES> values;
    try {
        values.resize(m_params.size());
    } catch (const std::bad_alloc&) {
        return nullptr; // nothing has moved
    }
    for (size_t index = 0; index < m_params.size(); ++index) {
        const double state = m_params[index].GetInitialState();
        const double realWorld = m_params[index].StateToRealWorld(state);
        values[index] = {{state, state}, {realWorld, realWorld}};
    }
    BUFFER_HEADER* const chain = RestoreParams(nullptr, values.data(), values.size(), m_activeSetup);
    InitDataSelf();
    return chain;
}

void cALGORITHM::InitInstanceData() {
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B}) {
        SetSetupTitle(setup, KCFixedString<127>());
        for (sCONTROL_PARAM& param : m_params)
            param.SetSetupWord(setup, 0);
    }
}

void cALGORITHM::SetupToSetupString(EPluginSetup setup, KCFixedString<15>& out) {
    out = IsPluginSetup(setup) ? kSetupTexts[setup] : "";
}

int32_t cALGORITHM::SetupStringToSetup(const KCFixedStringBase& text, EPluginSetup& setup) {
    for (const EPluginSetup candidate : {kPluginSetup_A, kPluginSetup_B}) {
        if (text.compare(kSetupTexts[candidate]) == 0) {
            setup = candidate;
            return kErr_NoErr;
        }
    }
    return kErr_Generic;
}

void cALGORITHM::SetSetupTitle(EPluginSetup setup, const KCFixedStringBase& title) {
    const KCAlgorithmLock lock(*this);
    setup = Resolve(setup);
    if (!IsPluginSetup(setup) || m_rest->setupTitles[setup].compare(title) == 0)
        return;
    m_rest->setupTitles[setup] = title;
    Broadcaster()->SetupTitleChanged(setup);
}

const KCFixedString<127>& cALGORITHM::GetSetupTitle(EPluginSetup setup) const {
    static const KCFixedString<127> kNone;
    setup = Resolve(setup);
    return IsPluginSetup(setup) ? m_rest->setupTitles[setup] : kNone;
}

} // namespace kvKorvoV12_9_0_320
