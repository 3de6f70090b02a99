// Between the values in stream records and the library's geometry and colour types, and data elements as text.
//
// Free functions for any thread; nothing allocates. What does not fit the narrower type becomes its nearest value.
#pragma once

#include <korvolib/export.h>
#include <korvolib/graphicstream/records.h>
#include <korvolib/utilities/color.h>
#include <korvolib/utilities/geometry.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvGS {

KORVO_API KUPoint<short> SGSLocationToKTPoint2s(const SGSLocation& location) noexcept;
KORVO_API KURect<short> SGSRectToKTRects(const SGSRect& rect) noexcept;
KORVO_API SGSRect KTRectsToSGSRect(const KURect<short>& rect) noexcept;
KORVO_API KUSize<short> SGSSizeToKCSize2Ds(const SGSSize& size) noexcept;
KORVO_API SGSSize KCSize2DsToSGSSize(const KUSize<short>& size) noexcept;

KORVO_API KUColor SGSRGBAColorToKCRGBAColor(const SGSRGBAColor& color) noexcept;
/// Opaque: the alpha is left out.
KORVO_API KUColor SGSRGBAColorToKCRGBColor(const SGSRGBAColor& color) noexcept;
KORVO_API SGSRGBAColor KCRGBAColorToSGSRGBAColor(const KUColor& color) noexcept;
/// Opaque: the alpha is left out.
KORVO_API SGSRGBAColor KCRGBColorToSGSRGBAColor(const KUColor& color) noexcept;
/// "#RRGGBB", with "AA" behind when it is not opaque.
KORVO_API KCFixedString<15> SGSRGBAColorToHTMLColor(const SGSRGBAColor& color) noexcept;

/// The rectangle of a control for the stream.
template <KUCoordinate T>
SGSRect ToSGSRect(const KURect<T>& rect) noexcept {
    return {KUConvertCoordinate<float>(rect.left), KUConvertCoordinate<float>(rect.top),
            KUConvertCoordinate<float>(rect.GetWidth()), KUConvertCoordinate<float>(rect.GetHeight())};
}

/// One element of a data type as text: a number, numbers separated by spaces ("1 2.5"), or a character; "unknown
/// data type" for a type outside the table. `element` has GetDataTypeSize bytes at any address.
KORVO_API KCFixedString<127> SGSDataToText(int dataType, const void* element) noexcept;

} // namespace kvKorvoV12_9_0_320::kvGS
