// What a hand does at a plug-in's window, as events of a session: pointer, wheel, fingers, keys, typed text, menus.
// Plain values, as the file says them; names of controls are looked up by the player.
//
// Lengths are pixels of the window at scale 1, x to the right and y downwards, as on screen.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <korvolib/gui/event_data.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// Where something goes down: on a control, or at a point of the window.
struct sHAND_PLACE {
    std::string control;      // by its name, or by that of the parameter it leads; empty: a point of the window
    KUPoint<double> at{0, 0}; // of a control: the share of its width and height, 0 … 1; of the window: pixels
};

/// `mouse:`. Click and double click are whole gestures; press, drag and release are parts of one.
struct sUSE_MOUSE {
    enum class KEWhat { Press, Drag, Release, Lost, Click, DoubleClick };
    KEWhat what = KEWhat::Release;
    sHAND_PLACE place;                    // of press, click and double click
    KUPoint<double> by{0, 0};             // of drag
    int32_t numClicks = 1;                // of press: 2 for the second of a double click
    std::optional<KUModifiers> modifiers; // none said: those that are down already; of a press: none
};

/// `wheel:` notches; up and to the right are more.
struct sTURN_WHEEL {
    sHAND_PLACE place;
    KUPoint<double> by{0, 0};
    KUModifiers modifiers;
};

/// `key:`, for what is selected or has the text focus.
struct sPRESS_KEY {
    uint32_t key = 0; // a KEKeyCode or a code point
    std::string name; // as the file says it
    KUModifiers modifiers;
};

/// `type:`, letter by letter; or a whole text for a control, as if typed and committed there.
struct sTYPE_TEXT {
    std::string text;
    std::string control; // empty: letter by letter, into what has the text focus
};

/// `menu:`, a choice of a control's menu.
struct sCHOOSE_FROM_MENU {
    std::string control;
    std::optional<int32_t> choice; // the number of a state, from 0; none: the state that `text` means
    std::string text;
};

/// `touch:`, one of several fingers.
struct sTOUCH {
    enum class KEWhat { Down, Drag, Up, Long, Pinch };
    KEWhat what = KEWhat::Up;
    int32_t finger = 1;
    sHAND_PLACE place;        // of down
    KUPoint<double> by{0, 0}; // of drag
    double scale = 1.0;       // of pinch: the fingers' distance as a factor of the one before
};

/// `hover:`, the pointer moved without a button.
struct sHOVER {
    sHAND_PLACE place;
    KUModifiers modifiers;
};

/// "Shift and Alt"; empty for none.
std::string ModifiersText(KUModifiers modifiers);

} // namespace kvKorvoV12_9_0_320::kvHost
