// Reading numbers, rectangles and colours of a window's description: what does not read, is not finite or is absurd
// is reported with its line, and the value stays as it was.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <korvolib/alg/description_problem.h>
#include <korvolib/utilities/color.h>
#include <korvolib/utilities/geometry.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320::GUIDescription {

using Problems = std::vector<sDESCRIPTION_PROBLEM>;

/// Lengths and coordinates beyond this are mistakes.
inline constexpr double kFarthest = 1e6;
/// Factors beyond this, on either side of 0, likewise.
inline constexpr double kMostSensitive = 1e6;

/// `quoted` stands in quotation marks behind `text`; null for nothing.
void AddProblem(const KCXMLElement& element, const char* text, const char* quoted, Problems& problems);

// Each is false, and leaves the value, where there is no such attribute or it is reported.

bool ReadNumber(const KCXMLElement& element, const char* name, double lowest, double highest, double& value,
                Problems& problems);
bool ReadWhole(const KCXMLElement& element, const char* name, int32_t lowest, int32_t highest, int32_t& value,
               Problems& problems);
bool ReadFlag(const KCXMLElement& element, const char* name, bool& value, Problems& problems);
bool ReadColor(const KCXMLElement& element, const char* name, KUColor& value, Problems& problems);
/// Exactly values.size() numbers within kFarthest, at most 8, with blanks between them.
bool ReadNumbers(const KCXMLElement& element, const char* name, std::span<double> values, Problems& problems);
/// "x y w h"; a negative size is reported.
bool ReadRect(const KCXMLElement& element, const char* name, KURect<double>& value, Problems& problems);

/// The index of the value among the words.
bool ReadWord(const KCXMLElement& element, const char* name, std::span<const char* const> words, size_t& index,
              Problems& problems);
/// The same for an enumeration whose values count the words.
template <class Enum>
bool ReadWord(const KCXMLElement& element, const char* name, std::span<const char* const> words, Enum& value,
              Problems& problems) {
    size_t index = 0;
    if (!ReadWord(element, name, words, index, problems))
        return false;
    value = static_cast<Enum>(index);
    return true;
}

/// Numbers with blanks between them, as ReadNumbers takes them.
KCFixedString<127> NumbersText(std::span<const double> values);
/// "x y w h", as ReadRect takes it.
KCFixedString<127> RectText(const KURect<double>& rect);

} // namespace kvKorvoV12_9_0_320::GUIDescription
