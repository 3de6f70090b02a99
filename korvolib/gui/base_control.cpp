// A control and its registrations. Its description is in base_control_description.cpp.

#include <korvolib/gui/base_control.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <new>
#include <utility>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/converters.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

void KCControlBinding::OnParamChanged(size_t paramIndex) noexcept { m_control.OnParamChanged(paramIndex); }

// Life and bindings
// -------------------------------------------------------------------------------------------------

KCBaseControl::KCBaseControl(KEControlBinding kind) : m_binding(*this, kind) {}

KCBaseControl::KCBaseControl(const KCBaseControl& other)
    : m_name(other.m_name), m_flags(other.m_flags), m_params(other.m_params), m_leadPosition(other.m_leadPosition),
      m_algorithm(other.m_algorithm), m_binding(*this, other.m_binding.GetKind()) {
    try {
        for (const KCParamRegistrationData& registration : m_params)
            Bind(registration.GetParamIndex());
    } catch (...) { // no destructor will run
        UnbindAll();
        throw;
    }
}

KCBaseControl::~KCBaseControl() { UnbindAll(); }

void KCBaseControl::Bind(size_t paramIndex) {
    sCONTROL_PARAM* const param = m_algorithm == nullptr ? nullptr : m_algorithm->GetParam(paramIndex);
    if (param == nullptr)
        return;
    const bool isNew = m_binding.GetKind() == KEControlBinding::Controller ? param->AddController(&m_binding)
                                                                           : param->AddObserver(&m_binding);
    m_numBound += isNew ? 1 : 0;
}

void KCBaseControl::Unbind(size_t paramIndex) noexcept {
    sCONTROL_PARAM* const param = m_algorithm == nullptr ? nullptr : m_algorithm->GetParam(paramIndex);
    if (param != nullptr && (param->RemoveController(&m_binding) || param->RemoveObserver(&m_binding)))
        --m_numBound;
}

// A record that somebody has given another parameter no longer names the one that knows of this control: that one
// is looked for among all.
void KCBaseControl::UnbindAll() noexcept {
    for (const KCParamRegistrationData& registration : m_params)
        Unbind(registration.GetParamIndex());
    for (size_t index = 0; m_numBound != 0 && index < m_algorithm->GetNumParams(); ++index)
        Unbind(index);
}

void KCBaseControl::UnbindUnlessNamed(size_t paramIndex) noexcept {
    const bool isNamed = std::ranges::any_of(
        m_params, [paramIndex](const auto& registration) { return registration.GetParamIndex() == paramIndex; });
    if (m_params.empty())
        UnbindAll();
    else if (!isNamed)
        Unbind(paramIndex);
}

void KCBaseControl::OnParamChanged(size_t paramIndex) noexcept {
    for (KCParamRegistrationData& registration : m_params)
        if (registration.GetParamIndex() == paramIndex)
            registration.FollowParam();
    UpdatePointer(paramIndex);
}

// What a derived class may say
// ----------------------------------------------------------------------------------------

int32_t KCBaseControl::ReadFromXMLWithAlgSelf(const KCXMLElement&, cALGORITHM&, Problems&) { return kErr_NoErr; }
int32_t KCBaseControl::UpdateFromXMLWithAlgSelf(const KCXMLElement&, cALGORITHM&, Problems&) { return kErr_NoErr; }
int32_t KCBaseControl::FinishCreate() { return kErr_NoErr; }
int32_t KCBaseControl::FinishCreateSelf() { return kErr_NoErr; }
void KCBaseControl::UpdateDisabledMode() {}
void KCBaseControl::UpdatePointer(size_t) noexcept {}
void KCBaseControl::OnLRBChange() {}
void KCBaseControl::SetNeedToResetParams(bool isNeeded) { m_flags[kControl_NeedToResetParams] = isNeeded; }

bool KCBaseControl::GetControlFlag(EControlFlags flag) const {
    return flag >= 0 && flag < kNumControlFlags && m_flags[static_cast<size_t>(flag)];
}

void KCBaseControl::SetControlFlag(EControlFlags flag, bool isOn) {
    if (flag >= 0 && flag < kNumControlFlags)
        m_flags[static_cast<size_t>(flag)] = isOn;
}

size_t KCBaseControl::GetLeadParamID() const { return GetLeadParamIndex(); }
void KCBaseControl::DebugControl(KCFixedStringBase& text) const { DebugControlSelf(text); }

void KCBaseControl::DebugControlSelf(KCFixedStringBase& text) const {
    text << m_name << '\n';
    for (const KCParamRegistrationData& registration : m_params)
        registration.PrintRegistrationData(text);
}

void KCBaseControl::GetControlNameOfLength(KCFixedStringBase& out, size_t maxLength) const noexcept {
    out.assign(m_name.c_str(), std::min(maxLength, m_name.size()));
}

// Registrations
// -----------------------------------------------------------------------------------------------------

KCParamRegistrationData* KCBaseControl::GetParamData(size_t registration) noexcept {
    return registration < m_params.size() ? &m_params[registration] : nullptr;
}

const KCParamRegistrationData* KCBaseControl::GetParamData(size_t registration) const noexcept {
    return registration < m_params.size() ? &m_params[registration] : nullptr;
}

size_t KCBaseControl::GetLeadParamIndex() const noexcept {
    return m_leadPosition < m_params.size() ? m_params[m_leadPosition].GetParamIndex() : kNoParam;
}

void KCBaseControl::SettleLead() noexcept { m_flags[kControl_HasLead] = m_leadPosition < m_params.size(); }

int32_t KCBaseControl::Register(cALGORITHM* algorithm, size_t paramIndex, const KCRegisterInfo& info) {
    if (algorithm == nullptr)
        return kErr_NullArgument;
    return Register(KCParamRegistrationData(algorithm, paramIndex, info));
}

int32_t KCBaseControl::Register(const KCParamRegistrationData& registration) {
    cALGORITHM* const algorithm = registration.GetAlgorithm();
    if (algorithm == nullptr)
        return kErr_NullArgument;
    const bool isStranger = m_algorithm != nullptr && m_algorithm != algorithm && !m_params.empty();
    if (isStranger || !registration.IsBound())
        return kErr_Generic;
    const size_t numBefore = m_params.size();
    const size_t paramIndex = registration.GetParamIndex(); // the record may be one of this control's own
    cALGORITHM* const algorithmBefore = std::exchange(m_algorithm, algorithm);
    try {
        m_params.push_back(registration);
        Bind(paramIndex);
    } catch (const std::bad_alloc&) {
        m_params.resize(numBefore);
        m_algorithm = algorithmBefore;
        return kErr_AllocationFailed;
    }
    SettleLead();
    return kErr_NoErr;
}

int32_t KCBaseControl::ChgRegister(size_t paramIndex, const KCRegisterInfo& info) {
    for (KCParamRegistrationData& registration : m_params)
        if (registration.IsBound() && registration.GetParamIndex() == paramIndex) {
            registration.GetRegisterInfo() = info;
            return kErr_NoErr;
        }
    return kErr_Generic;
}

int32_t KCBaseControl::UnRegister(size_t registration) {
    if (registration >= m_params.size())
        return kErr_Generic;
    const size_t paramIndex = m_params[registration].GetParamIndex();
    m_params[registration].Release();
    m_params.erase(m_params.begin() + static_cast<ptrdiff_t>(registration));
    UnbindUnlessNamed(paramIndex);
    if (registration < m_leadPosition && m_leadPosition <= m_params.size())
        --m_leadPosition; // the lead has moved up; a position beyond the list goes on meaning none
    SettleLead();
    return kErr_NoErr;
}

int32_t KCBaseControl::UnRegisterParam(size_t paramIndex) {
    int32_t result = kErr_Generic;
    for (size_t i = m_params.size(); i-- > 0;)
        if (m_params[i].IsBound() && m_params[i].GetParamIndex() == paramIndex)
            result = UnRegister(i);
    return result;
}

void KCBaseControl::UnRegisterAll() {
    std::exception_ptr thrown;
    try {
        FinishDragParams();
    } catch (...) {
        thrown = std::current_exception();
    }
    UnbindAll();
    m_params.clear();
    m_leadPosition = 0;
    SettleLead();
    if (thrown != nullptr)
        std::rethrow_exception(thrown);
}

void KCBaseControl::FinishDragParams() {
    std::exception_ptr first;
    for (KCParamRegistrationData& registration : m_params) {
        try {
            registration.FinishDragParam();
        } catch (...) {
            if (first == nullptr)
                first = std::current_exception();
        }
    }
    if (first != nullptr)
        std::rethrow_exception(first);
}

int32_t KCBaseControl::AddParamArrayRegData(const KCParamRegistrationData& registration) {
    if (!registration.IsParamArrayRegData())
        return kErr_Generic;
    if (registration.IsBound())
        return Register(registration);
    try {
        m_params.push_back(registration);
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    if (m_algorithm == nullptr)
        m_algorithm = registration.GetAlgorithm();
    SettleLead();
    return kErr_NoErr;
}

namespace {

// Of the parameter "NAME 3" for element 2.
size_t FindArrayParam(const cALGORITHM& algorithm, const KCFixedString<127>& array, size_t element) {
    KCFixedString<127> name(array);
    name << ' ' << element + 1;
    return algorithm.GetParamIDFromName(name);
}

} // namespace

int32_t KCBaseControl::RegisterFromParamArrayRegData(size_t element) {
    if (m_algorithm == nullptr)
        return kErr_NullArgument;
    size_t numArrays = 0;
    for (const KCParamRegistrationData& registration : m_params)
        if (registration.IsParamArrayRegData()) {
            ++numArrays;
            if (FindArrayParam(*m_algorithm, registration.GetParamArrayName(), element) == kNoParam)
                return kErr_Generic;
        }
    if (numArrays == 0)
        return kErr_Generic;
    return MoveToParams([this, element](const KCParamRegistrationData& registration) {
        return registration.IsParamArrayRegData()
                   ? FindArrayParam(*m_algorithm, registration.GetParamArrayName(), element)
                   : registration.GetParamIndex();
    });
}

// The new parameters are bound before an old one is let go: where there is no memory, nothing has happened.
template <class IndexOf>
int32_t KCBaseControl::MoveToParams(IndexOf indexOf) {
    try {
        for (const KCParamRegistrationData& registration : m_params)
            Bind(indexOf(registration));
    } catch (const std::bad_alloc&) {
        for (const KCParamRegistrationData& registration : m_params)
            UnbindUnlessNamed(indexOf(registration));
        return kErr_AllocationFailed;
    }
    for (KCParamRegistrationData& registration : m_params) {
        const size_t before = registration.GetParamIndex();
        if (const size_t now = indexOf(registration); now != before)
            registration.SetRegisteredParam(m_algorithm, now);
        UnbindUnlessNamed(before);
    }
    return kErr_NoErr;
}

int32_t KCBaseControl::OffsetParamIter(ptrdiff_t offset) {
    // Unsigned sums go round: a step back beyond the first parameter ends far beyond the last.
    const auto moved = [offset](const KCParamRegistrationData& registration) {
        return registration.GetParamIndex() + static_cast<size_t>(offset);
    };
    for (const KCParamRegistrationData& registration : m_params)
        if (registration.IsBound() && moved(registration) >= m_algorithm->GetNumParams())
            return kErr_Generic;
    return MoveToParams([moved](const KCParamRegistrationData& registration) {
        return registration.IsBound() ? moved(registration) : registration.GetParamIndex();
    });
}

// Questions
// ---------------------------------------------------------------------------------------------------------

bool KCBaseControl::IsAutomatable() const {
    return !m_flags[kControl_NotAutomatable] && GetLeadParamIndex() != kNoParam;
}

bool KCBaseControl::AreRegisteredParamsSavableToUndo() const {
    return !m_params.empty() && std::ranges::all_of(m_params, [](const auto& registration) {
        return registration.IsParamSavableToUndo();
    });
}

bool KCBaseControl::IsAllRegisteredParamsDisabled() const {
    return !m_params.empty() && std::ranges::all_of(m_params, [this](const auto& registration) {
        return registration.IsBound() &&
               m_algorithm->GetParam(registration.GetParamIndex())->GetDisabledMode() != 0;
    });
}

void KCBaseControl::AppendNamedLinkGroups(std::vector<sNAMED_LINK_GROUP>& named) const {
    for (const KCParamRegistrationData& registration : m_params)
        if (registration.IsBound())
            for (const int group : registration.GetParamLinkGroups())
                named.push_back({group, registration.GetParamIndex()});
}

int32_t KCBaseControl::GetGraphDataAsGraphicStream(kvGS::KCGraphicStreamBinaryWriter& writer,
                                                   const KURect<double>& rect) const {
    const KCParamRegistrationData* const lead = GetParamData(m_leadPosition);
    if (lead == nullptr)
        return kErr_Generic;
    kvGS::KCGSArrays& points = writer.GetGSArrays();
    points.ClearArrays();
    KUPoint<float> point;
    for (size_t number = 0; number < lead->GetNumGraphPoints(); ++number)
        if (lead->GetGraphPoint(number, rect, point))
            points.AddPoint_2Df(point.x, point.y);
    if (points.GetNumVerticesTotal() >= 2) { // a line has two ends
        const sGRAPH_WIN& look = lead->GetGraphWin();
        if (look.hasColor)
            writer.SetDrawColor(kvGS::KCRGBAColorToSGSRGBAColor(look.color));
        writer.SetStrokeWidth(static_cast<float>(look.strokeWidth));
        writer.DrawVertices(kvGS::kLineStrip);
    }
    points.ClearArrays();
    return writer.GetError();
}

} // namespace kvKorvoV12_9_0_320
