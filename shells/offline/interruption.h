// Ctrl-C and a polite request to end: the run stops between two blocks, so that no half-written file stays behind.
#pragma once

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// Notes SIGINT, SIGTERM and SIGHUP from here on, and lets a write beyond a limit of file size fail instead of
/// ending the program.
void WatchForInterruption();

/// Throws KCHostFailure once one of the signals has come.
void ThrowIfInterrupted();

} // namespace kvKorvoV12_9_0_320::kvHost
