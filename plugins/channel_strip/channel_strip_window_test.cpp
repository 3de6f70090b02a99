// The strip's window, without a display: everything can be reached, nothing is in the way of anything else.

#include <plugins/channel_strip/channel_strip.h>
#include <plugins/channel_strip/channel_strip_window.h>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/to_yaml.h>
#include <korvolib/gui/x_cstandardgui.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <set>
#include <string>

namespace kvStrip {
namespace {

using namespace kvKorvo;

class StripWindow : public testing::Test {
  protected:
    using Problems = std::vector<sDESCRIPTION_PROBLEM>;

    StripWindow() {
        EXPECT_EQ(strip.FinishCreate(), kErr_NoErr);
        EXPECT_EQ(window.Parse(WindowXML(), std::strlen(WindowXML())), kErr_NoErr);
        EXPECT_EQ(window.ReadAttribute("Width", size.width), KEXMLValue::Found);
        EXPECT_EQ(window.ReadAttribute("Height", size.height), KEXMLValue::Found);
        for (const KCXMLElement& element : window.FindChild("Controls")->Children("Control"))
            AddControl(element);
    }
    ~StripWindow() override { controls.clear(); } // before the algorithm they are bound to

    void AddControl(const KCXMLElement& element) {
        std::unique_ptr<KCGUIControl> control = MakeControlOfClass(element.GetAttribute("Class"));
        ASSERT_NE(control, nullptr) << "line " << element.GetLine();
        Problems problems;
        EXPECT_EQ(control->ReadFromXMLWithAlg(element, strip, problems), kErr_NoErr) << control->GetNamePtr();
        EXPECT_TRUE(problems.empty()) << problems.front().Line << ": " << problems.front().Text.c_str();
        EXPECT_EQ(control->FinishCreate(), kErr_NoErr);
        controls.push_back(std::move(control));
    }

    void SetState(size_t index, double share) {
        const bool isDiscrete = strip.GetParamType(index) == 0;
        const double last = isDiscrete ? strip.GetParamNumStates(index) - 1 : 1000.0;
        KCChannelStrip::BUFFER_HEADER* chain =
            strip.UpdateParamRequestState(index, isDiscrete ? std::round(share * last) : share * last);
        strip.ExecuteAndDisposeBuffer(chain);
    }

    static std::string Drawn(const KCGUIControl& control) {
        kvGS::KCGraphicStreamBinaryWriter writer;
        control.Draw(writer);
        kvGS::KCGraphicStreamToYAML yaml;
        EXPECT_EQ(yaml.ExecStream(writer), kErr_NoErr);
        return std::string(yaml.GetText());
    }

    KCChannelStrip strip;
    KCXMLElement window;
    KUSize<double> size;
    std::vector<std::unique_ptr<KCGUIControl>> controls;
};

TEST_F(StripWindow, IsBuiltWithoutAComplaint) {
    CStandardGUI_X built;
    EXPECT_EQ(built.Create(strip), kErr_NoErr);
    EXPECT_TRUE(built.GetProblems().empty()) << built.GetProblems().front().Text.c_str();
    EXPECT_EQ(built.GetNumControls(), controls.size());
    EXPECT_EQ(built.GetSize(), size);
}

TEST_F(StripWindow, TakesATypedFrequency) {
    CStandardGUI_X built;
    ASSERT_EQ(built.Create(strip), kErr_NoErr);
    const KCGUIControl* const field = built.FindControl(KCFixedString<63>("Bell 1 Frequency"));
    ASSERT_NE(field, nullptr);
    PluginViewManager::KCEventData event;
    event.position = event.dragStart = field->GetBounds().GetCentre();
    EXPECT_TRUE(built.MouseDown(event));
    EXPECT_TRUE(built.MouseUp(event));
    EXPECT_TRUE(built.Text("440\r"));
    EXPECT_EQ(strip.GetParamRealWorld(kParam_Bell1Frequency), 440.0);
}

TEST_F(StripWindow, BindsEveryParameter) {
    std::set<size_t> bound;
    for (const auto& control : controls)
        for (const KCParamRegistrationData& record : control->GetParamDataVec())
            bound.insert(record.GetParamIndex());
    for (size_t index = 0; index < kNumParams; ++index)
        EXPECT_TRUE(bound.contains(index)) << strip.GetParamName(index).c_str();
}

TEST_F(StripWindow, NoTwoControlsShareAPlaceOrAName) {
    for (size_t first = 0; first < controls.size(); ++first)
        for (size_t second = first + 1; second < controls.size(); ++second) {
            EXPECT_FALSE(controls[first]->GetBounds().Intersects(controls[second]->GetBounds()))
                << controls[first]->GetNamePtr() << " and " << controls[second]->GetNamePtr();
            EXPECT_STRNE(controls[first]->GetNamePtr(), controls[second]->GetNamePtr());
        }
}

TEST_F(StripWindow, EverythingLiesInsideTheWindow) {
    const auto inside = KURect<double>::FromOrigin({0.0, 0.0}, size);
    for (const auto& control : controls)
        EXPECT_TRUE(inside.Contains(control->GetBounds())) << control->GetNamePtr();
    for (const KCXMLElement& element : window.FindChild("Drawables")->Children("Drawable")) {
        CDrawable drawable;
        ASSERT_EQ(drawable.ReadFromXML(element), kErr_NoErr) << "line " << element.GetLine();
        EXPECT_TRUE(inside.Contains(drawable.GetRect())) << "line " << element.GetLine();
    }
}

TEST_F(StripWindow, EveryControlStandsOnOnePanelOrOnTheGround) {
    for (const KCXMLElement& element : window.FindChild("Drawables")->Children("Drawable")) {
        CDrawable panel;
        ASSERT_EQ(panel.ReadFromXML(element), kErr_NoErr);
        if (!element.HasAttribute("FrameColor"))
            continue;
        for (const auto& control : controls)
            EXPECT_TRUE(!panel.GetRect().Intersects(control->GetBounds()) ||
                        panel.GetRect().Contains(control->GetBounds()))
                << control->GetNamePtr();
    }
}

TEST_F(StripWindow, EveryTextFitsAtAnyValue) {
    std::mt19937 random(20262);
    for (int round = 0; round < 40; ++round) {
        for (size_t index = 0; index < kNumParams; ++index)
            SetState(index, round == 0 ? 0.0 : round == 1 ? 1.0 : static_cast<double>(random() % 1001) / 1000.0);
        for (const auto& control : controls)
            EXPECT_EQ(Drawn(*control).find("\xE2\x80\xA6"), std::string::npos) << control->GetNamePtr();
    }
}

TEST_F(StripWindow, KnobsShowTheirCaptionAndTheirValue) {
    for (const auto& control : controls) {
        const std::string drawn = Drawn(*control);
        size_t numTexts = 0;
        for (size_t at = drawn.find("DrawText"); at != std::string::npos; at = drawn.find("DrawText", at + 1))
            ++numTexts;
        const std::string className = control->GetClassName().c_str();
        EXPECT_EQ(numTexts, className == "Knob" || className == "Fader" || className == "Menu" ? 2u : 1u)
            << control->GetNamePtr();
    }
}

} // namespace
} // namespace kvStrip
