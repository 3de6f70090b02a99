#include <korvolib/graphicstream/checksum.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include <korvolib/graphicstream/commands.h>
#include <korvolib/graphicstream/records.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

static_assert(std::endian::native == std::endian::little, "streams and their hashes are little-endian");

constexpr uint64_t kMultiplier = 0xC6A4A7935BD1E995;
constexpr int kShift = 47;

uint64_t LoadWord(const uint8_t* bytes) noexcept {
    uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// The last 0 to 7 bytes as a number.
uint64_t LoadTail(const uint8_t* bytes, size_t length) noexcept {
    uint64_t word = 0;
    std::memcpy(&word, bytes, length);
    return word;
}

uint64_t Scramble(uint64_t word) noexcept {
    word *= kMultiplier;
    word ^= word >> kShift;
    return word * kMultiplier;
}

uint64_t Finish(uint64_t hash) noexcept {
    hash ^= hash >> kShift;
    hash *= kMultiplier;
    return hash ^ (hash >> kShift);
}

} // namespace

uint64_t MurmurHash64A(const void* data, size_t length, uint64_t seed) noexcept {
    if (data == nullptr || length == 0)
        return 0;
    const auto* bytes = static_cast<const uint8_t*>(data);
    if (length < 8)
        return LoadTail(bytes, length);
    if (length == 8)
        return LoadWord(bytes);
    uint64_t hash = seed ^ (length * kMultiplier);
    const uint8_t* const wordsEnd = bytes + (length & ~size_t{7});
    for (; bytes != wordsEnd; bytes += 8)
        hash = (hash ^ Scramble(LoadWord(bytes))) * kMultiplier;
    if ((length & 7) != 0)
        hash = (hash ^ LoadTail(bytes, length & 7)) * kMultiplier;
    return Finish(hash);
}

uint64_t GSStructChecksum(const void* record, size_t available, KEGSPointers pointers) noexcept {
    if (record == nullptr || available < sizeof(SGSHeader))
        return 0;
    SGSHeader header;
    std::memcpy(&header, record, sizeof header);
    const size_t size = std::min<size_t>(header.size, available);
    if (size < sizeof header)
        return 0;
    if (header.code != kDataPtr)
        return MurmurHash64A(static_cast<const uint8_t*>(record) + sizeof header, size - sizeof header, 0);
    if (pointers == kRefusePointers || size < sizeof(SGSDataPtr))
        return 0;
    SGSDataPtr data;
    std::memcpy(&data, record, sizeof data);
    return MurmurHash64A(data.GetAddress(), data.GetDataSize(), 0);
}

} // namespace kvKorvoV12_9_0_320::kvGS
