#include <korvolib/export.h>

extern "C" KORVO_API int SomethingElse() { return 0; }
