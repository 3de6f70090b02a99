// Reads what a hand does at the window: the keys beside 'at' stand in a mapping of their own, for each has words of
// its own.
#include <array>
#include <utility>

#include "session_keys.h"
#include "session_kinds_internal.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

using namespace PluginViewManager;

constexpr double kFurthestPixel = 100000.0;
constexpr double kMostNotches = 1000.0;
constexpr double kLargestPinch = 100.0;
constexpr int32_t kMostFingers = 10;
constexpr int32_t kMostClicks = 3;
constexpr int32_t kLastChoice = 1000000;

constexpr std::array<std::pair<const char*, KEModifier>, kNumModifiers> kModifierNames = {
    {{"Primary", KEModifier::Primary},
     {"Secondary", KEModifier::Secondary},
     {"Shift", KEModifier::Shift},
     {"Alt", KEModifier::Alt}}};

uint32_t ReadKeyCode(const KCEventFields& fields, std::string_view key) {
    const std::string text = fields.Text(key);
    const uint32_t code = KeyOfName(text);
    if (code == kKey_None)
        fields.Fail(key, InApostrophes(key) + " must be one character or " + KeyNames() + ", not " + Quoted(text));
    return code;
}

bool AddModifier(const std::string& name, KUModifiers& modifiers) {
    for (const auto& [known, modifier] : kModifierNames)
        if (name == known) {
            modifiers.Set(modifier, true);
            return true;
        }
    return false;
}

KUModifiers ReadModifiers(const KCEventFields& fields) {
    constexpr const char* kExpected = "a list of Primary, Secondary, Shift and Alt";
    KUModifiers modifiers;
    if (!fields.Has("with"))
        return modifiers;
    for (const std::string& text : fields.Texts("with", kExpected))
        if (!AddModifier(text, modifiers))
            fields.Fail("with", std::string("'with' must be ") + kExpected + ", not " + Quoted(text));
    return modifiers;
}

// A list is a point of the window, a text a control, or a share of one.
sHAND_PLACE ReadPlace(const KCEventFields& fields, std::string_view key) {
    if (fields.IsList(key)) {
        if (fields.Has("place"))
            fields.Fail("place", "'place' is a place on a control, and " + InApostrophes(key) + " names a point");
        return {"", fields.Pair(key, kFurthestPixel)};
    }
    sHAND_PLACE place{fields.Text(key), {0.5, 0.5}};
    if (fields.Has("place"))
        place.at = fields.Pair("place", 1.0);
    if (place.at.x < 0.0 || place.at.y < 0.0)
        fields.Fail("place", "'place' counts from the control's top left corner, [0, 0], to the other, [1, 1]");
    return place;
}

sUSE_MOUSE Mouse(const KCEventFields& fields, sUSE_MOUSE::KEWhat what) {
    sUSE_MOUSE mouse;
    mouse.what = what;
    if (fields.Has("with"))
        mouse.modifiers = ReadModifiers(fields);
    return mouse;
}

template <sUSE_MOUSE::KEWhat What>
SessionAction ReadMouseAt(const KCEventFields& fields) {
    sUSE_MOUSE mouse = Mouse(fields, What);
    const char* const key = What == sUSE_MOUSE::KEWhat::Press   ? "press"
                            : What == sUSE_MOUSE::KEWhat::Click ? "click"
                                                                : "double click";
    mouse.place = ReadPlace(fields, key);
    if (fields.Has("clicks"))
        mouse.numClicks = fields.WholeNumber("clicks", 1, kMostClicks);
    return mouse;
}

SessionAction ReadMouseDrag(const KCEventFields& fields) {
    sUSE_MOUSE mouse = Mouse(fields, sUSE_MOUSE::KEWhat::Drag);
    mouse.by = fields.Pair("drag", kFurthestPixel);
    return mouse;
}

SessionAction ReadMouseRelease(const KCEventFields& fields) {
    fields.Nothing("release");
    return Mouse(fields, sUSE_MOUSE::KEWhat::Release);
}

SessionAction ReadMouseLost(const KCEventFields& fields) {
    fields.Nothing("lost");
    return Mouse(fields, sUSE_MOUSE::KEWhat::Lost);
}

const sSESSION_KINDS& MouseKinds() {
    using KEWhat = sUSE_MOUSE::KEWhat;
    static const sSESSION_KINDS kinds = {"'mouse'",
                                         {},
                                         {{"press", {"place", "with", "clicks"}, ReadMouseAt<KEWhat::Press>},
                                          {"drag", {"with"}, ReadMouseDrag},
                                          {"release", {"with"}, ReadMouseRelease},
                                          {"click", {"place", "with"}, ReadMouseAt<KEWhat::Click>},
                                          {"double click", {"place", "with"}, ReadMouseAt<KEWhat::DoubleClick>},
                                          {"lost", {}, ReadMouseLost}}};
    return kinds;
}

sTOUCH Touch(const KCEventFields& fields, sTOUCH::KEWhat what) {
    sTOUCH touch;
    touch.what = what;
    if (fields.Has("finger"))
        touch.finger = fields.WholeNumber("finger", 1, kMostFingers);
    return touch;
}

SessionAction ReadTouchDown(const KCEventFields& fields) {
    sTOUCH touch = Touch(fields, sTOUCH::KEWhat::Down);
    touch.place = ReadPlace(fields, "down");
    return touch;
}

SessionAction ReadTouchDrag(const KCEventFields& fields) {
    sTOUCH touch = Touch(fields, sTOUCH::KEWhat::Drag);
    touch.by = fields.Pair("drag", kFurthestPixel);
    return touch;
}

SessionAction ReadTouchPinch(const KCEventFields& fields) {
    sTOUCH touch = Touch(fields, sTOUCH::KEWhat::Pinch);
    touch.scale = fields.Number("pinch", 1.0 / kLargestPinch, kLargestPinch);
    return touch;
}

SessionAction ReadTouchUp(const KCEventFields& fields) {
    fields.Nothing("up");
    return Touch(fields, sTOUCH::KEWhat::Up);
}

SessionAction ReadTouchLong(const KCEventFields& fields) {
    fields.Nothing("long");
    return Touch(fields, sTOUCH::KEWhat::Long);
}

const sSESSION_KINDS& TouchKinds() {
    static const sSESSION_KINDS kinds = {"'touch'",
                                         {"finger"},
                                         {{"down", {"place"}, ReadTouchDown},
                                          {"drag", {}, ReadTouchDrag},
                                          {"pinch", {}, ReadTouchPinch},
                                          {"long", {}, ReadTouchLong},
                                          {"up", {}, ReadTouchUp}}};
    return kinds;
}

SessionAction ReadWheelOver(const KCEventFields& fields) {
    sTURN_WHEEL wheel{ReadPlace(fields, "over"), {}, ReadModifiers(fields)};
    if (fields.IsList("by"))
        wheel.by = fields.Pair("by", kMostNotches);
    else
        wheel.by.y = fields.Number("by", -kMostNotches, kMostNotches);
    return wheel;
}

SessionAction ReadKeyPress(const KCEventFields& fields) {
    return sPRESS_KEY{ReadKeyCode(fields, "press"), fields.Text("press"), ReadModifiers(fields)};
}

SessionAction ReadTypeText(const KCEventFields& fields) {
    return sTYPE_TEXT{fields.Text("text"), fields.Text("into")};
}

SessionAction ReadMenuOf(const KCEventFields& fields) {
    sCHOOSE_FROM_MENU menu;
    menu.control = fields.Text("of");
    if (fields.Has("choose") == fields.Has("text"))
        fields.Fail("of", "'menu' needs one of 'choose', a number from 0, and 'text', what it means");
    if (fields.Has("choose"))
        menu.choice = fields.WholeNumber("choose", 0, kLastChoice);
    else
        menu.text = fields.Text("text");
    return menu;
}

SessionAction ReadHoverOver(const KCEventFields& fields) {
    return sHOVER{ReadPlace(fields, "over"), ReadModifiers(fields)};
}

// The key of an event and a mapping of its own with one kind of contents.
SessionAction ReadOnlyKind(const KCEventFields& fields, std::string_view key, const std::string& expected,
                           const sSESSION_KINDS& kinds) {
    const KCEventFields part = fields.Part(key, expected);
    return FindKind(part, kinds).read(part);
}

} // namespace

SessionAction ReadMouse(const KCEventFields& fields) {
    return ReadOnlyKind(fields, "mouse", "release, lost, or a mapping such as {press: NAME}", MouseKinds());
}

SessionAction ReadTouch(const KCEventFields& fields) {
    return ReadOnlyKind(fields, "touch", "up, long, or a mapping such as {down: NAME, finger: 2}", TouchKinds());
}

SessionAction ReadWheel(const KCEventFields& fields) {
    static const sSESSION_KINDS kinds = {"'wheel'", {}, {{"over", {"place", "by", "with"}, ReadWheelOver}}};
    if (!fields.IsMap("wheel"))
        fields.Fail("wheel", "'wheel' must be a mapping such as {over: NAME, by: 2}");
    return ReadOnlyKind(fields, "wheel", "", kinds);
}

SessionAction ReadKey(const KCEventFields& fields) {
    static const sSESSION_KINDS kinds = {"'key'", {}, {{"press", {"with"}, ReadKeyPress}}};
    if (!fields.IsMap("key"))
        return sPRESS_KEY{ReadKeyCode(fields, "key"), fields.Text("key"), {}};
    return ReadOnlyKind(fields, "key", "", kinds);
}

SessionAction ReadType(const KCEventFields& fields) {
    static const sSESSION_KINDS kinds = {"'type'", {}, {{"text", {"into"}, ReadTypeText}}};
    if (!fields.IsMap("type"))
        return sTYPE_TEXT{fields.Text("type"), ""};
    return ReadOnlyKind(fields, "type", "", kinds);
}

SessionAction ReadMenu(const KCEventFields& fields) {
    static const sSESSION_KINDS kinds = {"'menu'", {}, {{"of", {"choose", "text"}, ReadMenuOf}}};
    if (!fields.IsMap("menu"))
        fields.Fail("menu", "'menu' must be a mapping such as {of: NAME, text: RMS}");
    return ReadOnlyKind(fields, "menu", "", kinds);
}

SessionAction ReadHover(const KCEventFields& fields) {
    static const sSESSION_KINDS kinds = {"'hover'", {}, {{"over", {"place", "with"}, ReadHoverOver}}};
    if (!fields.IsMap("hover"))
        return sHOVER{ReadPlace(fields, "hover"), {}};
    return ReadOnlyKind(fields, "hover", "", kinds);
}

std::string ModifiersText(KUModifiers modifiers) {
    std::vector<std::string> names;
    for (const auto& [name, modifier] : kModifierNames)
        if (modifiers.Has(modifier))
            names.emplace_back(name);
    return JoinedText(names, " and ");
}

} // namespace kvKorvoV12_9_0_320::kvHost
