// A session: what happens to a plug-in while a sound runs through it, as a list of timed events in YAML. The format
// is described in docs/sessions.md. Reading is pure: text in, events out; names of parameters are not looked up
// here.
//
// A new kind of event is an action struct in the variant, one line in the table of session_reader.cpp with its
// reading function, its words in session_text.cpp, and one Play function in session_player.cpp; the compiler asks
// for what is missing.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <korvolib/alg/plugin_setup.h>
#include <korvolib/version.h>

#include "session_automation.h"
#include "session_hand.h"

namespace kvKorvoV12_9_0_320::kvHost {

/// `set:`: moves a parameter to a place given in one of three ways.
struct sSET_PARAM {
    enum class KEBy { State, RealWorld, Text };
    std::string param;
    KEBy by = KEBy::State;
    double number = 0.0;    // a state (0 … 1000) or a real-world value
    std::string text;       // what somebody would type into the parameter
    bool isGesture = false; // by a user's hand: what is linked moves too
};

/// `control:`: moves an automation control, and those that follow it, as a host's automation does.
struct sSET_CONTROL {
    std::string controlName;
    sSET_PARAM::KEBy by = sSET_PARAM::KEBy::State;
    double number = 0.0; // as of sSET_PARAM; for the control's lead parameter
    std::string text;
};

/// `step:`: moves a parameter by whole steps, each to the next visibly different value.
struct sSTEP_PARAM {
    std::string param;
    int32_t by = 0;         // -1000 … 1000, not 0
    bool isGesture = false; // by a user's hand: what is linked moves too
};

/// `link:`: enables or disables a link group.
struct sENABLE_LINK {
    int32_t group = 0;
    bool isEnabled = true;
};

/// `setup:`: makes a setup the active one.
struct sSWITCH_SETUP {
    EPluginSetup setup = kPluginSetup_A;
};

/// `copy setup:`: all values of one setup to the other.
struct sCOPY_SETUP {
    EPluginSetup from = kPluginSetup_A;
    EPluginSetup to = kPluginSetup_B;
};

/// `do:`: what somebody does to the history of the gestures.
struct sUSE_HISTORY {
    enum class KEWhat { Undo, Redo, MarkClean };
    KEWhat what = KEWhat::Undo;
};
inline constexpr std::array<const char*, 3> kHistoryWords = {"undo", "redo", "mark clean"}; // by KEWhat

using SessionAction = std::variant<sSET_PARAM, sSTEP_PARAM, sENABLE_LINK, sSWITCH_SETUP, sCOPY_SETUP, sUSE_HISTORY,
                                   sUSE_MOUSE, sTURN_WHEEL, sPRESS_KEY, sTYPE_TEXT, sCHOOSE_FROM_MENU, sTOUCH,
                                   sHOVER, // seven by a hand (session_hand.h)
                                   sSET_CONTROL, sHOLD_CONTROL, sSEND_MIDI, sLEARN_CONTROL, sDETACH_CONTROL>;

struct sSESSION_EVENT {
    double atSeconds = 0.0; // 0 … kLongestSession
    int line = 0;           // in the file, from 1
    SessionAction action;
};

struct sSESSION {
    std::string fileName;               // as messages show it
    std::vector<sSESSION_EVENT> events; // by time; events of one time in their order in the file
};

inline constexpr double kLongestSession = 1.0e6;         // seconds: eleven days
inline constexpr size_t kLargestSessionFile = 16u << 20; // bytes

/// Reads a session from its text. Throws KCHostFailure "file:line: what was expected" for anything that is not one.
sSESSION ReadSession(std::string_view text, const std::string& fileName);

/// Reads a session file, or an entry of an archive (input_file.h); what cannot be read is a KCHostFailure too.
sSESSION ReadSessionFile(const std::string& path);

/// "session.yaml:7: text", the form of all complaints about a session.
std::string SessionComplaint(const std::string& fileName, int line, std::string_view text);

/// What an event does in a few words: "set Input Gain to 3", "step Ratio by -1, by hand", "enable link group 2",
/// "setup B", "copy setup A to B", "undo", "press Input Gain with Shift".
std::string DescribeAction(const SessionAction& action);

} // namespace kvKorvoV12_9_0_320::kvHost
