// One parameter of an algorithm as the rest of the library sees it: KCParam_Base plus link groups, those who are
// bound to it, and what a window keeps about it. The algorithm holds these in one vector, in index order.
//
// Copying takes everything that describes the parameter (graph and extension included) and none of its bindings;
// moving takes all. The price and the thread are those of KCParam_Base.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <korvolib/alg/param_base.h>
#include <korvolib/alg/param_parts.h>
#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

/// What a drag of `deltaPixels` counts as, in pixels: the parameter's own idea of how fast it moves.
using MouseDeltaFunction = double (*)(double deltaPixels, double acceleration);

struct KORVO_API sCONTROL_PARAM : public KCParam_Base {
    sCONTROL_PARAM() = default;
    explicit sCONTROL_PARAM(const KCFixedStringBase& name) { SetName(name); }

    // Flags in words -----------------------------------------------------------------------------------------
    bool IsUnused() const noexcept { return HasFlag(kParamFlag_Unused); }
    bool IsLab() const noexcept { return HasFlag(kParamFlag_Lab); }
    void SetLab(bool isLab) noexcept;
    /// Opt-out: true unless kParamFlag_DiscreteDoesNotWrap, whatever the parameter's type.
    bool IsDiscreteParamCyclic() const noexcept { return !HasFlag(kParamFlag_DiscreteDoesNotWrap); }
    /// Opt-in: true with kParamFlag_ContinuousWraps, whatever the parameter's type.
    bool IsContinuousParamCyclic() const noexcept { return HasFlag(kParamFlag_ContinuousWraps); }

    // Link groups, by number ---------------------------------------------------------------------------------
    const std::vector<int>& GetLinkGroups() const noexcept { return m_linkGroups; }
    /// Once each: a group that is there already is not added again.
    void AddLinkGroup(int group);
    void ClearLinkGroups() noexcept { m_linkGroups.clear(); }
    const std::vector<int>& GetControlledLinkGroups() const noexcept { return m_controlledLinkGroups; }
    void AddControlledLinkGroup(int group);
    void ClearControlledLinkGroups() noexcept { m_controlledLinkGroups.clear(); }

    // Bindings -----------------------------------------------------------------------------------------------
    /// Automation and MIDI controls, of which the first is the parameter's lead. False for null or when bound
    /// already.
    bool AddController(KCParamController* controller) { return m_controllers.Add(controller); }
    bool RemoveController(const KCParamController* controller) noexcept { return m_controllers.Remove(controller); }
    bool ControllerExists(const KCParamController* controller) const noexcept {
        return m_controllers.Contains(controller);
    }
    const std::vector<KCParamController*>& GetControllers() const noexcept { return m_controllers.GetAll(); }
    /// Registrations of a window. Apart from the controllers, so that a knob on the screen is never taken for a
    /// lead.
    bool AddObserver(KCParamController* observer) { return m_observers.Add(observer); }
    bool RemoveObserver(const KCParamController* observer) noexcept { return m_observers.Remove(observer); }
    bool ObserverExists(const KCParamController* observer) const noexcept { return m_observers.Contains(observer); }
    const std::vector<KCParamController*>& GetObservers() const noexcept { return m_observers.GetAll(); }
    /// Tells the controllers, then the observers, that parameter `paramIndex`, which is this one, changed.
    void UpdateControllers(size_t paramIndex) const noexcept {
        m_controllers.Notify(paramIndex);
        m_observers.Notify(paramIndex);
    }

    // Owned objects ------------------------------------------------------------------------------------------
    KCParamGraph& GetGraph() noexcept { return m_graph; }
    const KCParamGraph& GetGraph() const noexcept { return m_graph; }
    /// Room for `capacity` points. False, and no change, where the memory is not to be had.
    bool ResizeGraph(size_t capacity) noexcept { return m_graph.Resize(capacity); }
    KCParamExtension* GetParamExtension() const noexcept { return m_extension.Get(); }
    /// Takes the extension over in place of the one before; null takes it away.
    void SetParamExtension(std::unique_ptr<KCParamExtension> extension) noexcept {
        m_extension.Set(std::move(extension));
    }

    // Mouse --------------------------------------------------------------------------------------------------
    /// Null restores DefaultMouseDelta.
    void SetMouseDeltaFunc(MouseDeltaFunction function) noexcept;
    MouseDeltaFunction GetMouseDeltaFunc() const noexcept { return m_mouseDelta; }
    /// kNoMouseAcceleration, as are all negative values and not-a-number, or the growth per pixel.
    void SetMouseAccelerationValue(double acceleration) noexcept { m_mouseAcceleration = acceleration; }
    double GetMouseAccelerationValue() const noexcept { return m_mouseAcceleration; }
    /// A pixel delta through the parameter's mouse-delta function.
    double ConvertMouseDelta(double deltaPixels) const { return m_mouseDelta(deltaPixels, m_mouseAcceleration); }
    /// The delta itself without acceleration; with it, delta · (1 + acceleration · |delta|): the faster, the
    /// farther.
    static double DefaultMouseDelta(double deltaPixels, double acceleration) noexcept;

    // Display state; a change asks for a redraw --------------------------------------------------------------
    int32_t GetDisabledMode() const noexcept { return m_disabledMode; }
    /// 0: enabled. Other modes are the window's.
    void UpdateDisabledMode(int32_t mode) noexcept;
    bool IsHidden() const noexcept { return m_isHidden; }
    void HideControl() noexcept { SetHidden(true); }
    void ShowControl() noexcept { SetHidden(false); }
    /// Index of the picture shown for the value of each setup; -1 before there is one.
    int32_t GetCurrentImage(EPluginSetup setup) const noexcept {
        return IsPluginSetup(setup) ? m_image[setup] : -1;
    }
    void SetCurrentImage(EPluginSetup setup, int32_t image) noexcept;

    /// Back to a fresh record, without bindings.
    void ResetMembers();

  protected:
    /// Takes over every member of `other` but the bindings.
    void copy_members(const sCONTROL_PARAM& other);

  private:
    void SetHidden(bool isHidden) noexcept;

    KCParamBindings m_controllers;
    KCParamBindings m_observers;
    std::vector<int> m_linkGroups;
    std::vector<int> m_controlledLinkGroups;
    KCParamGraph m_graph;
    KCParamExtensionHolder m_extension;
    MouseDeltaFunction m_mouseDelta = DefaultMouseDelta;
    double m_mouseAcceleration = kNoMouseAcceleration;
    int32_t m_disabledMode = 0;
    int32_t m_image[kNumPluginSetups] = {-1, -1};
    bool m_isHidden = false;
};

} // namespace kvKorvoV12_9_0_320
