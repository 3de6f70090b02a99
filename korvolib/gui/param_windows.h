// Where and how a control shows a parameter: rectangles with text attributes for its label, value and units, a list
// of pictures of its states, and its graph. Plain values of a registration; all lengths are pixels from the
// control's own left top corner.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <korvolib/alg/description_problem.h>
#include <korvolib/export.h>
#include <korvolib/utilities/color.h>
#include <korvolib/utilities/geometry.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KCXMLElement;

enum class KETextAlign : int32_t { Left, Centre, Right };

/// Where a text stands. Without a rectangle it is not shown.
struct KORVO_API sTEXT_WIN {
    KURect<double> rect;
    double height = 0.0; // the em; 0: the theme's
    KETextAlign align = KETextAlign::Centre;
    bool hasColor = false; // otherwise the theme's
    KUColor color;
    bool isBold = false;

    bool IsShown() const noexcept { return !rect.IsEmpty(); }
    friend bool operator==(const sTEXT_WIN&, const sTEXT_WIN&) noexcept = default;
};

/// Pictures of a parameter's states: image resID + k is the picture of the k-th of numImages equal parts of the
/// travel, or of state k where there are as many pictures as states.
struct KORVO_API sBITMAP_WIN {
    int32_t resID = 0; // 0: none
    int32_t numImages = 0;
    KURect<double> rect;

    bool IsShown() const noexcept { return resID != 0 && numImages > 0 && !rect.IsEmpty(); }
    friend bool operator==(const sBITMAP_WIN&, const sBITMAP_WIN&) noexcept = default;
};

/// Where the parameter's graph (KCParamGraph) is drawn: the value ranges of its axes.
struct KORVO_API sGRAPH_WIN {
    KURect<double> rect;
    double minX = 0.0, maxX = 1.0, minY = 0.0, maxY = 1.0;
    bool hasColor = false;
    KUColor color;
    double strokeWidth = 1.5;

    bool IsShown() const noexcept { return !rect.IsEmpty(); }
    friend bool operator==(const sGRAPH_WIN&, const sGRAPH_WIN&) noexcept = default;
};

// Elements of a description: "Rect", "Height", "Align", "Color", "Bold"; "ResID", "NumImages", "Rect"; "Rect",
// "MinX", "MaxX", "MinY", "MaxY", "Color", "StrokeWidth". What does not read or has no place is reported and left
// as it was (kErr_BadDescription); what is not named stays.

KORVO_API int32_t ReadWindowFromXML(const KCXMLElement& element, sTEXT_WIN& win,
                                    std::vector<sDESCRIPTION_PROBLEM>& problems);
KORVO_API int32_t ReadWindowFromXML(const KCXMLElement& element, sBITMAP_WIN& win,
                                    std::vector<sDESCRIPTION_PROBLEM>& problems);
KORVO_API int32_t ReadWindowFromXML(const KCXMLElement& element, sGRAPH_WIN& win,
                                    std::vector<sDESCRIPTION_PROBLEM>& problems);
/// All that differs from a fresh window. The codes of KCXMLElement::SetAttribute.
KORVO_API int32_t WriteWindowToXML(KCXMLElement& element, const sTEXT_WIN& win);
KORVO_API int32_t WriteWindowToXML(KCXMLElement& element, const sBITMAP_WIN& win);
KORVO_API int32_t WriteWindowToXML(KCXMLElement& element, const sGRAPH_WIN& win);

} // namespace kvKorvoV12_9_0_320
