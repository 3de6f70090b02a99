#include <korvolib/alg/algorithm_broadcaster.h>

#include <algorithm>

namespace kvKorvoV12_9_0_320 {

void KCAlgorithmListener::PresetLoaded(EPluginSetup) {}
void KCAlgorithmListener::PresetModified(EPluginSetup) {}
void KCAlgorithmListener::SetupTitleChanged(EPluginSetup) {}
void KCAlgorithmListener::ActiveSetupChanged(EPluginSetup) {}
void KCAlgorithmListener::ActiveSideChainChanged(bool) {}

// Counts the calls under way, also when a listener throws; the last one out drops what was erased meanwhile.
class KCAlgorithmBroadcaster::sTelling {
  public:
    explicit sTelling(KCAlgorithmBroadcaster& broadcaster) noexcept : m_broadcaster(broadcaster) {
        ++m_broadcaster.m_depth;
    }
    ~sTelling() {
        if (--m_broadcaster.m_depth == 0)
            std::erase(m_broadcaster.m_listeners, nullptr);
    }
    sTelling(const sTelling&) = delete;
    sTelling& operator=(const sTelling&) = delete;

  private:
    KCAlgorithmBroadcaster& m_broadcaster;
};

bool KCAlgorithmBroadcaster::insert(KCAlgorithmListener* listener) noexcept {
    if (listener == nullptr || listener == this || std::ranges::count(m_listeners, listener) != 0)
        return false;
    try {
        m_listeners.push_back(listener);
    } catch (...) {
        return false;
    }
    return true;
}

bool KCAlgorithmBroadcaster::erase(KCAlgorithmListener* listener) noexcept {
    const auto found = std::ranges::find(m_listeners, listener);
    if (listener == nullptr || found == m_listeners.end())
        return false;
    if (m_depth == 0)
        m_listeners.erase(found);
    else
        *found = nullptr;
    return true;
}

size_t KCAlgorithmBroadcaster::size() const noexcept {
    return m_listeners.size() - static_cast<size_t>(std::ranges::count(m_listeners, nullptr));
}

template <class Argument>
void KCAlgorithmBroadcaster::Tell(void (KCAlgorithmListener::*operation)(Argument), Argument argument) {
    const sTelling telling(*this);
    const size_t count = m_listeners.size();
    for (size_t i = 0; i < count; ++i)
        if (m_listeners[i] != nullptr)
            (m_listeners[i]->*operation)(argument);
}

void KCAlgorithmBroadcaster::PresetLoaded(EPluginSetup setup) { Tell(&KCAlgorithmListener::PresetLoaded, setup); }
void KCAlgorithmBroadcaster::PresetModified(EPluginSetup setup) {
    Tell(&KCAlgorithmListener::PresetModified, setup);
}
void KCAlgorithmBroadcaster::SetupTitleChanged(EPluginSetup setup) {
    Tell(&KCAlgorithmListener::SetupTitleChanged, setup);
}
void KCAlgorithmBroadcaster::ActiveSetupChanged(EPluginSetup setup) {
    Tell(&KCAlgorithmListener::ActiveSetupChanged, setup);
}
void KCAlgorithmBroadcaster::ActiveSideChainChanged(bool isActive) {
    Tell(&KCAlgorithmListener::ActiveSideChainChanged, isActive);
}

} // namespace kvKorvoV12_9_0_320
