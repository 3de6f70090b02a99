// What the window of the strip shows, as a description.
#pragma once

namespace kvStrip {

/// The window as XML, for cALGORITHM::SetDescription("GUIXML", …).
const char* WindowXML() noexcept;

} // namespace kvStrip
