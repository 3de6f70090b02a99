#include <korvolib/alg/param_parts.h>

#include <algorithm>
#include <exception>

namespace kvKorvoV12_9_0_320 {

KCParamGraph::KCParamGraph(const KCParamGraph& other) : m_capacity(other.m_capacity) {
    m_points.reserve(m_capacity); // a copied vector brings its points, not its room
    m_points = other.m_points;
}

KCParamGraph& KCParamGraph::operator=(const KCParamGraph& other) {
    if (this != &other)
        *this = KCParamGraph(other);
    return *this;
}

bool KCParamGraph::AddPoint(KUPoint<double> point) noexcept {
    if (m_points.size() >= m_capacity)
        return false;
    m_points.push_back(point);
    return true;
}

bool KCParamGraph::Resize(size_t capacity) noexcept {
    try {
        m_points.reserve(capacity);
    } catch (const std::exception&) {
        return false;
    }
    if (m_points.size() > capacity)
        m_points.resize(capacity);
    m_capacity = capacity;
    return true;
}

bool KCParamBindings::Add(KCParamController* controller) {
    if (controller == nullptr || Contains(controller))
        return false;
    m_controllers.push_back(controller);
    return true;
}

bool KCParamBindings::Remove(const KCParamController* controller) noexcept {
    const auto found = std::find(m_controllers.begin(), m_controllers.end(), controller);
    if (found == m_controllers.end())
        return false;
    m_controllers.erase(found);
    return true;
}

bool KCParamBindings::Contains(const KCParamController* controller) const noexcept {
    return std::find(m_controllers.begin(), m_controllers.end(), controller) != m_controllers.end();
}

void KCParamBindings::NotifyAll(size_t paramIndex) const noexcept {
    size_t i = 0;
    for (size_t turn = m_controllers.size(); turn != 0 && i < m_controllers.size(); --turn) {
        KCParamController* const told = m_controllers[i];
        told->OnParamChanged(paramIndex);
        if (i < m_controllers.size() && m_controllers[i] == told) // otherwise the next one has moved up to here
            ++i;
    }
}

} // namespace kvKorvoV12_9_0_320
