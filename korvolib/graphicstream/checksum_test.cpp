#include <korvolib/graphicstream/checksum.h>

#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <korvolib/graphicstream/binary_writer.h>

namespace {

using namespace kvKorvo::kvGS;

// The published function once more, byte by byte, for any length.
uint64_t ReferenceHash(const std::vector<uint8_t>& bytes, uint64_t seed) {
    const uint64_t m = 0xC6A4A7935BD1E995;
    uint64_t hash = seed ^ (bytes.size() * m);
    size_t at = 0;
    for (; at + 8 <= bytes.size(); at += 8) {
        uint64_t k = 0;
        for (size_t i = 0; i < 8; ++i)
            k |= uint64_t{bytes[at + i]} << (8 * i);
        k *= m;
        k ^= k >> 47;
        k *= m;
        hash ^= k;
        hash *= m;
    }
    if (at != bytes.size()) {
        for (size_t i = 0; at + i < bytes.size(); ++i)
            hash ^= uint64_t{bytes[at + i]} << (8 * i);
        hash *= m;
    }
    hash ^= hash >> 47;
    hash *= m;
    return hash ^ (hash >> 47);
}

std::vector<uint8_t> RandomBytes(size_t count, uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<uint8_t> bytes(count);
    for (uint8_t& byte : bytes)
        byte = static_cast<uint8_t>(random());
    return bytes;
}

// SMHasher's verification: keys of 0 to 255 bytes 0, 1, 2, … with the seeds 256, 255, …; the hash of their hashes.
TEST(StreamChecksum, TheReferenceReproducesThePublishedVerificationValue) {
    std::vector<uint8_t> key;
    std::vector<uint8_t> hashes;
    for (uint32_t i = 0; i < 256; ++i) {
        const uint64_t hash = ReferenceHash(key, 256 - i);
        for (int shift = 0; shift < 64; shift += 8)
            hashes.push_back(static_cast<uint8_t>(hash >> shift));
        key.push_back(static_cast<uint8_t>(i));
    }
    EXPECT_EQ(static_cast<uint32_t>(ReferenceHash(hashes, 0)), 0x1F0D3804u);
}

TEST(StreamChecksum, EqualsTheReferenceFromNineBytesOnAtEveryAlignment) {
    for (size_t length = 9; length < 200; ++length) {
        const std::vector<uint8_t> bytes = RandomBytes(length, static_cast<uint32_t>(length));
        const uint64_t seed = length * 0x9E3779B97F4A7C15;
        for (size_t shift = 0; shift < 8; ++shift) {
            // Exactly as long as needed: a sanitizer sees a byte too many.
            const auto block = std::make_unique<uint8_t[]>(shift + length);
            std::memcpy(block.get() + shift, bytes.data(), length);
            ASSERT_EQ(MurmurHash64A(block.get() + shift, length, seed), ReferenceHash(bytes, seed)) << length;
        }
    }
}

TEST(StreamChecksum, UpToEightBytesHashToThemselvesWhateverTheSeed) {
    const uint8_t bytes[] = {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x88};
    const uint64_t expected[] = {
        0, 0x01, 0x0201, 0x030201, 0x04030201, 0x0504030201, 0x060504030201, 0x07060504030201, 0x8807060504030201};
    for (size_t length = 0; length <= 8; ++length) {
        const auto exact = std::make_unique<uint8_t[]>(length);
        std::memcpy(exact.get(), bytes, length);
        for (const uint64_t seed : {uint64_t{0}, uint64_t{1}, ~uint64_t{0}})
            EXPECT_EQ(MurmurHash64A(exact.get(), length, seed), expected[length]);
    }
}

TEST(StreamChecksum, NoBytesHashToZeroWhateverTheSeed) {
    EXPECT_EQ(MurmurHash64A(nullptr, 0, 5), 0u);
    EXPECT_EQ(MurmurHash64A(nullptr, 100, 5), 0u);
}

TEST(StreamChecksum, NineBytesAreHashedWithTheSeed) {
    const uint8_t bytes[9] = {1};
    EXPECT_NE(MurmurHash64A(bytes, 9, 0), MurmurHash64A(bytes, 9, 1));
}

TEST(StreamChecksum, ARecordsChecksumLeavesItsHeaderOut) {
    SGSClipRect clip;
    clip.rect = {1, 2, 3, 4};
    const auto* bytes = reinterpret_cast<const uint8_t*>(&clip);
    EXPECT_EQ(GSStructChecksum(&clip, sizeof clip), MurmurHash64A(bytes + 8, sizeof clip - 8, 0));
    clip.code = 0;
    EXPECT_EQ(GSStructChecksum(&clip, sizeof clip), MurmurHash64A(bytes + 8, sizeof clip - 8, 0));
}

TEST(StreamChecksum, ABareRecordHasTheChecksumZero) {
    const SGSHeader header{kEndFrame, 8};
    EXPECT_EQ(GSStructChecksum(&header, sizeof header), 0u);
}

TEST(StreamChecksum, ARecordByPointerIsHashedByItsDataAndNotByItsAddress) {
    const std::vector<uint8_t> data = RandomBytes(100, 1);
    const std::vector<uint8_t> elsewhere = data;
    KCGraphicStreamBinaryWriter writer;
    writer.DataPtr(kUint8, kAny, data.data(), data.size()).DataPtr(kUint8, kAny, elsewhere.data(), data.size());
    const uint8_t* records = writer.GetStreamMemObj().GetBytes().data();
    const uint64_t expected = MurmurHash64A(data.data(), data.size(), 0);
    EXPECT_EQ(GSStructChecksum(records, 28, kFollowPointers), expected);
    EXPECT_EQ(GSStructChecksum(records + 28, 28, kFollowPointers), expected);
    EXPECT_EQ(GSStructChecksum(records, 28), 0u);
}

TEST(StreamChecksum, ASizeBeyondTheBytesThereIsCut) {
    std::vector<uint8_t> bytes = RandomBytes(20, 2);
    const uint32_t size = 1000;
    std::memcpy(bytes.data() + 4, &size, sizeof size);
    EXPECT_EQ(GSStructChecksum(bytes.data(), bytes.size()), MurmurHash64A(bytes.data() + 8, 12, 0));
    EXPECT_EQ(GSStructChecksum(bytes.data(), 7), 0u);
    EXPECT_EQ(GSStructChecksum(nullptr, 100), 0u);
}

} // namespace
