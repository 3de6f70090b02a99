// What the tests of this room share: an algorithm with parameters of several kinds, a home for controls, controls
// from descriptions, and what a control draws.
#pragma once

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/to_yaml.h>
#include <korvolib/gui/theme.h>
#include <korvolib/gui/x_cstandardgui.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>
#include <tests/support/recording_algorithm.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace kvTest {

/// 0 "Gain" −12 … 12 dB with the label "Boost", 1 "Level" 0 … 10 without a label, 2 "Mode" of four states, 3 "Pan"
/// −1 … 1.
class ControlsAlgorithm : public RecordingAlgorithm {
  public:
    /// The gain in its middle, the rest at its lowest.
    ControlsAlgorithm() : RecordingAlgorithm(Params()) {
        FinishCreate();
        SetState(0, 500.0);
        TakeLog();
    }

    void SetState(size_t index, double state) {
        BUFFER_HEADER* chain = UpdateParamRequestState(index, state);
        ExecuteAndDisposeBuffer(chain);
    }

  private:
    static std::vector<sCONTROL_PARAM> Params() {
        std::vector<sCONTROL_PARAM> params = {LinearParam("Gain", -12.0, 12.0, 0.1),
                                              LinearParam("Level", 0.0, 10.0, 0.1), ToggleParam("Mode", 4),
                                              LinearParam("Pan", -1.0, 1.0)};
        params[0].SetLabelString(KCFixedString<127>("Boost"));
        params[0].SetUnitsString(KCFixedString<127>("dB"));
        return params;
    }
};

/// A window's part in a control's life: text focus and marks.
class ControlsHome : public KCControlHome {
  public:
    void AddControlToRedraw(KCGUIControl&) noexcept override { ++numMarks; }
    const KCTheme& GetTheme() const noexcept override { return KCTheme::Default(); }
    KCGUIControl* FindControl(const KCFixedStringBase&) noexcept override { return nullptr; }
    KCGUIControl* GetTextFocus() const noexcept override { return focus; }
    void SetTextFocus(KCGUIControl* control) noexcept override { focus = control; }

    int numMarks = 0;
    KCGUIControl* focus = nullptr;
};

/// `attributes` of the "Control" element, `parameters` of its list.
template <class Control = KCGUIControl>
std::unique_ptr<Control> MakeControl(cALGORITHM& algorithm, const char* className, const std::string& attributes,
                                     const std::string& parameters) {
    const std::string xml = "<Control Class=\"" + std::string(className) + "\" Name=\"It\" " + attributes +
                            "><ParameterList>" + parameters + "</ParameterList></Control>";
    KCXMLElement element;
    EXPECT_EQ(element.Parse(xml.data(), xml.size()), kErr_NoErr) << xml;
    std::unique_ptr<KCGUIControl> control = MakeControlOfClass(className);
    std::vector<sDESCRIPTION_PROBLEM> problems;
    EXPECT_EQ(control->ReadFromXMLWithAlg(element, algorithm, problems), kErr_NoErr);
    EXPECT_TRUE(problems.empty()) << problems.front().Text.c_str();
    EXPECT_EQ(control->FinishCreate(), kErr_NoErr);
    return std::unique_ptr<Control>(dynamic_cast<Control*>(control.release()));
}

inline std::string YAMLOf(const kvGS::KCGraphicStreamBinaryWriter& writer) {
    kvGS::KCGraphicStreamToYAML yaml;
    EXPECT_EQ(yaml.ExecStream(writer), kErr_NoErr);
    return std::string(yaml.GetText());
}

inline std::string YAMLOf(const KCGUIControl& control) {
    kvGS::KCGraphicStreamBinaryWriter writer;
    control.Draw(writer);
    return YAMLOf(writer);
}

inline bool Shows(const KCGUIControl& control, const std::string& text) {
    return YAMLOf(control).find("the_data: \"" + text + "\"") != std::string::npos;
}

// Events ----------------------------------------------------------------------------------------------------------

using PluginViewManager::KCEventData;

inline KCEventData At(double x, double y) {
    KCEventData event;
    event.position = event.dragStart = {x, y};
    return event;
}

/// Executes and disposes of what an event made.
inline void Execute(cALGORITHM& algorithm, cALGORITHM::BUFFER_HEADER* chain) {
    algorithm.ExecuteAndDisposeBuffer(chain);
}

inline bool Press(cALGORITHM& algorithm, KCGUIControl& control, const KCEventData& event) {
    KURect<double> redraw;
    bool isHandled = false;
    Execute(algorithm, control.MouseDown(event, redraw, isHandled));
    return isHandled;
}

inline void Lift(cALGORITHM& algorithm, KCGUIControl& control, const KCEventData& event) {
    KURect<double> redraw;
    Execute(algorithm, control.MouseUp(event, redraw));
}

inline bool Click(cALGORITHM& algorithm, KCGUIControl& control, double x, double y) {
    const bool isHandled = Press(algorithm, control, At(x, y));
    Lift(algorithm, control, At(x, y));
    return isHandled;
}

inline void Drag(cALGORITHM& algorithm, KCGUIControl& control, double dx, double dy, KUModifiers keys = {}) {
    KURect<double> redraw;
    const KUPoint<double> from = control.GetBounds().GetCentre();
    KCEventData press = At(from.x, from.y);
    press.modifiers = keys;
    ASSERT_TRUE(Press(algorithm, control, press));
    KCEventData event = At(from.x + dx, from.y - dy);
    event.dragStart = from;
    event.modifiers = keys;
    Execute(algorithm, control.MouseDrag(event, dx, dy, redraw));
    Lift(algorithm, control, event);
}

inline bool PressKey(cALGORITHM& algorithm, KCGUIControl& control, uint32_t key) {
    KCEventData event;
    event.key = key;
    bool isHandled = false, isGestureEnd = false;
    Execute(algorithm, control.HandleKeyEvent(event, isHandled, isGestureEnd));
    return isHandled;
}

} // namespace kvTest
