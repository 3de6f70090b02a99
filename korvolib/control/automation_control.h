// KCAutomationControl: what a host sees as one automatable parameter of the plug-in. One of its registrations
// leads, the others follow it and keep their distance; all stand for parameters of the algorithm.
//
//   1. The host plays a value:           chain = control.SetControllerValue(500.0); the caller executes the chain.
//   2. The user turns a knob:            NotifyTouch, NotifySetControlValue for each change, NotifyRelease.
//   3. A host shell describes it:        GetControlAutomationInfo.
//   4. A MIDI controller is attached:    SetMIDIEventType, SetMIDIControlID; the manager finds it by these.
//
// Values are states of 0 … 1000. What the host plays is never echoed to the host. Nothing here allocates after
// set-up. Thread: [main], with the algorithm's lock held.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>

#include <korvolib/control/automation_info.h>
#include <korvolib/control/midi_event.h>
#include <korvolib/control/midi_mapping.h>
#include <korvolib/gui/base_control.h>

namespace kvKorvoV12_9_0_320 {

class KCAutomationManager;

/// How a control surface shows a control: the ring of lights round its knob, and a name for its small display.
struct sCONTROL_SURFACE_DISPLAY {
    enum class KERing : int32_t {
        Dot,      ///< one light at the value
        BoostCut, ///< from the middle to the value
        Wrap,     ///< from the lower end to the value
        Spread,   ///< from the middle to both sides
    };
    KERing ring = KERing::Wrap;
    KCFixedString<31> name; ///< empty: the control's own

    friend bool operator==(const sCONTROL_SURFACE_DISPLAY&, const sCONTROL_SURFACE_DISPLAY&) noexcept = default;
};

class KORVO_API KCAutomationControl : public KCBaseControl {
  public:
    KCAutomationControl();
    explicit KCAutomationControl(const KCFixedStringBase& name);
    ~KCAutomationControl() override;

    /// The copy has the same registrations and attachments. It belongs to no manager and is not connected to a
    /// host: its refcons are 0, and nobody touches it.
    std::unique_ptr<KCBaseControl> Clone() const override;
    int32_t WriteToXMLWithAlg(KCXMLElement& element, const cALGORITHM& algorithm) const override;
    int32_t ReadFromXMLWithAlg(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems) override;
    int32_t ReadFromXMLParameterList_Registration(const KCXMLElement& element, cALGORITHM& algorithm,
                                                  Problems& problems) override;
    int32_t FinishCreate() override;

    // New slots, in their order; a test reads the numbers. --------------------------------------------------------
    /// What the control would show at `value`, without moving anything: the lead parameter's text and real-world
    /// value. kErr_Generic, with both as they were, without a lead or for not-a-number; values are clamped.
    virtual int32_t TranslateController(double value, KCFixedStringBase& text, double& realWorld) const;
    /// kErr_WrongRecordVersion with the record as it was; kErr_Generic when the lead's parameter is unknown to the
    /// algorithm; 0, with value 0 and key 0, without a lead.
    virtual int32_t GetControlAutomationInfo(sCONTROL_AUTOMATION_INFO& info) const;
    /// Moves the lead to `value` and the followers by the same distance; the chain to be executed, or null. Null
    /// without a lead and for not-a-number.
    virtual BUFFER_HEADER* SetControllerValue(double value);
    /// The overridable half: the lead exists. Each result is limited to 0 … 1000, the distance is not.
    virtual BUFFER_HEADER* SetControllerValueSelf(double value);
    /// May make of an incoming event's `value` (0 … 1000) another one; the whole-number part of it is then used as
    /// it stands. False: the library's own arithmetic.
    virtual bool ReinterpretMidiValue(int32_t eventType, double& value);

    // The lead ----------------------------------------------------------------------------------------------------
    size_t GetLeadPosition() const noexcept { return m_leadPosition; } // a position past the end: no lead
    void SetLeadPosition(size_t position);
    bool HasLead() const noexcept { return m_leadPosition < m_params.size(); }
    /// Registered to a parameter that its algorithm has.
    bool IsLeadBound() const noexcept { return HasLead() && m_params[m_leadPosition].IsBound(); }
    /// Bound to a parameter of states.
    bool IsLeadStepped() const;
    /// Whether that registration moves when the lead does: it is another one, may be moved by automation, and has
    /// the lead's modifiers.
    bool FollowsLead(size_t registration) const noexcept;
    /// The value string of the lead parameter is made anew.
    void UpdateValueStringOfParam() const;

    // The host
    // -----------------------------------------------------------------------------------------------------
    /// Refcon 1 of 0: not connected, and the host is told nothing.
    void SetAutomationRefCons(int64_t refCon1, int64_t refCon2) noexcept;
    int64_t GetAutomationRefCon1() const noexcept { return m_refCon1; }
    int64_t GetAutomationRefCon2() const noexcept { return m_refCon2; }
    void GetAutomationRefCons(int64_t& refCon1, int64_t& refCon2) const noexcept;
    bool IsConnected() const noexcept { return m_refCon1 != 0; }
    /// Tells the host that the user holds the control, once. False, and nothing sent: not connected, touched
    /// already, or no host callback.
    bool NotifyTouch();
    /// … and lets go. False, and nothing sent: not connected, not touched, or no host callback.
    bool NotifyRelease();
    /// Tells the host a value; it needs no touch before it.
    void NotifySetControlValue(double value);
    bool GetTouched() const noexcept { return m_isTouched; }
    static bool IsControlAutomationInfoVersionSupported(int32_t version) noexcept {
        return version == kAutomationInfoVersion;
    }
    int32_t GetAutomationType() const noexcept { return m_automationType; }
    void SetAutomationType(int32_t type) noexcept { m_automationType = type; }

    // MIDI: what has no meaning becomes -1
    // -----------------------------------------------------------------------------
    void SetMIDILearnMode(bool isLearning) noexcept;
    bool GetMIDILearnMode() const noexcept { return m_isLearning; }
    void SetMIDIEventType(int32_t type) noexcept; // 0 … 127: a kvMIDI::KEMidiEventType
    /// Notes that begin, control changes and pitch bends; other events drive no control.
    static bool IsMIDIEventTypeHeard(int32_t type) noexcept {
        return type == kvMIDI::kMidiEvent_NoteOn || type == kvMIDI::kMidiEvent_ControlChange ||
               type == kvMIDI::kMidiEvent_PitchBend;
    }
    int32_t GetMIDIEventType() const noexcept { return m_midiEventType; }
    void SetMIDIControlID(int32_t id) noexcept; // 0 … 127
    int32_t GetMIDIControlID() const noexcept { return m_midiControlID; }
    void SetMIDIChannel(int32_t channel) noexcept; // 0 … 16; kept, and not looked at: controls hear all channels
    int32_t GetMIDIChannel() const noexcept { return m_midiChannel; }
    void SetMIDIGroup(int32_t group) noexcept { m_midiGroup = group; } // -1: none
    int32_t GetMIDIGroup() const noexcept { return m_midiGroup; }
    bool IsAttachedToMIDI() const noexcept { return m_midiControlID != kNotAttached; }
    /// Event type and control ID become -1, channel 0, the mapping the plain one; learn mode ends.
    void DetachFromMIDI() noexcept;
    /// A MIDI controller could move it: it leads a parameter.
    bool CanAttachToMIDI() const { return IsLeadBound(); }
    /// … and while the plug-in plays: the host sees it, and its lead parameter is in use.
    bool CanAttachToRTMIDI() const;
    const kvMIDI::sMIDI_MAPPING& GetMIDIMapping() const noexcept { return m_midiMapping; }
    void SetMIDIMapping(const kvMIDI::sMIDI_MAPPING& mapping) noexcept;
    kvMIDI::KCMidiTakeOverState& GetMIDITakeOverState() noexcept { return m_takeOver; }

    // Control surfaces
    // ---------------------------------------------------------------------------------------------
    /// The LED state mapped to exactly this value; -1 for a value without one.
    int32_t GetLedValueFromMap(int32_t value) const noexcept;
    void SetLedValueInMap(int32_t value, int32_t ledState) { m_ledMap[value] = ledState; }
    const std::map<int32_t, int32_t>& GetLedMap() const noexcept { return m_ledMap; }
    const sCONTROL_SURFACE_DISPLAY& GetControlSurfaceDisplay() const noexcept { return m_surfaceDisplay; }
    void SetControlSurfaceDisplay(const sCONTROL_SURFACE_DISPLAY& display) noexcept { m_surfaceDisplay = display; }

    // The description
    // --------------------------------------------------------------------------------------------------
    /// "ID" and "CtrlID": numbers that name the control to files and control surfaces, kept as they stand; -1:
    /// none.
    int32_t GetID() const noexcept { return m_id; }
    void SetID(int32_t id) noexcept { m_id = id; }
    int32_t GetCtrlID() const noexcept { return m_ctrlID; }
    void SetCtrlID(int32_t id) noexcept { m_ctrlID = id; }
    /// <ControlSurfaceDisplay Ring="Dot" Name="Gn"/>
    int32_t ReadFromXMLControlSurfaceDisplay(const KCXMLElement& element, Problems& problems);
    /// <MIDI EventType="4" ControlID="7" Channel="0" Group="1" Low="0" High="1000" Curve="1" TakeOver="PickUp"/>;
    /// what is missing has its default. Nothing is attached without event type and control ID.
    int32_t ReadFromXMLMIDI(const KCXMLElement& element, Problems& problems);
    int32_t WriteToXMLMIDI(KCXMLElement& element) const;

  protected:
    KCAutomationControl(const KCAutomationControl& other);

  private:
    friend class KCAutomationManager;
    static constexpr int32_t kNotAttached = -1;

    cALGORITHM* GetLeadAlgorithm() const noexcept;
    bool CanCallHost() const noexcept;
    void CallHost(int32_t selector, intptr_t argument) const;
    void FillLead(const KCParamRegistrationData& lead, sCONTROL_AUTOMATION_INFO& info) const;
    void ReadFromXMLLedMap(const KCXMLElement& element, Problems& problems);
    int32_t WriteToXMLSurface(KCXMLElement& element) const;
    void OnMidiChanged() noexcept;

    KCAutomationManager* m_manager = nullptr;
    int64_t m_refCon1 = 0;
    int64_t m_refCon2 = 0;
    bool m_isTouched = false;
    bool m_isLearning = false;
    int32_t m_midiEventType = kNotAttached;
    int32_t m_midiControlID = kNotAttached;
    int32_t m_midiChannel = 0;
    int32_t m_midiGroup = -1;
    int32_t m_automationType = 0;
    int32_t m_id = -1;
    int32_t m_ctrlID = -1;
    kvMIDI::sMIDI_MAPPING m_midiMapping;
    kvMIDI::KCMidiTakeOverState m_takeOver;
    std::map<int32_t, int32_t> m_ledMap;
    sCONTROL_SURFACE_DISPLAY m_surfaceDisplay;
};

} // namespace kvKorvoV12_9_0_320
