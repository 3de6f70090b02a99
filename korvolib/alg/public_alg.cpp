#include <korvolib/alg/public_alg.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

namespace {

// RestoreParams leaves such an entry out; and all of them are the same to operator==.
constexpr double kNotSavedNumber = std::numeric_limits<double>::quiet_NaN();
constexpr sPARAM_VALUES kNotSaved = {{kNotSavedNumber, kNotSavedNumber}, {kNotSavedNumber, kNotSavedNumber}};

} // namespace

// The block comes as malloc gives it: a capture writes every byte anyway.
static_assert(std::is_trivially_copyable_v<sPARAM_VALUES> && std::is_trivially_destructible_v<sPARAM_VALUES>);

KCParamValues::~KCParamValues() { std::free(m_values); }

KCParamValues::KCParamValues(KCParamValues&& other) noexcept
    : m_values(std::exchange(other.m_values, nullptr)), m_count(std::exchange(other.m_count, 0)) {}

KCParamValues& KCParamValues::operator=(KCParamValues&& other) noexcept {
    if (this != &other) {
        std::free(m_values);
        m_values = std::exchange(other.m_values, nullptr);
        m_count = std::exchange(other.m_count, 0);
    }
    return *this;
}

int32_t KCParamValues::Allocate(size_t count) noexcept {
    std::free(m_values);
    m_values = nullptr;
    m_count = 0;
    if (count == 0)
        return kErr_NoErr;
    if (count > std::numeric_limits<size_t>::max() / sizeof(sPARAM_VALUES))
        return kErr_AllocationFailed;
    m_values = static_cast<sPARAM_VALUES*>(std::malloc(count * sizeof(sPARAM_VALUES)));
    m_count = m_values != nullptr ? count : 0;
    return m_values != nullptr ? kErr_NoErr : kErr_AllocationFailed;
}

bool operator==(const KCParamValues& a, const KCParamValues& b) noexcept {
    return a.m_count == b.m_count &&
           (a.m_count == 0 || std::memcmp(a.m_values, b.m_values, a.m_count * sizeof(sPARAM_VALUES)) == 0);
}

size_t CPublicAlg::GetNumParams() const { return m_algorithm != nullptr ? m_algorithm->GetNumParams() : 0; }

const KCFixedString<127>& CPublicAlg::GetParamName(size_t index) const {
    static const KCFixedString<127> kNone;
    return m_algorithm != nullptr ? m_algorithm->GetParamName(index) : kNone;
}

size_t CPublicAlg::GetParamIDFromName(const KCFixedStringBase& name) const {
    return m_algorithm != nullptr ? m_algorithm->GetParamIDFromName(name) : kNoParam;
}

bool CPublicAlg::IsParamSavedToUndo(size_t index) const {
    if (index >= GetNumParams())
        return false;
    const std::vector<size_t>& notSaved = m_algorithm->GetParamsNotSavedToUndo();
    return !std::binary_search(notSaved.begin(), notSaved.end(), index);
}

int32_t CPublicAlg::CaptureValues(KCParamValues& out) const {
    if (m_algorithm == nullptr) {
        out = KCParamValues();
        return kErr_NullArgument;
    }
    const KCAlgorithmLock lock(*m_algorithm);
    const size_t count = m_algorithm->GetNumParams();
    if (out.size() != count && out.Allocate(count) != kErr_NoErr)
        return kErr_AllocationFailed;
    m_algorithm->CaptureParams(0, out.data(), count);
    return kErr_NoErr;
}

int32_t CPublicAlg::CaptureState(sALGORITHM_STATE& out) const {
    if (m_algorithm == nullptr)
        return CaptureValues(out.values);
    const KCAlgorithmLock lock(*m_algorithm);
    if (const int32_t result = CaptureValues(out.values); result != kErr_NoErr)
        return result;
    for (const size_t index : m_algorithm->GetParamsNotSavedToUndo())
        out.values.data()[index] = kNotSaved;
    out.activeSetup = m_algorithm->GetActiveSetup();
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B})
        out.setupTitles[setup] = m_algorithm->GetSetupTitle(setup);
    return kErr_NoErr;
}

int32_t CPublicAlg::RestoreState(const sALGORITHM_STATE& state) const { return Restore(state, false); }

int32_t CPublicAlg::RestorePreset(const sALGORITHM_STATE& state) const { return Restore(state, true); }

int32_t CPublicAlg::Restore(const sALGORITHM_STATE& state, bool isPreset) const {
    if (m_algorithm == nullptr)
        return kErr_NullArgument;
    const KCAlgorithmLock lock(*m_algorithm);
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B})
        if (m_algorithm->GetSetupTitle(setup) != state.setupTitles[setup])
            m_algorithm->SetSetupTitle(setup, state.setupTitles[setup]);
    cALGORITHM::BUFFER_HEADER* chain =
        m_algorithm->RestoreParams(nullptr, state.values.data(), state.values.size(), state.activeSetup);
    if (isPreset)
        m_algorithm->Broadcaster()->PresetLoaded(m_algorithm->GetActiveSetup());
    if (chain != nullptr)
        m_algorithm->ExecuteAndDisposeBuffer(chain);
    return kErr_NoErr;
}

} // namespace kvKorvoV12_9_0_320
