#include <gtest/gtest.h>

#include <limits>

#include <korvolib/gui/gui_test_internal.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class RegistrationDisplayTest : public testing::Test {
  protected:
    RegistrationDisplayTest() : algorithm(ThreeParams()) {
        algorithm.FinishCreate();
        algorithm.GetParam(0)->ResizeGraph(8);
    }
    int32_t ImageAt(KCParamRegistrationData& record, double state) {
        algorithm.UpdateParamState(record.GetParamIndex(), state, false);
        return record.GetParamCurrentImage();
    }

    RecordingAlgorithm algorithm;
    KCParamRegistrationData gain{&algorithm, 0, KCRegisterInfo()};
    KCParamRegistrationData mode{&algorithm, 1, KCRegisterInfo()};
};

TEST_F(RegistrationDisplayTest, PictureIsThatOfThePartOfTheTravel) {
    gain.SetBitmapWin({100, 4, {}});
    EXPECT_EQ(ImageAt(gain, 0.0), 0);
    EXPECT_EQ(ImageAt(gain, 249.9), 0);
    EXPECT_EQ(ImageAt(gain, 250.0), 1);
    EXPECT_EQ(ImageAt(gain, 999.0), 3);
    EXPECT_EQ(ImageAt(gain, 1000.0), 3);
    EXPECT_EQ(gain.GetParamCurrentImageResID(), 103);
}

TEST_F(RegistrationDisplayTest, AsManyPicturesAsStatesAreOneForEach) {
    mode.SetBitmapWin({100, 5, {}});
    for (int32_t state = 0; state < 5; ++state)
        EXPECT_EQ(ImageAt(mode, state), state);
    mode.SetBitmapWin({100, 2, {}});
    EXPECT_EQ(ImageAt(mode, 1.0), 0);
    EXPECT_EQ(ImageAt(mode, 4.0), 1);
}

TEST_F(RegistrationDisplayTest, ParameterOfOneStateShowsTheFirstPicture) {
    algorithm.GetParam(1)->SetNumStates(1);
    mode.SetBitmapWin({100, 3, {}});
    EXPECT_EQ(mode.GetParamCurrentImage(), 0);
}

TEST_F(RegistrationDisplayTest, WithoutPicturesThereIsNone) {
    EXPECT_EQ(gain.GetParamCurrentImage(), -1);
    EXPECT_EQ(gain.GetParamCurrentImageResID(), 0);
    gain.SetBitmapWin({100, 0, {}});
    EXPECT_EQ(gain.GetParamCurrentImage(), -1);
    gain.SetBitmapWin({INT32_MAX, 4, {}});
    ImageAt(gain, 1000.0);
    EXPECT_EQ(gain.GetParamCurrentImageResID(), 0); // beyond every id
}

TEST_F(RegistrationDisplayTest, GraphFillsItsWindowFromTheBottomLeft) {
    KCParamGraph& graph = algorithm.GetParam(0)->GetGraph();
    graph.AddPoint({20.0, -12.0});
    graph.AddPoint({20000.0, 12.0});
    sGRAPH_WIN win;
    win.rect = KURect<double>::FromEdges(10.0, 20.0, 110.0, 70.0);
    win.minX = 20.0;
    win.maxX = 20000.0;
    win.minY = -12.0;
    win.maxY = 12.0;
    gain.SetGraphWin(win);
    std::vector<KUPoint<float>> points = {{1.0f, 1.0f}};
    gain.GetGraphDataFromParam(points);
    EXPECT_EQ(points, (std::vector<KUPoint<float>>{{10.0f, 70.0f}, {110.0f, 20.0f}}));
}

TEST_F(RegistrationDisplayTest, PointsWithoutAPlaceAreLeftOut) {
    KCParamGraph& graph = algorithm.GetParam(0)->GetGraph();
    for (const KUPoint<double> point : {KUPoint<double>{kNaN, 0.0}, {0.5, kNaN}, {1e300, 1e300}, {0.5, 0.5}})
        graph.AddPoint(point);
    sGRAPH_WIN win;
    win.rect = KURect<double>::FromEdges(0.0, 0.0, 100.0, 100.0);
    gain.SetGraphWin(win);
    std::vector<KUPoint<float>> points;
    gain.GetGraphDataFromParam(points);
    ASSERT_EQ(points.size(), 2u);
    EXPECT_EQ(points[0], (KUPoint<float>{1e6f, -1e6f})); // far outside, on its side
    EXPECT_EQ(points[1], (KUPoint<float>{50.0f, 50.0f}));
    win.maxX = win.minX;
    gain.SetGraphWin(win);
    gain.GetGraphDataFromParam(points);
    EXPECT_TRUE(points.empty());
}

TEST_F(RegistrationDisplayTest, TextsAreThoseOfTheParameter) {
    algorithm.GetParam(0)->SetLabelString(KCFixedString<31>("Input"));
    algorithm.GetParam(0)->SetUnitsString(KCFixedString<31>("dB"));
    algorithm.UpdateParamState(0, 500.0, false);
    KCFixedString<127> text("old");
    gain.UpdateValue(text);
    EXPECT_EQ(text, "5.00");
    gain.UpdateLabel(text);
    EXPECT_EQ(text, "Input");
    gain.UpdateUnits(text);
    EXPECT_EQ(text, "dB");
    KCParamRegistrationData().UpdateValue(text);
    EXPECT_TRUE(text.empty());
}

TEST_F(RegistrationDisplayTest, DrawAttributesGoTogether) {
    sTEXT_WIN text;
    text.rect = KURect<double>::FromEdges(0.0, 0.0, 10.0, 10.0);
    gain.SetLabelWin(text);
    gain.SetValueWin(text);
    gain.SetUnitsWin(text);
    gain.SetBitmapWin({1, 2, text.rect});
    EXPECT_TRUE(gain.GetBitmapWin().IsShown());
    EXPECT_EQ(gain.GetImageRect(), text.rect);
    gain.RemoveDrawAttributes();
    EXPECT_FALSE(gain.GetLabelWin().IsShown() || gain.GetValueWin().IsShown() || gain.GetUnitsWin().IsShown() ||
                 gain.GetAnimatedImageList().IsShown() || gain.GetGraphWin().IsShown());
}

TEST_F(RegistrationDisplayTest, PrintsOneLine) {
    gain.GetRegisterInfo() = KCRegisterInfo(kRegister_Wheel, KEModifier::Shift);
    gain.SetRegisterModifier(KEModifier::Alt, true);
    gain.SetValue(250.5);
    KCFixedString<127> text("> ");
    gain.PrintRegistrationData(text);
    EXPECT_EQ(text, "> \"Gain\" Wheel + Shift + Alt at 250.500\n");
    text.clear();
    KCParamRegistrationData().PrintRegistrationData(text);
    EXPECT_EQ(text, "\"\" Highlight at 0.000\n");
}

} // namespace
} // namespace kvTest
