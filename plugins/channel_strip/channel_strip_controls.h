// What a host can automate of the strip, as a description.
#pragma once

namespace kvStrip {

/// The controls as XML: the "Control_List" of the description "GUIXML", a part of that document.
const char* ControlsXML() noexcept;

} // namespace kvStrip
