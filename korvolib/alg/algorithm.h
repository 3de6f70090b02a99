// cALGORITHM: what a plug-in derives from. It owns the parameters, their two setups A and B, the lock, and the
// path by which every change reaches the plug-in's processing and whoever listens.
//
//   1. A plug-in adds its parameters (AddParam or a "ParamsXML" description); FinishCreate prepares the rest.
//   2. InitAlg hands the host what processing starts with.
//   3. A knob turned by hand: UpdateParamByGesture → the hook ApplyParamSelf returns a chain of buffers, the preset
//      counts as modified, automation is told, the linked parameters follow; the caller hands the chain to
//      ExecuteAndDisposeBuffer. UpdateParamRequestState is the same without the links.
//   4. A value played by the host: UpdateParamState without notification.
//   5. A preset, a chunk, undo: RestoreParams, the whole set in one operation.
//   6. A/B switch: SetActiveSetup; copying one setup to the other: CopySetup.
//
// Thread: [main] for everything: whoever holds the algorithm's lock. Whoever enters from outside (window event,
// host value, MIDI, worker) takes LockAlg first and gives it back when its chain has been executed. The hooks,
// the listeners and the host callback run with the lock held. The lock may be taken again by its holder.
// An exception thrown by a hook or listener passes to the caller unchanged, with the lock released and the blocks
// made so far given back (a whole update is asked for in their place); the library adds none.
//
// An unknown parameter index: getters give 0, empty text or false, setters do nothing, updates return null.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include <korvolib/alg/algorithm_broadcaster.h>
#include <korvolib/alg/control_param.h>
#include <korvolib/alg/description_problem.h>
#include <korvolib/alg/key_values.h>
#include <korvolib/alg/process_memory.h>
#include <korvolib/control/link_groups.h>
#include <korvolib/export.h>
#include <korvolib/utilities/threads/thread_mutex.h>

namespace kvKorvoV12_9_0_320 {

class KCAutomationControl;
class KCAutomationManager;
class KCMeters;
class KCRuntimeReporter;
class KCStMemObj;
class KCXMLElement;
namespace Preset {
class CPresetsManager;
}

// What the host is called with (selector 0: execute the chain in a1; 1: execute the first chain; 4: the chain
// goes back: the host calls GiveBackChain on it). `refcon` is the one handed over with the callback.
using KTHostCallback = intptr_t (*)(int32_t selector, void* refcon, intptr_t a1, intptr_t a2, intptr_t a3,
                                    intptr_t a4);

inline constexpr int32_t kHostSelector_Execute = 0;
inline constexpr int32_t kHostSelector_ExecuteInit = 1;
inline constexpr int32_t kHostSelector_Dispose = 4;

inline constexpr size_t kNoParam = SIZE_MAX; // an unknown name, a parameter that could not be added

// State and real-world value of one parameter in setups A and B: what RestoreParams writes.
struct sPARAM_VALUES {
    double state[2] = {0.0, 0.0};
    double realWorld[2] = {0.0, 0.0};
    bool operator==(const sPARAM_VALUES&) const = default;
};

// A sub-object with processing of its own that takes part in UpdateAlg.
class KORVO_API KCAlgorithmPart {
  public:
    virtual ~KCAlgorithmPart() = default;
    virtual KPAPI_PROCESS_MEMORY::BUFFER_HEADER* UpdateAlg() = 0; // its chain, or null
};

class KORVO_API cALGORITHM : public KCAlgorithmListener, public KCLinkGroups::Listener {
  public:
    using BUFFER_HEADER = KPAPI_PROCESS_MEMORY::BUFFER_HEADER;
    using ScaleFunctionsMap = std::map<KCFixedString<127>, sUserScaleFunctions>;

    cALGORITHM();
    ~cALGORITHM() override;
    cALGORITHM(const cALGORITHM&) = delete;
    cALGORITHM& operator=(const cALGORITHM&) = delete;

    // ---- Before FinishCreate -------------------------------------------------------------------------------

    // Adds a parameter: both setups begin at its initial state. Its index, or kNoParam after FinishCreate and
    // without memory.
    size_t AddParam(const sCONTROL_PARAM& param);

    // Hands over a named description ("ParamsXML", "GUIXML"); the text is copied, null removes it. 0,
    // kErr_NullArgument without a name, kErr_AllocationFailed.
    int32_t SetDescription(const char* name, const char* xml);
    const char* GetDescription(const char* name) const; // null when there is none of that name

    void SetHostCallback(KTHostCallback callback, void* refcon);
    KTHostCallback GetHostCallback() const { return m_hostCallback; }
    void* GetExecRefcon() const { return m_execRefcon; }

    void SetRuntimeReporter(KCRuntimeReporter* reporter); // not owned; null for none

    // Hz; 48000 until it is set. A value that is not positive and finite is ignored. It takes effect with the
    // next UpdateAlg or InitAlg.
    void SetSampleRate(double sampleRateHz);
    double GetSampleRate() const { return m_sampleRateHz; }

    // ---- Life ----------------------------------------------------------------------------------------------

    // Completes the object, once; later calls do nothing. The result of FinishCreateSelf, or, where that is 0,
    // the first error of the steps before it; always the same one.
    int32_t FinishCreate();

    // Runs the plug-in's initialisation and disposes of its chain, executed first when `execute`. Always null.
    BUFFER_HEADER* InitAlg(bool execute);

    // Everything anew: ApplyAlgSelf, the link groups, the parts; what they returned as one chain.
    BUFFER_HEADER* UpdateAlg();
    void SetUpdateAlgRequired();
    bool IsUpdateAlgRequired() const;
    uint64_t GetUpdateAlgCount() const { return m_updateAlgCount.load(std::memory_order_relaxed); }

    // From the shell's idle timer: a whole update, if one is required, executed and disposed.
    void DoIdle();

    // As it was after creation: InitInstanceData, then every parameter at its initial state in both setups, in one
    // restore, then InitDataSelf. The active setup stays. A user's "start afresh".
    BUFFER_HEADER* InitData();

    // The end, once, while the plug-in's hooks can still be reached: DisposeSelf; then the host callback, the
    // reporter and all listeners are forgotten. The shell calls it before it destroys the object.
    void Dispose();

    // ---- The lock ------------------------------------------------------------------------------------------

    void LockAlg() const { m_mutex.Lock(); }
    bool TryLockAlg() const; // true when it was obtained
    void UnLockAlg() const { m_mutex.Unlock(); }
    const kvThread::ThreadMutexInited& GetProcessMutex() const { return m_processMutex; }

    // ---- Updates: the chain to be executed, or null when there is nothing to send ---------------------------

    // `state` outside 0 … 1000 or not a number: null, nothing changes. Discrete parameters are quantized.
    BUFFER_HEADER* UpdateParamState(size_t index, double state, bool notify);
    BUFFER_HEADER* UpdateParamRequestState(size_t index, double state) {
        return UpdateParamState(index, state, true);
    }

    // The value as it stands (physical units, finite), without notification; the state becomes its inverse.
    BUFFER_HEADER* UpdateParamRealWorld(size_t index, double realWorld);
    // The nearest value the scale can produce, with notification.
    BUFFER_HEADER* UpdateParamRequestRealWorld(size_t index, double realWorld);

    // Writes states and values of `count` parameters in both setups, makes `activeSetup` the active one, then
    // runs the hooks of all that changed, reports one PresetModified, notifies and marks. `indexes` null means
    // 0 … count − 1. An entry with an unknown index or a number that is not finite is left out; a value that is
    // not finite counts where the parameter's own scale gives it for that state (−∞ dB at the bottom).
    BUFFER_HEADER* RestoreParams(const size_t* indexes, const sPARAM_VALUES* values, size_t count,
                                 EPluginSetup activeSetup);
    // Fills values[0 … count − 1] from parameters first …; the number filled.
    size_t CaptureParams(size_t first, sPARAM_VALUES* values, size_t count) const;

    // Joins two chains in order; executes a chain through the host callback (selector 0, then 4) and sets it to
    // null. Without a callback the blocks just go back. The lock is held meanwhile.
    static BUFFER_HEADER* ChainBufs(BUFFER_HEADER* first, BUFFER_HEADER* second);
    void ExecuteAndDisposeBuffer(BUFFER_HEADER*& chain);

    // A block for ApplyParamSelf and its like to fill and return. Null when the pool is exhausted or the block too
    // large: the hook then returns null, a whole update is asked for, and the next DoIdle sends everything.
    BUFFER_HEADER* TakeBuffer(uint32_t target, size_t bytes);
    const KCProcessMemoryPool& GetProcessMemoryPool() const { return m_pool; }

    // ---- Setups: kPluginSetup_Active means the active one everywhere ------------------------------------------

    EPluginSetup GetActiveSetup() const { return m_activeSetup; }
    // Hooks of every parameter whose value differs, ActiveSetupChanged, notifications; one chain.
    BUFFER_HEADER* SetActiveSetup(EPluginSetup setup);
    // States, values and per-setup words of all parameters; a chain when `to` is the active setup.
    BUFFER_HEADER* CopySetup(EPluginSetup from, EPluginSetup to);

    static void SetupToSetupString(EPluginSetup setup, KCFixedString<15>& out); // empty for an unknown setup
    // 0 with `setup` set, or kErr_Generic with `setup` as it was.
    static int32_t SetupStringToSetup(const KCFixedStringBase& text, EPluginSetup& setup);

    void SetSetupTitle(EPluginSetup setup, const KCFixedStringBase& title); // told by SetupTitleChanged
    const KCFixedString<127>& GetSetupTitle(EPluginSetup setup) const;

    // ---- Host chunks ---------------------------------------------------------------------------------------

    // Index 0 gives 'XPst' and 0; any other leaves `id` alone and gives kErr_NoSuchChunkIndex.
    int32_t GetIndexedChunkID(int32_t index, int32_t& id) const;
    // 'XPst', 'curS', 'pref'; kErr_EmptyChunk, kErr_Generic for another identifier.
    int32_t GetChunk(int32_t id, KCStMemObj& out, int32_t flag);
    // Restores what the library's own 'XPst' chunk holds: values of both setups by parameter name, titles, the
    // active setup; executes the chain and tells PresetLoaded. kErr_Generic for another identifier;
    // kErr_NullArgument, kErr_EmptyChunk, kErr_WrongRecordVersion and the codes of KCXMLElement::Parse, with
    // nothing changed.
    virtual int32_t SetChunk(int32_t id, const void* bytes, size_t size);
    virtual Preset::CPresetsManager* GetPresetsManager(); // null unless overridden

    // ---- Parameters ----------------------------------------------------------------------------------------

    size_t GetNumParams() const { return m_params.size(); }
    const sCONTROL_PARAM* GetParam(size_t index) const {
        return index < m_params.size() ? &m_params[index] : nullptr;
    }
    sCONTROL_PARAM* GetParam(size_t index) { return index < m_params.size() ? &m_params[index] : nullptr; }
    size_t GetParamIDFromName(const KCFixedStringBase& name) const; // kNoParam; the first of that name
    size_t GetParamIDFromName(const char* name) const;

    // Of the active setup: 0 … 1000, and in the parameter's unit. Inline: every hook asks.
    double GetParamState(size_t index) const {
        return index < m_params.size() ? m_params[index].GetState(m_activeSetup) : 0.0;
    }
    double GetParamRealWorld(size_t index) const {
        return index < m_params.size() ? m_params[index].GetRealWorld(m_activeSetup) : 0.0;
    }
    double GetParamInitialState(size_t index) const;
    double GetParamResetState(size_t index) const;
    void SetParamResetState(size_t index, double state);
    int32_t GetParamNumStates(size_t index) const;
    double GetStateStep(size_t index) const;
    int32_t GetParamType(size_t index) const; // 0 discrete, 1 continuous
    uint32_t GetParamFlags(size_t index) const;
    const KCFixedString<127>& GetParamScaleType(size_t index) const;
    const KCFixedString<127>& GetParamName(size_t index) const;
    bool IsParamUnused(size_t index) const;
    // The text of the active value: the one set by hand while the value stands, otherwise made by the display
    // function or with the decimals of the resolution.
    void GetParamValueString(size_t index, KCFixedStringBase& out) const;
    void SetParamValueString(size_t index, const KCFixedStringBase& text);
    virtual void GetParamLabelString(size_t index, KCFixedStringBase& out) const;
    void GetParamUnitsString(size_t index, KCFixedStringBase& out) const;

    double StateToRealWorld(size_t index, double state) const;
    double RealWorldToState(size_t index, double realWorld) const; // clamped to 0 … 1000
    virtual ETranslateTextRetType TranslateTextToRealWorld(size_t index, const KCFixedStringBase& text,
                                                           double& realWorld) const;

    // How far the state must move, in the direction's sign, for the value to change visibly. The sum of state and
    // offset is the caller's to clamp.
    double OffsetToNextDifferentState(size_t index, double direction) const;
    virtual double OffsetToNextDifferentStateContinuous(size_t index, double direction) const;
    virtual double OffsetToNextDifferentStateDiscrete(size_t index, double direction) const;

    virtual bool ValidateRealWorld(size_t index, double realWorld) const;
    virtual ValidationResult::Type ValidateRealWorldSelf(size_t index, double realWorld) const;
    virtual void LimitLoadedRealWorld(size_t index, EPluginSetup setup);

    // Whether undo saves the parameter and brings it back: yes unless overridden, as for a meter or a position that
    // plays on. FinishCreate asks this once for each parameter, after FinishCreateSelf.
    virtual bool IsParamSavableToUndo(size_t index) const;
    const std::vector<size_t>& GetParamsNotSavedToUndo() const; // ascending; none before FinishCreate

    // A parameter that moved asks for a fresh look; this does so for all.
    void RefreshAllParams();

    // ---- Automation: control indexes instead of parameter indexes --------------------------------------------

    virtual void NotifyParamValue(size_t index);
    virtual void Touch(size_t index);
    virtual void Release(size_t index);
    virtual int32_t TranslateTextToControlState(int32_t control, const char* text, double& state,
                                                double& realWorld);
    virtual int32_t ControlStateFromRealWorldValue(size_t control, double realWorld, double& state);
    virtual int32_t ControlRealWorldValueFromState(size_t control, double state, double& realWorld);
    KCAutomationManager* GetAutomationManager() const {
        return m_automationManager.get();
    }                                                                // null before FinishCreate
    KCAutomationControl* GetAutomationControl(size_t control) const; // null past the end
    KCAutomationControl* GetAutomationControlByLeadParamID(size_t index) const noexcept;
    KCAutomationControl* GetAutomationControlByName(const char* name) const;
    // Whether the host has been told of a release of the parameter that its holder has not asked for: there is a
    // control to touch, and it is not touched.
    bool IsTouchLost(size_t index) const noexcept;

    // ---- Links -----------------------------------------------------------------------------------------------

    KCLinkGroups* GetLinkGroups() const { return m_linkGroups.get(); } // null before FinishCreate
    bool IsParamInLinkedMode(size_t index) const;
    // Moves the members of the parameter's groups, after its own update; their blocks as one chain.
    BUFFER_HEADER* LinkParams(size_t index, bool isTopLevel);
    // One event of a user's gesture (mouse, wheel, key, text, MIDI): the update, the links, their correction.
    BUFFER_HEADER* UpdateParamByGesture(size_t index, double state);
    // The same for who moves the parameter, and others with it, by operations of its own: begun before the move,
    // ended after it with the links' blocks as one chain. What was left out is not moved by the links.
    struct sLINK_GESTURE {
        size_t index;
        EPluginSetup setup;
        double oldState;
    };
    sLINK_GESTURE BeginLinkGesture(size_t index);
    void LeaveOutOfLinkGesture(size_t index);
    BUFFER_HEADER* EndLinkGesture(const sLINK_GESTURE& gesture);
    void OnLinkedParamValueModified(size_t index, double oldRealWorld) override;

    // ---- Beside the parameters -------------------------------------------------------------------------------

    virtual KCAlgorithmBroadcaster* Broadcaster();
    KCKeyValues& GetKeyValues() { return m_keyValues; }
    const KCKeyValues& GetKeyValues() const { return m_keyValues; }
    KCMeters& GetMeters() const { return *m_meters; }

    virtual void ChangeSideChainActive(bool isActive); // tells ActiveSideChainChanged when that is a change
    bool IsSideChainActive() const { return m_isSideChainActive; }

    // Parts are not owned; 0, kErr_NullArgument, or kErr_Generic for a name that is taken or unknown.
    int32_t RegisterPart(const KCFixedStringBase& name, KCAlgorithmPart* part);
    int32_t UnregisterPart(const KCFixedStringBase& name);

    int32_t PrepareScaleFunctionsMap(ScaleFunctionsMap& map);

    size_t GetNumDescriptionProblems() const;
    const sDESCRIPTION_PROBLEM* GetDescriptionProblem(size_t number) const; // null past the end
    // Puts problems found in a description into the list, under its name. kErr_BadDescription when there are any.
    int32_t KeepDescriptionProblems(const char* description, const std::vector<sDESCRIPTION_PROBLEM>& problems);

  protected:
    // ---- What a plug-in supplies -----------------------------------------------------------------------------

    virtual BUFFER_HEADER* ApplyParamSelf(size_t index) = 0; // parameter `index` has a new real-world value
    virtual BUFFER_HEADER* ApplyAlgSelf() = 0;               // everything may have changed
    virtual BUFFER_HEADER* InitAlgSelf() = 0;                // what processing begins with

    // ---- What a plug-in may supply: each does nothing and returns 0 unless it says otherwise -------------------

    virtual int32_t PrepareParameterVecSelf(); // adds the parameters, when no "ParamsXML" does
    virtual int32_t PrepareScaleFunctionsMapSelf(ScaleFunctionsMap& map);
    virtual int32_t FinishCreateSelf();
    virtual void InitDataSelf();
    virtual void InitInstanceData(); // setup titles and words are emptied here; an override calls this
    virtual void DisposeSelf();
    virtual size_t GetNumMetersSelf() const;
    virtual sPROCESS_MEMORY_SIZE
    GetProcessMemorySize() const; // two blocks of 256 bytes per parameter and 16, one target
    virtual std::unique_ptr<KCLinkGroups> InstantiateSpecificLinkGroupSelf(); // null: the library's own class
    virtual void AddSpecificLinkFuncs(KCLinkGroups& groups);                  // link laws of the plug-in
    virtual int32_t PreparePresetChunk(KCStMemObj& out, int32_t flag, int32_t reserved);

    // ---- The steps of FinishCreate, in their order -------------------------------------------------------------

    virtual void StartRedisReporting(); // starts the runtime reporter, when there is one
    virtual int32_t PrepareParameterVec();
    virtual int32_t CreateLinkGroupsInstance();
    virtual void ScaleAllParams(int32_t setup); // real-world values from states; −1 is the active setup
    virtual int32_t InitializeMeterManager();
    virtual int32_t InitExportItemMap();
    virtual int32_t Init_Key_Values();

    // Adds automation controls of the plug-in's own to GetAutomationManager(), behind those of the description
    // "GUIXML".
    virtual void CreateSpecificAutomationControls();

    // Writes a value the host has set into `setup` and echoes it: Touch, NotifyParamValue, Release. No lock, no
    // hook.
    void SetRealWorldAndUpdateAndNotifyAutomation(size_t index, double realWorld, EPluginSetup setup);

  private:
    friend class KCLinkGroups; // works on the parameters and the active setup themselves
    struct sRest;
    struct sChain;
    struct sRestored;

    bool IsUpdateParamAlwayesRequired(size_t index) const;
    double GetParamNextState(const sCONTROL_PARAM* param, double state, double offset) const;
    size_t GetParamIDFromName(std::string_view name) const;
    void ReportPresetModified(const sCONTROL_PARAM& param, bool hasChanged);
    void ReportDetail(const char* key, const char* value);
    int32_t SettleParameterVec();
    int32_t ReadParamsFromDescription(const char* xml);
    int32_t CollectParamsNotSavedToUndo();
    void DisposeBuffer(BUFFER_HEADER*& chain);

    EPluginSetup Resolve(EPluginSetup setup) const { return setup == kPluginSetup_Active ? m_activeSetup : setup; }
    sRestored WriteRestored(const size_t* indexes, const sPARAM_VALUES* values, size_t count,
                            EPluginSetup activeSetup);
    bool RestoreParam(size_t index, const sPARAM_VALUES& values, EPluginSetup newActive);
    bool CopySetupOfParam(size_t index, EPluginSetup from, EPluginSetup to);
    void OweDifferencesBetweenSetups();
    void ShowActiveSetup();
    void LimitLoadedRealWorlds();
    BUFFER_HEADER* AnnounceRestored(const sRestored& restored);

    void RestoreState(const KCXMLElement& root);
    int32_t DescribeLinkGroups();
    template <class Links>
    BUFFER_HEADER* CollectLinkChain(Links links);
    int32_t InitAutomation();
    int32_t FinishCreateAutomation();

    std::vector<sCONTROL_PARAM> m_params;
    mutable kvThread::ThreadMutexInited m_mutex;
    mutable kvThread::ThreadMutexInited m_processMutex;
    EPluginSetup m_activeSetup = kPluginSetup_A;
    bool m_isSideChainActive = false;
    // The first for DoIdle, the second for a shell that looks by itself; UpdateAlg clears both. Written and counted
    // also by those who do not hold the lock.
    std::atomic<bool> m_updateAlgRequired[2] = {false, false};
    std::atomic<uint64_t> m_updateAlgCount{0};
    KCAlgorithmBroadcaster m_broadcaster;
    std::unique_ptr<KCLinkGroups> m_linkGroups;
    sChain* m_linkChain = nullptr; // gathers what linked parameters produce
    // Knows how to delete what is only declared here. Its controls are bound to the parameters and go before them.
    std::unique_ptr<KCAutomationManager, void (*)(KCAutomationManager*)> m_automationManager{nullptr, nullptr};
    KTHostCallback m_hostCallback = nullptr;
    void* m_execRefcon = nullptr;
    double m_sampleRateHz = 48000.0;
    KCProcessMemoryPool m_pool;
    KCKeyValues m_keyValues;
    std::unique_ptr<KCMeters> m_meters;
    std::unique_ptr<sRest> m_rest;
};

// Holds the algorithm's lock while it lives.
class KCAlgorithmLock {
  public:
    explicit KCAlgorithmLock(const cALGORITHM& algorithm) : m_algorithm(algorithm) { m_algorithm.LockAlg(); }
    ~KCAlgorithmLock() { m_algorithm.UnLockAlg(); }
    KCAlgorithmLock(const KCAlgorithmLock&) = delete;
    KCAlgorithmLock& operator=(const KCAlgorithmLock&) = delete;

  private:
    const cALGORITHM& m_algorithm;
};

} // namespace kvKorvoV12_9_0_320
