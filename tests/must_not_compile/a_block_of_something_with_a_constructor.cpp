// Must say: static.assert
// A block crosses to the audio side as bytes; what it holds must survive that.
#include <shells/plugin.h>

#include <string>

#ifdef MISTAKE
using Contents = std::string;
#else
using Contents = float;
#endif

bool Receive(const void* payload, size_t bytes, Contents& contents) {
    return kvKorvo::ReadBlock(payload, bytes, contents);
}
