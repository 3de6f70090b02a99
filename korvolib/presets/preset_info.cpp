#include <korvolib/presets/preset_info.h>

#include <new>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::Preset {

int32_t CPresetInfo::AddParam(const sPRESET_PARAM& param) noexcept {
    try {
        m_params.push_back(param);
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    return kErr_NoErr;
}

void CPresetInfo::Clear() noexcept {
    m_name.clear();
    m_params.clear();
}

} // namespace kvKorvoV12_9_0_320::Preset
