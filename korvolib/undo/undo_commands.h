// The states that a plug-in's history is made of: the parameters after a gesture, and a preset.
//
// Both hold the whole state: values of all parameters in both setups, which setup is active, the setups' titles.
// So a step is whole, and undo brings back exactly what was, whichever parameters the steps between have moved.
// Parameters that the algorithm does not let undo save are left alone.
//
// Price: one lock and one block of 32 bytes per parameter each, and about 1 KB. Thread: [main]. The algorithm
// outlives the command.
#pragma once

#include <cstdint>

#include <korvolib/alg/public_alg.h>
#include <korvolib/export.h>
#include <korvolib/presets/preset_info.h>
#include <korvolib/undo/undo_command.h>

namespace kvKorvoV12_9_0_320::Undo {

/// A step that is about all parameters and not about one of them.
inline constexpr uint32_t kUndoAllParams = 0xFFFFFFFF;

class KORVO_API KCUndoCommandParameters final : public Command {
  public:
    /// The state of this moment. `param` is the index of the parameter the step is about, whose name it takes, or
    /// kUndoAllParams ("Parameters", as for an index without parameter).
    KCUndoCommandParameters(cALGORITHM* algorithm, uint32_t param);

    /// 0, or why there is no state to bring back: kErr_NullArgument, kErr_AllocationFailed. Execute returns it
    /// then.
    int32_t GetResult() const { return m_result; }

    /// The same values, bit for bit, active setup and titles, of the same algorithm.
    bool operator==(const Command& other) const override;
    /// The same algorithm and the same unsigned value.
    bool IsSameType(const Command* other) const override;
    int32_t Execute() override;
    void TakeOverState(Command& newer) override;

    /// Whether `other`, a preset's command too, brings the same algorithm the same state; null does not.
    bool HasStateOf(const Command* other) const;

  private:
    CPublicAlg m_algorithm;
    sALGORITHM_STATE m_state;
    int32_t m_result;
};

class KORVO_API KCUndoCommandPreset final : public Command {
  public:
    /// The preset as it stands in `preset`, on top of the state of this moment: parameters that the preset does not
    /// name are part of the step too. It takes the preset's name, and so do both setups as their title. `id` tells
    /// kinds of loading apart.
    KCUndoCommandPreset(const CPublicAlg& algorithm, uint32_t id, const Preset::CPresetInfo* preset);

    /// As that of KCUndoCommandParameters; also kErr_NullArgument without a preset.
    int32_t GetResult() const { return m_result; }

    /// The same name, values, active setup and titles, of the same algorithm.
    bool operator==(const Command& other) const override;
    /// The same algorithm and the same unsigned value.
    bool IsSameType(const Command* other) const override;
    /// As for parameters, and the listeners are told PresetLoaded.
    int32_t Execute() override;
    /// The preset's name is one of the events, so that they tell what was loaded.
    void SetEvents(const EventSet& events) override;
    void TakeOverState(Command& newer) override;

  private:
    friend class KCUndoCommandParameters; // compares states

    CPublicAlg m_algorithm;
    sALGORITHM_STATE m_state;
    int32_t m_result;
};

} // namespace kvKorvoV12_9_0_320::Undo
