// Points, sizes and rectangles of GUI controls and of the graphic stream, for double, float, int and short.
//
// Plain values, copied freely, on any thread. A rectangle is its four edges; y grows downwards; the left and top
// edges belong to it, the right and bottom edges do not. Coordinates of integer types saturate at the ends of their
// type instead of overflowing; a rectangle with a not-a-number edge is empty.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

template <class T>
concept KUCoordinate =
    std::same_as<T, double> || std::same_as<T, float> || std::same_as<T, int> || std::same_as<T, short>;

/// A distance between two coordinates of type T: wide enough for every pair.
template <KUCoordinate T>
using KUDistance = std::conditional_t<std::is_floating_point_v<T>, T, int64_t>;

/// The nearest T: fractions round to the nearest, halves away from zero; what lies beyond the type becomes its end
/// (an infinity in float); not-a-number becomes 0 in an integer type.
template <KUCoordinate T, class From>
T KUConvertCoordinate(From value) noexcept;

template <KUCoordinate T>
struct KUPoint {
    T x{};
    T y{};

    template <KUCoordinate U>
    KUPoint<U> ConvertTo() const noexcept {
        return {KUConvertCoordinate<U>(x), KUConvertCoordinate<U>(y)};
    }
    friend bool operator==(const KUPoint&, const KUPoint&) noexcept = default;
};

template <KUCoordinate T>
struct KUSize {
    T width{};
    T height{};

    /// Nothing fits in: a side is 0, negative or not-a-number.
    bool IsEmpty() const noexcept { return !(width > 0 && height > 0); }
    template <KUCoordinate U>
    KUSize<U> ConvertTo() const noexcept {
        return {KUConvertCoordinate<U>(width), KUConvertCoordinate<U>(height)};
    }
    friend bool operator==(const KUSize&, const KUSize&) noexcept = default;
};

/// A rectangle. Made by name (FromEdges, FromOrigin): no constructor takes four numbers, since half the world
/// writes the left edge first and the other half the top, and a swapped pair compiles. The edges lie in memory top
/// first.
template <KUCoordinate T>
class KURect {
  public:
    T top{};
    T left{};
    T bottom{};
    T right{};

    /// All edges 0. (Written out, so that the class is no aggregate that four numbers in braces would fill.)
    constexpr KURect() noexcept {} // NOLINT(modernize-use-equals-default)

    static KURect FromEdges(T left, T top, T right, T bottom) noexcept;
    /// The right and bottom edges saturate in integer types.
    static KURect FromOrigin(KUPoint<T> origin, KUSize<T> size) noexcept;

    /// right - left and bottom - top; negative while the edges are crossed.
    KUDistance<T> GetWidth() const noexcept { return KUDistance<T>(right) - KUDistance<T>(left); }
    KUDistance<T> GetHeight() const noexcept { return KUDistance<T>(bottom) - KUDistance<T>(top); }
    KUPoint<T> GetOrigin() const noexcept { return {left, top}; }
    /// Rounded towards the left and the top in integer types.
    KUPoint<T> GetCentre() const noexcept { return {Middle(left, right), Middle(top, bottom)}; }

    /// It holds no point: an edge pair is equal or crossed, or an edge is not-a-number.
    bool IsEmpty() const noexcept { return !(left < right && top < bottom); }
    bool Contains(KUPoint<T> point) const noexcept;
    /// Every point of the other lies in this one. Nothing contains an empty rectangle, and it contains nothing.
    bool Contains(const KURect& other) const noexcept;
    /// They share a point; touching edges do not.
    bool Intersects(const KURect& other) const noexcept { return !Intersection(other).IsEmpty(); }

    /// What both cover; KURect{} when that is nothing.
    KURect Intersection(const KURect& other) const noexcept;
    /// The smallest rectangle around both. An empty one adds nothing; of two empty ones KURect{}.
    KURect Union(const KURect& other) const noexcept;
    /// Moved. At the ends of an integer type edges saturate, so a rectangle pushed against them gets smaller.
    KURect Offset(T dx, T dy) const noexcept;
    /// Every edge moved inwards (outwards when negative). Edges that would cross meet in the middle instead.
    KURect Inset(T dx, T dy) const noexcept;
    /// With crossed edges exchanged, so that width and height are not negative. Not-a-number stays.
    KURect Normalised() const noexcept;

    template <KUCoordinate U>
    KURect<U> ConvertTo() const noexcept;

    /// Edge by edge: not-a-number equals nothing, and two empty rectangles may differ.
    friend bool operator==(const KURect&, const KURect&) noexcept = default;

  private:
    static T Middle(T low, T high) noexcept;
    static void InsetPair(T& low, T& high, T delta) noexcept;
};

// ---------------------------------------------------------------------------------------------------------------------

template <KUCoordinate T, class From>
T KUConvertCoordinate(From value) noexcept {
    if constexpr (std::is_same_v<T, float> && std::is_same_v<From, double>) {
        // The language leaves the conversion of a double that no float is near to undefined.
        constexpr double kLimit = std::numeric_limits<float>::max();
        constexpr float kInfinity = std::numeric_limits<float>::infinity();
        if (value > kLimit)
            return kInfinity;
        return value < -kLimit ? -kInfinity : static_cast<float>(value);
    } else if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(value);
    } else if constexpr (std::is_floating_point_v<From>) {
        if (std::isnan(value))
            return 0;
        // A double holds both ends of each integer type exactly, a float does not.
        const double rounded = std::round(static_cast<double>(value));
        if (rounded <= std::numeric_limits<T>::min())
            return std::numeric_limits<T>::min();
        return rounded >= std::numeric_limits<T>::max() ? std::numeric_limits<T>::max() : static_cast<T>(rounded);
    } else {
        if (value < std::numeric_limits<T>::min())
            return std::numeric_limits<T>::min();
        return value > std::numeric_limits<T>::max() ? std::numeric_limits<T>::max() : static_cast<T>(value);
    }
}

template <KUCoordinate T>
KURect<T> KURect<T>::FromEdges(T left, T top, T right, T bottom) noexcept {
    KURect rect;
    rect.left = left;
    rect.top = top;
    rect.right = right;
    rect.bottom = bottom;
    return rect;
}

template <KUCoordinate T>
KURect<T> KURect<T>::FromOrigin(KUPoint<T> origin, KUSize<T> size) noexcept {
    using Wide = KUDistance<T>;
    return FromEdges(origin.x, origin.y, KUConvertCoordinate<T>(Wide(origin.x) + Wide(size.width)),
                     KUConvertCoordinate<T>(Wide(origin.y) + Wide(size.height)));
}

template <KUCoordinate T>
bool KURect<T>::Contains(KUPoint<T> point) const noexcept {
    return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
}

template <KUCoordinate T>
bool KURect<T>::Contains(const KURect& other) const noexcept {
    return !other.IsEmpty() && other.left >= left && other.right <= right && other.top >= top &&
           other.bottom <= bottom;
}

template <KUCoordinate T>
KURect<T> KURect<T>::Intersection(const KURect& other) const noexcept {
    if (IsEmpty() || other.IsEmpty())
        return {};
    const KURect shared =
        FromEdges(left > other.left ? left : other.left, top > other.top ? top : other.top,
                  right < other.right ? right : other.right, bottom < other.bottom ? bottom : other.bottom);
    return shared.IsEmpty() ? KURect{} : shared;
}

template <KUCoordinate T>
KURect<T> KURect<T>::Union(const KURect& other) const noexcept {
    if (other.IsEmpty())
        return IsEmpty() ? KURect{} : *this;
    if (IsEmpty())
        return other;
    return FromEdges(left < other.left ? left : other.left, top < other.top ? top : other.top,
                     right > other.right ? right : other.right, bottom > other.bottom ? bottom : other.bottom);
}

template <KUCoordinate T>
KURect<T> KURect<T>::Offset(T dx, T dy) const noexcept {
    using Wide = KUDistance<T>;
    return FromEdges(KUConvertCoordinate<T>(Wide(left) + Wide(dx)), KUConvertCoordinate<T>(Wide(top) + Wide(dy)),
                     KUConvertCoordinate<T>(Wide(right) + Wide(dx)),
                     KUConvertCoordinate<T>(Wide(bottom) + Wide(dy)));
}

template <KUCoordinate T>
KURect<T> KURect<T>::Inset(T dx, T dy) const noexcept {
    KURect inner = *this;
    InsetPair(inner.left, inner.right, dx);
    InsetPair(inner.top, inner.bottom, dy);
    return inner;
}

template <KUCoordinate T>
KURect<T> KURect<T>::Normalised() const noexcept {
    return FromEdges(right < left ? right : left, bottom < top ? bottom : top, right < left ? left : right,
                     bottom < top ? top : bottom);
}

template <KUCoordinate T>
template <KUCoordinate U>
KURect<U> KURect<T>::ConvertTo() const noexcept {
    return KURect<U>::FromEdges(KUConvertCoordinate<U>(left), KUConvertCoordinate<U>(top),
                                KUConvertCoordinate<U>(right), KUConvertCoordinate<U>(bottom));
}

template <KUCoordinate T>
T KURect<T>::Middle(T low, T high) noexcept {
    // Halved before they are added: the sum of two large edges would overflow a floating-point type too.
    if constexpr (std::is_floating_point_v<T>)
        return low / 2 + high / 2;
    else
        return static_cast<T>((KUDistance<T>(low) + KUDistance<T>(high)) >> 1);
}

template <KUCoordinate T>
void KURect<T>::InsetPair(T& low, T& high, T delta) noexcept {
    using Wide = KUDistance<T>;
    const T movedLow = KUConvertCoordinate<T>(Wide(low) + Wide(delta));
    const T movedHigh = KUConvertCoordinate<T>(Wide(high) - Wide(delta));
    const bool wouldCross = delta > 0 && movedLow > movedHigh;
    const T middle = Middle(low, high);
    low = wouldCross ? middle : movedLow;
    high = wouldCross ? middle : movedHigh;
}

} // namespace kvKorvoV12_9_0_320
