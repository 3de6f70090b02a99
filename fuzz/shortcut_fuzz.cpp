// Any bytes as a Windows shortcut: what resolves gives a path without a NUL or backslash, and what is no shortcut
// resolves to nothing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <fuzz/memory_file.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/path.h>

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace kvKorvo;
    const kvFuzz::MemoryFile file(data, size);
    const FM::KCStPath path(file.Path().c_str());
    FM::KCStPath target;
    const int32_t result = FM::ResolveWinShortcut(path, target);
    Require(target.IsValid() == (result == kErr_NoErr));
    Require(result != kErr_NoErr || FM::IsWinShortcut(path));
    const KCFixedString<1023> text = target.GetPathString();
    Require(std::string_view(text.c_str()).size() == text.size() && text.find('\\') == text.npos);
    return 0;
}
