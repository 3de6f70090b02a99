// How the host fails. It is a program, not a library: whatever goes wrong ends the run, so a failure is thrown as
// the one line that the person at the keyboard reads, and caught once, at the top.
#pragma once

#include <stdexcept>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

class KCHostFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace kvKorvoV12_9_0_320::kvHost
