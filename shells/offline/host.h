// The command line of korvo-host.
#pragma once

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// Reads the command line and does what it says. 0, or 2 after one line "korvo-host: …" on standard error.
int RunHost(int argc, const char* const* argv);

} // namespace kvKorvoV12_9_0_320::kvHost
