#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/gui/gui_control_test_internal.h>
#include <tests/support/allocation_count.h>

namespace kvTest {
namespace {

using namespace kvKorvo;
using namespace kvGS;

class GUIControlDraw : public OneControl {
  protected:
    // The picture of the control as YAML.
    std::string Picture() {
        writer.ClearStream();
        control.Draw(writer);
        return PictureText(writer);
    }
    sTEXT_WIN Win(double x = 1, double y = 2) const {
        sTEXT_WIN win;
        win.rect = Rect::FromOrigin({x, y}, {30, 10});
        return win;
    }
    KCGraphicStreamBinaryWriter writer;
};

TEST_F(GUIControlDraw, AControlThatShowsNothingLeavesNoTrace) {
    control.Draw(writer);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
}

TEST_F(GUIControlDraw, IsOneFrameRoundedOutwards) {
    control.SetRect(Rect::FromEdges(9.5, 20.25, 110.25, 219.5));
    control.SetBkgColor({1, 2, 3});
    EXPECT_TRUE(Contains(Picture(), "rect: [9, 20, 102, 200]"));
}

TEST_F(GUIControlDraw, PartsComeInTheirOrder) {
    const auto at = [](const std::string& text, const char* part) {
        const size_t found = text.find(part);
        EXPECT_NE(found, std::string::npos) << part;
        return found;
    };
    control.SetBkgColor({1, 2, 3});
    sBITMAP_WIN images{70, 1, {}};
    control.m_images = images;
    Add(0, kRegister_Display).SetValueWin(Win());
    control.SetSelection(1);
    const std::string text = Picture();
    EXPECT_LT(at(text, "red: 1, green: 2"), at(text, "DrawImage"));
    EXPECT_LT(at(text, "DrawImage"), at(text, "DrawText"));
    EXPECT_LT(at(text, "DrawText"), at(text, "method: wire"));
}

TEST_F(GUIControlDraw, TextsStandInTheirWindowsAndInTheColoursOfTheTheme) {
    home.theme.valueHeight = 17.0;
    home.theme.text = KUColor{11, 12, 13};
    home.theme.textDim = KUColor{21, 22, 23};
    KCParamRegistrationData& param = Add(0, kRegister_Display);
    param.SetValueWin(Win(1, 2));
    const std::string value = Picture();
    EXPECT_TRUE(Contains(value, "height: 17"));
    EXPECT_TRUE(Contains(value, "rect: [11, 22, 30, 10]"));
    EXPECT_TRUE(Contains(value, "{red: 11, green: 12, blue: 13"));
    EXPECT_TRUE(Contains(value, "the_data: \"0.00\""));
    param.RemoveDrawAttributes();
    alg.GetParam(0)->SetLabelString(KCFixedString<31>("Drive"));
    param.SetLabelWin(Win());
    EXPECT_TRUE(Contains(Picture(), "{red: 21, green: 22, blue: 23"));
    EXPECT_TRUE(Contains(Picture(), "the_data: \"Drive\""));
}

TEST_F(GUIControlDraw, AWindowsOwnHeightColourAlignmentAndWeightCount) {
    sTEXT_WIN win = Win();
    win.height = 31.0;
    win.hasColor = true;
    win.color = {7, 8, 9};
    win.align = KETextAlign::Right;
    win.isBold = true;
    Add(0, kRegister_Display).SetValueWin(win);
    const std::string text = Picture();
    for (const char* part : {"height: 31", "red: 7, green: 8, blue: 9", "horizontal: Right", "style: 1"})
        EXPECT_TRUE(Contains(text, part)) << part;
}

TEST_F(GUIControlDraw, ADisabledControlIsFainterOrGoneOrAsEver) {
    home.theme.disabledOpacity = 0.5;
    control.SetBkgColor({1, 2, 3});
    control.SetDisabled();
    EXPECT_TRUE(Contains(Picture(), "blue: 3, alpha: 128"));
    control.m_disableMode = KEDisableMode::Ignore;
    EXPECT_TRUE(Contains(Picture(), "blue: 3, alpha: 255"));
    control.m_disableMode = KEDisableMode::Hide;
    EXPECT_FALSE(Contains(Picture(), "frame:"));
}

TEST_F(GUIControlDraw, AHiddenControlIsNotDrawn) {
    control.SetBkgColor({1, 2, 3});
    control.Hide();
    control.Draw(writer);
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
}

TEST_F(GUIControlDraw, PicturesShowTheStateOfTheParameter) {
    Add(1, kRegister_Display);
    control.m_images = sBITMAP_WIN{70, 5, Rect::FromOrigin({5, 5}, {20, 20})};
    EXPECT_TRUE(Contains(Picture(), "ResID: 70\n"));
    Execute(alg.UpdateParamState(1, 3 * alg.GetStateStep(1), false));
    const std::string text = Picture();
    EXPECT_TRUE(Contains(text, "ResID: 73\n"));
    EXPECT_TRUE(Contains(text, "location: [15, 25]"));
    EXPECT_TRUE(Contains(text, "logical_size: [20, 20]"));
}

TEST_F(GUIControlDraw, ASelectionShowsAsAPictureOrALine) {
    control.SetSelection(1);
    EXPECT_TRUE(Contains(Picture(), "method: wire"));
    control.m_selectionImages = sBITMAP_WIN{90, 2, {}};
    const std::string text = Picture();
    EXPECT_FALSE(Contains(text, "method: wire"));
    EXPECT_TRUE(Contains(text, "ResID: 90\n"));
    control.SetSelection(0);
    EXPECT_FALSE(Contains(Picture(), "frame:"));
}

TEST_F(GUIControlDraw, AGraphIsALineWithinItsWindow) {
    ASSERT_TRUE(alg.GetParam(0)->ResizeGraph(3));
    KCParamGraph& graph = alg.GetParam(0)->GetGraph();
    graph.AddPoint({0.0, 0.0});
    graph.AddPoint({std::numeric_limits<double>::quiet_NaN(), 0.0});
    graph.AddPoint({1.0, 1.0});
    sGRAPH_WIN win;
    win.rect = Rect::FromOrigin({0, 0}, {50, 100});
    Add(0, kRegister_Display).SetGraphWin(win);
    const std::string text = Picture();
    EXPECT_TRUE(Contains(text, "[[10, 120], [60, 20]]"));
    EXPECT_TRUE(Contains(text, "LineStrip"));
    EXPECT_TRUE(Contains(text, "ClipRect"));
}

TEST_F(GUIControlDraw, UnknownRegistrationsDrawNothing) {
    control.GetDrawInstructionsParamBitmapWindow(writer, 3);
    control.GetDrawInstructionsParamGraphWindow(writer, 3);
    control.GetDrawInstructionsParamValueWindow(writer, 3);
    control.GetDrawInstructionsParamUnitsWindow(writer, 3);
    control.GetDrawInstructionsParamLabelWindow(writer, 3);
    control.GetDrawInstructionsDragDropImage(writer, {1, 1});
    EXPECT_EQ(writer.GetStreamMemObj().GetSize(), 0u);
}

TEST_F(GUIControlDraw, WhatIsDraggedShowsUnderThePointer) {
    Add(0, kRegister_DragAndDrop);
    control.GetDrawInstructionsDragDropImage(writer, {50, 60});
    EXPECT_TRUE(Contains(PictureText(writer), "[[44, 54], [56, 54], [56, 66], [44, 66]]"));
}

TEST_F(GUIControlDraw, DrawingAgainTakesNoMemory) {
    control.SetBkgColor({1, 2, 3});
    Add(0, kRegister_Display).SetValueWin(Win());
    control.GetParamData(0)->SetUnitsWin(Win());
    control.GetParamData(0)->SetLabelWin(Win());
    control.SetSelection(1);
    control.Draw(writer);
    writer.ClearStream();
    const AllocationCount count;
    control.Draw(writer);
    EXPECT_EQ(count.Taken(), 0u);
    EXPECT_GT(writer.GetStreamMemObj().GetSize(), 0u);
}

} // namespace
} // namespace kvTest
