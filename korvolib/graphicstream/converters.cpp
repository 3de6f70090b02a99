#include <korvolib/graphicstream/converters.h>

#include <cstring>
#include <type_traits>

#include <korvolib/graphicstream/float_text_internal.h>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

template <class Number>
Number Load(const uint8_t* bytes, size_t index) noexcept {
    Number number;
    std::memcpy(&number, bytes + index * sizeof(Number), sizeof number);
    return number;
}

template <class Number>
KCFixedString<127> NumbersToText(const uint8_t* bytes, size_t count) noexcept {
    KCFixedString<127> text;
    for (size_t i = 0; i < count; ++i) {
        text << (i == 0 ? "" : " ");
        if constexpr (std::is_same_v<Number, float>) {
            char number[kFloatTextSize];
            FormatFloat(Load<float>(bytes, i), number);
            text << static_cast<const char*>(number);
        } else {
            text << static_cast<int>(Load<Number>(bytes, i));
        }
    }
    return text;
}

} // namespace

KUPoint<short> SGSLocationToKTPoint2s(const SGSLocation& location) noexcept {
    return KUPoint<float>{location.x, location.y}.ConvertTo<short>();
}

KURect<short> SGSRectToKTRects(const SGSRect& rect) noexcept {
    // Added as doubles, where no edge rounds: the same rectangle comes back from KTRectsToSGSRect.
    return KURect<double>::FromEdges(rect.x, rect.y, static_cast<double>(rect.x) + static_cast<double>(rect.width),
                                     static_cast<double>(rect.y) + static_cast<double>(rect.height))
        .ConvertTo<short>();
}

SGSRect KTRectsToSGSRect(const KURect<short>& rect) noexcept { return ToSGSRect(rect); }

KUSize<short> SGSSizeToKCSize2Ds(const SGSSize& size) noexcept {
    return KUSize<float>{size.width, size.height}.ConvertTo<short>();
}

SGSSize KCSize2DsToSGSSize(const KUSize<short>& size) noexcept {
    return {static_cast<float>(size.width), static_cast<float>(size.height)};
}

KUColor SGSRGBAColorToKCRGBAColor(const SGSRGBAColor& color) noexcept {
    return {color.red, color.green, color.blue, color.alpha};
}
KUColor SGSRGBAColorToKCRGBColor(const SGSRGBAColor& color) noexcept {
    return {color.red, color.green, color.blue, 255};
}
SGSRGBAColor KCRGBAColorToSGSRGBAColor(const KUColor& color) noexcept {
    return {color.red, color.green, color.blue, color.alpha};
}
SGSRGBAColor KCRGBColorToSGSRGBAColor(const KUColor& color) noexcept {
    return {color.red, color.green, color.blue, 255};
}

KCFixedString<15> SGSRGBAColorToHTMLColor(const SGSRGBAColor& color) noexcept {
    return KCFixedString<15>(SGSRGBAColorToKCRGBAColor(color).Format().c_str());
}

KCFixedString<127> SGSDataToText(int dataType, const void* element) noexcept {
    const auto* bytes = static_cast<const uint8_t*>(element);
    if (bytes == nullptr)
        return {};
    const size_t count = GetDataTypeComponents(dataType);
    switch (static_cast<uint32_t>(dataType)) {
    case kChar:
    case kText:
        return KCFixedString<127>(static_cast<const char*>(element), size_t{1});
    case kFloat:
    case kRect:
    case kPoint2D:
    case kPoint3D:
        return NumbersToText<float>(bytes, count);
    case kInt8:
        return NumbersToText<int8_t>(bytes, count);
    case kUint8:
    case kRGBColor:
    case kRGBAColor:
        return NumbersToText<uint8_t>(bytes, count);
    case kInt16:
        return NumbersToText<int16_t>(bytes, count);
    case kInt32:
    case kResID:
        return NumbersToText<int32_t>(bytes, count);
    default:
        return KCFixedString<127>("unknown data type");
    }
}

} // namespace kvKorvoV12_9_0_320::kvGS
