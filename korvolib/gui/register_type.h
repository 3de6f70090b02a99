// ERegisterType: the gestures that a registration can answer to. A registration has one of them in its register
// info and may have flags for several.
#pragma once

#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

/// Numbers are stored in descriptions by their words, and never change their meaning.
enum ERegisterType : int32_t {
    kRegister_Highlight = 0,       // none: only shows that the parameter belongs to the control
    kRegister_DragVertical = 1,    // a drag up is more
    kRegister_DragHorizontal = 2,  // a drag to the right is more
    kRegister_Drag = 3,            // both add up
    kRegister_Wheel = 4,           // a notch away from the user is the next state up
    kRegister_Keys = 5,            // arrow keys; page keys by ten states, Home and End to the ends
    kRegister_NextOnPress = 6,     // a press moves to the next state, round the end
    kRegister_PreviousOnPress = 7, // … or the one before
    kRegister_SetOnPress = 8,      // a press sets the fixed state
    kRegister_SetOnRelease = 9,    // a release sets the fixed state
    kRegister_Place = 10,          // a press sets the place under the pointer; which axis: the control's
    kRegister_ResetOnPress = 11,   // a press restores the reset state
    kRegister_ResetOnDoubleClick = 12,
    kRegister_Text = 13,            // typed text
    kRegister_Menu = 14,            // a choice of a menu of all states
    kRegister_SetOnHover = 15,      // follows the pointer while it hovers, after "Delay" milliseconds
    kRegister_Pinch = 16,           // two fingers; apart is more
    kRegister_DragAndDrop = 17,     // carries the drag value to where it is dropped; takes the drop value
    kRegister_Display = 18,         // none: the control shows the parameter
    kRegister_Controller = 19,      // what an automation control moves; see IsRegisteredToUpdateController
    kRegister_NotByAutomation = 37, // a follower that automation leaves alone
    kNumRegisterTypes = 38
};

/// The word of a description, "DragVertical" and so on; "" for a number without one.
KORVO_API const char* RegisterTypeName(ERegisterType type) noexcept;
/// The type that a word of a description names; false, with `type` as it was, for null or an unknown word.
KORVO_API bool RegisterTypeFromName(const char* name, ERegisterType& type) noexcept;

} // namespace kvKorvoV12_9_0_320
