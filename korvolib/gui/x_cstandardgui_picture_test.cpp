#include <korvolib/gui/x_cstandardgui.h>

#include <string>

#include <gmock/gmock.h>

#include <korvolib/graphicstream/to_yaml.h>
#include <korvolib/gui/window_test_internal.h>

namespace {

using namespace kvWindowTest;
using Writer = CStandardGUI_X::Writer;

std::string Bytes(const Writer& writer) { return std::string(writer.GetStreamMemObj().GetText()); }

// Many knobs, of which each stands alone.
std::string KnobsXML(int count) {
    std::string controls;
    for (int i = 0; i < count; ++i) {
        const std::string place = std::to_string(40 * (i % 40)).append(" ").append(std::to_string(40 * (i / 40)));
        controls += KnobXML(std::string("K").append(std::to_string(i)).c_str(), (place + " 40 40").c_str(),
                            i == 0 ? "Gain" : "Pan");
    }
    return "<GUI Width=\"1600\" Height=\"1200\"><Controls>" + controls + "</Controls></GUI>";
}

TEST(WindowPicture, IsAskedForUntilItIsDrawn) {
    sWINDOW window;
    EXPECT_TRUE(window.window.NeedsRedraw());
    Writer writer;
    EXPECT_EQ(window.window.Draw(writer), 0);
    EXPECT_FALSE(window.window.NeedsRedraw());
    const std::string drawn = Bytes(writer);
    EXPECT_EQ(window.window.DrawDirty(writer), 0);
    EXPECT_EQ(Bytes(writer), drawn);
}

TEST(WindowPicture, FirstChangeBeforeAnyPictureDrawsAll) {
    sWINDOW window;
    window.Drag(40, 45, 0, -20);
    Writer all, dirty;
    EXPECT_EQ(window.window.DrawDirty(dirty), 0);
    EXPECT_FALSE(window.window.NeedsRedraw());
    window.window.Draw(all);
    EXPECT_EQ(Bytes(dirty).size(), Bytes(all).size());
}

TEST(WindowPicture, FollowsAParameterWhoeverMovedIt) {
    sWINDOW window;
    Writer writer;
    window.window.Draw(writer);
    auto* chain = window.algorithm.UpdateParamState(kGain, 700.0, false);
    window.algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_TRUE(window.window.NeedsRedraw());
    EXPECT_TRUE(window.Control("Gain").NeedToRedrawControl());
    EXPECT_FALSE(window.Control("Pan").NeedToRedrawControl());
    window.window.DrawDirty(writer);
    EXPECT_FALSE(window.Control("Gain").NeedToRedrawControl());
}

TEST(WindowPicture, OfAChangedControlIsTheSameAmongAThousand) {
    std::string few, many;
    for (const int count : {10, 1000}) {
        sWINDOW window(KnobsXML(count));
        Writer writer;
        window.window.Draw(writer);
        writer.ClearStream();
        window.window.MouseDown(Down(20, 20));
        window.window.MouseDrag(DragTo(20, 10));
        window.window.DrawDirty(writer);
        (count == 10 ? few : many) = Bytes(writer);
    }
    EXPECT_FALSE(few.empty());
    EXPECT_EQ(few, many);
}

TEST(WindowPicture, MarksDependentsToo) {
    sWINDOW window(WindowXML("<Control Class=\"Knob\" Name=\"A\" Rect=\"0 0 50 50\"><DependentsList>"
                             "<Dependent ID=\"B\"/></DependentsList><ParameterList><Parameter Name=\"Gain\"/>"
                             "</ParameterList></Control>" +
                             KnobXML("B", "50 0 50 50", "Pan") + KnobXML("C", "100 0 50 50", "Tone")));
    Writer writer;
    window.window.Draw(writer);
    window.window.MouseWheel(Over(25, 25), 0, 1);
    EXPECT_TRUE(window.Control("B").NeedToRedrawControl());
    EXPECT_FALSE(window.Control("C").NeedToRedrawControl());
}

TEST(WindowPicture, DrawsAllWhenAControlHasMoved) {
    sWINDOW window;
    Writer writer;
    window.window.Draw(writer);
    writer.ClearStream();
    window.Control("Gain").Move(5, 5);
    window.window.DrawDirty(writer);
    const std::string dirty = Bytes(writer);
    writer.ClearStream();
    window.window.Draw(writer);
    EXPECT_EQ(dirty.size(), Bytes(writer).size());
    EXPECT_EQ(window.window.FindControlAt({73, 93}), &window.Control("Gain"));
}

TEST(WindowPicture, LeavesOutWhatIsHidden) {
    sWINDOW window(WindowXML(KnobXML("A", "0 0 50 50", "Gain") + KnobXML("B", "50 0 50 50", "Pan")));
    Writer both, one;
    window.window.Draw(both);
    window.Control("B").Hide();
    window.window.Draw(one);
    EXPECT_LT(Bytes(one).size(), Bytes(both).size());
}

TEST(WindowPicture, DrawsTopmostControlsLast) {
    sWINDOW window(WindowXML("<Control Class=\"Knob\" Name=\"A\" Rect=\"0 0 50 50\"><Flags DrawTopmost=\"true\"/>"
                             "<ParameterList><Parameter Name=\"Gain\"/></ParameterList></Control>" +
                             KnobXML("B", "20 0 50 50", "Pan")));
    EXPECT_EQ(window.result, 0);
    EXPECT_EQ(window.window.FindControlAt({30, 20}), &window.Control("A"));
    window.Control("A").SetControlFlag(kControl_DrawTopmost, false);
    Writer writer;
    window.window.DrawDirty(writer);
    EXPECT_EQ(window.window.FindControlAt({30, 20}), &window.Control("B"));
}

// More neighbours than lists hold.
TEST(WindowPicture, OfManyControlsInOnePlaceIsWhole) {
    std::string controls;
    for (int i = 0; i < 100; ++i)
        controls += KnobXML("K", "0 0 50 50", i == 0 ? "Gain" : "Pan");
    sWINDOW window(WindowXML(controls));
    Writer all, dirty;
    window.window.Draw(all);
    window.window.GetControl(0)->SetNeedToRedrawControl();
    window.window.DrawDirty(dirty);
    EXPECT_GE(Bytes(dirty).size(), Bytes(all).size());
}

} // namespace
