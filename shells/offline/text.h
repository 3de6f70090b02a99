// Small texts for messages, tables and pictures. Numbers always have a point, whatever the process locale says.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// The shortest text that reads back as this very number: "0.5", "1000000", "1e+300".
std::string NumberText(double number);

/// With exactly this many decimals (0 … 12): FixedText(0.25, 1) is "0.2".
std::string FixedText(double number, int decimals);

/// The whole text as a finite number. False, with `number` as it was, for anything else; "+1" is 1, "0x10" is not a
/// number, and the point is a point.
bool ReadNumber(std::string_view text, double& number);

/// The text in double quotes, cut after 60 bytes, with a `?` for every control character: fit for one line.
std::string Quoted(std::string_view text);

/// A word of a file format: 'value'.
std::string InApostrophes(std::string_view word);

/// "a, b or c".
std::string JoinedText(const std::vector<std::string>& parts, std::string_view lastSeparator);

/// Whether a file's name ends so; the ending is given in small letters, and the name's count as such.
bool HasEnding(std::string_view name, std::string_view ending);

/// Columns that the text takes on a terminal: its UTF-8 code points.
size_t TextWidth(std::string_view text);

} // namespace kvKorvoV12_9_0_320::kvHost
