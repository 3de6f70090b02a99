// Must say: deleted
// Controls, undo and shells hold an algorithm by its address: it has one identity.
#include <korvolib/alg/algorithm.h>

void Use(const kvKorvo::cALGORITHM& algorithm);

void Share(kvKorvo::cALGORITHM& algorithm) {
    Use(algorithm);
#ifdef MISTAKE
    algorithm = algorithm;
#endif
}
