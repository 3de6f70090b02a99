// The keeper of a plug-in's presets, as far as the algorithm needs it: it knows the current setup as a preset.
//
// Thread: [main].
#pragma once

#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KCStMemObj;

namespace Preset {

class KORVO_API CPresetsManager {
  public:
    virtual ~CPresetsManager() = default;
    // Fills `out` with the current setup as a preset chunk. 0 or an error code, with `out` empty.
    virtual int32_t GetCurrentSetupPresetChunk(KCStMemObj& out) = 0;
};

} // namespace Preset
} // namespace kvKorvoV12_9_0_320
