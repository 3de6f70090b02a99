#include <korvolib/utilities/mem_obj.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

namespace {

// No object may be larger than the distance between two pointers can say.
constexpr size_t kMaxSize = PTRDIFF_MAX;

// Where a pointer stands in the block, or npos. Compared as numbers: pointers into different blocks have no order.
constexpr size_t kOutside = SIZE_MAX;
size_t OffsetInBlock(const uint8_t* block, size_t size, const void* bytes) {
    const auto first = reinterpret_cast<uintptr_t>(block);
    const auto wanted = reinterpret_cast<uintptr_t>(bytes);
    return wanted >= first && wanted - first < size ? wanted - first : kOutside;
}

} // namespace

KCStMemObj& KCStMemObj::operator=(KCStMemObj&& other) noexcept {
    KCStMemObj taken(std::move(other));
    Swap(taken);
    return *this;
}

int32_t KCStMemObj::Allocate(size_t size) noexcept {
    Clear();
    if (size == 0)
        return kErr_NoErr;
    // A large block comes from the system as zeros, and is not written twice.
    m_data = size > kMaxSize ? nullptr : static_cast<uint8_t*>(std::calloc(size, 1));
    if (m_data == nullptr)
        return kErr_AllocationFailed;
    m_size = m_capacity = size;
    return kErr_NoErr;
}

int32_t KCStMemObj::Resize(size_t size) noexcept {
    if (size > m_capacity && !Reserve(size))
        return kErr_AllocationFailed;
    if (size > m_size)
        std::memset(m_data + m_size, 0, size - m_size);
    m_size = size;
    return kErr_NoErr;
}

int32_t KCStMemObj::Assign(const void* bytes, size_t size) noexcept {
    KCStMemObj fresh;
    const int32_t result = fresh.Append(bytes, size);
    Swap(fresh);
    return result;
}

int32_t KCStMemObj::Append(const void* bytes, size_t size) noexcept {
    if (size == 0)
        return kErr_NoErr;
    if (bytes == nullptr)
        return kErr_NullArgument;
    if (size > kMaxSize - m_size)
        return kErr_AllocationFailed;
    const size_t offset = OffsetInBlock(m_data, m_size, bytes);
    const size_t needed = m_size + size;
    if (needed > m_capacity && !Reserve(std::max(needed, std::min(kMaxSize, m_size * 2))))
        return kErr_AllocationFailed;
    std::memmove(m_data + m_size, offset == kOutside ? bytes : m_data + offset, size);
    m_size = needed;
    return kErr_NoErr;
}

int32_t KCStMemObj::CopyFrom(const KCStMemObj& other) noexcept {
    return &other == this ? kErr_NoErr : Assign(other.m_data, other.m_size);
}

void KCStMemObj::Clear() noexcept {
    std::free(m_data);
    m_data = nullptr;
    m_size = 0;
    m_capacity = 0;
}

void KCStMemObj::Swap(KCStMemObj& other) noexcept {
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
}

bool KCStMemObj::Reserve(size_t capacity) noexcept {
    if (capacity > kMaxSize)
        return false;
    void* block = std::realloc(m_data, capacity);
    if (block == nullptr)
        return false;
    m_data = static_cast<uint8_t*>(block);
    m_capacity = capacity;
    return true;
}

uint8_t* KCStMemObj::GrowAndReserve(size_t size) noexcept {
    if (size > kMaxSize - m_size)
        return nullptr;
    constexpr size_t kFirstCapacity = 256;
    const size_t needed = m_size + size;
    if (!Reserve(std::max({needed, kFirstCapacity, std::min(kMaxSize, m_size * 2)})))
        return nullptr;
    uint8_t* const appended = m_data + m_size;
    m_size = needed;
    return appended;
}

bool operator==(const KCStMemObj& left, const KCStMemObj& right) noexcept {
    return std::ranges::equal(left.GetBytes(), right.GetBytes());
}

} // namespace kvKorvoV12_9_0_320
