// What a plug-in tells its host of its automation controls, as text: who was touched and let go, and the values in
// between.
//
//     0.5120 s  touch    Output Gain
//     0.5120 s  value    Output Gain  708.661 (-2.6 dB)
//     0.5120 s  release  Output Gain
//
// The callbacks come with the algorithm's lock held, in the middle of a gesture: they are only kept here, and put
// into words afterwards.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <shells/plugin_runner.h>

namespace kvKorvoV12_9_0_320::kvHost {

class KCCallbackLog {
  public:
    /// [main] Listens as long as it lives; one log a runner. The runner outlives it.
    explicit KCCallbackLog(KCPluginRunner& runner);
    ~KCCallbackLog();
    KCCallbackLog(const KCCallbackLog&) = delete;
    KCCallbackLog& operator=(const KCCallbackLog&) = delete;

    /// [main] The time of the callbacks from here on.
    void SetTime(double seconds) { m_seconds = seconds; }
    size_t GetNumCallbacks() const { return m_callbacks.size(); }
    /// [main] A line for each callback, in their order.
    std::string ToText() const;

  private:
    struct sCALLBACK {
        double seconds = 0.0;
        int32_t selector = 0;
        size_t control = 0;
        double value = 0.0; // of kHostSelector_ControlValue
    };

    static intptr_t OnHostCallback(int32_t selector, void* refcon, intptr_t a1, intptr_t a2, intptr_t a3,
                                   intptr_t a4);
    std::string Line(const sCALLBACK& callback) const;
    std::string ValueText(const sCALLBACK& callback) const;

    KCPluginRunner& m_runner;
    double m_seconds = 0.0;
    std::vector<sCALLBACK> m_callbacks;
};

} // namespace kvKorvoV12_9_0_320::kvHost
