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
        if (--m_broadcaster.m_depth == 0 && m_broadcaster.m_hasGaps) {
            std::erase(m_broadcaster.m_listeners, nullptr);
            m_broadcaster.m_hasGaps = false;
        }
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
    if (m_depth == 0) {
        m_listeners.erase(found);
    } else {
        *found = nullptr;
        m_hasGaps = true;
    }
    return true;
}

void KCAlgorithmBroadcaster::clear() noexcept {
    if (m_depth == 0) {
        m_listeners.clear();
        return;
    }
    std::ranges::fill(m_listeners, nullptr);
    m_hasGaps = true;
}

size_t KCAlgorithmBroadcaster::size() const noexcept {
    return m_listeners.size() - static_cast<size_t>(std::ranges::count(m_listeners, nullptr));
}

template <class Call>
void KCAlgorithmBroadcaster::Tell(Call call) {
    const sTelling telling(*this);
    const size_t count = m_listeners.size();
    for (size_t i = 0; i < count; ++i)
        if (KCAlgorithmListener* const listener = m_listeners[i])
            call(*listener);
}

void KCAlgorithmBroadcaster::PresetLoaded(EPluginSetup setup) {
    Tell([=](KCAlgorithmListener& listener) { listener.PresetLoaded(setup); });
}
void KCAlgorithmBroadcaster::PresetModified(EPluginSetup setup) {
    Tell([=](KCAlgorithmListener& listener) { listener.PresetModified(setup); });
}
void KCAlgorithmBroadcaster::SetupTitleChanged(EPluginSetup setup) {
    Tell([=](KCAlgorithmListener& listener) { listener.SetupTitleChanged(setup); });
}
void KCAlgorithmBroadcaster::ActiveSetupChanged(EPluginSetup setup) {
    Tell([=](KCAlgorithmListener& listener) { listener.ActiveSetupChanged(setup); });
}
void KCAlgorithmBroadcaster::ActiveSideChainChanged(bool isActive) {
    Tell([=](KCAlgorithmListener& listener) { listener.ActiveSideChainChanged(isActive); });
}

} // namespace kvKorvoV12_9_0_320
