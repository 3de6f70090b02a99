// CControlForAutomation_X: what stands for an automation control in a window.
//
//   <Control Class="ControlForAutomation" Name="Gain meter" AutomationControl="Gain" Rect="0 0 80 20"/>
//
// It shows the parameters of the automation control, the lead first; with a parameter list of its own it is a
// control like any other that knows which automation control it belongs to. The price and the thread are those of
// KCGUIControl.
#pragma once

#include <korvolib/gui/gui_control.h>

namespace kvKorvoV12_9_0_320 {

class KCAutomationControl;

class KORVO_API CControlForAutomation_X : public KCGUIControl {
  public:
    CControlForAutomation_X() = default;
    std::unique_ptr<KCBaseControl> Clone() const override;
    int32_t WriteToXMLWithAlg(KCXMLElement& element, const cALGORITHM& algorithm) const override;
    /// "AutomationControl" names the control, its own "Name" where that is missing. kErr_BadDescription, reported,
    /// for an unknown one.
    int32_t ReadFromXMLWithAlg(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems) override;

    const KCFixedString<127>& GetAutomationControlName() const noexcept { return m_automationControl; }
    /// The automation control as it stands now; null when there is none of the name any more.
    KCAutomationControl* GetAutomationControl() const noexcept;

  private:
    CControlForAutomation_X(const CControlForAutomation_X&) = default;
    int32_t RegisterAs(const KCAutomationControl& control);

    KCFixedString<127> m_automationControl;
};

} // namespace kvKorvoV12_9_0_320
