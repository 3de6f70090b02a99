#include <korvolib/gui/theme.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>
#include <tests/support/german_locale.h>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace kvKorvoV12_9_0_320 {
namespace {

using Problems = std::vector<sDESCRIPTION_PROBLEM>;

KCXMLElement Parsed(const char* xml) {
    KCXMLElement element;
    EXPECT_EQ(element.Parse(xml, std::strlen(xml)), kErr_NoErr);
    return element;
}

TEST(Theme, AnEmptyElementLeavesTheLibrarysOwnTheme) {
    KCTheme theme;
    Problems problems;
    EXPECT_EQ(theme.ReadFromXML(Parsed("<Theme/>"), problems), kErr_NoErr);
    EXPECT_EQ(theme.accent, KCTheme::Default().accent);
    EXPECT_EQ(theme.labelHeight, KCTheme::Default().labelHeight);
    EXPECT_TRUE(problems.empty());
}

TEST(Theme, TakesColoursSizesAndTheFontAndLeavesTheRest) {
    KCTheme theme;
    Problems problems;
    const KCXMLElement element =
        Parsed(R"(<Theme accent="#102030" track="#01020304" valueHeight="8.5" fontFamily="Noto Sans"/>)");
    EXPECT_EQ(theme.ReadFromXML(element, problems), kErr_NoErr);
    EXPECT_EQ(theme.accent, (KUColor{0x10, 0x20, 0x30, 255}));
    EXPECT_EQ(theme.track, (KUColor{1, 2, 3, 4}));
    EXPECT_EQ(theme.valueHeight, 8.5);
    EXPECT_EQ(theme.fontFamily, "Noto Sans");
    EXPECT_EQ(theme.text, KCTheme::Default().text);
    EXPECT_EQ(theme.labelHeight, KCTheme::Default().labelHeight);
}

TEST(Theme, WhatDoesNotReadIsReportedWithItsLineAndLeftAsItWas) {
    KCTheme theme;
    Problems problems;
    const KCXMLElement element = Parsed("<Theme accent=\"orange\"\n titleHeight=\"big\" text=\"#111111\"/>");
    EXPECT_EQ(theme.ReadFromXML(element, problems), kErr_BadDescription);
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_EQ(problems[0].Line, 1);
    EXPECT_EQ(problems[0].Text, "no colour for \"accent\" of the theme: \"orange\"");
    EXPECT_EQ(problems[1].Text, "no size for \"titleHeight\" of the theme: \"big\"");
    EXPECT_EQ(theme.accent, KCTheme::Default().accent);
    EXPECT_EQ(theme.titleHeight, KCTheme::Default().titleHeight);
    EXPECT_EQ(theme.text, (KUColor{0x11, 0x11, 0x11, 255}));
}

TEST(Theme, SizesStopAtTheirLimits) {
    const auto isTaken = [](const char* xml) {
        KCTheme theme;
        Problems problems;
        return theme.ReadFromXML(Parsed(xml), problems) == kErr_NoErr;
    };
    EXPECT_TRUE(isTaken(R"(<Theme strokeWidth="0"/>)"));
    EXPECT_FALSE(isTaken(R"(<Theme strokeWidth="-0.001"/>)"));
    EXPECT_TRUE(isTaken(R"(<Theme strokeWidth="1000000"/>)"));
    EXPECT_FALSE(isTaken(R"(<Theme strokeWidth="1000001"/>)"));
    EXPECT_FALSE(isTaken(R"(<Theme strokeWidth="nan"/>)"));
    EXPECT_TRUE(isTaken(R"(<Theme disabledOpacity="1"/>)"));
    EXPECT_FALSE(isTaken(R"(<Theme disabledOpacity="1.001"/>)"));
}

TEST(Theme, WritesOnlyWhatDiffersAndReadsItBack) {
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    KCTheme theme;
    theme.warning = {1, 2, 3, 4};
    theme.strokeWidth = 2.25;
    theme.fontFamily = "Noto Sans";
    KCXMLElement element;
    ASSERT_EQ(theme.WriteToXML(element), kErr_NoErr);
    EXPECT_EQ(element.GetAttributeCount(), 3u);
    KCTheme read;
    Problems problems;
    EXPECT_EQ(read.ReadFromXML(element, problems), kErr_NoErr);
    EXPECT_EQ(read.warning, theme.warning);
    EXPECT_EQ(read.strokeWidth, theme.strokeWidth);
    EXPECT_EQ(read.fontFamily, theme.fontFamily);
}

TEST(Theme, ASizeThatIsNoNumberIsNotWritten) {
    KCTheme theme;
    theme.labelHeight = std::numeric_limits<double>::infinity();
    KCXMLElement element;
    EXPECT_EQ(theme.WriteToXML(element), kErr_BadDescription);
    EXPECT_EQ(element.GetAttributeCount(), 0u);
}

TEST(Theme, DebugBuildsReportAttributesThatNobodyReads) {
    KCTheme theme;
    Problems problems;
    EXPECT_EQ(theme.ReadFromXML(Parsed(R"(<Theme acent="#102030"/>)"), problems), kErr_NoErr);
#ifdef NDEBUG
    EXPECT_TRUE(problems.empty());
#else
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].Text, "nothing is called \"acent\" of the theme: \"#102030\"");
#endif
}

} // namespace
} // namespace kvKorvoV12_9_0_320
