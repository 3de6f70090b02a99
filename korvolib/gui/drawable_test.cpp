#include <string>

#include <gtest/gtest.h>

#include <korvolib/gui/drawable.h>
#include <korvolib/gui/gui_control_test_internal.h>

namespace kvTest {
namespace {

using namespace kvKorvo;
using namespace kvGS;

class Drawable : public ::testing::Test {
  protected:
    int32_t Read(const std::string& attributes) {
        return drawable.ReadFromXML(ElementFrom("<Drawable " + attributes + "/>"));
    }
    std::string Picture() {
        writer.ClearStream();
        drawable.GetDrawInstructions(writer, KCTheme::Default());
        return PictureText(writer);
    }
    CDrawable drawable;
    KCGraphicStreamBinaryWriter writer;
};

TEST_F(Drawable, DrawsPanelFrameAndText) {
    ASSERT_EQ(Read("Rect='10 20 100 50' Color='#010203' FrameColor='#040506' Text='EQ' TextAlign='Left'"), 0);
    const std::string text = Picture();
    for (const char* part : {"[[10, 20], [110, 20], [110, 70], [10, 70]]", "{red: 1, green: 2, blue: 3",
                             "{red: 4, green: 5, blue: 6", "method: wire", "the_data: \"EQ\"", "horizontal: Left"})
        EXPECT_TRUE(Contains(text, part)) << part;
}

TEST_F(Drawable, RoundCornersLieWithinTheRectangle) {
    ASSERT_EQ(Read("Rect='10 20 100 50' Color='#010203' Radius='8'"), 0);
    const std::string text = Picture();
    EXPECT_TRUE(Contains(text, "num_elements: 36"));
    EXPECT_TRUE(Contains(text, "[102, 20]"));  // the end of the top edge
    EXPECT_FALSE(Contains(text, "[110, 20]")); // the corner is gone
    ASSERT_EQ(Read("Rect='0 0 10 4' Color='#010203' Radius='800'"), 0);
    EXPECT_TRUE(Contains(Picture(), "[8, 0]")); // the radius is half of the shorter side
}

TEST_F(Drawable, WithoutARectangleNothingChanges) {
    ASSERT_EQ(Read("Rect='10 20 100 50' Color='#010203'"), 0);
    for (const char* bad : {"Color='#FFFFFF'", "Rect='1 2 3'", "Rect='1 2 -3 4'", "Rect='1 2 1e9 4'",
                            "Rect='nan 2 3 4'", "Rect='1 2 3 4 5'"})
        EXPECT_EQ(Read(bad), kErr_BadDescription) << bad;
    EXPECT_EQ(drawable.GetRect(), KURect<double>::FromOrigin({10, 20}, {100, 50}));
    EXPECT_TRUE(Contains(Picture(), "red: 1, green: 2, blue: 3"));
}

TEST_F(Drawable, WhatDoesNotReadIsLeftOutAndTheRestStands) {
    EXPECT_EQ(Read("Rect='10 20 100 50' Color='red' Radius='-1' Text='EQ' TextAlign='Up'"), kErr_BadDescription);
    const std::string text = Picture();
    EXPECT_FALSE(Contains(text, "Polygon"));
    EXPECT_TRUE(Contains(text, "horizontal: HCenter"));
}

TEST_F(Drawable, WritesWhatItReads) {
    const std::string all =
        "<Drawable Rect='1.5 2 3 4' Color='#01020304' FrameColor='#050607' Radius='2.25' ResID='9' "
        "Text='a &lt; b' TextHeight='11' Bold='true' TextColor='#0A0B0C' TextAlign='Right'/>";
    const KCXMLElement read = ElementFrom(all);
    ASSERT_EQ(drawable.ReadFromXML(read), 0);
    KCXMLElement written;
    ASSERT_EQ(written.SetName("Drawable"), 0);
    ASSERT_EQ(drawable.WriteToXML(written), 0);
    EXPECT_TRUE(written == read);
}

TEST_F(Drawable, AFreshOneDrawsNothing) {
    drawable.GetDrawInstructions(writer, KCTheme::Default());
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
}

} // namespace
} // namespace kvTest
