// KCCaptionedControl: what the controls that show a caption share: the attribute "Text" of their description, or,
// without one, the label of the lead parameter, or its name.
#pragma once

#include <korvolib/gui/gui_control.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCCaptionedControl : public KCGUIControl {
  public:
    int32_t ReadFromXMLCustom(const KCXMLElement& element, Problems& problems) override;
    int32_t WriteToXMLWithAlg(KCXMLElement& element, const cALGORITHM& algorithm) const override;

    /// What is shown.
    void GetCaption(KCFixedStringBase& caption) const;
    /// The text of the description; empty shows the parameter's label.
    const KCFixedString<127>& GetText() const noexcept { return m_text; }
    void SetText(const KCFixedStringBase& text) noexcept;

  protected:
    /// The description shows the control by pictures of its own, which the base draws.
    bool HasPictures() const noexcept { return m_images.resID != 0 && m_images.numImages > 0; }

  private:
    KCFixedString<127> m_text;
};

} // namespace kvKorvoV12_9_0_320
