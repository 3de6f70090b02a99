// KCTheme: the colours, fonts and sizes that all controls of a window share; a description may change any of them.
// A plain value; reading allocates nothing.
#pragma once

#include <cstdint>
#include <vector>

#include <korvolib/alg/description_problem.h>
#include <korvolib/export.h>
#include <korvolib/utilities/color.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KCXMLElement;

class KORVO_API KCTheme {
  public:
    KUColor window{24, 26, 31, 255};
    KUColor panel{34, 37, 44, 255};
    KUColor panelFrame{52, 56, 66, 255};
    KUColor body{58, 63, 74, 255}; // of knobs, fader caps, buttons
    KUColor bodyLight{84, 91, 106, 255};
    KUColor track{19, 20, 24, 255};    // what a value moves along
    KUColor accent{255, 170, 64, 255}; // the value itself
    KUColor accentOff{92, 74, 48, 255};
    KUColor text{222, 226, 234, 255};
    KUColor textDim{140, 147, 161, 255};
    KUColor selection{102, 178, 255, 255};
    KUColor warning{255, 92, 92, 255};
    KCFixedString<63> fontFamily{"DejaVu Sans"};
    double labelHeight = 10.0; // ems, in pixels
    double valueHeight = 10.0;
    double titleHeight = 13.0;
    double strokeWidth = 3.0; // of value arcs and lines
    double cornerRadius = 4.0;
    double disabledOpacity = 0.35;

    /// Takes what a "Theme" element says (attributes of the names above); the rest stays. What does not read is
    /// reported and left as it was: kErr_BadDescription. Sizes are 0 … 1e6 pixels, the opacity is 0 … 1.
    int32_t ReadFromXML(const KCXMLElement& element, std::vector<sDESCRIPTION_PROBLEM>& problems);
    int32_t WriteToXML(KCXMLElement& element) const; // what differs from the library's own theme

    static const KCTheme& Default() noexcept;
};

} // namespace kvKorvoV12_9_0_320
