// KCStMemObj: an owned block of bytes with its size. Chunks are returned in one, and file contents are read into
// one.
//
// One object owns one block of the heap; it moves, and copies only when asked (CopyFrom), so that no copy of a
// large chunk happens unseen. Nothing throws: what needs memory returns a code. Not for two threads at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCStMemObj {
  public:
    KCStMemObj() noexcept = default;
    ~KCStMemObj() { Clear(); }
    KCStMemObj(KCStMemObj&& other) noexcept { Swap(other); }
    KCStMemObj& operator=(KCStMemObj&& other) noexcept;
    KCStMemObj(const KCStMemObj&) = delete;
    KCStMemObj& operator=(const KCStMemObj&) = delete;

    /// Makes this a block of size zero bytes (the value 0); what it held is gone. 0 bytes make it empty.
    /// kErr_AllocationFailed leaves it empty.
    [[nodiscard]] int32_t Allocate(size_t size) noexcept;

    /// Makes the block shorter or longer: what fits stays, new bytes are 0. kErr_AllocationFailed leaves it
    /// unchanged.
    [[nodiscard]] int32_t Resize(size_t size) noexcept;

    /// Holds a copy of the bytes, which may be part of this very block. kErr_NullArgument for a null pointer with a
    /// size above 0; that and kErr_AllocationFailed leave it empty.
    [[nodiscard]] int32_t Assign(const void* bytes, size_t size) noexcept;

    /// Puts the bytes behind those held; they may be part of this very block. Many appends cost one copy of the
    /// whole on average. kErr_NullArgument and kErr_AllocationFailed leave it unchanged.
    [[nodiscard]] int32_t Append(const void* bytes, size_t size) noexcept;
    [[nodiscard]] int32_t Append(std::string_view text) noexcept { return Append(text.data(), text.size()); }

    /// Makes room for `size` more bytes behind those held and returns where they begin, to be written now: their
    /// value is anything. Many appends cost one copy of the whole on average. Null, and the block unchanged, when
    /// there is no memory.
    [[nodiscard]] uint8_t* AppendAndReserve(size_t size) noexcept {
        if (size > m_capacity - m_size)
            return GrowAndReserve(size);
        uint8_t* const appended = m_data + m_size;
        m_size += size;
        return appended;
    }

    /// Holds a copy of the other's bytes; a copy of itself changes nothing. kErr_AllocationFailed leaves it empty.
    [[nodiscard]] int32_t CopyFrom(const KCStMemObj& other) noexcept;

    /// Gives the block back. Pointers into it end here.
    void Clear() noexcept;
    void Swap(KCStMemObj& other) noexcept;

    bool IsEmpty() const noexcept { return m_size == 0; }
    /// In bytes.
    size_t GetSize() const noexcept { return m_size; }
    /// The first byte, aligned for any type; may be null when empty. Valid until the block is changed in any way.
    void* GetData() noexcept { return m_data; }
    const void* GetData() const noexcept { return m_data; }

    std::span<uint8_t> GetBytes() noexcept { return {m_data, m_size}; }
    std::span<const uint8_t> GetBytes() const noexcept { return {m_data, m_size}; }
    /// The bytes read as text; nothing terminates it.
    std::string_view GetText() const noexcept { return {reinterpret_cast<const char*>(m_data), m_size}; }

    friend KORVO_API bool operator==(const KCStMemObj& left, const KCStMemObj& right) noexcept;

  private:
    bool Reserve(size_t capacity) noexcept;
    uint8_t* GrowAndReserve(size_t size) noexcept;

    uint8_t* m_data = nullptr;
    size_t m_size = 0;
    size_t m_capacity = 0;
};

} // namespace kvKorvoV12_9_0_320
