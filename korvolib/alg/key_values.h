// Values a plug-in keeps by name beside its parameters: settings that steer the library ("NeedProcessThreadSafe")
// and facts it leaves for others ("FinishCreateWasCalled"). Texts underneath, read as the type that is asked for.
//
// Thread: [main]. Setting a new name allocates; nothing on the parameter path uses this.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include <korvolib/export.h>
#include <korvolib/utilities/strings/fixed_string.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCKeyValues {
  public:
    // 0, or kErr_NullArgument for a null or empty name, kErr_AllocationFailed. A null text is the empty text.
    int32_t SetText(const char* name, const char* text) noexcept;
    int32_t SetBool(const char* name, bool value) noexcept;
    int32_t SetNumber(const char* name, double value) noexcept;

    // The value, or `otherwise` when the name is unknown or its text does not read as the type.
    const char* GetText(const char* name, const char* otherwise = "") const noexcept;
    bool GetBool(const char* name, bool otherwise = false) const noexcept;
    double GetNumber(const char* name, double otherwise = 0.0) const noexcept;

    bool Contains(const char* name) const noexcept;
    size_t size() const noexcept { return m_values.size(); }

  private:
    std::map<KCFixedString<127>, KCFixedString<255>> m_values;
};

} // namespace kvKorvoV12_9_0_320
