// What a registration shows: texts, pictures and the graph of its parameter.

#include <korvolib/gui/param_registration.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvKorvoV12_9_0_320 {
namespace {

constexpr double kFarthestPixel = 1e6; // of a point outside its window: a line to it keeps its direction

// `value` of an axis from `low` to `high` as a place between `from` and `to`; not-a-number without an axis.
double PlaceOnAxis(double value, double low, double high, double from, double to) noexcept {
    const double place = from + (value - low) / (high - low) * (to - from);
    return low != high && std::isfinite(place) ? std::clamp(place, -kFarthestPixel, kFarthestPixel)
                                               : std::numeric_limits<double>::quiet_NaN();
}

} // namespace

int32_t KCParamRegistrationData::GetParamCurrentImage() const {
    const sCONTROL_PARAM* const param = GetParam();
    if (param == nullptr || m_bitmap.resID == 0 || m_bitmap.numImages <= 0)
        return -1;
    const double state = m_algorithm->GetParamState(m_paramIndex);
    const double last = GetLastState();
    const bool isOneForEachState = param->IsDiscrete() && param->GetNumStates() == m_bitmap.numImages;
    double image = isOneForEachState ? std::round(state / param->GetStateStep())
                                     : std::floor(state / last * m_bitmap.numImages);
    if (!(image >= 0.0)) // also of 0 / 0: a single state has no travel
        image = 0.0;
    return static_cast<int32_t>(std::min(image, m_bitmap.numImages - 1.0));
}

int32_t KCParamRegistrationData::GetParamCurrentImageResID() const {
    const int32_t image = GetParamCurrentImage();
    const int64_t resID = int64_t{m_bitmap.resID} + image;
    return image < 0 || resID > std::numeric_limits<int32_t>::max() ? 0 : static_cast<int32_t>(resID);
}

size_t KCParamRegistrationData::GetNumGraphPoints() const {
    const sCONTROL_PARAM* const param = GetParam();
    return param == nullptr ? 0 : param->GetGraph().GetPoints().size();
}

bool KCParamRegistrationData::GetGraphPoint(size_t number, const KURect<double>& rect,
                                            KUPoint<float>& point) const {
    if (number >= GetNumGraphPoints())
        return false;
    const KUPoint<double>& value = GetParam()->GetGraph().GetPoints()[number];
    const double x = PlaceOnAxis(value.x, m_graph.minX, m_graph.maxX, rect.left, rect.right);
    const double y = PlaceOnAxis(value.y, m_graph.minY, m_graph.maxY, rect.bottom, rect.top);
    if (std::isnan(x) || std::isnan(y))
        return false;
    point = KUPoint<double>{x, y}.ConvertTo<float>();
    return true;
}

void KCParamRegistrationData::GetGraphDataFromParam(std::vector<KUPoint<float>>& points) const {
    points.clear();
    KUPoint<float> point;
    const size_t count = GetNumGraphPoints();
    for (size_t number = 0; number < count; ++number)
        if (GetGraphPoint(number, m_graph.rect, point))
            points.push_back(point);
}

void KCParamRegistrationData::UpdateValue(KCFixedStringBase& text) const {
    text.clear();
    if (IsBound())
        m_algorithm->GetParamValueString(m_paramIndex, text);
}

void KCParamRegistrationData::UpdateLabel(KCFixedStringBase& text) const {
    text.clear();
    if (IsBound())
        m_algorithm->GetParamLabelString(m_paramIndex, text);
}

void KCParamRegistrationData::UpdateUnits(KCFixedStringBase& text) const {
    text.clear();
    if (IsBound())
        m_algorithm->GetParamUnitsString(m_paramIndex, text);
}

void KCParamRegistrationData::SetParamToUpdateFlag() {
    if (IsBound())
        m_algorithm->GetParam(m_paramIndex)->SetRefreshMark(kRefreshMark);
}

void KCParamRegistrationData::RemoveDrawAttributes() noexcept {
    m_label = sTEXT_WIN();
    m_valueWin = sTEXT_WIN();
    m_units = sTEXT_WIN();
    m_bitmap = sBITMAP_WIN();
    m_graph = sGRAPH_WIN();
}

void KCParamRegistrationData::PrintRegistrationData(KCFixedStringBase& text) const {
    text << '"' << GetRegisteredParamName() << "\" " << RegisterTypeName(m_info.GetType());
    constexpr const char* kModifierNames[kNumModifiers] = {"Primary", "Secondary", "Shift", "Alt"};
    for (size_t i = 0; i < kNumModifiers; ++i)
        if (GetRegisterModifier(static_cast<KEModifier>(i)))
            text << " + " << kModifierNames[i];
    text << " at ";
    text.append_double_with_precision(m_value, 3);
    text << '\n';
}

} // namespace kvKorvoV12_9_0_320
