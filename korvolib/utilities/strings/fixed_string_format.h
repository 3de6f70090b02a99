// Values that carry the format in which a fixed string takes them:
//
//   message << PDoubleWithPrecision(0.25, 2) << " at " << PCurrentDateAndTime();
//
// No heap and no process locale, as everywhere in the strings.
#pragma once

#include <korvolib/utilities/strings/fixed_string.h>

namespace kvKorvoV12_9_0_320 {

/// A number with a precision, which KCFixedStringBase::append_double_with_precision explains.
class KORVO_API PDoubleWithPrecision {
  public:
    constexpr PDoubleWithPrecision(double value, int precision) noexcept : m_value(value), m_precision(precision) {}
    /// Appends the number and returns the string.
    KCFixedStringBase& operator()(KCFixedStringBase& string) const noexcept {
        return string.append_double_with_precision(m_value, m_precision);
    }

  private:
    double m_value;
    int m_precision;
};

/// Local date and time when it is appended, in the 24 characters "Www Mmm dd hh:mm:ss yyyy", always in English.
class KORVO_API PCurrentDateAndTime {
  public:
    /// Appends date and time and returns the string; nothing when the clock shows a year above 9999.
    KCFixedStringBase& operator()(KCFixedStringBase& string) const noexcept;
};

inline KCFixedStringBase& operator<<(KCFixedStringBase& string, const PDoubleWithPrecision& value) noexcept {
    return value(string);
}
inline KCFixedStringBase& operator<<(KCFixedStringBase& string, const PCurrentDateAndTime& value) noexcept {
    return value(string);
}

} // namespace kvKorvoV12_9_0_320
