// Undo::API: the history as flat functions over opaque handles, for callers that hold no class of it.
//
//   KTUndoManagerType* manager = nullptr;
//   Undo::API::CreateDefaultUndoManager(manager);
//   Undo::API::StartHistory(manager, &algorithm);          // after FinishCreate: level, first state, clean
//   Undo::API::InsertGestureStep(manager, &algorithm, 3);  // a gesture on parameter 3 has ended
//   Undo::API::ExecuteUndo(manager);
//   Undo::API::DisposeUndoManager(manager);
//
// Every int32_t is a result code: 0, kErr_NullArgument for a null handle (nothing changes), and what
// KCUndoManagerAbs says. Outputs are set empty first. The others answer a null manager with false or 0. Nothing
// throws: an exception of a hook on the way ends here, as kErr_AllocationFailed where memory was short and
// kErr_Generic otherwise. Thread: [main].
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/undo/undo_command.h>

namespace kvKorvoV12_9_0_320 {

class CPublicAlg;
class cALGORITHM;
namespace Preset {
class CPresetInfo;
}

namespace Undo::API {

/// The level of a history unless its keeper wants another.
inline constexpr uint16_t kDefaultUndoLevel = 100;

// The manager ---------------------------------------------------------------------------------------------------

/// kErr_AllocationFailed, with `out` null.
KORVO_API int32_t CreateDefaultUndoManager(KTUndoManagerType*& out) noexcept;
/// With all its commands. kErr_Generic while one of them runs: the manager stays.
KORVO_API int32_t DisposeUndoManager(KTUndoManagerType* manager) noexcept;
KORVO_API int32_t ClearUndoManager(KTUndoManagerType* manager) noexcept;
KORVO_API int32_t GetUndoLevel(KTUndoManagerType* manager, unsigned short& level) noexcept;
KORVO_API int32_t SetUndoLevel(KTUndoManagerType* manager, unsigned short level) noexcept;
KORVO_API bool IsDirty(KTUndoManagerType* manager) noexcept;
KORVO_API int32_t SetClean(KTUndoManagerType* manager) noexcept;

// Commands ------------------------------------------------------------------------------------------------------

/// The state of this moment, about parameter `param` or all of them (kUndoAllParams). The caller owns `out` until
/// it is inserted.
KORVO_API int32_t CreateParametersCommand(cALGORITHM* algorithm, uint32_t param, KTUndoCommandType*& out) noexcept;
KORVO_API int32_t CreatePresetCommand(const CPublicAlg& algorithm, uint32_t id, const Preset::CPresetInfo* preset,
                                      KTUndoCommandType*& out) noexcept;
/// For a command that was never inserted; kErr_Generic, and nothing happens, for one that a manager owns.
KORVO_API int32_t DisposeCommand(KTUndoCommandType* command) noexcept;

// Steps ---------------------------------------------------------------------------------------------------------

/// The manager owns the command from here on; where the manager is null it stays the caller's.
KORVO_API int32_t InsertCommand(KTUndoManagerType* manager, KTUndoCommandType* command,
                                EInsertToStackType type) noexcept;
KORVO_API int32_t ExecuteUndo(KTUndoManagerType* manager) noexcept;
KORVO_API int32_t ExecuteRedo(KTUndoManagerType* manager) noexcept;
KORVO_API bool CanUndo(KTUndoManagerType* manager) noexcept;
KORVO_API bool CanRedo(KTUndoManagerType* manager) noexcept;
KORVO_API size_t GetUndoStackSize(KTUndoManagerType* manager) noexcept;
KORVO_API size_t GetRedoStackSize(KTUndoManagerType* manager) noexcept;
KORVO_API int32_t GetUndoCommandName(KTUndoManagerType* manager, size_t number, KCFixedString<255>& name) noexcept;
KORVO_API int32_t GetRedoCommandName(KTUndoManagerType* manager, size_t number, KCFixedString<255>& name) noexcept;
KORVO_API int32_t GetLastUndoCommandName(KTUndoManagerType* manager, KCFixedString<255>& name) noexcept;
/// Whether the change that the next undo takes back, the one GetLastUndoCommandName names, is a preset.
KORVO_API bool IsPresetCommand(KTUndoManagerType* manager) noexcept;

// Events --------------------------------------------------------------------------------------------------------

KORVO_API int32_t AddUndoEvent(KTUndoManagerType* manager, const KCFixedString<63>& event) noexcept;
KORVO_API int32_t ClearUndoEvents(KTUndoManagerType* manager) noexcept;
KORVO_API uint32_t GetNumEvents(KTUndoManagerType* manager) noexcept;

// What a shell or a window does with a history ------------------------------------------------------------------

/// A fresh history whose first state is the algorithm's present one, clean, so that the first gesture can be taken
/// back. Once the algorithm is created, and again when another document is opened. On an error the history is
/// empty.
KORVO_API int32_t StartHistory(KTUndoManagerType* manager, cALGORITHM* algorithm,
                               uint16_t level = kDefaultUndoLevel) noexcept;
/// One gesture, one step: the state that a gesture on parameter `param` has left. A gesture that changed nothing,
/// such as a click on a knob, leaves the history as it is: the names, what can be redone, the pending events.
KORVO_API int32_t InsertGestureStep(KTUndoManagerType* manager, cALGORITHM* algorithm, uint32_t param) noexcept;

} // namespace Undo::API
} // namespace kvKorvoV12_9_0_320
