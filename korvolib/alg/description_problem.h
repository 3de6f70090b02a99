// Something in a description that is not as it should be: readers collect these and go on, so that one look at the
// list mends all.
#pragma once

#include <cstdint>

#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

struct sDESCRIPTION_PROBLEM {
    int32_t Line = 0; // from 1; 0 where the place is unknown
    KCFixedString<255> Text;
    KCFixedString<63> Description; // its name, once an algorithm has it in its list
};

} // namespace kvKorvoV12_9_0_320
