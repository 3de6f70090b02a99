#include "file_problem.h"

#include <cerrno>
#include <cstring>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::kvHost {

std::string FileProblem(int32_t result) {
    const int reason = errno;
    switch (result) {
    case kErr_FileNotFound:
        return "no such file or folder";
    case kErr_SharingViolation:
        return "somebody else is using it";
    case kErr_AllocationFailed:
    case kErr_NotEnoughMemory:
        return "not enough memory";
    case kErr_LimitExceeded:
        return "it is too large";
    default:
        return reason != 0 ? std::strerror(reason) : "error " + std::to_string(result);
    }
}

} // namespace kvKorvoV12_9_0_320::kvHost
