// Why a file could not be read or written, in a few words.
#pragma once

#include <cstdint>
#include <string>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// For a result of the file layer, right after the call: where the result says no more than that the system
/// refused, the system's own reason is added (errno).
std::string FileProblem(int32_t result);

} // namespace kvKorvoV12_9_0_320::kvHost
