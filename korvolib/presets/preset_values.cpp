#include <korvolib/presets/preset_values.h>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::Preset {

int32_t CapturePreset(const CPublicAlg& algorithm, const KCFixedStringBase& name, CPresetInfo& out) {
    out.Clear();
    KCParamValues values;
    if (const int32_t result = algorithm.CaptureValues(values); result != kErr_NoErr)
        return result;
    for (size_t index = 0; index < values.size(); ++index) {
        const sPARAM_VALUES& from = values.data()[index];
        const sPRESET_PARAM param = {
            algorithm.GetParamName(index), {from.state[0], from.state[1]}, {from.realWorld[0], from.realWorld[1]}};
        if (out.AddParam(param) != kErr_NoErr) {
            out.Clear();
            return kErr_AllocationFailed;
        }
    }
    out.SetName(name);
    return kErr_NoErr;
}

void LayPresetOver(sALGORITHM_STATE& state, const CPublicAlg& algorithm, const CPresetInfo& preset) {
    for (size_t number = 0; number < preset.GetNumParams(); ++number) {
        const sPRESET_PARAM& param = *preset.GetParam(number);
        const size_t index = algorithm.GetParamIDFromName(param.name);
        if (index < state.values.size() && algorithm.IsParamSavedToUndo(index))
            state.values.data()[index] = {{param.state[0], param.state[1]},
                                          {param.realWorld[0], param.realWorld[1]}};
    }
    for (KCFixedString<127>& title : state.setupTitles)
        title = preset.GetName();
}

} // namespace kvKorvoV12_9_0_320::Preset
