// The checksum of stream records: MurmurHash2 in its 64-bit form, by Austin Appleby (public domain), with one
// exception that is kept: 1 to 8 bytes hash to themselves, read as a little-endian number, and none to 0.
//
// It tells records apart; it protects nothing against an adversary. Any thread, no allocation.
#pragma once

#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvGS {

/// The hash of `length` bytes, which may lie at any address. Up to 8 bytes the seed plays no part. Null is no
/// bytes.
KORVO_API uint64_t MurmurHash64A(const void* data, size_t length, uint64_t seed) noexcept;

/// Whether pointers in a stream may be followed: only in the process that recorded it, while what they point to
/// lives.
enum KEGSPointers : int {
    kRefusePointers, ///< the stream came from outside: its addresses mean nothing
    kFollowPointers,
};

/// The checksum of one record: the hash, seed 0, of its bytes after the header. For a record by pointer it is the
/// hash of the data pointed to, or 0 where pointers are refused: no address ever enters a checksum. `available` are
/// the bytes that may be read; a record that is shorter than its header has the checksum 0.
KORVO_API uint64_t GSStructChecksum(const void* record, size_t available,
                                    KEGSPointers pointers = kRefusePointers) noexcept;

} // namespace kvKorvoV12_9_0_320::kvGS
