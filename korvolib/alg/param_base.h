// One parameter without its bindings: a state (0..1000) and a real-world value for each setup, the scale that joins
// them, and the text that shows the value. What an update touches stands in the first two cache lines of the
// record, whatever the parameter's name, points and texts cost behind them.
//
// Price: a plain value of about 1 KB; copying allocates only for break points. No lock of its own: conversions only
// read, writers hold the algorithm's lock. Nothing here allocates after set-up, nothing throws but a plug-in's own
// scale or display function. A setup that is neither A nor B reads as 0 and is not written.
#pragma once

#include <cmath>
#include <cstdint>

#include <korvolib/alg/param_display.h>
#include <korvolib/alg/param_flags.h>
#include <korvolib/alg/plugin_setup.h>
#include <korvolib/alg/scale_functions.h>
#include <korvolib/alg/scale_info.h>
#include <korvolib/export.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

/// Outcome of reading a typed text as a value.
enum ETranslateTextRetType : int32_t { kTranslateText_Refused = 0, kTranslateText_Accepted = 1 };

/// Whether a parameter may take a value.
struct ValidationResult {
    enum Type : int32_t { kRefused = 0, kAccepted = 1 };
};

/// Value of the refresh mark that asks the display side to draw the parameter again.
inline constexpr int kRefreshMark = 3;

class KORVO_API KCParam_Base {
  public:
    /// Mouse acceleration of a parameter that uses none.
    static constexpr double kNoMouseAcceleration = -1.0;

    // Identity ------------------------------------------------------------------------------------------------
    const KCFixedString<127>& GetName() const noexcept { return m_name; }
    void SetName(const KCFixedStringBase& name) noexcept { m_name = name; }
    /// kParamType_Discrete or kParamType_Continuous; every other value steps like a continuous one.
    int GetType() const noexcept { return m_type; }
    void SetType(int type) noexcept { m_type = type; }
    bool IsDiscrete() const noexcept { return m_type == kParamType_Discrete; }
    uint32_t GetFlags() const noexcept { return m_flags; }
    void SetFlags(uint32_t flags) noexcept { m_flags = flags; }
    bool HasFlag(uint32_t mask) const noexcept { return (m_flags & mask) != 0; }

    // Values of the setups ------------------------------------------------------------------------------------
    double GetState(EPluginSetup setup) const noexcept { return IsPluginSetup(setup) ? m_state[setup] : 0.0; }
    double GetRealWorld(EPluginSetup setup) const noexcept {
        return IsPluginSetup(setup) ? m_realWorld[setup] : 0.0;
    }
    int32_t GetSetupWord(EPluginSetup setup) const noexcept {
        return IsPluginSetup(setup) ? m_setupWord[setup] : 0;
    }
    /// Stores as given: neither clamps nor quantizes, and leaves the real-world value to the caller.
    void SetState(EPluginSetup setup, double state) noexcept;
    /// Stores as given, and leaves the state to the caller.
    void SetRealWorld(EPluginSetup setup, double realWorld) noexcept;
    /// A word that the library keeps and copies with the setup; its meaning is the plug-in's.
    void SetSetupWord(EPluginSetup setup, int32_t word) noexcept;
    /// Real-world value = scale(state) of that setup.
    void UpdateRealWorldFromState(EPluginSetup setup);
    /// State = inverse(real-world value) of that setup, not limited; stays where there is no inverse. Unlike
    /// RealWorldToState it does not ask for a forward scale.
    void UpdateStateFromRealWorld(EPluginSetup setup);
    /// Both at once: stores the state as given; the new real-world value.
    double UpdateState(EPluginSetup setup, double state);
    /// State, real-world value and word of `to` become those of `from`. Nothing unless both are A or B.
    void CopySetup(EPluginSetup from, EPluginSetup to) noexcept;

    double GetInitialState() const noexcept { return m_initialState; }
    void SetInitialState(double state) noexcept { m_initialState = state; }
    double GetResetState() const noexcept { return m_resetState; }
    void SetResetState(double state) noexcept { m_resetState = state; }

    // Marks of the update path --------------------------------------------------------------------------------
    /// 0, or kRefreshMark until the display side has drawn the parameter and cleared it.
    int GetRefreshMark() const noexcept { return m_refreshMark; }
    void SetRefreshMark(int mark = kRefreshMark) noexcept { m_refreshMark = mark; }
    /// What the new value is compared with under kParamFlag_CompareForModified.
    double GetComparisonValue() const noexcept { return m_comparisonValue; }
    void SetComparisonValue(double realWorld) noexcept { m_comparisonValue = realWorld; }
    /// With kParamFlag_CompareForModified: an update to the same state runs all the same, because the comparison
    /// value is new.
    bool IsComparisonPending() const noexcept { return m_isComparisonPending; }
    void SetComparisonPending(bool isPending) noexcept { m_isComparisonPending = isPending; }
    /// An update to the same state runs all the same, whatever the flags say.
    bool IsUpdatePending() const noexcept { return m_isUpdatePending; }
    void SetUpdatePending(bool isPending) noexcept { m_isUpdatePending = isPending; }
    /// Set on a parameter that the running link pass has already moved.
    bool IsLinkedInThisPass() const noexcept { return m_isLinkedInThisPass; }
    void SetLinkedInThisPass(bool isLinked) noexcept { m_isLinkedInThisPass = isLinked; }

    // Scale set-up --------------------------------------------------------------------------------------------
    /// State 0 is `min`, state 1000 is `max`, straight between. Continuous. A `quantize` above 1 rounds whole
    /// values.
    void SetScaleLin(double min, double max, double quantize);
    /// The same with equal ratios between states; ends of one sign, neither of them 0.
    void SetScaleLog(double min, double max, double quantize);
    /// Discrete with `numStates` states 0, 1, 2, …; below 1 counts as none.
    void SetScaleToggle(int numStates);
    /// Any scale: type, scale-type name, coefficients and points, function and inverse (either may be null).
    /// Number of states and state step stay.
    void SetScaleGeneric(int type, const KCFixedStringBase& scaleType, const sSCALE_INFO& scale,
                         ScaleFunction scaleFunction, ScaleFunction inverseScaleFunction);
    /// New coefficients and points under the same functions; the reciprocal of the resolution is made anew.
    void SetScale(const sSCALE_INFO& scale);

    const sSCALE_INFO& GetScale() const noexcept { return m_scale; }
    /// Arguments of SetScaleLin; false, and zeros, for another scale.
    bool GetScaleLin(double& min, double& max, double& quantize) const noexcept;
    /// Arguments of SetScaleLog; false, and zeros, for another scale.
    bool GetScaleLog(double& min, double& max, double& quantize) const noexcept;
    /// Argument of SetScaleToggle; false, and 0, for another scale.
    bool GetScaleToggle(int& numStates) const noexcept;
    /// The whole scale, whatever it is; false, and null functions, where there is no scale function.
    bool GetScaleGeneric(sSCALE_INFO& scale, ScaleFunction& scaleFunction,
                         ScaleFunction& inverseScaleFunction) const;
    /// "linear", "logarithmic", "toggle", "frequency" or the name of a range, map or user scale; empty on a fresh
    /// record.
    const KCFixedString<127>& GetScaleType() const noexcept { return m_scaleType; }
    /// From state 0 to `lastState` values run from −x to +x. Costs nothing for the full travel: every drawing asks.
    bool IsSymmetricUpTo(double lastState) const;
    ScaleFunction GetScaleFunction() const noexcept { return m_scaleFunction; }
    ScaleFunction GetInverseScaleFunction() const noexcept { return m_inverseScaleFunction; }
    int GetNumStates() const noexcept { return m_numStates; }
    void SetNumStates(int numStates) noexcept { m_numStates = numStates; }
    /// Distance between neighbouring states; 1 on a fresh record.
    double GetStateStep() const noexcept { return m_stateStep; }
    void SetStateStep(double step) noexcept { m_stateStep = step; }

    // Conversions ---------------------------------------------------------------------------------------------
    /// scale(state limited to 0..1000); 0 without a scale function or for not-a-number.
    double StateToRealWorld(double state) const;
    /// inverse(realWorld), not limited; 0 without a *forward* scale function, without an inverse, or for
    /// not-a-number.
    double RealWorldToState(double realWorld) const;
    /// The nearest whole multiple of the state step, halves upward. The argument where the step is not a positive
    /// finite number.
    double QuantizeState(double state) const noexcept;
    /// The value of the scale at the state of `realWorld`; 0 without a scale function.
    void LimitRealWorld(double& realWorld) const;
    /// Every finite number may be tried.
    bool ValidateRealWorld(double realWorld) const noexcept { return std::isfinite(realWorld); }
    /// State and value of a default written as "double" (fraction of travel), "state", "RealWorld" or
    /// "RealWorldExact". 0; -1 for another type, which keeps the incoming `state`. In each case the state is
    /// limited, scaled to `realWorld` and found again from it, rounded to a whole state unless "RealWorldExact".
    int SetScaleDefaults(double value, const KCFixedStringBase& valueType, double& state, double& realWorld) const;

    // Text ----------------------------------------------------------------------------------------------------
    const KCFixedString<127>& GetValueString() const noexcept { return m_valueString; }
    /// Stands until a value changes: see IsValueStringCurrent.
    void SetValueString(const KCFixedStringBase& text) noexcept {
        m_valueString = text;
        m_isValueStringCurrent = true;
    }
    /// Whether the value string was made or set since a state or value of the parameter was last stored.
    bool IsValueStringCurrent() const noexcept { return m_isValueStringCurrent; }
    void InvalidateValueString() noexcept { m_isValueStringCurrent = false; }
    /// Value string = text of that setup's real-world value, by the display function or with the decimals that the
    /// resolution implies.
    void UpdateValueString(EPluginSetup setup);
    /// A typed text as a value that the scale can produce. Refused, with `realWorld` as it was, when no number
    /// leads the text; refused, with the number in `realWorld`, when it is not finite.
    ETranslateTextRetType TranslateValueString(const KCFixedStringBase& text, double& realWorld) const;
    void SetDisplayFunc(const DisplayFunctionProxy& proxy) noexcept { m_display = proxy; }
    const DisplayFunctionProxy& GetDisplayFunc() const noexcept { return m_display; }
    const KCFixedString<127>& GetLabelString() const noexcept { return m_label; }
    void SetLabelString(const KCFixedStringBase& label) noexcept { m_label = label; }
    const KCFixedString<63>& GetUnitsString() const noexcept { return m_units; }
    void SetUnitsString(const KCFixedStringBase& units) noexcept { m_units = units; }

    /// Back to a fresh record.
    void ResetMembers();

  protected:
    /// Takes over every member of `other`.
    void copy_members(const KCParam_Base& other);

  private:
    void SetScaleEnds(double min, double max, double quantize, double slope, const char* scaleType);
    void SettleSymmetry();

    // First cache line: read by every update.
    alignas(64) double m_state[kNumPluginSetups] = {0.0, 0.0};
    double m_realWorld[kNumPluginSetups] = {0.0, 0.0};
    double m_stateStep = 1.0;
    ScaleFunction m_scaleFunction = nullptr;
    int m_type = kParamType_Discrete;
    uint32_t m_flags = 0;
    int m_refreshMark = 0;
    bool m_isComparisonPending = false;
    bool m_isUpdatePending = false;
    bool m_isLinkedInThisPass = false;
    bool m_isValueStringCurrent = false;
    // Second: the inverse, and the scale's coefficients, with which m_scale begins.
    ScaleFunction m_inverseScaleFunction = nullptr;
    double m_comparisonValue = 0.0;
    int32_t m_setupWord[kNumPluginSetups] = {0, 0};
    mutable sSCALE_INFO m_scale; // mutable: scale functions take a pointer to what they may not change
    // From here on: set-up and display.
    double m_initialState = 0.0;
    double m_resetState = 0.0;
    double m_minimum = 0.0; // the ends as they were given: the coefficients alone do not tell them exactly
    double m_maximum = 0.0;
    int m_numStates = 0;
    bool m_isSymmetric = false; // up to full travel
    DisplayFunctionProxy m_display;
    KCFixedString<127> m_name;
    KCFixedString<127> m_scaleType;
    KCFixedString<127> m_valueString;
    KCFixedString<127> m_label;
    KCFixedString<63> m_units;
};

// The conversions run in every update: inline down to the call of the scale function.

inline double KCParam_Base::StateToRealWorld(double state) const {
    if (m_scaleFunction == nullptr || std::isnan(state))
        return 0.0;
    return m_scaleFunction(ClampState(state), &m_scale);
}

inline double KCParam_Base::RealWorldToState(double realWorld) const {
    if (m_scaleFunction == nullptr || m_inverseScaleFunction == nullptr || std::isnan(realWorld))
        return 0.0;
    return m_inverseScaleFunction(realWorld, &m_scale);
}

inline void KCParam_Base::SetState(EPluginSetup setup, double state) noexcept {
    if (IsPluginSetup(setup))
        m_state[setup] = state;
}

inline void KCParam_Base::SetRealWorld(EPluginSetup setup, double realWorld) noexcept {
    m_isValueStringCurrent = false;
    if (IsPluginSetup(setup))
        m_realWorld[setup] = realWorld;
}

inline double KCParam_Base::UpdateState(EPluginSetup setup, double state) {
    if (!IsPluginSetup(setup))
        return 0.0;
    m_state[setup] = state;
    m_isValueStringCurrent = false;
    return m_realWorld[setup] = StateToRealWorld(state);
}

inline void KCParam_Base::SetSetupWord(EPluginSetup setup, int32_t word) noexcept {
    if (IsPluginSetup(setup))
        m_setupWord[setup] = word;
}

inline void KCParam_Base::UpdateRealWorldFromState(EPluginSetup setup) {
    m_isValueStringCurrent = false;
    if (IsPluginSetup(setup))
        m_realWorld[setup] = StateToRealWorld(m_state[setup]);
}

inline void KCParam_Base::UpdateStateFromRealWorld(EPluginSetup setup) {
    if (IsPluginSetup(setup) && m_inverseScaleFunction != nullptr)
        m_state[setup] =
            std::isnan(m_realWorld[setup]) ? 0.0 : m_inverseScaleFunction(m_realWorld[setup], &m_scale);
}

} // namespace kvKorvoV12_9_0_320
