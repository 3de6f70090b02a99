#include "callback_log.h"

#include <korvolib/control/automation_manager.h>

#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

// What an automation control tells a host by its callback; argument 1 is the control's refcon 2.
constexpr int32_t kSelector_Value = 16; // argument 2 points to the value
constexpr int32_t kSelector_Touch = 17;
constexpr int32_t kSelector_Release = 18;

const char* WordOf(int32_t selector) {
    return selector == kSelector_Value ? "value  " : selector == kSelector_Touch ? "touch  " : "release";
}

} // namespace

KCCallbackLog::KCCallbackLog(KCPluginRunner& runner) : m_runner(runner) {
    m_runner.SetNextHostCallback(&OnHostCallback, this);
}

KCCallbackLog::~KCCallbackLog() { m_runner.SetNextHostCallback(nullptr, nullptr); }

intptr_t KCCallbackLog::OnHostCallback(int32_t selector, void* refcon, intptr_t a1, intptr_t a2, intptr_t,
                                       intptr_t) {
    auto& log = *static_cast<KCCallbackLog*>(refcon);
    if (selector < kSelector_Value || selector > kSelector_Release)
        return 0;
    const double value = selector == kSelector_Value ? *reinterpret_cast<const double*>(a2) : 0.0;
    log.m_callbacks.push_back({log.m_seconds, selector, static_cast<size_t>(a1), value});
    return 0;
}

std::string KCCallbackLog::ToText() const {
    const KCAlgorithmLock lock(m_runner.GetAlgorithm());
    std::string text;
    for (const sCALLBACK& callback : m_callbacks)
        text += Line(callback) + "\n";
    return text;
}

std::string KCCallbackLog::Line(const sCALLBACK& callback) const {
    constexpr size_t kTimeWidth = 10;
    std::string line = FixedText(callback.seconds, 4);
    line.insert(0, line.size() < kTimeWidth ? kTimeWidth - line.size() : 0, ' ');
    line.append(" s  ").append(WordOf(callback.selector)).append("  ");
    const KCAutomationControl* const control = m_runner.GetAlgorithm().GetAutomationControl(callback.control);
    line += control == nullptr ? "control " + std::to_string(callback.control) : control->GetNamePtr();
    return callback.selector == kSelector_Value ? line + "  " + ValueText(callback) : line;
}

// The number as the host would store it, and what the control shows for it.
std::string KCCallbackLog::ValueText(const sCALLBACK& callback) const {
    const cALGORITHM& algorithm = m_runner.GetAlgorithm();
    std::string text = FixedText(callback.value, 3);
    KCFixedString<127> shown, units;
    double realWorld = 0.0;
    if (algorithm.GetAutomationManager()->TranslateController(callback.control, callback.value, shown, realWorld) !=
        kErr_NoErr)
        return text;
    const size_t lead = algorithm.GetAutomationControl(callback.control)->GetLeadParamIndex();
    algorithm.GetParamUnitsString(lead, units);
    text.append(" (").append(shown.c_str());
    return units.empty() ? text + ")" : text.append(" ").append(units.c_str()).append(")");
}

} // namespace kvKorvoV12_9_0_320::kvHost
