// Who listens to an algorithm, and the one who tells them.
//
// cALGORITHM owns a broadcaster and is its first listener; presets, the window and the shell insert themselves.
// A listener may insert and erase listeners, itself too, while it is being told: one inserted meanwhile is told
// from the next call on, one erased hears nothing more.
//
// Thread: [main]; listeners are told with the algorithm's lock held.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <korvolib/alg/plugin_setup.h>
#include <korvolib/export.h>

namespace kvKorvoV12_9_0_320 {

// Every operation does nothing unless overridden. Listeners are not owned, hence no public destructor.
class KORVO_API KCAlgorithmListener {
  public:
    virtual void PresetLoaded(EPluginSetup setup);       // a preset has replaced the setup's values
    virtual void PresetModified(EPluginSetup setup);     // a value of the setup has changed
    virtual void SetupTitleChanged(EPluginSetup setup);  // the name shown for the setup has changed
    virtual void ActiveSetupChanged(EPluginSetup setup); // `setup` is the active one from now on
    virtual void ActiveSideChainChanged(bool isActive);

  protected:
    KCAlgorithmListener() = default;
    KCAlgorithmListener(const KCAlgorithmListener&) = default;
    KCAlgorithmListener& operator=(const KCAlgorithmListener&) = default;
    ~KCAlgorithmListener() = default;
};

// Passes each call on to its listeners, in the order of their insertion.
class KORVO_API KCAlgorithmBroadcaster final : public KCAlgorithmListener {
  public:
    // False when the listener is null or there already, or when there is no memory for it.
    bool insert(KCAlgorithmListener* listener) noexcept;
    // False when it is not there.
    bool erase(KCAlgorithmListener* listener) noexcept;
    void clear() noexcept; // nobody hears anything more
    size_t size() const noexcept;

    void PresetLoaded(EPluginSetup setup) override;
    void PresetModified(EPluginSetup setup) override;
    void SetupTitleChanged(EPluginSetup setup) override;
    void ActiveSetupChanged(EPluginSetup setup) override;
    void ActiveSideChainChanged(bool isActive) override;

  private:
    class sTelling;
    template <class Call>
    void Tell(Call call);

    std::vector<KCAlgorithmListener*> m_listeners; // null: erased while being told
    int32_t m_depth = 0;                           // how many calls are under way
    bool m_hasGaps = false;
};

} // namespace kvKorvoV12_9_0_320
