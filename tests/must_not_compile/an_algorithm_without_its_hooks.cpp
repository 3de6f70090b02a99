// Must say: abstract
// A plug-in that forgets what its parameters mean would be silent.
#include <korvolib/alg/algorithm.h>

struct sSilent : kvKorvo::cALGORITHM {
#ifndef MISTAKE
    BUFFER_HEADER* ApplyParamSelf(size_t) override { return nullptr; }
#endif
    BUFFER_HEADER* ApplyAlgSelf() override { return nullptr; }
    BUFFER_HEADER* InitAlgSelf() override { return nullptr; }
};

void Make() { sSilent silent; }
