#include <korvolib/alg/key_values.h>

#include <korvolib/utilities/error_codes.h>

#include <cstdlib>

namespace kvKorvoV12_9_0_320 {

int32_t KCKeyValues::SetText(const char* name, const char* text) noexcept {
    if (name == nullptr || *name == 0)
        return kErr_NullArgument;
    try {
        m_values[KCFixedString<127>(name)] = text;
    } catch (...) {
        return kErr_AllocationFailed;
    }
    return kErr_NoErr;
}

int32_t KCKeyValues::SetBool(const char* name, bool value) noexcept {
    return SetText(name, value ? "true" : "false");
}

int32_t KCKeyValues::SetNumber(const char* name, double value) noexcept {
    KCFixedString<31> text;
    text.append_double_with_precision(value, -1);
    return SetText(name, text.c_str());
}

const char* KCKeyValues::GetText(const char* name, const char* otherwise) const noexcept {
    const auto found = m_values.find(KCFixedString<127>(name));
    return found == m_values.end() ? otherwise : found->second.c_str();
}

bool KCKeyValues::GetBool(const char* name, bool otherwise) const noexcept {
    bool value = otherwise;
    const KCFixedString<255> text(GetText(name));
    text >> value;
    return value;
}

double KCKeyValues::GetNumber(const char* name, double otherwise) const noexcept {
    const KCFixedString<255> text(GetText(name));
    if (text.find_first_of("0123456789", 0) == KCFixedStringBase::npos)
        return otherwise;
    double value = otherwise;
    text >> value;
    return value;
}

bool KCKeyValues::Contains(const char* name) const noexcept { return m_values.contains(KCFixedString<127>(name)); }

} // namespace kvKorvoV12_9_0_320
