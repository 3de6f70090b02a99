#include <korvolib/gui/popup_menu.h>

#include <algorithm>
#include <cmath>

#include <korvolib/alg/algorithm.h>
#include <korvolib/alg/param_text.h>
#include <korvolib/gui/controls/draw_shapes_internal.h>

namespace kvKorvoV12_9_0_320 {

void KCStateMenu::SetParam(const cALGORITHM* algorithm, size_t paramIndex) noexcept {
    m_algorithm = algorithm;
    m_paramIndex = paramIndex;
}

int32_t KCStateMenu::GetNumChoices() const {
    if (m_algorithm == nullptr || m_paramIndex >= m_algorithm->GetNumParams() ||
        m_algorithm->GetParamType(m_paramIndex) != 0 || !(m_algorithm->GetStateStep(m_paramIndex) > 0.0))
        return 0;
    return std::clamp(m_algorithm->GetParamNumStates(m_paramIndex), 0, kMaxChoices);
}

void KCStateMenu::GetChoiceText(int32_t choice, KCFixedStringBase& text) const {
    text.clear();
    if (choice < 0 || choice >= GetNumChoices())
        return;
    const double state = choice * m_algorithm->GetStateStep(m_paramIndex);
    FormatValueText(*m_algorithm->GetParam(m_paramIndex), m_algorithm->StateToRealWorld(m_paramIndex, state), text);
    AppendUnits(text, m_algorithm->GetParam(m_paramIndex)->GetUnitsString());
}

int32_t KCStateMenu::GetCurrentChoice() const {
    const int32_t numChoices = GetNumChoices();
    if (numChoices == 0)
        return -1;
    const double choice =
        std::round(m_algorithm->GetParamState(m_paramIndex) / m_algorithm->GetStateStep(m_paramIndex));
    return choice < numChoices ? static_cast<int32_t>(choice) : -1;
}

} // namespace kvKorvoV12_9_0_320
