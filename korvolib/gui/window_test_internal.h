// For the tests of windows: an algorithm with one parameter of each kind, a description with every class, and
// events.
#pragma once

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/gui/x_cstandardgui.h>
#include <korvolib/undo/undo_api.h>
#include <tests/support/recording_algorithm.h>

namespace kvWindowTest {

using namespace kvKorvo;
using PluginViewManager::KCEventData;
using PluginViewManager::KEEventType;

inline constexpr size_t kGain = 0, kPan = 1, kMode = 2, kTone = 3, kWidth = 4;

inline std::vector<sCONTROL_PARAM> Params() {
    return {kvTest::LinearParam("Gain", -24.0, 24.0), kvTest::LinearParam("Pan", -100.0, 100.0),
            kvTest::ToggleParam("Mode", 4), kvTest::LinearParam("Tone"), kvTest::LinearParam("Width")};
}

inline std::string WindowXML(const std::string& controls, const std::string& drawables = {}) {
    return "<GUI Width=\"400\" Height=\"300\">\n<Drawables>" + drawables + "</Drawables>\n<Controls>\n" + controls +
           "\n</Controls></GUI>";
}

/// A control that answers to its class's own gestures.
inline std::string ControlXML(const char* className, const char* name, const char* rect, const char* param,
                              const char* more = "") {
    return std::string("<Control Class=\"") + className + "\" Name=\"" + name + "\" Rect=\"" + rect + "\" " + more +
           "><ParameterList><Parameter Name=\"" + param + "\"/></ParameterList></Control>\n";
}

inline std::string KnobXML(const char* name, const char* rect, const char* param, const char* more = "") {
    return ControlXML("Knob", name, rect, param, more);
}

/// Every class once, side by side, on a panel.
inline std::string EveryClassXML() {
    return WindowXML(
        KnobXML("Gain", "10 10 60 80", "Gain") + ControlXML("Fader", "Pan", "80 10 40 120", "Pan") +
            ControlXML("Fader", "Across", "10 140 120 30", "Pan", "Direction=\"Horizontal\"") +
            ControlXML("Button", "Toggle", "140 10 60 30", "Mode") +
            ControlXML("Menu", "Mode", "140 50 80 40", "Mode") +
            ControlXML("ValueText", "Tone Text", "140 100 80 24", "Tone") +
            "<Control Class=\"XYPad\" Name=\"Pad\" Rect=\"240 10 120 120\" Direction=\"Both\">"
            "<ParameterList><Parameter Name=\"Tone\" Role=\"X\"/><Parameter Name=\"Width\" Role=\"Y\"/>"
            "</ParameterList></Control>\n" +
            ControlXML("Label", "Caption", "10 180 100 20", "Gain") +
            ControlXML("LevelPlot", "Plot", "140 150 220 100", "Gain"),
        "<Drawable Rect=\"4 4 392 292\" Color=\"#22252C\" FrameColor=\"#404550\" Radius=\"6\"/>"
        "<Drawable Rect=\"12 270 100 20\" Text=\"Every class\" TextHeight=\"12\"/>");
}

inline KCEventData At(KEEventType type, double x, double y, KUModifiers modifiers = {}) {
    KCEventData event;
    event.type = type;
    event.position = event.dragStart = {x, y};
    event.modifiers = modifiers;
    return event;
}

inline KCEventData Down(double x, double y, KUModifiers modifiers = {}) {
    return At(KEEventType::MouseDown, x, y, modifiers);
}
inline KCEventData DragTo(double x, double y, KUModifiers modifiers = {}) {
    return At(KEEventType::MouseDrag, x, y, modifiers);
}
inline KCEventData Up(double x, double y) { return At(KEEventType::MouseUp, x, y); }
inline KCEventData Over(double x, double y, double seconds = 0.0) {
    KCEventData event = At(KEEventType::MouseOver, x, y);
    event.timeSeconds = seconds;
    return event;
}
inline KCEventData Finger(KEEventType type, int64_t id, double x, double y) {
    KCEventData event = At(type, x, y);
    event.touchID = id;
    return event;
}
inline KCEventData Key(uint32_t key, KUModifiers modifiers = {}) {
    KCEventData event = At(KEEventType::Key, 0, 0, modifiers);
    event.key = key;
    return event;
}

/// Of a log of RecordingAlgorithm: each touch has its release behind it. (Two controls of one parameter may hold it
/// at once, each with its own finger.)
inline bool IsBalanced(const std::vector<std::string>& log) {
    std::map<std::string, int> held;
    for (const std::string& line : log) {
        if (line.starts_with("touch "))
            ++held[line.substr(6)];
        if (line.starts_with("release ") && --held[line.substr(8)] < 0)
            return false;
    }
    return std::all_of(held.begin(), held.end(), [](const auto& each) { return each.second == 0; });
}

inline size_t Count(const std::vector<std::string>& log, const std::string& line) {
    return static_cast<size_t>(std::count(log.begin(), log.end(), line));
}

struct sWINDOW {
    kvTest::RecordingAlgorithm algorithm{Params()};
    CStandardGUI_X window;

    explicit sWINDOW(const std::string& xml = EveryClassXML()) {
        algorithm.FinishCreate();
        algorithm.log.reserve(1 << 16);
        result = window.Create(algorithm, xml.c_str());
        algorithm.log.clear();
    }
    int32_t result = 0;

    double State(size_t index) const { return algorithm.GetParamState(index); }
    KCGUIControl& Control(const char* name) {
        KCGUIControl* const control = window.FindControl(KCFixedString<127>(name));
        if (control == nullptr)
            throw std::runtime_error(std::string("no control is named ") + name);
        return *control;
    }
    void Drag(double x, double y, double dx, double dy) {
        window.MouseDown(Down(x, y));
        window.MouseDrag(DragTo(x + dx, y + dy));
        window.MouseUp(Up(x + dx, y + dy));
    }
};

/// A history that a window writes its steps to.
struct sHISTORY {
    Undo::KTUndoManagerType* manager = nullptr;

    explicit sHISTORY(cALGORITHM& algorithm) {
        (void)Undo::API::CreateDefaultUndoManager(manager);
        (void)Undo::API::StartHistory(manager, &algorithm);
    }
    ~sHISTORY() { (void)Undo::API::DisposeUndoManager(manager); }
    sHISTORY(const sHISTORY&) = delete;
    sHISTORY& operator=(const sHISTORY&) = delete;

    size_t GetNumSteps() const { return Undo::API::GetUndoStackSize(manager); }
    std::string GetLastName() const {
        KCFixedString<255> name;
        (void)Undo::API::GetLastUndoCommandName(manager, name);
        return name.c_str();
    }
};

} // namespace kvWindowTest
