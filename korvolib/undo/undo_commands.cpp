#include <korvolib/undo/undo_commands.h>

#include <utility>

#include <korvolib/presets/preset_values.h>

namespace kvKorvoV12_9_0_320::Undo {

namespace {

KCFixedString<255> StepName(const CPublicAlg& algorithm, uint32_t param) {
    const KCFixedString<127>& name = algorithm.GetParamName(param);
    return name.empty() ? KCFixedString<255>("Parameters") : KCFixedString<255>(name);
}

KCFixedString<255> StepName(const Preset::CPresetInfo* preset) {
    return preset != nullptr ? KCFixedString<255>(preset->GetName()) : KCFixedString<255>();
}

bool IsSameState(const sALGORITHM_STATE& a, const sALGORITHM_STATE& b) {
    return a.activeSetup == b.activeSetup && a.setupTitles[0] == b.setupTitles[0] &&
           a.setupTitles[1] == b.setupTitles[1] && a.values == b.values;
}

} // namespace

KCUndoCommandParameters::KCUndoCommandParameters(cALGORITHM* algorithm, uint32_t param)
    : Command(StepName(CPublicAlg(algorithm), param), param), m_algorithm(algorithm),
      m_result(m_algorithm.CaptureState(m_state)) {}

bool KCUndoCommandParameters::operator==(const Command& other) const {
    const auto* const that = dynamic_cast<const KCUndoCommandParameters*>(&other);
    return that != nullptr && m_algorithm == that->m_algorithm && IsSameState(m_state, that->m_state);
}

bool KCUndoCommandParameters::IsSameType(const Command* other) const {
    const auto* const that = dynamic_cast<const KCUndoCommandParameters*>(other);
    return that != nullptr && m_algorithm == that->m_algorithm && getID() == that->getID();
}

int32_t KCUndoCommandParameters::Execute() {
    return m_result == kErr_NoErr ? m_algorithm.RestoreState(m_state) : m_result;
}

void KCUndoCommandParameters::TakeOverState(Command& newer) {
    auto* const that = dynamic_cast<KCUndoCommandParameters*>(&newer);
    if (that == nullptr || that->m_result != kErr_NoErr)
        return;
    std::swap(m_state, that->m_state);
    m_result = kErr_NoErr;
}

bool KCUndoCommandParameters::HasStateOf(const Command* other) const {
    if (const auto* const preset = dynamic_cast<const KCUndoCommandPreset*>(other); preset != nullptr)
        return m_algorithm == preset->m_algorithm && IsSameState(m_state, preset->m_state);
    return other != nullptr && *this == *other;
}

KCUndoCommandPreset::KCUndoCommandPreset(const CPublicAlg& algorithm, uint32_t id,
                                         const Preset::CPresetInfo* preset)
    : Command(StepName(preset), id), m_algorithm(algorithm),
      m_result(preset != nullptr ? m_algorithm.CaptureState(m_state) : kErr_NullArgument) {
    if (m_result == kErr_NoErr)
        Preset::LayPresetOver(m_state, m_algorithm, *preset);
}

bool KCUndoCommandPreset::operator==(const Command& other) const {
    const auto* const that = dynamic_cast<const KCUndoCommandPreset*>(&other);
    return that != nullptr && m_algorithm == that->m_algorithm && getName() == that->getName() &&
           IsSameState(m_state, that->m_state);
}

bool KCUndoCommandPreset::IsSameType(const Command* other) const {
    const auto* const that = dynamic_cast<const KCUndoCommandPreset*>(other);
    return that != nullptr && m_algorithm == that->m_algorithm && getID() == that->getID();
}

int32_t KCUndoCommandPreset::Execute() {
    return m_result == kErr_NoErr ? m_algorithm.RestorePreset(m_state) : m_result;
}

void KCUndoCommandPreset::SetEvents(const EventSet& events) {
    EventSet all = events;
    if (!getName().empty())
        all.emplace(getName());
    Command::SetEvents(all);
}

void KCUndoCommandPreset::TakeOverState(Command& newer) {
    auto* const that = dynamic_cast<KCUndoCommandPreset*>(&newer);
    if (that == nullptr || that->m_result != kErr_NoErr)
        return;
    std::swap(m_state, that->m_state);
    SetName(that->getName());
    m_result = kErr_NoErr;
}

} // namespace kvKorvoV12_9_0_320::Undo
