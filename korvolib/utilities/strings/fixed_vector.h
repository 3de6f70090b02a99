// A vector of at most N elements that live inside it: an ordinary array and a count, no heap.
//
// All N elements exist from construction on (T must be default constructible); the count says how many of them are
// in use. Like the fixed strings it never fails: what passes the capacity is dropped, and indexing never leaves
// the array. A plain value without locking.
#pragma once

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <utility>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

template <class T, size_t N>
class KCFixedVector {
    static_assert(N > 0, "an element to fall back on is needed for indices beyond the array");
    static constexpr bool kMovesQuietly =
        std::is_nothrow_default_constructible_v<T> && std::is_nothrow_move_assignable_v<T>;

  public:
    using value_type = T;
    using size_type = size_t;
    using iterator = T*;
    using const_iterator = const T*;

    KCFixedVector() = default;
    /// `count` copies of `fill`; at most N.
    KCFixedVector(size_t count, const T& fill) : m_count(std::min(count, N)) {
        std::fill_n(m_elements, m_count, fill);
    }
    /// Elements in use are copied or moved one by one; the source keeps its count.
    KCFixedVector(const KCFixedVector& other) : m_count(other.m_count) {
        std::copy_n(other.begin(), m_count, begin());
    }
    KCFixedVector(KCFixedVector&& other) noexcept(kMovesQuietly) : m_count(other.m_count) {
        std::move(other.begin(), other.end(), begin());
    }
    KCFixedVector& operator=(const KCFixedVector& other) {
        if (this != &other) {
            std::copy_n(other.begin(), other.m_count, m_elements);
            m_count = other.m_count;
        }
        return *this;
    }
    KCFixedVector& operator=(KCFixedVector&& other) noexcept(std::is_nothrow_move_assignable_v<T>) {
        if (this != &other) {
            std::move(other.begin(), other.end(), m_elements);
            m_count = other.m_count;
        }
        return *this;
    }
    ~KCFixedVector() = default;

    size_t size() const noexcept { return m_count; }
    bool empty() const noexcept { return m_count == 0; }
    static constexpr size_t capacity() noexcept { return N; }
    static constexpr size_t max_size() noexcept { return N; }

    /// Positions from size() to N − 1 hold default or earlier elements; positions beyond give the last one.
    T& operator[](size_t index) noexcept { return m_elements[std::min(index, N - 1)]; }
    const T& operator[](size_t index) const noexcept { return m_elements[std::min(index, N - 1)]; }

    iterator begin() noexcept { return m_elements; }
    iterator end() noexcept { return m_elements + m_count; }
    const_iterator begin() const noexcept { return m_elements; }
    const_iterator end() const noexcept { return m_elements + m_count; }
    T* data() noexcept { return m_elements; }
    const T* data() const noexcept { return m_elements; }

    /// Sets the count and gives it every element a copy of `fill`.
    void assign(size_t count, const T& fill) { *this = KCFixedVector(count, fill); }
    /// False, and nothing changed, when the vector is full.
    bool push_back(const T& value) {
        if (m_count == N)
            return false;
        m_elements[m_count] = value;
        ++m_count;
        return true;
    }
    /// Nothing happens when the vector is empty.
    void pop_back() noexcept { m_count -= m_count != 0; }
    void clear() noexcept { m_count = 0; }
    /// Sets the count, cut at N. Elements that come into view show what lies there.
    void resize(size_t count) noexcept { m_count = std::min(count, N); }

    friend bool operator==(const KCFixedVector& a, const KCFixedVector& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }

  private:
    T m_elements[N]{};
    size_t m_count = 0;
};

} // namespace kvKorvoV12_9_0_320
