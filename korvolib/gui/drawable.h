// CDrawable: an item of a window's description that is drawn and has no parameter: a panel, a caption, a picture.
// Drawn below all controls, in the order of the description. Thread: [main].
#pragma once

#include <cstdint>

#include <vector>

#include <korvolib/export.h>
#include <korvolib/gui/interfaces.h>
#include <korvolib/gui/param_windows.h>
#include <korvolib/utilities/xml/xmlable.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API CDrawable : public CXMLable, public RM::KCResContainerUser {
  public:
    CDrawable() = default;

    /// "Rect", "Color", "FrameColor", "Radius", "Text" with its attributes, "ResID"; what is not there is as in a
    /// new drawable. kErr_BadDescription without a rectangle, with nothing changed, and for attributes that do not
    /// read: these are left out.
    int32_t ReadFromXML(const KCXMLElement& element) override;
    /// The same, with all that was wrong.
    int32_t ReadFromXML(const KCXMLElement& element, std::vector<sDESCRIPTION_PROBLEM>& problems);
    int32_t WriteToXML(KCXMLElement& element) const override;
    /// In the window's own pixels.
    virtual void GetDrawInstructions(kvGS::KCGraphicStreamBinaryWriter& writer, const KCTheme& theme) const;

    KURect<double> GetRect() const noexcept { return m_rect; }

  private:
    KURect<double> m_rect;
    bool m_hasColor = false;
    KUColor m_color;
    bool m_hasFrameColor = false;
    KUColor m_frameColor;
    double m_radius = 0.0;
    KCFixedString<127> m_text;
    sTEXT_WIN m_textWin;
    int32_t m_resID = 0;
};

} // namespace kvKorvoV12_9_0_320
