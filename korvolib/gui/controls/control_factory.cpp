// The controls of the library by the names that descriptions give them.

#include <korvolib/gui/control_for_automation.h>
#include <korvolib/gui/controls/button.h>
#include <korvolib/gui/controls/fader.h>
#include <korvolib/gui/controls/knob.h>
#include <korvolib/gui/controls/label.h>
#include <korvolib/gui/controls/level_plot.h>
#include <korvolib/gui/controls/menu.h>
#include <korvolib/gui/controls/value_text.h>
#include <korvolib/gui/controls/xy_pad.h>
#include <korvolib/gui/x_cstandardgui.h>

#include <new>
#include <string_view>

namespace kvKorvoV12_9_0_320 {

namespace {

template <class Control>
std::unique_ptr<KCGUIControl> Make() {
    try {
        return std::make_unique<Control>();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

struct sCONTROL_CLASS {
    std::string_view name;
    std::unique_ptr<KCGUIControl> (*make)();
};

constexpr sCONTROL_CLASS kClasses[] = {
    {"Knob", Make<KCKnob>},
    {"Fader", Make<KCFader>},
    {"Button", Make<KCButton>},
    {"Menu", Make<KCMenu>},
    {"ValueText", Make<KCValueText>},
    {"XYPad", Make<KCXYPad>},
    {"Label", Make<KCLabel>},
    {"LevelPlot", Make<KCLevelPlot>},
    {"ControlForAutomation", Make<CControlForAutomation_X>},
};

} // namespace

std::unique_ptr<KCGUIControl> MakeControlOfClass(const char* className) {
    if (className == nullptr)
        return nullptr;
    for (const sCONTROL_CLASS& entry : kClasses)
        if (entry.name == className)
            return entry.make();
    return nullptr;
}

} // namespace kvKorvoV12_9_0_320
