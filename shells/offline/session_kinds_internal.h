// A choice among kinds, as a session has it more than once: an event is of one kind, and what a mouse or a finger
// does and what a MIDI message says are of one kind too. The key that makes it so, the keys that may stand beside
// it, the function that reads it.
#pragma once

#include <string>
#include <vector>

#include "session.h"
#include "session_fields_internal.h"

namespace kvKorvoV12_9_0_320::kvHost {

struct sSESSION_KIND {
    const char* key;
    std::vector<std::string> otherKeys; // besides those that all kinds share
    SessionAction (*read)(const KCEventFields& fields);
};

struct sSESSION_KINDS {
    std::string subject;                 // "the event", as complaints begin
    std::vector<std::string> sharedKeys; // that stand beside any of them
    std::vector<sSESSION_KIND> kinds;
};

/// The one kind that the fields are of. Complains about none, two, unknown keys, and those of another kind.
const sSESSION_KIND& FindKind(const KCEventFields& fields, const sSESSION_KINDS& kinds);

// What a hand does (session_hand_reader.cpp): readers of the table of session_reader.cpp.
SessionAction ReadMouse(const KCEventFields& fields);
SessionAction ReadWheel(const KCEventFields& fields);
SessionAction ReadKey(const KCEventFields& fields);
SessionAction ReadType(const KCEventFields& fields);
SessionAction ReadMenu(const KCEventFields& fields);
SessionAction ReadTouch(const KCEventFields& fields);
SessionAction ReadHover(const KCEventFields& fields);

// What a host's automation and MIDI do (session_automation_reader.cpp): the same.
SessionAction ReadTouchControl(const KCEventFields& fields);
SessionAction ReadReleaseControl(const KCEventFields& fields);
SessionAction ReadMidi(const KCEventFields& fields);
SessionAction ReadLearn(const KCEventFields& fields);
SessionAction ReadDetach(const KCEventFields& fields);

/// Complains about a drag, a release and the like of what is not down, and a press of what is
/// (session_hand_order.cpp).
void RefuseImpossibleHand(const sSESSION& session);

} // namespace kvKorvoV12_9_0_320::kvHost
