// How far a state must move until the value visibly changes: arrow keys, wheel steps and increment buttons ask
// here. Functions of a record; the algorithm's virtual operations of similar names forward to them.
//
// They only read the record: whoever calls holds the algorithm's lock. No allocation. A continuous step runs the
// scale once per state step of the flat span that it crosses, so at most a million times.
#pragma once

#include <korvolib/alg/param_base.h>
#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

namespace ParamStepping {

/// state + offset on the circle of a continuous parameter that wraps (1000 and 0 are neighbours), one turn at most.
/// Without kParamFlag_ContinuousWraps, or for a null parameter, the state as it is.
KORVO_API double NextState(const KCParam_Base* param, double state, double offset) noexcept;

/// Offset from the setup's state to the next state whose value differs, in the direction's sign. 0 for a direction
/// of 0 or not-a-number and for a state step that is not a positive finite number. The sum of state and offset is
/// the caller's to clamp. `isLinked`: the parameter moves with others now, and so does not wrap if it is discrete.
KORVO_API double Offset(const KCParam_Base& param, EPluginSetup setup, double direction, bool isLinked);

/// The rule of discrete parameters: one state on or back, round the ends unless kParamFlag_DiscreteDoesNotWrap.
KORVO_API double OffsetDiscrete(const KCParam_Base& param, EPluginSetup setup, double direction,
                                bool isLinked) noexcept;

/// The rule of all others: to the next multiple of the state step whose value differs from the present one by 1e-10
/// or more, then to the state that this value converts back to. A step below 0.001 counts as 0.001.
KORVO_API double OffsetContinuous(const KCParam_Base& param, EPluginSetup setup, double direction);

/// The state that an update to `state` gives a parameter: for a discrete one the nearest whole multiple of its step
/// that the travel still holds, for all others `state`. Inline: every update asks.
inline double Settle(const KCParam_Base& param, double state) noexcept {
    if (!param.IsDiscrete())
        return state;
    const double settled = param.QuantizeState(state);
    return settled > kFullTravel ? settled - param.GetStateStep() : settled;
}

} // namespace ParamStepping

} // namespace kvKorvoV12_9_0_320
