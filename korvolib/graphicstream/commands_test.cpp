#include <korvolib/graphicstream/commands.h>

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace {

using namespace kvKorvo::kvGS;

struct Expected {
    const char* name;
    const char* shortName;
    uint32_t code;
};

// Written out once more: what streams on disk and their dumps rely on must not change with the list.
constexpr Expected kExpected[] = {
    {"IllegalGraphicStreamCommand", "", 0xBAADF00D},
    {"kIgnoreStreamCommand", "", 0x69676E6F},
    {"None", "", 0x656E6F6E},
    {"Any", "", 0x5F796E61},
    {"StreamSignature", "", 0x47495353},
    {"BeginStream", "stream", 0x4D545342},
    {"StreamFormat", "format", 0xA0A0A0A0},
    {"EndStream", "", 0x4D545345},
    {"ResourcesBaseURL", "resources_base_url", 0x4C525552},
    {"BeginFrame", "frame", 0x4D524642},
    {"EndFrame", "", 0x4D524645},
    {"RotateFrame", "", 0x524F5446},
    {"DrawImage", "", 0x474E5065},
    {"DrawImageMultipleClips", "", 0x474E506D},
    {"DrawText", "", 0x54585464},
    {"DrawOval", "", 0x4F76616C},
    {"DrawVertices", "", 0x4E495664},
    {"ClipVertices", "", 0x4E495663},
    {"ClipRect", "", 0x4E495263},
    {"ClipMultipleRects", "", 0x4D495263},
    {"DataHere", "", 0x3E3E3E0D},
    {"DataPtr", "", 0x2A2A2A2A},
    {"font", "", 0x666F6E74},
    {"Remark", "", 0x4D455223},
    {"MetaData", "", 0x4154454D},
    {"char", "", 0x72616863},
    {"float", "", 0x746F6C66},
    {"int8", "", 0x746E6938},
    {"uint8", "", 0x6E697538},
    {"int16", "", 0x6E693631},
    {"int32", "", 0x6E693233},
    {"Rect", "", 0x72656374},
    {"ResID", "", 0x64697372},
    {"Text", "", 0x74786574},
    {"Point2D", "", 0x32746E70},
    {"Point3D", "", 0x33746E70},
    {"RGBColor", "", 0x7267625F},
    {"RGBAColor", "", 0x72676261},
    {"Polygon", "", 0x706F6C79},
    {"LineStrip", "", 0x73747270},
    {"TriangleFan", "", 0x74726C66},
    {"TriangleStrip", "", 0x74726C6E},
    {"StraightLines", "", 0x73746C6E},
    {"Left", "", 0x686C6674},
    {"HCenter", "", 0x68637472},
    {"Right", "", 0x68726974},
    {"Top", "", 0x76746F70},
    {"VCenter", "", 0x76637472},
    {"Bottom", "", 0x7662746D},
    {"Clip Rectangles", "", 0x636C7072},
    {"frame children", "", 0x4D524643},
};

TEST(StreamCommands, TheTableHoldsEveryNameAndEndsWithAZeroCode) {
    const SGSName* entry = GetGraphicStreamNames();
    for (const Expected& expected : kExpected) {
        EXPECT_EQ(entry->code, expected.code) << expected.name;
        EXPECT_EQ(entry->displayName, expected.name);
        EXPECT_EQ(entry->shortName, expected.shortName);
        ++entry;
    }
    EXPECT_EQ(entry->code, 0u);
}

TEST(StreamCommands, NoCodeStandsTwice) {
    std::set<uint32_t> codes;
    for (const Expected& expected : kExpected)
        EXPECT_TRUE(codes.insert(expected.code).second) << expected.name;
}

TEST(StreamCommands, TheShortFormFallsBackToTheDisplayName) {
    EXPECT_EQ(GraphicStreamCommandToText(kBeginFrame, 1), "frame");
    EXPECT_EQ(GraphicStreamCommandToText(kEndFrame, 1), "EndFrame");
    EXPECT_EQ(GraphicStreamCommandToText(kBeginFrame, 0), "BeginFrame");
    EXPECT_EQ(GraphicStreamCommandToText(kBeginFrame), "BeginFrame");
}

TEST(StreamCommands, AnUnknownCodeIsShownByItsNumberInDecimal) {
    EXPECT_EQ(GraphicStreamCommandToText(4711, 0), "Unknown GraphicStreamCommand 4711");
    EXPECT_EQ(GraphicStreamCommandToText(0xFFFFFFFF, 1), "Unknown GraphicStreamCommand 4294967295");
    EXPECT_EQ(GraphicStreamCommandToText(0, 0), "Unknown GraphicStreamCommand 0");
}

TEST(StreamCommands, TextsOfBothFormsAreFoundLetterForLetter) {
    for (const Expected& expected : kExpected)
        EXPECT_EQ(GraphicStreamTextToCommand(expected.name), expected.code) << expected.name;
    EXPECT_EQ(GraphicStreamTextToCommand("frame"), kBeginFrame);
    EXPECT_EQ(GraphicStreamTextToCommand(kvKorvo::KCFixedString<15>("stream")), kBeginStream);
}

TEST(StreamCommands, OtherTextIsAnIllegalCommand) {
    for (const char* text : {"Frame", "frame ", "beginframe", "nonsense", "", static_cast<const char*>(nullptr)})
        EXPECT_EQ(GraphicStreamTextToCommand(text), kIllegalGraphicStreamCommand);
}

TEST(StreamCommands, EveryOpeningHasItsClosing) {
    EXPECT_EQ(CloseCommandFromOpenCommand(kBeginStream), kEndStream);
    EXPECT_EQ(CloseCommandFromOpenCommand(kBeginFrame), kEndFrame);
    for (const Expected& expected : kExpected) {
        if (expected.code != kBeginStream && expected.code != kBeginFrame) {
            EXPECT_EQ(CloseCommandFromOpenCommand(expected.code), kNone) << expected.name;
        }
    }
    EXPECT_EQ(CloseCommandFromOpenCommand(12345), kNone);
}

TEST(StreamCommands, DrawLineFlagsReadAsTheirNames) {
    EXPECT_EQ(GraphicStreamDrawLineFlagsToText(0), "NoAntialias");
    EXPECT_EQ(GraphicStreamDrawLineFlagsToText(1), "ColorsInData");
    EXPECT_EQ(GraphicStreamDrawLineFlagsToText(2), "eDrawInXORMode");
    EXPECT_EQ(GraphicStreamDrawLineFlagsToText(3), "ColorsInData | eDrawInXORMode");
    EXPECT_EQ(GraphicStreamDrawLineFlagsToText(4 + 1), "ColorsInData | Antialias");
    EXPECT_EQ(GraphicStreamDrawLineFlagsToText(8), "8");
    EXPECT_EQ(GraphicStreamDrawLineFlagsToText(0xFFFFFFFF),
              "ColorsInData | eDrawInXORMode | Antialias | 4294967288");
}

TEST(StreamCommands, EverySetOfDrawLineFlagsIsReadBack) {
    for (uint32_t flags = 0; flags < 64; ++flags)
        EXPECT_EQ(GraphicStreamTextToDrawLineFlags(GraphicStreamDrawLineFlagsToText(flags)), flags);
    EXPECT_EQ(GraphicStreamTextToDrawLineFlags(GraphicStreamDrawLineFlagsToText(0xFFFFFFFF)), 0xFFFFFFFF);
}

TEST(StreamCommands, TextThatIsNoFlagCountsAsNothing) {
    for (const char* text : {"", "colorsindata", "4294967296", "-1", "ColorsInData|eDrawInXORMode"})
        EXPECT_EQ(GraphicStreamTextToDrawLineFlags(text), 0u) << text;
    EXPECT_EQ(GraphicStreamTextToDrawLineFlags(static_cast<const char*>(nullptr)), 0u);
    EXPECT_EQ(GraphicStreamTextToDrawLineFlags("nonsense | ColorsInData"), kColorsInData);
}

TEST(StreamCommands, DataTypesServeThePurposesTheyCanMakeUp) {
    EXPECT_TRUE(DataTypeToPurposeMatch(kInt16, kPoint2D));
    EXPECT_TRUE(DataTypeToPurposeMatch(kFloat, kPoint3D));
    EXPECT_TRUE(DataTypeToPurposeMatch(kUint8, kRGBAColor));
    EXPECT_TRUE(DataTypeToPurposeMatch(kChar, kText));
    EXPECT_TRUE(DataTypeToPurposeMatch(kRect, kClipRectangles));
    EXPECT_TRUE(DataTypeToPurposeMatch(kPoint2D, kPoint2D));
    EXPECT_TRUE(DataTypeToPurposeMatch(kInt8, kAny));
}

TEST(StreamCommands, DataTypesThatCannotMakeUpAPurposeDoNotMatch) {
    EXPECT_FALSE(DataTypeToPurposeMatch(kUint8, kPoint2D));
    EXPECT_FALSE(DataTypeToPurposeMatch(kFloat, kRGBColor));
    EXPECT_FALSE(DataTypeToPurposeMatch(kInt16, kText));
    EXPECT_FALSE(DataTypeToPurposeMatch(kPoint2D, kPoint3D));
    EXPECT_FALSE(DataTypeToPurposeMatch(0, kText));
    EXPECT_FALSE(DataTypeToPurposeMatch(kChar, 0));
}

TEST(StreamCommands, ElementSizesAreThoseOfTheirNumbers) {
    EXPECT_EQ(GetDataTypeSize(kChar), 1u);
    EXPECT_EQ(GetDataTypeSize(kInt16), 2u);
    EXPECT_EQ(GetDataTypeSize(kFloat), 4u);
    EXPECT_EQ(GetDataTypeSize(kRGBColor), 3u);
    EXPECT_EQ(GetDataTypeSize(kPoint3D), 12u);
    EXPECT_EQ(GetDataTypeSize(kRect), 16u);
    EXPECT_EQ(GetDataTypeSize(4711), 1u);
}

} // namespace
