// What somebody probably meant: the names nearest to one that is unknown.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// Levenshtein's distance: the least number of single bytes to insert, remove or replace; ASCII letters compare
/// without case. Time and memory grow with the product and the length of the texts.
size_t EditDistance(std::string_view from, std::string_view to);

/// Up to `limit` of the names, the nearest first, equals in their order; none that would have to change by more
/// than half of its letters, unless it begins with what was typed.
std::vector<std::string> NearestNames(const std::vector<std::string>& names, std::string_view wanted,
                                      size_t limit = 3);

/// `; nearest: "Gain", "Pan"`, the end of a complaint about a name; `otherwise` where no name is near.
std::string NearestText(const std::vector<std::string>& names, std::string_view wanted, const char* otherwise = "");

} // namespace kvKorvoV12_9_0_320::kvHost
