// A preset in memory: its name, and by name what each parameter is in setups A and B. It knows no algorithm, so
// that it can be read, sorted and compared without one (presets/preset_values.h brings the two together).
//
// Price: some 200 bytes per parameter, for its name. Thread: a plain value, one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <korvolib/export.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::Preset {

// One parameter of a preset; index 0 is setup A, 1 is B.
struct sPRESET_PARAM {
    KCFixedString<127> name;
    double state[2] = {0.0, 0.0};     // 0 … 1000
    double realWorld[2] = {0.0, 0.0}; // in the parameter's unit
    bool operator==(const sPRESET_PARAM& other) const noexcept {
        return name == other.name && state[0] == other.state[0] && state[1] == other.state[1] &&
               realWorld[0] == other.realWorld[0] && realWorld[1] == other.realWorld[1];
    }
};

class KORVO_API CPresetInfo {
  public:
    const KCFixedString<127>& GetName() const noexcept { return m_name; }
    void SetName(const KCFixedStringBase& name) noexcept { m_name = name; }

    // Appends; a name that is there already stands twice, and the later one holds. 0 or kErr_AllocationFailed, with
    // nothing changed.
    int32_t AddParam(const sPRESET_PARAM& param) noexcept;
    size_t GetNumParams() const noexcept { return m_params.size(); }
    const sPRESET_PARAM* GetParam(size_t number) const noexcept { // null past the end
        return number < m_params.size() ? &m_params[number] : nullptr;
    }
    void Clear() noexcept; // no name, no parameters

    bool operator==(const CPresetInfo& other) const noexcept {
        return m_name == other.m_name && m_params == other.m_params;
    }

  private:
    KCFixedString<127> m_name;
    std::vector<sPRESET_PARAM> m_params;
};

} // namespace kvKorvoV12_9_0_320::Preset
