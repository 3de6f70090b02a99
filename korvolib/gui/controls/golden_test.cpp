// What every control records, held against files of this repository: at three values, disabled and selected.
//
// With KORVO_WRITE_GOLDEN=1 the tests write the files anew, and fail, so that nobody forgets to look at the
// difference.

#include <korvolib/gui/controls/controls_test_internal.h>
#include <tests/support/source_file.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace kvTest {
namespace {

struct sGOLDEN {
    const char* file;
    const char* className;
    const char* attributes;
    const char* parameters;
};

// What gtest says of a case.
void PrintTo(const sGOLDEN& golden, std::ostream* out) { *out << golden.file; }

constexpr sGOLDEN kGolden[] = {
    {"knob", "Knob", R"(Rect="8 16 72 96")", R"(<Parameter Name="Level"/>)"},
    {"knob_both_ways", "Knob", R"(Rect="8 16 72 96" Text="Drive")", R"(<Parameter Name="Gain"/>)"},
    {"fader", "Fader", R"(Rect="8 16 64 200")", R"(<Parameter Name="Level"/>)"},
    {"fader_lying", "Fader", R"(Rect="8 16 160 40" Direction="Horizontal")", R"(<Parameter Name="Gain"/>)"},
    {"button", "Button", R"(Rect="8 16 80 24")", R"(<Parameter Name="Mode"/>)"},
    {"button_radio", "Button", R"(Rect="8 16 80 24" Text="Third")",
     R"(<Parameter Name="Mode" FixedState="2"><Register Type="SetOnPress"/></Parameter>)"},
    {"menu", "Menu", R"(Rect="8 16 120 40")", R"(<Parameter Name="Mode"/>)"},
    {"value_text", "ValueText", R"(Rect="8 16 80 24")", R"(<Parameter Name="Gain"/>)"},
    {"xy_pad", "XYPad", R"(Rect="8 16 160 160")",
     R"(<Parameter Name="Gain" Role="X"/><Parameter Name="Level" Role="Y"/>)"},
    {"label", "Label", R"(Rect="8 16 80 16")", R"(<Parameter Name="Gain" Role="Value"/>)"},
    {"level_plot", "LevelPlot", R"(Rect="8 16 24 160")", R"(<Parameter Name="Level"/>)"},
    {"level_plot_graph", "LevelPlot", R"(Rect="8 16 160 96")",
     R"(<Parameter Name="Level"><ParamDependantGraphWin Rect="0 0 160 96" MinX="0" MaxX="1" MinY="0" MaxY="10"/></Parameter>)"},
};

std::string Trimmed(const std::string& line) {
    const size_t first = line.find_first_not_of(' ');
    return first == std::string::npos ? "" : line.substr(first);
}

// Where a record stands in the stream, and what is as it is by default.
bool IsNoise(const std::string& text) {
    static constexpr const char* kNoise[] = {
        "stream_offset:",         "size:",         "checksum:", "frame children:",        "owner: 0",
        "flags: Antialias",       "num_elements:", "angle: 0",  "stroke_pattern: 0xFFFF", "slices_num: 0",
        "clip_rect: [0, 0, 0, 0]"};
    return std::any_of(std::begin(kNoise), std::end(kNoise),
                       [&text](const char* noise) { return text.rfind(noise, 0) == 0; });
}

// One line for each record, so that the files stay small and a difference is seen at a glance.
std::string OneLinePerRecord(const std::string& yaml) {
    std::istringstream lines(yaml.substr(0, yaml.find("- KCGraphicStreamToYAML")));
    std::string result;
    bool isFirstOfRecord = false;
    for (std::string line; std::getline(lines, line);) {
        const std::string text = Trimmed(line);
        if (text.rfind("- ", 0) == 0) {
            result += (result.empty() ? "  " : "}\n  ") + text + " {";
            isFirstOfRecord = true;
        } else if (!IsNoise(text)) {
            result += (isFirstOfRecord ? "" : ", ") + text;
            isFirstOfRecord = false;
        }
    }
    return result + "}\n";
}

void SetAll(ControlsAlgorithm& algorithm, double share) {
    for (size_t index = 0; index < algorithm.GetNumParams(); ++index)
        algorithm.SetState(index, algorithm.GetParamType(index) == 0
                                      ? std::round(share * (algorithm.GetParamNumStates(index) - 1))
                                      : share * 1000.0);
}

void FillGraph(cALGORITHM& algorithm) {
    sCONTROL_PARAM& level = *algorithm.GetParam(1);
    ASSERT_TRUE(level.ResizeGraph(9));
    for (int point = 0; point <= 8; ++point)
        level.GetGraph().AddPoint({point / 8.0, 10.0 * (point / 8.0) * (point / 8.0)});
}

std::string DrawnOf(const sGOLDEN& golden) {
    ControlsAlgorithm algorithm;
    FillGraph(algorithm);
    const std::unique_ptr<KCGUIControl> control =
        MakeControl(algorithm, golden.className, golden.attributes, golden.parameters);
    std::string drawn;
    const auto add = [&](const char* title) {
        drawn += std::string(title) + ":\n" + OneLinePerRecord(YAMLOf(*control));
    };
    SetAll(algorithm, 0.0);
    add("value 0");
    SetAll(algorithm, 1.0);
    add("value 1000");
    SetAll(algorithm, 0.5);
    add("value 500");
    control->SetDisabled();
    add("value 500, disabled");
    control->ClearDisabled();
    EXPECT_TRUE(control->SetSelection(1));
    add("value 500, selected");
    return drawn;
}

class EveryControl : public testing::TestWithParam<sGOLDEN> {};

void ExpectGolden(const char* file, const std::string& drawn) {
    const std::string path = std::string("korvolib/gui/golden/") + file + ".yaml";
    if (std::getenv("KORVO_WRITE_GOLDEN") != nullptr) {
        WriteSourceFile(path, drawn);
        FAIL() << path << " has been written anew";
    }
    EXPECT_EQ(drawn, ReadSourceFile(path));
}

TEST_P(EveryControl, DrawsWhatItsGoldenFileSays) { ExpectGolden(GetParam().file, DrawnOf(GetParam())); }

// In a window of one column, of several, and of one that scrolls.
TEST(OpenMenu, DrawsWhatItsGoldenFileSays) {
    ControlsAlgorithm algorithm;
    const std::unique_ptr<KCGUIControl> control =
        MakeControl(algorithm, "Menu", R"(Rect="8 16 120 24")", R"(<Parameter Name="Mode"/>)");
    algorithm.SetState(2, 2.0);
    const KCControlPopupMenuHandler& choices = *control->GetControlPopupMenuHandler();
    std::string drawn;
    for (const KUSize<double> window : {KUSize<double>{200, 200}, {400, 60}, {140, 68}}) {
        KCDrawnMenu menu;
        menu.Open(choices, control->GetTheme(), control->GetBounds(), window);
        kvGS::KCGraphicStreamBinaryWriter writer;
        menu.Highlight(1);
        menu.Draw(writer, *control, choices);
        drawn += std::to_string(menu.GetNumColumns()) + (menu.IsScrolling() ? ", scrolling:\n" : ":\n") +
                 OneLinePerRecord(YAMLOf(writer));
    }
    ExpectGolden("open_menu", drawn);
}

INSTANTIATE_TEST_SUITE_P(Golden, EveryControl, testing::ValuesIn(kGolden),
                         [](const auto& test) { return std::string(test.param.file); });

} // namespace
} // namespace kvTest
