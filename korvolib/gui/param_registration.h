// KCParamRegistrationData: one binding of a control to one parameter of an algorithm: on which gesture and modifier
// keys it fires, how it moves the parameter, where the control shows it.
//
// It keeps the parameter's state as its own path last gave it, unquantized, so that small movements of a stepped
// parameter add up; whenever the parameter is moved by any other path the stored value follows (FollowParam). A
// plain value: its control hears of the parameter and tells its records.
//
// A record without an algorithm, or with an index beyond its parameters, reads as 0 and moves nothing. Nothing here
// allocates after set-up. Thread: [main], with the algorithm's lock held.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

#include <korvolib/alg/algorithm.h>
#include <korvolib/gui/param_windows.h>
#include <korvolib/gui/register_info.h>

namespace kvKorvoV12_9_0_320 {

class KCXMLElement;

/// A parameter that a gesture holds: Touch when it is taken, Release when it is let go, at the latest when the hold
/// ends its life. It moves with its owner; a copy holds nothing, so that no release comes twice.
class KORVO_API KCParamHold {
  public:
    KCParamHold() noexcept = default;
    ~KCParamHold();
    KCParamHold(const KCParamHold&) noexcept {}
    KCParamHold& operator=(const KCParamHold& other);
    KCParamHold(KCParamHold&& other) noexcept
        : m_algorithm(std::exchange(other.m_algorithm, nullptr)), m_index(other.m_index) {}
    KCParamHold& operator=(KCParamHold&& other) noexcept;

    bool IsHolding() const noexcept { return m_algorithm != nullptr; }
    void Take(cALGORITHM& algorithm, size_t index); // nothing while it holds
    void LetGo();                                   // nothing unless it holds

  private:
    cALGORITHM* m_algorithm = nullptr;
    size_t m_index = kNoParam;
};

class KORVO_API KCParamRegistrationData {
  public:
    using BUFFER_HEADER = cALGORITHM::BUFFER_HEADER;
    using Problems = std::vector<sDESCRIPTION_PROBLEM>;

    KCParamRegistrationData() = default;
    KCParamRegistrationData(cALGORITHM* algorithm, size_t paramIndex, const KCRegisterInfo& info);

    // The parameter -------------------------------------------------------------------------------------------
    cALGORITHM* GetAlgorithm() const noexcept { return m_algorithm; }
    size_t GetParamIndex() const noexcept { return m_paramIndex; }
    size_t GetParamID() const noexcept { return m_paramIndex; } // the same number: parameters are named by index
    bool IsBound() const noexcept { return m_algorithm != nullptr && m_paramIndex < m_algorithm->GetNumParams(); }
    /// Another parameter; the stored value becomes its state. One that is touched is released first.
    void SetRegisteredParam(cALGORITHM* algorithm, size_t paramIndex);
    const KCFixedString<127>& GetRegisteredParamName() const; // empty when not bound

    // On what it fires ----------------------------------------------------------------------------------------
    const KCRegisterInfo& GetRegisterInfo() const noexcept { return m_info; }
    KCRegisterInfo& GetRegisterInfo() noexcept { return m_info; }
    bool GetRegisterFlag(ERegisterType type) const noexcept { return m_info.GetFlag(type); }
    void SetRegisterFlag(ERegisterType type, bool isOn) noexcept { m_info.SetFlag(type, isOn); }
    bool IsRegisteredToType(ERegisterType type) const noexcept { return m_info.GetFlag(type); }
    /// To any of them.
    bool IsRegisteredToTypes(std::initializer_list<ERegisterType> types) const noexcept;
    bool IsRegisteredToUpdateController() const noexcept { return GetRegisterFlag(kRegister_Controller); }
    bool GetRegisterModifier(KEModifier modifier) const noexcept { return m_info.GetModifiers().Has(modifier); }
    void SetRegisterModifier(KEModifier modifier, bool isOn) noexcept;
    double GetFixedState() const noexcept { return m_fixedState; }
    void SetFixedState(double state) noexcept { m_fixedState = state; }
    /// The share of the way that a drag covers by this registration, beside the control's own sensitivity; 1 unless
    /// told. Values that are not finite are ignored.
    double GetSensitivity() const noexcept { return m_sensitivity; }
    void SetSensitivity(double factor) noexcept;
    double GetHoverDelay() const noexcept { return m_hoverDelayMs; } // milliseconds
    void SetHoverDelay(double milliseconds) noexcept;

    // The value: a state of 0 … 1000. What moves it returns the chain to be executed, or null. Moving is a user's
    // gesture: it links. ----------------------------------------------------------------------------------------
    double GetValue() const noexcept { return m_value; }
    /// Stores without touching the parameter; not-a-number is ignored, others are limited to 0 … 1000.
    void SetValue(double state) noexcept {
        if (!std::isnan(state))
            m_value = ClampState(state);
    }
    /// Stores and moves the parameter there; a discrete one not beyond its last state. Not-a-number: null, nothing.
    BUFFER_HEADER* SetParamValue(double state);
    /// Moves the parameter to the stored value.
    BUFFER_HEADER* UpdateParamValue();
    /// Moves by `delta`; one that is not finite is ignored. A continuous parameter stops at the ends, or goes round
    /// with kParamFlag_ContinuousWraps; a discrete one goes from 0 to its last state. `hasChanged`, if given, tells
    /// whether the stored value moved. Nothing happens when the record is not registered to `type`.
    BUFFER_HEADER* OffsetParamValue(double delta, ERegisterType type, bool* hasChanged = nullptr);
    /// To the next state in the direction's sign whose value differs.
    BUFFER_HEADER* OffsetParamValueToNextDifferentValue(double direction, ERegisterType type,
                                                        bool* hasChanged = nullptr);
    double OffsetToNextDifferentState(double direction) const;
    /// The parameter has moved, whoever did it: the stored value follows, unless it is what the parameter's state
    /// was made of.
    void FollowParam() noexcept {
        const sCONTROL_PARAM* const param = GetParam();
        if (param != nullptr && param->GetState(m_algorithm->GetActiveSetup()) != m_value)
            FollowState(*param);
    }
    /// Back to the parameter's reset state.
    BUFFER_HEADER* ResetParam();

    double StateToRealWorld(double state) const;
    double RealWorldToState(double realWorld) const;
    /// A typed text as a state. False, with `state` as it was, for a text that is refused.
    bool TranslateValue(const KCFixedStringBase& text, double& state) const;
    int32_t GetNumStates() const;
    /// (states − 1) × step, at most 1000, for a discrete parameter with states; 1000 for others.
    double GetLastState() const;
    sSCALE_INFO GetScaleInfo() const;
    bool IsActiveControllerParameterDiscrete() const;
    double GetActiveControllerParameterStateStep() const;
    /// A pixel delta through the parameter's own mouse-delta function.
    double UpdateMouseDeltaStep(double deltaPixels) const;
    bool DoesNewStateChangeRealWorld(double state) const;

    // Gestures: each Touch has its Release ----------------------------------------------------------------------
    /// Tells automation that the user holds the parameter. Once: nothing while it is touched, unless that touch is
    /// lost (see ShouldSendTouch).
    void Touch();
    void Release();
    /// True when a moving gesture has to touch: it has not, or somebody else's release has come in between.
    bool ShouldSendTouch() const noexcept;
    /// The end of a drag: residues go, and the parameter is released.
    void FinishDragParam();
    /// What the next movement of each direction carries over: [0] horizontal, [1] vertical.
    double& GetDragResidue(size_t direction) noexcept { return m_residue[direction & 1]; }
    void ClearDragResidues() noexcept;

    bool IsParamSavableToUndo() const;
    /// The parameter is marked for a fresh look.
    void SetParamToUpdateFlag();
    bool IsOptionReset() const noexcept; // registered to a reset gesture
    bool IsUnused() const;               // not bound, or the parameter's unused flag

    // What shows it -------------------------------------------------------------------------------------------
    const sTEXT_WIN& GetLabelWin() const noexcept { return m_label; }
    const sTEXT_WIN& GetValueWin() const noexcept { return m_valueWin; }
    const sTEXT_WIN& GetUnitsWin() const noexcept { return m_units; }
    const sBITMAP_WIN& GetBitmapWin() const noexcept { return m_bitmap; }
    const sGRAPH_WIN& GetGraphWin() const noexcept { return m_graph; }
    void SetLabelWin(const sTEXT_WIN& win) noexcept { m_label = win; }
    void SetValueWin(const sTEXT_WIN& win) noexcept { m_valueWin = win; }
    void SetUnitsWin(const sTEXT_WIN& win) noexcept { m_units = win; }
    void SetBitmapWin(const sBITMAP_WIN& win) noexcept { m_bitmap = win; }
    void SetGraphWin(const sGRAPH_WIN& win) noexcept { m_graph = win; }
    /// Which picture shows the present state, 0 … numImages − 1; −1 without pictures.
    int32_t GetParamCurrentImage() const;
    int32_t GetParamCurrentImageResID() const; // 0 without pictures
    const sBITMAP_WIN& GetAnimatedImageList() const noexcept { return m_bitmap; }
    KURect<double> GetImageRect() const noexcept { return m_bitmap.rect; }
    /// The parameter's graph as points of the graph window, in the control's pixels; capacity of `points` is
    /// reused.
    void GetGraphDataFromParam(std::vector<KUPoint<float>>& points) const;
    /// The same one by one, as points of a rectangle of the caller's: how many there are, and the point of that
    /// number. False, with `point` as it was, past the end and for what has no place: not finite, no axis.
    size_t GetNumGraphPoints() const;
    bool GetGraphPoint(size_t number, const KURect<double>& rect, KUPoint<float>& point) const;
    /// The texts as they stand now.
    void UpdateValue(KCFixedStringBase& text) const;
    void UpdateLabel(KCFixedStringBase& text) const;
    void UpdateUnits(KCFixedStringBase& text) const;
    /// Takes the windows of another skin's element of the parameter list; what that does not name is not shown.
    void UpdateDataForSkinChange(const KCXMLElement& element);
    void RemoveDrawAttributes() noexcept; // shows nothing any more

    // Links, role, arrays -------------------------------------------------------------------------------------
    /// Groups that this registration adds the parameter to, besides those it is in already.
    const std::vector<int>& GetParamLinkGroups() const noexcept { return m_linkGroups; }
    void AddParamLinkGroup(int group);
    bool IsLinkGroupEnabled(int group) const;
    const KCFixedString<31>& GetRole() const noexcept { return m_role; }
    void SetRole(const KCFixedStringBase& role) noexcept { m_role = role; }
    int64_t GetSpecificData() const noexcept { return m_specificData; }
    void SetSpecificData(int64_t data) noexcept { m_specificData = data; }
    bool IsParamArrayRegData() const noexcept { return !m_arrayName.empty(); }
    const KCFixedString<127>& GetParamArrayName() const noexcept { return m_arrayName; }
    void SetParamArrayName(const KCFixedStringBase& name) noexcept { m_arrayName = name; }

    // The description -------------------------------------------------------------------------------------------
    /// Takes the attributes of an element of the parameter list and its children: "Register" or "RegisterType",
    /// "Drag", "Drop", "LabelWin", "ValueWin", "UnitsWin", "BitmapWin", "ParamDependantGraphWin". Of several
    /// "Register" those with the modifiers of the first count: the control makes further records of the others.
    /// What has no meaning is reported and left out. kErr_BadDescription for an unknown parameter.
    int32_t ReadFromXML(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems);
    /// The modifier set that "Modifiers" names: each word counts wherever it stands in the value.
    static KUModifiers ReadModifiers(const KCXMLElement& element) noexcept;
    /// One "Register". The first that names a gesture gives the record its type, further ones add flags.
    /// kErr_BadDescription for a word that is no type: nothing changes.
    int32_t ReadFromXMLRegister(const KCXMLElement& element, Problems& problems);
    /// "Value", 0 … 1000. kErr_BadDescription, and nothing changes, for anything else.
    int32_t ReadFromXMLDrag(const KCXMLElement& element);
    int32_t ReadFromXMLDrop(const KCXMLElement& element);
    static int32_t ReadFromXMLTextWin(const KCXMLElement& element, sTEXT_WIN& win, Problems& problems);
    int32_t WriteToXML(KCXMLElement& element) const;
    int32_t WriteToXMLDrag(KCXMLElement& element) const;
    int32_t WriteToXMLDrop(KCXMLElement& element) const;
    /// In debug builds: reports attributes and children that nobody reads. Release builds take them as they stand.
    static void XMLSanityCheckDebugOnly(const KCXMLElement& element, Problems& problems);

    /// A fresh record, bound to nothing. The parameter is released first if it is touched.
    void Reset();
    /// Appends one line: parameter, type, modifiers, value.
    void PrintRegistrationData(KCFixedStringBase& text) const;

  private:
    const sCONTROL_PARAM* GetParam() const noexcept {
        return m_algorithm == nullptr ? nullptr : std::as_const(*m_algorithm).GetParam(m_paramIndex);
    }
    void FollowState(const sCONTROL_PARAM& param) noexcept;
    BUFFER_HEADER* MoveTo(double state);
    bool IsTouchLost() const noexcept;
    bool FindParam(const KCXMLElement& element, cALGORITHM& algorithm, Problems& problems);
    void ReadAttributes(const KCXMLElement& element, Problems& problems);
    void ReadChildren(const KCXMLElement& element, Problems& problems);
    int32_t TakeRegister(const KCXMLElement& element, bool isFirst, Problems& problems);
    void ReadWindow(const KCXMLElement& child, Problems& problems);
    int32_t WriteAttributes(KCXMLElement& element) const;
    int32_t WriteRegisters(KCXMLElement& element) const;
    int32_t WriteWindows(KCXMLElement& element) const;

    cALGORITHM* m_algorithm = nullptr;
    size_t m_paramIndex = kNoParam;
    KCRegisterInfo m_info;
    double m_value = 0.0;
    double m_fixedState = 0.0;
    double m_sensitivity = 1.0;
    double m_hoverDelayMs = 0.0;
    double m_residue[2] = {0.0, 0.0};
    KCParamHold m_hold;
    sTEXT_WIN m_label, m_valueWin, m_units;
    sBITMAP_WIN m_bitmap;
    sGRAPH_WIN m_graph;
    std::vector<int> m_linkGroups;
    KCFixedString<31> m_role;
    int64_t m_specificData = 0;
    KCFixedString<127> m_arrayName;
};

} // namespace kvKorvoV12_9_0_320
