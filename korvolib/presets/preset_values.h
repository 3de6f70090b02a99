// Where a preset meets an algorithm: the present values become a preset, a preset's values become a state that
// CPublicAlg::RestorePreset puts back.
//
// Thread: [main].
#pragma once

#include <cstdint>

#include <korvolib/alg/public_alg.h>
#include <korvolib/export.h>
#include <korvolib/presets/preset_info.h>

namespace kvKorvoV12_9_0_320::Preset {

// Makes `out` a preset of that name with every parameter of the algorithm. kErr_NullArgument without an algorithm
// and kErr_AllocationFailed, both with `out` empty.
KORVO_API int32_t CapturePreset(const CPublicAlg& algorithm, const KCFixedStringBase& name, CPresetInfo& out);

// Lays the preset over a state captured from the same algorithm: values of the parameters it names (others keep
// those of the state; names the algorithm does not have are struck over, and parameters that undo does not save
// stay not saved), and its name as the title of both setups, which it fills both.
KORVO_API void LayPresetOver(sALGORITHM_STATE& state, const CPublicAlg& algorithm, const CPresetInfo& preset);

} // namespace kvKorvoV12_9_0_320::Preset
