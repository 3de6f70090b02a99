// A plug-in's automation controls as a person reads them.
#pragma once

#include <string>

#include <korvolib/alg/algorithm.h>

namespace kvKorvoV12_9_0_320::kvHost {

/// Index, name, lead parameter, followers and MIDI attachment of every control; a word for a plug-in without any.
std::string ControlTable(const cALGORITHM& algorithm);

} // namespace kvKorvoV12_9_0_320::kvHost
