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

// Up to eight bytes are their own hash. Apart, so that the way of longer inputs needs no room on the stack.
[[gnu::noinline]] uint64_t AsNumber(const uint8_t* bytes, size_t length) noexcept {
    uint64_t number = 0;
    if (bytes != nullptr && length != 0)
        std::memcpy(&number, bytes, length);
    return number;
}

uint64_t Scramble(uint64_t word) noexcept {
    word *= kMultiplier;
    word ^= word >> kShift;
    return word * kMultiplier;
}

// The last 1 to 15 bytes of an input of more than eight.
uint64_t AddRest(uint64_t hash, const uint8_t* bytes, size_t length) noexcept {
    if ((length & 8) != 0) {
        hash = (hash ^ Scramble(LoadWord(bytes))) * kMultiplier;
        bytes += 8;
    }
    const size_t tail = length & 7;
    if (tail == 0)
        return hash;
    // The last word that ends with them, without what comes before them.
    const uint64_t number = LoadWord(bytes + tail - 8) >> (64 - 8 * tail);
    return (hash ^ number) * kMultiplier;
}

uint64_t Finish(uint64_t hash) noexcept {
    hash ^= hash >> kShift;
    hash *= kMultiplier;
    return hash ^ (hash >> kShift);
}

} // namespace

uint64_t MurmurHash64A(const void* data, size_t length, uint64_t seed) noexcept {
    const auto* bytes = static_cast<const uint8_t*>(data);
    if (length <= 8) [[unlikely]]
        return AsNumber(bytes, length);
    if (bytes == nullptr) [[unlikely]]
        return 0;
    uint64_t hash = seed ^ (length * kMultiplier);
    // Two words a turn: half the branches, which is what short inputs spend their time on.
    const uint8_t* const pairsEnd = bytes + (length & ~size_t{15});
    for (; bytes != pairsEnd; bytes += 16) {
        hash = (hash ^ Scramble(LoadWord(bytes))) * kMultiplier;
        hash = (hash ^ Scramble(LoadWord(bytes + 8))) * kMultiplier;
    }
    if ((length & 15) != 0)
        hash = AddRest(hash, bytes, length & 15);
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
