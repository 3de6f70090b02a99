// What a host's automation and MIDI do to a plug-in, as events of a session. Plain values, as the file says them;
// names of automation controls are looked up by the player.
#pragma once

#include <string>

#include <korvolib/control/midi_event.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// `touch control:` and `release control:`, as a control surface takes a knob and lets go of it.
struct sHOLD_CONTROL {
    std::string controlName;
    bool isHeld = true;
};

/// `midi:`, one message.
struct sSEND_MIDI {
    kvMIDI::KorvoMidiEvent event; // a channel message
};

/// `learn:`, the next controller that moves is the control's.
struct sLEARN_CONTROL {
    std::string controlName;
};

/// `detach:`, the control hears no controller any more.
struct sDETACH_CONTROL {
    std::string controlName;
};

} // namespace kvKorvoV12_9_0_320::kvHost
