#include <korvolib/gui/controls/captioned_control.h>

#include <korvolib/gui/controls/draw_shapes_internal.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace kvKorvoV12_9_0_320 {

int32_t KCCaptionedControl::ReadFromXMLCustom(const KCXMLElement& element, Problems& problems) {
    m_text = element.GetAttribute("Text", "");
    return KCGUIControl::ReadFromXMLCustom(element, problems);
}

int32_t KCCaptionedControl::WriteToXMLWithAlg(KCXMLElement& element, const cALGORITHM& algorithm) const {
    const int32_t error = KCGUIControl::WriteToXMLWithAlg(element, algorithm);
    return error != kErr_NoErr || m_text.empty() ? error : element.SetAttribute("Text", m_text);
}

void KCCaptionedControl::GetCaption(KCFixedStringBase& caption) const {
    if (m_text.empty())
        LabelText(GetParamData(0), caption);
    else
        caption = m_text;
}

void KCCaptionedControl::SetText(const KCFixedStringBase& text) noexcept {
    m_text = text;
    SetNeedToRedrawControl();
}

} // namespace kvKorvoV12_9_0_320
