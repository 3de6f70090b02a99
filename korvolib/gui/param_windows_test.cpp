#include <gtest/gtest.h>

#include <functional>
#include <string>

#include <korvolib/gui/gui_test_internal.h>
#include <korvolib/gui/param_windows.h>
#include <tests/support/german_locale.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

using Problems = std::vector<sDESCRIPTION_PROBLEM>;

template <class Window>
Window Written(const Window& win) {
    KCXMLElement element;
    EXPECT_EQ(element.SetName("Win"), kErr_NoErr);
    EXPECT_EQ(WriteWindowToXML(element, win), kErr_NoErr);
    Window read;
    Problems problems;
    EXPECT_EQ(ReadWindowFromXML(element, read, problems), kErr_NoErr);
    EXPECT_TRUE(problems.empty());
    return read;
}

sTEXT_WIN SomeText() {
    sTEXT_WIN win;
    win.rect = KURect<double>::FromOrigin({1.5, -2.0}, {30.25, 4.0});
    win.height = 9.5;
    win.align = KETextAlign::Right;
    win.hasColor = true;
    win.color = {1, 2, 3, 128};
    win.isBold = true;
    return win;
}

TEST(ParamWindows, ReadsAText) {
    const KCXMLElement element =
        ElementFrom("<LabelWin Rect=\" 1 2\t30  4.5 \" Height='10' Align='Left' Color='#ff8000' Bold='true'/>");
    sTEXT_WIN win;
    Problems problems;
    EXPECT_EQ(ReadWindowFromXML(element, win, problems), kErr_NoErr);
    EXPECT_EQ(win.rect, KURect<double>::FromEdges(1.0, 2.0, 31.0, 6.5));
    EXPECT_EQ(win.height, 10.0);
    EXPECT_EQ(win.align, KETextAlign::Left);
    EXPECT_TRUE(win.hasColor);
    EXPECT_EQ(win.color, (KUColor{255, 128, 0, 255}));
    EXPECT_TRUE(win.isBold);
}

TEST(ParamWindows, ReadBackAsTheyWereWritten) {
    EXPECT_EQ(Written(SomeText()), SomeText());
    EXPECT_EQ(Written(sTEXT_WIN()), sTEXT_WIN());
    const sBITMAP_WIN bitmap = {1000, 64, SomeText().rect};
    EXPECT_EQ(Written(bitmap), bitmap);
    sGRAPH_WIN graph;
    graph.rect = SomeText().rect;
    graph.minX = 0.1;
    graph.maxX = 20000.0;
    graph.minY = -1e-3;
    graph.maxY = 12.0;
    graph.hasColor = true;
    graph.color = {9, 8, 7, 255};
    graph.strokeWidth = 0.3;
    EXPECT_EQ(Written(graph), graph);
}

TEST(ParamWindows, NothingDependsOnTheLocale) {
    const GermanLocale german;
    EXPECT_EQ(Written(SomeText()), SomeText());
}

TEST(ParamWindows, FreshWindowWritesNothing) {
    KCXMLElement element = ElementFrom("<Win/>");
    EXPECT_EQ(WriteWindowToXML(element, sTEXT_WIN()), kErr_NoErr);
    EXPECT_EQ(WriteWindowToXML(element, sBITMAP_WIN()), kErr_NoErr);
    EXPECT_EQ(WriteWindowToXML(element, sGRAPH_WIN()), kErr_NoErr);
    EXPECT_EQ(element.GetAttributeCount(), 0u);
}

TEST(ParamWindows, HostileNumbersAreReportedWithTheirLineAndLeftOut) {
    for (const char* const attribute :
         {"Rect='1 2 3'", "Rect='1 2 3 4 5'", "Rect=''", "Rect='1 2 -3 4'", "Rect='1 2 3 -0.5'", "Rect='nan 0 1 1'",
          "Rect='1e300 0 1 1'", "Rect='0 0 1000001 1'", "Rect='1,5 0 1 1'", "Rect='a b c d'", "Height='-1'",
          "Height='1e300'", "Height='inf'", "Align='centre'", "Color='red'", "Color='#12345'", "Bold='perhaps'"}) {
        sTEXT_WIN win = SomeText();
        Problems problems;
        const KCXMLElement element = ElementFrom("<A>\n\n<W " + std::string(attribute) + "/></A>");
        EXPECT_EQ(ReadWindowFromXML(*element.FindChild("W"), win, problems), kErr_BadDescription) << attribute;
        ASSERT_EQ(problems.size(), 1u) << attribute;
        EXPECT_EQ(problems[0].Line, 3);
        EXPECT_EQ(win, SomeText()) << attribute;
    }
}

TEST(ParamWindows, PicturesAndGraphsRefuseHostileNumbersToo) {
    for (const char* const attribute : {"ResID='-1'", "ResID='2147483647'", "ResID='7.5'", "NumImages='-1'",
                                        "NumImages='100001'", "Rect='0 0 -1 1'"}) {
        sBITMAP_WIN win;
        Problems problems;
        const KCXMLElement element = ElementFrom("<W " + std::string(attribute) + "/>");
        EXPECT_EQ(ReadWindowFromXML(element, win, problems), kErr_BadDescription) << attribute;
        EXPECT_EQ(win, sBITMAP_WIN()) << attribute;
    }
    for (const char* const attribute :
         {"MinX='1e300'", "MaxX='nan'", "MinY='-1e300'", "MaxY='x'", "StrokeWidth='-1'", "StrokeWidth='1e9'"}) {
        sGRAPH_WIN win;
        Problems problems;
        const KCXMLElement element = ElementFrom("<W " + std::string(attribute) + "/>");
        EXPECT_EQ(ReadWindowFromXML(element, win, problems), kErr_BadDescription) << attribute;
        EXPECT_EQ(win, sGRAPH_WIN()) << attribute;
    }
}

TEST(ParamWindows, ProblemSaysWhatWasExpected) {
    sTEXT_WIN win;
    Problems problems;
    ReadWindowFromXML(ElementFrom("<W Height='tall'/>"), win, problems);
    ReadWindowFromXML(ElementFrom("<W Align='Center'/>"), win, problems);
    ReadWindowFromXML(ElementFrom("<W Rect='1,2,3,4'/>"), win, problems);
    ASSERT_EQ(problems.size(), 3u);
    EXPECT_EQ(problems[2].Text, "Rect is 4 numbers with blanks between them, not \"1,2,3,4\"");
    EXPECT_EQ(problems[1].Text, "Align is Left, Centre or Right, not \"Center\"");
    EXPECT_EQ(problems[0].Text, "Height is a number from 0 to 1000, not \"tall\"");
}

} // namespace
} // namespace kvTest
