#include <korvolib/graphicstream/converters.h>

#include <limits>

#include <gtest/gtest.h>

#include <korvolib/graphicstream/text.h>

namespace {

using namespace kvKorvo::kvGS;
using kvKorvo::KUColor;
using kvKorvo::KUPoint;
using kvKorvo::KURect;
using kvKorvo::KUSize;

TEST(StreamConverters, LocationsRoundAndSaturate) {
    EXPECT_EQ(SGSLocationToKTPoint2s({1.5F, -1.5F}), (KUPoint<short>{2, -2}));
    EXPECT_EQ(SGSLocationToKTPoint2s({1.0e9F, std::numeric_limits<float>::quiet_NaN()}),
              (KUPoint<short>{32767, 0}));
}

TEST(StreamConverters, EveryRectangleOfShortsComesBack) {
    const short coordinates[] = {-32768, -32767, -1, 0, 1, 100, 32766, 32767};
    for (const short left : coordinates) {
        for (const short right : coordinates) {
            const KURect<short> rect = KURect<short>::FromEdges(left, right, right, left);
            EXPECT_EQ(SGSRectToKTRects(KTRectsToSGSRect(rect)), rect);
        }
    }
}

TEST(StreamConverters, SizesComeBackAndSaturate) {
    EXPECT_EQ(SGSSizeToKCSize2Ds(KCSize2DsToSGSSize({-3, 32767})), (KUSize<short>{-3, 32767}));
    EXPECT_EQ(SGSSizeToKCSize2Ds({-1.0e9F, 0.4F}), (KUSize<short>{-32768, 0}));
}

TEST(StreamConverters, ColoursKeepOrLeaveOutTheirAlpha) {
    const SGSRGBAColor color{1, 2, 3, 4};
    EXPECT_EQ(SGSRGBAColorToKCRGBAColor(color), (KUColor{1, 2, 3, 4}));
    EXPECT_EQ(SGSRGBAColorToKCRGBColor(color), (KUColor{1, 2, 3, 255}));
    EXPECT_EQ(KCRGBAColorToSGSRGBAColor({1, 2, 3, 4}), color);
    EXPECT_EQ(KCRGBColorToSGSRGBAColor({1, 2, 3, 4}), (SGSRGBAColor{1, 2, 3, 255}));
}

TEST(StreamConverters, HTMLColoursHaveAnAlphaUnlessOpaque) {
    EXPECT_EQ(SGSRGBAColorToHTMLColor({255, 0, 16, 255}), "#FF0010");
    EXPECT_EQ(SGSRGBAColorToHTMLColor({255, 0, 16, 128}), "#FF001080");
}

TEST(StreamConverters, ElementsReadAsTheirNumbers) {
    const float rect[] = {1, -2.5F, 0.1F, 1.0e30F};
    EXPECT_EQ(SGSDataToText(kRect, rect), "1 -2.5 0.1 1e+30");
    const int16_t number = -300;
    EXPECT_EQ(SGSDataToText(kInt16, &number), "-300");
    EXPECT_EQ(SGSDataToText(kInt8, "\xFF"), "-1");
    EXPECT_EQ(SGSDataToText(kRGBAColor, "\x01\x02\x03\xFF"), "1 2 3 255");
    EXPECT_EQ(SGSDataToText(kChar, "xyz"), "x");
}

TEST(StreamConverters, ATypeOutsideTheTableIsUnknown) {
    EXPECT_EQ(SGSDataToText(0, "x"), "unknown data type");
    EXPECT_EQ(SGSDataToText(kPolygon, "x"), "unknown data type");
    EXPECT_EQ(SGSDataToText(kInt16, nullptr), "");
}

TEST(StreamConverters, AControlsRectangleBecomesOneOfTheStream) {
    EXPECT_EQ(ToSGSRect(KURect<double>::FromEdges(1, 2, 4, 8)), (SGSRect{1, 2, 3, 6}));
}

// Valid text.

std::string Valid(std::string_view text) {
    kvKorvo::KCStMemObj out;
    EXPECT_EQ(GSAppendValidText(text, out), 0);
    return std::string(out.GetText());
}

TEST(StreamText, WellFormedTextStaysAsItIs) {
    for (const char* text : {"", "plain\t\n\r", "\xC2\xA0\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x8E\xB5",
                             "\xED\x9F\xBF", "\xEF\xBF\xBD", "\xF4\x8F\xBF\xBF"})
        EXPECT_EQ(Valid(text), text);
}

TEST(StreamText, EveryByteThatIsPartOfNoCharacterIsReplaced) {
    const std::string sign = "\xEF\xBF\xBD";
    EXPECT_EQ(Valid("a\x80z"), "a" + sign + "z");
    EXPECT_EQ(Valid("\xC0\x80"), sign + sign);            // a longer form than needed
    EXPECT_EQ(Valid("\xED\xA0\x80"), sign + sign + sign); // half of a surrogate pair
    EXPECT_EQ(Valid("\xF4\x90\x80\x80"), sign + sign + sign + sign);
    EXPECT_EQ(Valid("\xE2\x82"), sign + sign); // cut
    EXPECT_EQ(Valid("\xE2\x82z"), sign + sign + "z");
    EXPECT_EQ(Valid(std::string_view("\0\x1F\x7F", 3)), sign + sign + sign);
    EXPECT_EQ(Valid("\xC2\x85"), sign + sign);            // a control
    EXPECT_EQ(Valid("\xEF\xBF\xBF"), sign + sign + sign); // no character
}

} // namespace
