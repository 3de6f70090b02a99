// KCBaseControl: what every control is, seen by a window or by a host: a name, flags, and an ordered list of
// registrations, each of which binds it to one parameter. The first registration leads.
//
// A control hears of its parameters' changes: a control of a window as an observer, an automation control as a
// controller (which is what look-ups by lead parameter walk). It may be copied; the copy is bound in the same way.
// The algorithm outlives its controls. A hook of the plug-in must not take registrations from the control that is
// just moving it. Thread: [main], with the algorithm's lock held. Setting up allocates, events do not.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <korvolib/gui/param_registration.h>
#include <korvolib/utilities/strings/fixed_string.h>

namespace kvKorvoV12_9_0_320 {

class KCBaseControl;
class KCXMLElement;
namespace kvGS {
class KCGraphicStreamBinaryWriter;
}

/// Yes-or-no properties of a control; the word of a description is the name after the underscore.
enum EControlFlags : int32_t {
    kControl_Disabled,       // takes no input and shows it; set by the author
    kControl_HasLead,        // set while the lead position names a registration; bit value 2 of the set
    kControl_Hidden,         // not drawn, not hit
    kControl_InfoFlag,       // copied into the automation info record; bit value 8
    kControl_NotAutomatable, // the host does not see it
    kControl_IgnoreRightClick,
    kControl_Cyclic, // a drag beyond an end comes in at the other, where the parameter allows it
    kControl_DrawTopmost,
    kControl_NeedToResetParams,
    kNumControlFlags
};

static_assert(1 << kControl_HasLead == 2 && 1 << kControl_InfoFlag == 8);

KORVO_API const char* ControlFlagName(EControlFlags flag) noexcept;

/// Whose list of a parameter a control stands in.
enum class KEControlBinding { Observer, Controller };

/// What a parameter knows of a control: one for each control, however many of its registrations name the parameter.
class KORVO_API KCControlBinding final : public KCParamController {
  public:
    KCControlBinding(KCBaseControl& control, KEControlBinding kind) noexcept : m_control(control), m_kind(kind) {}
    KCBaseControl& GetControl() const noexcept { return m_control; }
    KEControlBinding GetKind() const noexcept { return m_kind; }
    void OnParamChanged(size_t paramIndex) noexcept override;

  private:
    KCBaseControl& m_control;
    KEControlBinding m_kind;
};

class KORVO_API KCBaseControl {
  public:
    using BUFFER_HEADER = cALGORITHM::BUFFER_HEADER;
    using ParamDataVec = std::vector<KCParamRegistrationData>;
    using Problems = std::vector<sDESCRIPTION_PROBLEM>;

    // In slot order; a test reads the numbers.
    virtual ~KCBaseControl();
    /// A copy with the same registrations; null without memory.
    virtual std::unique_ptr<KCBaseControl> Clone() const = 0;
    virtual int32_t WriteToXMLWithAlg(KCXMLElement& element, const cALGORITHM& algorithm) const;
    /// Flags and parameter list; a derived class may replace the reading of either. What has no meaning goes into
    /// `problems` with its line. kErr_BadDescription when a parameter is unknown: the control is then left out.
    virtual int32_t ReadFromXMLWithAlg(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems);
    /// A "Flags" element: one attribute for each flag.
    virtual int32_t ReadFromXMLFlags(const KCXMLElement& element, Problems& problems);
    /// A "ParameterList" element, in place of the registrations there are. Each "Parameter" goes through the two
    /// operations that follow; after an unknown one there are no registrations.
    virtual int32_t ReadFromXMLParameterList(const KCXMLElement& element, cALGORITHM& algorithm,
                                             Problems& problems);
    /// Looks at a "Parameter" before anything is made of it; kErr_BadDescription when it names no parameter.
    virtual int32_t ReadFromXMLParameterList_Attributes(const KCXMLElement& element, cALGORITHM& algorithm,
                                                        Problems& problems);
    /// Makes the registrations of a "Parameter": one, and behind it one for each further modifier set that its
    /// "Register" children name.
    virtual int32_t ReadFromXMLParameterList_Registration(const KCXMLElement& element, cALGORITHM& algorithm,
                                                          Problems& problems);
    virtual int32_t FinishCreate();
    virtual void SetNeedToResetParams(bool isNeeded);
    virtual bool GetControlFlag(EControlFlags flag) const;
    virtual void SetControlFlag(EControlFlags flag, bool isOn);
    virtual void UpdateDisabledMode();
    /// A registered parameter has moved: what points at its value is out of date.
    virtual void UpdatePointer(size_t paramIndex) noexcept;
    virtual size_t GetLeadParamID() const; // kNoParam without a lead
    virtual int32_t FinishCreateSelf();
    virtual void DebugControl(KCFixedStringBase& text) const; // only calls the next
    virtual void DebugControlSelf(KCFixedStringBase& text) const;
    /// Hooks of a concrete control: called by the reader of the class above it when all else has been read.
    virtual int32_t ReadFromXMLWithAlgSelf(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems);
    virtual int32_t UpdateFromXMLWithAlgSelf(const KCXMLElement& element, cALGORITHM& algorithm,
                                             Problems& problems);
    virtual void OnLRBChange(); // labels, ranges or bitmaps of the registrations have changed
    virtual int32_t WriteToXML(KCXMLElement& element) const;

    // Name ----------------------------------------------------------------------------------------------------
    void SetName(const KCFixedStringBase& name) noexcept { m_name = name; }
    const KCFixedString<127>& GetName() const noexcept { return m_name; }
    const char* GetNamePtr() const noexcept { return m_name.c_str(); }
    /// The name, cut to `maxLength` bytes.
    void GetControlNameOfLength(KCFixedStringBase& out, size_t maxLength) const noexcept;

    // Registrations, in order ------------------------------------------------------------------------------------
    const ParamDataVec& GetParamDataVec() const noexcept { return m_params; }
    KCParamRegistrationData* GetParamData(size_t registration) noexcept; // null past the end
    const KCParamRegistrationData* GetParamData(size_t registration) const noexcept;
    /// Of the lead registration, or kNoParam.
    size_t GetLeadParamIndex() const noexcept;
    /// 0, kErr_NullArgument without an algorithm, kErr_Generic for an unknown parameter and for another algorithm
    /// than that of the registrations before it, kErr_AllocationFailed: nothing changes then.
    int32_t Register(cALGORITHM* algorithm, size_t paramIndex, const KCRegisterInfo& info);
    int32_t Register(const KCParamRegistrationData& registration);
    /// Another info for the first registration of a parameter; kErr_Generic where there is none.
    int32_t ChgRegister(size_t paramIndex, const KCRegisterInfo& info);
    /// The registration at that place; touched parameters are released first.
    int32_t UnRegister(size_t registration);
    int32_t UnRegisterParam(size_t paramIndex); // all of that parameter
    void UnRegisterAll();
    /// Records that stand for one element of an array of parameters, named "NAME 1", "NAME 2", …
    int32_t AddParamArrayRegData(const KCParamRegistrationData& registration);
    /// Binds them to element `element`, from 0. kErr_Generic where there is no such parameter,
    /// kErr_AllocationFailed: nothing changes.
    int32_t RegisterFromParamArrayRegData(size_t element);
    /// Every registration moves on by `offset` parameters; kErr_Generic when one would leave the list,
    /// kErr_AllocationFailed: none moves.
    int32_t OffsetParamIter(ptrdiff_t offset);
    bool NeedToResetParam() const noexcept { return m_flags[kControl_NeedToResetParams]; }
    bool IsAutomatable() const;
    /// True only when there is a registration and every registered parameter may be saved to undo.
    bool AreRegisteredParamsSavableToUndo() const;
    bool IsAllRegisteredParamsDisabled() const; // false without registrations
    /// The graph of the lead parameter as a graphic stream.
    int32_t GetGraphDataAsGraphicStream(kvGS::KCGraphicStreamBinaryWriter& writer,
                                        const KURect<double>& rect) const;

    /// Appends the link groups that the registrations name: what
    /// KCLinkGroups::AdjustLinkGroupsToCurrentGuiControls takes of all controls of a window.
    void AppendNamedLinkGroups(std::vector<sNAMED_LINK_GROUP>& named) const;

    cALGORITHM* GetAlgorithm() const noexcept { return m_algorithm; }

  protected:
    explicit KCBaseControl(KEControlBinding kind);
    KCBaseControl(const KCBaseControl& other);
    KCBaseControl& operator=(const KCBaseControl&) = delete;

    friend class KCControlBinding;
    /// Each registration of the parameter follows it, then UpdatePointer.
    void OnParamChanged(size_t paramIndex) noexcept;
    void UnbindAll() noexcept;
    /// Every parameter that is held is let go and its residues are gone, though the plug-in's Release may throw
    /// each time: the first exception passes.
    void FinishDragParams();

    KCFixedString<127> m_name;
    std::bitset<kNumControlFlags> m_flags;
    ParamDataVec m_params;
    size_t m_leadPosition = 0;
    cALGORITHM* m_algorithm = nullptr;

  private:
    void Bind(size_t paramIndex);
    void Unbind(size_t paramIndex) noexcept;
    void UnbindUnlessNamed(size_t paramIndex) noexcept;
    template <class IndexOf>
    int32_t MoveToParams(IndexOf indexOf);
    void SettleLead() noexcept;
    int32_t WriteFlags(KCXMLElement& element) const;
    int32_t WriteParameterList(KCXMLElement& element) const;

    KCControlBinding m_binding;
    size_t m_numBound = 0; // parameters that know of it
};

} // namespace kvKorvoV12_9_0_320
