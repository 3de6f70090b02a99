#include "session.h"

#include "midi_text.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

struct sActionText {
    std::string operator()(const sSET_PARAM& set) const {
        return "set " + set.param + Goal(set) + Hand(set.isGesture);
    }
    std::string operator()(const sSET_CONTROL& set) const { return "control " + set.controlName + Goal(set); }
    std::string operator()(const sHOLD_CONTROL& hold) const {
        return (hold.isHeld ? "touch control " : "release control ") + hold.controlName;
    }
    std::string operator()(const sSEND_MIDI& midi) const { return "MIDI " + MidiEventText(midi.event); }
    std::string operator()(const sLEARN_CONTROL& learn) const { return "learn " + learn.controlName; }
    std::string operator()(const sDETACH_CONTROL& detach) const { return "detach " + detach.controlName; }
    std::string operator()(const sSTEP_PARAM& step) const {
        return "step " + step.param + " by " + (step.by > 0 ? "+" : "") + std::to_string(step.by) +
               Hand(step.isGesture);
    }
    std::string operator()(const sENABLE_LINK& link) const {
        return (link.isEnabled ? "enable link group " : "disable link group ") + std::to_string(link.group);
    }
    std::string operator()(const sSWITCH_SETUP& change) const {
        return std::string("setup ") + Letter(change.setup);
    }
    std::string operator()(const sCOPY_SETUP& copy) const {
        return std::string("copy setup ") + Letter(copy.from) + " to " + Letter(copy.to);
    }
    std::string operator()(const sUSE_HISTORY& use) const { return kHistoryWords[static_cast<size_t>(use.what)]; }
    std::string operator()(const sUSE_MOUSE& mouse) const {
        return Mouse(mouse) + With(mouse.modifiers.value_or(KUModifiers()));
    }
    std::string operator()(const sTURN_WHEEL& wheel) const {
        return "wheel by " + (wheel.by.x == 0.0 ? Signed(wheel.by.y) : Pair(wheel.by)) +
               Place(" over ", wheel.place) + With(wheel.modifiers);
    }
    std::string operator()(const sPRESS_KEY& key) const { return "key " + key.name + With(key.modifiers); }
    std::string operator()(const sTYPE_TEXT& type) const {
        return "type " + Quoted(type.text) + (type.control.empty() ? "" : " into " + type.control);
    }
    std::string operator()(const sCHOOSE_FROM_MENU& menu) const {
        return "choose " + (menu.choice ? std::to_string(*menu.choice) : Quoted(menu.text)) + " from the menu of " +
               menu.control;
    }
    std::string operator()(const sTOUCH& touch) const {
        return "finger " + std::to_string(touch.finger) + " " + Touch(touch);
    }
    std::string operator()(const sHOVER& hover) const {
        return "hover" + Place(" over ", hover.place) + With(hover.modifiers);
    }

    template <class Set>
    static std::string Goal(const Set& set) {
        const char* const unit = set.by == sSET_PARAM::KEBy::State ? " to state " : " to ";
        return unit + (set.by == sSET_PARAM::KEBy::Text ? Quoted(set.text) : NumberText(set.number));
    }
    static std::string Mouse(const sUSE_MOUSE& mouse) {
        switch (mouse.what) {
        case sUSE_MOUSE::KEWhat::Press:
            return "press" + Clicks(mouse.numClicks) + Place(" ", mouse.place);
        case sUSE_MOUSE::KEWhat::Drag:
            return "drag by " + Pair(mouse.by);
        case sUSE_MOUSE::KEWhat::Release:
            return "release";
        case sUSE_MOUSE::KEWhat::Lost:
            return "lose the pointer";
        case sUSE_MOUSE::KEWhat::Click:
            return "click" + Place(" ", mouse.place);
        case sUSE_MOUSE::KEWhat::DoubleClick:
            break;
        }
        return "double click" + Place(" ", mouse.place);
    }
    static std::string Touch(const sTOUCH& touch) {
        switch (touch.what) {
        case sTOUCH::KEWhat::Down:
            return "down" + Place(" on ", touch.place);
        case sTOUCH::KEWhat::Drag:
            return "drags by " + Pair(touch.by);
        case sTOUCH::KEWhat::Up:
            return "up";
        case sTOUCH::KEWhat::Long:
            return "stays";
        case sTOUCH::KEWhat::Pinch:
            break;
        }
        return "pinches by " + NumberText(touch.scale);
    }
    static std::string Clicks(int32_t numClicks) {
        return numClicks > 1 ? ", click " + std::to_string(numClicks) + "," : "";
    }
    static std::string Place(const char* before, const sHAND_PLACE& place) {
        if (place.control.empty())
            return " at " + Pair(place.at);
        constexpr KUPoint<double> kMiddle{0.5, 0.5};
        return before + place.control + (place.at == kMiddle ? "" : " at " + Pair(place.at));
    }
    static std::string Pair(KUPoint<double> pair) { return NumberText(pair.x) + ", " + NumberText(pair.y); }
    static std::string Signed(double number) {
        const std::string text = NumberText(number);
        return number > 0 ? std::string("+").append(text) : text;
    }
    static std::string With(KUModifiers modifiers) {
        return modifiers.IsEmpty() ? "" : " with " + ModifiersText(modifiers);
    }
    static const char* Hand(bool isGesture) { return isGesture ? ", by hand" : ""; }
    static char Letter(EPluginSetup setup) { return setup == kPluginSetup_A ? 'A' : 'B'; }
};

} // namespace

std::string DescribeAction(const SessionAction& action) { return std::visit(sActionText(), action); }

} // namespace kvKorvoV12_9_0_320::kvHost
