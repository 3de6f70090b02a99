// Link groups: parameters of one algorithm that move together.
//
//   1. A description names groups (number, law, members); they exist from FinishCreate on.
//   2. A gesture moves a parameter. Before the move its carrier calls StoreLastValues, after it LinkParams: each
//      member of the source's acting groups moves once, by its group's law, and the listener is told of it.
//   3. A member that met the end of its travel holds the others back: CorrectParamModifications.
//   4. Host automation, presets, chunks and undo bring every parameter's own value and link nothing.
//
// A pass reaches the direct members of the source's groups, each at most once: groups that share members cannot
// feed back into each other. Groups are walked by number, members by index. A group acts when it is enabled or
// always active, and has a law.
//
// Price: a pass costs one update per member; a parameter in no group costs a look at an empty list. After
// FinishCreate nothing allocates. Thread: [main], no lock of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include <korvolib/alg/control_param.h>
#include <korvolib/alg/description_problem.h>
#include <korvolib/control/link_laws.h>
#include <korvolib/export.h>

namespace kvKorvoV12_9_0_320 {

class cALGORITHM;
class KCXMLElement;

struct sLINK_GROUP_INFO {
    bool isEnabled = true;
    bool isAlwaysActive = false;        // acts even while it is not enabled
    int64_t word = 0;                   // kept for the plug-in
    double number = 0.0;                // kept for the plug-in
    KCLinkFuncInterface* law = nullptr; // of the law table; null links nothing
    std::vector<size_t> members;        // parameter indexes, ascending

    bool IsActing() const { return (isEnabled || isAlwaysActive) && law != nullptr; }
};

// Where a parameter stood after the last applied change, per setup.
struct sLINK_LAST_VALUES {
    double realWorld[kNumPluginSetups] = {0.0, 0.0};
    double state[kNumPluginSetups] = {0.0, 0.0};
};

// A group that somebody beside the description of the groups, such as a control, adds a parameter to.
struct sNAMED_LINK_GROUP {
    int32_t group = 0;
    size_t index = 0; // of the parameter
};

class KORVO_API KCLinkGroups {
  public:
    class KORVO_API Listener {
      public:
        virtual ~Listener();
        // Parameter `index` was moved by a link; its real-world value was `oldRealWorld`.
        virtual void OnLinkedParamValueModified(size_t index, double oldRealWorld) = 0;
    };

    using LawName = KCFixedString<15>;
    using GroupMap = std::map<int32_t, sLINK_GROUP_INFO>;
    static constexpr size_t kNoSource = SIZE_MAX; // the parameter index −1, which never links

    // Over the parameters and the active setup of an algorithm, which owns the groups.
    explicit KCLinkGroups(cALGORITHM& algorithm);
    // Both must outlive the groups. `activeSetup` is read anew by every operation.
    KCLinkGroups(std::vector<sCONTROL_PARAM>& params, const EPluginSetup& activeSetup);
    virtual ~KCLinkGroups();
    // Builds who belongs to which group from the group infos; marks the groups in the parameter records.
    virtual void InitLinkGroupsInfoMap();
    // Adds laws of a derived class to the table, after the library's own; does nothing here.
    virtual void InitFunctionsMapSelf();
    // Applies the source's groups. `isTopLevel` begins a pass: marks, updated map and minimum delta are new;
    // false goes on with the pass that is under way, whose members stay where they are.
    virtual void LinkParams(size_t source, bool isTopLevel);
    virtual void LinkAbsolute(size_t source, size_t destination); // by state
    virtual void LinkRelative(size_t source, size_t destination);
    virtual void LinkReverse(size_t source, size_t destination);
    virtual void LinkReverseOrRelative(size_t source, size_t destination, bool isReverse);
    // False for kNoSource; otherwise whether the parameter's current real-world value equals `realWorld`.
    virtual bool ShouldLinkParams(size_t index, double realWorld) const;
    // After LinkParams: when a member met its bound, the source and the members that moved by distance stand at
    // their last states plus or minus the smallest distance any of them could go, absolute members follow the
    // source, and the listener is told of all. Nothing after CancelParamCorrection in the same pass.
    virtual void CorrectParamModifications(size_t source);
    virtual void CorrectParamModificationsSelf(size_t source); // does nothing

    void ConnectListener(Listener* listener) { m_listener = listener; }

    // Called by the algorithm when all parameters and groups are there.
    int32_t FinishCreate();
    void AtUpdateAlg(); // the last values follow

    // ---- Laws ------------------------------------------------------------------------------------------------

    // "Reverse", "Absolute" and "Relative"; then InitFunctionsMapSelf.
    void InitFunctionsMap();
    // Takes over a law under a name; an existing name keeps its law. 0, kErr_NullArgument, kErr_Generic.
    int32_t AddFunctionInMap(const LawName& name, std::unique_ptr<KCLinkFuncInterface> law);
    KCLinkFuncInterface* FindLaw(const LawName& name) const;  // null for an unknown name
    LawName GetLawName(const KCLinkFuncInterface* law) const; // empty for null and a law that is not in the table

    // ---- Groups ----------------------------------------------------------------------------------------------

    // Makes or changes group `number`; an unknown law name leaves it without a law (kErr_Generic).
    int32_t SetGroupInfo(int32_t group, int64_t word, double number, const LawName& law, bool isEnabled,
                         bool isAlwaysActive);
    int32_t SetGroupInfo(int32_t group, int64_t word, double number, KCLinkFuncInterface* law, bool isEnabled,
                         bool isAlwaysActive);
    // False for an unknown group.
    bool SetGroupState(int32_t group, bool isEnabled);
    bool SetGroupAlwaysActive(int32_t group, bool isAlwaysActive);
    // False for an unknown group or parameter, and for a parameter that is in it already. Allocates.
    bool AddMember(int32_t group, size_t index);

    const GroupMap& GetLinkGroupInfo() const { return m_groups; }
    bool IsLinkGroupEnabled(size_t index, int32_t group) const; // and the parameter is in it
    const std::vector<int>& GetParamLinkGroups(size_t index) const;
    const std::vector<int>& GetParamControlledLinkGroups(size_t index) const; // every member leads its groups
    bool IsParamInLinkedMode(size_t index) const; // in an acting group with somebody else
    bool IsEmpty() const { return m_groups.empty(); }
    bool SanityCheck() const; // numbers, members and laws agree
    // Puts parameters into the groups that the registrations of a window's controls name; those that are in them
    // stay. A group without a description has no law and would link nothing: it is reported, not made, once.
    void AdjustLinkGroupsToCurrentGuiControls(std::span<const sNAMED_LINK_GROUP> named,
                                              std::vector<sDESCRIPTION_PROBLEM>& problems);

    // Reads a <LinkGroups> element; what has no meaning is left out and reported.
    void ReadFromXML(const KCXMLElement& element, std::vector<sDESCRIPTION_PROBLEM>& problems);
    int32_t WriteToXML(KCXMLElement& element) const;

    // ---- Last values, and what a pass leaves --------------------------------------------------------------------

    void InitLastValuesMap();
    const sLINK_LAST_VALUES* GetLastValues(size_t index) const; // null for an unknown index
    // Brings the parameter's value up to date with its state in the current setup, then stores both as `setup`'s.
    // −1 is the current one; another that is neither A nor B does nothing.
    void UpdateLastValues(size_t index, int32_t setup);
    void CopyLastValuesToOtherSetup(); // from the current setup
    // Before a gesture moves `source`: the last values of the source and of the members of its acting groups.
    void StoreLastValues(size_t source);
    // After StoreLastValues: the event that moves the source has moved this parameter too, and the links leave it
    // where it is until ForgetLeftAlone or the next StoreLastValues.
    void LeaveAlone(size_t index);
    void ForgetLeftAlone() noexcept;

    double GetMinDelta() const { return m_minDelta; }
    void SetMinDelta(double delta) { m_minDelta = delta; }
    void ResetMinDelta(size_t index);

    const std::vector<bool>& GetWhichParamWasUpdated() const { return m_updated; } // by parameter index
    void ResetParamUpdatedMap();
    void CancelParamCorrection() { m_isCorrectionCancelled = true; } // for the pass under way
    void EqualizeAllAbsoluteControls();  // each acting absolute group takes over its first member's value
    void ResetLinkedParam(size_t index); // back to its reset state, counted as moved in this pass

    bool GetNotifyOnLinkedParams() const { return m_notifyOnLinkedParams; }
    void SetNotifyOnLinkedParams(bool notify) { m_notifyOnLinkedParams = notify; }

    EPluginSetup GetAlgSetup() const { return m_activeSetup; }
    std::vector<sCONTROL_PARAM>& GetParams() { return m_params; }
    const std::vector<sCONTROL_PARAM>& GetParams() const { return m_params; }

  private:
    friend class KCLinkAbsoluteImpl; // clears m_distanceSign
    class sUnderWay;

    // One member's part in a pass.
    struct sMove {
        size_t index;
        size_t source; // what moved it: the pass's own source, or that of a pass inside it
        double lastState;
        double oldRealWorld;
        KCLinkFuncInterface* law; // null: brought to its reset state
        double distanceSign;      // it went the source's distance (+1), the other way (−1), or took a value (0)
    };

    // Everything a pass needs, made before the first one so that none allocates.
    void InitAtFirstCall(size_t) {
        if (!m_isInitialised || m_lastValues.size() != m_params.size())
            Init();
    }
    void Init();
    void StoreLast(size_t index, EPluginSetup setup);
    void BeginPass(size_t source);
    void Walk(size_t source);
    void MoveMember(size_t source, size_t member, KCLinkFuncInterface& law);
    size_t Remember(size_t source, size_t index, KCLinkFuncInterface* law);
    void EndPass(size_t source, size_t firstMove);
    void MoveTo(size_t index, double state);
    void BringBack(const sMove& move, double distance);
    void Tell(size_t index, double oldRealWorld);
    static double TopState(const sCONTROL_PARAM& param);
    bool IsParam(size_t index) const { return index < m_params.size(); }

    std::vector<sCONTROL_PARAM>& m_params;
    const EPluginSetup& m_activeSetup;
    Listener* m_listener = nullptr;
    std::map<LawName, std::unique_ptr<KCLinkFuncInterface>> m_laws;
    GroupMap m_groups;
    std::vector<std::vector<const sLINK_GROUP_INFO*>> m_groupsOfParam; // ascending by number
    std::vector<sLINK_LAST_VALUES> m_lastValues;
    std::vector<bool> m_updated;
    std::vector<sMove> m_moves;      // of the pass under way; room for every parameter
    std::vector<size_t> m_leftAlone; // ascending; room for every parameter
    size_t m_source = kNoSource;
    EPluginSetup m_passSetup = kPluginSetup_A;
    size_t m_heldSource = kNoSource; // between StoreLastValues and LinkParams: its last values stay
    double m_sourceLastState = 0.0;
    double m_minDelta = 0.0;
    bool m_isInitialised = false;
    bool m_isCorrectionCancelled = false;
    bool m_notifyOnLinkedParams = true;
    int32_t m_walkDepth = 0; // a law or a listener that links again goes on with the pass under way
    int32_t m_tellingDepth = 0;
    // How the law that ran last moved its destination (sMove::distanceSign): set by the laws that move by distance,
    // cleared by the walk before each law and by the absolute law.
    double m_distanceSign = 0.0;
};

} // namespace kvKorvoV12_9_0_320
