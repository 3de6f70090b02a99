// Parameters described in XML: a whole vector of them is read from a description and written back to one. The
// elements, with a complete example, are explained in docs/parameter-description.md.
//
// A description is read to its end whatever is wrong with it: every problem is listed with its line, the parameter
// concerned is left out (no name of its own) or stays with neutral values (everything else), and the rest is read.
// Runs once, when an algorithm is created; allocates; nothing throws. Not for two threads at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include <korvolib/alg/control_param.h>
#include <korvolib/alg/description_problem.h>
#include <korvolib/export.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KCXMLElement;

/// Scales that a plug-in supplies, by the scale type that a description names.
using UserScaleFunctionsMap = std::map<KCFixedString<127>, sUserScaleFunctions>;

/// More parameters than this are not read.
inline constexpr size_t kMaxDescribedParams = 20000;
/// More problems than this are not listed.
inline constexpr size_t kMaxListedProblems = 1000;

/// `params` become the "Param" children of `root`, in their order, at their defaults in both setups. kErr_NoErr
/// when there was no problem, kErr_BadDescription when there were some, kErr_AllocationFailed with no parameters.
[[nodiscard]] KORVO_API int32_t ReadParamDescription(const KCXMLElement& root,
                                                     const UserScaleFunctionsMap& userScales,
                                                     std::vector<sCONTROL_PARAM>& params,
                                                     std::vector<sDESCRIPTION_PROBLEM>& problems) noexcept;

/// The same from XML text. A text that is no XML gives its parse error, one problem and no parameters.
[[nodiscard]] KORVO_API int32_t ReadParamDescription(const void* bytes, size_t size,
                                                     const UserScaleFunctionsMap& userScales,
                                                     std::vector<sCONTROL_PARAM>& params,
                                                     std::vector<sDESCRIPTION_PROBLEM>& problems) noexcept;

/// `root` becomes a description that reads back to these parameters: name, label, units, flags, scale, state step,
/// number of states, default and reset state. kErr_BadDescription, and an empty root, for a value that XML cannot
/// carry (not-a-number, an infinity, text that is no UTF-8) or when memory is short.
[[nodiscard]] KORVO_API int32_t WriteParamDescription(const std::vector<sCONTROL_PARAM>& params,
                                                      KCXMLElement& root) noexcept;

} // namespace kvKorvoV12_9_0_320
