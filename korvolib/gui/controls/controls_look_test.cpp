// What holds for the picture of every control, whatever its size and state.

#include <korvolib/graphicstream/painter.h>
#include <korvolib/gui/controls/button.h>
#include <korvolib/gui/controls/controls_test_internal.h>
#include <korvolib/gui/controls/knob.h>
#include <tests/support/allocation_count.h>

#include <cstdio>
#include <random>

namespace kvTest {
namespace {

constexpr const char* kClasses[] = {"Knob", "Fader", "Button", "Menu", "ValueText", "XYPad", "Label", "LevelPlot"};

// Grows a rectangle around all that is drawn.
class KCExtentPainter : public kvGS::KCGraphicStreamPainter {
  public:
    KURect<float> extent;
    int numTexts = 0;

  protected:
    int32_t BeginPicture(const kvGS::SGSStream&) override { return kErr_NoErr; }
    int32_t OpenGroup() override { return kErr_NoErr; }
    int32_t CloseGroup() override { return kErr_NoErr; }
    int32_t Rotate(float, kvGS::SGSLocation) override { return kErr_NoErr; }
    int32_t Clip(const kvGS::KCGSPath&, bool) override { return kErr_NoErr; }
    int32_t Fill(const kvGS::KCGSPath& path, const kvGS::KCGSPaint&) override { return AddPath(path, 0.0F); }
    int32_t Stroke(const kvGS::KCGSPath& path, const kvGS::KCGSPaint&, const kvGS::KCGSStroke& stroke) override {
        // A line ends where its points are, across it has half of its width; corners of a frame are round.
        const bool isLine = path.points.size() == 2;
        return AddPath(path, isLine ? 0.0F : stroke.width / 2);
    }
    int32_t FillArc(const kvGS::KCGSArc& arc, const kvGS::KCGSPaint&) override { return AddRect(arc.rect, 0.0F); }
    int32_t StrokeArc(const kvGS::KCGSArc& arc, const kvGS::KCGSPaint&, const kvGS::KCGSStroke& stroke) override {
        return AddRect(arc.rect, stroke.width / 2);
    }
    int32_t ShowText(const kvGS::KCGSTextLine& line, const kvGS::KCGSPaint&) override {
        ++numTexts;
        return AddRect({line.baseline.x, line.baseline.y - 0.7F * line.height, 0.0F, 0.7F * line.height}, 0.0F);
    }
    int32_t ShowPicture(const kvGS::KCGSPicture& picture, const kvGS::KCGSPaint&) override {
        return AddRect(picture.target, 0.0F);
    }

  private:
    int32_t AddPath(const kvGS::KCGSPath& path, float margin) {
        for (const KUPoint<float>& point : path.points)
            AddRect({point.x, point.y, 0.0F, 0.0F}, margin);
        return kErr_NoErr;
    }
    int32_t AddRect(const kvGS::SGSRect& rect, float margin) {
        constexpr float kPoint = 1.0e-4F; // so that a single point is not empty
        const auto added =
            KURect<float>::FromEdges(rect.x - margin, rect.y - margin, rect.x + rect.width + margin + kPoint,
                                     rect.y + rect.height + margin + kPoint);
        extent = extent.Union(added);
        return kErr_NoErr;
    }
};

KCExtentPainter Painted(const KCGUIControl& control) {
    kvGS::KCGraphicStreamBinaryWriter writer;
    {
        const kvGS::SGSStream stream;
        writer.OpenStream(stream);
        control.Draw(writer);
        writer.CommandHeader(kvGS::kEndStream);
    }
    KCExtentPainter painter;
    EXPECT_EQ(painter.ExecStream(writer), kErr_NoErr);
    return painter;
}

std::string RectAttribute(const KURect<double>& rect) {
    char text[128];
    std::snprintf(text, sizeof text, "Rect=\"%d %d %d %d\"", static_cast<int>(rect.left),
                  static_cast<int>(rect.top), static_cast<int>(rect.GetWidth()),
                  static_cast<int>(rect.GetHeight()));
    return text;
}

TEST(EveryControl, DrawsNothingOutsideOfItsBoundsAtAnySize) {
    ControlsAlgorithm algorithm;
    std::mt19937 random(20261);
    const auto upTo = [&random](int limit) { return static_cast<double>(random() % static_cast<unsigned>(limit)); };
    const char* const directions[] = {"Vertical", "Horizontal"};
    for (int round = 0; round < 4000; ++round) {
        for (size_t index = 0; index < algorithm.GetNumParams(); ++index)
            algorithm.SetState(index, algorithm.GetParamType(index) == 0 ? upTo(4) : upTo(1001));
        const char* const className = kClasses[random() % std::size(kClasses)];
        const auto rect =
            KURect<double>::FromOrigin({100.0, 100.0}, {1.0 + upTo(round % 2 == 0 ? 40 : 240), 1.0 + upTo(240)});
        const auto control = MakeControl(algorithm, className,
                                         RectAttribute(rect) + " Direction=\"" + directions[random() % 2] + "\"",
                                         R"(<Parameter Name="Gain" Role="X"/><Parameter Name="Level" Role="Y"/>)");
        const KURect<float> extent = Painted(*control).extent;
        const KURect<float> allowed = rect.ConvertTo<float>().Inset(-0.01F, -0.01F);
        EXPECT_TRUE(extent.IsEmpty() || allowed.Contains(extent))
            << className << ' ' << RectAttribute(rect) << ": " << extent.left << ' ' << extent.top << ' '
            << extent.right << ' ' << extent.bottom;
    }
}

TEST(EveryControl, DrawsWithoutMemoryIntoAWarmStream) {
    ControlsAlgorithm algorithm;
    for (const char* className : kClasses) {
        const auto control = MakeControl(algorithm, className, R"(Rect="0 0 120 120")",
                                         R"(<Parameter Name="Gain" Role="X"/><Parameter Name="Level" Role="Y"/>)");
        kvGS::KCGraphicStreamBinaryWriter writer;
        control->Draw(writer);
        writer.ClearStream();
        const AllocationCount count;
        control->Draw(writer);
        EXPECT_EQ(count.Taken(), 0u) << className;
        EXPECT_GT(writer.GetStreamMemObj().GetSize(), 0u);
    }
}

TEST(EveryControl, DrawsWithoutParameters) {
    ControlsAlgorithm algorithm;
    for (const char* className : kClasses) {
        const auto control = MakeControl(algorithm, className, R"(Rect="0 0 120 120")", "");
        const KCExtentPainter painter = Painted(*control);
        EXPECT_EQ(painter.numTexts, 0) << className;
        EXPECT_EQ(painter.extent.IsEmpty(), std::string(className) == "Label") << className;
    }
}

TEST(EveryControl, ClonesToOneThatLooksTheSame) {
    ControlsAlgorithm algorithm;
    for (const char* className : kClasses) {
        const auto control = MakeControl(algorithm, className, R"(Rect="0 0 120 120" Text="Caption")",
                                         R"(<Parameter Name="Gain" Role="X"/><Parameter Name="Level" Role="Y"/>)");
        const std::unique_ptr<KCBaseControl> clone = control->Clone();
        ASSERT_NE(clone, nullptr);
        const KCBaseControl& copied = *clone;
        const KCBaseControl& original = *control;
        EXPECT_EQ(typeid(copied), typeid(original));
        EXPECT_EQ(YAMLOf(dynamic_cast<const KCGUIControl&>(copied)), YAMLOf(*control)) << className;
    }
}

TEST(EveryControl, IsMadeByItsNameAndNoOther) {
    for (const char* className : kClasses)
        EXPECT_NE(MakeControlOfClass(className), nullptr) << className;
    EXPECT_EQ(MakeControlOfClass("Knbo"), nullptr);
    EXPECT_EQ(MakeControlOfClass("knob"), nullptr);
    EXPECT_EQ(MakeControlOfClass(""), nullptr);
    EXPECT_EQ(MakeControlOfClass(nullptr), nullptr);
}

// Texts
// ------------------------------------------------------------------------------------------------------------

TEST(ControlTexts, AKnobShowsTheLabelAndTheValueWithItsUnits) {
    ControlsAlgorithm algorithm;
    const auto knob = MakeControl(algorithm, "Knob", R"(Rect="0 0 80 96")", R"(<Parameter Name="Gain"/>)");
    EXPECT_TRUE(Shows(*knob, "Boost"));
    algorithm.SetState(0, 750.0);
    EXPECT_TRUE(Shows(*knob, "6.0 dB"));
}

TEST(ControlTexts, TheNameStandsInForAMissingLabelAndTheCaptionForBoth) {
    ControlsAlgorithm algorithm;
    const auto plain = MakeControl(algorithm, "Knob", R"(Rect="0 0 80 96")", R"(<Parameter Name="Level"/>)");
    EXPECT_TRUE(Shows(*plain, "Level"));
    const auto captioned =
        MakeControl(algorithm, "Knob", R"(Rect="0 0 80 96" Text="Volume")", R"(<Parameter Name="Level"/>)");
    EXPECT_TRUE(Shows(*captioned, "Volume"));
    EXPECT_FALSE(Shows(*captioned, "Level"));
}

TEST(ControlTexts, TheCaptionIsWrittenBackWhereThereIsOne) {
    ControlsAlgorithm algorithm;
    const auto knob =
        MakeControl(algorithm, "Knob", R"(Rect="0 0 80 96" Text="Volume")", R"(<Parameter Name="Level"/>)");
    KCXMLElement element;
    ASSERT_EQ(knob->WriteToXMLWithAlg(element, algorithm), kErr_NoErr);
    EXPECT_STREQ(element.GetAttribute("Text"), "Volume");
    const auto plain = MakeControl(algorithm, "Knob", R"(Rect="0 0 80 96")", R"(<Parameter Name="Level"/>)");
    element.Clear();
    ASSERT_EQ(plain->WriteToXMLWithAlg(element, algorithm), kErr_NoErr);
    EXPECT_EQ(element.GetAttribute("Text"), nullptr);
}

TEST(ControlTexts, AWordHasNoUnitsBehindIt) {
    ControlsAlgorithm algorithm;
    algorithm.GetParam(0)->SetDisplayFunc(
        DisplayFunctionProxy([](const KCParam_Base&, double, KCFixedStringBase& text, void*) { text = "Off"; }));
    algorithm.SetState(0, 100.0);
    const auto knob = MakeControl(algorithm, "Knob", R"(Rect="0 0 80 96")", R"(<Parameter Name="Gain"/>)");
    EXPECT_TRUE(Shows(*knob, "Off"));
}

TEST(ControlTexts, AreShortenedWhereThereIsNoRoom) {
    ControlsAlgorithm algorithm;
    const auto label = MakeControl(algorithm, "Label", R"(Rect="0 0 40 16" Text="Compressor")", "");
    EXPECT_TRUE(Shows(*label, "Comp…") || Shows(*label, "Com…")) << YAMLOf(*label);
    label->Resize(80.0, 16.0);
    EXPECT_TRUE(Shows(*label, "Compressor"));
    label->Resize(3.0, 16.0);
    EXPECT_EQ(Painted(*label).numTexts, 0);
}

TEST(ControlTexts, AreWholeWhereTheirFontFits) {
    ControlsAlgorithm algorithm;
    EXPECT_TRUE(Shows(*MakeControl(algorithm, "Button", R"(Rect="0 0 43 20" Text="LEVEL")", ""), "LEVEL"));
    EXPECT_FALSE(Shows(*MakeControl(algorithm, "Button", R"(Rect="0 0 38 20" Text="LEVEL")", ""), "LEVEL"));
}

TEST(ControlTexts, OfALitButtonAreThinnerRatherThanShorter) {
    ControlsAlgorithm algorithm;
    const auto button = MakeControl(algorithm, "Button", R"(Rect="0 0 39 20" Text="LEVEL")",
                                    R"(<Parameter Name="Mode"><Register Type="SetOnPress"/></Parameter>)");
    EXPECT_TRUE(Shows(*button, "LEVEL"));
    EXPECT_EQ(YAMLOf(*button).find("style: 1"), std::string::npos);
    button->Resize(60, 20);
    EXPECT_NE(YAMLOf(*button).find("style: 1"), std::string::npos);
}

TEST(ControlTexts, ANumberThatDoesNotFitGoesWithoutItsUnits) {
    ControlsAlgorithm algorithm;
    const auto knob = MakeControl(algorithm, "Knob", R"(Rect="0 0 34 80")", R"(<Parameter Name="Gain"/>)");
    EXPECT_TRUE(Shows(*knob, "0.0 dB"));
    knob->Resize(26, 80);
    EXPECT_TRUE(Shows(*knob, "0.0"));
}

TEST(ControlTexts, AreNeverCutInsideACharacter) {
    ControlsAlgorithm algorithm;
    const auto label = MakeControl(algorithm, "Label", R"(Rect="0 0 40 16" Text="ΩΩΩΩΩΩΩΩΩΩ")", "");
    EXPECT_TRUE(Shows(*label, "ΩΩΩ…")) << YAMLOf(*label);
}

TEST(ControlTexts, ALowKnobLeavesOutItsLabelThenItsValue) {
    ControlsAlgorithm algorithm;
    const auto knob = MakeControl(algorithm, "Knob", R"(Rect="0 0 80 48")", R"(<Parameter Name="Gain"/>)");
    EXPECT_EQ(Painted(*knob).numTexts, 2);
    knob->Resize(80.0, 47.0);
    EXPECT_EQ(Painted(*knob).numTexts, 1);
    EXPECT_TRUE(Shows(*knob, "0.0 dB"));
    knob->Resize(80.0, 33.0);
    EXPECT_EQ(Painted(*knob).numTexts, 0);
}

TEST(ControlTexts, AWindowOfADescriptionTakesTheirPlace) {
    ControlsAlgorithm algorithm;
    const auto knob = MakeControl(algorithm, "Knob", R"(Rect="0 0 80 96")",
                                  R"(<Parameter Name="Gain"><LabelWin Rect="0 0 80 14"/></Parameter>)");
    const std::string yaml = YAMLOf(*knob);
    const size_t first = yaml.find("\"Boost\"");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(yaml.find("\"Boost\"", first + 1), std::string::npos);
}

// Pictures
// ---------------------------------------------------------------------------------------------------------

TEST(ControlPictures, ReplaceTheShapeOfAKnobAndFollowTheValue) {
    ControlsAlgorithm algorithm;
    const auto knob = MakeControl(algorithm, "Knob", R"(Rect="0 0 80 80")", R"(<Parameter Name="Level"/>)");
    EXPECT_NE(YAMLOf(*knob).find("DrawOval"), std::string::npos);
    const std::string xml =
        R"(<Control Class="Knob" Name="It" Rect="0 0 80 80"><ImageList ResID="40" NumImages="10"/>)"
        R"(<ParameterList><Parameter Name="Level"/></ParameterList></Control>)";
    KCXMLElement element;
    ASSERT_EQ(element.Parse(xml.data(), xml.size()), kErr_NoErr);
    std::vector<sDESCRIPTION_PROBLEM> problems;
    ASSERT_EQ(knob->ReadFromXMLWithAlg(element, algorithm, problems), kErr_NoErr);
    algorithm.SetState(1, 1000.0);
    const std::string yaml = YAMLOf(*knob);
    EXPECT_EQ(yaml.find("DrawOval"), std::string::npos);
    EXPECT_NE(yaml.find("ResID: 49"), std::string::npos) << yaml;
}

} // namespace
} // namespace kvTest
