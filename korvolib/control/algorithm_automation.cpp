// The members of cALGORITHM that reach automation. Without a manager there are no controls: whatever asks for one
// by its index is out of range, and nobody is told of a value.

#include <korvolib/alg/algorithm.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

int32_t cALGORITHM::InitAutomation() { return kErr_NoErr; }
int32_t cALGORITHM::FinishCreateAutomation() { return kErr_NoErr; }

void cALGORITHM::NotifyParamValue(size_t) {}
void cALGORITHM::Touch(size_t) {}
void cALGORITHM::Release(size_t) {}

int32_t cALGORITHM::TranslateTextToControlState(int32_t, const char*, double&, double&) {
    return kErr_ControlIndexOutOfRange;
}

int32_t cALGORITHM::ControlStateFromRealWorldValue(size_t, double, double&) { return kErr_ControlIndexOutOfRange; }

int32_t cALGORITHM::ControlRealWorldValueFromState(size_t, double, double&) { return kErr_ControlIndexOutOfRange; }

} // namespace kvKorvoV12_9_0_320
