#include <korvolib/undo/undo_command.h>

namespace kvKorvoV12_9_0_320::Undo {

Command::~Command() = default;
void Command::SetEvents(const EventSet& events) { m_events = events; }
void Command::TakeOverState(Command&) {}

} // namespace kvKorvoV12_9_0_320::Undo
