// Writes the fields of a record straight to where they belong in the stream, one behind the other: a record built
// aside and copied is read back from memory that was only just written, and takes three times as long.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <korvolib/graphicstream/records.h>

namespace kvKorvoV12_9_0_320::kvGS {

/// Two neighbours as one: a store of eight bytes takes no longer than one of two, and the compiler does not join
/// them.
inline uint64_t Join(uint32_t low, uint32_t high) noexcept { return low | uint64_t{high} << 32; }
inline uint32_t Join(uint16_t low, uint16_t high) noexcept { return low | uint32_t{high} << 16; }

class RecordBytes {
  public:
    /// The room has been reserved by the caller.
    explicit RecordBytes(uint8_t* at) noexcept : m_at(at) {}

    template <class... Fields>
    RecordBytes& Put(const Fields&... fields) noexcept {
        (PutField(fields), ...);
        return *this;
    }
    RecordBytes& PutBytes(const void* bytes, size_t size) noexcept {
        if (size != 0)
            std::memcpy(m_at, bytes, size);
        m_at += size;
        return *this;
    }
    RecordBytes& PutDataHeader(int dataType, int purpose, size_t count, size_t bytes) noexcept {
        return Put(uint32_t{kDataHere}, static_cast<uint32_t>(sizeof(SGSDataHere) + bytes), purpose, dataType,
                   static_cast<uint32_t>(count));
    }
    RecordBytes& PutData(int dataType, int purpose, const void* data, size_t count, size_t bytes) noexcept {
        return PutDataHeader(dataType, purpose, count, bytes).PutBytes(data, bytes);
    }
    RecordBytes& PutDataPtr(int dataType, int purpose, const void* data, size_t count) noexcept {
        return Put(uint32_t{kDataPtr}, uint32_t{sizeof(SGSDataPtr)}, purpose, dataType,
                   static_cast<uint32_t>(count), data);
    }

  private:
    template <class Field>
    void PutField(const Field& field) noexcept {
        std::memcpy(m_at, &field, sizeof field);
        m_at += sizeof field;
    }

    uint8_t* m_at;
};

} // namespace kvKorvoV12_9_0_320::kvGS
