#include <shells/plugin.h>

#include <cstdlib>

extern "C" KORVO_API const kvKorvo::sPLUGIN_ENTRY* KorvoPluginEntry() { std::abort(); }
