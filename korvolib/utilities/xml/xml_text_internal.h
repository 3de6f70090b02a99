// What XML 1.0 lets stand in names and texts, for the element tree and its tests.
#pragma once

#include <string_view>

#include <korvolib/utilities/strings/fixed_string.h>

namespace kvKorvoV12_9_0_320 {

/// Nothing but space, tab, line feed and carriage return, or nothing at all.
bool IsXMLBlank(std::string_view text) noexcept;
/// A name as we make them: ASCII only.
bool IsXMLName(std::string_view name) noexcept;
/// Valid UTF-8 of the characters of production [2] "Char" of XML 1.0 (W3C, fifth edition).
bool IsXMLText(std::string_view text) noexcept;
/// A name or title without the bytes that XML cannot carry: a control character, a character that was cut where the
/// fixed string ends. One odd name must not keep a whole session from being saved.
KCFixedString<127> XMLTextOf(const KCFixedStringBase& text) noexcept;

} // namespace kvKorvoV12_9_0_320
