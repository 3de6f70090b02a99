#include "parameter_changes.h"

#include "parameter_text.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

std::vector<double> ActiveValues(const cALGORITHM& algorithm) {
    std::vector<double> values(algorithm.GetNumParams());
    for (size_t index = 0; index < values.size(); ++index)
        values[index] = algorithm.GetParamRealWorld(index);
    return values;
}

} // namespace

KCParameterChanges::KCParameterChanges(const cALGORITHM& algorithm)
    : m_algorithm(algorithm), m_before(ActiveValues(algorithm)) {}

bool KCParameterChanges::HasAny() const { return ActiveValues(m_algorithm) != m_before; }

std::string KCParameterChanges::ToText() const {
    constexpr size_t kMostNamed = 3;
    std::vector<std::string> changes;
    for (size_t index = 0; index < m_before.size(); ++index) {
        const double now = m_algorithm.GetParamRealWorld(index);
        const sCONTROL_PARAM& record = *m_algorithm.GetParam(index);
        if (now == m_before[index])
            continue;
        std::string change = record.GetName().c_str();
        change += ' ';
        changes.push_back(change + ValueText(record, m_before[index]) + " → " + ValueText(record, now));
    }
    if (changes.empty())
        return "nothing changed";
    if (changes.size() <= kMostNamed)
        return JoinedText(changes, ", ");
    return std::to_string(changes.size()) + " parameters changed";
}

} // namespace kvKorvoV12_9_0_320::kvHost
