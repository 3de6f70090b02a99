// Any bytes as a zip archive. Every entry that reads gives as many bytes as the archive states, the same each time
// and the same into a string as into a block; an entry that does not leaves nothing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <fuzz/memory_file.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/zip.h>

namespace {

using namespace kvKorvo;

constexpr uint64_t kLimit = uint64_t{1} << 22; // more would only cost the fuzzer time
constexpr int kMostEntries = 64;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

void ReadBothWays(FM::KCStFileReadFromZip& zip, const KCFixedString<255>& name) {
    std::string text;
    const int32_t result = zip.ReadToStdString(name, text);
    Require(result == kErr_NoErr ? !text.empty() : result == kErr_ZipEntryNotReadable && text.empty());
    uint64_t size = 0;
    Require(zip.GetEntrySize(name, size) == kErr_NoErr || result != kErr_NoErr);
    Require(result != kErr_NoErr || (size == text.size() && size <= kLimit));
    KCStMemObj block;
    const int32_t blockResult = zip.ReadToKCStMemObj(name, block);
    Require(blockResult == kErr_NoErr ? !block.IsEmpty() : block.IsEmpty());
    KCStMemObj again;
    Require(zip.ReadToKCStMemObj(name, again) == blockResult && again == block);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const kvFuzz::MemoryFile file(data, size);
    const FM::KCStPath path(file.Path().c_str());
    FM::KCStFileReadFromZip zip(path);
    zip.SetSizeLimit(kLimit);
    FM::KCStZipFileIterator names(path);
    Require(zip.IsValid() == names.IsValid());
    KCFixedString<255> name;
    for (int i = 0; i < kMostEntries && names.GetNextItemFromZip(name); ++i) {
        Require(!name.empty() && name.find('/') == name.npos);
        ReadBothWays(zip, name);
    }
    ReadBothWays(zip, "");
    ReadBothWays(zip, "dir/file.txt");
    return 0;
}
